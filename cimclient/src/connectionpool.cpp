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

ConnectionPool::Lease::Lease(std::string key, std::unique_ptr<Connection> connection)
    : m_key(std::move(key)), m_connection(std::move(connection)) {}

ConnectionPool::Lease::~Lease() {
    ConnectionPool::instance().giveBack(std::move(m_key), std::move(m_connection));
}

ConnectionPool::Lease ConnectionPool::borrow(const Endpoint& endpoint) {
    std::string key = endpoint.key();
    auto connection = take(key);
    if (!connection)
        connection = std::make_unique<Connection>(endpoint);
    return {std::move(key), std::move(connection)};
}

bool ConnectionPool::hasOpen(const Endpoint& endpoint) {
    const std::string server = endpoint.serverKey();
    const std::lock_guard<std::mutex> lock(m_mutex);
    return std::any_of(m_idle.begin(), m_idle.end(), [&server](const Idle& idle) {
        return idle.key.compare(0, server.size(), server) == 0 && idle.connection->isOpen();
    });
}

std::unique_ptr<Connection> ConnectionPool::take(const std::string& key) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = std::find_if(m_idle.begin(), m_idle.end(),
                                    [&key](const Idle& idle) { return idle.key == key; });
    if (found == m_idle.end())
        return nullptr;
    auto connection = std::move(found->connection);
    m_idle.erase(found);
    return connection;
}

void ConnectionPool::giveBack(std::string key, std::unique_ptr<Connection> connection) {
    connection->trim();
    // Taken down outside of the lock: closing may take its time.
    std::list<Idle> surplus;
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_idle.push_front({std::move(key), std::move(connection)});
    if (m_idle.size() > maxIdle)
        surplus.splice(surplus.begin(), m_idle, std::prev(m_idle.end()));
}

} // namespace cimclient
