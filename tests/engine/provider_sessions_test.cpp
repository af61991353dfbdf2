// Sessions and jobs of the sample controller, which share their rows with the processes that write
// them.
#include "tests/engine/provider_controller.h"

#include <sys/wait.h>
#include <unistd.h>

using velclp_sim::ObjectPath;
using velclp_sim::Value;

namespace {

std::string ownPid() {
    return std::to_string(getpid());
}

ObjectPath openSession(Controller& controller, const std::string& pid) {
    return controller.create("ZORM_CLPProtocolEndpoint", {{"OEMVelmora_pid", pid}});
}

std::string rowsOf(Controller& controller, const std::string& sql) {
    return controller.directory.query("clpsvc.db3", sql);
}

/// A job as a session on the controller writes it.
void writeJob(Controller& controller, int id, const std::string& pid, int state = 4) {
    const std::string number = std::to_string(id);
    controller.directory.execute(
        "clpsvc.db3",
        "INSERT INTO CLPCmdJob(id,OEMVelmora_pid,JobState,OperationalStatus,TimeSubmitted,"
        "TimeOfLastStateChange,TimeBeforeRemoval,DeleteOnCompletion,InstanceID,Name) VALUES(" +
            number + "," + pid + "," + std::to_string(state) +
            ",'{2,6}',1700000000000000,1700000000000000,300000000,1,'clpjob:" + number +
            "','CLP Concrete Job" + number + "')");
}

/// The id of a process that has ended.
std::string deadPid() {
    const pid_t child = fork();
    if (child == 0) {
        _exit(0);
    }
    waitpid(child, nullptr, 0);
    return std::to_string(child);
}

} // namespace

TEST(Session, HasItsRowBeforeCreateInstanceReturnsAndShowsWhatItsProcessWritesThere) {
    Controller controller;
    const ObjectPath session = openSession(controller, ownPid());
    EXPECT_EQ(rowsOf(controller, "SELECT id,KeepTime,OEMVelmora_pid,WaitBehavior,DisplayOption,"
                                 "OutputCount,OutputFormat,OutputLanguage,OutputOrder,"
                                 "OutputPosition,OutputVerbosity,CurrentDefaultTarget"
                                 " FROM CLPSession"),
              "1|300|" + ownPid() + "|0|all|0|2|eng|2|2|3|/admin1\n");
    EXPECT_EQ(session.key("Name"), Value("clpsession:1"));
    controller.expect(session, {{"OutputFormat", "2"}, {"KeepTime", 300}});
    EXPECT_EQ(controller.partners(session, "ZORM_HostedAccessPoint"),
              std::vector<ObjectPath>{controller.find("ZORM_SPComputerSystem")});
    controller.directory.execute(
        "clpsvc.db3", "UPDATE CLPSession SET CurrentDefaultTarget='/admin1/system1',KeepTime='5',"
                      "WaitBehavior='1',OutputFormat='4'");
    controller.expect(session, {{"CurrentDefaultTarget", "/admin1/system1"},
                                {"KeepTime", 5},
                                {"WaitBehavior", true},
                                {"OutputFormat", "4"}});
}

TEST(Session, PutsAWriteIntoItsOwnRowOnly) {
    Controller controller;
    const ObjectPath session = openSession(controller, ownPid());
    openSession(controller, "1");
    controller.modify(session, "OutputFormat", "5");
    controller.modify(session, "KeepTime", 600);
    controller.modify(session, "WaitBehavior", true);
    controller.modify(session, "CurrentDefaultTarget", "/admin1/system1/sp1");
    controller.modify(session, "DisplayOption", "it's");
    EXPECT_EQ(rowsOf(controller, "SELECT OutputFormat,KeepTime,WaitBehavior,CurrentDefaultTarget,"
                                 "DisplayOption FROM CLPSession ORDER BY id"),
              "5|600|1|/admin1/system1/sp1|it's\n2|300|0|/admin1|all\n");
}

