// The line being typed: its text and the cursor's place in it. It knows nothing of the screen.
#ifndef VELCLP_LINETEXT_H
#define VELCLP_LINETEXT_H

#include <algorithm>
#include <string>

class LineText {
public:
    const std::string& text() const { return m_text; }
    int cursor() const { return m_cursor; }
    int length() const { return static_cast<int>(m_text.size()); }
    bool atEnd() const { return m_cursor == length(); }
    std::string behindCursor() const { return m_text.substr(static_cast<std::size_t>(m_cursor)); }

    // The text is replaced and the cursor stands at its start.
    void assign(const std::string& text) {
        m_text = text;
        m_cursor = 0;
    }
    void append(const std::string& text) { m_text += text; }
    // Puts a character before the cursor's, which stays where it is.
    void insert(char c) { m_text.insert(static_cast<std::size_t>(m_cursor), 1, c); }
    // Takes the cursor's character out; the cursor is not at the end.
    void erase() { m_text.erase(static_cast<std::size_t>(m_cursor), 1); }

    // How far the cursor can go by `n`, negative for the left, and taking it there.
    int reach(int n) const { return std::clamp(n, -m_cursor, length() - m_cursor); }
    void move(int n) { m_cursor += reach(n); }

private:
    int m_cursor = 0;
    std::string m_text;
};

#endif
