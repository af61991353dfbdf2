#include "database/handle.h"

#include "database/failure.h"
#include "database/faultpoint.h"
#include "database/literals.h"

#include <algorithm>
#include <atomic>
#include <cctype>
#include <cstdlib>
#include <sqlite3.h>
#include <sys/stat.h>

namespace database {

namespace {

constexpr std::size_t mostPrepared = 64;

std::atomic<int> generation{0};

// What makes a handle useless for those who come after.
bool lasts(int code) {
    switch (code & 0xff) {
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_IOERR:
    case SQLITE_READONLY:
    case SQLITE_CANTOPEN:
    case SQLITE_NOMEM:
    case SQLITE_MISUSE:
        return true;
    default:
        return false;
    }
}

ColumnNames namesOf(sqlite3_stmt* statement) {
    ColumnNames names;
    for (int i = 0; i < sqlite3_column_count(statement); ++i) {
        const char* name = sqlite3_column_name(statement, i);
        names.emplace_back(name != nullptr ? name : "");
    }
    return names;
}

bool isBlank(const char* text) {
    while (std::isspace(static_cast<unsigned char>(*text)) != 0 || *text == ';')
        ++text;
    return *text == '\0';
}

void bindAll(sqlite3_stmt* statement, const std::vector<Literal>& values) {
    int index = 0;
    for (const Literal& value : values) {
        ++index;
        if (value.isNumber)
            sqlite3_bind_int64(statement, index, std::strtoll(value.text.c_str(), nullptr, 10));
        else
            sqlite3_bind_text(statement, index, value.text.data(),
                              static_cast<int>(value.text.size()), SQLITE_STATIC);
    }
}

// Pages are allocated as they are read. By default each handle takes twenty at once, more than
// most of them ever read. A host that has used SQLite before has its own way.
void allocatePagesSingly() {
    static const int result = sqlite3_config(SQLITE_CONFIG_PAGECACHE, nullptr, 0, 0);
    static_cast<void>(result);
}

} // namespace

bool identityOf(const std::string& path, FileIdentity& identity) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0)
        return false;
    identity = {status.st_dev, status.st_ino};
    return true;
}

int forkGeneration() {
    return generation.load(std::memory_order_relaxed);
}

void countFork() {
    generation.fetch_add(1, std::memory_order_relaxed);
}