TEST(Session, RefusesSettingsThatMakeNoSense) {
    Controller controller;
    const ObjectPath session = openSession(controller, ownPid());
    for (const char* target : {"", "foo", "/", "admin1", "/admin", "/admin1/", "/admin1//system1",
                               "/admin1/1", "/admin1/system*", "/admin1/sys'1x"}) {
        EXPECT_EQ(errorOf([&] { controller.modify(session, "CurrentDefaultTarget", target); }), 4)
            << target;
    }
    EXPECT_EQ(errorOf([&] { controller.modify(session, "OutputFormat", "9"); }), 4);
    EXPECT_EQ(errorOf([&] { controller.modify(session, "OEMVelmora_pid", "1"); }), 7);
    EXPECT_EQ(errorOf([&] { openSession(controller, "1 OR 1"); }), 4);
    EXPECT_EQ(errorOf([&] { openSession(controller, ""); }), 4);
    controller.expect(session, {{"CurrentDefaultTarget", "/admin1"}});
}

TEST(Session, GoesWithItsRowAndTheRowWithIt) {
    Controller controller;
    const ObjectPath first = openSession(controller, ownPid());
    const ObjectPath second = openSession(controller, "1");
    controller.remove(first);
    EXPECT_EQ(rowsOf(controller, "SELECT id FROM CLPSession"), "2\n");
    controller.directory.execute("clpsvc.db3", "DELETE FROM CLPSession");
    EXPECT_EQ(controller.count("ZORM_CLPProtocolEndpoint"), 0u);
    EXPECT_TRUE(controller.partners(second, "ZORM_HostedAccessPoint").empty());
    EXPECT_EQ(errorOf([&] { controller.modify(second, "KeepTime", 1); }), 6);
}

TEST(Session, OfTheSameProcessReplacesTheOneThatWasLeft) {
    Controller controller;
    openSession(controller, ownPid());
    const ObjectPath session = openSession(controller, ownPid());
    EXPECT_EQ(rowsOf(controller, "SELECT id FROM CLPSession"), "2\n");
    EXPECT_EQ(controller.count("ZORM_CLPProtocolEndpoint"), 1u);
    EXPECT_EQ(session.key("Name"), Value("clpsession:2"));
}

TEST(Session, OfAProcessThatDiedIsClearedAway) {
    Controller controller;
    int gate[2];
    ASSERT_EQ(pipe(gate), 0);
    const pid_t child = fork();
    if (child == 0) {
        char byte = 0;
        close(gate[1]);
        _exit(read(gate[0], &byte, 1) == 0 ? 0 : 1);
    }
    close(gate[0]);
    openSession(controller, std::to_string(child));
    openSession(controller, ownPid());
    EXPECT_EQ(controller.count("ZORM_CLPProtocolEndpoint"), 2u);
    close(gate[1]);
    waitpid(child, nullptr, 0);
    EXPECT_EQ(controller.count("ZORM_CLPProtocolEndpoint"), 1u);
    EXPECT_EQ(rowsOf(controller, "SELECT OEMVelmora_pid FROM CLPSession"), ownPid() + "\n");
}

