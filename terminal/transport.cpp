#include "velclp/transport.h"

#include "velclp/lineedit.h"
#include "velclp/stdstream.h"

#include <cstdlib>
#include <cstring>

namespace {
[[noreturn]] void invalidBuffer(const char* text) {
    std::cerr << text << std::endl;
    std::exit(-1);
}
} // namespace

Transport::Transport(std::string type, int timeout)
    : m_stream(nullptr),
      m_type(std::move(type)),
      m_in(std::cin),
      m_out(std::cout),
      m_err(std::cerr),
      m_mute(m_type == "nul") {
    if (timeout > 0)
        SetTimeout(timeout);
    if (m_type == "std")
        m_stream = new stdStream;
}

Transport::~Transport() {
    delete m_stream;
}

void Transport::SetTimeout(int seconds) {
    stdStream::setTimeout(seconds);
}

void Transport::CreateHistoryBuf() {
    if (m_stream != nullptr)
        m_stream->CreateHistoryBuf();
}

std::istream& Transport::in() {
    return m_in;
}

std::ostream& Transport::out() {
    return m_out;
}

std::ostream& Transport::err() {
    return m_err;
}

int Transport::read(void* buf, int n) {
    if (buf == nullptr)
        invalidBuffer("read invalid buf!");
    return m_stream != nullptr ? m_stream->read(buf, n) : -1;
}

int Transport::getline(void* buf, int size, bool echo) {
    if (buf == nullptr)
        invalidBuffer("getline invalid buf!");
    return m_stream != nullptr ? m_stream->getLine(buf, size, echo) : -1;
}

int Transport::write(const void* buf, int n) {
    if (m_mute || buf == nullptr || n <= 0 || m_stream == nullptr)
        return 0;
    return m_stream->write(buf, n);
}

int Transport::ignoreline(int n) {
    if (n > 0)
        m_in.ignore(n, EOF);
    return n;
}

void Transport::endl(Transport& transport) {
    transport.write("\r", 1);
    transport.write("\n", 1);
}

void Transport::clrscr(Transport& transport) {
    transport.write("\033[0;37;40m", 10);
    transport.write("\033[H\033[J", 6);
}

void Transport::flush() {
    m_out.flush();
}

Transport& Transport::operator<<(const std::string& text) {
    if (!m_mute)
        m_out << text;
    return *this;
}

Transport& Transport::operator<<(const char* text) {
    if (!m_mute && text != nullptr)
        m_out << text;
    return *this;
}

Transport& Transport::operator<<(int number) {
    // The stream itself prints an int as unsigned in octal and hexadecimal.
    if (!m_mute)
        m_out << number;
    return *this;
}

Transport& Transport::operator<<(void (*manipulator)(Transport&)) {
    manipulator(*this);
    return *this;
}

Transport& Transport::operator>>(std::string& word) {
    m_in >> word;
    return *this;
}

Transport& Transport::operator>>(char* word) {
    if (word == nullptr)
        invalidBuffer(">> invalid buf!");
    std::string text;
    m_in >> text;
    text.copy(word, text.size());
    word[text.size()] = '\0';
    return *this;
}

void Transport::setHelpFunc(std::vector<std::string> (*help)(const std::string&)) {
    LineEdit::helpFunc = help;
}

void Transport::Prompt(const std::string& text) {
    if (m_stream != nullptr)
        m_stream->Prompt(text);
}

std::string Transport::Type() const {
    return m_type;
}

void Transport::RestoreTTY() {
    if (m_stream != nullptr)
        m_stream->RestoreTTY();
}

void Transport::RawTTY() {
    if (m_stream != nullptr)
        m_stream->RawTTY();
}

int Transport::delblank(char* buf) {
    if (buf == nullptr)
        invalidBuffer("delblank invalid buf!");
    const std::size_t blanks = std::strspn(buf, " \t");
    const std::size_t length = std::strlen(buf) - blanks;
    std::memmove(buf, buf + blanks, length + 1);
    return static_cast<int>(length);
}
