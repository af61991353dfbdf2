// Outside programs: how a line becomes one, and what of the session it can see.
#include "tests/support/run_directory.h"
#include "velclp/core.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <unistd.h>

#include <sys/stat.h>

#include <csignal>
#include <iostream>

using namespace velmora_clp;

namespace {

class OutsideProgram : public ::testing::Test {
protected:
    // Runs a shell script with the arguments of the line; gives what it wrote to "$OUT".
    std::string run(const std::string& script, const std::string& arguments) {
        directory.write("program", "#!/bin/sh\nOUT=" + directory.file("out") + "\n" + script);
        chmod(directory.file("program").c_str(), 0755);
        EXPECT_EQ(run_command((directory.file("program") + " " + arguments).c_str()), 0);
        return directory.read("out");
    }
    RunDirectory directory;
};

TEST_F(OutsideProgram, GetsItsArgumentsAsAShellCutsThem) {
    EXPECT_EQ(run("for a in \"$@\"; do echo \"<$a>\"; done > $OUT", "-x 'a b' \"c\"d e\\ f"),
              "<-x>\n<a b>\n<cd>\n<e f>\n");
}

std::string outputOf(const char* line) {
    testing::internal::CaptureStdout();
    EXPECT_EQ(run_command(line), 0);
    return testing::internal::GetCapturedStdout();
}

TEST_F(OutsideProgram, SeesTheStandardDescriptorsAloneAndSignalsAsAFreshProgram) {
    const int secret = open(directory.file("clp.db3").c_str(), O_RDONLY);
    ASSERT_GE(secret, 3);
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    pthread_sigmask(SIG_BLOCK, &blocked, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
    EXPECT_EQ(outputOf("/bin/ls -x /proc/self/fd"), "0  1  2  3\n") << "3 is its own look at them";
    EXPECT_EQ(outputOf("/bin/grep -E Sig[BI] /proc/self/status"),
              "SigBlk:\t0000000000000000\nSigIgn:\t0000000000080000\n")
        << "the suspend key alone is ignored";
    close(secret);
}

TEST_F(OutsideProgram, WritesBehindWhatTheSessionHasWritten) {
    testing::internal::CaptureStdout();
    std::cout << "before ";
    run_command("/bin/echo during");
    std::cout << "after";
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "before during\nafter");
}

TEST_F(OutsideProgram, ThatCannotBeRunLeavesOneSessionBehind) {
    const pid_t self = getpid();
    EXPECT_EQ(run_command("/nonexistent/program -x"), 0);
    // A child that came back from here would run the rest of this test, and the process's ends.
    ASSERT_EQ(getpid(), self);
    EXPECT_EQ(access(directory.path().c_str(), F_OK), 0);
}

TEST_F(OutsideProgram, WithAnOpenQuoteIsASyntaxErrorOnStandardError) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(run_command("/bin/true \"a"), 0);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "Syntax error: Unterminated quoted string.\n");
}

} // namespace
