#include "velclp/lineedit.h"

#include "terminal/keys.h"
#include "terminal/screen.h"
#include "velclp/historybuf.h"
#include "velclp/log.h"
#include "velclp/stdstream.h"
#include "velclp/transutil.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

std::string LineEdit::m_prompt;
int LineEdit::m_begin = 0;
std::vector<std::string> (*LineEdit::helpFunc)(const std::string&) = nullptr;

namespace {

// A key string that never completes must not grow with what is pasted behind it.
const std::size_t LONGEST_KEY = 16;

int windowWidth(stdStream& stream) {
    int columns = 80;
    int rows = 24;
    stream.WindowSize(columns, rows);
    return columns > 0 ? columns : 80;
}

std::string terminalName() {
    const char* name = std::getenv("TERM");
    return name ? name : "vt100";
}

std::string listing(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words)
        text += (text.empty() ? "" : "    ") + word;
    return text + "\n";
}

} // namespace

LineEdit::LineEdit(stdStream* stream)
    : m_stream(stream),
      m_echo(false),
      m_continuation(nullptr),
      m_width(windowWidth(*stream)),
      m_term(terminalName()) {}

LineEdit::~LineEdit() = default;

void LineEdit::send(const std::string& bytes) {
    if (!bytes.empty())
        m_stream->write(bytes.data(), static_cast<int>(bytes.size()));
}

void LineEdit::Prompt(const std::string& text) {
    VELCLP_TRACE("CLP.LineEdit.Prompt");
    m_prompt = text;
    std::string out;
    for (const std::string& piece : screen::pieces(text, m_width)) {
        out += (out.empty() ? "" : "\n") + piece;
        m_begin = -static_cast<int>(piece.size());
    }
    send(out);
}

int LineEdit::getLine(void* buf, int size, bool echo, void** continuation) {
    VELCLP_TRACE("CLP.LineEdit.getLine");
    m_line.assign(std::string());
    m_echo = echo;
    if (!m_continuation)
        m_continuation = reinterpret_cast<char**>(continuation);
    std::string pending;
    while (m_line.length() < size) {
        char byte = 0;
        const int count = m_stream->read(&byte, 1);
        if (count == 0 || count == stdStream::CLOSED)
            return stdStream::CLOSED;
        if (count < 0)
            return -1;
        if (byte == '\n' || byte == '\r') {
            if (m_term == "XTERM")
                m_stream->read(&byte, 1);
            leaveLine();
            break;
        }
        if (pending.size() < LONGEST_KEY)
            pending += byte;
        processKeys(pending);
    }
    const int length = std::min(m_line.length(), size);
    std::memcpy(buf, m_line.text().data(), static_cast<std::size_t>(length));
    return length;
}

int LineEdit::isArrow(const std::string& keys) {
    return static_cast<int>(classifyKeys(keys, m_term));
}

void LineEdit::processKeys(std::string& pending) {
    switch (classifyKeys(pending, m_term)) {
    case KeySequence::Arrow:
        processArrow(pending.back());
        break;
    case KeySequence::Plain:
        for (const char byte : pending)
            processPlain(byte);
        break;
    case KeySequence::Unknown:
        break;
    case KeySequence::Unfinished:
        return;
    case KeySequence::Delete:
        if (pending.size() < 4)
            return;
        if (pending[3] == '~')
            process_del();
        break;
    }
    pending.clear();
}

void LineEdit::processArrow(char direction) {
    if (!m_echo)
        return;
    switch (direction) {
    case 'A':
        process_up();
        break;
    case 'B':
        process_down();
        break;
    case 'C':
        process_right(1);
        break;
    default:
        process_left(1);
        break;
    }
}

void LineEdit::processPlain(char byte) {
    switch (plainKey(byte, m_term)) {
    case PlainKey::Backspace:
        process_backspace();
        break;
    case PlainKey::Delete:
        process_del();
        break;
    case PlainKey::Tab:
        process_tab();
        break;
    case PlainKey::Ignored:
        break;
    case PlainKey::Character:
        process_char(byte);
        break;
    }
}

