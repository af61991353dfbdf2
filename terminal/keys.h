// Turns the bytes of a terminal into keys. It holds no state: the editor keeps the bytes of a key
// that is not complete and asks again with one more.
#ifndef VELCLP_TERMINAL_KEYS_H
#define VELCLP_TERMINAL_KEYS_H

#include <string>

// What a string of pending bytes is so far; the values are LineEdit::isArrow's.
enum class KeySequence { Arrow = 0, Plain = 1, Unknown = 2, Unfinished = 3, Delete = 4 };

KeySequence classifyKeys(const std::string& keys, const std::string& terminal);

// What one plain byte means on the terminal of that name.
enum class PlainKey { Backspace, Delete, Tab, Ignored, Character };

PlainKey plainKey(char byte, const std::string& terminal);

#endif
