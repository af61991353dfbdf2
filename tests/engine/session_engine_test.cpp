// The engine and its commands in this process, against the simulator.
#include "database/cdbc.h"
#include "database/faults.h"
#include "log/osalog.h"
#include "tests/support/eventually.h"
#include "tests/support/run_directory.h"
#include "tests/support/simulator_process.h"
#include "velclp/clpcommand.h"
#include "velclp/clpsession.h"
#include "velclp/core.h"
#include "velclp/coutputer.h"
#include "velclp/token.h"
#include "velclp/transport.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <pty.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <functional>
#include <memory>
#include <stdexcept>
#include <thread>

using namespace velmora_clp;

namespace {

void sleepFor(int msec) {
    std::this_thread::sleep_for(std::chrono::milliseconds(msec));
}

class Engine : public ::testing::Test {
protected:
    void SetUp() override {
        Locations locations = directory.locations();
        locations.tolmaxProgram = program("tolmax");
        locations.connectProgram = program("connect");
        Locations::set(locations);
        login("511");
    }
    // A program that notes its name and arguments.
    std::string program(const std::string& name) {
        directory.write(name, "#!/bin/sh\n{ printf '" + name +
                                  "'; printf ' <%s>' \"$@\"; echo; } >> " +
                                  directory.file("called") + "\n");
        chmod(directory.file(name).c_str(), 0755);
        return directory.file(name);
    }
    static void login(const char* privileges) {
        setenv("USER", "admin", 1);
        setenv("privileges", privileges, 1);
    }
    void TearDown() override {
        dbfaults::clear();
        osalog_set_file("");
    }
    // What has been logged since the last call.
    std::string logged() {
        const std::string text = directory.read("log");
        directory.write("log", "");
        return text;
    }
    void start() { core = std::make_unique<CLPCore>("localhost", simulator.port(), transport); }
    // Runs a line and gives what it wrote.
    std::string run(const std::string& line, int expected = 0) {
        testing::internal::CaptureStdout();
        EXPECT_EQ(core->run(line), expected) << line;
        transport.flush();
        return testing::internal::GetCapturedStdout();
    }
    std::string jobs(const std::string& condition) const {
        return directory.query("clpsvc.db3",
                               "SELECT id,JobState FROM CLPCmdJob WHERE " + condition);
    }

