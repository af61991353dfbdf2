// The transport of a session and the stream behind it, on pipes and terminals of the test's own.
#include "velclp/historybuf.h"
#include "velclp/lineedit.h"
#include "velclp/stdstream.h"
#include "velclp/transport.h"

#include <gtest/gtest.h>

#include <pty.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <climits>
#include <cstring>
#include <sstream>

namespace {

class Streams : public ::testing::Test {
protected:
    // Standard input becomes a pipe that holds the text and is then closed, unless told otherwise.
    void input(const std::string& text, bool closed = true) {
        int ends[2];
        ASSERT_EQ(pipe(ends), 0);
        ASSERT_EQ(write(ends[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
        dup2(ends[0], 0);
        close(ends[0]);
        if (closed)
            close(ends[1]);
        else
            writer = ends[1];
    }
    // Standard input becomes a terminal; its other end is `writer`.
    void terminal(unsigned short columns = 80, unsigned short rows = 24) {
        int slave = -1;
        const winsize size = {rows, columns, 0, 0};
        ASSERT_EQ(openpty(&writer, &slave, nullptr, nullptr, &size), 0);
        dup2(slave, 0);
        close(slave);
    }
    static std::string readLine(Transport& transport, int size = 512, bool echo = false) {
        std::vector<char> buffer(static_cast<std::size_t>(size));
        const int count = transport.getline(buffer.data(), size, echo);
        return count < 0 ? "<" + std::to_string(count) + ">"
                         : std::string(buffer.data(), static_cast<std::size_t>(count));
    }
    static tcflag_t localFlags() {
        termios settings{};
        tcgetattr(0, &settings);
        return settings.c_lflag;
    }
    void TearDown() override { stdStream::setTimeout(0); }

    int writer = -1;
};

TEST_F(Streams, TextAndLineEndsComeOutInTheOrderInWhichTheyWereWritten) {
    input("");
    testing::internal::CaptureStdout();
    {
        Transport transport("std", -1);
        transport << "one" << Transport::endl << std::string("two ") << 3;
        transport << static_cast<const char*>(nullptr);
        EXPECT_EQ(transport.write(" four", 5), 5);
        transport << "five" << Transport::clrscr << "six";
        EXPECT_EQ(transport.write(nullptr, 5), 0);
        EXPECT_EQ(transport.write("x", 0), 0);
        EXPECT_EQ(transport.write("x", -1), 0);
    }
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "one\r\ntwo 3 fourfive\033[0;37;40m\033[H\033[Jsix");
}

TEST_F(Streams, NumbersFollowTheStreamsBase) {
    input("");
    testing::internal::CaptureStdout();
    Transport transport("std", -1);
    transport << -1;
    transport.out() << std::hex;
    transport << " " << -1;
    transport.out() << std::oct;
    transport << " " << 8;
    transport.out() << std::dec;
    transport.flush();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "-1 ffffffff 10");
}

TEST_F(Streams, WordsAreReadFromTheInputStreamAndTheRestOfALineIsIgnored) {
    input("");
    std::istringstream typed("one two three");
    std::streambuf* const before = std::cin.rdbuf(typed.rdbuf());
    Transport transport("std", -1);
    std::string word;
    transport >> word;
    EXPECT_EQ(word, "one");
    EXPECT_EQ(transport.ignoreline(5), 5);
    EXPECT_EQ(transport.ignoreline(0), 0);
    EXPECT_EQ(transport.ignoreline(-1), -1);
    char rest[16] = "";
    transport >> rest;
    EXPECT_STREQ(rest, "three");
    std::cin.rdbuf(before);
}

TEST_F(Streams, ANulTransportSwallowsEverythingAndReadsNothing) {
    testing::internal::CaptureStdout();
    Transport transport("nul", -1);
    EXPECT_EQ(transport.Type(), "nul");
    transport << "a" << std::string("b") << 3 << Transport::endl << Transport::clrscr;
    EXPECT_EQ(transport.write("abc", 3), 0);
    EXPECT_EQ(readLine(transport), "<-1>");
    Transport other("tape", -1);
    char byte = 0;
    EXPECT_EQ(other.read(&byte, 1), -1);
    EXPECT_EQ(other.write("abc", 3), 0);
    other.Prompt("-> ");
    other.RestoreTTY();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
}

TEST_F(Streams, NullBuffersEndTheProcessWithALineOnStandardError) {
    input("");
    Transport transport("std", -1);
    char* const none = nullptr;
    const auto code = testing::ExitedWithCode(255);
    EXPECT_EXIT(transport.read(nullptr, 1), code, "read invalid buf!");
    EXPECT_EXIT(transport.getline(nullptr, 1, false), code, "getline invalid buf!");
    EXPECT_EXIT(transport >> none, code, ">> invalid buf!");
    EXPECT_EXIT(Transport::delblank(nullptr), code, "delblank invalid buf!");
    char text[] = "  \tx y";
    EXPECT_EQ(Transport::delblank(text), 3);
    EXPECT_STREQ(text, "x y");
    char empty[] = "";
    EXPECT_EQ(Transport::delblank(empty), 0);
}

TEST_F(Streams, LinesAreReadToTheirEndsAndClosedInputIsTold) {
    input("version\r\nshow -l 2\n\ncut off");
    Transport transport("std", -1);
    EXPECT_EQ(readLine(transport), "version");
    EXPECT_EQ(readLine(transport), "") << "each of CR and LF ends a line";
    EXPECT_EQ(readLine(transport), "show -l 2");
    EXPECT_EQ(readLine(transport), "");
    EXPECT_EQ(readLine(transport), "<-2>");
}

TEST_F(Streams, ContinuedLinesAreJoinedAndKeptInTheHistoryAsOne) {
    input("show `\n-level 2 `\n/admin1\n`\n\nversion\n");
    stdStream stream;
    stream.CreateHistoryBuf();
    char buffer[64];
    const int length = stream.getLine(buffer, sizeof buffer, false);
    EXPECT_EQ(std::string(buffer, static_cast<std::size_t>(length)), "show -level 2 /admin1");
    EXPECT_EQ(stream.getLine(buffer, sizeof buffer, false), 0) << "nothing behind the backtick";
    EXPECT_EQ(stream.getLine(buffer, sizeof buffer, false), 7);
    EXPECT_EQ(stream.history()->pop_up(), "version");
    EXPECT_EQ(stream.history()->pop_up(), "show -level 2 /admin1");
    EXPECT_EQ(stream.history()->pop_up(), "show -level 2 /admin1");
}

TEST_F(Streams, ALineOfTheBuffersSizeIsWholeAndALongerOneGoesOnInTheNext) {
    input("12345678\n123456789\nabcd`\nefgh\n");
    Transport transport("std", -1);
    transport.CreateHistoryBuf();
    EXPECT_EQ(readLine(transport, 8), "12345678");
    EXPECT_EQ(readLine(transport, 8), "") << "the end of the line before";
    EXPECT_EQ(readLine(transport, 8), "12345678");
    EXPECT_EQ(readLine(transport, 8), "9");
    EXPECT_EQ(readLine(transport, 8), "abcdefgh");
}

TEST_F(Streams, ANegativeTimeOutIsNone) {
    stdStream::setTimeout(-5);
    EXPECT_EQ(stdStream::this_tv.tv_sec, 0);
}

int s_wakeups = 0;
int s_wakeupFd = -1;

TEST_F(Streams, AWatchedDescriptorIsServedWhileAReadWaitsAndMayEndIt) {
    input("ab", false);
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    s_wakeupFd = ends[0];
    ASSERT_EQ(write(ends[1], "xy", 2), 2);
    stdStream::setWakeup(ends[0], [] {
        char event = 0;
        EXPECT_EQ(read(s_wakeupFd, &event, 1), 1);
        return ++s_wakeups == 2 ? -1 : 0;
    });
    stdStream stream;
    char byte = 0;
    EXPECT_EQ(stream.read(&byte, 1), 1) << "input is not held up";
    EXPECT_EQ(byte, 'a');
    EXPECT_EQ(stream.read(&byte, 1), -1);
    stdStream::setWakeup(-1, nullptr);
    EXPECT_EQ(stream.read(&byte, 1), 1);
    EXPECT_EQ(byte, 'b');
}

TEST_F(Streams, ATerminalIsInCharacterModeWhileTheStreamLives) {
    terminal();
    termios cooked{};
    tcgetattr(0, &cooked);
    ASSERT_NE(cooked.c_lflag & ICANON, 0U);
    {
        Transport transport("std", -1);
        termios raw{};
        tcgetattr(0, &raw);
        EXPECT_EQ(raw.c_lflag & (ICANON | ECHO), 0U);
        EXPECT_EQ(raw.c_iflag & (ISTRIP | INLCR | IGNCR | ICRNL), 0U);
        EXPECT_EQ(raw.c_lflag & ISIG, cooked.c_lflag & ISIG);
        EXPECT_EQ(raw.c_oflag, cooked.c_oflag);
        transport.RestoreTTY();
        EXPECT_EQ(localFlags(), cooked.c_lflag);
        transport.RawTTY();
        EXPECT_EQ(localFlags() & ICANON, 0U);
    }
    EXPECT_EQ(localFlags(), cooked.c_lflag);
}

TEST_F(Streams, TheWindowIsEightyByTwentyFourWhereTheTerminalDoesNotSay) {
    struct {
        unsigned short columns, rows;
        int expectedColumns, expectedRows;
    } const cases[] = {{132, 50, 132, 50}, {0, 50, 80, 50}, {20, 0, 20, 24}};
    for (const auto& c : cases) {
        terminal(c.columns, c.rows);
        int columns = 0;
        int rows = 0;
        EXPECT_EQ(stdStream().WindowSize(columns, rows), 0);
        EXPECT_EQ(columns, c.expectedColumns);
        EXPECT_EQ(rows, c.expectedRows);
    }
    input("");
    int columns = 0;
    int rows = 0;
    EXPECT_NE(stdStream().WindowSize(columns, rows), 0);
    EXPECT_EQ(columns, 80);
    EXPECT_EQ(rows, 24);
}

} // namespace
