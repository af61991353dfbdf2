#include "tests/support/simulator_process.h"

#include "tests/support/connection.h"

#include <csignal>
#include <stdexcept>

namespace {

constexpr char greeting[] = "listening on 127.0.0.1:";

std::string portIn(const std::string& output) {
    const auto begin = output.find(greeting) + sizeof greeting - 1;
    return output.substr(begin, output.find_first_not_of("0123456789", begin) - begin);
}

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
    const std::string reply = connection.receive();
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
