// The lock file of the address cache that this process has open: that of its first test, which is
// deleted by now when several run in one process.
#ifndef VELCLP_TESTS_SUPPORT_LOCK_FILE_H
#define VELCLP_TESTS_SUPPORT_LOCK_FILE_H

#include <fcntl.h>
#include <filesystem>
#include <string>
#include <sys/file.h>
#include <unistd.h>

// Holds the lock as another process would, until release().
class ForeignLock {
public:
    explicit ForeignLock(int operation = LOCK_EX)
        : m_fd(open(path().c_str(), O_RDONLY | O_CLOEXEC)) {
        flock(m_fd, operation);
    }
    ~ForeignLock() { release(); }
    ForeignLock(const ForeignLock&) = delete;
    ForeignLock& operator=(const ForeignLock&) = delete;

    void release() {
        if (m_fd >= 0)
            close(m_fd);
        m_fd = -1;
    }

private:
    static std::string path() {
        for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
            std::error_code error;
            const std::string target = std::filesystem::read_symlink(entry, error);
            if (target.find("/schema.conf") != std::string::npos)
                return entry.path();
        }
        return "";
    }

    int m_fd;
};

#endif
