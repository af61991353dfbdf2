// What the verbs leave in a session's log: what they were asked for, how they did it, how it ended.
#include "tests/engine/command_session.h"
#include "tests/support/simulator_process.h"

#include <gtest/gtest.h>

#include <regex>
#include <sstream>

namespace {

class VerbLog : public testing::Test {
protected:
    // The records of a line, each as its level, its function and what it says.
    std::string records(const std::string& line) {
        session.answer(line);
        static const std::regex record("^\\S+ \\S+ ([0-9]) CLP\\.(CLP\\w+Command\\.\\w+|"
                                       "StateCommand\\.\\w+) \\S+ (.*)$");
        const std::string log = directory.read("log");
        std::istringstream added(log.substr(m_read));
        m_read = log.size();
        std::string all;
        for (std::string text; std::getline(added, text);) {
            std::smatch parts;
            if (std::regex_match(text, parts, record))
                all += parts[1].str() + " " + parts[2].str() + " " + parts[3].str() + "\n";
        }
        return all;
    }

    RunDirectory directory;
    SimulatorProcess simulator{directory, {"--speed", "1000"}};
    CommandSession session{directory, simulator.port(), options(directory)};

private:
    static SessionOptions options(const RunDirectory& directory) {
        SessionOptions options;
        options.arguments = {"--log", directory.file("log"), "--log-level", "3"};
        return options;
    }

    std::string::size_type m_read = 0;
};

} // namespace

TEST_F(VerbLog, TellsWhatAVerbDoesToItsTargetAndHowItEnded) {
    const std::pair<const char*, const char*> cases[] = {
        {"cd system1",
         "3 CLPCdCommand.svc ufct=[system],ufip=[/admin1/system1]\n"
         "3 CLPCdCommand.display job=[1],status=[COMMAND COMPLETED],cdt=[/admin1/system1]\n"},
        {"cd sp9", "3 CLPCdCommand.svc ufct=[sp],ufip=[/admin1/system1/sp9]\n"
                   "1 CLPCdCommand.svc failed status=[6]\n"
                   "3 CLPCdCommand.display job=[2],status=[COMMAND EXECUTION FAILED],"
                   "cdt=[/admin1/system1]\n"},
        {"stop /admin1/system1/oemvelmora_fan1",
         "3 StateCommand.carryOut method=[setspeed],type=[method]\n"
         "3 StateCommand.invoke params=[desiredspeed|0,rampseconds|10]\n"
         "3 CLPStopCommand.display job=[3],status=[COMMAND COMPLETED]\n"},
        {"stop -force /admin1/system1",
         "3 StateCommand.carryOut method=[hardstop],type=[pseudo]\n"
         "3 CLPStopCommand.display job=[4],status=[COMMAND COMPLETED]\n"},
        {"set /admin1/chassis1 elementname=box identifymode=3",
         "3 CLPSetCommand.svc name=[elementname]\n"
         "3 CLPSetCommand.svc name=[identifymode]\n"
         "3 CLPSetCommand.svc method=[setidentify],type=[method],cimclass=[zorm_chassis]\n"
         "3 CLPSetCommand.display job=[5],status=[COMMAND COMPLETED]\n"},
        {"delete /admin1/system1/sp1/swid1",
         "3 CLPDeleteCommand.svc ufct=[swid],ufip=[/admin1/system1/sp1/swid1]\n"
         "3 CLPDeleteCommand.svc method=[deleteimage],type=[special],"
         "cimclass=[zorm_spcomputersystem]\n"
         "3 CLPDeleteCommand.svc ufip=[/admin1/system1/sp1/swid1]\n"
         "1 CLPDeleteCommand.svc failed status=[CIM_ERR_ACCESS_DENIE]\n"
         "3 CLPDeleteCommand.display job=[6],status=[COMMAND EXECUTION FAILED]\n"},
        {"set /admin1 nosuch=1",
         "3 CLPSetCommand.svc name=[nosuch]\n"
         "1 CLPSetCommand.svc Isn't property of this class!\n"
         "1 CLPSetCommand.svc failed status=[CIM_ERR_FAILED]\n"
         "3 CLPSetCommand.display job=[7],status=[COMMAND EXECUTION FAILED]\n"},
        {"create /admin1/user*",
         "1 CLPCreateCommand.svc The parent is invalid.\n"
         "1 CLPCreateCommand.svc failed status=[CIM_ERR_NOT_FOUND]\n"
         "3 CLPCreateCommand.display job=[8],status=[COMMAND EXECUTION FAILED]\n"},
        {"dump -destination http://h/f",
         "1 CLPDumpCommand.svc failed status=[CIM_ERR_NOT_SUPPORTED]\n"
         "3 CLPDumpCommand.display job=[9],status=[COMMAND EXECUTION FAILED]\n"},
        {"help /", "3 CLPHelpCommand.display job=[10],status=[COMMAND COMPLETED],"
                   "text=[Supported verbs:\\x0a\\x09cd\\x0a\\x09exit\\x0a\\x09help\\x0a\\x09set"
                   "\\x0a\\x09show\\x0a\\x09version\\x0a]\n"},
    };
    for (const auto& [line, expected] : cases)
        EXPECT_EQ(expected, records(line)) << line;
}
