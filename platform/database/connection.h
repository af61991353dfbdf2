// Connections and statements over leased handles.
#ifndef VELCLP_PLATFORM_DATABASE_CONNECTION_H
#define VELCLP_PLATFORM_DATABASE_CONNECTION_H

#include "database/cdbc.h"
#include "database/pool.h"

namespace database {

class Statement final : public DBStatement {
public:
    explicit Statement(Lease handle) : m_handle(std::move(handle)) {}

    DBResultSet* executeQuery(const std::string& sql) override;
    int executeUpdate(const std::string& sql) override;
    int changedRows() override;
    void close() override;

private:
    Lease m_handle;
    int m_changedRows = 0;
};

class Connection final : public DBConnection {
public:
    explicit Connection(Lease handle) : m_handle(std::move(handle)) {}

    DBStatement* createStatement() override;
    void begin() override;
    void commit() override;
    void rollback() override;
    std::int64_t lastInsertId() override;
    bool inTransaction() override;
    void close() override;

private:
    Lease m_handle;
};

} // namespace database

#endif
