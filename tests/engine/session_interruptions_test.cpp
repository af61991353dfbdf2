// What breaks into a session: a command that is to be stopped, and a CIM server that goes away.
#include "tests/engine/command_session.h"
#include "tests/support/eventually.h"
#include "tests/support/simulator_process.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <thread>

namespace {

class Interruptions : public ::testing::Test {
protected:
    // How many calls the server has answered since they were last forgotten.
    long calls() const {
        const std::string log = simulator.get("/sim/log");
        return std::count(log.begin(), log.end(), '\n');
    }
    void waitForCalls(long count) const {
        ASSERT_TRUE(eventually([&] { return calls() >= count; }));
    }
    std::string running() const {
        std::string job =
            directory.query("clpsvc.db3", "SELECT id FROM CLPCmdJob WHERE JobState=4");
        return job.substr(0, job.find('\n'));
    }
    std::string stateOf(const std::string& job) const {
        return directory.query("clpsvc.db3", "SELECT JobState FROM CLPCmdJob WHERE id=" + job);
    }

    RunDirectory directory;
    SimulatorProcess simulator{directory};
};

TEST_F(Interruptions, StopAWalkBeforeItsNextObject) {
    const struct {
        const char* what;
        const char* request; // a row of job_terminate
        int signal;
        const char* state;
        long further; // calls before it stops
    } cases[] = {{"terminated", "0", SIGUSR1, "8\n", 3},
                 {"killed", "1", SIGUSR1, "9\n", 3},
                 {"interrupted", nullptr, SIGINT, "9\n", 3},
                 {"killed without a signal", "1", 0, "9\n", 150}};
    CommandSession session(directory, simulator.port());
    session.answer("show /admin1");
    simulator.post("/sim/faults", "kind=delay count=always ms=15");
    for (const std::string form : {"text", "keyword", "clpxml"}) {
        for (const auto& c : cases) {
            if (c.signal == 0 && form != "text") // which takes up to a second
                continue;
            SCOPED_TRACE(form + ", " + c.what);
            simulator.post("/sim/log", "");
            ChildProcess& process = session.process();
            process.send("show -level all -o format=" + form + " /admin1\n");
            waitForCalls(10);
            const std::string job = running();
            if (c.request != nullptr)
                directory.execute("clp.db3", "INSERT INTO job_terminate VALUES('" +
                                                 std::to_string(process.pid()) + "'," + job + "," +
                                                 c.request + ")");
            if (c.signal != 0)
                process.signal(c.signal);
            const long before = calls();
            const std::string words = session.answer("");
            const std::string last = "Job " + job + " is killed\r\n";
            ASSERT_GE(words.size(), last.size()) << words;
            EXPECT_EQ(words.substr(words.size() - last.size()), last) << words;
            EXPECT_EQ(words.size() == last.size(), form != "text")
                << "only text is shown while it is gathered: " << words;
            EXPECT_LE(calls(), before + c.further);
            EXPECT_EQ(stateOf(job), c.state);
        }
    }
    EXPECT_EQ(directory.query("clp.db3", "SELECT count(*) FROM job_terminate"), "0\n");
    EXPECT_EQ(session.answer("cd"), "/admin1\r\n");
}

TEST_F(Interruptions, BetweenTwoLinesLeaveTheSessionAsItIs) {
    CommandSession session(directory, simulator.port());
    session.answer("cd /admin1/system1");
    for (const int signal : {SIGINT, SIGTSTP, SIGCONT, SIGUSR1}) {
        session.process().send("c");
        session.process().signal(signal);
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        session.process().signal(SIGCONT);
        EXPECT_EQ(session.answer("d"), "/admin1/system1\r\n") << signal;
    }
}

TEST_F(Interruptions, AServerThatIsGoneFailsEveryLineUntilItIsBack) {
    const std::string text = "cmdstat\r\n"
                             "\tstatus       : 2\r\n"
                             "\tstatus_tag   : COMMAND PROCESSING FAILED\r\n"
                             "\terror        : 256\r\n"
                             "\terror_tag    : COMMAND ERROR UNSPECIFIED\r\n";
    const std::string keyword = "status=2\r\nstatus_tag=COMMAND PROCESSING FAILED\r\n"
                                "error=256\r\nerror_tag=COMMAND ERROR UNSPECIFIED\r\nendoutput\r\n";
    const std::string document =
        "<cmdstat><status>2</status><status_tag>COMMAND PROCESSING FAILED</status_tag>"
        "<error>256</error><error_tag>COMMAND ERROR UNSPECIFIED</error_tag></cmdstat>"
        "</response>\r\n";
    for (const char* const host : {"", "127.0.0.1"}) {
        SCOPED_TRACE(host);
        SessionOptions options;
        options.host = host;
        CommandSession session(directory, simulator.port(), options);
        session.answer("cd /admin1/system1");
        simulator.post("/sim/faults", "kind=delay count=always ms=5");
        simulator.post("/sim/log", "");
        session.process().send("show -level all -o format=keyword /admin1\n");
        waitForCalls(15);
        const std::string port = simulator.port();
        simulator.stop();
        EXPECT_EQ(session.answer("").substr(0, 12), "commandline=") << "what was begun is answered";
        for (const char* const verb : {"cd", "create", "delete", "dump -destination http://h/x",
                                       "help", "load -source http://h/x", "reset", "set", "show",
                                       "show -help", "start", "stop", "version"}) {
            const std::string operand = std::string(verb) == "set"       ? " /admin1 name=x"
                                        : std::string(verb) == "create"  ? " /admin1/user* x=y"
                                        : std::string(verb) == "version" ? ""
                                                                         : " /admin1/system1";
            EXPECT_EQ(session.answer(verb + operand), text) << verb;
            const std::string keywordLine = verb + (" -o format=keyword" + operand);
            EXPECT_EQ(session.answer(keywordLine), "commandline=" + keywordLine + "\r\n" + keyword);
            const std::string answer = session.answer(verb + (" -o format=clpxml" + operand));
            EXPECT_EQ(answer.substr(std::min(answer.size(), answer.find("<cmdstat>"))), document);
        }
        if (options.host.empty()) { // elsewhere the jobs go with their server
            EXPECT_EQ(running(), "");
        }
        simulator = SimulatorProcess(directory, {"--port", port});
        EXPECT_EQ(session.answer("cd"), "/admin1/system1\r\n");
        EXPECT_NE(session.answer("show -display properties /admin1/system1").find("sysA"),
                  std::string::npos);
    }
}

} // namespace
