// The last fifty lines of a session, and a place in them for the arrow keys.
#ifndef VELCLP_HISTORYBUF_H
#define VELCLP_HISTORYBUF_H

#include <string>
#include <vector>

class HistoryBuf {
public:
    static const int CAPACITY = 50;

    HistoryBuf();

    // Appends a line, dropping the oldest at fifty; the place is then behind the last.
    void push(std::string& line);
    // One line back, staying on the first; "" in an empty history.
    std::string pop_up();
    // One line on, staying on the last; "" in an empty history.
    std::string pop_down();

private:
    std::vector<std::string> m_lines;
    int m_index;
};

#endif
