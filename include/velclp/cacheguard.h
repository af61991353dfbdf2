// Keeps the processes of the controller apart while they work on the address cache: a lock on the
// schema file, exclusive for writes and shared for reads of classes whose instances come and go.
// A guard is a scoped object. Within a process guards nest: an inner one does nothing, so it
// neither blocks, nor turns a shared lock into an exclusive one, nor unlocks when it ends. Threads
// of one process are not kept apart.
#ifndef VELCLP_CACHEGUARD_H
#define VELCLP_CACHEGUARD_H

#include <cstdint>

namespace velmora_clp {

class CacheGuard {
public:
    // Blocks until the lock is granted: exclusive when the argument is not 0. Throws a const char*
    // text when the lock file cannot be opened or the lock fails.
    explicit CacheGuard(int exclusive);
    ~CacheGuard();
    CacheGuard(const CacheGuard&) = delete;
    CacheGuard& operator=(const CacheGuard&) = delete;

private:
    // Whether this guard took the lock.
    bool owned;

    // The lock file, open for the life of the process and never handed to a child.
    static std::int32_t locked_fd;
    static bool process_locked;
};

} // namespace velmora_clp

#endif
