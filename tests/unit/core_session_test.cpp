// Which connections the engine, its session and its commands make, and what they create through
// them: against a server in the test's own process.
#include "database/cdbc.h"
#include "log/osalog.h"
#include "tests/support/run_directory.h"
#include "tests/unit/fake_cim.h"
#include "velclp/clpcommand.h"
#include "velclp/clpsession.h"
#include "velclp/core.h"
#include "velclp/token.h"
#include "velclp/transport.h"

#include <boost/make_shared.hpp>
#include <gtest/gtest.h>

#include <unistd.h>

#include <cstdlib>
#include <memory>

using namespace velmora_clp;

namespace {

// Both outlive the session, which ends with the process.
std::vector<std::string>& connections() {
    static auto* all = new std::vector<std::string>;
    return *all;
}
fakecim::Server& server() {
    static auto* one = new fakecim::Server;
    return *one;
}
std::size_t s_mostConnections = 100;

const fakecim::Object SESSION = {"ZORM_CLPProtocolEndpoint", {{"Name", "clpsession:3"}}, {}};
const fakecim::Object JOB = {"ZORM_CLPConcreteJob", {{"InstanceID", "clpjob:42"}}, {}};

class Connections : public testing::Test {
protected:
    void SetUp() override {
        directory.use();
        setenv("USER", "operator", 1);
        setenv("privileges", "4097", 1);
        server().created = &SESSION;
        server().add(SESSION);
    }
    void TearDown() override { osalog_set_file(""); }

    std::unique_ptr<CLPCore> start(const std::string& host) {
        return std::make_unique<CLPCore>(host, "77", transport);
    }
    static std::unique_ptr<CLPCommand> version(CLPCore& core, const std::string& keep = "") {
        auto token = boost::make_shared<CLPToken>();
        token->_Verb = "version";
        token->_Options.addNode({"option"});
        if (!keep.empty())
            token->_Options.addNode({"option", "-keep"}, keep);
        return std::unique_ptr<CLPCommand>(core.createCommand(token));
    }
    static std::string lastCall(const std::string& operation) {
        for (auto call = server().calls.rbegin(); call != server().calls.rend(); ++call)
            if (call->operation == operation)
                return call->detail;
        return "none";
    }

    const std::string pid = std::to_string(getpid());
    RunDirectory directory;
    Transport transport{"nul", -1};
};

} // namespace

// The library takes this one, not the client's.
extern "C" CMCIClient* cmciConnect(const char* host, const char* scheme, const char* port,
                                   const char* user, const char* password, CMPIStatus*) {
    if (connections().size() == s_mostConnections)
        return nullptr;
    connections().push_back(std::string(scheme) + " " + user + (password ? " password" : "") + " " +
                            host + ":" + port);
    return server().client();
}

TEST_F(Connections, OfTheEngineAndItsCommandsBearTheLoginAndThatOfTheSessionNobody) {
    directory.execute("clpsvc.db3", "INSERT INTO CLPSession(id,OEMVelmora_pid) VALUES(5,'" + pid +
                                        "'),(6,'" + pid + "'),(7,'1')");
    const auto core = start("localhost");
    EXPECT_EQ(connections(),
              (std::vector<std::string>{"http operator1001 localhost:77", "http  localhost:77"}));
    EXPECT_EQ(lastCall("createInstance"), "OEMVelmora_pid:1600=" + pid + ";");
    CLPSession& session = *CLPSession::getInstance();
    EXPECT_EQ(session.getSessionId(), 5) << "the first row of the process";
    EXPECT_EQ(cimNameSpace(session.getObjectPath()), "root/zorm");
    EXPECT_EQ(cimClassName(session.getObjectPath()), "ZORM_CLPProtocolEndpoint");
    const auto command = version(*core);
    EXPECT_EQ(connections().back(), "http operator1001 localhost:77");
    EXPECT_EQ(server().count("createInstance"), 1) << "the job is a row";
    EXPECT_EQ(directory.query("clpsvc.db3", "SELECT id FROM CLPCmdJob"), "1\n");
}

