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
class SerialConsole : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_EQ(openpty(&master, &slave, nullptr, nullptr, nullptr), 0);
        ASSERT_EQ(dup2(slave, 0), 0);
        setTtyNameFunc([](int) -> const char* { return "/dev/ttyS0"; });
        stdStream::setTimeout(0);
    }
    void TearDown() override {
        setTtyNameFunc(nullptr);
        close(master);
        close(slave);
    }
    // What initForSerial says with this configuration, and what it gives.
    std::string init(const std::string& configuration, int expected) {
        directory.write("console.conf", configuration);
        return initWith(directory.file("console.conf"), expected);
    }
    static std::string initWith(const std::string& file, int expected) {
        aim_config_use_file(file);
        testing::internal::CaptureStdout();
        EXPECT_EQ(initForSerial(), expected);
        return testing::internal::GetCapturedStdout();
    }
    static long timeout() { return stdStream::this_tv.tv_sec; }

    RunDirectory directory;
    int master = -1;
    int slave = -1;
};

TEST_F(SerialConsole, TakesItsTimeoutFromTheConfiguration) {
    std::fill(std::begin(ser_str_console_command), std::end(ser_str_console_command), 'x');
    EXPECT_EQ(init("ser_bool_console_enable=true\nser_int_console_timeout=300\n", 0), "");
    EXPECT_EQ(timeout(), 300);
    EXPECT_EQ(std::string(sizeof ser_str_console_command, '\0'),
              std::string(ser_str_console_command, sizeof ser_str_console_command));
}

TEST_F(SerialConsole, IsNotUsedWhenItIsDisabledOrNobodySaysThatItIsNot) {
    EXPECT_EQ(init("ser_bool_console_enable=false\n", -1), "serial console is disabled\n");
    const std::string missing = "Get serial console enable configruation failed\n";
    EXPECT_EQ(init("ser_int_console_timeout=5\n", -1), missing);
    EXPECT_EQ(init("ser_bool_console_enable=maybe\n", -1), missing);
    EXPECT_EQ(timeout(), 0);
}

TEST_F(SerialConsole, HasNoTimeoutWhenNoneCanBeRead) {
    for (const char* const line : {"", "ser_int_console_timeout=soon\n"}) {
        stdStream::setTimeout(99);
        EXPECT_EQ(init(std::string("ser_bool_console_enable=true\n") + line, 0),
                  "Get timeout failed, setting to default as no timeout\n");
        EXPECT_EQ(timeout(), 0);
    }
}

TEST_F(SerialConsole, IsUsedAsItIsWithoutAConfigurationStore) {
    stdStream::setTimeout(99);
    EXPECT_EQ(initWith(directory.file("none"), 0), "Initialzation of AIM failed\n");
    EXPECT_EQ(timeout(), 99);
}

TEST_F(SerialConsole, OtherLinesAreNotAskedAbout) {
    setTtyNameFunc([](int) -> const char* { return "/dev/pts/3"; });
    EXPECT_EQ(init("ser_bool_console_enable=false\n", 0), "");
    setTtyNameFunc([](int) -> const char* { return nullptr; });
    EXPECT_EQ(init("ser_bool_console_enable=false\n", 0), "");
}

} // namespace
