// Log records in a file: thresholds, form of a line, text that does not belong into a line.
#include "log/osalog.h"
#include "tests/support/run_directory.h"
#include "velclp/assertion.h"
#include "velclp/log.h"

#include <algorithm>
#include <cerrno>
#include <gtest/gtest.h>
#include <regex>
#include <sys/stat.h>
#include <thread>
#include <vector>

namespace {

class Log : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(osalog_set_file(directory.file("log"))); }
    void TearDown() override {
        osalog_set_file("");
        osalog_set_level(OSALOG_FAILURE);
    }
    std::string text() const { return directory.read("log"); }

    RunDirectory directory;
};

TEST_F(Log, KeepsFailuresOnlyUnlessToldOtherwise) {
    VELCLP_LOG_BRANCH("CLP.Test.run", "a step");
    VELCLP_LOG_VALUE("CLP.Test.run", "a value");
    EXPECT_EQ("", text());
    VELCLP_LOG_FAILURE("CLP.Test.run", "status.rc=[%d]", 6);
    EXPECT_TRUE(std::regex_match(
        text(), std::regex("\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d\\.\\d{6}Z \\d+\\.\\d+ 1 "
                           "CLP\\.Test\\.run platform_log_test\\.cpp:\\d+: status\\.rc=\\[6\\]\n")))
        << text();
}

TEST_F(Log, TracesAnOperationFromEnterToLeave) {
    osalog_set_level(OSALOG_TRACE);
    const auto operation = [] {
        VELCLP_TRACE("CLP.Test.operation");
        VELCLP_LOG_VALUE("CLP.Test.operation", "in between");
        return 7;
    };
    VELCLP_LEAVE_VALUE("CLP.Test.run", operation());
    const std::regex heads("[^\n]*: ([^\n]*)\n");
    EXPECT_EQ("Enter,in between,Leave,Leave=[7],", std::regex_replace(text(), heads, "$1,"));
}

TEST_F(Log, EvaluatesNoArgumentOfARecordThatIsNotKept) {
    int evaluated = 0;
    VELCLP_LOG_VALUE("CLP.Test.run", "%d", ++evaluated);
    EXPECT_EQ(0, evaluated);
    osalog_set_level(0);
    VELCLP_LOG_FAILURE("CLP.Test.run", "%d", ++evaluated);
    EXPECT_EQ(0, evaluated);
    EXPECT_EQ("", text());
}

TEST_F(Log, NeedsBothCallsOfThePair) {
    osalogmini("nobody said where");
    osalogpre(OSALOG_FAILURE, "CLP.Test.run", "file.cpp", 1);
    osalogmini("once");
    osalogmini("twice");
    const std::string kept = text();
    EXPECT_NE(std::string::npos, kept.find("CLP.Test.run file.cpp:1: once\n"));
    EXPECT_EQ(1, std::count(kept.begin(), kept.end(), '\n'));
}

TEST_F(Log, KeepsARecordWhoseValuesAreComputedByCodeThatLogs) {
    const auto inner = [] {
        VELCLP_LOG_FAILURE("CLP.Test.inner", "inner");
        return 3;
    };
    VELCLP_LOG_FAILURE("CLP.Test.outer", "outer %d", inner());
    EXPECT_NE(std::string::npos, text().find(": inner\n"));
    EXPECT_NE(std::string::npos, text().find("CLP.Test.outer platform_log_test.cpp"));
    EXPECT_NE(std::string::npos, text().find(": outer 3\n"));
}

TEST_F(Log, KeepsARecordOnOneLineWhateverItsValues) {
    errno = ENOENT;
    VELCLP_LOG_FAILURE("CLP.Test.run", "[%s]", "a\nforged line\x1b[2J\t\x7f and \xc3\xa4");
    EXPECT_EQ(ENOENT, errno);
    EXPECT_NE(std::string::npos,
              text().find("[a\\x0aforged line\\x1b[2J\\x09\\x7f and \xc3\xa4]\n"));
    const std::string endless(100000, 'x');
    VELCLP_LOG_FAILURE("CLP.Test.run", "%s", endless.c_str());
    EXPECT_LT(text().size(), 10000U);
    EXPECT_EQ("xxx...\n", text().substr(text().size() - 7));
}

TEST_F(Log, KeepsRecordsOfManyThreadsWhole) {
    std::vector<std::thread> threads;
    for (int t = 0; t < 8; ++t)
        threads.emplace_back([t] {
            for (int i = 0; i < 200; ++i)
                VELCLP_LOG_FAILURE("CLP.Test.run", "<%d:%s>", t, std::string(300, 'y').c_str());
        });
    for (std::thread& thread : threads)
        thread.join();
    const std::string all = text();
    const std::regex whole("[^\n]*: <\\d:y{300}>\n");
    const auto lines =
        std::distance(std::sregex_iterator(all.begin(), all.end(), whole), std::sregex_iterator());
    EXPECT_EQ(1600, lines);
    EXPECT_EQ("", std::regex_replace(all, whole, ""));
}

TEST_F(Log, StaysWithItsFileWhenTheNextCannotBeOpened) {
    EXPECT_FALSE(osalog_set_file(directory.file("absent/log")));
    VELCLP_LOG_FAILURE("CLP.Test.run", "still here");
    EXPECT_NE(std::string::npos, text().find("still here"));
    struct stat status {};
    ASSERT_EQ(0, stat(directory.file("log").c_str(), &status));
    EXPECT_EQ(0600U, status.st_mode & 0777U);
}

TEST_F(Log, AFailedAssertionSaysItsTextAndEndsTheProcessInEveryBuild) {
    VELCLP_ASSERT(2 + 2 == 4, "arithmetic");
    EXPECT_EXIT(VELCLP_ASSERT(2 + 2 == 5, "cc!=__null"), testing::KilledBySignal(SIGABRT),
                "platform_log_test.cpp:[0-9]+: Assertion `cc!=__null' failed\\.\n");
    EXPECT_NE(std::string::npos, text().find("Assertion `cc!=__null' failed."));
}

} // namespace
