// The scoped database statement: what it closes, what it logs, which failures it keeps in.
#include "database/faults.h"
#include "tests/support/run_directory.h"
#include "velclp/dbstatement.h"

#include <gtest/gtest.h>
#include <pthread.h>
#include <sqlite3.h>
#include <stdexcept>
#include <thread>

namespace {

using velmora_clp::databaseWork;
using velmora_clp::DbStatement;

class ScopedStatement : public testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(osalog_set_file(directory.file("log")));
        osalog_set_level(OSALOG_VALUE);
    }
    void TearDown() override {
        dbfaults::clear();
        osalog_set_level(OSALOG_FAILURE);
        osalog_set_file("");
    }
    bool logged(const std::string& text) const {
        return directory.read("log").find(text) != std::string::npos;
    }

    RunDirectory directory;
    std::string url = directory.addressDatabase();
};

TEST_F(ScopedStatement, RunsStatementsOneAfterAnotherAndLogsThem) {
    DbStatement statement("CLP.Test.run", url);
    EXPECT_EQ(0, statement.update("INSERT INTO addrsvc_seq(ufip,next) VALUES('/','1')"));
    ASSERT_TRUE(statement.query("SELECT next FROM addrsvc_seq").next());
    DBResultSet& rows = statement.query("SELECT ufip FROM addrsvc_seq WHERE next='1'");
    ASSERT_TRUE(rows.next());
    EXPECT_EQ("/", rows.getString("ufip"));
    EXPECT_TRUE(logged("CLP.Test.run dbstatement.cpp:"));
    EXPECT_TRUE(logged("sql statement=[SELECT ufip FROM addrsvc_seq WHERE next='1']\n"));
}

TEST_F(ScopedStatement, WorksOnAConnectionThatItsOwnerKeeps) {
    DBUrl location(url);
    DBConnection* connection = DBDriver::getConnection(location);
    DbStatement("CLP.Test.run", *connection).update("INSERT INTO addrsvc_seq VALUES('/','1')");
    DbStatement again("CLP.Test.run", *connection);
    EXPECT_TRUE(again.query("SELECT * FROM addrsvc_seq").next());
    connection->close();
}

TEST_F(ScopedStatement, KeepsFailuresInAndLogsThem) {
    const auto select = [&] { DbStatement("CLP.Test.run", url).query("SELECT 1"); };
    EXPECT_TRUE(databaseWork("CLP.Test.run", select));
    dbfaults::failStatement(1, SQLITE_IOERR);
    EXPECT_FALSE(databaseWork("CLP.Test.run", select));
    EXPECT_TRUE(logged("CLP.Test.run dbstatement.h:"));
    EXPECT_TRUE(logged("catch cdbc exception=[disk I/O error: " + directory.file("clp.db3") + "]"));
    const auto other = [] { throw std::runtime_error("other"); };
    EXPECT_FALSE(databaseWork("CLP.Test.run", other));
    EXPECT_TRUE(logged("catch an unknown error!"));
    EXPECT_FALSE(databaseWork("CLP.Test.run", other, "catch an unknow error!"));
    EXPECT_TRUE(logged("catch an unknow error!"));
}

TEST_F(ScopedStatement, GivesItsHandleBackWhenItsThreadEndsInTheMiddle) {
    std::thread ending([&] {
        databaseWork("CLP.Test.run", [&] {
            DbStatement statement("CLP.Test.run", url);
            statement.query("SELECT * FROM addrsvc_seq");
            pthread_exit(nullptr);
        });
    });
    ending.join();
    EXPECT_FALSE(logged("catch an unknown error!"));
    EXPECT_EQ(0, DbStatement("CLP.Test.run", url)
                     .update("INSERT INTO addrsvc_seq(ufip,next) VALUES('/','1')"));
}

} // namespace
