// The handles of this process that no connection uses at the moment.
#ifndef VELCLP_PLATFORM_DATABASE_POOL_H
#define VELCLP_PLATFORM_DATABASE_POOL_H

#include "database/handle.h"

#include <map>
#include <memory>
#include <mutex>
#include <vector>

namespace database {

// A handle in use; goes back to the pool with its last owner.
using Lease = std::shared_ptr<Handle>;

class Pool {
public:
    // The process's pool; never destroyed, since sessions write their last words at exit.
    static Pool& instance();

    // An idle handle on the file, or a new one. Throws CDBC_Exception.
    Lease take(const std::string& path, int timeoutMilliseconds);
    void closeIdle();

private:
    using Idle = std::vector<std::unique_ptr<Handle>>;

    Pool();
    std::unique_ptr<Handle> takeIdle(const std::string& path);
    void giveBack(Handle* handle);
    void refuseInherited(const std::string& path);
    // Around fork(): a child may not use what its parent has open, nor may it open a file anew
    // that it inherits open, since SQLite would take the parent's locks for its own.
    void beforeFork();
    void inParent();
    void inChild();

    std::mutex m_mutex;
    std::map<std::string, Idle> m_idle;
    std::map<FileIdentity, int> m_inUse;
    std::map<FileIdentity, int> m_inherited;
};

} // namespace database

#endif