TEST(Session, ManyAtOnceEachHaveARowAndSeeTheirOwnWrites) {
    Controller controller;
    constexpr int sessions = 50;
    std::vector<std::thread> threads;
    std::atomic<int> wrong{0};
    for (int i = 0; i < sessions; ++i) {
        threads.emplace_back([&, i] {
            const ObjectPath path = openSession(controller, std::to_string(900000000 + i));
            for (int round = 0; round < 5; ++round) {
                const std::string target = "/admin1/system" + std::to_string(i * 10 + round);
                controller.modify(path, "CurrentDefaultTarget", target);
                wrong += controller.get(path, "CurrentDefaultTarget") != Value(target) ? 1 : 0;
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(controller.count("ZORM_CLPProtocolEndpoint"), std::size_t(sessions));
    EXPECT_EQ(rowsOf(controller, "SELECT count(DISTINCT id) FROM CLPSession"), "50\n");
}

TEST(Job, ShowsTheRowThatItsSessionWrites) {
    Controller controller;
    writeJob(controller, 7, ownPid());
    const ObjectPath job = controller.find("ZORM_CLPConcreteJob", "InstanceID", "clpjob:7");
    controller.expect(job, {{"Name", "CLP Concrete Job7"},
                            {"TimeSubmitted", "20231114221320.000000+000"},
                            {"TimeBeforeRemoval", "00000000000500.000000:000"},
                            {"DeleteOnCompletion", true},
                            {"InstallDate", Value()}});
    EXPECT_EQ(controller.get(job, "OperationalStatus").toArray().size(), 2u);
    controller.directory.execute("clpsvc.db3", "UPDATE CLPCmdJob SET JobState=7 WHERE id=7");
    controller.expect(job, {{"JobState", 7}});
    EXPECT_EQ(controller.partners(job, "ZORM_OwningJobElement").size(), 1u);
}

TEST(Job, IsRemovedWhenItsTimeHasCome) {
    Controller controller;
    writeJob(controller, 1, ownPid(), 7);
    writeJob(controller, 2, ownPid(), 7);
    controller.directory.execute("clpsvc.db3", "UPDATE CLPCmdJob SET TimeToRemove=1 WHERE id=1");
    EXPECT_EQ(controller.count("ZORM_CLPConcreteJob"), 1u);
    EXPECT_EQ(rowsOf(controller, "SELECT id FROM CLPCmdJob"), "2\n");
}

TEST(Job, OfAProcessThatDiedHasBeenKilled) {
    Controller controller;
    writeJob(controller, 3, deadPid());
    const ObjectPath job = controller.find("ZORM_CLPConcreteJob");
    controller.expect(job, {{"JobState", 9}});
    EXPECT_EQ(rowsOf(controller, "SELECT JobState,TimeToRemove>0 FROM CLPCmdJob"), "9|1\n");
}

TEST(Job, OfARemoteSessionIsCreatedAndEndedAsAnInstance) {
    Controller controller;
    const ObjectPath job = controller.create(
        "ZORM_CLPConcreteJob",
        {{"OEMVelmora_pid", deadPid()}, {"TimeBeforeRemoval", "00000000000100.000000:000"}});
    EXPECT_EQ(job.key("InstanceID"), Value("clpjob:1"));
    controller.expect(job, {{"JobState", 4}});
    EXPECT_EQ(errorOf([&] { controller.remove(job); }), 1);
    controller.modify(job, "JobState", 7);
    EXPECT_EQ(
        rowsOf(controller, "SELECT JobState,TimeToRemove-TimeOfLastStateChange FROM CLPCmdJob"),
        "7|60000000\n");
    controller.expect(job, {{"JobState", 7}});
    EXPECT_EQ(errorOf([&] { controller.modify(job, "Owner", "me"); }), 7);
    controller.remove(job);
    EXPECT_EQ(rowsOf(controller, "SELECT count(*) FROM CLPCmdJob"), "0\n");
}

TEST(Job, LeavesWordForItsSessionWhenItShallEnd) {
    Controller controller;
    writeJob(controller, 5, ownPid());
    const ObjectPath job = controller.find("ZORM_CLPConcreteJob");
    EXPECT_EQ(controller.call(job, "EndCommand", {{"Killed", 1}}), 0u);
    EXPECT_EQ(controller.call(job, "RequestStateChange", {{"RequestedState", 4}}), 0u);
    EXPECT_EQ(controller.call(job, "RequestStateChange", {{"RequestedState", 2}}), 5u);
    EXPECT_EQ(controller.directory.query("clp.db3", "SELECT pid,jobid,killed FROM job_terminate"),
              ownPid() + "|5|1\n" + ownPid() + "|5|0\n");
    controller.directory.execute("clpsvc.db3", "UPDATE CLPCmdJob SET JobState=7");
    controller.get(job, "JobState");
    EXPECT_EQ(controller.call(job, "EndCommand", {{"Killed", 0}}), 4u);
}

TEST(Job, OfADatabaseThatWasReplacedIsForgotten) {
    Controller controller;
    for (int id = 1; id <= 3; ++id) {
        writeJob(controller, id, ownPid(), 7);
    }
    EXPECT_EQ(controller.count("ZORM_CLPConcreteJob"), 3u);
    controller.directory.execute("clpsvc.db3", "DELETE FROM CLPCmdJob");
    controller.directory.execute("clpsvc.db3", "DELETE FROM sqlite_sequence");
    writeJob(controller, 1, ownPid());
    EXPECT_TRUE(eventually([&] { return controller.count("ZORM_CLPConcreteJob") == 1; }));
}
