// The rows that sessions and jobs leave in the session database.
#include "database/faults.h"
#include "log/osalog.h"
#include "tests/support/run_directory.h"
#include "velclp/clpcmdjob.h"
#include "velclp/clpsession.h"

#include <gtest/gtest.h>

#include <sqlite3.h>
#include <unistd.h>

#include <cstdint>
#include <ctime>
#include <memory>
#include <regex>

using namespace velmora_clp;

namespace {

class JobRows : public ::testing::Test {
protected:
    void SetUp() override { directory.use(); }
    std::string job(const std::string& columns) const {
        return directory.query("clpsvc.db3", "SELECT " + columns + " FROM CLPCmdJob");
    }
    RunDirectory directory;
};

TEST_F(JobRows, TheFirstJobOfAnEmptyTableIsNumberOneAndRuns) {
    const CLPCmdJob first(300000000);
    EXPECT_EQ(first.getJobId(), 1);
    EXPECT_EQ(job("id,InstanceID,Name,ElementName,JobState,OperationalStatus,DeleteOnCompletion,"
                  "JobRunTimes,TimeBeforeRemoval,Owner IS NULL,TimeToRemove IS NULL"),
              "1|clpjob:1|CLP Concrete Job1|CLP Concrete Job|4|{2,6}|1|1|300000000|1|1\n");
    EXPECT_EQ(job("OEMVelmora_pid"), std::to_string(getpid()) + "\n");
    EXPECT_EQ(job("InstallDate=TimeSubmitted AND StartTime=TimeSubmitted AND "
                  "TimeOfLastStateChange=StartTime"),
              "1\n");
    const std::int64_t age = std::time(nullptr) - std::stoll(job("StartTime")) / 1000000;
    EXPECT_GE(age, 0);
    EXPECT_LE(age, 5);
    const CLPCmdJob second(1);
    EXPECT_EQ(second.getJobId(), 2);
}

TEST_F(JobRows, TheRowIsInsertedWithEveryColumnOfAConcreteJob) {
    ASSERT_TRUE(osalog_set_file(directory.file("log")));
    osalog_set_level(OSALOG_VALUE);
    const CLPCmdJob record(150000000);
    osalog_set_level(OSALOG_FAILURE);
    osalog_set_file("");
    const std::regex times("[0-9]{16}");
    const std::string log = std::regex_replace(directory.read("log"), times, "now");
    const std::string insert =
        "sql statement=[INSERT INTO CLPCmdJob(ElementName,Status,RunDay,OEMVelmora_pid,JobStatus,"
        "DeleteOnCompletion,ScheduledStartTime,ElapsedTime,Notify,OperationalStatus,RunMonth,Owner,"
        "Caption,Priority,UntilTime,InstallDate,InstanceID,RunStartInterval,ErrorDescription,"
        "JobState,ErrorCode,JobRunTimes,TimeSubmitted,StartTime,TimeBeforeRemoval,"
        "OtherRecoveryAction,TimeOfLastStateChange,StatusDescriptions,RunDayOfWeek,RecoveryAction,"
        "PercentComplete,LocalOrUtcTime,HealthState,Description,Name)Values('CLP Concrete "
        "Job',NULL,0," +
        std::to_string(getpid()) +
        ",NULL,1,0,0,NULL,'{2,6}',0,NULL,NULL,0,0,now,NULL,0,NULL,4,0,1,now,now,150000000,NULL,now,"
        "NULL,0,0,0,0,0,NULL,NULL)]\n";
    EXPECT_NE(log.find(insert), std::string::npos) << log;
    EXPECT_NE(log.find("Entry created just now id is 1\n"), std::string::npos) << log;
}

TEST_F(JobRows, ARowThatIsUndoneLeavesTheJobWithoutANumber) {
    const int statements = 5;
    for (int nth = 1; nth <= statements; ++nth) {
        dbfaults::failStatement(nth, SQLITE_FULL);
        CLPCmdJob lost(1);
        EXPECT_EQ(lost.getJobId(), 0) << nth;
        EXPECT_EQ(job("count(*)"), "0\n") << nth;
    }
    const CLPCmdJob other(1);
    EXPECT_EQ(other.getJobId(), 1);
}

TEST_F(JobRows, AnEndedJobGetsItsTimeOfRemovalAndARunningOneDoesNot) {
    CLPCmdJob record(5000000);
    record.RequestStateChange(4);
    EXPECT_EQ(job("JobState,TimeToRemove IS NULL"), "4|1\n");
    for (const int state : {7, 8, 9, 10}) {
        record.RequestStateChange(static_cast<unsigned short>(state));
        EXPECT_EQ(job("JobState,TimeToRemove-TimeOfLastStateChange"),
                  std::to_string(state) + "|5000000\n");
    }
}

TEST_F(JobRows, ElementsAreReadByTypeAndWrittenUnquoted) {
    CLPCmdJob record(1);
    const std::unique_ptr<int> state(static_cast<int*>(record.getElementValue("JobState", 0)));
    EXPECT_EQ(*state, 4);
    record.setElementValue("TimeToRemove", "1700000000123456", 0);
    const std::unique_ptr<std::uint64_t> time(
        static_cast<std::uint64_t*>(record.getElementValue("TimeToRemove", 2)));
    EXPECT_EQ(*time, 1700000000123456U);
    record.setElementValue("Caption", "'a b'", 0);
    const std::unique_ptr<char[]> text(static_cast<char*>(record.getElementValue("Caption", 1)));
    EXPECT_STREQ(text.get(), "a b");
    std::string name = "JobState";
    EXPECT_EQ(getElementValueFromDB(99, name, 0), nullptr);
}

TEST_F(JobRows, ADatabaseThatIsMissingCostsTheRowAndNotTheJob) {
    ASSERT_EQ(unlink(directory.file("clpsvc.db3").c_str()), 0);
    CLPCmdJob record(1);
    EXPECT_EQ(record.getJobId(), 0);
    record.RequestStateChange(7);
    EXPECT_EQ(record.getElementValue("JobState", 0), nullptr);
}

TEST_F(JobRows, SessionElementsAreReadByKindAndLeftAloneWithoutARow) {
    directory.execute("clpsvc.db3",
                      "INSERT INTO CLPSession(id,KeepTime,OEMVelmora_pid,WaitBehavior,"
                      "OutputFormat,CurrentDefaultTarget) VALUES(3,120,'77',1,'2','')");
    sResult result{};
    GetElementFromDB(3, CLPSession::KeepTime, SESSION_NUMBER, result);
    EXPECT_EQ(result.number, 120);
    GetElementFromDB(3, CLPSession::WaitBehavior, SESSION_FLAG, result);
    EXPECT_TRUE(result.flag);
    result.text = nullptr;
    GetElementFromDB(3, CLPSession::CurrentDefaultTarget, SESSION_TEXT, result);
    EXPECT_EQ(result.text, nullptr) << "an empty text is no value";
    SetElementToDB(3, CLPSession::CurrentDefaultTarget, SESSION_TEXT, "/admin1/system1");
    GetElementFromDB(3, CLPSession::CurrentDefaultTarget, SESSION_TEXT, result);
    const std::unique_ptr<char[]> target(result.text);
    EXPECT_STREQ(target.get(), "/admin1/system1");
    SetElementToDB(3, CLPSession::WaitBehavior, SESSION_FLAG, 0);
    SetElementToDB(3, CLPSession::KeepTime, SESSION_NUMBER, 60);
    EXPECT_EQ(directory.query("clpsvc.db3", "SELECT WaitBehavior,KeepTime FROM CLPSession"),
              "0|60\n");
    result.number = 5;
    GetElementFromDB(4, CLPSession::KeepTime, SESSION_NUMBER, result);
    EXPECT_EQ(result.number, 5);
}

} // namespace
