#include "simulator/words.h"

#include <algorithm>
#include <charconv>
#include <stdexcept>

namespace velclp_sim {

std::vector<std::string> splitWords(std::string_view line) {
    std::vector<std::string> words;
    bool quoted = false;
    bool inWord = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (!quoted && (c == ' ' || c == '\t')) {
            inWord = false;
            continue;
        }
        if (!inWord) {
            words.emplace_back();
            inWord = true;
        }
        if (c == '"') {
            quoted = !quoted;
        } else {
            words.back() += quoted && c == '\\' && i + 1 < line.size() ? line[++i] : c;
        }
    }
    if (quoted) {
        throw std::invalid_argument("a quote is not closed: " + std::string(line));
    }
    return words;
}

std::string_view takeLine(std::string_view& rest) {
    const auto end = std::min(rest.find('\n'), rest.size());
    std::string_view line = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    if (!line.empty() && line.back() == '\r') {
        line.remove_suffix(1);
    }
    return line;
}

std::uint64_t parseNumber(std::string_view text, std::string_view what) {
    std::uint64_t number = 0;
    const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (text.empty() || error != std::errc() || stop != text.data() + text.size()) {
        throw std::invalid_argument(std::string(what) + " needs a number");
    }
    return number;
}

std::string quoteWord(const std::string& word) {
    if (!word.empty() && word.find_first_of(" \t\"\\\n") == std::string::npos) {
        return word;
    }
    std::string quoted = "\"";
    for (const char c : word) {
        if (c == '"' || c == '\\') {
            quoted += '\\';
        }
        quoted += c == '\n' ? ' ' : c;
    }
    return quoted + '"';
}

} // namespace velclp_sim
