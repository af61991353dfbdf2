#include "text.h"

#include <algorithm>

namespace cimclient {

namespace {

unsigned char lower(unsigned char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<unsigned char>(c + ('a' - 'A')) : c;
}

} // namespace

bool equalNoCase(std::string_view a, std::string_view b) {
    return a.size() == b.size() &&
           std::equal(a.begin(), a.end(), b.begin(), [](unsigned char x, unsigned char y) {
               return x == y || lower(x) == lower(y);
           });
}

std::size_t hashNoCase(std::string_view text) {
    // FNV-1a, 64 bits.
    std::size_t hash = 14695981039346656037ULL;
    for (const unsigned char c : text)
        hash = (hash ^ lower(c)) * 1099511628211ULL;
    return hash;
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r\n";
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

} // namespace cimclient
