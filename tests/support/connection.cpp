#include "tests/support/connection.h"

#include <array>
#include <cstdlib>
#include <netinet/in.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

Connection::Connection(const std::string& port) : m_socket(socket(AF_INET, SOCK_STREAM, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<in_port_t>(std::atoi(port.c_str())));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (connect(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
        close(m_socket);
        throw std::runtime_error("nobody listens on port " + port);
    }
    const timeval limit{10, 0};
    setsockopt(m_socket, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit);
}

Connection::~Connection() {
    close(m_socket);
}

void Connection::send(std::string text) const {
    while (!text.empty()) {
        const ssize_t n = ::send(m_socket, text.data(), text.size(), MSG_NOSIGNAL);
        if (n <= 0)
            throw std::runtime_error("the other end does not read");
        text.erase(0, static_cast<std::size_t>(n));
    }
}

std::string Connection::receive(const std::string& until) const {
    std::string text;
    std::array<char, 16384> buffer;
    while (until.empty() || text.find(until) == std::string::npos) {
        const ssize_t n = recv(m_socket, buffer.data(), buffer.size(), 0);
        if (n <= 0)
            break;
        text.append(buffer.data(), static_cast<std::size_t>(n));
    }
    return text;
}