    RunDirectory directory;
    SimulatorProcess simulator{directory};
    Transport transport{"std", -1};
    std::unique_ptr<CLPCore> core;
};

// A parsed line without a verb.
boost::shared_ptr<CLPToken> parsed(const std::string& keep = "") {
    auto token = boost::make_shared<CLPToken>();
    token->_Options.addNode({"option"});
    if (!keep.empty())
        token->_Options.addNode({"option", "-keep"}, keep);
    return token;
}

// A verb of the test's own.
class Verb : public CLPCommand {
public:
    Verb(const std::string& host, const std::string& port, Transport& transport,
         std::function<void(Verb&)> body, const boost::shared_ptr<CLPToken>& token = parsed())
        : CLPCommand(host, port, "admin01ff", transport, token), m_body(std::move(body)) {
        ++alive;
    }
    ~Verb() override { --alive; }
    void svc() override { m_body(*this); }
    void display() override {
        *m_transport << "status " << m_status.getStatusTag() << ", error "
                     << (m_error != nullptr ? m_error->getErrorTag() : "none") << Transport::endl;
    }
    Transport& out() { return *m_transport; }
    const std::string& target() const { return m_cdt; }
    static std::atomic<int> alive;

private:
    std::function<void(Verb&)> m_body;
};
std::atomic<int> Verb::alive{0};

void untilStopped(Verb& verb) {
    for (;;) {
        verb.checkpoint();
        sleepFor(1);
    }
}

TEST_F(Engine, WordsOfOutsideProgramsRunThemInAnyCaseWithTheirArguments) {
    start();
    EXPECT_EQ(run("TolMax -x 'a b'"), "");
    EXPECT_EQ(run("  console"), "");
    EXPECT_EQ(run("CONSOLE 1"), "");
    EXPECT_EQ(run("tolmax"), "");
    EXPECT_EQ(directory.read("called"), "tolmax <-x> <a b>\nconnect <>\nconnect <1>\ntolmax <>\n");
    EXPECT_NE(run("tolmaxy").find("COMMAND NOT RECOGNIZED"), std::string::npos);
    EXPECT_NE(run("tolmax\tx").find("COMMAND NOT RECOGNIZED"), std::string::npos);
}

TEST_F(Engine, AnyNumberMayBeThePrivilegeMaskAndItsWriteBitAllowsAVerb) {
    for (const char* mask : {"3", "511", "-1"}) {
        login(mask);
        start();
        EXPECT_EQ(run("set -help x=1").find("MISSING REQUIRED CLP PRIVILEGE"), std::string::npos)
            << mask;
        core.reset();
    }
}

TEST_F(Engine, TheDefaultTargetIsTheRootUntilItIsAnAddress) {
    start();
    EXPECT_EQ(core->CDT(), "/admin1");
    run("cd /admin1/system1");
    EXPECT_EQ(core->CDT(), "/admin1/system1");
    for (const char* const bad : {"foo", "admin1", "/", "/admin1/system*x", "SESSION", "/a*"}) {
        CLPSession::getInstance()->setCurrentDefaultTarget(bad);
        const Verb verb("localhost", simulator.port(), transport, [](Verb&) {});
        EXPECT_EQ(verb.target(), std::string(bad) == "/" ? "/" : "/admin1") << bad;
    }
    directory.execute("clpsvc.db3", "DELETE FROM CLPSession");
    CLPSession::getInstance()->setCurrentDefaultTarget("/admin1/system2");
    EXPECT_EQ(core->CDT(), "/admin1/system2") << "the value that was last set";
}

TEST_F(Engine, SessionPropertiesAreColumnsOfTheSessionsRowAndAreReadAfresh) {
    start();
    using Get = void (CLPSession::*)(std::string&);
    using Set = void (CLPSession::*)(const std::string&);
    struct {
        const char* column;
        Get get;
        Set set;
    } const texts[] = {
        {"DisplayOption", &CLPSession::getDisplayOption, &CLPSession::setDisplayOption},
        {"OutputFormat", &CLPSession::getOutputFormat, &CLPSession::setOutputFormat},
        {"OutputLanguage", &CLPSession::getOutputLanguage, &CLPSession::setOutputLanguage},
        {"OutputOrder", &CLPSession::getOutputOrder, &CLPSession::setOutputOrder},
        {"OutputPosition", &CLPSession::getOutputPosition, &CLPSession::setOutputPosition},
        {"OutputVerbosity", &CLPSession::getOutputVerbosity, &CLPSession::setOutputVerbosity},
        {"CurrentDefaultTarget", &CLPSession::getCurrentDefaultTarget,
         &CLPSession::setCurrentDefaultTarget},
    };
    CLPSession& session = *CLPSession::getInstance();
    const auto row = [&](const std::string& column) {
        return directory.query("clpsvc.db3", "SELECT " + column + " FROM CLPSession");
    };
    const auto change = [&](const std::string& settings) {
        directory.execute("clpsvc.db3", "UPDATE CLPSession SET " + settings);
    };
    EXPECT_EQ(row("id,OEMVelmora_pid,CurrentDefaultTarget,OutputFormat"),
              std::to_string(session.getSessionId()) + "|" + std::to_string(getpid()) +
                  "|/admin1|2\n");
    for (const auto& text : texts) {
        const std::string column = text.column;
        (session.*text.set)("set " + column);
        EXPECT_EQ(row(column), "set " + column + "\n");
        change(column + "='changed'");
        std::string value;
        (session.*text.get)(value);
        EXPECT_EQ(value, "changed") << column;
    }
    session.setKeepTime(7);
    session.setOutputCount(8);
    session.setWaitBehavior(true);
    EXPECT_EQ(row("KeepTime,OutputCount,WaitBehavior"), "7|8|1\n");
    change("KeepTime=70,OutputCount=80,WaitBehavior=0");
    EXPECT_EQ(session.getKeepTime(), 70);
    EXPECT_EQ(session.getOutputCount(), 80);
    EXPECT_FALSE(session.getWaitBehavior());
    directory.execute("clpsvc.db3", "DELETE FROM CLPSession");
    std::string value;
    session.getOutputOrder(value);
    EXPECT_EQ(value, "changed") << "a row that vanished leaves the value that was last read";
    EXPECT_EQ(session.getKeepTime(), 70);
}

TEST_F(Engine, ADatabaseThatFailsCostsLinesOfTheLogThatNameItAndNeverTheSession) {
    start();
    ASSERT_TRUE(osalog_set_file(directory.file("log")));
    const std::string session = directory.file("clpsvc.db3");
    const std::pair<int, const char*> failures[] = {
        {SQLITE_READONLY, "attempt to write a readonly database: "},
        {SQLITE_FULL, "database or disk is full: "},
        {SQLITE_BUSY, "database is locked: "},
    };
    for (const auto& [code, reason] : failures) {
        dbfaults::failStatement(1, code, 1000000);
        EXPECT_NE(run("version").find("1.0.2"), std::string::npos) << reason;
        const std::string log = logged();
        for (const char* function : {"CLP.GetElementFromDB", "CLP.CLPCmdJob.CLPCmdJob",
                                     "CLP.CLPCmdJob.RequestStateChange"})
            EXPECT_NE(log.find(function), std::string::npos) << log;
        EXPECT_NE(log.find("catch cdbc exception=[" + (reason + session) + "]\n"),
                  std::string::npos)
            << log;
        EXPECT_NE(run("show /admin1").find("COMMAND EXECUTION FAILED"), std::string::npos);
        core->terminateJob();
        EXPECT_NE(logged().find("CLP.CLPCore.terminateJob dbstatement.h:"), std::string::npos);
        dbfaults::clear();
        EXPECT_NE(run("show /admin1").find("/admin1"), std::string::npos) << "it is back";
    }
    DBDriver::closeIdle();
    unlink(directory.file("clp.db3").c_str());
    logged();
    EXPECT_NE(run("show /admin1").find("Software Error"), std::string::npos);
    EXPECT_NE(logged().find("catch exception=[unable to open database file: " +
                            directory.file("clp.db3") + "]"),
              std::string::npos);
    EXPECT_NE(run("version").find("1.0.2"), std::string::npos);
}

TEST_F(Engine, AJobKeepsTheTimeThatTheLineOrTheSessionGives) {
    start();
    struct {
        const char* keep;
        long long seconds;
    } const cases[] = {{"2.30", 150}, {"1", 60},   {"0", 300},    {"1.2.3", 60},
                       {"0.5", 5},    {"-3", 300}, {"soon", 300}, {"99999999999", 0}};
    for (const auto& c : cases) {
        const Verb verb(
            "localhost", simulator.port(), transport, [](Verb&) {}, parsed(c.keep));
        const long long expected = c.seconds != 0 ? c.seconds * 1000000 : 2147483647;
        EXPECT_EQ(directory.query("clpsvc.db3", "SELECT TimeBeforeRemoval FROM CLPCmdJob ORDER BY "
                                                "id DESC LIMIT 1"),
                  std::to_string(expected) + "\n")
            << c.keep;
    }
    CLPSession::getInstance()->setKeepTime(20);
    const Verb verb("localhost", simulator.port(), transport, [](Verb&) {});
    EXPECT_EQ(directory.query("clpsvc.db3", "SELECT max(TimeBeforeRemoval) FROM CLPCmdJob WHERE "
                                            "id=(SELECT max(id) FROM CLPCmdJob)"),
              "20000000\n");
}

TEST_F(Engine, AllCommandsCanBeStoppedAtOnceAndTheirJobsAreTerminated) {
    start();
    CLPSession& session = *CLPSession::getInstance();
    testing::internal::CaptureStdout();
    {
        Verb verb("localhost", simulator.port(), transport, untilStopped);
        verb.start();
        EXPECT_EQ(session.findCommand(1), &verb);
        session.stopallCommand();
        EXPECT_EQ(verb.wait(-1), 0);
    }
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Job 1 is killed\r\n");
    EXPECT_EQ(jobs("1"), "1|8\n");
    EXPECT_EQ(session.findCommand(1), nullptr);
    EXPECT_FALSE(session.stopCommand(77, CLPCommand::KILLED));
}

TEST_F(Engine, ACommandThatThrowsIsAnsweredAsASoftwareError) {
    start();
    testing::internal::CaptureStdout();
    {
        Verb verb("localhost", simulator.port(), transport,
                  [](Verb&) { throw std::runtime_error("broken"); });
        verb.start();
        EXPECT_EQ(verb.wait(-1), 0);
    }
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "status COMMAND EXECUTION FAILED, error Software Error\r\n");
    EXPECT_EQ(jobs("1"), "1|10\n");
}

