// The connections that the process keeps. A call borrows one for its duration; what it gives back
// waits, open, for the next call to the same server as the same user. Any thread.
#ifndef CIMCLIENT_CONNECTIONPOOL_H
#define CIMCLIENT_CONNECTIONPOOL_H

#include "connection.h"

#include <list>
#include <memory>
#include <mutex>
#include <string>

namespace cimclient {

class ConnectionPool {
public:
    // A connection and who may use it.
    struct Idle {
        std::string key;
        std::unique_ptr<Connection> connection;
    };

    // Of the process; never taken down, since threads may still use it while the process ends.
    static ConnectionPool& instance();

    // A borrowed connection; it goes back to the pool by itself.
    class Lease {
    public:
        // A list of one, so that it goes back without an allocation that could fail.
        explicit Lease(std::list<Idle> connection) : m_connection(std::move(connection)) {}
        Lease(const Lease&) = delete;
        Lease& operator=(const Lease&) = delete;
        ~Lease();
        Connection* operator->() const { return m_connection.front().connection.get(); }

    private:
        std::list<Idle> m_connection;
    };

    // The one used last, or a new one when none is free.
    Lease borrow(const Endpoint& endpoint);

    // Whether a connection that is still open waits for this server, whoever the user is.
    bool hasOpen(const Endpoint& endpoint);

private:
    std::list<Idle> take(const std::string& key);
    void giveBack(std::list<Idle> connection) noexcept;

    std::mutex m_mutex;
    // The last used first.
    std::list<Idle> m_idle;
};

} // namespace cimclient

#endif
