// The tab key on a session's real cache: what the engine adds to the grammar's answers.
#include "tests/support/simulator_process.h"
#include "velclp/core.h"
#include "velclp/parser.h"
#include "velclp/transport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace {

using Words = std::vector<std::string>;

velmora_clp::CLPCore* engine = nullptr;

} // namespace

std::vector<std::string> parser_help(const std::vector<std::string>& terms,
                                     const std::string& word) {
    return engine->parser_help(terms, word);
}

namespace {

class TabKey : public testing::Test {
protected:
    void start(const std::vector<std::string>& arguments = {}) {
        setenv("USER", "admin", 1);
        setenv("privileges", "511", 1);
        directory.use();
        simulator = std::make_unique<SimulatorProcess>(directory, arguments);
        core = std::make_unique<velmora_clp::CLPCore>("localhost", simulator->port(), transport);
        engine = core.get();
    }
    ~TabKey() override { engine = nullptr; }

    static Words tab(const std::string& line) { return velmora_clp::CLPParser().tabContinue(line); }
    static Words sorted(const std::string& line) {
        Words words = tab(line);
        std::sort(words.begin(), words.end());
        return words;
    }

    RunDirectory directory;
    Transport transport{"nul", 0};
    std::unique_ptr<SimulatorProcess> simulator;
    std::unique_ptr<velmora_clp::CLPCore> core;
};

TEST_F(TabKey, OffersTargetsFromTheCacheAloneAndAsksTheServerNothing) {
    start();
    const std::string before = simulator->get("/sim/stats");
    EXPECT_EQ(tab("show /"), Words{"admin1"});
    EXPECT_EQ(tab("show /ad"), Words{"admin1"});
    EXPECT_EQ(tab("show S"), Words{"SESSION"});
    EXPECT_EQ(tab("show SESSION/"), Words{});
    EXPECT_EQ(tab("show /admin1/"), Words{});
    EXPECT_EQ(tab("show "), Words{});
    EXPECT_EQ(simulator->get("/sim/stats"), before);

    core->run("show /admin1");
    core->run("show -level 2 /admin1/system1/sp1");
    const std::string walked = simulator->get("/sim/stats");
    EXPECT_EQ(sorted("show "),
              (Words{"blade1", "chassis1", "profile1", "profile2", "system1", "system2"}));
    EXPECT_EQ(sorted("cd sys"), (Words{"system1", "system2"}));
    EXPECT_EQ(sorted("show \\admin1\\blade"), Words{"blade1"});
    EXPECT_EQ(sorted("show /sys"), (Words{"system1", "system2"}));
    EXPECT_EQ(tab("show system1/sp1/lo"), Words{"log1"});
    EXPECT_EQ(sorted("show /../pro"), (Words{"profile1", "profile2"}));
    EXPECT_EQ(tab("show chassis1/slot"), Words{});
    EXPECT_EQ(tab("show system9/"), Words{});
    EXPECT_EQ(tab("show nosuch1/"), Words{});
    EXPECT_EQ(tab("show system*/"), Words{});
    EXPECT_EQ(simulator->get("/sim/stats"), walked);
}

TEST_F(TabKey, OffersAssociationsOfATargetAndTheTargetsBehindThem) {
    start();
    EXPECT_EQ(tab("show /admin1=>"), (Words{"systemcomponent", "domainelement"}));
    EXPECT_EQ(tab("show =>Sys"), Words{"systemcomponent"});
    EXPECT_EQ(tab("show /..=>dom"), Words{"domainelement"});
    EXPECT_EQ(tab("show SESSION=>"), Words{"hostedaccesspoint"});
    EXPECT_EQ(tab("show /admin9=>"), Words{});
    core->run("show /admin1");
    const std::string walked = simulator->get("/sim/stats");
    EXPECT_EQ(tab("show system1=>sys"), (Words{"systemcomponent", "systemsp", "systemdevice"}));
    EXPECT_EQ(tab("show system*=>use"), Words{"useoflog"});
    EXPECT_EQ(simulator->get("/sim/stats"), walked);
    EXPECT_EQ(sorted("show /admin1=>systemcomponent=>sys"), (Words{"system1", "system2"}));
    EXPECT_EQ(tab("show /admin1=>systemcomponent=>/"), Words{"admin1"});
    EXPECT_EQ(tab("show /admin1=>nosuch=>sys"), Words{});
    EXPECT_EQ(tab("show /admin1=>systemdevice=>sys"), Words{});
}

TEST_F(TabKey, OffersPropertyNamesOfTargetsAndAssociations) {
    start();
    EXPECT_EQ(tab("show /admin1 na"), (Words{"Name", "NameFormat"}));
    EXPECT_EQ(tab("set SESSION outputf"), Words{"OutputFormat"});
    EXPECT_EQ(tab("show /admin1=>systemcomponent=>/admin1/system1 part"), Words{"PartComponent"});
    EXPECT_EQ(tab("show =>systemcomponent ").size(), 2u);
    EXPECT_EQ(tab("show =>systemcomponent=>system9 part"), Words{});
    EXPECT_EQ(tab("show =>nosuch part"), Words{});
    for (const Words& classes : {Words{"system*", "systemcomponent", ""},
                                 Words{"/admin1", "systemcomponent", "/admin1/system*"}})
        EXPECT_EQ(core->parser_help(classes, "part"), Words{}) << classes[0];
    EXPECT_EQ(tab("show /admin9 na"), Words{});
    EXPECT_EQ(tab("show /admin1 nosuch"), Words{});
}

TEST_F(TabKey, HasNoCandidatesWhereNothingCanStand) {
    start();
    core->run("show /admin1");
    for (const char* line :
         {"-", "show SESSION/", "show SESSION\\x", "show SESSION/..", "show a1=>b=>c1=>d1",
          "show a'1/", "show /admin1/x' or '1'='1/", "show system0/", "foo /", "show /x1/../..=>q"})
        EXPECT_EQ(tab(line), Words{}) << line;
    simulator->stop();
    EXPECT_EQ(tab("show /admin1 na"), Words{});
    EXPECT_EQ(sorted("show sys"), (Words{"system1", "system2"}));
}

TEST_F(TabKey, OffersAThousandCachedTargets) {
    start({"--scale", "ZORM_Processor=1000"});
    core->run("cd /admin1/system1/cpu1");
    core->run("cd /admin1/system2/cpu1");
    const std::size_t first = tab("show /admin1/system1/cpu").size();
    const std::size_t second = tab("show /admin1/system2/cpu").size();
    EXPECT_EQ(first + second, 1000u);
    EXPECT_EQ(sorted("show /admin1/system1/cpu10").front(), "cpu10");
}

} // namespace
