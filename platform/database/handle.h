// One open SQLite database with its prepared statements. Used by one thread at a time.
#ifndef VELCLP_PLATFORM_DATABASE_HANDLE_H
#define VELCLP_PLATFORM_DATABASE_HANDLE_H

#include "database/rows.h"

#include <list>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <unordered_map>
#include <utility>

struct sqlite3;
struct sqlite3_stmt;

namespace database {

// Device and inode: which file a path stands for.
using FileIdentity = std::pair<dev_t, ino_t>;

// False when there is no such file.
bool identityOf(const std::string& path, FileIdentity& identity);

// How often this process is a fork of a fork; a handle works only in the process that opened it.
int forkGeneration();
void countFork();

class Handle {
public:
    // Opens an existing file. Throws CDBC_Exception.
    Handle(const std::string& path, int timeoutMilliseconds);
    ~Handle();
    Handle(const Handle&) = delete;
    Handle& operator=(const Handle&) = delete;

    const std::string& path() const { return m_path; }
    const FileIdentity& identity() const { return m_identity; }
    void setTimeout(int milliseconds);

    // Whether it may be kept for further connections: neither has it failed in a way that lasts,
    // nor was it opened by a parent process.
    bool isSound() const;
    // Whether it may serve one now: sound, and its file neither deleted nor replaced.
    bool isGood() const;

    // Runs one statement and gives its rows. Throws CDBC_Exception.
    Rows run(const std::string& sql);

    int changedRows() const;
    std::int64_t lastInsertId() const;
    bool inTransaction() const;

private:
    struct Prepared {
        std::string sql;
        sqlite3_stmt* statement;
        std::shared_ptr<const ColumnNames> columns;
        // Whether no column is named after a lifted literal.
        bool namesHold;
    };
    using Cache = std::list<Prepared>;

    void configure();
    Prepared* find(const std::string& sql);
    Prepared* prepare(const std::string& sql);
    Prepared& preparedOrFail(const std::string& sql);
    Prepared& remember(const std::string& sql, sqlite3_stmt* statement);
    Rows step(Prepared& prepared, const std::string& sql);
    [[noreturn]] void failed(int code, const std::string& sql);

    std::string m_path;
    FileIdentity m_identity;
    int m_timeout = -1;
    int m_generation;
    bool m_broken = false;
    sqlite3* m_db = nullptr;
    // The most recently used statement first.
    Cache m_cache;
    std::unordered_map<std::string_view, Cache::iterator> m_byText;
};

} // namespace database

#endif
