#include "velclp/reservedsymbol.h"

#include <algorithm>
#include <cstring>
#include <iterator>

#include "velclp/assertion.h"
#include "velclp/log.h"

namespace {

constexpr const char* RESERVED[] = {" ", "\t", "\n", "\r", "\\",      ",", "-", "=", "/", "=>",
                                    ".", "..", "\"", "->", "SESSION", "`", "(", ")", "\""};

} // namespace

bool lookupReservedSymbol(const char* ele) {
    VELCLP_TRACE("CLP.lookupReservedSymbol");
    VELCLP_ASSERT(ele != nullptr, "ele!=__null");
    return std::any_of(std::begin(RESERVED), std::end(RESERVED),
                       [ele](const char* reserved) { return std::strstr(ele, reserved); });
}
