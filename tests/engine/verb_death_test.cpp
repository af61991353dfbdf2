// Lines and schema entries that end the process by design: each says why on standard error.
#include "tests/engine/command_session.h"
#include "tests/support/simulator_process.h"

#include <gtest/gtest.h>

#include <csignal>

namespace {

struct Deadly {
    const char* name;
    const char* old; // a line of the schema, may be empty
    const char* put; // in its place
    const char* line;
    const char* assertion;
};

constexpr Deadly LINES[] = {
    {"ACreationWithAPropertyThatTheClassLacks", "", "", "create /admin1/system1/sp1/user* nosuch=1",
     "object"},
    {"ACreationWithAValueOfTheWrongKind", "", "", "create /admin1/system1/sp1/user* locked=True",
     "object"},
    {"ASpecialCreationThatGivesNoObject",
     "command:create=ZORM_SPComputerSystem:special:createimage",
     "command:create=ZORM_Nothing:special:createimage", "create /admin1/system1/sp1/swid*",
     "((args)->ft->getArgCount((args),(__null)))==1"},
    {"ACreationByAMethodOfAnotherType", "command:create=ZORM_SPComputerSystem:special:createimage",
     "command:create=ZORM_SPComputerSystem:method:createimage", "create /admin1/system1/sp1/swid*",
     "type==\"special\""},
    {"ADeletionByAMethodOfAnotherType", "command:delete=ZORM_RecordLog:container:clearlog",
     "command:delete=ZORM_RecordLog:method:clearlog", "delete /admin1/system1/log1/record1",
     "type==\"special\"||type==\"container\""},
    {"ALoadThatTheSchemaAllowsAndDoesNotBind",
     "command:load=ZORM_SPComputerSystem:special:installfromuri\n", "",
     "load -source http://host/image /admin1/system1/sp1", "!options.empty()"},
    {"AStartWithAParameterThatIsNoProperty", "setspeed:desiredspeed|8000",
     "setspeed:nosuchproperty|8000", "start /admin1/system1/oemvelmora_fan1", "flag"},
    {"AMethodParameterOfThreeParts", "setspeed:desiredspeed|8000", "setspeed:desiredspeed|8000|1",
     "start /admin1/system1/oemvelmora_fan1", "static_cast<int>(p.size())<=2"},
    {"ASetOfAReference", "(systemsp_1)\n", "(systemsp_1)\nverbs=set:show\n",
     "set /admin1/system1=>systemsp=>/admin1/system1/sp1 partcomponent=x", "false"},
    {"TheFirstThatReadsAFaultySchema", "command:set.elementname=ZORM_AdminDomain\n",
     "no name and no value\n", "cd", "pos!=string::npos"},
    {"TheFirstThatLooksForTheRootWhereNoTagIsIts", "(admin_1)\n", "(root_1)\n", "cd",
     "p!=m_classTree.end()"},
};

// Puts a text of the schema in another's place.
void replaceInSchema(const RunDirectory& directory, const std::string& old,
                     const std::string& put) {
    std::string schema = directory.read("schema.conf");
    const std::string::size_type place = schema.find(old);
    ASSERT_NE(std::string::npos, place) << old;
    schema.replace(place, old.size(), put);
    directory.write("schema.conf", schema);
}

class DeadlyLine : public testing::TestWithParam<Deadly> {};

TEST_P(DeadlyLine, EndsTheProcess) {
    const Deadly& test = GetParam();
    const RunDirectory directory;
    replaceInSchema(directory, test.old, test.put);
    const SimulatorProcess simulator(directory);
    CommandSession session(directory, simulator.port());
    session.answer("version");
    int status = 0;
    const std::string words = session.lastWords(test.line, status);
    EXPECT_NE(std::string::npos,
              words.find("Assertion `" + std::string(test.assertion) + "' failed."))
        << words;
    EXPECT_EQ(128 + SIGABRT, status);
}

INSTANTIATE_TEST_SUITE_P(Is, DeadlyLine, testing::ValuesIn(LINES),
                         [](const auto& test) { return std::string(test.param.name); });

// An empty list, and the fourth field of four.
TEST(MethodParameters, ThatAreNoneStartTheTarget) {
    for (const char* method : {"restart:", "restart:nosuchproperty|1:"}) {
        const RunDirectory directory;
        replaceInSchema(directory, "setspeed:desiredspeed|8000", method);
        const SimulatorProcess simulator(directory);
        CommandSession session(directory, simulator.port());
        EXPECT_EQ(0U, session.answer("start /admin1/system1/oemvelmora_fan1")
                          .find("/admin1/system1/oemvelmora_fan1 started at "))
            << method;
    }
}

TEST(ObjectOfAnUnknownClass, IsWrittenByTheTagThatLedToItAndNotShown) {
    const RunDirectory directory;
    replaceInSchema(directory, ":acme_powersensor", "");
    const SimulatorProcess simulator(directory);
    CommandSession session(directory, simulator.port());
    const std::string target = "/admin1/system2/sensor21";
    EXPECT_EQ("\telementname=x\r\n", session.answer("set " + target + " elementname=x"));
    EXPECT_EQ("", session.answer("show -display properties=elementname " + target));
    EXPECT_NE(std::string::npos, session.answer("show -o format=keyword -level 2 /admin1/system2")
                                     .find("\r\nufip=/admin1/system2/sensor3\r\n"));
}

} // namespace
