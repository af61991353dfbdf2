// The HTTP server: cpp-httplib does the protocol, this class its sockets. A connection waits for
// its next request in one poll that the server's end wakes too, a reply leaves in one piece, and a
// planted fault can close a connection in the middle of it. Every connection has a thread, made
// when it is needed.
#pragma once

#include <httplib.h>

#include <atomic>
#include <string>

namespace velclp_sim {

class HttpServer : public httplib::Server {
public:
    HttpServer();
    ~HttpServer() override;
    HttpServer(const HttpServer&) = delete;
    HttpServer& operator=(const HttpServer&) = delete;

    /// Binds and begins to listen; port 0 takes a free one. The port, or -1 when it cannot be had.
    int bindTo(const std::string& host, int port);

    /// Serves until stopServing(); bindTo() comes first.
    void serve();

    /// Ends serve(), on any thread; connections are closed when their current request is answered.
    void stopServing();

    /// Called in a handler: closes the connection that is being served instead of answering.
    static void dropConnection();
    /// Called in a handler: leaves the last bytes of the reply unsent, and closes the connection.
    static void cutReply(std::size_t unsentBytes);

private:
    bool process_and_close_socket(socket_t socket) override;

    std::atomic<bool> ended_{false};
    int listener_ = -1;
    int wake_ = -1;
};

} // namespace velclp_sim
