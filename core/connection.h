// A database connection that is closed at the end of a scope.
#ifndef VELCLP_CORE_CONNECTION_H
#define VELCLP_CORE_CONNECTION_H

#include "database/cdbc.h"

#include <memory>
#include <string>

namespace velmora_clp {

struct ConnectionCloser {
    void operator()(DBConnection* connection) const { connection->close(); }
};
using OwnedConnection = std::unique_ptr<DBConnection, ConnectionCloser>;

// Throws CDBC_Exception, also when the driver has none to give.
inline OwnedConnection openConnection(const std::string& url) {
    DBUrl parsed(url);
    OwnedConnection connection(DBDriver::getConnection(parsed));
    if (!connection)
        throw CDBC_Exception();
    return connection;
}

} // namespace velmora_clp

#endif
