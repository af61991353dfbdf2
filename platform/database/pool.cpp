#include "database/pool.h"

#include "database/failure.h"
#include "database/faultpoint.h"

#include <pthread.h>
#include <sqlite3.h>

namespace database {

namespace {

constexpr std::size_t mostIdle = 8;

// Leaves the files in order when the process ends.
struct CloseAtExit {
    ~CloseAtExit() { Pool::instance().closeIdle(); }
};

} // namespace

Pool& Pool::instance() {
    static auto* pool = new Pool;
    static const CloseAtExit closeAtExit;
    return *pool;
}

Pool::Pool() {
    pthread_atfork([] { instance().beforeFork(); }, [] { instance().inParent(); },
                   [] { instance().inChild(); });
}

Lease Pool::take(const std::string& path, int timeoutMilliseconds) {
    if (const int planted = dbfaults::connectionFault())
        fail(nullptr, planted, "", path);
    std::unique_ptr<Handle> handle = takeIdle(path);
    if (handle == nullptr) {
        refuseInherited(path);
        handle = std::make_unique<Handle>(path, timeoutMilliseconds);
    }
    handle->setTimeout(timeoutMilliseconds);
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        ++m_inUse[handle->identity()];
    }
    return Lease(handle.release(), [this](Handle* used) { giveBack(used); });
}

std::unique_ptr<Handle> Pool::takeIdle(const std::string& path) {
    Idle stale;
    const std::lock_guard<std::mutex> lock(m_mutex);
    Idle& idle = m_idle[path];
    while (!idle.empty()) {
        std::unique_ptr<Handle> handle = std::move(idle.back());
        idle.pop_back();
        if (handle->isGood())
            return handle;
        stale.push_back(std::move(handle));
    }
    return nullptr;
}

void Pool::giveBack(Handle* handle) {
    std::unique_ptr<Handle> owned(handle);
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto use = m_inUse.find(owned->identity());
    if (use != m_inUse.end() && --use->second == 0)
        m_inUse.erase(use);
    Idle& idle = m_idle[owned->path()];
    if (idle.size() < mostIdle && owned->isSound())
        idle.push_back(std::move(owned));
}

void Pool::closeIdle() {
    std::map<std::string, Idle> idle;
    const std::lock_guard<std::mutex> lock(m_mutex);
    idle.swap(m_idle);
}

void Pool::refuseInherited(const std::string& path) {
    FileIdentity identity;
    if (!identityOf(path, identity))
        return;
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_inherited.count(identity) != 0)
        fail("the database was in use when this process was forked", SQLITE_MISUSE);
}

void Pool::beforeFork() {
    m_mutex.lock();
    m_idle.clear();
}

void Pool::inParent() {
    m_mutex.unlock();
}

void Pool::inChild() {
    countFork();
    m_inherited.insert(m_inUse.begin(), m_inUse.end());
    m_inUse.clear();
    m_mutex.unlock();
}

} // namespace database
