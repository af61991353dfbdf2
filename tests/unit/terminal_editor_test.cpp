// The line editor on a stream of prepared bytes, judged by what an operator would see.
#include "tests/support/screen.h"
#include "velclp/historybuf.h"
#include "velclp/lineedit.h"
#include "velclp/stdstream.h"
#include "velclp/transutil.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>

namespace {

const std::string UP = "\033[A", DOWN = "\033[B", RIGHT = "\033[C", LEFT = "\033[D",
                  DEL = "\033[3~";

// Hands out prepared bytes, then the end of input, and keeps what is written.
class PreparedStream : public stdStream {
public:
    explicit PreparedStream(int width) : m_width(width), screen(width) {}

    int read(void* buf, int n) override {
        if (m_next == keys.size() || n < 1)
            return 0;
        *static_cast<char*>(buf) = keys[m_next++];
        return 1;
    }
    int write(const void* buf, int n) override {
        const std::string bytes(static_cast<const char*>(buf), static_cast<std::size_t>(n));
        written += bytes;
        screen.write(bytes);
        return n;
    }
    int WindowSize(int& columns, int& rows) override {
        columns = m_width;
        rows = 24;
        return 0;
    }

    std::string keys, written;

private:
    std::size_t m_next = 0;
    int m_width;

public:
    Screen screen;
};

class Editor : public ::testing::Test {
protected:
    void SetUp() override { setenv("TERM", "xterm", 1); }
    void TearDown() override { LineEdit::helpFunc = nullptr; }

    // Types the keys and Enter behind the prompt; gives the line.
    std::string type(const std::string& keys, int width = 20, bool echo = true) {
        stream = std::make_unique<PreparedStream>(width);
        if (history) {
            stream->CreateHistoryBuf();
            for (std::string line : *history)
                stream->history()->push(line);
        }
        stream->keys = keys + "\r";
        LineEdit(stream.get()).Prompt(prompt);
        LineEdit edit(stream.get());
        std::vector<char> buf(512);
        const int n = edit.getLine(buf.data(), static_cast<int>(buf.size()), echo, nullptr);
        return n < 0 ? "<" + std::to_string(n) + ">"
                     : std::string(buf.data(), static_cast<std::size_t>(n));
    }
    std::vector<std::string> rows() const { return stream->screen.rows(); }

