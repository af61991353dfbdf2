// Plants database failures for tests: the n-th statement from now fails as if SQLite had refused
// it. Works for the whole process; without a planted fault a statement pays one relaxed load.
#ifndef VELCLP_PLATFORM_DATABASE_FAULTS_H
#define VELCLP_PLATFORM_DATABASE_FAULTS_H

namespace dbfaults {

// The nth statement from now (1: the next) throws CDBC_Exception with SQLite's text for the
// result code, and so do the ones behind it up to count of them.
void failStatement(int nth, int code, int count = 1);

// The same for DBDriver::getConnection.
void failConnection(int nth, int code, int count = 1);

// How many planted failures came up since the last clear().
int happened();

// Takes back what is planted.
void clear();

} // namespace dbfaults

#endif
