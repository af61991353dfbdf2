// A server on a free loopback port (or a Unix socket) that answers each request with the next of
// the prepared replies, byte for byte, and keeps what it was sent. Without a reply left it drops
// the connection. Replies are prepared before the call that they answer.
#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

class StandIn {
public:
    StandIn();
    explicit StandIn(const std::string& socketPath);
    StandIn(const StandIn&) = delete;
    StandIn& operator=(const StandIn&) = delete;
    ~StandIn();

    const std::string& port() const { return m_port; }

    // Whole reply, status line and all. The connection stays open afterwards unless told otherwise.
    void reply(std::string bytes, bool closeAfterwards = false);
    // 200 with the XML as body.
    void replyXml(const std::string& xml);
    // What stands in IRETURNVALUE of an intrinsic reply, and in METHODRESPONSE of an extrinsic one.
    void returns(const std::string& xml);
    void methodReturns(const std::string& xml);
    // Reads the request, and drops the connection without a word.
    void drop();
    // Reads the request, and says nothing until the end of the test.
    void staySilent();

    // Head and body of the n-th request; waits for it.
    std::string request(std::size_t index = 0);
    // The part of the body between SIMPLEREQ's tags.
    std::string call(std::size_t index = 0);
    std::size_t requestCount();
    // Connections on which a request came; one that was opened and closed does not count.
    std::size_t usedConnections();
    // From now on, nothing answers at the address, and connections that are open end.
    void stop();

private:
    struct Step {
        std::string bytes;
        bool close = false;
        bool silent = false;
    };

    void add(Step step);
    void start(int listener);
    void accept();
    void serve(int socket);
    bool answer(int socket, const std::string& request, bool firstOnConnection);

    int m_listener = -1;
    std::string m_port;
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<Step> m_steps;
    std::vector<std::string> m_requests;
    std::size_t m_usedConnections = 0;
    bool m_stopping = false;
    std::vector<int> m_sockets;
    std::vector<std::thread> m_threads;
    std::thread m_acceptor;
};

// A whole CIM-XML reply around what an intrinsic or extrinsic response holds.
std::string replyMessage(const std::string& response);
