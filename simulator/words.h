// The plain lines of words that the simulator's control requests are written in: words stand
// between blanks, a double quote opens and closes a stretch that may hold blanks, and a backslash
// in such a stretch takes the next character as it is.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace velclp_sim {

/// The words of a line. Throws std::invalid_argument for a quote that is never closed.
std::vector<std::string> splitWords(std::string_view line);

/// The text up to the next line end, which is taken off the front of `rest`; a CR before it is
/// dropped.
std::string_view takeLine(std::string_view& rest);

/// A decimal number, all of the text. Throws std::invalid_argument with `what` in its text.
std::uint64_t parseNumber(std::string_view text, std::string_view what);

/// The word in double quotes when it holds a blank or a quote, or is empty.
std::string quoteWord(const std::string& word);

} // namespace velclp_sim
