// Where the database layer asks whether a test wants it to fail here.
#ifndef VELCLP_PLATFORM_DATABASE_FAULTPOINT_H
#define VELCLP_PLATFORM_DATABASE_FAULTPOINT_H

#include <atomic>

namespace dbfaults {

extern std::atomic<bool> planted;

int takeStatementFault();
int takeConnectionFault();

// The result code to fail with, 0 for none.
inline int statementFault() {
    return planted.load(std::memory_order_relaxed) ? takeStatementFault() : 0;
}
inline int connectionFault() {
    return planted.load(std::memory_order_relaxed) ? takeConnectionFault() : 0;
}

} // namespace dbfaults

#endif
