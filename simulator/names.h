// CIM names (classes, properties, methods, keys, qualifiers, namespaces) match without case, as
// DSP0004 says. These helpers compare and hash them without making copies. Only ASCII letters are
// folded; other bytes compare as they are.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace velclp_sim {

/// One ASCII letter in lower case; any other byte unchanged.
constexpr char foldCase(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c;
}

/// The name in lower case.
std::string lowerName(std::string_view name);

/// True when the two names are the same name.
bool sameName(std::string_view a, std::string_view b);

/// A namespace without slashes at its ends ("/root/zorm/" is "root/zorm").
std::string_view trimNamespace(std::string_view name);

/// Hash and equality for unordered containers that are keyed by a name.
struct NameHash {
    std::size_t operator()(std::string_view name) const;
};
struct NameEqual {
    bool operator()(std::string_view a, std::string_view b) const { return sameName(a, b); }
};

} // namespace velclp_sim
