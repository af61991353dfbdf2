// The session database, which command line sessions and the providers of their classes share: rows
// in, rows out, and instances of the repository that mirror rows.
#pragma once

#include "simulator/provider.h"

#include <atomic>
#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace velclp_sim {

/// SQL on one database file. Any thread may use it. Failures are thrown as CIM_ERR_FAILED with the
/// database's words.
class SessionDatabase {
public:
    using Row = std::map<std::string, std::string>;

    /// `path` as Services has it; empty means that there is no database.
    explicit SessionDatabase(const std::string& path);

    bool exists() const { return !url_.empty(); }

    /// The rows of a query, with the columns that are named; NULL reads as an empty text.
    std::vector<Row> select(const std::string& sql, const std::vector<std::string>& columns) const;
    /// Runs a statement and gives the number of rows that it changed.
    int change(const std::string& sql) const;
    /// Runs an INSERT and gives the row's id.
    std::int64_t insert(const std::string& sql) const;

    /// The text as an SQL literal.
    static std::string literal(const std::string& text);

private:
    std::string url_;
};

/// True when the process lives on this machine.
bool processLives(const std::string& pid);

/// Instances that stand for rows: each is tied to its owner, and one key is a
/// prefix and the row's id. Any thread may use it; of two threads that read the same row at
/// different times, the one that began to read later has the last word.
class RowMirror {
public:
    struct Shape {
        std::string className;
        /// The key that holds prefix and id.
        std::string keyName;
        std::string keyPrefix;
        std::string ownerClass;
        std::string association;
        /// The association's reference to the owner, and the one to the instance.
        std::string ownerRole;
        std::string ownedRole;
        /// Fills what the key does not say.
        void (*fill)(Instance& instance, const SessionDatabase::Row& row);
    };

    RowMirror(Services& services, Shape shape);

    /// Take one before the rows are read.
    std::uint64_t ticket() { return ++lastTicket_; }
    /// Adds the row's instance, or brings it up to date, and gives its path.
    ObjectPath show(std::uint64_t ticket, std::int64_t id, const SessionDatabase::Row& row);
    void drop(std::int64_t id);
    std::vector<std::int64_t> ids() const;

    /// The id in the path's key; 0 when it holds none.
    std::int64_t idOf(const ObjectPath& path) const;

private:
    struct Entry {
        ObjectPath path;
        SessionDatabase::Row row;
        std::uint64_t ticket = 0;
    };

    Instance draw(std::int64_t id, const SessionDatabase::Row& row, const ObjectPath& owner) const;
    ObjectPath add(std::uint64_t ticket, std::int64_t id, const SessionDatabase::Row& row);
    void update(std::uint64_t ticket, std::int64_t id, const SessionDatabase::Row& row,
                const ObjectPath& path);

    Services& services_;
    const Shape shape_;
    std::atomic<std::uint64_t> lastTicket_{0};
    mutable std::mutex mutex_;
    std::map<std::int64_t, Entry> entries_;
};

} // namespace velclp_sim
