#include "database/connection.h"

#include "database/failure.h"
#include "database/resultset.h"

#include <cstdlib>
#include <sqlite3.h>

namespace database {

namespace {

constexpr int usualTimeout = 10000;

int timeoutOf(const DBUrl& url) {
    const std::string option = url.option("timeout");
    return option.empty() ? usualTimeout : std::atoi(option.c_str());
}

} // namespace

DBResultSet* Statement::executeQuery(const std::string& sql) {
    return new ResultSet(m_handle->run(sql));
}

int Statement::executeUpdate(const std::string& sql) {
    m_handle->run(sql);
    m_changedRows = m_handle->changedRows();
    return 0;
}

int Statement::changedRows() {
    return m_changedRows;
}

void Statement::close() {
    delete this;
}

DBStatement* Connection::createStatement() {
    return new Statement(m_handle);
}

// A transaction that begins as a reader and writes later can find that another process wrote in
// between, which no waiting cures; so it takes the write lock at once.
void Connection::begin() {
    m_handle->run("BEGIN IMMEDIATE");
}

void Connection::commit() {
    m_handle->run("COMMIT");
}

void Connection::rollback() {
    if (m_handle->inTransaction())
        m_handle->run("ROLLBACK");
}

std::int64_t Connection::lastInsertId() {
    return m_handle->lastInsertId();
}

bool Connection::inTransaction() {
    return m_handle->inTransaction();
}

void Connection::close() {
    try {
        rollback();
    } catch (const CDBC_Exception&) {
        // A handle that cannot even roll back is not kept: see Handle::isSound.
    }
    delete this;
}

} // namespace database

DBConnection* DBDriver::getConnection(DBUrl& url) {
    if (url.scheme() != "sqlite")
        database::fail("no driver for database scheme: " + url.scheme(), SQLITE_CANTOPEN);
    return new database::Connection(
        database::Pool::instance().take(url.path(), database::timeoutOf(url)));
}

void DBDriver::closeIdle() {
    database::Pool::instance().closeIdle();
}