TEST_F(Engine, ASpawnedCommandRunsOnInSilenceAndTheSessionsEndKillsIt) {
    start();
    CLPSession& session = *CLPSession::getInstance();
    std::atomic<bool> begun{false};
    std::atomic<bool> heard{false};
    testing::internal::CaptureStdout();
    auto* const verb = new Verb("localhost", simulator.port(), transport, [&](Verb& self) {
        self.out() << "before ";
        begun = true;
        for (;;) {
            self.checkpoint();
            if (self.bBackGround()) {
                self.out() << "nobody hears this" << Transport::endl;
                heard = self.out().Type() == "nul";
            }
            sleepFor(1);
        }
    });
    verb->start();
    EXPECT_TRUE(eventually([&] { return begun.load(); }));
    EXPECT_EQ(verb->wait(300), 1);
    EXPECT_EQ(session.stopFGCommand(), -1) << "the foreground is empty";
    EXPECT_FALSE(session.allCommandDone());
    EXPECT_EQ(jobs("1"), "1|4\n");
    EXPECT_TRUE(eventually([&] { return heard.load(); }));
    core->terminateSession();
    transport.flush();
    EXPECT_TRUE(eventually([] { return Verb::alive == 0; }));
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "before Killing commands running in backgrounds..done\nCLP Session terminated\n");
    EXPECT_EQ(jobs("1"), "1|9\n");
}

