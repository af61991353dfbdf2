#include "simulator/names.h"

#include <algorithm>
#include <cstdint>

namespace velclp_sim {

std::string lowerName(std::string_view name) {
    std::string lower(name);
    std::transform(lower.begin(), lower.end(), lower.begin(), foldCase);
    return lower;
}

bool sameName(std::string_view a, std::string_view b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return foldCase(x) == foldCase(y);
           });
}

std::string_view trimNamespace(std::string_view name) {
    const auto first = name.find_first_not_of('/');
    if (first == std::string_view::npos) {
        return {};
    }
    return name.substr(first, name.find_last_not_of('/') - first + 1);
}

std::size_t NameHash::operator()(std::string_view name) const {
    std::uint64_t hash = 14695981039346656037ULL; // FNV-1a over the folded bytes
    for (const char c : name) {
        hash = (hash ^ static_cast<unsigned char>(foldCase(c))) * 1099511628211ULL;
    }
    return hash;
}

} // namespace velclp_sim
