// What no operator types: arbitrary bytes, lines that are too long, windows and lines that are not
// what they should be. The session goes on or ends in order.
#include "tests/terminal/operators_terminal.h"

#include <random>

namespace {

class BadInput : public OperatorsTerminal {
protected:
    // A line behind whatever was typed before is run: output that was stopped goes on, and a line
    // that was begun, or continued, is ended.
    void expectAlive() {
        const std::string line = "help -o format=keyword alive" + std::to_string(++m_lines);
        session->type("\021\r\r" + line + "\r");
        session->expect("commandline=" + line + "\n");
        session->expect("endoutput\n");
        session->prompt();
    }

private:
    int m_lines = 0;
};

TEST_F(BadInput, EveryByteLeavesASessionThatAnswers) {
    start();
    for (int value = 0; value < 256; ++value) {
        SCOPED_TRACE(value);
        const std::string byte(1, static_cast<char>(value));
        session->type(byte);
        expectAlive();
        session->type(byte + "x\r");
    }
    expectAlive();
    expectOrderlyEnd();
}

TEST_F(BadInput, RandomBytesLeaveASessionThatAnswers) {
    const unsigned seed = 20260731;
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    start();
    for (const std::size_t length : {1, 2, 3, 5, 8, 13, 64, 256, 1024, 2048, 4095, 4096}) {
        for (int round = 0; round < 4; ++round) {
            std::string bytes;
            while (bytes.size() < length)
                bytes += static_cast<char>(random() % 256);
            // Half of them without anything that ends a line or that the terminal acts upon.
            if (round % 2 == 1)
                for (char& byte : bytes)
                    if (static_cast<unsigned char>(byte) < ' ')
                        byte = '\033';
            session->type(bytes);
            expectAlive();
        }
    }
    expectOrderlyEnd();
}

TEST_F(BadInput, ALineOfTheBuffersSizeIsRunAndALongerOneGoesOnInTheNext) {
    start();
    const std::string line = "help -o format=keyword " + std::string(8192 - 23, 'a');
    session->type(line + "\r");
    session->expect("commandline=" + line + "\n");
    session->prompt();
    EXPECT_EQ(session->prompt(), "\n") << "the end of the line";
    session->type(line + "nosuch\r");
    session->expect("commandline=" + line + "\n");
    session->prompt();
    session->expect("COMMAND NOT RECOGNIZED");
    session->prompt();
    expectOrderlyEnd();
}

TEST_F(BadInput, AWindowWithoutWidthIsEightyColumnsAndANarrowOneIsUsed) {
    for (const int columns : {0, 1, 2, 3, 7}) {
        SCOPED_TRACE(columns);
        PtySession::Options options;
        options.columns = columns;
        options.rows = 0;
        session = std::make_unique<PtySession>(directory, simulator.port(), options);
        session->expect(columns == 1 ? "-\n>\n " : columns == 2 ? "->\n " : "-> ");
        session->type("help  -o" + times(2, LEFT) + RUBOUT + times(9, RIGHT) +
                      " format=keyword show\r");
        session->expect("commandline=help -o format=keyword show\n");
        session->type("exit\r");
        EXPECT_EQ(session->wait(), 0);
        EXPECT_TRUE(session->isRestored());
    }
}

// No signal tells that it is gone.
TEST_F(BadInput, ATerminalThatVanishesEndsTheSessionWithoutSpinning) {
    PtySession::Options options;
    options.isControlling = false;
    for (const char* const typed : {"", "sho", "show -level all /admin1\r", "exit\r"}) {
        SCOPED_TRACE(typed);
        start(options).type(typed);
        session->expect(typed[0] == 's' && typed[3] == 'w' ? "/admin1\n" : "");
        session->hangUp();
        EXPECT_EQ(session->wait(), 0);
        EXPECT_LT(session->processorTime(), std::chrono::seconds(10));
        EXPECT_EQ(sessionRows(), "0\n");
    }
}

TEST_F(BadInput, OnASerialLineTheConfigurationDecides) {
    const std::string noTimeout = "Get timeout failed, setting to default as no timeout\n";
    const std::string missing = "Get serial console enable configruation failed\n";
    const struct {
        const char* terminal;
        const char* store;
        std::string says;
        bool used;
    } cases[] = {
        {"/dev/ttyS0", "ser_bool_console_enable=true\nser_int_console_timeout=60\n", "", true},
        {"/dev/ttyS0", "ser_bool_console_enable=true\n", noTimeout, true},
        {"/dev/ttyS0", "ser_bool_console_enable=true\nser_int_console_timeout=x\n", noTimeout,
         true},
        {"/dev/ttyS1", "ser_bool_console_enable=false\n", "serial console is disabled\n", false},
        {"/dev/ttyS1", "ser_int_console_timeout=60\n", missing, false},
        {"/dev/ttyS1", "ser_bool_console_enable=1\n", missing, false},
        {"/dev/pts/9", "ser_bool_console_enable=false\n", "", true},
        {"/dev/ttyS0", nullptr, "Initialzation of AIM failed\n", true},
    };
    PtySession::Options options;
    options.program = VELCLP_PRETENDED_HOST;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.terminal + (": " + std::string(c.store != nullptr ? c.store : "")));
        if (c.store != nullptr)
            directory.write("console.conf", c.store);
        const std::string file = directory.file(c.store != nullptr ? "console.conf" : "none");
        options.arguments = {"--tty", c.terminal, "--store", file};
        session = std::make_unique<PtySession>(directory, simulator.port(), options);
        if (c.used) {
            EXPECT_EQ(session->prompt(), c.says);
            expectOrderlyEnd();
        } else {
            EXPECT_EQ(session->wait(), 1);
            EXPECT_EQ(session->output(), c.says);
            EXPECT_TRUE(session->isRestored());
        }
    }
}

TEST_F(BadInput, ASerialLinesTimeOutEndsALineThatNobodyFinishes) {
    directory.write("console.conf", "ser_bool_console_enable=true\nser_int_console_timeout=1\n");
    PtySession::Options options;
    options.program = VELCLP_PRETENDED_HOST;
    options.arguments = {"--tty", "/dev/ttyS0", "--store", directory.file("console.conf")};
    start(options).type("show /adm");
    EXPECT_EQ(session->wait(std::chrono::seconds(5)), 0);
    EXPECT_EQ(session->screen().rows(), (Rows{"-> show /adm", "CLP Session terminated"}));
    EXPECT_TRUE(session->isRestored());
    EXPECT_EQ(sessionRows(), "0\n");
}

} // namespace
