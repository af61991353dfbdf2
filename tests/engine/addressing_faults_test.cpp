// What can happen to the address database while a session works with it: statements that fail, a
// file that goes or is exchanged, another process that holds a lock or dies in the middle. Each
// line is answered, and when the trouble is over every object has the number that it had.
#include "tests/engine/address_session.h"
#include "tests/support/clp_session.h"
#include "velclp/core.h"
#include "velclp/transport.h"

#include "database/faults.h"
#include "provision.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <regex>
#include <set>
#include <sqlite3.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace velmora_clp {
namespace {

using std::chrono::milliseconds;

constexpr char CACHE[] = "clp.db3";
constexpr char UNKNOWN_TARGET[] = "show -display properties=name /admin1/system1/sp1";
constexpr milliseconds BUSY_TIME(400);

// A directory whose cache is looked at.
class CacheFixture : public testing::Test {
protected:
    void execute(const std::string& sql) const {
        m_directory.execute(CACHE, "PRAGMA synchronous=OFF; " + sql);
    }
    // Forgets all addresses, or those that begin with a text, with their counters.
    void forget(const std::string& below = "/") const {
        const std::string rows = " WHERE ufip<>'/' AND ufip LIKE '" + below + "%'";
        execute("BEGIN; DELETE FROM addrsvc_cim WHERE id IN (SELECT id FROM addrsvc_clp" + rows +
                "); DELETE FROM addrsvc_clp" + rows + "; DELETE FROM addrsvc_seq" + rows +
                "; COMMIT");
    }
    // Every cached object with its address.
    std::set<std::string> addresses() const {
        const auto lines = linesOf(m_directory.query(
            CACHE, "SELECT c.ufip,c.cimclass,c.ns,(SELECT group_concat(k.name||'='||k.value) FROM "
                   "addrsvc_cim k WHERE k.id=c.id) FROM addrsvc_clp c"));
        return {lines.begin(), lines.end()};
    }
    void expectSound() const { expectSoundCache(m_directory); }

    RunDirectory m_directory;
};

// A session in this process.
class CacheFaults : public CacheFixture {
protected:
    CacheFaults() {
        Locations locations = m_directory.locations();
        locations.addressDatabase += "?timeout=" + std::to_string(BUSY_TIME.count());
        Locations::set(locations);
        setenv("USER", "admin", 1);
        setenv("privileges", "511", 1);
        m_core = std::make_unique<CLPCore>("localhost", m_simulator.port(), m_transport);
    }
    ~CacheFaults() override { dbfaults::clear(); }

    // The bytes that the line is answered with, but for the number of the job.
    std::string answer(const std::string& line) {
        testing::internal::CaptureStdout();
        EXPECT_EQ(0, m_core->run(line)) << line;
        m_transport.flush();
        const std::string bytes = testing::internal::GetCapturedStdout();
        EXPECT_EQ("\r\n", bytes.substr(std::max<std::size_t>(bytes.size(), 2) - 2)) << line;
        return std::regex_replace(bytes, std::regex("job_id=[0-9]+"), "job_id=n");
    }

    SimulatorProcess m_simulator{m_directory, {"--speed", "1000"}};
    Transport m_transport{"std", -1};
    std::unique_ptr<CLPCore> m_core;
};

// ---- Statements that fail ----

struct FaultyLine {
    const char* name;
    const char* line;
    const char* forgotten; // what the cache does not know before the line, may be empty
    const char* before;    // makes what the line uses up
    const char* after;     // puts things back
};

constexpr char USERS[] = "/admin1/system1/sp1/user";

constexpr FaultyLine LINES[] = {
    {"show_unknown", UNKNOWN_TARGET, "/admin1/system", "", ""},
    {"show_known", "show -display properties,targets /admin1/system1/log1", "", "", ""},
    {"show_anew", "show -o format=keyword /admin1/system1/oemvelmora_fan9", "", "", ""},
    {"set", "set -o format=keyword /admin1 elementname=Rack", "", "", ""},
    {"set_association",
     "set -o format=keyword /admin1/system1/sp1/ethport1/ipendpt1=>elementsettingdata=>"
     "/admin1/system1/sp1/ethport1/ipendpt1/ipsettings1 iscurrent=1",
     "", "", ""},
    {"create", "create -o format=keyword /admin1/system1/sp1/user50 userid=mary", USERS, "",
     "delete /admin1/system1/sp1/user*"},
    {"delete", "delete -o format=keyword /admin1/system1/sp1/user50", USERS,
     "create /admin1/system1/sp1/user50 userid=tom", "delete /admin1/system1/sp1/user*"},
    {"cd", "cd -o format=keyword /admin1/system1", "", "", "cd /admin1"},
    {"help", "help /admin1/system1/sp1", "", "", ""},
    {"examine", "show -examine /admin1/system1", "", "", ""},
};

class FailingStatement : public CacheFaults, public testing::WithParamInterface<FaultyLine> {
protected:
    // The line's answer with a failing n-th statement.
    std::string answerAt(int n) {
        const FaultyLine& test = GetParam();
        if (test.forgotten[0] != '\0')
            forget(test.forgotten);
        if (test.before[0] != '\0')
            answer(test.before);
        dbfaults::failStatement(n, n % 2 == 0 ? SQLITE_FULL : SQLITE_IOERR);
        const std::string bytes = answer(test.line);
        m_failed = dbfaults::happened() > 0;
        dbfaults::clear();
        return bytes;
    }
    void putBack() {
        if (GetParam().after[0] != '\0')
            answer(GetParam().after);
    }

