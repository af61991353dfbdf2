// What a show asks of the CIM server, and how a request to stop ends it.
#include "tests/engine/command_session.h"
#include "tests/support/eventually.h"
#include "tests/support/simulator_process.h"

#include <gtest/gtest.h>

#include <csignal>
#include <fstream>
#include <regex>

namespace {

class ShowCalls : public testing::Test {
protected:
    // The calls that the line makes once the addresses are cached.
    std::string callsOf(const std::string& line) {
        session.answer(line);
        simulator.post("/sim/stats", "");
        session.answer(line);
        return simulator.get("/sim/stats");
    }

    // What is printed when the command is interrupted while it reads the instance.
    std::string interrupted(const std::string& line) {
        session.answer(line);
        simulator.post("/sim/faults?do=clear", "");
        simulator.post("/sim/faults",
                       "kind=delay ms=400 operation=GetInstance class=ZORM_ComputerSystem");
        const std::string::size_type begin = session.process().output().size();
        session.process().send(line + "\n");
        EXPECT_TRUE(eventually(
            [&] { return simulator.get("/sim/faults").find("hits=0") == std::string::npos; }));
        session.process().signal(SIGINT);
        const std::string mark = "Job " + std::to_string(m_jobs += 2) + " is killed\r\n";
        EXPECT_TRUE(session.process().waitForOutput(mark)) << mark;
        return session.process().output().substr(begin);
    }

    // What is printed when the first call of that operation on the sensors fails, and in the log.
    std::string failing(const std::string& operation, const std::string& line) {
        simulator.post("/sim/faults?do=clear", "");
        simulator.post("/sim/faults",
                       "kind=error code=1 operation=" + operation + " class=ZORM_NumericSensor");
        const std::string bytes = session.answer(line);
        std::ifstream log(directory.file("failures"));
        std::string failures, record;
        while (std::getline(log, record))
            failures += record.substr(record.find(" 1 CLP.") + 3) + "\n";
        std::ofstream(directory.file("failures"), std::ios::trunc).close();
        return bytes + std::regex_replace(failures, std::regex("[a-z_]+\\.cpp:[0-9]+: "), "");
    }

    static SessionOptions logging(const RunDirectory& directory) {
        SessionOptions options;
        options.arguments = {"--log", directory.file("failures")};
        return options;
    }

    RunDirectory directory;
    SimulatorProcess simulator{directory};
    CommandSession session{directory, simulator.port(), logging(directory)};
    int m_jobs = 0;
};

} // namespace

// A number that the object holds itself is compared with the server's each time that the object's
// address is looked up: when the target is found, and when it is printed.
TEST_F(ShowCalls, LookUpTheAddressOfATargetOnceForAllItsSections) {
    EXPECT_EQ("{\"total\":8,\"operations\":{"
              "\"GetClass\":{\"total\":1,\"classes\":{\"ZORM_TemperatureSensor\":1}},"
              "\"GetInstance\":{\"total\":5,\"classes\":{\"ZORM_AssociatedSensor\":1,"
              "\"ZORM_SystemDevice\":1,\"ZORM_TemperatureSensor\":3}},"
              "\"ReferenceNames\":{\"total\":2,\"classes\":{\"ZORM_TemperatureSensor\":2}}},"
              "\"methods\":{}}\n",
              callsOf("show /admin1/system1/sensor7"));
}

TEST_F(ShowCalls, ReadAPropertyThatIsComparedAndPrintedOnce) {
    const std::string calls =
        callsOf("show -display properties /admin1/system1 powerstate==2 name==sysA");
    EXPECT_NE(std::string::npos, calls.find("\"ReferenceNames\":{\"total\":1,")) << calls;
    EXPECT_NE(std::string::npos, calls.find("\"ZORM_ComputerSystem\":1}},\"ReferenceNames\""))
        << calls;
}

TEST_F(ShowCalls, InTheTreeFormReadOnlyWhatIsSelected) {
    const std::string calls =
        callsOf("show -o format=keyword -level 2 -display targets=record /admin1/system1/log1");
    EXPECT_NE(std::string::npos, calls.find("\"GetInstance\":{\"total\":3,\"classes\":{"
                                            "\"ZORM_SELLogEntry\":3}}"))
        << calls;
}

TEST_F(ShowCalls, AreCutOffBeforeTheNextSectionWhenTheCommandIsStopped) {
    const std::string text = interrupted("show -display properties,verbs /admin1/system1");
    EXPECT_NE(std::string::npos, text.find("\tproperties\r\n"));
    EXPECT_EQ(std::string::npos, text.find("\tverbs\r\n")) << text;
    const std::string keyword =
        interrupted("show -o format=keyword -display verbs /admin1/system2");
    EXPECT_NE(std::string::npos, keyword.find("ufip=/admin1/system2\r\n"));
    EXPECT_EQ(std::string::npos, keyword.find("begingroup=verbs")) << keyword;
}

TEST_F(ShowCalls, ThatCannotTellWhetherToPrintPrintNothingAndTellTheLog) {
    const std::string sensor = "/admin1/system1/sensor12";
    session.answer("show " + sensor);
    EXPECT_EQ("CLP.COutputer.CheckSelectorStatic Get Class failed\n",
              failing("GetClass", "show " + sensor + " elementname"));
    EXPECT_EQ("CLP.COutputer.CheckSelectorDynamic Get Class failed\n",
              failing("GetClass", "show " + sensor + " elementname==x"));
    EXPECT_EQ("CLP.COutputer.CheckSelectorDynamic Cannot get instance\n",
              failing("GetInstance", "show /admin1/system1/sensor* elementname==x"));
    EXPECT_EQ(sensor + "\r\n\tproperties\r\nCLP.COutputer.select_properties Get Class failed\n",
              failing("GetClass", "show -all -display properties " + sensor));
}
