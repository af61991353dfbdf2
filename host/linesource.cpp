#include "host/linesource.h"

#include "velclp/transport.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

namespace host {

namespace {
const char* const PROMPT = "-> ";
const char CONTINUATION = '`';
const std::size_t AHEAD = 4096;
} // namespace

LineSource::Result GivenLines::next(std::string& line) {
    if (m_next == m_lines.size())
        return END;
    line = m_lines[m_next++];
    return LINE;
}

LineSource::Result TerminalLines::next(std::string& line) {
    m_transport.Prompt(PROMPT);
    const int length =
        m_transport.getline(m_buffer.data(), static_cast<int>(m_buffer.size()), true);
    m_transport << Transport::endl;
    if (length < 0)
        return m_givenUp() ? NO_LINE : END;
    line.assign(m_buffer.data(), static_cast<std::size_t>(length));
    return LINE;
}

PipedLines::PipedLines(Transport& transport)
    : m_transport(transport), m_kind(0), m_copies{-1, -1}, m_buffer(AHEAD) {
    struct stat status {};
    if (fstat(STDIN_FILENO, &status) == 0)
        m_kind = status.st_mode & S_IFMT;
    if (m_kind == S_IFIFO && pipe2(m_copies, O_CLOEXEC | O_NONBLOCK) != 0)
        m_kind = 0;
}

PipedLines::~PipedLines() {
    for (const int end : m_copies)
        if (end >= 0)
            close(end);
}

// Copies what can be had at once into the buffer and takes nothing; gives its length.
std::size_t PipedLines::lookAhead() {
    char* const buffer = m_buffer.data();
    ssize_t count = 0;
    if (m_kind == S_IFREG) {
        const off_t place = lseek(STDIN_FILENO, 0, SEEK_CUR);
        count = place >= 0 ? pread(STDIN_FILENO, buffer, AHEAD, place) : 0;
    } else if (m_kind == S_IFSOCK) {
        count = recv(STDIN_FILENO, buffer, AHEAD, MSG_PEEK | MSG_DONTWAIT);
    } else if (m_kind == S_IFIFO) {
        count = tee(STDIN_FILENO, m_copies[1], AHEAD, SPLICE_F_NONBLOCK);
        if (count > 0)
            count = read(m_copies[0], buffer, static_cast<std::size_t>(count));
    }
    return static_cast<std::size_t>(std::max<ssize_t>(count, 0));
}

// How much of the line is there already, its end included; 1 where nobody can know.
std::size_t PipedLines::restOfLine() {
    const auto begin = m_buffer.begin();
    const auto end = begin + static_cast<std::ptrdiff_t>(lookAhead());
    const auto found = std::find(begin, end, '\n');
    return static_cast<std::size_t>(
        std::max<std::ptrdiff_t>(found - begin + (found != end ? 1 : 0), 1));
}

LineSource::Result PipedLines::next(std::string& line) {
    line.clear();
    int count = 0;
    // The first byte is waited for.
    std::size_t wanted = 1;
    while ((count = m_transport.read(m_buffer.data(), static_cast<int>(wanted))) > 0) {
        line.append(m_buffer.data(), static_cast<std::size_t>(count));
        wanted = 1;
        if (line.back() != '\n') {
            wanted = restOfLine();
            continue;
        }
        line.pop_back();
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (line.empty() || line.back() != CONTINUATION)
            return LINE;
        line.pop_back();
    }
    return count == 0 && !line.empty() ? LINE : END;
}

} // namespace host
