// One accepted TCP connection as cpp-httplib's stream: input is buffered, output is gathered until
// a request is answered, and both give up after a while or when the server ends.
#pragma once

#include <httplib.h>

#include <string>

namespace velclp_sim {

class Connection : public httplib::Stream {
public:
    /// How long a connection is kept without a request.
    static constexpr int keepAliveSeconds = 600;

    /// `wake` becomes readable when the server ends; both descriptors stay the caller's.
    Connection(int socket, int wake) : socket_(socket), wake_(wake) {}

    /// Waits for the next request's first byte; false when the peer has gone, when none comes in
    /// time, or when the server ends.
    bool awaitRequest();

    /// Sends what is gathered. False when the connection is no longer good.
    bool flush();

    /// Nothing more is sent; what is gathered is forgotten.
    void drop();
    /// The last bytes that flush() would send stay unsent, and the connection is no longer good.
    void cut(std::size_t unsentBytes) { unsent_ = unsentBytes; }

    bool is_readable() const override;
    bool is_writable() const override { return good_; }
    ssize_t read(char* data, size_t size) override;
    ssize_t write(const char* data, size_t size) override;
    void get_remote_ip_and_port(std::string& ip, int& port) const override;
    void get_local_ip_and_port(std::string& ip, int& port) const override;
    socket_t socket() const override { return socket_; }

private:
    bool await(short events, int milliseconds) const;
    /// True when the server ends: a client that never pauses must not hold it up.
    bool ending() const;
    bool sendAll(const char* data, std::size_t size);

    int socket_;
    int wake_;
    bool good_ = true;
    std::string in_;
    std::size_t inAt_ = 0;
    std::string out_;
    std::size_t unsent_ = 0;
};

} // namespace velclp_sim
