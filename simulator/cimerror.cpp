#include "simulator/cimerror.h"

#include <array>

namespace velclp_sim {

std::string statusSymbol(int code) {
    static constexpr std::array<const char*, 18> symbols = {"OK",
                                                            "FAILED",
                                                            "ACCESS_DENIED",
                                                            "INVALID_NAMESPACE",
                                                            "INVALID_PARAMETER",
                                                            "INVALID_CLASS",
                                                            "NOT_FOUND",
                                                            "NOT_SUPPORTED",
                                                            "CLASS_HAS_CHILDREN",
                                                            "CLASS_HAS_INSTANCES",
                                                            "INVALID_SUPERCLASS",
                                                            "ALREADY_EXISTS",
                                                            "NO_SUCH_PROPERTY",
                                                            "TYPE_MISMATCH",
                                                            "QUERY_LANGUAGE_NOT_SUPPORTED",
                                                            "INVALID_QUERY",
                                                            "METHOD_NOT_AVAILABLE",
                                                            "METHOD_NOT_FOUND"};
    const bool known = code > 0 && code < static_cast<int>(symbols.size());
    return "CIM_ERR_" +
           (known ? std::string(symbols.at(static_cast<std::size_t>(code))) : std::to_string(code));
}

CimError::CimError(int status, const std::string& detail)
    : std::runtime_error(statusSymbol(status) + (detail.empty() ? "" : ": " + detail)),
      code_(status) {}

} // namespace velclp_sim
