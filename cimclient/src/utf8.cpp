#include "utf8.h"

namespace cimclient {

namespace {

// Length and the lead byte's share of the code; length 0 for a byte that leads nothing.
Character lead(unsigned char byte) {
    if (byte < 0x80)
        return {byte, 1};
    if (byte >= 0xc2 && byte < 0xe0)
        return {byte & 0x1fU, 2};
    if (byte >= 0xe0 && byte < 0xf0)
        return {byte & 0x0fU, 3};
    if (byte >= 0xf0 && byte < 0xf5)
        return {byte & 0x07U, 4};
    return {};
}

bool isScalarValue(const Character& c) {
    constexpr std::uint32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000};
    return c.code >= smallest[c.length] && c.code <= 0x10ffff &&
           (c.code < 0xd800 || c.code > 0xdfff);
}

} // namespace

Character firstCharacter(std::string_view text) {
    Character c = lead(static_cast<unsigned char>(text.front()));
    if (c.length > text.size())
        return {};
    for (std::size_t i = 1; i < c.length; ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if ((byte & 0xc0) != 0x80)
            return {};
        c.code = (c.code << 6) | (byte & 0x3fU);
    }
    return c.length > 0 && isScalarValue(c) ? c : Character{};
}

std::size_t xmlCharacterLength(std::string_view text) {
    const Character c = firstCharacter(text);
    const bool allowed = c.code >= 0x20 ? c.code != 0xfffe && c.code != 0xffff
                                        : c.code == '\t' || c.code == '\n' || c.code == '\r';
    return allowed ? c.length : 0;
}

} // namespace cimclient
