// Throws CDBC_Exception with a text that outlives it.
#ifndef VELCLP_PLATFORM_DATABASE_FAILURE_H
#define VELCLP_PLATFORM_DATABASE_FAILURE_H

#include <string>

struct sqlite3;

namespace database {

// With SQLite's text for the handle's last failure, or for the code when there is no handle. What
// is wrong with the file, and not with the statement, names the file.
[[noreturn]] void fail(sqlite3* db, int code, const std::string& statement,
                       const std::string& path);
// With a text of the layer's own.
[[noreturn]] void fail(const std::string& text, int code, const std::string& statement = "");

} // namespace database

#endif
