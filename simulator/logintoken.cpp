#include "simulator/logintoken.h"

#include <algorithm>
#include <cctype>

namespace velclp_sim {

namespace {

/// The decoded bytes up to the first character that is no Base64.
std::string fromBase64(std::string_view text) {
    static constexpr std::string_view digits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string bytes;
    unsigned bits = 0;
    unsigned held = 0;
    for (const char c : text) {
        const auto digit = digits.find(c);
        if (digit == std::string_view::npos) {
            break;
        }
        held = (held << 6U | static_cast<unsigned>(digit)) & 0xFFFFU;
        bits += 6;
        if (bits >= 8) {
            bits -= 8;
            bytes += static_cast<char>(held >> bits & 0xFFU);
        }
    }
    return bytes;
}

} // namespace

Caller callerOf(std::string_view authorization) {
    Caller caller;
    constexpr std::size_t schemeLength = 6;
    if (!sameName(authorization.substr(0, schemeLength), "Basic ")) {
        return caller;
    }
    const std::string login = fromBase64(authorization.substr(schemeLength));
    caller.user = login.substr(0, login.find(':'));
    constexpr std::size_t digitCount = 4;
    if (caller.user.size() <= digitCount) {
        return caller;
    }
    const std::string digits = lowerName(caller.user.substr(caller.user.size() - digitCount));
    const bool token = std::all_of(digits.begin(), digits.end(), [](char c) {
        return std::isxdigit(static_cast<unsigned char>(c)) != 0;
    });
    if (token) {
        caller.user.resize(caller.user.size() - digitCount);
        caller.mayRead = digits != "0000";
        caller.mayWrite = caller.mayRead && digits != "0001";
    }
    return caller;
}

} // namespace velclp_sim