TEST_F(Connections, ToAnotherHostKeepTheSessionAndItsJobsThere) {
    const auto core = start("10.0.0.1");
    CLPSession& session = *CLPSession::getInstance();
    EXPECT_EQ(session.getSessionId(), -1);
    EXPECT_EQ(session.getKeepTime(), 0) << "nothing was set yet";
    session.setKeepTime(20);
    EXPECT_EQ(server().calls.back().cimclass, "ZORM_CLPProtocolEndpoint");
    EXPECT_NE(lastCall("setInstance").find("KeepTime:1600=20;"), std::string::npos);
    EXPECT_EQ(session.getKeepTime(), 20);

    server().created = &JOB;
    const auto command = version(*core);
    EXPECT_EQ(command->getJobID(), 42);
    EXPECT_EQ(lastCall("createInstance"),
              "oemvelmora_pid:1600=" + pid + ";TimeBeforeRemoval:1800=00000000000020.000000:000;");
    command->setCommandStatus(CommandStatus::COMMAND_COMPLETED);
    EXPECT_EQ(connections().back(), "http oper02aa 10.0.0.1:77");
    EXPECT_EQ(server().count("setInstance", "ZORM_CLPConcreteJob"), 1);
    EXPECT_EQ(lastCall("setInstance"), "InstanceID:1600=clpjob:42;JobState:0090=7;");
    EXPECT_EQ(directory.query("clpsvc.db3", "SELECT count(*) FROM CLPCmdJob"), "0\n");
}

TEST_F(Connections, ThatFailLaterLeaveARemoteSessionAsItWas) {
    const auto core = start("10.0.0.1");
    CLPSession& session = *CLPSession::getInstance();
    session.setOutputOrder("reverse");
    server().created = &JOB;
    const auto command = version(*core);
    ASSERT_TRUE(osalog_set_file(directory.file("log")));
    server().onCall = [](const fakecim::Call&) { return 6; };
    std::string order;
    session.getOutputOrder(order);
    EXPECT_EQ(order, "reverse");
    session.setOutputOrder("default");
    session.getOutputOrder(order);
    EXPECT_EQ(order, "default");
    command->setCommandStatus(CommandStatus::COMMAND_EXECUTION_FAILED);
    EXPECT_EQ(lastCall("setInstance"), "InstanceID:1600=clpjob:42;JobState:0090=10;");
    EXPECT_NE(directory.read("log").find("set JobState failed=[6]"), std::string::npos);
    s_mostConnections = connections().size();
    command->setCommandStatus(CommandStatus::COMMAND_COMPLETED);
    s_mostConnections = 100;
    EXPECT_THROW(
        try { version(*core); } catch (JobError* error) {
            const std::unique_ptr<JobError> owned(error);
            EXPECT_EQ(error->getCimstatCode(), 6);
            throw 0;
        },
        int);
    EXPECT_NE(directory.read("log").find("create job error!=["), std::string::npos);
    server().onCall = nullptr;
}

TEST_F(Connections, ThatTheServerRefusesToTheSessionKeepTheEngineFromStarting) {
    server().onCall = [](const fakecim::Call& call) {
        return call.operation == "createInstance" ? 2 : 0;
    };
    const auto reason = [&] {
        try {
            start("localhost");
        } catch (const std::string& failure) {
            return failure;
        }
        return std::string("none");
    };
    EXPECT_EQ(reason(), "Create CLPSession Instance Error.(2) ");
    EXPECT_EQ(server().count("release"), 2) << "nothing stays connected";
    s_mostConnections = connections().size();
    EXPECT_EQ(reason(), "failed to connect to cimserver!");
    ++s_mostConnections;
    EXPECT_DEATH(start("localhost"), "_cc!=__null");
}

TEST_F(Connections, GiveCommandsOfOneNumberOnePlaceInTheTable) {
    const auto core = start("10.0.0.1");
    CLPSession& session = *CLPSession::getInstance();
    server().created = &JOB;
    auto first = version(*core);
    const auto second = version(*core);
    EXPECT_EQ(session.findCommand(42), second.get());
    first.reset();
    EXPECT_EQ(session.findCommand(42), nullptr);
    EXPECT_TRUE(session.allCommandDone());
    session.insertCommand(nullptr);
    session.removeCommand(nullptr);
    EXPECT_TRUE(session.allCommandDone());
    EXPECT_DEATH(second->stop(CLPCommand::NO_STOP), "sig==TERMINATE\\|\\|sig==KILLED");
    OperationResult groups = {nullptr};
    EXPECT_DEATH(CLPCommand::clearresponse(&groups), "group");
    CLPCommand::clearresponse(nullptr);
}