Handle::Handle(const std::string& path, int timeoutMilliseconds)
    : m_path(path), m_generation(forkGeneration()) {
    // The identity is taken first: a file that is replaced meanwhile is then found out later.
    if (!identityOf(path, m_identity))
        fail(nullptr, SQLITE_CANTOPEN, "", path);
    allocatePagesSingly();
    const int result =
        sqlite3_open_v2(path.c_str(), &m_db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    try {
        if (result != SQLITE_OK)
            fail(m_db, result, "", path);
        setTimeout(timeoutMilliseconds);
        configure();
    } catch (...) {
        sqlite3_close(m_db);
        throw;
    }
}

Handle::~Handle() {
    // What a parent process has open, locks and all, is not ours to close.
    if (m_generation != forkGeneration())
        return;
    for (const Prepared& prepared : m_cache)
        sqlite3_finalize(prepared.statement);
    sqlite3_close(m_db);
}

void Handle::configure() {
    sqlite3_extended_result_codes(m_db, 1);
    // The log's files stay, since whoever comes next may not be allowed to make files beside the
    // database; but empty, or the next to open it would have to read the log again. While the
    // database is open the log is written over from its beginning: cutting it off each time would
    // cost its blocks anew. The limit holds the number of pages after which that happens.
    int persist = 1;
    sqlite3_file_control(m_db, nullptr, SQLITE_FCNTL_PERSIST_WAL, &persist);
    // A small page cache and a small pool: the system's own cache stands behind it, and each of a
    // process's handles has both.
    sqlite3_db_config(m_db, SQLITE_DBCONFIG_LOOKASIDE, nullptr, 256, 32);
    for (const char* pragma :
         {"PRAGMA synchronous=NORMAL", "PRAGMA journal_mode=WAL", "PRAGMA wal_autocheckpoint=2000",
          "PRAGMA journal_size_limit=8388608", "PRAGMA cache_size=-512"}) {
        const int result = sqlite3_exec(m_db, pragma, nullptr, nullptr, nullptr);
        if (result != SQLITE_OK)
            fail(m_db, result, pragma, m_path);
    }
}

void Handle::setTimeout(int milliseconds) {
    if (milliseconds == m_timeout)
        return;
    m_timeout = milliseconds;
    sqlite3_busy_timeout(m_db, milliseconds);
}

bool Handle::isSound() const {
    return !m_broken && m_generation == forkGeneration() && !inTransaction();
}

bool Handle::isGood() const {
    FileIdentity now;
    return isSound() && identityOf(m_path, now) && now == m_identity;
}

Rows Handle::run(const std::string& sql) {
    if (m_generation != forkGeneration())
        fail("the connection was opened by the parent process", SQLITE_MISUSE, sql);
    if (const int planted = dbfaults::statementFault())
        fail(nullptr, planted, sql, m_path);
    if (sql.find('\0') != std::string::npos)
        fail("SQL text with a zero byte", SQLITE_MISUSE, sql);
    LiftedSql lifted;
    if (liftLiterals(sql, lifted)) {
        Prepared* prepared = find(lifted.text);
        if (prepared != nullptr && prepared->namesHold) {
            bindAll(prepared->statement, lifted.values);
            return step(*prepared, sql);
        }
    }
    return step(preparedOrFail(sql), sql);
}

Handle::Prepared* Handle::find(const std::string& sql) {
    const auto known = m_byText.find(sql);
    if (known == m_byText.end())
        return prepare(sql);
    m_cache.splice(m_cache.begin(), m_cache, known->second);
    return &m_cache.front();
}

// Null when SQLite refuses the text.
Handle::Prepared* Handle::prepare(const std::string& sql) {
    sqlite3_stmt* statement = nullptr;
    const char* rest = nullptr;
    const int result = sqlite3_prepare_v3(m_db, sql.c_str(), static_cast<int>(sql.size()) + 1,
                                          SQLITE_PREPARE_PERSISTENT, &statement, &rest);
    if (result != SQLITE_OK || statement == nullptr)
        return nullptr;
    if (!isBlank(rest)) {
        sqlite3_finalize(statement);
        fail("more than one statement", SQLITE_ERROR, sql);
    }
    return &remember(sql, statement);
}

Handle::Prepared& Handle::preparedOrFail(const std::string& sql) {
    Prepared* prepared = find(sql);
    if (prepared != nullptr)
        return *prepared;
    const int code = sqlite3_errcode(m_db);
    if (code == SQLITE_OK)
        fail("empty statement", SQLITE_ERROR, sql);
    failed(code, sql);
}

Handle::Prepared& Handle::remember(const std::string& sql, sqlite3_stmt* statement) {
    if (m_cache.size() >= mostPrepared) {
        m_byText.erase(m_cache.back().sql);
        sqlite3_finalize(m_cache.back().statement);
        m_cache.pop_back();
    }
    auto names = std::make_shared<ColumnNames>(namesOf(statement));
    const bool namesHold = std::none_of(names->begin(), names->end(), [](const auto& name) {
        return name.find('?') != std::string::npos;
    });
    m_cache.push_front({sql, statement, std::move(names), namesHold});
    m_byText.emplace(m_cache.front().sql, m_cache.begin());
    return m_cache.front();
}

Rows Handle::step(Prepared& prepared, const std::string& sql) {
    // Ends the statement's read or write and forgets the bound texts, which are the caller's.
    struct Reset {
        sqlite3_stmt* statement;
        ~Reset() {
            sqlite3_reset(statement);
            sqlite3_clear_bindings(statement);
        }
    };
    const Reset reset{prepared.statement};
    Rows rows;
    int result = SQLITE_OK;
    while ((result = sqlite3_step(prepared.statement)) == SQLITE_ROW)
        rows.append(prepared.statement);
    if (result != SQLITE_DONE)
        failed(result, sql);
    // A table that was changed meanwhile gives a remembered statement other columns.
    if (sqlite3_stmt_status(prepared.statement, SQLITE_STMTSTATUS_REPREPARE, 1) > 0)
        prepared.columns = std::make_shared<ColumnNames>(namesOf(prepared.statement));
    rows.columns = prepared.columns;
    return rows;
}

void Handle::failed(int code, const std::string& sql) {
    m_broken = m_broken || lasts(code);
    fail(m_db, code, sql, m_path);
}

int Handle::changedRows() const {
    return sqlite3_changes(m_db);
}

std::int64_t Handle::lastInsertId() const {
    return sqlite3_last_insert_rowid(m_db);
}

bool Handle::inTransaction() const {
    return sqlite3_get_autocommit(m_db) == 0;
}

} // namespace database
