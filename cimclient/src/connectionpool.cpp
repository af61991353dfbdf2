#include "connectionpool.h"

#include <algorithm>
#include <utility>

namespace cimclient {

namespace {

constexpr std::size_t maxIdle = 8;

} // namespace

ConnectionPool& ConnectionPool::instance() {
    static ConnectionPool& pool = *new ConnectionPool;
    return pool;
}

ConnectionPool::Lease::~Lease() {
    ConnectionPool::instance().giveBack(std::move(m_connection));
}

ConnectionPool::Lease ConnectionPool::borrow(const Endpoint& endpoint) {
    std::string key = endpoint.key();
    std::list<Idle> connection = take(key);
    if (connection.empty())
        connection.push_back({std::move(key), std::make_unique<Connection>(endpoint)});
    return Lease(std::move(connection));
}

bool ConnectionPool::hasOpen(const Endpoint& endpoint) {
    const std::string server = endpoint.serverKey();
    const std::lock_guard<std::mutex> lock(m_mutex);
    return std::any_of(m_idle.begin(), m_idle.end(), [&server](const Idle& idle) {
        return idle.key.compare(0, server.size(), server) == 0 && idle.connection->isOpen();
    });
}

std::list<ConnectionPool::Idle> ConnectionPool::take(const std::string& key) {
    std::list<Idle> taken;
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = std::find_if(m_idle.begin(), m_idle.end(),
                                    [&key](const Idle& idle) { return idle.key == key; });
    if (found != m_idle.end())
        taken.splice(taken.begin(), m_idle, found);
    return taken;
}

void ConnectionPool::giveBack(std::list<Idle> connection) noexcept {
    connection.front().connection->trim();
    // Taken down outside of the lock: closing may take its time.
    std::list<Idle> surplus;
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_idle.splice(m_idle.begin(), connection);
    if (m_idle.size() > maxIdle)
        surplus.splice(surplus.begin(), m_idle, std::prev(m_idle.end()));
}

} // namespace cimclient
