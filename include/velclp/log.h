// One-line log records. The threshold is tested before any argument is evaluated, so a record
// that nobody keeps costs one load and a branch. Function names are texts such as
// "CLP.CLPCore.run".
#ifndef VELCLP_LOG_H
#define VELCLP_LOG_H

#include "log/osalog.h"

// A record of the given level; printf-like behind the function name.
#define VELCLP_LOG(level, function, ...)                                                           \
    do {                                                                                           \
        if (osalog_enabled(level)) {                                                               \
            osalogpre(level, function, __FILE__, __LINE__);                                        \
            osalogmini(__VA_ARGS__);                                                               \
        }                                                                                          \
    } while (false)

#define VELCLP_LOG_FAILURE(function, ...) VELCLP_LOG(OSALOG_FAILURE, function, __VA_ARGS__)
#define VELCLP_LOG_VALUE(function, ...) VELCLP_LOG(OSALOG_VALUE, function, __VA_ARGS__)
#define VELCLP_LOG_BRANCH(function, ...) VELCLP_LOG(OSALOG_TRACE, function, __VA_ARGS__)

#define VELCLP_ENTER(function) VELCLP_LOG(OSALOG_TRACE, function, "Enter")
#define VELCLP_LEAVE(function) VELCLP_LOG(OSALOG_TRACE, function, "Leave")
// Leaving with an int.
#define VELCLP_LEAVE_VALUE(function, value)                                                        \
    VELCLP_LOG(OSALOG_TRACE, function, "Leave=[%d]", static_cast<int>(value))

// "Enter" now and "Leave" when the scope ends, however it ends.
#define VELCLP_TRACE(function)                                                                     \
    const ::velmora_clp::ScopeTrace velclpScopeTrace {                                             \
        function, __FILE__, __LINE__                                                               \
    }

namespace velmora_clp {

class ScopeTrace {
public:
    ScopeTrace(const char* function, const char* file, int line)
        : m_function(function), m_file(file), m_line(line) {
        write("Enter");
    }
    ~ScopeTrace() { write("Leave"); }
    ScopeTrace(const ScopeTrace&) = delete;
    ScopeTrace& operator=(const ScopeTrace&) = delete;

private:
    void write(const char* what) const {
        if (osalog_enabled(OSALOG_TRACE)) {
            osalogpre(OSALOG_TRACE, m_function, m_file, m_line);
            osalogmini("%s", what);
        }
    }

    const char* m_function;
    const char* m_file;
    int m_line;
};

} // namespace velmora_clp

#endif
