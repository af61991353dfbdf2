// UTF-8, as far as CIM-XML needs it.
#ifndef CIMCLIENT_UTF8_H
#define CIMCLIENT_UTF8_H

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace cimclient {

struct Character {
    std::uint32_t code = 0;
    // Bytes; 0 when the text does not begin with well-formed UTF-8.
    std::size_t length = 0;
};

// The first character of a text that is not empty.
Character firstCharacter(std::string_view text);

// Its length in bytes, 0 when it is none that XML 1.0 allows (clause 2.2).
std::size_t xmlCharacterLength(std::string_view text);

} // namespace cimclient

#endif
