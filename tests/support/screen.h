// A terminal's screen in a few lines: what a test wrote to it, as rows of text, with the cursor. It
// knows what the line editor sends: printable bytes with the wrap that waits for the next byte,
// line feeds that return to the first column, cursor moves and clearing to the end.
#ifndef VELCLP_TESTS_SCREEN_H
#define VELCLP_TESTS_SCREEN_H

#include <algorithm>
#include <string>
#include <vector>

class Screen {
public:
    explicit Screen(int width) : m_width(width), m_rows(1) {}

    void write(const std::string& bytes) {
        for (const char c : bytes)
            take(c);
    }

    // The rows down to the last that was written, without blanks at their ends.
    std::vector<std::string> rows() const {
        std::vector<std::string> result = m_rows;
        for (std::string& row : result)
            row.erase(row.find_last_not_of(' ') + 1);
        while (result.size() > 1 && result.back().empty())
            result.pop_back();
        return result;
    }
    int row() const { return m_row; }
    int column() const { return m_column; }
    // A move beyond the screen's edges, or a byte that drives a terminal in another way.
    bool confused() const { return m_confused; }

private:
    void take(char c) {
        if (!m_escape.empty() || c == '\033')
            takeEscape(c);
        else if (c == '\n')
            newRow();
        else if (c == '\r')
            m_column = 0;
        else if (c != '\0')
            put(c);
    }

    void put(char c) {
        if (static_cast<unsigned char>(c) < ' ')
            m_confused = true;
        if (m_column == m_width)
            newRow();
        std::string& row = m_rows[static_cast<std::size_t>(m_row)];
        row.resize(std::max(row.size(), static_cast<std::size_t>(m_column) + 1), ' ');
        row[static_cast<std::size_t>(m_column++)] = c;
    }

    void newRow() {
        m_column = 0;
        if (static_cast<std::size_t>(++m_row) == m_rows.size())
            m_rows.emplace_back();
    }

    void takeEscape(char c) {
        m_escape += c;
        if (m_escape.size() <= 2 || (c >= '0' && c <= '9'))
            return;
        const std::string digits = m_escape.substr(2, m_escape.size() - 3);
        const int n = digits.empty() ? 1 : std::stoi(digits);
        m_escape.clear();
        m_column = std::min(m_column, m_width - 1);
        act(c, n);
    }

    void act(char c, int n) {
        const int row = m_row + (c == 'B' ? n : c == 'A' ? -n : 0);
        const int column = m_column + (c == 'C' ? n : c == 'D' ? -n : 0);
        if (c == 'J')
            clearBelow();
        else if (row < 0 || row >= static_cast<int>(m_rows.size()) || column < 0 ||
                 column >= m_width)
            m_confused = true;
        m_row = std::clamp(row, 0, static_cast<int>(m_rows.size()) - 1);
        m_column = std::clamp(column, 0, m_width - 1);
    }

    void clearBelow() {
        m_rows.resize(static_cast<std::size_t>(m_row) + 1);
        std::string& row = m_rows.back();
        row.resize(std::min(row.size(), static_cast<std::size_t>(m_column)));
    }

    int m_width;
    std::vector<std::string> m_rows;
    int m_row = 0;
    int m_column = 0;
    std::string m_escape;
    bool m_confused = false;
};

#endif
