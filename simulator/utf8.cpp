#include "simulator/utf8.h"

#include <algorithm>
#include <cstddef>

namespace velclp_sim {

unsigned utf8Length(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    if (text.empty()) {
        return 0;
    }
    if (byte(0) < 0x80) {
        return 1;
    }
    const unsigned length = byte(0) < 0xC2   ? 0
                            : byte(0) < 0xE0 ? 2
                            : byte(0) < 0xF0 ? 3
                            : byte(0) < 0xF5 ? 4
                                             : 0;
    if (length == 0 || text.size() < length) {
        return 0;
    }
    const unsigned char low = byte(0) == 0xE0 ? 0xA0 : byte(0) == 0xF0 ? 0x90 : 0x80;
    const unsigned char high = byte(0) == 0xED ? 0x9F : byte(0) == 0xF4 ? 0x8F : 0xBF;
    const bool tail = std::all_of(text.begin() + 2, text.begin() + length, [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
    });
    return byte(1) >= low && byte(1) <= high && tail ? length : 0;
}

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        const unsigned length = utf8Length(text);
        if (length == 0) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

} // namespace velclp_sim
