// A database statement for the time of a scope: takes a connection, runs SQL, and closes result,
// statement and connection in this order when the scope ends, however it ends.
#ifndef VELCLP_DBSTATEMENT_H
#define VELCLP_DBSTATEMENT_H

#include "database/cdbc.h"
#include "velclp/log.h"

#include <cxxabi.h>
#include <string>

namespace velmora_clp {

class DbStatement {
public:
    // A connection of its own to the database that the URL names. The function is the name under
    // which statements are logged, a text that outlives the object. Throws CDBC_Exception.
    DbStatement(const char* function, const std::string& url);
    // On a connection that the caller keeps and closes.
    DbStatement(const char* function, DBConnection& connection);
    ~DbStatement();
    DbStatement(const DbStatement&) = delete;
    DbStatement& operator=(const DbStatement&) = delete;

    // Logs and runs a query; the result belongs to this object and holds until the next query.
    // Throws CDBC_Exception.
    DBResultSet& query(const std::string& sql);
    // Logs and runs an update; 0 on success. Throws CDBC_Exception.
    int update(const std::string& sql);

private:
    void closeResult();

    const char* m_function;
    DBConnection* m_owned = nullptr;
    DBStatement* m_statement = nullptr;
    DBResultSet* m_result = nullptr;
};

// Runs a piece of database work and keeps its failures in: a CDBC_Exception is logged as "catch
// cdbc exception=[...]", any other exception as unknownText, both at level 1 under the function's
// name. True when the work came to its end. The end of a thread passes through.
template<typename Work>
bool databaseWork(const char* function, Work&& work,
                  const char* unknownText = "catch an unknown error!") {
    try {
        work();
        return true;
    } catch (const CDBC_Exception& failure) {
        VELCLP_LOG_FAILURE(function, "catch cdbc exception=[%s]", failure.text());
    } catch (const abi::__forced_unwind&) {
        throw;
    } catch (...) {
        VELCLP_LOG_FAILURE(function, "%s", unknownText);
    }
    return false;
}

} // namespace velmora_clp

#endif
