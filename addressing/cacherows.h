// What the address service reads from and asks of the address database: rows with their keys, the
// conditions that pick them, and the identity of an object as one text, by which rows and object
// paths are compared without building paths. Internal to the address service.
#ifndef VELCLP_ADDRESSING_CACHEROWS_H
#define VELCLP_ADDRESSING_CACHEROWS_H

#include "database/cdbc.h"
#include "velclp/cimhandle.h"
#include "velclp/log.h"

#include <optional>
#include <string>
#include <vector>

namespace velmora_clp::addrcache {

// A key of a cached object: its value is what value2Chars gives for it.
struct CachedKey {
    std::string name;
    std::string value;
    CMPIType type;
};

struct CachedRow {
    int id = 0;
    std::string ufip;
    std::string cimclass;
    std::string ns;
    std::vector<CachedKey> keys;
};

// ---- Conditions and literals of SQL ----

// A literal; quotes in the text are doubled.
std::string quoted(const std::string& text);
std::string quoted(int number);

// The rows of a class's instances, given as parent address, "/" and class tag; nothing below them.
std::string instancesOf(const std::string& classKey);
// The same with all that is below them.
std::string subtreesOf(const std::string& classKey);
// The rows directly in a parent whose address begins with a text.
std::string directlyAt(const std::string& prefix);
// What is below an address, and the same with the address itself.
std::string below(const std::string& ufip);
std::string subtree(const std::string& ufip);

// ---- Reading ----

// Rows with their keys, in the order in which they were written; throws CDBC_Exception. The
// condition names columns of addrsvc_clp, its id as "c.id".
std::vector<CachedRow> readRows(const char* function, DBConnection& db,
                                const std::string& condition);

// The keys of the row of that number.
std::vector<CachedKey> readKeys(const char* function, DBConnection& db, int id);

// The rows that can be those of an object: of its class, and holding the rarest of its key values.
std::vector<CachedRow> readCandidates(const char* function, DBConnection& db, CMPIObjectPath* path);

// A new object path for a row; never null.
CimPath rebuild(const CachedRow& row);

// ---- Identity ----

// Equal texts mean the same object, in the sense of clp_sameCMPIObjectPath. Nothing when the path
// cannot be read. An empty namespace counts as the one given.
std::optional<std::string> identityOf(CMPIObjectPath* path, const std::string& defaultNs = "");
std::string identityOf(const CachedRow& row);

// ---- The rest ----

// Whether reads of a class take the shared lock; a class that the schema does not know does not.
bool isDynamic(const std::string& cimclass);

// Runs database work of the cache; a CDBC_Exception is logged and ends it.
template<typename Work>
bool cacheWork(const char* function, Work&& work) {
    try {
        work();
        return true;
    } catch (const CDBC_Exception& failure) {
        VELCLP_LOG_FAILURE(function, "Catch the cdbc_ex=[%s]", failure.text());
        return false;
    }
}

} // namespace velmora_clp::addrcache

#endif
