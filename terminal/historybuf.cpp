#include "velclp/historybuf.h"

HistoryBuf::HistoryBuf() : m_index(-1) {}

void HistoryBuf::push(std::string& line) {
    if (m_lines.size() == static_cast<std::size_t>(CAPACITY))
        m_lines.erase(m_lines.begin());
    m_lines.push_back(line);
    m_index = static_cast<int>(m_lines.size());
}

std::string HistoryBuf::pop_up() {
    if (m_lines.empty())
        return std::string();
    if (m_index > 0)
        --m_index;
    return m_lines[static_cast<std::size_t>(m_index)];
}

std::string HistoryBuf::pop_down() {
    if (m_lines.empty())
        return std::string();
    const int last = static_cast<int>(m_lines.size()) - 1;
    if (m_index > last)
        --m_index;
    if (m_index < last)
        ++m_index;
    return m_lines[static_cast<std::size_t>(m_index)];
}
