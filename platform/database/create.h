// Makes a database file; for provisioning, never for use while sessions run.
#ifndef VELCLP_PLATFORM_DATABASE_CREATE_H
#define VELCLP_PLATFORM_DATABASE_CREATE_H

#include <string>

// Runs a script of SQL statements (DDL) on an empty or new file and turns on the write-ahead log,
// in one go. Throws CDBC_Exception; a file that this call made is then removed.
void createDatabase(const std::string& path, const std::string& script);

#endif
