// Why a line was refused before its verb ran (DSP0214, command processing errors): the parser and
// the engine fill one, the renderer prints it. A plain value.
#ifndef VELCLP_PROCESSINGERROR_H
#define VELCLP_PROCESSINGERROR_H

namespace velmora_clp {

class ProcessingError {
public:
    enum error : int {
        FUNCTION_NOT_SUPPORTED = 241,
        MISSING_REQUIRED_TARGET,
        UNRECOGNIZED_OEMEXTENSION,
        QUEUE_FULL,
        REQUIRED_OPTION_MISSING,
        INVALID_TARGET,
        OPTION_NOT_SUPPORTED,
        MISSING_ARGUMENT,
        OUTPUT_FORMAT_NOT_SUPPORTED,
        INVALID_ARGUMENT,
        INVALID_OPTION,
        COMMAND_SYNTAX_ERROR,
        COMMAND_NOT_RECOGNIZED,
        COMMAND_NOT_SUPPORTED,
        MISSING_REQUIRED_CLP_PRIVILEGE,
        COMMAND_ERROR_UNSPECIFIED
    };

    // COMMAND_ERROR_UNSPECIFIED, or the given code, which is stored untested.
    ProcessingError();
    explicit ProcessingError(error e);
    virtual ~ProcessingError();

    error getErrorCode() const;
    // A code outside 241 to 256 ends the process, here and when the tag is read.
    void setErrorCode(error e);
    // Static text such as "COMMAND SYNTAX ERROR".
    const char* getErrorTag() const;

private:
    error err;
    static const char* const processing_error_tag[];
};

} // namespace velmora_clp

#endif
