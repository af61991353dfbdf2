// Why a command failed, in the terms of a CIM job error: the kind of error, the CIM status
// (DSP0200) and a severity. Everything that fails at run time hands one of these, by pointer, to
// whoever asked.
#ifndef VELCLP_JOBERROR_H
#define VELCLP_JOBERROR_H

#include <vector>

namespace velmora_clp {

class CLPMessage;

class JobError {
public:
    enum error : int {
        Unknown = 0,
        Other,
        Communications_Error,
        Quality_of_Service_Error,
        Software_Error,
        Hardware_Error,
        Environmental_Error,
        Security_Error,
        Oversubscription_Error,
        Unavailable_Resource_Error,
        Unsupported_Operation_Error
    };

    // The values are those of the CIM client's return codes, so a return code is stored as it is.
    enum stat : int {
        CIM_ERR_FAILED = 1,
        CIM_ERR_ACCESS_DENIED,
        CIM_ERR_INVALID_NAMESPACE,
        CIM_ERR_INVALID_PARAMETER,
        CIM_ERR_INVALID_CLASS,
        CIM_ERR_NOT_FOUND,
        CIM_ERR_NOT_SUPPORTED,
        CIM_ERR_CLASS_HAS_CHILDREN,
        CIM_ERR_CLASS_HAS_INSTANCES,
        CIM_ERR_INVALID_SUPERCLASS,
        CIM_ERR_ALREADY_EXISTS,
        CIM_ERR_NO_SUCH_PROPERTY,
        CIM_ERR_TYPE_MISMATCH,
        CIM_ERR_QUERY_LANGUAGE_NOT_SUPPORTED,
        CIM_ERR_INVALID_QUERY,
        CIM_ERR_METHOD_NOT_AVAILABLE,
        CIM_ERR_METHOD_NOT_FOUND,
        CIM_ERR_UNEXPECTED_RESPONSE,
        CIM_ERR_INVALID_RESPONSE_DESTINATION,
        CIM_ERR_NAMESPACE_NOT_EMPTY
    };

    enum severity : int { S_Unknown = 0, S_Reserved, S_Low, S_Medium, S_High, S_Fatal };

    // Unknown, CIM_ERR_FAILED, S_Unknown.
    JobError();
    JobError(const JobError&) = delete;
    JobError& operator=(const JobError&) = delete;
    virtual ~JobError();

    // A code outside its enumeration ends the process, when it is set and when its tag is read.
    void setErrorCode(error err);
    void setCimstatCode(stat err);
    void setSeverityCode(severity err);
    void setCode(error err, stat cimStatus, severity severityCode);

    error getErrorCode() const;
    stat getCimstatCode() const;
    severity getSeverityCode() const;

    // Static texts.
    const char* getErrorTag() const;
    const char* getCimstatTag() const;
    const char* getSeverityTag() const;

    // Owned; null entries are allowed.
    std::vector<CLPMessage*> messages;

private:
    error err;
    stat cimstat;
    severity _severity;
    static const char* const error_tag[];
    static const char* const cimstat_tag[];
    static const char* const severity_tag[];
};

} // namespace velmora_clp

#endif
