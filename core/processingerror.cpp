#include "velclp/processingerror.h"

#include "velclp/assertion.h"

namespace velmora_clp {

// By code less 241.
const char* const ProcessingError::processing_error_tag[] = {
    "FUNCTION NOT SUPPORTED",
    "MISSING REQUIRED TARGET",
    "UNRECOGNIZED OEMEXTENSION",
    "QUEUE FULL",
    "REQUIRED OPTION MISSING",
    "INVALID TARGET",
    "OPTION NOT SUPPORTED",
    "MISSING ARGUMENT",
    "OUTPUT FORMAT NOT SUPPORTED",
    "INVALID ARGUMENT",
    "INVALID OPTION",
    "COMMAND SYNTAX ERROR",
    "COMMAND NOT RECOGNIZED",
    "COMMAND NOT SUPPORTED",
    "MISSING REQUIRED CLP PRIVILEGE",
    "COMMAND ERROR UNSPECIFIED",
};

ProcessingError::ProcessingError() : err(COMMAND_ERROR_UNSPECIFIED) {}

ProcessingError::ProcessingError(error e) : err(e) {}

ProcessingError::~ProcessingError() = default;

ProcessingError::error ProcessingError::getErrorCode() const {
    return err;
}

void ProcessingError::setErrorCode(error e) {
    VELCLP_ASSERT(e >= FUNCTION_NOT_SUPPORTED && e <= COMMAND_ERROR_UNSPECIFIED,
                  "err>=FUNCTION_NOT_SUPPORTED&&err<=COMMAND_ERROR_UNSPECIFIED");
    err = e;
}

const char* ProcessingError::getErrorTag() const {
    VELCLP_ASSERT(err >= FUNCTION_NOT_SUPPORTED && err <= COMMAND_ERROR_UNSPECIFIED,
                  "err>=FUNCTION_NOT_SUPPORTED&&err<=COMMAND_ERROR_UNSPECIFIED");
    return processing_error_tag[err - FUNCTION_NOT_SUPPORTED];
}

} // namespace velmora_clp