void LineEdit::move_cursor(int columns, int rows) {
    send(screen::move(columns, rows));
}

void LineEdit::moveBy(int n) {
    const int from = m_line.cursor() - m_begin;
    const int distance = m_line.reach(n);
    m_line.move(distance);
    if (m_echo)
        send(screen::moveTo(from, from + distance, m_width));
}

void LineEdit::process_right(int n) {
    moveBy(n);
}

void LineEdit::process_left(int n) {
    moveBy(-n);
}

void LineEdit::write_string(bool back) {
    if (!m_echo)
        return;
    const std::string rest = m_line.behindCursor();
    const int length = static_cast<int>(rest.size());
    send(screen::wrapped(rest, m_line.cursor() - m_begin, m_width));
    m_line.move(length);
    if (back)
        process_left(std::max(length - 1, 0));
}

void LineEdit::process_char(char c) {
    m_line.insert(c);
    if (m_echo)
        write_string(true);
    else
        m_line.move(1);
}

void LineEdit::process_del() {
    if (m_line.atEnd())
        return;
    m_line.erase();
    if (!m_echo)
        return;
    send(screen::clearBelow());
    if (!m_line.atEnd()) {
        write_string(true);
        process_left(1);
    }
}

void LineEdit::process_backspace() {
    if (m_line.cursor() == 0)
        return;
    process_left(1);
    process_del();
}

void LineEdit::process_up() {
    if (m_echo && m_stream->history())
        write_history_cmd(m_stream->history()->pop_up());
}

void LineEdit::process_down() {
    if (m_echo && m_stream->history())
        write_history_cmd(m_stream->history()->pop_down());
}

bool LineEdit::continued() const {
    return m_continuation && *m_continuation;
}

// The line break that follows must not end up among the rows of the text.
void LineEdit::leaveLine() {
    const int end = m_line.length() - m_begin;
    const int row = (m_line.cursor() - m_begin) / m_width;
    if (row != end / m_width)
        process_right(m_line.length());
}

// Leaves the last row of the text, wherever in it the cursor stands.
void LineEdit::newRow() {
    process_right(m_line.length());
    send("\n");
}

void LineEdit::write_history_cmd(const std::string& text) {
    VELCLP_TRACE("CLP.LineEdit.write_history_cmd");
    if (text.empty())
        return;
    if (continued()) {
        newRow();
        Prompt(m_prompt);
        *m_continuation = nullptr;
    } else {
        process_left(m_line.cursor());
        send(screen::clearBelow());
    }
    m_line.assign(text);
    write_string(false);
}

void LineEdit::complete(const std::string& word, const std::string& completion) {
    if (completion.size() <= word.size())
        return;
    process_right(m_line.length());
    m_line.append(completion.substr(word.size()));
    write_string(false);
}

// Writes text that is not the line's, from the first column on.
void LineEdit::writeAside(const std::string& text) {
    m_begin = 0;
    m_line.assign(text);
    write_string(false);
}

void LineEdit::listCompletions(const std::vector<std::string>& words) {
    const std::string typed = m_line.text();
    newRow();
    writeAside(listing(words));
    Prompt(m_prompt);
    if (continued()) {
        m_line.assign(std::string(*m_continuation) + "`\n");
        write_string(false);
        m_begin = 0;
    }
    m_line.assign(typed);
    write_string(false);
}

void LineEdit::process_tab() {
    VELCLP_TRACE("CLP.LineEdit.process_tab");
    if (!m_echo || !helpFunc)
        return;
    const std::string line = (continued() ? *m_continuation : "") + m_line.text();
    std::vector<std::string> words = helpFunc(line);
    if (words.empty())
        return;
    if (words.size() > 1)
        listCompletions(words);
    complete(TransUtil::lastword(line), TransUtil::common_word(words));
}
