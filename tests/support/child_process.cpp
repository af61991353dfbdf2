#include "tests/support/child_process.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <utility>

extern char** environ;

namespace {

using Clock = std::chrono::steady_clock;

void closeIfOpen(int& descriptor) {
    if (descriptor >= 0)
        close(descriptor);
    descriptor = -1;
}

struct Pipe {
    std::array<int, 2> ends{-1, -1};
    Pipe() {
        if (pipe2(ends.data(), O_CLOEXEC) != 0)
            throw std::runtime_error("no pipe");
    }
    ~Pipe() {
        closeIfOpen(ends[0]);
        closeIfOpen(ends[1]);
    }
    int take(int end) { return std::exchange(ends[static_cast<std::size_t>(end)], -1); }
};

std::vector<char*> pointersTo(std::vector<std::string>& texts) {
    std::vector<char*> pointers;
    for (std::string& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

std::vector<std::string> environmentWith(const std::map<std::string, std::string>& changes) {
    std::vector<std::string> result;
    for (char** entry = environ; *entry != nullptr; ++entry) {
        const std::string text = *entry;
        if (changes.count(text.substr(0, text.find('='))) == 0)
            result.push_back(text);
    }
    for (const auto& [name, value] : changes) {
        if (!value.empty())
            result.push_back(name + "=" + value);
    }
    return result;
}

// Only what is allowed between fork and exec.
[[noreturn]] void becomeProgram(const std::array<int, 3>& descriptors, char** arguments,
                                char** environment, pid_t parent) {
    for (int i = 0; i < 3; ++i)
        dup2(descriptors[static_cast<std::size_t>(i)], i);
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    std::signal(SIGPIPE, SIG_DFL);
    if (getppid() == parent)
        execve(arguments[0], arguments, environment);
    _exit(127);
}

} // namespace

ChildProcess::ChildProcess(const std::vector<std::string>& arguments,
                           const std::map<std::string, std::string>& environment) {
    std::signal(SIGPIPE, SIG_IGN);
    std::vector<std::string> argumentTexts = arguments;
    std::vector<std::string> environmentTexts = environmentWith(environment);
    const auto argumentPointers = pointersTo(argumentTexts);
    const auto environmentPointers = pointersTo(environmentTexts);
    Pipe in;
    Pipe out;
    Pipe err;
    const pid_t self = getpid();
    m_pid = fork();
    if (m_pid < 0)
        throw std::runtime_error("no process");
    if (m_pid == 0)
        becomeProgram({in.ends[0], out.ends[1], err.ends[1]},
                      const_cast<char**>(argumentPointers.data()),
                      const_cast<char**>(environmentPointers.data()), self);
    m_in = in.take(1);
    m_out = out.take(0);
    m_err = err.take(0);
    fcntl(m_in, F_SETFL, O_NONBLOCK);
}

ChildProcess::~ChildProcess() {
    if (m_pid > 0) {
        kill(m_pid, SIGKILL);
        waitpid(m_pid, nullptr, 0);
    }
    closeIfOpen(m_in);
    closeIfOpen(m_out);
    closeIfOpen(m_err);
}

bool ChildProcess::readSome(int& descriptor, std::string& into) {
    std::array<char, 65536> buffer;
    const ssize_t n = read(descriptor, buffer.data(), buffer.size());
    if (n > 0)
        into.append(buffer.data(), static_cast<std::size_t>(n));
    else if (n == 0 || errno != EINTR)
        closeIfOpen(descriptor);
    return n > 0;
}

// One round of reading and, with an input, writing; false when nothing is open or came in time.
bool ChildProcess::pump(Milliseconds limit, std::string* input) {
    const bool writing = input != nullptr && m_in >= 0;
    if (m_out < 0 && m_err < 0 && !writing)
        return false;
    std::array<pollfd, 3> polled{pollfd{m_out, POLLIN, 0}, pollfd{m_err, POLLIN, 0},
                                 pollfd{writing ? m_in : -1, POLLOUT, 0}};
    const auto time = static_cast<int>(std::max<Milliseconds::rep>(limit.count(), 0));
    if (poll(polled.data(), polled.size(), time) <= 0)
        return false;
    if (polled[0].revents != 0)
        readSome(m_out, m_output);
    if (polled[1].revents != 0)
        readSome(m_err, m_errors);
    if (polled[2].revents != 0) {
        const ssize_t n = write(m_in, input->data(), input->size());
        if (n > 0)
            input->erase(0, static_cast<std::size_t>(n));
        else if (errno != EAGAIN && errno != EINTR)
            closeInput();
    }
    return true;
}

bool ChildProcess::send(const std::string& text) {
    std::string rest = text;
    const auto end = Clock::now() + std::chrono::seconds(20);
    while (!rest.empty() && m_in >= 0 && Clock::now() < end)
        pump(Milliseconds(1000), &rest);
    return rest.empty();
}

void ChildProcess::closeInput() {
    closeIfOpen(m_in);
}

bool ChildProcess::waitForOutput(const std::string& text, Milliseconds limit) {
    const auto end = Clock::now() + limit;
    while (m_output.find(text) == std::string::npos) {
        const auto left = std::chrono::duration_cast<Milliseconds>(end - Clock::now());
        if (left.count() <= 0 || m_out < 0)
            return false;
        pump(left, nullptr);
    }
    return true;
}

int ChildProcess::wait(Milliseconds limit) {
    closeInput();
    const auto end = Clock::now() + limit;
    while (m_out >= 0 || m_err >= 0) {
        const auto left = std::chrono::duration_cast<Milliseconds>(end - Clock::now());
        if (left.count() <= 0)
            throw std::runtime_error("the child process did not end; output: " + m_output +
                                     m_errors);
        pump(left, nullptr);
    }
    return reap(std::chrono::duration_cast<Milliseconds>(end - Clock::now()));
}

int ChildProcess::reap(Milliseconds limit) {
    const auto end = Clock::now() + limit;
    int status = 0;
    while (m_pid > 0) {
        const pid_t ended = waitpid(m_pid, &status, WNOHANG);
        if (ended == m_pid) {
            m_status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
            m_pid = -1;
        } else if (ended == 0 && Clock::now() > end) {
            throw std::runtime_error("the child process closed its output but did not end");
        } else {
            std::this_thread::sleep_for(Milliseconds(2));
        }
    }
    return m_status;
}

void ChildProcess::signal(int number) const {
    if (m_pid > 0)
        kill(m_pid, number);
}
