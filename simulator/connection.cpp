#include "simulator/connection.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

namespace velclp_sim {

namespace {

constexpr int transferMilliseconds = 30 * 1000;
constexpr std::size_t inputSize = std::size_t{16} * 1024;
constexpr std::size_t gatheredSize = std::size_t{64} * 1024;

void readAddress(const sockaddr_storage& address, std::string& ip, int& port) {
    std::array<char, INET6_ADDRSTRLEN> text{};
    if (address.ss_family == AF_INET) {
        sockaddr_in four{};
        std::memcpy(&four, &address, sizeof(four));
        inet_ntop(AF_INET, &four.sin_addr, text.data(), text.size());
        port = ntohs(four.sin_port);
    } else if (address.ss_family == AF_INET6) {
        sockaddr_in6 six{};
        std::memcpy(&six, &address, sizeof(six));
        inet_ntop(AF_INET6, &six.sin6_addr, text.data(), text.size());
        port = ntohs(six.sin6_port);
    }
    ip = text.data();
}

} // namespace

bool Connection::await(short events, int milliseconds) const {
    std::array<pollfd, 2> waits{{{socket_, events, 0}, {wake_, POLLIN, 0}}};
    int ready = 0;
    do {
        ready = ::poll(waits.data(), waits.size(), milliseconds);
    } while (ready < 0 && errno == EINTR);
    return ready > 0 && waits[0].revents != 0;
}

bool Connection::awaitRequest() {
    return good_ && (inAt_ < in_.size() || await(POLLIN, keepAliveSeconds * 1000)) && !ending();
}

bool Connection::ending() const {
    pollfd wake{wake_, POLLIN, 0};
    return ::poll(&wake, 1, 0) > 0;
}

bool Connection::is_readable() const {
    return good_ && (inAt_ < in_.size() || await(POLLIN, 0));
}

ssize_t Connection::read(char* data, size_t size) {
    if (inAt_ == in_.size()) {
        // An interim reply ("100 Continue") must not wait for the request's rest.
        if (!flush() || !await(POLLIN, transferMilliseconds)) {
            return -1;
        }
        in_.resize(inputSize);
        inAt_ = 0;
        const ssize_t got = ::recv(socket_, in_.data(), in_.size(), 0);
        in_.resize(got > 0 ? static_cast<std::size_t>(got) : 0);
        if (got <= 0) {
            good_ = false;
            return got;
        }
    }
    const std::size_t taken = std::min(size, in_.size() - inAt_);
    std::memcpy(data, in_.data() + inAt_, taken);
    inAt_ += taken;
    return static_cast<ssize_t>(taken);
}

ssize_t Connection::write(const char* data, size_t size) {
    if (!good_) {
        return -1;
    }
    if (unsent_ == 0 && out_.size() + size > gatheredSize) {
        if (!flush() || !sendAll(data, size)) {
            return -1;
        }
    } else {
        out_.append(data, size);
    }
    return static_cast<ssize_t>(size);
}

bool Connection::flush() {
    if (!good_) {
        return false;
    }
    out_.resize(out_.size() - std::min(unsent_, out_.size()));
    const bool sent = sendAll(out_.data(), out_.size());
    out_.clear();
    good_ = sent && unsent_ == 0;
    return good_;
}

bool Connection::sendAll(const char* data, std::size_t size) {
    while (size > 0) {
        const ssize_t sent = ::send(socket_, data, size, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (sent > 0) {
            data += sent;
            size -= static_cast<std::size_t>(sent);
        } else if (errno != EINTR && (errno != EAGAIN || !await(POLLOUT, transferMilliseconds))) {
            good_ = false;
            return false;
        }
    }
    return true;
}

void Connection::drop() {
    out_.clear();
    good_ = false;
}

void Connection::get_remote_ip_and_port(std::string& ip, int& port) const {
    sockaddr_storage address{};
    socklen_t size = sizeof(address);
    ::getpeername(socket_, reinterpret_cast<sockaddr*>(&address), &size);
    readAddress(address, ip, port);
}

void Connection::get_local_ip_and_port(std::string& ip, int& port) const {
    sockaddr_storage address{};
    socklen_t size = sizeof(address);
    ::getsockname(socket_, reinterpret_cast<sockaddr*>(&address), &size);
    readAddress(address, ip, port);
}

} // namespace velclp_sim
