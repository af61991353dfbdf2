#include "simulator/httpserver.h"

#include "simulator/connection.h"
#include "simulator/connectionpool.h"

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <limits>
#include <thread>

namespace velclp_sim {

namespace {

/// Requests are small; a created instance with long arrays still fits by far.
constexpr std::size_t maxRequestSize = std::size_t{16} * 1024 * 1024;
/// Many sessions may start in the same moment.
constexpr int backlog = 1024;

/// The connection that this thread is serving.
thread_local Connection* current = nullptr;
/// Whether the request was read as a whole: what is no HTTP ends where the library gave it up.
thread_local bool understood = false;

void refuseUnread(const httplib::Request& request, httplib::Response& response) {
    if (understood) {
        return;
    }
    // A client that tries M-POST first falls back on POST (DSP0200).
    if (request.method == "M-POST") {
        response.status = 501;
    }
    response.set_header("Connection", "close");
}

void setFlag(int socket, int level, int option) {
    const int on = 1;
    ::setsockopt(socket, level, option, &on, sizeof(on));
}

} // namespace

HttpServer::HttpServer() : wake_(::eventfd(0, EFD_CLOEXEC)) {
    new_task_queue = [] { return new ConnectionPool; };
    set_payload_max_length(maxRequestSize);
    // Only what replies say of the connection: see Connection.
    set_keep_alive_timeout(Connection::keepAliveSeconds);
    set_keep_alive_max_count(std::numeric_limits<int>::max());
    set_pre_routing_handler([](const httplib::Request&, httplib::Response&) {
        understood = true;
        return HandlerResponse::Unhandled;
    });
    set_error_handler(refuseUnread);
    // Unlike the library's default this one refuses a port that another server has.
    set_socket_options([this](int socket) {
        setFlag(socket, SOL_SOCKET, SO_REUSEADDR);
        listener_ = socket;
    });
}

HttpServer::~HttpServer() {
    ::close(wake_);
}

int HttpServer::bindTo(const std::string& host, int port) {
    if (port == 0) {
        port = bind_to_any_port(host);
    } else if (!bind_to_port(host, port)) {
        port = -1;
    }
    if (port > 0) {
        ::listen(listener_, backlog);
    }
    return port;
}

void HttpServer::serve() {
    listen_after_bind();
    ended_ = true;
}

void HttpServer::stopServing() {
    const std::uint64_t one = 1;
    if (::write(wake_, &one, sizeof(one)) == sizeof(one)) {
        // The library only takes a stop once it accepts connections.
        while (!is_running() && !ended_) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
    }
    stop();
}

void HttpServer::dropConnection() {
    if (current) {
        current->drop();
    }
}

void HttpServer::cutReply(std::size_t unsentBytes) {
    if (current) {
        current->cut(unsentBytes);
    }
}

bool HttpServer::process_and_close_socket(socket_t socket) {
    setFlag(socket, IPPROTO_TCP, TCP_NODELAY);
    Connection connection(socket, wake_);
    current = &connection;
    bool good = true;
    bool closed = false;
    while (good && !closed && connection.awaitRequest()) {
        understood = false;
        good =
            process_request(connection, false, closed, nullptr) && connection.flush() && understood;
    }
    current = nullptr;
    ::shutdown(socket, SHUT_RDWR);
    ::close(socket);
    return good;
}

} // namespace velclp_sim