    std::string prompt = "-> ";
    std::unique_ptr<PreparedStream> stream;
    std::unique_ptr<std::vector<std::string>> history;
};

using Rows = std::vector<std::string>;

TEST_F(Editor, SendsRowsBeforeColumnsAndEndsAClearingWithANullByte) {
    const std::string clear("\033[J", 4);
    type("show");
    EXPECT_EQ(stream->written, "-> show") << "a byte at the end costs itself alone";
    type("ab\177");
    EXPECT_EQ(stream->written, "-> ab\033[1D" + clear);
    type("ab" + LEFT + LEFT + DEL);
    EXPECT_EQ(stream->written, "-> ab\033[1D\033[1D" + clear + "b\033[1D");
    type("show /admin1/syst" + LEFT + RIGHT);
    EXPECT_EQ(stream->written, "-> show /admin1/syst\n\033[1A\033[19C\033[1B\033[19D");
}

TEST_F(Editor, APromptThatIsWiderThanTheWindowTakesSeveralRows) {
    prompt = "controller> ";
    EXPECT_EQ(type("show" + LEFT + LEFT + "x", 5), "shxow");
    EXPECT_EQ(rows(), (Rows{"contr", "oller", "> shx", "ow"}));
    EXPECT_EQ(stream->written.substr(0, 14), "contr\noller\n> ");
    EXPECT_EQ(LineEdit::m_begin, -2);
    prompt = "-->> ";
    EXPECT_EQ(type("show" + LEFT + "\177", 5), "shw");
    EXPECT_EQ(rows(), (Rows{"-->>", "shw"}));
    EXPECT_FALSE(stream->screen.confused());
}

TEST_F(Editor, ADeleteKeyThatTheTerminalLacksStaysPendingToTheEnd) {
    setenv("TERM", "vt100", 1);
    EXPECT_EQ(type("ab" + LEFT + "\177"), "a") << "deletes at the cursor";
    EXPECT_EQ(type("ab" + LEFT + DEL + "c"), "ab");
    unsetenv("TERM");
    EXPECT_EQ(type("ab\010X"), "aX") << "no name is a vt100";
}

TEST_F(Editor, OnATerminalThatSendsTwoBytesAtALinesEndTheSecondIsDropped) {
    setenv("TERM", "XTERM", 1);
    PreparedStream terminal(20);
    terminal.keys = "cd\r\nshow\r\n";
    char buf[8];
    EXPECT_EQ(LineEdit(&terminal).getLine(buf, sizeof buf, true, nullptr), 2);
    EXPECT_EQ(LineEdit(&terminal).getLine(buf, sizeof buf, true, nullptr), 4);
}

TEST_F(Editor, EscapeSequencesItDoesNotKnowAreDroppedWithoutLosingTheRest) {
    EXPECT_EQ(type("a\033[Hb"), "a");
    EXPECT_EQ(type("a\033[H~b"), "ab");
    EXPECT_EQ(type("a" + DEL + "b"), "ab");
    EXPECT_EQ(type("ab" + LEFT + "\033[3xc"), "acb");
    EXPECT_EQ(type("a\033"), "a");
}

TEST_F(Editor, HistoryKeepsFiftyLinesAndStaysAtItsEnds) {
    HistoryBuf lines;
    EXPECT_EQ(lines.pop_up(), "");
    EXPECT_EQ(lines.pop_down(), "");
    for (int i = 1; i <= 51; ++i) {
        std::string line = std::to_string(i);
        lines.push(line);
    }
    EXPECT_EQ(lines.pop_down(), "51");
    std::string oldest;
    for (int i = 0; i < 60; ++i)
        oldest = lines.pop_up();
    EXPECT_EQ(oldest, "2");
    EXPECT_EQ(lines.pop_down(), "3");
}

TEST_F(Editor, CompletionsAreListedInColumnsOfOneWidth) {
    LineEdit::helpFunc = [](const std::string&) {
        return std::vector<std::string>{"sensor7", "sensor12", "slot3", "sp1"};
    };
    EXPECT_EQ(type("s\t"), "s");
    EXPECT_EQ(stream->written, "-> s\nsensor7    sensor12 \n   slot3    sp1\n-> s");
    LineEdit::helpFunc = [](const std::string&) { return std::vector<std::string>{"show"}; };
    EXPECT_EQ(type("show\t"), "show") << "nothing is left to fill in";
}

TEST_F(Editor, NothingIsDrawnAndNothingMovesWithoutEcho) {
    EXPECT_EQ(type("ab" + LEFT + "c", 20, false), "abc");
    EXPECT_EQ(stream->written, "-> ");
}

TEST_F(Editor, ControlBytesOnTheLineDoNotDriveTheTerminal) {
    EXPECT_EQ(type(std::string("a\001b\033]c", 6)), std::string("a\001b\033]c", 6));
    EXPECT_EQ(rows(), (Rows{"-> a?b?]c"}));
    EXPECT_FALSE(stream->screen.confused());
}

TEST_F(Editor, ClosedInputAndAFullBufferAreTold) {
    PreparedStream closed(80);
    closed.keys = "sho";
    char buf[8];
    EXPECT_EQ(LineEdit(&closed).getLine(buf, sizeof buf, true, nullptr), -2);
    PreparedStream full(80);
    full.keys = "12345678";
    EXPECT_EQ(LineEdit(&full).getLine(buf, sizeof buf, true, nullptr), 8);
    EXPECT_EQ(std::string(buf, sizeof buf), "12345678");
}

// Any mixture of keys leaves the screen showing prompt and text, at every width.
TEST_F(Editor, TheScreenShowsTheTextAfterAnyMixtureOfKeys) {
    std::mt19937 random(7);
    const std::string keys[] = {"a",   "b", "1",    " ",     LEFT, LEFT,
                                RIGHT, DEL, "\177", "xyzzy", UP,   DOWN};
    history = std::make_unique<std::vector<std::string>>(
        std::vector<std::string>{"short", std::string(45, 'h')});
    for (int round = 0; round < 2000; ++round) {
        std::string typed;
        for (int i = 0; i < 40; ++i)
            typed += keys[random() % std::size(keys)];
        const int width = static_cast<int>(4 + random() % 30);
        const std::string shown = prompt + type(typed, width);
        Rows expected;
        for (std::size_t at = 0; at < shown.size(); at += static_cast<std::size_t>(width))
            expected.push_back(shown.substr(at, static_cast<std::size_t>(width)));
        for (std::string& row : expected)
            row.erase(row.find_last_not_of(' ') + 1);
        while (expected.size() > 1 && expected.back().empty())
            expected.pop_back();
        ASSERT_EQ(rows(), expected) << typed << " at " << width;
        ASSERT_FALSE(stream->screen.confused()) << typed << " at " << width;
    }
}

TEST(WordsOfCompletion, AreCutAtTheBordersOfAnAddress) {
    EXPECT_EQ(TransUtil::lastword("show /admin1/sys"), "sys");
    EXPECT_EQ(TransUtil::lastword("show a\\b"), "b");
    EXPECT_EQ(TransUtil::lastword("set x=y"), "y");
    EXPECT_EQ(TransUtil::lastword("show a=>t"), "t");
    EXPECT_EQ(TransUtil::lastword("show "), "");
    EXPECT_EQ(TransUtil::lastword("show"), "show");
    std::vector<std::string> words{"system1", "system12", "sys"};
    EXPECT_EQ(TransUtil::common_word(words), "sys");
    words = {"a", "b"};
    EXPECT_EQ(TransUtil::common_word(words), "");
}

} // namespace
