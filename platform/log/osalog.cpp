#include "log/osalog.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <fcntl.h>
#include <mutex>
#include <sys/syscall.h>
#include <syslog.h>
#include <unistd.h>

std::atomic<int> osalog_threshold{OSALOG_FAILURE};

namespace {

constexpr std::size_t longestRecord = 8192;

struct Pending {
    int level;
    const char* function;
    const char* file;
    int line;
};

// Records that were begun and not yet written: computing a record's values may write others.
constexpr std::size_t mostPending = 8;
thread_local std::array<Pending, mostPending> pending;
thread_local std::size_t pendingCount = 0;

// The descriptor of the log file, -1 for syslog. Writers hold the lock, so that a file is not
// closed under them.
struct Destination {
    std::mutex mutex;
    int descriptor = -1;
};

Destination& destination() {
    static auto* instance = new Destination;
    return *instance;
}

int priorityOf(int level) {
    if (level <= OSALOG_FAILURE)
        return LOG_ERR;
    return level <= OSALOG_VALUE ? LOG_INFO : LOG_DEBUG;
}

bool isControl(unsigned char c) {
    return c < 0x20 || c == 0x7f;
}

std::string escaped(const char* text) {
    static constexpr char digits[] = "0123456789abcdef";
    std::string out;
    for (const char* p = text; *p != '\0'; ++p) {
        const auto c = static_cast<unsigned char>(*p);
        if (isControl(c)) {
            out += "\\x";
            out += digits[c >> 4];
            out += digits[c & 15];
        } else {
            out += *p;
        }
    }
    return out;
}

std::string timeStamp() {
    timespec now{};
    clock_gettime(CLOCK_REALTIME, &now);
    tm parts{};
    gmtime_r(&now.tv_sec, &parts);
    std::array<char, 40> text{};
    const std::size_t length = strftime(text.data(), text.size(), "%Y-%m-%dT%H:%M:%S", &parts);
    std::snprintf(text.data() + length, text.size() - length, ".%06ldZ", now.tv_nsec / 1000);
    return text.data();
}

std::string placeOf(const Pending& record) {
    const char* slash = std::strrchr(record.file, '/');
    std::string place = record.function;
    place += " ";
    place += slash != nullptr ? slash + 1 : record.file;
    place += ":" + std::to_string(record.line) + ": ";
    return place;
}

void writeLine(int descriptor, const std::string& line) {
    std::size_t done = 0;
    while (done < line.size()) {
        const ssize_t n = write(descriptor, line.data() + done, line.size() - done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return;
        done += static_cast<std::size_t>(n);
    }
}

void emitRecord(const Pending& record, const char* text) {
    const std::string body = placeOf(record) + escaped(text);
    Destination& to = destination();
    const std::lock_guard<std::mutex> lock(to.mutex);
    if (to.descriptor < 0) {
        syslog(priorityOf(record.level), "%s", body.c_str());
        return;
    }
    const std::string head = timeStamp() + " " + std::to_string(getpid()) + "." +
                             std::to_string(syscall(SYS_gettid)) + " " +
                             std::to_string(record.level) + " ";
    writeLine(to.descriptor, head + body + "\n");
}

} // namespace

void osalogpre(int level, const char* function, const char* file, int line) {
    if (pendingCount == mostPending) {
        std::move(pending.begin() + 1, pending.end(), pending.begin());
        --pendingCount;
    }
    pending[pendingCount++] = {level, function != nullptr ? function : "",
                               file != nullptr ? file : "", line};
}

void osalogmini(const char* format, ...) {
    if (pendingCount == 0)
        return;
    const Pending record = pending[--pendingCount];
    if (!osalog_enabled(record.level))
        return;
    const int savedErrno = errno;
    std::array<char, longestRecord> text;
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(text.data(), text.size(), format, arguments);
    va_end(arguments);
    if (length >= static_cast<int>(text.size()))
        std::memcpy(text.data() + text.size() - 4, "...", 4);
    if (length >= 0)
        emitRecord(record, text.data());
    errno = savedErrno;
}

void osalog_set_level(int level) {
    osalog_threshold.store(level, std::memory_order_relaxed);
}

bool osalog_set_file(const std::string& path) {
    int descriptor = -1;
    if (!path.empty()) {
        descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC | O_NOCTTY, 0600);
        if (descriptor < 0)
            return false;
    }
    Destination& to = destination();
    const std::lock_guard<std::mutex> lock(to.mutex);
    if (to.descriptor >= 0)
        close(to.descriptor);
    to.descriptor = descriptor;
    return true;
}
