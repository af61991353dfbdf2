#include "velclp/joberror.h"

#include "velclp/assertion.h"
#include "velclp/message.h"

namespace velmora_clp {

const char* const JobError::error_tag[] = {
    "Unknown",
    "Other",
    "Communications Error",
    "Quality of Service Error",
    "Software Error",
    "Hardware Error",
    "Environmental Error",
    "Security Error",
    "Oversubscription Error",
    "Unavailable Resource Error",
    "Unsupported_Operation_Error",
};

// By code less one. The second text is as scripts know it.
const char* const JobError::cimstat_tag[] = {
    "CIM_ERR_FAILED",
    "CIM_ERR_ACCESS_DENIE",
    "CIM_ERR_INVALID_NAMESPACE",
    "CIM_ERR_INVALID_PARAMETER",
    "CIM_ERR_INVALID_CLASS",
    "CIM_ERR_NOT_FOUND",
    "CIM_ERR_NOT_SUPPORTED",
    "CIM_ERR_CLASS_HAS_CHILDREN",
    "CIM_ERR_CLASS_HAS_INSTANCES",
    "CIM_ERR_INVALID_SUPERCLASS",
    "CIM_ERR_ALREADY_EXISTS",
    "CIM_ERR_NO_SUCH_PROPERTY",
    "CIM_ERR_TYPE_MISMATCH",
    "CIM_ERR_QUERY_LANGUAGE_NOT_SUPPORTED",
    "CIM_ERR_INVALID_QUERY",
    "CIM_ERR_METHOD_NOT_AVAILABLE",
    "CIM_ERR_METHOD_NOT_FOUND",
    "CIM_ERR_UNEXPECTED_RESPONSE",
    "CIM_ERR_INVALID_RESPONSE_DESTINATION",
    "CIM_ERR_NAMESPACE_NOT_EMPTY",
};

const char* const JobError::severity_tag[] = {
    "Unknown", "Reserved", "Low", "Medium", "High", "Fatal",
};

JobError::JobError() : err(Unknown), cimstat(CIM_ERR_FAILED), _severity(S_Unknown) {}

JobError::~JobError() {
    deleteMessages(messages);
}

void JobError::setErrorCode(error code) {
    VELCLP_ASSERT(code >= Unknown && code <= Unsupported_Operation_Error,
                  "err>=Unknown&&err<=Unsupported_Operation_Error");
    err = code;
}

void JobError::setCimstatCode(stat code) {
    VELCLP_ASSERT(code >= CIM_ERR_FAILED && code <= CIM_ERR_NAMESPACE_NOT_EMPTY,
                  "err>=CIM_ERR_FAILED&&err<=CIM_ERR_NAMESPACE_NOT_EMPTY");
    cimstat = code;
}

void JobError::setSeverityCode(severity code) {
    VELCLP_ASSERT(code >= S_Unknown && code <= S_Fatal, "err>=S_Unknown&&err<=S_Fatal");
    _severity = code;
}

void JobError::setCode(error errorCode, stat cimStatus, severity severityCode) {
    setErrorCode(errorCode);
    setCimstatCode(cimStatus);
    setSeverityCode(severityCode);
}

JobError::error JobError::getErrorCode() const {
    return err;
}

JobError::stat JobError::getCimstatCode() const {
    return cimstat;
}

JobError::severity JobError::getSeverityCode() const {
    return _severity;
}

const char* JobError::getErrorTag() const {
    VELCLP_ASSERT(err >= Unknown && err <= Unsupported_Operation_Error,
                  "err>=Unknown&&err<=Unsupported_Operation_Error");
    return error_tag[err];
}

const char* JobError::getCimstatTag() const {
    VELCLP_ASSERT(cimstat >= CIM_ERR_FAILED && cimstat <= CIM_ERR_NAMESPACE_NOT_EMPTY,
                  "cimstat>=CIM_ERR_FAILED&&cimstat<=CIM_ERR_NAMESPACE_NOT_EMPTY");
    return cimstat_tag[cimstat - CIM_ERR_FAILED];
}

const char* JobError::getSeverityTag() const {
    VELCLP_ASSERT(_severity >= S_Unknown && _severity <= S_Fatal,
                  "_severity>=S_Unknown&&_severity<=S_Fatal");
    return severity_tag[_severity];
}

} // namespace velmora_clp
