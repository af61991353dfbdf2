#include "velclp/stdstream.h"

#include "velclp/historybuf.h"
#include "velclp/lineedit.h"
#include "velclp/log.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <sys/select.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iostream>

namespace {
const int OUTPUT = 1;
const int FAILED = -1;
const char CONTINUATION = '`';

// Whether a terminal that gave nothing never will again.
bool isGone(int terminal) {
    pollfd state = {terminal, POLLIN, 0};
    return poll(&state, 1, 0) > 0 && (state.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0;
}
} // namespace

timeval stdStream::this_tv = {0, 0};
int stdStream::s_wakeupFd = -1;
int (*stdStream::s_wakeup)() = nullptr;

stdStream::stdStream() : m_history(nullptr), m_saved(), m_fd(0), m_tty(false) {
    VELCLP_TRACE("CLP.stdStream.stdStream");
    m_tty = isatty(m_fd) != 0 && tcgetattr(m_fd, &m_saved) == 0;
    RawTTY();
}

stdStream::~stdStream() {
    stdStream::RestoreTTY();
    delete m_history;
}

void stdStream::RawTTY() {
    if (!m_tty)
        return;
    termios raw = m_saved;
    raw.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
    raw.c_iflag &= ~static_cast<tcflag_t>(ISTRIP | INLCR | IGNCR | ICRNL);
    // What these count in character mode is what a line discipline keeps two characters in. A read
    // must not wait: the interrupt key throws away what select() saw, and would go unheard.
    raw.c_cc[VMIN] = 0;
    raw.c_cc[VTIME] = 0;
    tcsetattr(m_fd, TCSANOW, &raw);
}

void stdStream::RestoreTTY() {
    if (m_tty)
        tcsetattr(m_fd, TCSANOW, &m_saved);
}

void stdStream::CreateHistoryBuf() {
    if (m_history == nullptr)
        m_history = new HistoryBuf;
}

void stdStream::setTimeout(int seconds) {
    this_tv.tv_sec = std::max(seconds, 0);
    this_tv.tv_usec = 0;
}

void stdStream::setWakeup(int fd, int (*handler)()) {
    s_wakeupFd = handler != nullptr && fd < FD_SETSIZE ? fd : -1;
    s_wakeup = handler;
}

int stdStream::wait() {
    // select() keeps the time that is left in `left`, so that a wake-up doesn't prolong the wait.
    timeval left = this_tv;
    timeval* const limit = this_tv.tv_sec >= 1 ? &left : nullptr;
    for (;;) {
        fd_set ready;
        FD_ZERO(&ready);
        FD_SET(m_fd, &ready);
        if (s_wakeupFd >= 0)
            FD_SET(s_wakeupFd, &ready);
        const int count = select(std::max(m_fd, s_wakeupFd) + 1, &ready, nullptr, nullptr, limit);
        if (count == 0)
            return CLOSED;
        if (count < 0 && errno != EINTR)
            return FAILED;
        if (count < 0)
            continue;
        // At a terminal also before input is read: an interrupt key comes as a signal, which must
        // not overtake what is typed behind it.
        if (s_wakeupFd >= 0 && (m_tty || FD_ISSET(s_wakeupFd, &ready))) {
            const int result = s_wakeup();
            if (result < 0)
                return result;
        }
        if (FD_ISSET(m_fd, &ready))
            return 0;
    }
}

int stdStream::read(void* buf, int n) {
    constexpr char const* FUNCTION = "CLP.stdStream.read";
    for (;;) {
        const int result = wait();
        if (result < 0) {
            VELCLP_LOG_BRANCH(FUNCTION, "wait=[%d]", result);
            return result;
        }
        const ssize_t count = ::read(m_fd, buf, static_cast<std::size_t>(std::max(n, 0)));
        if (count == 0 && n > 0 && m_tty && !isGone(m_fd))
            continue;
        if (count >= 0)
            return static_cast<int>(count);
        if (errno != EINTR && errno != EAGAIN) {
            VELCLP_LOG_FAILURE(FUNCTION, "read failed, errno=[%d]", errno);
            return FAILED;
        }
    }
}

int stdStream::write(const void* buf, int n) {
    if (buf == nullptr || n <= 0 || m_fd == -1)
        return 0;
    // The output stream's text stands before this one.
    std::cout.flush();
    const char* const text = static_cast<const char*>(buf);
    int done = 0;
    while (done < n) {
        const ssize_t count = ::write(OUTPUT, text + done, static_cast<std::size_t>(n - done));
        if (count >= 0)
            done += static_cast<int>(count);
        else if (errno != EINTR)
            return done > 0 ? done : FAILED;
    }
    return done;
}

int stdStream::WindowSize(int& columns, int& rows) {
    columns = 80;
    rows = 24;
    winsize size{};
    const int result = ioctl(m_fd, TIOCGWINSZ, &size);
    if (result < 0)
        return result;
    if (size.ws_col != 0)
        columns = size.ws_col;
    if (size.ws_row != 0)
        rows = size.ws_row;
    return result;
}

int stdStream::getLine(void* buf, int size, bool echo) {
    VELCLP_TRACE("CLP.stdStream.getLine");
    char* const text = static_cast<char*>(buf);
    int total = 0;
    for (;;) {
        LineEdit editor(this);
        void* previous = total > 0 ? text : nullptr;
        const int room = size - total;
        const int count = editor.getLine(text + total, room, echo, &previous);
        if (count < 0)
            return count == CLOSED ? CLOSED : FAILED;
        if (previous == nullptr) {
            // A line recalled from the history stands for all that was typed before it.
            std::memmove(text, text + total, static_cast<std::size_t>(count));
            total = 0;
        }
        total += count;
        if (count == room || count == 0 || text[total - 1] != CONTINUATION)
            break;
        // The backtick's place takes the end of the text so far.
        text[--total] = '\0';
        LineEdit::m_begin = 0;
        if (echo)
            write("\n", 1);
    }
    if (m_history != nullptr && total != 0) {
        std::string line(text, static_cast<std::size_t>(total));
        m_history->push(line);
    }
    return total;
}

void stdStream::Prompt(const std::string& text) {
    VELCLP_TRACE("CLP.stdStream.Prompt");
    LineEdit(this).Prompt(text);
}