TEST_F(Engine, ACommandThatDoesNotStopIsGivenUpAfterTwoTries) {
    start();
    std::atomic<bool> release{false};
    auto* const verb = new Verb("localhost", simulator.port(), transport, [&release](Verb&) {
        while (!release)
            sleepFor(1);
    });
    verb->start();
    EXPECT_EQ(verb->wait(1), 1);
    testing::internal::CaptureStdout();
    core->terminateSession();
    transport.flush();
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "Killing commands running in backgrounds...failed\nCLP Session terminated\n");
    release = true;
    EXPECT_TRUE(eventually([] { return Verb::alive == 0; }));
}

TEST_F(Engine, OutsideRequestsStopTheJobsOfThisProcessOnly) {
    start();
    Verb verb("localhost", simulator.port(), transport, untilStopped);
    verb.start();
    directory.execute("clp.db3", "INSERT INTO job_terminate VALUES('1',1,1)");
    core->terminateJob();
    const std::string self = std::to_string(getpid());
    directory.execute("clp.db3", "INSERT INTO job_terminate VALUES('" + self + "',99,1)");
    core->terminateJob();
    EXPECT_FALSE(CLPSession::getInstance()->allCommandDone());
    directory.execute("clp.db3", "INSERT INTO job_terminate VALUES('" + self + "',1,0)");
    core->terminateJob();
    EXPECT_EQ(verb.wait(-1), 0);
    EXPECT_EQ(directory.query("clp.db3", "SELECT pid,jobid FROM job_terminate"), "1|1\n");
}

TEST_F(Engine, HandsTheTerminalToAnOutsideProgramAsItFoundIt) {
    int master = -1;
    int slave = -1;
    ASSERT_EQ(openpty(&master, &slave, nullptr, nullptr, nullptr), 0);
    ASSERT_EQ(dup2(slave, 0), 0);
    directory.write("tolmax",
                    "#!/bin/sh\nstty -a < /proc/self/fd/0 > " + directory.file("called") + "\n");
    Transport terminal("std", -1);
    const CLPCore engine("localhost", simulator.port(), terminal);
    const_cast<CLPCore&>(engine).run("tolmax");
    const std::string settings = " " + directory.read("called");
    EXPECT_NE(settings.find(" icanon"), std::string::npos) << settings;
    EXPECT_NE(settings.find(" echo "), std::string::npos) << settings;
    termios now{};
    tcgetattr(0, &now);
    EXPECT_EQ(now.c_lflag & (ICANON | ECHO), 0U) << "and takes it back";
}

} // namespace
