// The database layer on real files: values, reuse of handles and statements, failures, processes.
#include "database/cdbc.h"
#include "database/create.h"
#include "database/faults.h"
#include "tests/support/run_directory.h"

#include <chrono>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <sqlite3.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace {

struct CloseIt {
    template<typename T>
    void operator()(T* object) const {
        object->close();
    }
};
template<typename T>
using Closing = std::unique_ptr<T, CloseIt>;

Closing<DBConnection> connect(const std::string& url) {
    DBUrl parsed(url);
    return Closing<DBConnection>(DBDriver::getConnection(parsed));
}

int update(DBConnection& connection, const std::string& sql) {
    const Closing<DBStatement> statement(connection.createStatement());
    return statement->executeUpdate(sql);
}

Closing<DBResultSet> query(DBConnection& connection, const std::string& sql) {
    const Closing<DBStatement> statement(connection.createStatement());
    return Closing<DBResultSet>(statement->executeQuery(sql));
}

std::string failureOf(const std::function<void()>& work) {
    try {
        work();
    } catch (const CDBC_Exception& failure) {
        return failure.text();
    }
    return "no failure";
}

// Runs work in a forked process; true when it ended by returning true.
bool inChild(const std::function<bool()>& work) {
    const pid_t child = fork();
    if (child == 0) {
        bool fine = false;
        try {
            fine = work();
        } catch (const CDBC_Exception&) {
            fine = false;
        }
        _exit(fine ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

class DatabaseLayer : public testing::Test {
protected:
    void SetUp() override {
        update(*connect(url), "CREATE TABLE t(k TEXT PRIMARY KEY, n INTEGER, x, r REAL)");
    }
    void TearDown() override {
        dbfaults::clear();
        DBDriver::closeIdle();
    }

    RunDirectory directory;
    std::string url = directory.addressDatabase();
};

TEST_F(DatabaseLayer, ReadsValuesByColumnNameWhateverTheirCase) {
    const auto connection = connect(url);
    EXPECT_EQ(0, update(*connection, "INSERT INTO t VALUES('a','12','text',2.5)"));
    const auto rows = query(*connection, "SELECT k, n AS Number, x, r, max(n) FROM t");
    ASSERT_TRUE(rows->next());
    EXPECT_EQ("a", rows->getString("K"));
    EXPECT_EQ(12, rows->getInt("number"));
    EXPECT_EQ("12", rows->getString("Number"));
    EXPECT_EQ("text", rows->getString("x"));
    EXPECT_EQ(2.5, rows->getDouble("r"));
    EXPECT_EQ("2.5", rows->getString("r"));
    EXPECT_EQ(12, rows->getInt("max(n)"));
    EXPECT_FALSE(rows->next());
    EXPECT_FALSE(rows->next());
}

TEST_F(DatabaseLayer, ReadsNullAndTextThatIsNoNumberAsZeroAndEmpty) {
    const auto connection = connect(url);
    update(*connection, "INSERT INTO t VALUES('a',NULL,'word',NULL)");
    const auto rows = query(*connection, "SELECT * FROM t");
    ASSERT_TRUE(rows->next());
    EXPECT_EQ(0, rows->getInt("n"));
    EXPECT_EQ(0.0, rows->getDouble("n"));
    EXPECT_EQ("", rows->getString("n"));
    EXPECT_TRUE(rows->isNull("n"));
    EXPECT_EQ(0, rows->getInt("x"));
    EXPECT_EQ(0.0, rows->getDouble("x"));
}

TEST_F(DatabaseLayer, KeepsSixtyFourBitsInADoubleAndBoundsAnInt) {
    const auto connection = connect(url);
    update(*connection,
           "INSERT INTO t VALUES('a','1700000000123456','-99999999999 and more',-1e300)");
    const auto rows = query(*connection, "SELECT * FROM t");
    ASSERT_TRUE(rows->next());
    EXPECT_EQ(1700000000123456.0, rows->getDouble("n"));
    EXPECT_EQ(2147483647, rows->getInt("n"));
    EXPECT_EQ(-2147483647 - 1, rows->getInt("x"));
    EXPECT_EQ(-2147483647 - 1, rows->getInt("r"));
}

TEST_F(DatabaseLayer, RefusesColumnsAndRowsThatAreNotThere) {
    const auto connection = connect(url);
    update(*connection, "INSERT INTO t(k) VALUES('a')");
    const auto rows = query(*connection, "SELECT k FROM t");
    EXPECT_EQ("no current row", failureOf([&] { rows->getString("k"); }));
    ASSERT_TRUE(rows->next());
    EXPECT_EQ("no such column in the result: n", failureOf([&] { rows->getInt("n"); }));
    ASSERT_FALSE(rows->next());
    EXPECT_EQ("no current row", failureOf([&] { rows->getString("k"); }));
}

TEST_F(DatabaseLayer, GivesTheSameRowsWhetherOrNotAStatementWasSeenBefore) {
    const auto connection = connect(url);
    for (const std::string key : {"a", "b''c", "q", "%"})
        update(*connection, "INSERT INTO t(k,x) VALUES('" + key + "','v')");
    const auto count = [&](const std::string& condition) {
        const auto rows = query(*connection, "SELECT k FROM t WHERE " + condition);
        return rows->rowCount();
    };
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(1, count("k='a'"));
        EXPECT_EQ(1, count("k='b''c'"));
        EXPECT_EQ(0, count("k='absent'"));
        EXPECT_EQ(4, count("k='a' OR 'x'='x'"));
        EXPECT_EQ(1, count("k LIKE 'b%'"));
        EXPECT_EQ(1, count("k LIKE '!%' ESCAPE '!'"));
        EXPECT_EQ(1, count("k='a' -- and 'more"));
        EXPECT_EQ(1, count("\"k\"='q'"));
        EXPECT_EQ(4, count("x='v' AND k<'z'"));
    }
    const auto rows = query(*connection, "SELECT k, 'lit' FROM t WHERE k='a'");
    ASSERT_TRUE(rows->next());
    EXPECT_EQ("lit", rows->getString("'lit'"));
}

TEST_F(DatabaseLayer, StoresQuotedNumbersAsTheColumnSays) {
    const auto connection = connect(url);
    update(*connection, "INSERT INTO t(k,n,x) VALUES('007','007','007')");
    EXPECT_EQ("007|text|7|integer|007|text\n",
              directory.query("clp.db3", "SELECT k,typeof(k),n,typeof(n),x,typeof(x) FROM t"));
}

TEST_F(DatabaseLayer, CallsSuccessZeroAlsoWhenNoRowChanged) {
    const auto connection = connect(url);
    EXPECT_EQ(0, update(*connection, "UPDATE t SET n='1' WHERE k='nobody'"));
    const Closing<DBStatement> statement(connection->createStatement());
    EXPECT_EQ(0, statement->executeUpdate("INSERT INTO t(k) VALUES('a')"));
    EXPECT_EQ(1, statement->changedRows());
}

TEST_F(DatabaseLayer, ThrowsTheDatabasesWordsWithTheStatement) {
    const auto connection = connect(url);
    update(*connection, "INSERT INTO t(k) VALUES('a')");
    try {
        update(*connection, "INSERT INTO t(k) VALUES('a')");
        FAIL() << "a second row with the same key";
    } catch (const CDBC_Exception& failure) {
        EXPECT_STREQ("UNIQUE constraint failed: t.k", failure.text());
        EXPECT_EQ(SQLITE_CONSTRAINT, failure.code());
        EXPECT_EQ(SQLITE_CONSTRAINT_PRIMARYKEY, failure.extendedCode());
        EXPECT_EQ("INSERT INTO t(k) VALUES('a')", failure.statement());
    }
    EXPECT_EQ("no such table: nowhere",
              failureOf([&] { query(*connection, "SELECT * FROM nowhere WHERE a='b'"); }));
    EXPECT_EQ("unrecognized token: \"'x''\"",
              failureOf([&] { update(*connection, "DELETE FROM t WHERE k='x''"); }));
    EXPECT_EQ("more than one statement",
              failureOf([&] { update(*connection, "DELETE FROM t;DELETE FROM t"); }));
    EXPECT_EQ("empty statement", failureOf([&] { update(*connection, " "); }));
    EXPECT_EQ("SQL text with a zero byte",
              failureOf([&] { update(*connection, std::string("DELETE FROM t\0 x", 16)); }));
    EXPECT_EQ("1\n", directory.query("clp.db3", "SELECT count(*) FROM t"));
}

TEST_F(DatabaseLayer, SaysWhatIsWrongWithADatabaseThatCannotBeOpened) {
    EXPECT_EQ("unable to open database file: " + directory.file("absent.db3"),
              failureOf([&] { connect("sqlite:" + directory.file("absent.db3")); }));
    EXPECT_FALSE(std::ifstream(directory.file("absent.db3")).is_open());
    directory.write("text.db3", std::string(4096, 'x'));
    EXPECT_EQ("file is not a database: " + directory.file("text.db3"),
              failureOf([&] { connect("sqlite:" + directory.file("text.db3")); }));
    EXPECT_EQ("no driver for database scheme: mysql", failureOf([&] { connect("mysql:/x"); }));
    EXPECT_EQ("no driver for database scheme: ", failureOf([&] { connect("/x"); }));
}

TEST_F(DatabaseLayer, LetsStatementsWriteWhileAResultIsRead) {
    const auto connection = connect(url);
    const auto other = connect(url);
    for (const char* key : {"a", "b", "c"})
        update(*connection, std::string("INSERT INTO t(k) VALUES('") + key + "')");
    const auto rows = query(*connection, "SELECT k FROM t");
    int seen = 0;
    while (rows->next()) {
        update(*other, "INSERT INTO t(k) VALUES('by other " + std::to_string(seen) + "')");
        EXPECT_EQ(0, update(*connection, "DELETE FROM t WHERE k='" + rows->getString("k") + "'"));
        ++seen;
    }
    EXPECT_EQ(3, seen);
    EXPECT_EQ("3\n", directory.query("clp.db3", "SELECT count(*) FROM t"));
}

TEST_F(DatabaseLayer, WaitsForAWriterAndThenSaysThatTheDatabaseIsLocked) {
    const auto writer = connect(url);
    const auto waiting = connect(url + "?timeout=50");
    writer->begin();
    update(*writer, "INSERT INTO t(k) VALUES('a')");
    EXPECT_EQ("database is locked: " + directory.file("clp.db3"),
              failureOf([&] { update(*waiting, "INSERT INTO t(k) VALUES('b')"); }));
    EXPECT_EQ(0, query(*waiting, "SELECT * FROM t")->rowCount());
    std::thread committing([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        writer->commit();
    });
    const auto patient = connect(url);
    EXPECT_EQ(0, update(*patient, "INSERT INTO t(k) VALUES('b')"));
    committing.join();
    EXPECT_EQ(2, query(*waiting, "SELECT * FROM t")->rowCount());
}

TEST_F(DatabaseLayer, UndoesATransactionThatWasNotCommitted) {
    {
        const auto connection = connect(url);
        {
            DBTransaction transaction(*connection);
            update(*connection, "INSERT INTO t(k) VALUES('dropped')");
        }
        DBTransaction transaction(*connection);
        update(*connection, "INSERT INTO t(k) VALUES('kept')");
        transaction.commit();
        connection->begin();
        update(*connection, "INSERT INTO t(k) VALUES('open when its connection closed')");
    }
    EXPECT_EQ("kept\n", directory.query("clp.db3", "SELECT k FROM t"));
}

TEST_F(DatabaseLayer, OpensTheFileAnewWhenItWasReplaced) {
    update(*connect(url), "INSERT INTO t(k) VALUES('in the old file')");
    for (const char* suffix : {"", "-wal", "-shm"})
        unlink((directory.file("clp.db3") + suffix).c_str());
    EXPECT_EQ("unable to open database file: " + directory.file("clp.db3"),
              failureOf([&] { connect(url); }));
    createDatabase(directory.file("clp.db3"), "CREATE TABLE t(k TEXT)");
    const auto connection = connect(url);
    EXPECT_EQ(0, query(*connection, "SELECT * FROM t")->rowCount());
}

TEST_F(DatabaseLayer, SeesColumnsThatWereAddedToATable) {
    const auto connection = connect(url);
    update(*connection, "INSERT INTO t(k) VALUES('a')");
    EXPECT_EQ(4, query(*connection, "SELECT * FROM t WHERE k='a'")->columnCount());
    directory.execute("clp.db3", "ALTER TABLE t ADD COLUMN late TEXT DEFAULT 'new'");
    const auto rows = query(*connection, "SELECT * FROM t WHERE k='a'");
    ASSERT_TRUE(rows->next());
    EXPECT_EQ("new", rows->getString("late"));
}

TEST_F(DatabaseLayer, KeepsManyDifferentStatementsApart) {
    const auto connection = connect(url);
    for (int i = 0; i < 300; ++i)
        update(*connection, "INSERT INTO t(k,n) VALUES('key" + std::to_string(i) + "'," +
                                std::to_string(i) + ")");
    for (int i = 299; i >= 0; --i) {
        const auto rows =
            query(*connection, "SELECT k FROM t WHERE n=" + std::to_string(i) + " AND k LIKE 'k%'");
        ASSERT_TRUE(rows->next());
        ASSERT_EQ("key" + std::to_string(i), rows->getString("k"));
    }
}

TEST_F(DatabaseLayer, GivesEachProcessHandlesOfItsOwn) {
    update(*connect(url), "INSERT INTO t(k) VALUES('before the fork')");
    EXPECT_TRUE(inChild([&] {
        const auto connection = connect(url);
        update(*connection, "INSERT INTO t(k) VALUES('by the child')");
        return query(*connection, "SELECT * FROM t")->rowCount() == 2;
    }));
    EXPECT_EQ(2, query(*connect(url), "SELECT * FROM t")->rowCount());
}

TEST_F(DatabaseLayer, RefusesInAChildWhatItsParentHadInUse) {
    auto connection = connect(url);
    EXPECT_TRUE(inChild([&] {
        const auto inherited = failureOf([&] { query(*connection, "SELECT * FROM t"); });
        const auto anew = failureOf([&] { connect(url); });
        connection.reset();
        return inherited == "the connection was opened by the parent process" &&
               anew == "the database was in use when this process was forked";
    }));
    EXPECT_EQ(0, update(*connection, "INSERT INTO t(k) VALUES('parent goes on')"));
}

TEST_F(DatabaseLayer, LetsManyProcessesAndThreadsWriteAtOnce) {
    constexpr int writers = 6;
    constexpr int each = 40;
    std::vector<pid_t> children;
    const auto work = [&](const std::string& name) {
        for (int i = 0; i < each; ++i) {
            const auto connection = connect(url);
            update(*connection, "INSERT INTO t(k) VALUES('" + name + std::to_string(i) + "')");
            query(*connection, "SELECT max(k) FROM t WHERE k='" + name + "'");
        }
    };
    for (int i = 0; i < writers; ++i) {
        const pid_t child = fork();
        if (child == 0) {
            std::thread beside([&] { work("thread" + std::to_string(i) + "."); });
            const auto failure = failureOf([&] { work("process" + std::to_string(i) + "."); });
            beside.join();
            _exit(failure == "no failure" ? 0 : 1);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_EQ(0, status);
    }
    EXPECT_EQ(std::to_string(2 * writers * each) + "\n",
              directory.query("clp.db3", "SELECT count(*) FROM t"));
}

TEST_F(DatabaseLayer, CostsNoFurtherOpenForAFurtherConnection) {
    const auto descriptors = [] {
        int count = 0;
        for (int i = 0; i < 256; ++i)
            count += fcntl(i, F_GETFD) >= 0 ? 1 : 0;
        return count;
    };
    connect(url).reset();
    const int before = descriptors();
    for (int i = 0; i < 20; ++i) {
        connect(url).reset();
        EXPECT_EQ(before, descriptors());
    }
    const auto first = connect(url);
    const auto second = connect(url);
    EXPECT_LT(before, descriptors());
}

TEST(DatabaseUrl, TakesApartSchemePathAndTimeout) {
    const DBUrl plain("sqlite:/tmp/clp.db3");
    EXPECT_EQ("sqlite", plain.scheme());
    EXPECT_EQ("/tmp/clp.db3", plain.path());
    EXPECT_EQ("", plain.option("timeout"));
    const DBUrl timed("sqlite:/a:b?c/x.db3?timeout=250");
    EXPECT_EQ("/a:b?c/x.db3", timed.path());
    EXPECT_EQ("250", timed.option("timeout"));
    EXPECT_EQ("/x?timeout=soon", DBUrl("sqlite:/x?timeout=soon").path());
}

} // namespace
