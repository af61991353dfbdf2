// The lines that the host program takes from an input that is no terminal.
#include "host/linesource.h"
#include "tests/support/run_directory.h"
#include "velclp/transport.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <memory>

namespace {

enum class Input { PIPE, FILE, SOCKET };

class PipedLines : public testing::TestWithParam<Input> {
protected:
    // Standard input gives this text and ends.
    void input(const std::string& text) {
        int ends[2] = {-1, -1};
        if (GetParam() == Input::FILE) {
            directory.write("input", text);
            ends[0] = open(directory.file("input").c_str(), O_RDONLY);
        } else {
            ASSERT_EQ(GetParam() == Input::PIPE ? pipe(ends)
                                                : socketpair(AF_UNIX, SOCK_STREAM, 0, ends),
                      0);
            ASSERT_EQ(write(ends[1], text.data(), text.size()), static_cast<ssize_t>(text.size()));
            close(ends[1]);
        }
        ASSERT_EQ(dup2(ends[0], 0), 0);
        close(ends[0]);
        transport = std::make_unique<Transport>("std", -1);
        lines = std::make_unique<host::PipedLines>(*transport);
    }
    std::string next() {
        std::string line;
        return lines->next(line) == host::LineSource::LINE ? line : "<end>";
    }

    RunDirectory directory;
    std::unique_ptr<Transport> transport;
    std::unique_ptr<host::PipedLines> lines;
};

TEST_P(PipedLines, LeaveWhatStandsBehindThemToTheProgramThatTheyStart) {
    input("version\ntolmax\nfor the program\nshow\n");
    EXPECT_EQ(next(), "version");
    EXPECT_EQ(next(), "tolmax");
    char taken[17] = "";
    EXPECT_EQ(read(0, taken, 16), 16);
    EXPECT_STREQ(taken, "for the program\n");
    EXPECT_EQ(next(), "show");
    EXPECT_EQ(next(), "<end>");
}

TEST_P(PipedLines, AreJoinedAtBackticksAndMayBeLongEmptyOrCutOff) {
    const std::string longLine(20000, 'x');
    input("ver`\nsi`\r\non\r\n\n" + longLine + "\n`\n`\nshow`");
    EXPECT_EQ(next(), "version");
    EXPECT_EQ(next(), "");
    EXPECT_EQ(next(), longLine);
    EXPECT_EQ(next(), "show`");
    EXPECT_EQ(next(), "<end>");
}

INSTANTIATE_TEST_SUITE_P(Inputs, PipedLines,
                         testing::Values(Input::PIPE, Input::FILE, Input::SOCKET));

} // namespace
