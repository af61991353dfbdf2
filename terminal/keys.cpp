#include "terminal/keys.h"

#include <algorithm>
#include <initializer_list>

namespace {

const char ESCAPE = 27;
const char BACKSPACE = 8;
const char TAB_KEY = 9;
const char RUBOUT = 127;

bool isOneOf(const std::string& terminal, std::initializer_list<const char*> names) {
    return std::any_of(names.begin(), names.end(),
                       [&terminal](const char* name) { return terminal == name; });
}

bool isXtermLike(const std::string& terminal) {
    return isOneOf(terminal, {"linux", "xterm", "XTERM"});
}

} // namespace

KeySequence classifyKeys(const std::string& keys, const std::string& terminal) {
    if (keys.empty())
        return KeySequence::Unfinished;
    if (keys[0] != ESCAPE)
        return KeySequence::Plain;
    if (keys.size() == 1)
        return KeySequence::Unfinished;
    if (keys[1] != '[')
        return KeySequence::Plain;
    if (keys.size() == 2)
        return KeySequence::Unfinished;
    if (keys[2] >= 'A' && keys[2] <= 'D')
        return KeySequence::Arrow;
    if (keys[2] == '3')
        return isXtermLike(terminal) ? KeySequence::Delete : KeySequence::Unfinished;
    return keys.size() == 3 ? KeySequence::Unfinished : KeySequence::Unknown;
}

PlainKey plainKey(char byte, const std::string& terminal) {
    switch (byte) {
    case RUBOUT:
        return isXtermLike(terminal) ? PlainKey::Backspace : PlainKey::Delete;
    case BACKSPACE:
        return isOneOf(terminal, {"vt100", "ansi"}) ? PlainKey::Backspace : PlainKey::Ignored;
    case TAB_KEY:
        return PlainKey::Tab;
    default:
        return PlainKey::Character;
    }
}
