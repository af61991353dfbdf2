// The tab key on a real terminal: what is filled in, what is listed, and that the controller's CIM
// server hears nothing of it where targets are concerned.
#include "tests/support/clp_session.h"
#include "tests/terminal/operators_terminal.h"

namespace {

class Completion : public OperatorsTerminal {
protected:
    struct Case {
        std::string keys; // the tab key is pressed behind them
        std::string line; // what the line is then, with the cursor at its end
        Rows listed = {}; // the rows between the line and its copy; none for a silent completion
    };

    PtySession& startAt(int columns) {
        PtySession::Options options;
        options.columns = columns;
        return start(options);
    }
    // Lets another session fill the cache.
    void walk() const {
        runSession(directory, simulator.port(), "show /admin1\ncd /admin1/system1/sp1/ethport1\n");
        simulator.post("/sim/stats?do=reset", "");
    }
    void expectNoCall() const {
        EXPECT_EQ(simulator.get("/sim/stats").find("\"total\":0"), 1U)
            << simulator.get("/sim/stats");
    }
    void expectShown(const std::string& keys, const Rows& expected) {
        SCOPED_TRACE(keys);
        session->type(keys);
        EXPECT_EQ(session->viewBecomes(expected), expected);
        giveUp();
    }
    void expectCompleted(const std::vector<Case>& cases) {
        for (const Case& c : cases) {
            std::string typed = "-> " + c.keys.substr(0, c.keys.find(LEFT));
            typed.erase(typed.find_last_not_of(' ') + 1);
            Rows expected = c.listed;
            if (!c.listed.empty())
                expected.insert(expected.begin(), typed);
            expected.push_back("-> " + c.line + "|");
            expectShown(c.keys + TAB, expected);
        }
    }
    // Of words that the tab key has nothing for: the line stays as it is and goes on.
    void expectNothing(const std::vector<std::string>& lines) {
        for (const std::string& keys : lines)
            expectShown(keys + TAB + "x", {"-> " + keys + "x|"});
    }
};

TEST_F(Completion, OfVerbsAndOptionsComesFromTheGrammar) {
    startAt(80);
    simulator.post("/sim/stats?do=reset", "");
    expectCompleted({
        {"",
         "",
         {"cd    create    delete    exit    help    dump    load    reset    set    show",
          "  start    stop    version"}},
        {"sho", "show"},
        {"s", "s", {"set    show    start    stop"}},
        {"sta", "start"},
        {"st" + LEFT, "st", {"start    stop"}},
        {"VER", "VERsion"},
        {"show -l", "show -level"},
        {"show -a", "show -all"},
        {"show -d" + LEFT + LEFT, "show -display"},
        {"cd -", "cd -", {"-examine    -help    -keep    -output    -version    -wait"}},
        {"create -s", "create -source"},
        {"delete -f", "delete -force"},
        {"dump -d", "dump -destination"},
        {"exit -v", "exit -version"},
        {"help -o", "help -output"},
        {"load -s", "load -source"},
        {"reset -e", "reset -examine"},
        {"set -h", "set -help"},
        {"start -k", "start -keep"},
        {"stop -f", "stop -force"},
        {"version -e", "version -examine"},
    });
    expectNothing({"xyz", "-", "show -q", "xyz -l", "exit x ", "foo /"});
    expectNoCall();
    expectOrderlyEnd();
}

TEST_F(Completion, OfTargetsComesFromWhatTheCacheHasSeen) {
    startAt(80);
    simulator.post("/sim/stats?do=reset", "");
    expectCompleted({{"show /", "show /admin1"}, {"set S", "set SESSION"}});
    expectNothing({"show /admin1/", "show sys", "show ", "cd /admin1/system1/"});
    expectNoCall();
    walk();
    expectCompleted({
        {"show sys", "show system", {"system1    system2"}},
        {"show sys" + LEFT + LEFT, "show system", {"system1    system2"}},
        {"show ", "show ", {"system1    system2    blade1    chassis1    profile1    profile2"}},
        {"show /sys", "show /system", {"system1    system2"}},
        {"cd blade", "cd blade1"},
        {"cd /admin1/bl" + LEFT, "cd /admin1/blade1"},
        {"show \\admin1\\ch", "show \\admin1\\chassis1"},
        {"reset system1/sp1/ethp", "reset system1/sp1/ethport", {"ethport1    ethport2"}},
        {"show /../pro", "show /../profile", {"profile1    profile2"}},
        {"show -level 2 sys", "show -level 2 system", {"system1    system2"}},
    });
    expectNothing({"show system1", "show system0/", "show system9/", "show SESSION/",
                   "show SESSION\\x", "show SESSION/..", "show nosuch", "show nosuch1/",
                   "show chassis1/slot", "show a1=>b=>c1=>d1", "show system*/", "show a'1/",
                   "show /admin1/x' or '1'='1/"});
    expectNoCall();
    simulator.stop();
    expectCompleted({{"show bl", "show blade1"}});
    expectNothing({"show /admin1 na"});
}

TEST_F(Completion, OfAssociationsAndPropertiesFollowsTheTarget) {
    walk();
    startAt(80);
    expectCompleted({
        {"show /admin1=>dom", "show /admin1=>domainelement"},
        {"show =>", "show =>", {"systemcomponent    domainelement"}},
        {"show =>Sys", "show =>Systemcomponent"},
        {"show /..=>dom", "show /..=>domainelement"},
        {"show SESSION=>", "show SESSION=>hostedaccesspoint"},
        {"show system1=>sys",
         "show system1=>system",
         {"systemcomponent    systemsp    systemdevice"}},
        {"show system*=>use", "show system*=>useoflog"},
        {"show /admin1=>systemcomponent=>/", "show /admin1=>systemcomponent=>/admin1"},
        {"show /admin1=>systemcomponent=>bl", "show /admin1=>systemcomponent=>blade1"},
        {"show /admin1=>systemcomponent=>sys",
         "show /admin1=>systemcomponent=>system",
         {"system1    system2"}},
        {"show /admin1 na", "show /admin1 name", {"Name    NameFormat"}},
        {"show /admin1 primaryownerc", "show /admin1 primaryownercontact"},
        {"set SESSION outputf", "set SESSION outputformat"},
        {"set SESSION outputformat=text outputv", "set SESSION outputformat=text outputverbosity"},
        {"show /admin1=>systemcomponent=>/admin1/system1 part",
         "show /admin1=>systemcomponent=>/admin1/system1 partComponent"},
        {"show =>systemcomponent ", "show =>systemcomponent ", {"GroupComponent    PartComponent"}},
    });
    expectNothing({"show /admin1=>nosuch", "show /admin1 nosuch", "show /admin9 na",
                   "show /admin9=>", "show /admin1=>nosuch=>sys", "show /admin1=>systemdevice=>sys",
                   "show =>nosuch part", "show =>systemcomponent=>system9 part",
                   "show system*=>systemcomponent part", "show /x1/../..=>q"});
    expectOrderlyEnd();
}

TEST_F(Completion, InAWrappedLineKeepsTheScreenInOrder) {
    walk();
    startAt(20);
    const std::pair<std::string, Rows> cases[] = {
        {"show -display targets /admin1/bl", {"-> show -display tar", "gets /admin1/blade1|"}},
        {"show /admin1/bl", {"-> show /admin1/blad", "e1|"}},
        {"show -display targets /admin1/bl" + times(20, LEFT),
         {"-> show -display tar", "gets /admin1/blade1|"}},
        {"show -display targets /admin1/sys" + times(25, LEFT),
         {"-> show -display tar", "gets /admin1/sys", "system1    system2", "-> show -display tar",
          "gets /admin1/system|"}},
        {"st", {"-> st", "start    stop", "-> st|"}},
        {"show -display targets /nosuch" + LEFT + TAB + "x",
         {"-> show -display tar", "gets /nosucx|h"}},
        {"show /admin1/syste",
         {"-> show /admin1/syst", "e", "system1    system2", "-> show /admin1/syst", "em|"}},
        {"show /admin1 name",
         {"-> show /admin1 name", "", "Name    NameFormat", "-> show /admin1 name", "|"}},
    };
    for (const auto& [keys, shown] : cases)
        expectShown(keys + TAB, shown);
    EXPECT_FALSE(session->screen().confused());
}

TEST_F(Completion, InAContinuedLineSeesTheWholeLine) {
    walk();
    startAt(80);
    expectShown("show `\r-level 2 `\r/admin1/sys" + TAB,
                {"-> show `", "-level 2 `", "/admin1/sys", "system1    system2",
                 "-> show -level 2 `", "/admin1/system|"});
    expectShown("show `\r-l" + LEFT + TAB, {"-> show `", "-level|"});
    expectShown("sh`\ro" + TAB, {"-> sh`", "ow|"});
    expectShown("show `\r/nosuch" + LEFT + TAB + "x", {"-> show `", "/nosucx|h"});
    session->type("version `\r-o format=key" + TAB + "word\r");
    session->expect("commandline=version -o format=keyword\n");
    session->prompt();
    EXPECT_FALSE(session->screen().confused());
}

TEST_F(Completion, ListsAThousandTargetsAtOnce) {
    simulator.stop();
    simulator = SimulatorProcess(directory, {"--scale", "ZORM_Processor=2000"});
    runSession(directory, simulator.port(), "cd /admin1/system1/cpu1\n");
    startAt(80);
    session->type("show /admin1/system1/cpu");
    session->skip();
    const auto begin = std::chrono::steady_clock::now();
    session->type(TAB);
    const std::string listed = session->prompt();
    const auto taken = std::chrono::steady_clock::now() - begin;
    EXPECT_GT(std::count(listed.begin(), listed.end(), 'c'), 900);
    // Some ten milliseconds; a machine that does other work may take longer.
    EXPECT_LT(taken, std::chrono::seconds(1));
}

} // namespace
