// Lines and schema entries that end the process by design: each says why on standard error.
#include "tests/engine/command_session.h"
#include "tests/support/simulator_process.h"

#include <gtest/gtest.h>

#include <csignal>

namespace {

class DeadlyLine : public testing::Test {
protected:
    // Puts a line of the schema in another's place.
    void replaceInSchema(const std::string& old, const std::string& line) {
        std::string schema = directory.read("schema.conf");
        const std::string::size_type place = schema.find(old);
        ASSERT_NE(std::string::npos, place) << old;
        schema.replace(place, old.size(), line);
        directory.write("schema.conf", schema);
    }

    void expectEnd(const std::string& line, const std::string& assertion) {
        const SimulatorProcess simulator(directory);
        CommandSession session(directory, simulator.port());
        session.answer("version");
        int status = 0;
        const std::string words = session.lastWords(line, status);
        EXPECT_NE(std::string::npos, words.find("Assertion `" + assertion + "' failed.")) << words;
        EXPECT_EQ(128 + SIGABRT, status);
    }

    RunDirectory directory;
};

} // namespace

TEST_F(DeadlyLine, IsACreationWithAPropertyThatTheClassLacks) {
    expectEnd("create /admin1/system1/sp1/user* nosuch=1", "object");
}

TEST_F(DeadlyLine, IsACreationWithAValueOfTheWrongKind) {
    expectEnd("create /admin1/system1/sp1/user* locked=True", "object");
}

TEST_F(DeadlyLine, IsASpecialCreationThatGivesNoObject) {
    replaceInSchema("command:create=ZORM_SPComputerSystem:special:createimage",
                    "command:create=ZORM_Nothing:special:createimage");
    expectEnd("create /admin1/system1/sp1/swid*", "((args)->ft->getArgCount((args),(__null)))==1");
}

TEST_F(DeadlyLine, IsACreationByAMethodOfAnotherType) {
    replaceInSchema("command:create=ZORM_SPComputerSystem:special:createimage",
                    "command:create=ZORM_SPComputerSystem:method:createimage");
    expectEnd("create /admin1/system1/sp1/swid*", "type==\"special\"");
}

TEST_F(DeadlyLine, IsADeletionByAMethodOfAnotherType) {
    replaceInSchema("command:delete=ZORM_RecordLog:container:clearlog",
                    "command:delete=ZORM_RecordLog:method:clearlog");
    expectEnd("delete /admin1/system1/log1/record1", "type==\"special\"||type==\"container\"");
}

TEST_F(DeadlyLine, IsALoadThatTheSchemaAllowsAndDoesNotBind) {
    replaceInSchema("command:load=ZORM_SPComputerSystem:special:installfromuri\n", "");
    expectEnd("load -source http://host/image /admin1/system1/sp1", "!options.empty()");
}

TEST_F(DeadlyLine, IsAStartWithAParameterThatIsNoProperty) {
    replaceInSchema("setspeed:desiredspeed|8000", "setspeed:nosuchproperty|8000");
    expectEnd("start /admin1/system1/oemvelmora_fan1", "flag");
}

TEST_F(DeadlyLine, IsAMethodParameterOfThreeParts) {
    replaceInSchema("setspeed:desiredspeed|8000", "setspeed:desiredspeed|8000|1");
    expectEnd("start /admin1/system1/oemvelmora_fan1", "static_cast<int>(p.size())<=2");
}

TEST_F(DeadlyLine, IsASetOfAReference) {
    replaceInSchema("(systemsp_1)\n", "(systemsp_1)\nverbs=set:show\n");
    expectEnd("set /admin1/system1=>systemsp=>/admin1/system1/sp1 partcomponent=x", "false");
}

TEST_F(DeadlyLine, IsTheFirstThatReadsAFaultySchema) {
    replaceInSchema("command:set.elementname=ZORM_AdminDomain\n", "no name and no value\n");
    expectEnd("cd", "pos!=string::npos");
}

TEST_F(DeadlyLine, IsTheFirstThatLooksForTheRootWhereNoTagIsIts) {
    replaceInSchema("(admin_1)\n", "(root_1)\n");
    expectEnd("cd", "p!=m_classTree.end()");
}

using MethodParameters = DeadlyLine;

TEST_F(MethodParameters, MayBeAnEmptyList) {
    replaceInSchema("setspeed:desiredspeed|8000", "restart:");
    const SimulatorProcess simulator(directory);
    CommandSession session(directory, simulator.port());
    EXPECT_EQ(0U, session.answer("start /admin1/system1/oemvelmora_fan1")
                      .find("/admin1/system1/oemvelmora_fan1 started at "));
}

TEST_F(MethodParameters, AreTheFourthFieldOfFourAndNoOther) {
    replaceInSchema("setspeed:desiredspeed|8000", "restart:nosuchproperty|1:");
    const SimulatorProcess simulator(directory);
    CommandSession session(directory, simulator.port());
    EXPECT_EQ(0U, session.answer("start /admin1/system1/oemvelmora_fan1")
                      .find("/admin1/system1/oemvelmora_fan1 started at "));
}

using ObjectOfAnUnknownClass = DeadlyLine;

TEST_F(ObjectOfAnUnknownClass, IsWrittenByTheTagThatLedToItAndNotShown) {
    replaceInSchema(":acme_powersensor", "");
    const SimulatorProcess simulator(directory);
    CommandSession session(directory, simulator.port());
    const std::string target = "/admin1/system2/sensor21";
    EXPECT_EQ("\telementname=x\r\n", session.answer("set " + target + " elementname=x"));
    EXPECT_EQ("", session.answer("show -display properties=elementname " + target));
    EXPECT_NE(std::string::npos, session.answer("show -o format=keyword -level 2 /admin1/system2")
                                     .find("\r\nufip=/admin1/system2/sensor3\r\n"));
}
