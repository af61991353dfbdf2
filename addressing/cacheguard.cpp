#include "velclp/cacheguard.h"

#include "velclp/locations.h"
#include "velclp/log.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/file.h>

namespace velmora_clp {

std::int32_t CacheGuard::locked_fd = -1;
bool CacheGuard::process_locked = false;

namespace {

int openLockFile() {
    return open(Locations::get().schemaFile.c_str(), O_RDONLY | O_CLOEXEC, 0700);
}

int lockFile(int fd, int operation) {
    int result = 0;
    do {
        result = flock(fd, operation);
    } while (result != 0 && errno == EINTR);
    return result;
}

} // namespace

CacheGuard::CacheGuard(int exclusive) : owned(false) {
    const char* const function = "CLP.CacheGuard.CacheGuard";
    VELCLP_TRACE(function);
    if (process_locked)
        return;
    if (locked_fd == -1)
        locked_fd = openLockFile();
    if (locked_fd == -1) {
        VELCLP_LOG_FAILURE(function, "Open process lock file failed.");
        throw static_cast<const char*>("Open process lock file failed.");
    }
    if (lockFile(locked_fd, exclusive != 0 ? LOCK_EX : LOCK_SH) != 0) {
        VELCLP_LOG_FAILURE(function, "Process lock action failed.");
        throw static_cast<const char*>("Process lock action failed.");
    }
    owned = true;
    process_locked = true;
}

CacheGuard::~CacheGuard() {
    if (!owned)
        return;
    lockFile(locked_fd, LOCK_UN);
    process_locked = false;
}

} // namespace velmora_clp
