#include "tests/support/simulator_process.h"

#include <array>
#include <csignal>
#include <cstdlib>
#include <netinet/in.h>
#include <stdexcept>
#include <sys/socket.h>
#include <unistd.h>

namespace {

constexpr char greeting[] = "listening on 127.0.0.1:";

std::string portIn(const std::string& output) {
    const auto begin = output.find(greeting) + sizeof greeting - 1;
    return output.substr(begin, output.find_first_not_of("0123456789", begin) - begin);
}

class Connection {
public:
    explicit Connection(const std::string& port) : m_socket(socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_port = htons(static_cast<in_port_t>(std::atoi(port.c_str())));
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        if (connect(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof address) != 0) {
            close(m_socket);
            throw std::runtime_error("the simulator does not answer");
        }
    }
    ~Connection() { close(m_socket); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    void send(std::string text) const {
        while (!text.empty()) {
            const ssize_t n = ::send(m_socket, text.data(), text.size(), MSG_NOSIGNAL);
            if (n <= 0)
                throw std::runtime_error("the simulator does not read");
            text.erase(0, static_cast<std::size_t>(n));
        }
    }
    std::string readToEnd() const {
        std::string text;
        std::array<char, 16384> buffer;
        for (ssize_t n = 0; (n = recv(m_socket, buffer.data(), buffer.size(), 0)) > 0;)
            text.append(buffer.data(), static_cast<std::size_t>(n));
        return text;
    }

private:
    int m_socket;
};

} // namespace

SimulatorProcess::SimulatorProcess(const RunDirectory& directory,
                                   const std::vector<std::string>& arguments) {
    std::vector<std::string> command = {
        VELCLP_SIMULATOR_PROGRAM,    "--port", "0", "--model", VELCLP_MODEL_DIRECTORY, "--database",
        directory.file("clpsvc.db3")};
    command.insert(command.end(), arguments.begin(), arguments.end());
    m_process = std::make_unique<ChildProcess>(command);
    const bool greeted = m_process->waitForOutput(greeting);
    if (!greeted || !m_process->waitForOutput("\n"))
        throw std::runtime_error("the simulator did not come up: " + m_process->output() +
                                 m_process->errors());
    m_port = portIn(m_process->output());
}

std::string SimulatorProcess::request(const std::string& method, const std::string& resource,
                                      const std::string& body) const {
    const Connection connection(m_port);
    connection.send(method + " " + resource + " HTTP/1.1\r\nHost: 127.0.0.1\r\n" +
                    "Connection: close\r\nContent-Type: application/json\r\nContent-Length: " +
                    std::to_string(body.size()) + "\r\n\r\n" + body);
    const std::string reply = connection.readToEnd();
    const auto headEnd = reply.find("\r\n\r\n");
    if (reply.compare(0, 12, "HTTP/1.1 200") != 0 || headEnd == std::string::npos)
        throw std::runtime_error(method + " " + resource + ": " + reply);
    return reply.substr(headEnd + 4);
}

std::string SimulatorProcess::get(const std::string& resource) const {
    return request("GET", resource, "");
}

std::string SimulatorProcess::post(const std::string& resource, const std::string& body) const {
    return request("POST", resource, body);
}

void SimulatorProcess::stop() {
    m_process->signal(SIGKILL);
    m_process->wait();
}
