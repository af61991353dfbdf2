// A general CIM client, wbemcli of sblim-wbemcli, works with the simulator as with any CIM server.
#include "tests/engine/simulator_fixture.h"

#include "tests/support/simulator_process.h"

#include <regex>

namespace velclp_sim {
namespace {

class Wbemcli : public testing::Test {
protected:
    Wbemcli() { simulator_.post("/sim/model?do=add", smallModel); }

    /// What wbemcli prints, with its address left out, or the error that it tells.
    std::string run(std::vector<std::string> words, const std::string& object,
                    const std::string& last = "") const {
        words.insert(words.begin(), "/usr/bin/wbemcli");
        words.push_back("http://" + server_ + "/root/zorm:" + object);
        if (!last.empty()) {
            words.push_back(last);
        }
        ChildProcess process(words);
        process.wait();
        std::smatch error;
        return std::regex_search(process.errors(), error, std::regex("Cim: .*"))
                   ? error.str()
                   : std::regex_replace(process.output(), std::regex(server_ + "/"), "") +
                         process.errors();
    }

    /// Output of an operation that follows associations, which wbemcli prints with the host's name.
    std::string walk(std::vector<std::string> words, const std::string& object) const {
        return std::regex_replace(run(std::move(words), object), std::regex(".*?/root/zorm:"), "");
    }

    RunDirectory folder_;
    SimulatorProcess simulator_{folder_};
    const std::string server_ = "127.0.0.1:" + simulator_.port();
};

const char* const systemA = "T_System.Name=\"a\"";

TEST_F(Wbemcli, ReadsClassesAndInstances) {
    EXPECT_EQ(run({"ecn"}, "T_Element"), "root/zorm:T_System\nroot/zorm:T_Sensor\n");
    EXPECT_EQ(run({"gc"}, "T_Sensor"), "root/zorm:T_Sensor Name=,Caption=,Index=,Reading=\n");
    EXPECT_EQ(run({"ein"}, "T_Element"), "root/zorm:T_System.Name=\"a\"\n"
                                         "root/zorm:T_System.Name=\"b\"\n"
                                         "root/zorm:T_Sensor.Name=\"s\",Index=7\n");
    EXPECT_EQ(run({"ei"}, "T_Sensor"),
              "root/zorm:T_Sensor.Name=\"s\",Index=7 Name=\"s\",Caption=,Index=7,Reading=-40\n");
    EXPECT_EQ(run({"gi"}, systemA),
              "root/zorm:T_System.Name=\"a\" Name=\"a\",Caption=\"<A> & \\\"co\\\"\",State=2,"
              "Codes=1,255,Busy=,Born=\n");
    EXPECT_EQ(run({"gi"}, systemA, "State"), "root/zorm:T_System.Name=\"a\" State=2\n");
    EXPECT_EQ(run({"gp"}, "T_System.Name=\"b\"", "State"), "3\n");
    EXPECT_EQ(run({"ein"}, "T_Nope"), "Cim: (5) CIM_ERR_INVALID_CLASS: T_Nope");
}

TEST_F(Wbemcli, CreatesChangesAndDeletesAnInstance) {
    const std::string made = "T_System.Name=\"n\"";
    EXPECT_EQ(run({"ci"}, made, "Name=\"n\",Caption=\"two words\",Codes=1,2,Busy=true"),
              "root/zorm:T_System.Name=\"n\"\n");
    EXPECT_EQ(run({"mi"}, made, "Caption=\"changed\",State=3"), "");
    EXPECT_EQ(run({"gi"}, made),
              "root/zorm:T_System.Name=\"n\" Name=\"n\",Caption=\"changed\",State=3,Codes=1,2,"
              "Busy=TRUE,Born=\n");
    EXPECT_EQ(run({"sp"}, made, "State=2"), "");
    EXPECT_EQ(run({"gp"}, made, "State"), "2\n");
    EXPECT_EQ(run({"di"}, made), "");
    EXPECT_EQ(run({"di"}, made), "Cim: (6) CIM_ERR_NOT_FOUND: T_System.Name=\"n\"");
}

TEST_F(Wbemcli, FollowsAssociationsAndCallsMethods) {
    const std::string sensor = "T_Sensor.Name=\"s\",Index=7";
    EXPECT_EQ(walk({"ain"}, sensor), "T_System.Name=\"a\"\nT_System.Name=\"b\"\n");
    EXPECT_EQ(walk({"ain", "-ac", "T_Watch", "-arc", "T_Element", "-ar", "Part", "-arr", "Group"},
                   sensor),
              "T_System.Name=\"b\"\n");
    EXPECT_EQ(walk({"ai"}, systemA),
              "T_Sensor.Name=\"s\",Index=7 Name=\"s\",Caption=,Index=7,Reading=-40\n");
    EXPECT_EQ(walk({"rin"}, systemA),
              "T_Part.Group=T_System.Name=\"a\",Part=T_Sensor.Name=\"s\",Index=7\n");
    EXPECT_EQ(walk({"ri", "-arc", "T_Watch"}, sensor),
              "T_Watch.Group=T_System.Name=\"b\",Part=T_Sensor.Name=\"s\",Index=7 "
              "Group=T_System.Name=\"b\",Part=T_Sensor.Name=\"s\",Index=7,Weight=9\n");
    EXPECT_EQ(run({"cm"}, systemA, "Reset.How=2"),
              "Cim: (16) CIM_ERR_METHOD_NOT_AVAILABLE: T_System.Reset");
}

} // namespace
} // namespace velclp_sim
