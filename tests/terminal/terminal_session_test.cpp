// An operator's session on a real terminal: keys, signals, and every way in which it can end.
#include "tests/terminal/operators_terminal.h"
#include "velclp/stdstream.h"

#include <pty.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <csignal>

namespace {

TEST_F(OperatorsTerminal, ALoginShellIsASessionLikeAnyOther) {
    PtySession::Options options;
    options.name = "-velclp";
    PtySession& terminal = start(options);
    EXPECT_FALSE(terminal.isRestored());
    EXPECT_EQ(terminal.answer("cd /admin1"), "/admin1\n");
    EXPECT_EQ(terminal.answer(""), "");
    EXPECT_EQ(terminal.answer("  "), "");
    expectOrderlyEnd();
    EXPECT_EQ(terminal.screen().rows().back(), "CLP Session terminated");
    EXPECT_EQ(sessionRows(), "0\n");

    options.arguments = {"-c", "version\nversion -o format=keyword", "-c", "exit", "-c", "version"};
    PtySession remote(directory, simulator.port(), options);
    EXPECT_EQ(remote.wait(), 0);
    EXPECT_EQ(remote.output().find("-> "), std::string::npos);
    EXPECT_NE(remote.output().find("1.0.0b"), std::string::npos);
    EXPECT_NE(remote.output().find("clpversion=1.0.2"), std::string::npos);
}

// With the key the terminal throws away what was typed, which the session may be about to read.
TEST(TerminalStream, HearsTheInterruptKeyThatTakesItsInputAway) {
    int master = -1;
    int slave = -1;
    ASSERT_EQ(openpty(&master, &slave, nullptr, nullptr, nullptr), 0);
    ASSERT_EQ(dup2(slave, 0), 0);
    static const int interrupt = eventfd(0, 0);
    static int wakeups = 0;
    stdStream::setWakeup(interrupt, [] {
        tcflush(0, TCIFLUSH);
        eventfd_write(interrupt, 1);
        return ++wakeups == 2 ? -1 : 0;
    });
    stdStream stream;
    ASSERT_EQ(write(master, "x", 1), 1);
    alarm(20);
    char byte = 0;
    EXPECT_EQ(stream.read(&byte, 1), -1);
    alarm(0);
    stdStream::setWakeup(-1, nullptr);
}

TEST_F(OperatorsTerminal, TheInterruptKeyStopsTheRunningCommandAndTheSessionGoesOn) {
    PtySession& terminal = start();
    terminal.answer("show -level all /admin1");
    slowDown(200);
    terminal.type("show -level all /admin1\r");
    terminal.expect("\n");
    terminal.type(CTRL_C);
    terminal.expect(" is killed\n", std::chrono::seconds(5));
    terminal.prompt();
    EXPECT_EQ(directory.query("clpsvc.db3", "SELECT count(*) FROM CLPCmdJob WHERE JobState=9"),
              "1\n");
    EXPECT_NE(terminal.answer("version").find("1.0.2"), std::string::npos);
}

TEST_F(OperatorsTerminal, TerminationAndHangUpEndItInOrder) {
    for (const int signal : {SIGTERM, SIGHUP}) {
        PtySession& terminal = start();
        terminal.type("sho");
        terminal.expect("sho");
        terminal.signal(signal);
        EXPECT_EQ(terminal.wait(), 128 + signal);
        EXPECT_EQ(terminal.screen().rows().back(), "CLP Session terminated");
        EXPECT_TRUE(terminal.isRestored());
        EXPECT_EQ(sessionRows(), "0\n");
    }
    PtySession& terminal = start();
    slowDown(100);
    terminal.type("show -level all /admin1\r");
    terminal.expect("\n");
    terminal.signal(SIGTERM);
    EXPECT_EQ(terminal.wait(std::chrono::seconds(5)), 128 + SIGTERM);
    EXPECT_EQ(sessionRows(), "0\n");
}

TEST_F(OperatorsTerminal, ALineThatIsLostEndsItInOrder) {
    PtySession& terminal = start();
    terminal.type("show /adm");
    terminal.expect("show /adm");
    terminal.hangUp();
    const int status = terminal.wait();
    EXPECT_TRUE(status == 0 || status == 128 + SIGHUP) << "whichever it sees first: " << status;
    EXPECT_EQ(sessionRows(), "0\n");
}

TEST_F(OperatorsTerminal, AFatalFaultLeavesTheTerminalAsItWas) {
    directory.write("schema.conf", "[zorm_admindomain]\nno equals sign\n[end]\n");
    PtySession& terminal = start();
    terminal.type("show /admin1\r");
    EXPECT_EQ(terminal.wait(), 128 + SIGABRT);
    EXPECT_NE(terminal.output().find("pos!=string::npos"), std::string::npos);
    EXPECT_TRUE(terminal.isRestored());
}

TEST_F(OperatorsTerminal, QuitAndSuspendKeysDoNotEndALoginsSession) {
    PtySession& terminal = start();
    terminal.type(QUIT + CTRL_Z);
    EXPECT_NE(terminal.answer("version").find("1.0.2"), std::string::npos);
}

TEST_F(OperatorsTerminal, TheTimeOutEndsAnIdlePromptAndNoRunningCommand) {
    PtySession::Options options;
    options.arguments = {"--timeout", "1"};
    PtySession& terminal = start(options);
    slowDown(1500);
    EXPECT_NE(terminal.answer("show -display properties /admin1").find("\n"), std::string::npos);
    EXPECT_EQ(terminal.wait(std::chrono::seconds(5)), 0);
    EXPECT_EQ(terminal.screen().rows().back(), "CLP Session terminated");
}

TEST_F(OperatorsTerminal, ANewWindowSizeHoldsFromTheNextLineOn) {
    PtySession::Options options;
    options.columns = 20;
    PtySession& terminal = start(options);
    terminal.type("version      version");
    terminal.expect("version      vers\nion");
    terminal.resize(80, 24);
    terminal.type(CTRL_C);
    terminal.prompt();
    terminal.type("version      version");
    terminal.expect("version      version");
}

TEST_F(OperatorsTerminal, PastingLosesNoLine) {
    PtySession& terminal = start();
    const int lines = 10000;
    std::string pasted;
    for (int i = 0; i < lines; ++i)
        pasted += "nosuchverb" + std::to_string(i) + "\r";
    terminal.type(pasted + "exit\r");
    EXPECT_EQ(terminal.wait(std::chrono::seconds(60)), 0);
    std::size_t answers = 0;
    const std::string failure = "COMMAND PROCESSING FAILED";
    for (std::size_t at = 0; (at = terminal.output().find(failure, at)) != std::string::npos; ++at)
        ++answers;
    EXPECT_EQ(answers, static_cast<std::size_t>(lines));
    EXPECT_NE(terminal.output().find("nosuchverb9999"), std::string::npos);
}

} // namespace
