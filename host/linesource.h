// Where the lines of a session come from: the arguments, the terminal, or any other input.
#ifndef VELCLP_HOST_LINESOURCE_H
#define VELCLP_HOST_LINESOURCE_H

#include <string>
#include <vector>

class Transport;

namespace host {

class LineSource {
public:
    enum Result { LINE, NO_LINE, END };

    virtual ~LineSource() = default;
    // The next line; NO_LINE when it was given up and another is to be read, END when there is no
    // more, after a time-out and after an error.
    virtual Result next(std::string& line) = 0;
};

// Lines that are there already.
class GivenLines : public LineSource {
public:
    explicit GivenLines(std::vector<std::string> lines) : m_lines(std::move(lines)) {}
    Result next(std::string& line) override;

private:
    std::vector<std::string> m_lines;
    std::size_t m_next = 0;
};

// What an operator types behind a prompt.
class TerminalLines : public LineSource {
public:
    // `givenUp` tells whether a failed read was a line that is given up, and forgets it.
    TerminalLines(Transport& transport, bool (*givenUp)())
        : m_transport(transport), m_givenUp(givenUp), m_buffer(MAXIMUM) {}
    Result next(std::string& line) override;

private:
    static const std::size_t MAXIMUM = 8192;
    Transport& m_transport;
    bool (*m_givenUp)();
    std::vector<char> m_buffer;
};

// Lines of a pipe, a file or a socket. Nothing is taken but the line: what stands behind it is left
// to the program that the line starts. A backtick at a line's end continues it, as on a terminal;
// the last line needs no end.
class PipedLines : public LineSource {
public:
    explicit PipedLines(Transport& transport);
    PipedLines(const PipedLines&) = delete;
    PipedLines& operator=(const PipedLines&) = delete;
    ~PipedLines() override;
    Result next(std::string& line) override;

private:
    std::size_t lookAhead();
    std::size_t restOfLine();

    Transport& m_transport;
    unsigned m_kind; // of the input, as in st_mode
    int m_copies[2]; // a pipe for copies of what stands in another one
    std::vector<char> m_buffer;
};

} // namespace host

#endif
