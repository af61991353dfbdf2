// Text helpers that do not depend on the process's locale: names are compared as CIM compares
// them, without ASCII case, and numbers are written and read in the C locale's form.
#ifndef CIMCLIENT_TEXT_H
#define CIMCLIENT_TEXT_H

#include <charconv>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

namespace cimclient {

bool equalNoCase(std::string_view a, std::string_view b);
std::size_t hashNoCase(std::string_view text);

// Without leading and trailing blanks, tabs and line ends.
std::string_view trimmed(std::string_view text);

template<typename Integer>
void appendInteger(std::string& out, Integer value) {
    char buffer[24];
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
    out.append(buffer, end);
}

// The whole text as a number of the type; nothing when it is something else or out of range.
// A leading plus sign is allowed. Integers are read in the given base.
template<typename Number>
std::optional<Number> numberFrom(std::string_view text, [[maybe_unused]] int base = 10) {
    if (text.size() > 1 && text[0] == '+' && text[1] != '-')
        text.remove_prefix(1);
    Number value{};
    std::from_chars_result result{};
    if constexpr (std::is_integral_v<Number>)
        result = std::from_chars(text.data(), text.data() + text.size(), value, base);
    else
        result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size())
        return std::nullopt;
    return value;
}

// A copy, or nothing for null.
inline std::optional<std::string> optionalText(const char* text) {
    return text ? std::optional<std::string>(text) : std::nullopt;
}

inline const char* charsOf(const std::optional<std::string>& text) {
    return text ? text->c_str() : nullptr;
}

} // namespace cimclient

#endif
