#include "velclp/dbstatement.h"

#include "core/connection.h"

namespace velmora_clp {

DbStatement::DbStatement(const char* function, const std::string& url) : m_function(function) {
    OwnedConnection connection = openConnection(url);
    m_statement = connection->createStatement();
    m_owned = connection.release();
}

DbStatement::DbStatement(const char* function, DBConnection& connection)
    : m_function(function), m_statement(connection.createStatement()) {}

DbStatement::~DbStatement() {
    closeResult();
    if (m_statement != nullptr)
        m_statement->close();
    if (m_owned != nullptr)
        m_owned->close();
}

void DbStatement::closeResult() {
    if (m_result != nullptr)
        m_result->close();
    m_result = nullptr;
}

DBResultSet& DbStatement::query(const std::string& sql) {
    VELCLP_LOG_VALUE(m_function, "sql statement=[%s]", sql.c_str());
    closeResult();
    m_result = m_statement->executeQuery(sql);
    return *m_result;
}

int DbStatement::update(const std::string& sql) {
    VELCLP_LOG_VALUE(m_function, "sql statement=[%s]", sql.c_str());
    return m_statement->executeUpdate(sql);
}

} // namespace velmora_clp
