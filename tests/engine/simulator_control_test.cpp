// What a test plants into the simulator and reads back from it: faults, counters, the log of calls.
#include "tests/engine/simulator_fixture.h"

#include <stdexcept>

namespace velclp_sim {
namespace {

class SimulatorControl : public SimulatorFixture {
protected:
    FaultTable& faults() { return service_.faults(); }

    CimReply get(const std::string& name) {
        return send(intrinsic("GetInstance", parameter("InstanceName", element("T_System", name))));
    }
    CimReply reset() {
        return send(message("<METHODCALL NAME=\"Reset\"><LOCALINSTANCEPATH><LOCALNAMESPACEPATH>"
                            "<NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"zorm\"/>"
                            "</LOCALNAMESPACEPATH>" +
                            element("T_System", "a") + "</LOCALINSTANCEPATH></METHODCALL>"));
    }
    /// 0 for a good reply, or the CIM error's number.
    static std::string outcome(const CimReply& reply) {
        const std::string error = errorIn(contentOf(reply));
        return reply.body.find("<ERROR ") == std::string::npos ? "0"
                                                               : error.substr(0, error.find(' '));
    }
};

TEST_F(SimulatorControl, AnErrorHitsTheCallsThatItWasPlantedFor) {
    faults().plant("operation=GetInstance class=T_Element kind=error code=7 nth=2 count=2");
    EXPECT_EQ(outcome(get("a")), "0");
    EXPECT_EQ(outcome(reset()), "16");
    EXPECT_EQ(errorIn(contentOf(get("a"))), "7 CIM_ERR_NOT_SUPPORTED");
    EXPECT_EQ(faults().list(),
              "id=1 kind=error operation=GetInstance class=T_Element skip=0 count=1 "
              "hits=1 code=7\n");
    EXPECT_EQ(outcome(get("gone")), "7");
    EXPECT_EQ(outcome(get("a")), "0");
    faults().plant("kind=error code=1 text=\"no way\" count=always class=T_Sensor\r\n"
                   "\nkind=error code=2 operation=InvokeMethod");
    EXPECT_EQ(outcome(get("a")), "0");
    EXPECT_EQ(outcome(reset()), "2");
    EXPECT_EQ(outcome(reset()), "16");
    EXPECT_EQ(errorIn(ask("GetInstance", parameter("InstanceName", sensor()))),
              "1 CIM_ERR_FAILED: no way");
    faults().clear(2);
    EXPECT_EQ(outcome(send(intrinsic("GetInstance", parameter("InstanceName", sensor())))), "0");
}

TEST_F(SimulatorControl, AReplyCanBeDroppedCutSpoiledReplacedOrDelayed) {
    faults().plant("kind=drop\nkind=cut bytes=40\nkind=malformed\nkind=http status=503\n"
                   "kind=return value=4096 operation=Reset");
    // Each fault counts the calls on its own, so the first call uses up all but the method's.
    EXPECT_TRUE(get("a").drop);
    EXPECT_EQ(outcome(get("a")), "0");
    EXPECT_EQ(contentOf(reset()),
              "<RETURNVALUE PARAMTYPE=\"uint32\">\n<VALUE>4096</VALUE>\n</RETURNVALUE>\n");
    const std::string whole = get("a").body;
    faults().plant("kind=cut bytes=40");
    EXPECT_EQ(get("a").cutAfter, 40u);
    faults().plant("kind=malformed");
    const std::string spoiled = get("a").body;
    EXPECT_EQ(spoiled.size(), whole.size());
    EXPECT_NE(spoiled, whole);
    faults().plant("kind=http status=503");
    EXPECT_EQ(get("a").status, 503);
    faults().plant("kind=reply operation=GetInstance\n<any>\nthing kind=drop");
    EXPECT_EQ(get("a").body, "<any>\nthing kind=drop");
    faults().plant("kind=delay ms=30\nkind=error code=3");
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(outcome(get("a")), "3");
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(30));
}

TEST_F(SimulatorControl, FaultsThatMakeNoSenseArePlantedNotAtAll) {
    for (const char* bad : {"", "   "}) {
        EXPECT_TRUE(faults().plant(bad).empty());
    }
    for (const char* bad : {"kind=error\noperation=GetInstance", "kind=nonsense",
                            "kind=error code=x", "kind=error nth=0", "kind=error colour=red",
                            "kind=error text=\"open", "kind=error again", "kind=error ms=-1"}) {
        EXPECT_THROW(faults().plant(bad), std::invalid_argument) << bad;
    }
    EXPECT_EQ(faults().list(), "");
}

TEST_F(SimulatorControl, CallsAreCountedByOperationAndClassAndLoggedInOrder) {
    get("a");
    get("gone");
    reset();
    send(intrinsic("enumerateinstancenames", classNamed("ClassName", "t_sensor")));
    send(intrinsic("Nonsense", classNamed("ClassName", "T_&quot;Other")));
    send("<nonsense/>");
    EXPECT_EQ(
        service_.statistics().toJson(),
        R"json({"total":5,"operations":{"(unknown)":{"total":1,"classes":{"(unknown)":1}},)json"
        R"json("EnumerateInstanceNames":{"total":1,"classes":{"T_Sensor":1}},)json"
        R"json("GetInstance":{"total":2,"classes":{"T_System":2}},)json"
        R"json("InvokeMethod":{"total":1,"classes":{"T_System":1}}},)json"
        R"json("methods":{"Reset":{"total":1,"classes":{"T_System":1}}}})json"
        "\n");
    EXPECT_EQ(service_.statistics().toLog(), "GetInstance T_System.Name=\"a\" 0\n"
                                             "GetInstance T_System.Name=\"gone\" 6\n"
                                             "Reset root/zorm:T_System.Name=\"a\" 16\n"
                                             "enumerateinstancenames t_sensor 0\n"
                                             "Nonsense T_\"Other 7\n"
                                             "(bad request) the document is no CIM element 400\n");
    service_.statistics().reset();
    service_.statistics().resetLog();
    EXPECT_EQ(service_.statistics().toJson(), "{\"total\":0,\"operations\":{},\"methods\":{}}\n");
    EXPECT_EQ(service_.statistics().toLog(), "");
}

} // namespace
} // namespace velclp_sim