    bool m_failed = false;
};

TEST_P(FailingStatement, IsAnsweredAndCostsNoNumber) {
    answerAt(1000000);
    putBack();
    const std::string usual = answerAt(1000000);
    const std::set<std::string> known = addresses();
    int n = 0;
    do {
        SCOPED_TRACE("statement " + std::to_string(++n));
        putBack();
        answerAt(n);
        expectSound();
        const bool failed = m_failed;
        if (GetParam().after[0] == '\0') {
            EXPECT_EQ(usual, answer(GetParam().line));
            EXPECT_EQ(known, addresses());
        } else {
            putBack();
            EXPECT_EQ(usual, answerAt(1000000));
        }
        m_failed = failed;
    } while (m_failed && !HasFailure());
    EXPECT_LT(4, n);
}

INSTANTIATE_TEST_SUITE_P(Of, FailingStatement, testing::ValuesIn(LINES),
                         [](const auto& test) { return std::string(test.param.name); });

// ---- Files that go or change ----

class CacheFile : public CacheFaults {
protected:
    void removeFiles(std::initializer_list<const char*> suffixes) const {
        for (const char* suffix : suffixes)
            unlink((m_directory.file(CACHE) + suffix).c_str());
    }
};

TEST_F(CacheFile, OfAnotherSessionThatIsMadeAnewHoldsNothingOfTheOld) {
    // Changes of this session stand in the log beside the database, and it has both open.
    const std::string usual = answer(UNKNOWN_TARGET);
    execute("INSERT INTO addrsvc_seq VALUES('/old',7)");
    answer(UNKNOWN_TARGET);
    removeFiles({""});
    SessionOptions provision;
    provision.arguments = {"--provision", m_directory.path()};
    EXPECT_EQ(0, runSession(m_directory, m_simulator.port(), "", provision).status);
    const SessionResult other =
        runSession(m_directory, m_simulator.port(), UNKNOWN_TARGET + std::string("\nexit\n"));
    EXPECT_EQ(usual, other.output.substr(0, usual.size()));
    EXPECT_EQ("", m_directory.query(CACHE, "SELECT * FROM addrsvc_seq WHERE ufip='/old'"));
    EXPECT_EQ(usual, answer(UNKNOWN_TARGET));
    expectSound();
}

TEST_F(CacheFile, ThatIsExchangedIsTakenUpByTheNextLine) {
    const std::string usual = answer(UNKNOWN_TARGET);
    const std::string backup = m_directory.file("backup");
    execute("VACUUM INTO '" + backup + "'");
    const std::set<std::string> known = addresses();
    // A file that is no database.
    m_directory.write(CACHE, std::string(70000, 'x'));
    answer(UNKNOWN_TARGET);
    removeFiles({"", "-wal", "-shm"});
    m_directory.write(CACHE, std::string(70000, 'x'));
    EXPECT_NE(usual, answer(UNKNOWN_TARGET));
    // A database without tables.
    removeFiles({"", "-wal", "-shm"});
    m_directory.write(CACHE, "");
    EXPECT_NE(usual, answer(UNKNOWN_TARGET));
    // None.
    removeFiles({"", "-wal", "-shm"});
    EXPECT_NE(usual, answer(UNKNOWN_TARGET));
    host::provision(m_directory.path());
    EXPECT_EQ(usual, answer(UNKNOWN_TARGET));
    removeFiles({"-wal", "-shm"});
    std::filesystem::rename(backup, m_directory.file(CACHE));
    EXPECT_EQ(usual, answer(UNKNOWN_TARGET));
    EXPECT_EQ(known, addresses());
    expectSound();
}

TEST_F(CacheFile, OfTheSchemaHoldsForTheSessionsThatStartThen) {
    const std::string usual = answer(UNKNOWN_TARGET);
    const std::string schema = m_directory.read("schema.conf");
    const auto replace = [&](const std::string& content) {
        m_directory.write("schema.new", content);
        std::filesystem::rename(m_directory.file("schema.new"), m_directory.file("schema.conf"));
    };
    const auto another = [&] {
        return runSession(m_directory, m_simulator.port(), UNKNOWN_TARGET + std::string("\n"));
    };
    replace("[ZORM_AdminDomain]\n");
    EXPECT_EQ(128 + SIGABRT, another().status);
    EXPECT_EQ(usual, answer(UNKNOWN_TARGET));
    replace(schema);
    EXPECT_EQ(usual, answer(UNKNOWN_TARGET));
    EXPECT_EQ(usual, another().output.substr(0, usual.size()));
    expectSound();
}

// ---- Locks of others ----

class CacheLock : public CacheFaults {
protected:
    // How long the work takes.
    static milliseconds timeOf(const std::function<void()>& work) {
        const auto begin = std::chrono::steady_clock::now();
        work();
        return std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - begin);
    }
};

