#include "simulator/providers/session_database.h"

#include "simulator/providers/toolkit.h"

#include "database/cdbc.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <memory>

namespace velclp_sim {

namespace {

constexpr const char* nameSpace = "root/zorm";

struct Closer {
    template<class T>
    void operator()(T* object) const {
        object->close();
    }
};
template<class T>
using Handle = std::unique_ptr<T, Closer>;

/// A statement on a connection of its own, for the time of a scope.
struct Access {
    explicit Access(const std::string& url) {
        DBUrl parsed(url);
        connection.reset(DBDriver::getConnection(parsed));
        statement.reset(connection->createStatement());
    }
    Handle<DBConnection> connection;
    Handle<DBStatement> statement;
};

/// Runs the work, with the database's failures as CIM errors.
template<class Work>
auto guarded(Work work) {
    try {
        return work();
    } catch (const CDBC_Exception& failure) {
        throw CimError(CimStatus::failed, std::string("session database: ") + failure.text());
    }
}

bool isKnownAlready(const CimError& error) {
    return error.code() == static_cast<int>(CimStatus::alreadyExists);
}

} // namespace

SessionDatabase::SessionDatabase(const std::string& path)
    : url_(path.empty() ? path : "sqlite:" + path) {}

std::vector<SessionDatabase::Row>
SessionDatabase::select(const std::string& sql, const std::vector<std::string>& columns) const {
    return guarded([&] {
        const Access access(url_);
        const Handle<DBResultSet> result(access.statement->executeQuery(sql));
        std::vector<Row> rows;
        while (result->next()) {
            Row row;
            for (const std::string& column : columns) {
                row[column] = result->getString(column);
            }
            rows.push_back(std::move(row));
        }
        return rows;
    });
}

int SessionDatabase::change(const std::string& sql) const {
    return guarded([&] {
        const Access access(url_);
        access.statement->executeUpdate(sql);
        return access.statement->changedRows();
    });
}

std::int64_t SessionDatabase::insert(const std::string& sql) const {
    return guarded([&] {
        const Access access(url_);
        access.statement->executeUpdate(sql);
        return access.connection->lastInsertId();
    });
}

std::string SessionDatabase::literal(const std::string& text) {
    std::string quoted = "'";
    for (const char c : text) {
        quoted.append(c == '\'' ? 2 : 1, c);
    }
    return quoted + "'";
}

bool processLives(const std::string& pid) {
    const long number = std::strtol(pid.c_str(), nullptr, 10);
    return number > 0 && (kill(static_cast<pid_t>(number), 0) == 0 || errno != ESRCH);
}

RowMirror::RowMirror(Services& services, Shape shape)
    : services_(services), shape_(std::move(shape)) {}

Instance RowMirror::draw(std::int64_t id, const SessionDatabase::Row& row,
                         const ObjectPath& owner) const {
    Instance instance(services_.repository.requireClass(nameSpace, shape_.className));
    instance.set(shape_.keyName, shape_.keyPrefix + std::to_string(id));
    if (instance.cls().property("SystemName")) {
        ownBy(owner, instance);
    }
    shape_.fill(instance, row);
    return instance;
}

ObjectPath RowMirror::show(std::uint64_t ticket, std::int64_t id, const SessionDatabase::Row& row) {
    std::optional<ObjectPath> path;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        const auto found = entries_.find(id);
        if (found != entries_.end()) {
            path = found->second.path;
            if (found->second.row == row) {
                found->second.ticket = std::max(found->second.ticket, ticket);
                return *path;
            }
        }
    }
    if (!path) {
        return add(ticket, id, row);
    }
    update(ticket, id, row, *path);
    return *path;
}

ObjectPath RowMirror::add(std::uint64_t ticket, std::int64_t id, const SessionDatabase::Row& row) {
    const ObjectPath owner = ownerOf(services_.repository, nameSpace, shape_.ownerClass);
    Instance instance = draw(id, row, owner);
    ObjectPath path = services_.repository.canonical(instance.path());
    // Another thread may have met the same row; whoever comes second finds things done.
    try {
        services_.repository.add(std::move(instance));
    } catch (const CimError& error) {
        if (!isKnownAlready(error)) {
            throw;
        }
    }
    try {
        join(services_.repository, shape_.association, {shape_.ownerRole, owner},
             {shape_.ownedRole, path});
    } catch (const CimError& error) {
        if (!isKnownAlready(error)) {
            throw;
        }
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    entries_.try_emplace(id, Entry{path, row, ticket});
    return path;
}

void RowMirror::update(std::uint64_t ticket, std::int64_t id, const SessionDatabase::Row& row,
                       const ObjectPath& path) {
    const Instance drawn =
        draw(id, row, ownerOf(services_.repository, nameSpace, shape_.ownerClass));
    try {
        services_.repository.update(path, [&](Instance& instance) {
            const std::lock_guard<std::mutex> lock(mutex_);
            const auto found = entries_.find(id);
            if (found == entries_.end() || found->second.ticket > ticket) {
                return;
            }
            found->second.row = row;
            found->second.ticket = ticket;
            instance = drawn;
        });
    } catch (const CimError&) {
        const std::lock_guard<std::mutex> lock(mutex_);
        entries_.erase(id);
    }
}

void RowMirror::drop(std::int64_t id) {
    std::optional<ObjectPath> path;
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        const auto found = entries_.find(id);
        if (found == entries_.end()) {
            return;
        }
        path = found->second.path;
        entries_.erase(found);
    }
    services_.repository.remove(*path);
}

std::vector<std::int64_t> RowMirror::ids() const {
    const std::lock_guard<std::mutex> lock(mutex_);
    std::vector<std::int64_t> all;
    all.reserve(entries_.size());
    for (const auto& [id, entry] : entries_) {
        all.push_back(id);
    }
    return all;
}

std::int64_t RowMirror::idOf(const ObjectPath& path) const {
    const std::string& key = path.key(shape_.keyName).toString();
    if (key.compare(0, shape_.keyPrefix.size(), shape_.keyPrefix) != 0) {
        return 0;
    }
    return std::strtoll(key.c_str() + shape_.keyPrefix.size(), nullptr, 10);
}

} // namespace velclp_sim
