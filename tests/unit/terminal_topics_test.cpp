// The help topic file, and the settings of a serial console.
#include "config/aim_config.h"
#include "tests/support/run_directory.h"
#include "velclp/clpman.h"
#include "velclp/stdstream.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <pty.h>
#include <unistd.h>

namespace {

class Topics : public ::testing::Test {
protected:
    void open(const std::string& content) {
        directory.write("topics", content);
        ASSERT_EQ(CLP_Man_Init(directory.file("topics")), 0);
    }
    void TearDown() override { CLP_Man_Fini(); }
    static std::string topic(const std::string& name) {
        std::string text = "as it was";
        CLP_Man_GetTopic(name, text);
        return text;
    }
    RunDirectory directory;
};

TEST_F(Topics, AnswerToEitherNameOfTheirHead) {
    open("preamble\n{show|ls}\nShow a target.\n<tag>\n  {cd}\nMove {somewhere}.\n");
    EXPECT_EQ(topic("show"), "Show a target.\n<tag>\n  {cd}\nMove {somewhere}.");
    EXPECT_EQ(topic("ls"), topic("show"));
    EXPECT_EQ(topic("cd"), "Move {somewhere}.") << "a head may stand behind blanks";
    EXPECT_EQ(topic("SHOW"), "");
    EXPECT_EQ(topic("nothing"), "");
    EXPECT_EQ(topic(""), "");
}

TEST_F(Topics, DropLeadingEmptyLinesAndKeepInnerOnes) {
    open("{a}\n\n\nfirst\n\nsecond\n\n{b}\n{c}\n\nlast");
    EXPECT_EQ(topic("a"), "first\n\nsecond\n");
    EXPECT_EQ(topic("b"), "");
    EXPECT_EQ(topic("c"), "last");
}

TEST_F(Topics, EndAtAHeadInTheFirstColumnOnly) {
    open("{a}\none\n{ not a head\n  {b}\n{c,d}\nthree\n{|x}\nfour\n");
    EXPECT_EQ(topic("a"), "one\n{ not a head\n  {b}");
    EXPECT_EQ(topic("c"), "three") << "a name ends at a comma";
    EXPECT_EQ(topic("x"), "");
}

TEST_F(Topics, AreEmptyOrUntouchedWithoutAFile) {
    EXPECT_EQ(topic("show"), "as it was");
    EXPECT_EQ(CLP_Man_Init(directory.file("none")), 2);
    EXPECT_EQ(topic("show"), "as it was");
    open("{a}\ntext\n");
    EXPECT_EQ(topic("a"), "text");
    CLP_Man_Fini();
    EXPECT_EQ(topic("a"), "as it was");
}

// Standard input on a terminal of the test's own, which is named like a serial line.
class SerialConsole : public Topics {
protected:
    void SetUp() override {
        int master = -1, slave = -1;
        ASSERT_EQ(openpty(&master, &slave, nullptr, nullptr, nullptr), 0);
        ASSERT_EQ(dup2(slave, 0), 0);
        setTtyNameFunc([](int) -> const char* { return "/dev/ttyS0"; });
        stdStream::setTimeout(99);
    }
    void TearDown() override { setTtyNameFunc(nullptr); }
    void configure(const std::string& configuration) const {
        directory.write("console.conf", configuration);
        aim_config_use_file(directory.file("console.conf"));
    }
    static long timeout() { return stdStream::this_tv.tv_sec; }
};

TEST_F(SerialConsole, TakesItsTimeoutFromTheConfigurationOrHasNone) {
    std::fill(std::begin(ser_str_console_command), std::end(ser_str_console_command), 'x');
    configure("ser_bool_console_enable=true\nser_int_console_timeout=300\n");
    EXPECT_EQ(initForSerial(), 0);
    EXPECT_EQ(timeout(), 300);
    EXPECT_EQ(std::string(sizeof ser_str_console_command, '\0'),
              std::string(ser_str_console_command, sizeof ser_str_console_command));
    configure("ser_bool_console_enable=true\nser_int_console_timeout=soon\n");
    EXPECT_EQ(initForSerial(), 0);
    EXPECT_EQ(timeout(), 0);
}

TEST_F(SerialConsole, IsUsedAsItIsWithoutAConfigurationStoreOrALine) {
    aim_config_use_file(directory.file("none"));
    EXPECT_EQ(initForSerial(), 0);
    EXPECT_EQ(timeout(), 99);
    setTtyNameFunc([](int) -> const char* { return nullptr; });
    configure("ser_bool_console_enable=false\n");
    EXPECT_EQ(initForSerial(), 0);
}

} // namespace
