#include "standin.h"

#include <netinet/in.h>
#include <strings.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

namespace {

constexpr auto patience = std::chrono::seconds(20);

std::size_t contentLength(const std::string& head) {
    const char* name = strcasestr(head.c_str(), "\r\nContent-Length:");
    return name ? std::strtoul(name + std::strlen("\r\nContent-Length:"), nullptr, 10) : 0;
}

// The next whole request from the socket, what came behind it staying in the buffer; empty when
// the connection ends.
std::string readRequest(int socket, std::string& buffer) {
    char bytes[16384];
    while (true) {
        const std::size_t headEnd = buffer.find("\r\n\r\n");
        if (headEnd != std::string::npos) {
            const std::size_t size = headEnd + 4 + contentLength(buffer.substr(0, headEnd + 2));
            if (buffer.size() >= size) {
                std::string request = buffer.substr(0, size);
                buffer.erase(0, size);
                return request;
            }
        }
        const ssize_t count = recv(socket, bytes, sizeof bytes, 0);
        if (count <= 0)
            return {};
        buffer.append(bytes, static_cast<std::size_t>(count));
    }
}

void sendAll(int socket, const std::string& bytes) {
    std::size_t sent = 0;
    while (sent < bytes.size()) {
        const ssize_t count = send(socket, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count <= 0)
            return;
        sent += static_cast<std::size_t>(count);
    }
}

} // namespace

std::string replyMessage(const std::string& response) {
    return "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<CIM CIMVERSION=\"2.0\" "
           "DTDVERSION=\"2.0\">\n"
           "<MESSAGE ID=\"4711\" PROTOCOLVERSION=\"1.0\">\n<SIMPLERSP>\n" +
           response + "\n</SIMPLERSP>\n</MESSAGE>\n</CIM>\n";
}

StandIn::StandIn() {
    const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    if (bind(listener, reinterpret_cast<sockaddr*>(&address), size) != 0 ||
        getsockname(listener, reinterpret_cast<sockaddr*>(&address), &size) != 0)
        throw std::runtime_error("no port");
    m_port = std::to_string(ntohs(address.sin_port));
    start(listener);
}

StandIn::StandIn(const std::string& socketPath) : m_port(socketPath) {
    const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    socketPath.copy(address.sun_path, sizeof address.sun_path - 1);
    if (bind(listener, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0)
        throw std::runtime_error("no socket");
    start(listener);
}

StandIn::~StandIn() {
    stop();
}

void StandIn::start(int listener) {
    m_listener = listener;
    if (listen(listener, 16) != 0)
        throw std::runtime_error("cannot listen");
    m_acceptor = std::thread([this] { accept(); });
}

void StandIn::stop() {
    if (!m_acceptor.joinable())
        return;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stopping = true;
        for (const int socket : m_sockets)
            shutdown(socket, SHUT_RDWR);
    }
    m_changed.notify_all();
    shutdown(m_listener, SHUT_RDWR);
    m_acceptor.join();
    for (std::thread& thread : m_threads)
        thread.join();
    for (const int socket : m_sockets)
        close(socket);
    close(m_listener);
}

void StandIn::accept() {
    while (true) {
        const int socket = ::accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (socket < 0 || m_stopping) {
            if (socket >= 0)
                close(socket);
            return;
        }
        m_sockets.push_back(socket);
        m_threads.emplace_back([this, socket] { serve(socket); });
    }
}

void StandIn::serve(int socket) {
    std::string buffer;
    bool first = true;
    for (auto request = readRequest(socket, buffer); !request.empty();
         request = readRequest(socket, buffer)) {
        if (!answer(socket, request, first))
            break;
        first = false;
    }
    shutdown(socket, SHUT_RDWR);
}

bool StandIn::answer(int socket, const std::string& request, bool firstOnConnection) {
    Step step;
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_requests.push_back(request);
        m_usedConnections += firstOnConnection ? 1 : 0;
        m_changed.notify_all();
        if (m_steps.empty())
            return false;
        step = std::move(m_steps.front());
        m_steps.pop_front();
        if (step.silent)
            m_changed.wait(lock, [this] { return m_stopping; });
    }
    sendAll(socket, step.bytes);
    return !step.close;
}

void StandIn::add(Step step) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_steps.push_back(std::move(step));
}

void StandIn::reply(std::string bytes, bool closeAfterwards) {
    add({std::move(bytes), closeAfterwards, false});
}

void StandIn::replyXml(const std::string& xml) {
    reply("HTTP/1.1 200 OK\r\nContent-Type: application/xml; charset=\"utf-8\"\r\n"
          "CIMOperation: MethodResponse\r\nContent-Length: " +
          std::to_string(xml.size()) + "\r\n\r\n" + xml);
}

void StandIn::returns(const std::string& xml) {
    replyXml(replyMessage("<IMETHODRESPONSE NAME=\"Any\">\n<IRETURNVALUE>\n" + xml +
                          "\n</IRETURNVALUE>\n</IMETHODRESPONSE>"));
}

void StandIn::methodReturns(const std::string& xml) {
    replyXml(replyMessage("<METHODRESPONSE NAME=\"Any\">" + xml + "</METHODRESPONSE>"));
}

void StandIn::drop() {
    add({"", true, false});
}

void StandIn::staySilent() {
    add({"", true, true});
}

std::string StandIn::request(std::size_t index) {
    std::unique_lock<std::mutex> lock(m_mutex);
    if (!m_changed.wait_for(lock, patience, [&] { return m_requests.size() > index; }))
        return "no such request";
    return m_requests[index];
}

std::string StandIn::call(std::size_t index) {
    const std::string bytes = request(index);
    const std::string begin = "<SIMPLEREQ>";
    const std::size_t from = bytes.find(begin);
    const std::size_t to = bytes.find("</SIMPLEREQ>");
    if (from == std::string::npos || to == std::string::npos)
        return "no call in: " + bytes;
    return bytes.substr(from + begin.size(), to - from - begin.size());
}

std::size_t StandIn::requestCount() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_requests.size();
}

std::size_t StandIn::usedConnections() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_usedConnections;
}
