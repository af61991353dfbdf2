// The n-th call that a command makes on the CIM server fails, for every n, in every way that a
// server can fail: the operator gets an answer each time, and the session goes on.
#include "tests/engine/command_session.h"
#include "tests/support/simulator_process.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

// A failed operation, a connection that is cut (twice, since the first time it is tried again), and
// a reply that is no XML.
constexpr char const* FAULTS[] = {"kind=error code=1",  "kind=error code=2", "kind=error code=6",
                                  "kind=error code=7",  "kind=drop count=2", "kind=malformed",
                                  "kind=return value=5"};

struct Case {
    char const* name;
    char const* line;
    char const* before; // makes what the line uses up; may be empty
};

constexpr Case CASES[] = {
    {"cd", "cd -o format=keyword /admin1/system1", ""},
    {"help", "help -o format=keyword /admin1/system1/sp1", ""},
    {"show", "show -o format=keyword -all /admin1/system1/log1", ""},
    {"show_pseudo", "show -o format=keyword -display properties /admin1/system2/pwrcurr1", ""},
    {"show_filtered",
     "show -o format=keyword -display properties /admin1/system1/sensor* sensornumber==12", ""},
    {"show_levels", "show -o format=keyword -level 2 -display targets /admin1/chassis1", ""},
    {"show_association", "show -o format=keyword /admin1/system1/log1=>useoflog=>/admin1/system1",
     ""},
    {"show_text", "show -level 2 -display properties,targets /admin1/system1/log1", ""},
    {"show_text_filtered", "show -display properties /admin1/system2/pwrcurr* baseunits==7", ""},
    {"show_text_association", "show /admin1/system1/log1=>useoflog=>/admin1/system1", ""},
    {"show_session", "show -display properties SESSION", ""},
    {"set", "set -o format=keyword /admin1 elementname=Rack", ""},
    {"set_pseudo", "set -o format=keyword /admin1/system2 powerstate=2", ""},
    {"set_method", "set -o format=keyword /admin1/chassis1 identifymode=3", ""},
    {"set_association",
     "set -o format=keyword /admin1/system1/sp1/ethport1/ipendpt1=>elementsettingdata=>"
     "/admin1/system1/sp1/ethport1/ipendpt1/ipsettings1 iscurrent=1",
     ""},
    {"create", "create -o format=keyword /admin1/system1/sp1/user* userid=mary", ""},
    {"delete", "delete -o format=keyword /admin1/system1/sp1/user*",
     "create /admin1/system1/sp1/user* userid=tom"},
    {"delete_container", "delete -o format=keyword /admin1/system2/log1/record*",
     "show -display targets /admin1/system2/log1"},
    {"start_pseudo", "start -o format=keyword /admin1/system1", ""},
    {"stop_forced", "stop -force -o format=keyword /admin1/system1", ""},
    {"start_method", "start -o format=keyword /admin1/system1/oemvelmora_fan1", ""},
    {"stop_method", "stop -o format=keyword /admin1/system1/oemvelmora_fan1", ""},
    {"stop_state", "stop -o format=keyword /admin1/system1/log1", ""},
    {"reset", "reset -o format=keyword /admin1/system1", ""},
};

class FailingCall : public testing::TestWithParam<Case> {
protected:
    // Runs the line with the fault on its n-th call; whether the line came to that call.
    bool failsAt(int n, const std::string& fault) {
        if (GetParam().before[0] != '\0')
            session.answer(GetParam().before);
        simulator.post("/sim/faults?do=clear", "");
        simulator.post("/sim/faults", fault + " skip=" + std::to_string(n - 1));
        const std::string bytes = session.answer(GetParam().line);
        expectAnswer(bytes);
        const std::string planted = simulator.get("/sim/faults");
        return planted.find("hits=0") == std::string::npos;
    }

    void expectAnswer(const std::string& bytes) {
        const bool isKeyword = std::string(GetParam().line).find("keyword") != std::string::npos;
        if (isKeyword) {
            EXPECT_EQ(0U, bytes.find("commandline=")) << bytes;
            EXPECT_NE(std::string::npos, bytes.find("\r\nstatus=")) << bytes;
        }
        if (!bytes.empty()) {
            EXPECT_EQ("\r\n", bytes.substr(bytes.size() - 2)) << bytes;
        }
        EXPECT_EQ("", directory.query("clpsvc.db3", "SELECT id FROM CLPCmdJob WHERE JobState='4'"));
    }

    // A cache that knows the target, or one that knows nothing.
    void failEveryCall(const std::string& fault, bool isCached) {
        for (int n = 1; n < 200; ++n) {
            SCOPED_TRACE(fault + " at call " + std::to_string(n) + (isCached ? "" : ", no cache"));
            if (!isCached)
                forgetAddresses();
            if (!failsAt(n, fault))
                return;
        }
        FAIL() << "the command never ends";
    }

    void forgetAddresses() {
        for (const char* table : {"addrsvc_clp", "addrsvc_cim"})
            directory.execute("clp.db3", std::string("DELETE FROM ") + table);
        directory.execute("clp.db3", "DELETE FROM addrsvc_seq WHERE ufip<>'/'");
    }

    RunDirectory directory;
    SimulatorProcess simulator{directory, {"--speed", "1000"}};
    CommandSession session{directory, simulator.port()};
};

} // namespace

TEST_P(FailingCall, IsAnsweredAndTheSessionGoesOn) {
    session.answer(GetParam().line);
    for (const char* fault : FAULTS)
        failEveryCall(fault, true);
    simulator.post("/sim/faults?do=clear", "");
    EXPECT_EQ("SM CLP Version: 1.0.2\r\nSM ME Addressing Version: 1.0.0b\r\n",
              session.answer("version"));
}

TEST_P(FailingCall, WithAnEmptyCacheIsAnsweredToo) {
    session.answer("version");
    for (const char* fault : {"kind=error code=6", "kind=malformed"})
        failEveryCall(fault, false);
}

INSTANTIATE_TEST_SUITE_P(Of, FailingCall, testing::ValuesIn(CASES),
                         [](const auto& test) { return std::string(test.param.name); });
