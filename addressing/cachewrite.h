// The writes of the address cache, each to be made under an exclusive guard and, where several
// belong together, in one transaction. All throw CDBC_Exception. Internal to the address service.
#ifndef VELCLP_ADDRESSING_CACHEWRITE_H
#define VELCLP_ADDRESSING_CACHEWRITE_H

#include "database/cdbc.h"

#include <CimClientLib/cmci.h>

#include <limits>
#include <string>

namespace velmora_clp::addrcache {

// The key of the counter that numbers the rows themselves.
extern const char* const rowCounter;

// A counter that stands here gives out nothing more.
constexpr int lastNumber = std::numeric_limits<int>::max();

// A counter's value, -1 when there is none.
int readCounter(const char* function, DBConnection& db, const std::string& key);

// Writes a counter, as a new one when add is set. The number must be above 0.
void writeCounter(const char* function, DBConnection& db, const std::string& key, int next,
                  bool add);

// Writes the row of an object and its keys; takes no number for the row.
void insertRow(const char* function, DBConnection& db, const std::string& ufip,
               CMPIObjectPath* path, int id, const std::string& ns);

// Deletes the rows that a condition on addrsvc_clp picks, keys first.
void deleteRows(const char* function, DBConnection& db, const std::string& condition);

// Deletes an address with all that is below it, counters too.
void deleteSubtree(const char* function, DBConnection& db, const std::string& ufip);

} // namespace velmora_clp::addrcache

#endif
