// A TCP connection to a port of this machine, of a client that is no better than it must be.
#ifndef VELCLP_TESTS_SUPPORT_CONNECTION_H
#define VELCLP_TESTS_SUPPORT_CONNECTION_H

#include <string>

class Connection {
public:
    // Throws std::runtime_error when nobody listens there.
    explicit Connection(const std::string& port);
    ~Connection();
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    // Throws std::runtime_error when the other end does not read.
    void send(std::string text) const;
    // Bytes until the other end closes, or until the text has come; at most ten seconds without
    // any.
    std::string receive(const std::string& until = "") const;

private:
    int m_socket;
};

#endif
