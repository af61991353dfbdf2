// Any bytes at the line editor: it reads to the end, never gives more than the buffer holds, and
// the cursor stays on the screen. The first byte chooses the window's width and the terminal's
// name.
#include "tests/support/screen.h"
#include "velclp/historybuf.h"
#include "velclp/lineedit.h"
#include "velclp/stdstream.h"
#include "velclp/transutil.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

namespace {

const int BUFFER_SIZE = 300;

class FuzzedStream : public stdStream {
public:
    FuzzedStream(const std::uint8_t* data, std::size_t size, int width)
        : m_data(data), m_size(size), m_width(width), m_screen(width) {}

    int read(void* buf, int) override {
        if (m_next == m_size)
            return 0;
        *static_cast<std::uint8_t*>(buf) = m_data[m_next++];
        return 1;
    }
    int write(const void* buf, int n) override {
        m_screen.write(std::string(static_cast<const char*>(buf), static_cast<std::size_t>(n)));
        if (m_screen.confused())
            std::abort();
        return n;
    }
    int WindowSize(int& columns, int&) override {
        columns = m_width;
        return 0;
    }

private:
    const std::uint8_t* m_data;
    std::size_t m_size;
    std::size_t m_next = 0;
    int m_width;
    Screen m_screen;
};

std::vector<std::string> complete(const std::string& line) {
    if (line.size() % 3 == 0)
        return {};
    if (line.size() % 3 == 1)
        return {TransUtil::lastword(line) + "1"};
    return {"system1", "system12", "sp1"};
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const char* const terminals[] = {"xterm", "vt100", "XTERM", "dumb"};
    if (size == 0)
        return 0;
    setenv("TERM", terminals[data[0] % 4], 1);
    FuzzedStream stream(data + 1, size - 1, 4 + data[0] / 4);
    stream.CreateHistoryBuf();
    LineEdit::helpFunc = complete;
    char buf[BUFFER_SIZE];
    int length = 0;
    do {
        stream.Prompt("-> ");
        length = stream.getLine(buf, BUFFER_SIZE, true);
        if (length > BUFFER_SIZE)
            std::abort();
        stream.write("\n", 1); // what Enter stands for
    } while (length >= 0);
    return 0;
}
