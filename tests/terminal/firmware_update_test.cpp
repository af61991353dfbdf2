// An operator watches a firmware update: the marks, how it ends, and keys that come too early.
#include "tests/terminal/operators_terminal.h"

namespace {

const std::string BEGUN = "Updating started.\n";
const std::string DONE = "\nUpdating FW Done.\n";
const std::string UNCHANGED = "\nOriginal FW without any updating.\n";
const std::string FAILED = "\nUpdating FW failed.\n";

std::string load(const std::string& image, const std::string& options = "") {
    return "load " + options + "-source http://host/" + image + " /admin1/system1/sp1";
}

class FirmwareUpdate : public OperatorsTerminal {
protected:
    // A session in which no update is left alone for long.
    PtySession& startImpatient() {
        PtySession::Options options;
        options.columns = 200;
        options.program = VELCLP_PRETENDED_HOST;
        options.arguments = {"--poll", "10"};
        return start(options);
    }
    void finishJobs() const {
        simulator.post("/sim/model?do=remove",
                       simulator.get("/sim/model?class=ZORM_SoftwareInstallationJob"));
    }
};

TEST_F(FirmwareUpdate, TellsHowItEndedInEveryFormOfTheAnswer) {
    struct {
        const char* end;
        const std::string& text;
    } const cases[] = {{"completed", DONE}, {"unchanged", UNCHANGED}, {"terminated", FAILED},
                       {"killed", FAILED},  {"exception", FAILED},    {"vanish", FAILED}};
    PtySession& terminal = startImpatient();
    int job = 0;
    for (const auto& c : cases) {
        const std::string image = std::string("sp-9.1.bin?seconds=0&end=") + c.end;
        EXPECT_EQ(terminal.answer(load(image)), BEGUN + c.text) << c.end;
        const std::string keyword = load(image, "-o format=keyword ");
        EXPECT_EQ(terminal.answer(keyword),
                  BEGUN + c.text + "commandline=" + keyword +
                      "\nstatus=0\nstatus_tag=COMMAND COMPLETED\njob_id=" +
                      std::to_string(job + 2) + "\n");
        const std::string document = load(image, "-o format=clpxml ");
        const std::string answer = terminal.answer(document);
        EXPECT_EQ(answer.find(BEGUN + c.text + "<?xml "), 0U) << answer;
        EXPECT_NE(
            answer.find("<inputline>" + document + "</inputline></command><cmdstat><status>0"),
            std::string::npos)
            << answer;
        EXPECT_EQ(answer.substr(answer.rfind("<job>")),
                  "<job><job_id>" + std::to_string(job + 3) + "</job_id></job></cmdstat>\n");
        job += 3;
    }
}

// The update is not cut off half-way: the key is without effect, and what was typed meanwhile is
// not lost. Between two looks at the job lie seconds unless told otherwise.
TEST_F(FirmwareUpdate, RunsToItsEndWhateverTheOperatorPresses) {
    PtySession& terminal = start();
    const termios before = terminal.settings();
    terminal.type(load("sp-9.1.bin?seconds=3600") + "\r");
    terminal.expect(BEGUN + "#");
    simulator.post("/sim/stats?do=reset", "");
    terminal.type(CTRL_C + QUIT);
    EXPECT_TRUE(terminal.quiet(std::chrono::milliseconds(1500)));
    EXPECT_EQ(simulator.get("/sim/stats").find("\"GetInstance\""), std::string::npos);
    finishJobs();
    terminal.type("version\r");
    EXPECT_EQ(terminal.prompt(), FAILED);
    const termios after = terminal.settings();
    EXPECT_EQ(after.c_lflag, before.c_lflag);
    EXPECT_EQ(after.c_iflag, before.c_iflag);
    terminal.expect("SM ME Addressing Version");
    terminal.prompt();
    EXPECT_EQ(directory.query("clpsvc.db3", "SELECT JobState FROM CLPCmdJob WHERE id=1"), "7\n");
    expectOrderlyEnd();
}

} // namespace
