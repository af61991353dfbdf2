// The one exception of the simulator: a CIM error (DSP0200, 5.2.1), which becomes the ERROR element
// of a reply. Providers throw it to refuse an operation.
#pragma once

#include <stdexcept>
#include <string>

namespace velclp_sim {

/// Status codes of DSP0200, clause 5.2.1, by their numbers.
enum class CimStatus : int {
    failed = 1,
    accessDenied = 2,
    invalidNamespace = 3,
    invalidParameter = 4,
    invalidClass = 5,
    notFound = 6,
    notSupported = 7,
    classHasChildren = 8,
    classHasInstances = 9,
    invalidSuperclass = 10,
    alreadyExists = 11,
    noSuchProperty = 12,
    typeMismatch = 13,
    queryLanguageNotSupported = 14,
    invalidQuery = 15,
    methodNotAvailable = 16,
    methodNotFound = 17
};

/// The standard's symbol of a code, such as "CIM_ERR_NOT_FOUND"; "CIM_ERR_<number>" when it has
/// none.
std::string statusSymbol(int code);

class CimError : public std::runtime_error {
public:
    /// The description of the reply is the status's symbol, a colon and the detail.
    CimError(CimStatus status, const std::string& detail)
        : CimError(static_cast<int>(status), detail) {}
    CimError(int status, const std::string& detail);

    int code() const { return code_; }

private:
    int code_;
};

} // namespace velclp_sim
