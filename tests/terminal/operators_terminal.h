// What the cases of sessions on a terminal share: a simulator, and a session on its terminal.
#ifndef VELCLP_TESTS_TERMINAL_OPERATORS_TERMINAL_H
#define VELCLP_TESTS_TERMINAL_OPERATORS_TERMINAL_H

#include "tests/support/pty_session.h"
#include "tests/support/simulator_process.h"

#include <gtest/gtest.h>

#include <memory>

inline const std::string CTRL_C = "\003", CTRL_Z = "\032", QUIT = "\034", TAB = "\t", UP = "\033[A",
                         DOWN = "\033[B", RIGHT = "\033[C", LEFT = "\033[D", DEL = "\033[3~",
                         RUBOUT = "\177", BACKSPACE = "\010";

using Rows = std::vector<std::string>;

inline std::string times(std::size_t count, const std::string& keys) {
    std::string all;
    while (count-- > 0)
        all += keys;
    return all;
}

class OperatorsTerminal : public ::testing::Test {
protected:
    PtySession& start(const PtySession::Options& options = {}) {
        session = std::make_unique<PtySession>(directory, simulator.port(), options);
        session->prompt();
        return *session;
    }
    // Gives up the line being typed.
    void giveUp() {
        session->skip();
        session->type(CTRL_C);
        session->prompt();
    }
    // The session answers, ends when it is told to, and leaves the terminal as it was.
    void expectOrderlyEnd() {
        EXPECT_EQ(session->answer("version"),
                  "SM CLP Version: 1.0.2\nSM ME Addressing Version: 1.0.0b\n");
        session->type("exit\r");
        EXPECT_EQ(session->wait(), 0);
        EXPECT_TRUE(session->isRestored());
    }
    std::string sessionRows() const {
        return directory.query("clpsvc.db3", "SELECT count(*) FROM CLPSession");
    }
    // Every reading of an instance takes so long from now on.
    void slowDown(int msec) const {
        simulator.post("/sim/faults",
                       "operation=GetInstance kind=delay count=always ms=" + std::to_string(msec));
    }

    RunDirectory directory;
    SimulatorProcess simulator{directory};
    std::unique_ptr<PtySession> session;
};

#endif
