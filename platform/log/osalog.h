// The platform's log. A record is made by a pair of calls in one thread: osalogpre() says where
// and how important, osalogmini() what. Records go to syslog, or to a file that the host names;
// unless told otherwise only failures (level 1) are kept. Control characters in values are
// escaped, so that a record is always one line. Any thread may call any of these.
#ifndef VELCLP_PLATFORM_LOG_OSALOG_H
#define VELCLP_PLATFORM_LOG_OSALOG_H

#include <atomic>
#include <string>

// Level of a record: 1 failures, 3 values, 5 the steps of every operation.
enum : int { OSALOG_FAILURE = 1, OSALOG_VALUE = 3, OSALOG_TRACE = 5 };

extern std::atomic<int> osalog_threshold;

// Whether records of this level are kept. Ask before a value is computed for the log alone.
inline bool osalog_enabled(int level) {
    return level <= osalog_threshold.load(std::memory_order_relaxed);
}

// Begins a record. The texts must live until the osalogmini() call that follows.
void osalogpre(int level, const char* function, const char* file, int line);

// Writes the record that osalogpre() began; printf-like. Nothing happens below the threshold, or
// without osalogpre(). Long records are cut. errno is left as it was.
void osalogmini(const char* format, ...) __attribute__((format(printf, 1, 2)));

// Keeps records of levels up to this one; 0 keeps none.
void osalog_set_level(int level);

// Writes to this file from now on, which is made (mode 0600) when it is not there, and appended to
// otherwise; "" goes back to syslog. False, and all as before, when it cannot be opened.
bool osalog_set_file(const std::string& path);

#endif
