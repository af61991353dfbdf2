#include "tests/support/pty_session.h"

#include <fcntl.h>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <iterator>
#include <stdexcept>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;

const char CARRIAGE_RETURN = 13;

PtySession::Milliseconds until(Clock::time_point end) {
    return std::max(PtySession::Milliseconds(0),
                    std::chrono::duration_cast<PtySession::Milliseconds>(end - Clock::now()));
}

PtySession::Milliseconds toMilliseconds(const timeval& time) {
    return std::chrono::seconds(time.tv_sec) + PtySession::Milliseconds(time.tv_usec / 1000);
}

void attach(int slave, bool isControlling) {
    setsid();
    if (isControlling)
        ioctl(slave, TIOCSCTTY, 0);
    for (const int standard : {0, 1, 2})
        dup2(slave, standard);
    close(slave);
}

[[noreturn]] void becomeHost(const PtySession::Options& options,
                             const std::vector<std::string>& arguments,
                             const std::map<std::string, std::string>& environment) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    std::signal(SIGPIPE, SIG_DFL);
    for (const auto& [name, value] : environment) {
        if (value.empty())
            unsetenv(name.c_str());
        else
            setenv(name.c_str(), value.c_str(), 1);
    }
    std::vector<char*> argv;
    for (const std::string& argument : arguments)
        argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    execv(options.program.empty() ? VELCLP_HOST_PROGRAM : options.program.c_str(), argv.data());
    _exit(127);
}

} // namespace

PtySession::PtySession(const RunDirectory& directory, const std::string& port,
                       const Options& options)
    : m_screen(options.columns > 0 ? options.columns : 80) {
    std::vector<std::string> arguments = {options.name, "--prefix", directory.path(), "--port",
                                          port};
    arguments.insert(arguments.end(), options.arguments.begin(), options.arguments.end());
    std::map<std::string, std::string> environment = options.environment;
    environment.insert({{"USER", "admin"}, {"privileges", "511"}});
    const winsize size = {static_cast<unsigned short>(options.rows),
                          static_cast<unsigned short>(options.columns), 0, 0};
    int slave = -1;
    if (openpty(&m_master, &slave, nullptr, nullptr, &size) != 0)
        throw std::runtime_error("no terminal");
    tcgetattr(slave, &m_initial);
    m_pid = fork();
    if (m_pid < 0)
        throw std::runtime_error("no process");
    if (m_pid == 0) {
        close(m_master);
        attach(slave, options.isControlling);
        becomeHost(options, arguments, environment);
    }
    close(slave);
    fcntl(m_master, F_SETFL, O_NONBLOCK);
}

PtySession::~PtySession() {
    if (m_pid > 0) {
        kill(m_pid, SIGKILL);
        waitpid(m_pid, nullptr, 0);
    }
    if (m_master >= 0)
        close(m_master);
}

// Reads what is there within the time; false when nothing came, or nothing can come any more.
bool PtySession::pump(Milliseconds limit) {
    if (m_master < 0)
        return false;
    pollfd polled = {m_master, POLLIN, 0};
    if (poll(&polled, 1, static_cast<int>(limit.count())) <= 0)
        return false;
    std::array<char, 65536> buffer;
    const ssize_t count = read(m_master, buffer.data(), buffer.size());
    if (count <= 0)
        return count < 0 && (errno == EINTR || errno == EAGAIN);
    for (const char byte : std::string(buffer.data(), static_cast<std::size_t>(count))) {
        m_screen.write(std::string(1, byte));
        if (byte == CARRIAGE_RETURN)
            continue;
        m_output += byte;
        m_rows.push_back(m_screen.row());
    }
    return true;
}

void PtySession::type(const std::string& bytes) {
    const auto end = Clock::now() + std::chrono::seconds(60);
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t count = write(m_master, bytes.data() + done, bytes.size() - done);
        if (count > 0)
            done += static_cast<std::size_t>(count);
        else if (Clock::now() > end || (errno != EAGAIN && errno != EINTR))
            throw std::runtime_error("the session takes no more input");
        pump(Milliseconds(count > 0 ? 0 : 10));
    }
}

std::string PtySession::expect(const std::string& text, Milliseconds limit) {
    const auto end = Clock::now() + limit;
    for (;;) {
        const std::size_t found = m_output.find(text, m_seen);
        if (found != std::string::npos) {
            const std::string result = m_output.substr(m_seen, found - m_seen);
            m_seen = found + text.size();
            return result;
        }
        if (!pump(until(end)))
            throw std::runtime_error("\"" + text + "\" did not come: " + m_output.substr(m_seen));
    }
}

std::string PtySession::prompt() {
    const std::string before = expect("-> ");
    m_promptRow = m_rows[m_seen - 1];
    return before;
}

std::string PtySession::answer(const std::string& line) {
    type(line + "\r");
    expect(line + "\n");
    return prompt();
}

bool PtySession::quiet(Milliseconds time) {
    return !pump(time);
}

std::vector<std::string> PtySession::view() const {
    std::vector<std::string> rows = m_screen.rows();
    const auto cursorRow = static_cast<std::size_t>(m_screen.row());
    rows.resize(std::max(rows.size(), cursorRow + 1));
    std::string& row = rows[cursorRow];
    const auto column = static_cast<std::size_t>(m_screen.column());
    row.resize(std::max(row.size(), column), ' ');
    row.insert(column, 1, '|');
    return {rows.begin() + m_promptRow, rows.end()};
}

std::vector<std::string> PtySession::viewBecomes(const std::vector<std::string>& expected) {
    const auto end = Clock::now() + std::chrono::seconds(5);
    while (view() != expected && pump(until(end)))
        continue;
    return view();
}

void PtySession::resize(int columns, int rows) const {
    const winsize size = {static_cast<unsigned short>(rows), static_cast<unsigned short>(columns),
                          0, 0};
    ioctl(m_master, TIOCSWINSZ, &size);
}

void PtySession::signal(int number) const {
    kill(m_pid, number);
}

void PtySession::hangUp() {
    close(m_master);
    m_master = -1;
}

int PtySession::wait(Milliseconds limit) {
    const auto end = Clock::now() + limit;
    int status = 0;
    rusage used{};
    while (m_pid > 0 && wait4(m_pid, &status, WNOHANG, &used) == 0) {
        if (Clock::now() > end)
            throw std::runtime_error("the session did not end: " + m_output);
        if (!pump(Milliseconds(5)))
            std::this_thread::sleep_for(Milliseconds(2));
    }
    m_pid = -1;
    m_processorTime = toMilliseconds(used.ru_utime) + toMilliseconds(used.ru_stime);
    while (pump(Milliseconds(0)))
        continue;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

bool PtySession::isRestored() const {
    const termios now = settings();
    return now.c_iflag == m_initial.c_iflag && now.c_oflag == m_initial.c_oflag &&
           now.c_cflag == m_initial.c_cflag && now.c_lflag == m_initial.c_lflag &&
           std::equal(std::begin(now.c_cc), std::end(now.c_cc), std::begin(m_initial.c_cc));
}

termios PtySession::settings() const {
    termios result{};
    if (tcgetattr(m_master, &result) != 0)
        throw std::runtime_error("the terminal has no settings");
    return result;
}
