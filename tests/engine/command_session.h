// A session of the host program that answers line by line.
#ifndef VELCLP_TESTS_ENGINE_COMMAND_SESSION_H
#define VELCLP_TESTS_ENGINE_COMMAND_SESSION_H

#include "tests/support/clp_session.h"

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <stdexcept>
#include <string>

class CommandSession {
public:
    CommandSession(const RunDirectory& directory, const std::string& port,
                   const SessionOptions& options = {})
        : m_process(startSession(directory, port, options)) {}
    CommandSession(CommandSession&&) = default;
    // The session ends in order, so that what looks for leaks at a process's end has its say.
    ~CommandSession() {
        if (!m_process || m_isGone)
            return;
        try {
            EXPECT_EQ(0, m_process->wait()) << m_process->errors();
        } catch (const std::exception& failure) {
            ADD_FAILURE() << failure.what();
        }
    }

    // The bytes that the line is answered with. Throws std::runtime_error when the session ends or
    // hangs instead, with what it has said.
    std::string answer(const std::string& line) {
        // A line of which no other part of the system hears tells where the answer before it ends.
        const std::string probe =
            "exit -examine -output format=text,count=" + std::to_string(++m_count);
        const std::string mark = "[" + probe + "] pass syntax checking\r\n";
        m_process->send(line + "\n" + probe + "\n");
        if (!m_process->waitForOutput(mark, std::chrono::minutes(2))) {
            m_isGone = true;
            throw std::runtime_error("no answer to \"" + line + "\": " +
                                     m_process->output().substr(m_read) + m_process->errors());
        }
        const std::string::size_type end = m_process->output().find(mark, m_read);
        const std::string bytes = m_process->output().substr(m_read, end - m_read);
        m_read = end + mark.size();
        return bytes;
    }

    // Sends a line that ends the process: what it said on standard error, and its status.
    std::string lastWords(const std::string& line, int& status) {
        m_process->send(line + "\n");
        m_isGone = true;
        status = m_process->wait();
        return m_process->errors();
    }

    ChildProcess& process() { return *m_process; }

private:
    std::unique_ptr<ChildProcess> m_process;
    std::string::size_type m_read = 0;
    int m_count = 0;
    bool m_isGone = false;
};

#endif
