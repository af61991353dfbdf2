// Small text helpers that the whole library shares. All work on bytes, in the C locale.
#ifndef VELCLP_CLPSTRING_H
#define VELCLP_CLPSTRING_H

#include <string>
#include <vector>

namespace velmora_clp {

// Cuts a line into words as a shell does: blanks between words, single and double quotes, and a
// backslash that takes the next character as it is. Gives a new[] vector of new[] words with a
// null at its end, for del_argv; null when there is no word or a quote stays open.
char** get_argv(const char* line);
// A new[] copy; null for null.
char* cpy_argv(char* word);
// A new[] copy of a text, with a null byte behind it.
char* newText(const std::string& text);
// Frees what get_argv gave; null is allowed.
void del_argv(char** argv);

// The parts between the occurrences of the delimiter, in order; empty ones only when asked for.
std::vector<std::string> splitString(const std::string& text, const char* delimiter,
                                     bool keepEmpty = false);

// The text behind the last blank; a single blank when nothing stands there.
std::string lastWord(const std::string& text);

std::string lowerString(const std::string& text);

// Compares as strcasecmp; a null pointer ends the process.
int strcmp_nocase(const char* src, const char* dest);

} // namespace velmora_clp

#endif
