// The tab key on a real terminal: what is filled in, what is listed, and that the controller's CIM
// server hears nothing of it where targets are concerned.
#include "tests/support/clp_session.h"
#include "tests/terminal/operators_terminal.h"

namespace {

class Completion : public OperatorsTerminal {
protected:
    struct Case {
        std::string keys;  // the tab key is pressed behind them
        std::string typed; // what they make
        Rows listed;       // the rows between the line and its copy; none for a silent completion
        std::string line;  // what the line is then, with the cursor at its end
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
    void expectCompleted(const Case& c) {
        SCOPED_TRACE(c.keys);
        Rows expected;
        if (!c.listed.empty())
            expected.push_back(c.typed.empty() ? "->" : "-> " + c.typed);
        expected.insert(expected.end(), c.listed.begin(), c.listed.end());
        expected.push_back("-> " + c.line + "|");
        session->type(c.keys + TAB);
        EXPECT_EQ(session->viewBecomes(expected), expected);
        giveUp();
    }
    // Of a word that the tab key has nothing for: the line stays as it is and goes on.
    void expectNothing(const std::string& keys) {
        SCOPED_TRACE(keys);
        session->type(keys + TAB + "x");
        const Rows expected = {"-> " + keys + "x|"};
        EXPECT_EQ(session->viewBecomes(expected), expected);
        giveUp();
    }
};

TEST_F(Completion, OfVerbsAndOptionsComesFromTheGrammar) {
    startAt(80);
    simulator.post("/sim/stats?do=reset", "");
    const Case cases[] = {
        {"",
         "",
         {"cd    create    delete    exit    help    dump    load    reset    set    show",
          "  start    stop    version"},
         ""},
        {"sho", "sho", {}, "show"},
        {"s", "s", {"set    show    start    stop"}, "s"},
        {"sta", "sta", {}, "start"},
        {"st" + LEFT, "st", {"start    stop"}, "st"},
        {"VER", "VER", {}, "VERsion"},
        {"show -l", "show -l", {}, "show -level"},
        {"show -a", "show -a", {}, "show -all"},
        {"show -d" + LEFT + LEFT, "show -d", {}, "show -display"},
        {"cd -", "cd -", {"-examine    -help    -keep    -output    -version    -wait"}, "cd -"},
        {"create -s", "create -s", {}, "create -source"},
        {"delete -f", "delete -f", {}, "delete -force"},
        {"dump -d", "dump -d", {}, "dump -destination"},
        {"exit -v", "exit -v", {}, "exit -version"},
        {"help -o", "help -o", {}, "help -output"},
        {"load -s", "load -s", {}, "load -source"},
        {"reset -e", "reset -e", {}, "reset -examine"},
        {"set -h", "set -h", {}, "set -help"},
        {"start -k", "start -k", {}, "start -keep"},
        {"stop -f", "stop -f", {}, "stop -force"},
        {"version -e", "version -e", {}, "version -examine"},
    };
    for (const Case& c : cases)
        expectCompleted(c);
    for (const char* const keys : {"xyz", "-", "show -q", "xyz -l", "exit x "})
        expectNothing(keys);
    expectNoCall();
    expectOrderlyEnd();
}

TEST_F(Completion, OfTargetsComesFromWhatTheCacheHasSeen) {
    startAt(80);
    simulator.post("/sim/stats?do=reset", "");
    expectCompleted({"show /", "show /", {}, "show /admin1"});
    expectCompleted({"set S", "set S", {}, "set SESSION"});
    for (const char* const keys : {"show /admin1/", "show sys", "cd /admin1/system1/"})
        expectNothing(keys);
    expectNoCall();
    walk();
    const Case cases[] = {
        {"show sys", "show sys", {"system1    system2"}, "show system"},
        {"show sys" + LEFT + LEFT, "show sys", {"system1    system2"}, "show system"},
        {"cd blade", "cd blade", {}, "cd blade1"},
        {"cd /admin1/bl" + LEFT, "cd /admin1/bl", {}, "cd /admin1/blade1"},
        {"show \\admin1\\ch", "show \\admin1\\ch", {}, "show \\admin1\\chassis1"},
        {"reset system1/sp1/ethp",
         "reset system1/sp1/ethp",
         {"ethport1    ethport2"},
         "reset system1/sp1/ethport"},
        {"show /../pro", "show /../pro", {"profile1    profile2"}, "show /../profile"},
        {"show -level 2 sys", "show -level 2 sys", {"system1    system2"}, "show -level 2 system"},
    };
    for (const Case& c : cases)
        expectCompleted(c);
    for (const char* const keys : {"show system1", "show system9/", "show SESSION/", "show nosuch",
                                   "show a1=>b=>c1=>d1", "show system*/"})
        expectNothing(keys);
    expectNoCall();
    expectOrderlyEnd();
}

TEST_F(Completion, OfAssociationsAndPropertiesFollowsTheTarget) {
    walk();
    startAt(80);
    const Case cases[] = {
        {"show /admin1=>dom", "show /admin1=>dom", {}, "show /admin1=>domainelement"},
        {"show =>", "show =>", {"systemcomponent    domainelement"}, "show =>"},
        {"show SESSION=>", "show SESSION=>", {}, "show SESSION=>hostedaccesspoint"},
        {"show /admin1=>systemcomponent=>bl", "", {}, "show /admin1=>systemcomponent=>blade1"},
        {"show /admin1=>systemcomponent=>sys",
         "show /admin1=>systemcomponent=>sys",
         {"system1    system2"},
         "show /admin1=>systemcomponent=>system"},
        {"show /admin1 na", "show /admin1 na", {"Name    NameFormat"}, "show /admin1 name"},
        {"show /admin1 primaryownerc", "", {}, "show /admin1 primaryownercontact"},
        {"set SESSION outputf", "", {}, "set SESSION outputformat"},
        {"set SESSION outputformat=text outputv",
         "",
         {},
         "set SESSION outputformat=text outputverbosity"},
        {"show /admin1=>systemcomponent=>/admin1/system1 part",
         "",
         {},
         "show /admin1=>systemcomponent=>/admin1/system1 partComponent"},
    };
    for (const Case& c : cases)
        expectCompleted(c);
    for (const char* const keys : {"show /admin1=>nosuch", "show /admin1 nosuch", "show /admin9 na",
                                   "show /admin1=>nosuch=>sys"})
        expectNothing(keys);
    expectOrderlyEnd();
}

TEST_F(Completion, InAWrappedLineKeepsTheScreenInOrder) {
    walk();
    startAt(20);
    const struct {
        std::string keys;
        Rows shown;
    } cases[] = {
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
    for (const auto& c : cases) {
        SCOPED_TRACE(c.keys);
        session->type(c.keys + TAB);
        EXPECT_EQ(session->viewBecomes(c.shown), c.shown);
        giveUp();
    }
    EXPECT_FALSE(session->screen().confused());
}

TEST_F(Completion, InAContinuedLineSeesTheWholeLine) {
    walk();
    startAt(80);
    const struct {
        std::string keys;
        Rows shown;
    } cases[] = {
        {"show `\r-level 2 `\r/admin1/bl", {"-> show `", "-level 2 `", "/admin1/blade1|"}},
        {"show `\r-level 2 `\r/admin1/sys",
         {"-> show `", "-level 2 `", "/admin1/sys", "system1    system2", "-> show -level 2 `",
          "/admin1/system|"}},
        {"show `\r-l" + LEFT, {"-> show `", "-level|"}},
        {"sh`\ro", {"-> sh`", "ow|"}},
        {"show `\r/nosuch" + LEFT + TAB + "x", {"-> show `", "/nosucx|h"}},
        {"show /admin1 `\rna",
         {"-> show /admin1 `", "na", "Name    NameFormat", "-> show /admin1 `", "name|"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.keys);
        session->type(c.keys + TAB);
        EXPECT_EQ(session->viewBecomes(c.shown), c.shown);
        giveUp();
    }
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
