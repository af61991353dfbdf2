#include "host/linesource.h"

#include "velclp/transport.h"

namespace host {

namespace {
const char* const PROMPT = "-> ";
const char CONTINUATION = '`';
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

LineSource::Result PipedLines::next(std::string& line) {
    line.clear();
    char byte = 0;
    int count = 0;
    while ((count = m_transport.read(&byte, 1)) == 1) {
        if (byte != '\n') {
            line += byte;
            continue;
        }
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (line.empty() || line.back() != CONTINUATION)
            return LINE;
        line.pop_back();
    }
    return count == 0 && !line.empty() ? LINE : END;
}

} // namespace host