TEST_F(CacheLock, OfAWriterIsWaitedForAsLongAsAStatementMayAndCostsTheLineOnly) {
    const std::string usual = answer(UNKNOWN_TARGET);
    const std::set<std::string> known = addresses();
    sqlite3* writer = nullptr;
    ASSERT_EQ(SQLITE_OK, sqlite3_open(m_directory.file(CACHE).c_str(), &writer));
    const auto run = [&](const char* sql) {
        ASSERT_EQ(SQLITE_OK, sqlite3_exec(writer, sql, nullptr, nullptr, nullptr)) << sql;
    };
    // What is known needs no write.
    run("BEGIN IMMEDIATE");
    EXPECT_GT(BUSY_TIME, timeOf([&] { EXPECT_EQ(usual, answer(UNKNOWN_TARGET)); }));
    run("ROLLBACK");
    // What is not known waits for each write that it tries, and then does without.
    forget("/admin1/system");
    run("BEGIN IMMEDIATE");
    EXPECT_LT(BUSY_TIME / 2, timeOf([&] { EXPECT_NE(usual, answer(UNKNOWN_TARGET)); }));
    run("ROLLBACK");
    EXPECT_EQ(usual, answer(UNKNOWN_TARGET));
    EXPECT_EQ(known, addresses());
    // A writer that ends in time is not noticed.
    forget("/admin1/system");
    run("BEGIN IMMEDIATE");
    std::thread holder([&] {
        std::this_thread::sleep_for(BUSY_TIME / 2);
        run("ROLLBACK");
    });
    EXPECT_EQ(usual, answer(UNKNOWN_TARGET));
    holder.join();
    sqlite3_close(writer);
    EXPECT_EQ(known, addresses());
    expectSound();
}

// ---- Processes that die ----

class CacheDeath : public CacheFixture {
protected:
    CacheDeath() { m_directory.use(); }

    // Addresses all that there is, in a process of its own; killed behind a time unless that is 0.
    void walk(milliseconds life = milliseconds(0)) const {
        const pid_t child = fork();
        if (child == 0) {
            AddressSession(m_simulator).walk();
            _exit(0);
        }
        if (life.count() > 0) {
            std::this_thread::sleep_for(life);
            kill(child, SIGKILL);
        }
        int status = 0;
        ASSERT_EQ(child, waitpid(child, &status, 0));
        if (life.count() == 0) {
            EXPECT_EQ(0, status);
        }
    }

    SimulatorProcess m_simulator{m_directory, {"--speed", "1000"}};
};

TEST_F(CacheDeath, InTheMiddleOfARefreshLeavesNoHalfOfIt) {
    const auto begin = std::chrono::steady_clock::now();
    walk();
    const auto whole =
        std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - begin);
    const std::set<std::string> all = addresses();
    ASSERT_LT(60U, all.size());
    std::mt19937 random(7);
    int halves = 0;
    // On a busy machine more deaths than usual come too early or too late.
    for (int round = 0; round < 5 || (halves < 3 && round < 15); ++round) {
        SCOPED_TRACE(round);
        forget();
        for (int death = 0; death < 4; ++death) {
            const std::set<std::string> before = addresses();
            walk(milliseconds(1 + random() % static_cast<unsigned>(whole.count() / 2)));
            expectSound();
            const std::set<std::string> known = addresses();
            EXPECT_TRUE(std::includes(known.begin(), known.end(), before.begin(), before.end()));
            halves += !known.empty() && known.size() < all.size() ? 1 : 0;
        }
        const std::set<std::string> before = addresses();
        m_simulator.post("/sim/model?do=reorder&class=ZORM_Fan", "reverse");
        m_simulator.post("/sim/model?do=reorder&class=ZORM_ComputerSystem", "reverse");
        walk();
        expectSound();
        const std::set<std::string> known = addresses();
        EXPECT_TRUE(std::includes(known.begin(), known.end(), before.begin(), before.end()));
        EXPECT_EQ(all.size(), known.size());
    }
    EXPECT_LT(2, halves);
}

} // namespace
} // namespace velmora_clp
