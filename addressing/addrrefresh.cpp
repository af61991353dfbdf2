// Bringing one level of the cache up to date with the server.
#include "addressing/cacherows.h"
#include "addressing/cachewrite.h"
#include "mapping/cimvalue.h"
#include "schema/cimnamespace.h"
#include "velclp/addrsvc.h"
#include "velclp/assertion.h"
#include "velclp/cacheguard.h"
#include "velclp/clpstring.h"
#include "velclp/core_misc.h"
#include "velclp/dbstatement.h"
#include "velclp/schema.h"

#include <boost/lexical_cast.hpp>

#include <algorithm>
#include <unordered_set>

namespace velmora_clp {

using namespace addrcache;

namespace {

const char* const function = "CLP.CLPAddrSVC.refreshCacheUfct";

// One level: the instances of a class tag under one parent.
struct Level {
    std::string key; // parent address, "/" and class tag
    std::string ufct;
    std::string cimclass;
    bool numberedByProperty;
    std::string property;
    // The namespace of the objects at the top of the tree; empty elsewhere.
    std::string rootNs;
    // Rows from this number on are younger than the server's answer, which says nothing of them.
    int firstYoungRow;
};

// Compares the server's answer with the rows of one level and writes the difference. An object
// that has a row keeps it. What is read before the lock is taken is looked at again behind it when
// another process wrote in between.
class LevelRefresh {
public:
    LevelRefresh(CLPAddrSVC& service, DBConnection& db, const Level& level)
        : m_service(service), m_db(db), m_level(level) {}

    void run(CMPIEnumeration* enumeration) {
        collect(enumeration);
        dropStaleRows();
        const std::vector<NewObject> objects = newObjects();
        if (!objects.empty())
            store(objects);
    }

private:
    struct Found {
        CMPIObjectPath* path; // the enumeration's
        std::string identity;
    };
    struct NewObject {
        const Found* found;
        int number; // -1 for one that the counter numbers
    };

    void collect(CMPIEnumeration* enumeration);
    void dropStaleRows();
    bool isStale(const CachedRow& row, const std::string& identity);
    void dropSubtree(const CachedRow& row);
    std::vector<NewObject> newObjects();
    void store(const std::vector<NewObject>& objects);
    void takeIn(const CachedRow& row, std::string identity);
    int number(const CachedRow& row) const;
    bool isFree(const NewObject& object);
    int counterForNew();

    CLPAddrSVC& m_service;
    DBConnection& m_db;
    const Level& m_level;
    std::vector<Found> m_found;
    std::unordered_set<std::string> m_onServer;
    // What has a row, and under which numbers.
    std::unordered_set<std::string> m_cached;
    std::unordered_set<int> m_numbers;
    int m_highest = 0;
};

void LevelRefresh::collect(CMPIEnumeration* enumeration) {
    CimStatus status;
    while (enumeration->ft->hasNext(enumeration, status.out()) != 0) {
        const CMPIData data = enumeration->ft->getNext(enumeration, status.out());
        VELCLP_ASSERT(isReference(data), "(data.type==((16+1)<<8))&&data.value.ref");
        CMPIObjectPath* const path = data.value.ref;
        if (!m_level.rootNs.empty())
            path->ft->setNameSpace(path, m_level.rootNs.c_str());
        else if (cimNameSpace(path).empty())
            path->ft->setNameSpace(path, DEFAULT_NAMESPACE);
        std::optional<std::string> identity = identityOf(path);
        if (identity && m_onServer.insert(*identity).second)
            m_found.push_back({path, std::move(*identity)});
    }
}

int LevelRefresh::number(const CachedRow& row) const {
    int number = 0;
    boost::conversion::try_lexical_convert(row.ufip.substr(m_level.key.size()), number);
    return number;
}

void LevelRefresh::takeIn(const CachedRow& row, std::string identity) {
    m_cached.insert(std::move(identity));
    m_numbers.insert(number(row));
    m_highest = std::max(m_highest, number(row));
}

bool LevelRefresh::isStale(const CachedRow& row, const std::string& identity) {
    if (row.id >= m_level.firstYoungRow)
        return false;
    if (m_onServer.count(identity) == 0) {
        VELCLP_LOG_BRANCH(function, "[%d] is not in cimom", row.id);
        return true;
    }
    if (!m_level.numberedByProperty)
        return false;
    const int now = m_service.getUfisFromCIMObjectPath(rebuild(row).get(), m_level.property);
    return now >= 0 && std::to_string(now) != row.ufip.substr(m_level.key.size());
}

// Only the row that was judged: by now the address may be another object's.
void LevelRefresh::dropSubtree(const CachedRow& row) {
    DbStatement statement(function, m_db);
    if (statement
            .query("SELECT id FROM addrsvc_clp WHERE ufip=" + quoted(row.ufip) +
                   " AND id=" + quoted(row.id))
            .next())
        deleteSubtree(function, m_db, row.ufip);
}

void LevelRefresh::dropStaleRows() {
    std::optional<CacheGuard> guard;
    if (isDynamic(m_level.cimclass))
        guard.emplace(1);
    std::vector<CachedRow> stale;
    for (CachedRow& row : readRows(function, m_db, instancesOf(m_level.key))) {
        std::string identity = identityOf(row);
        if (isStale(row, identity))
            stale.push_back(std::move(row));
        else
            takeIn(row, std::move(identity));
    }
    if (stale.empty())
        return;
    const CacheGuard writeGuard(1);
    DBTransaction transaction(m_db);
    for (const CachedRow& row : stale)
        dropSubtree(row);
    transaction.commit();
}

std::vector<LevelRefresh::NewObject> LevelRefresh::newObjects() {
    std::vector<NewObject> objects;
    for (const Found& found : m_found) {
        if (m_cached.count(found.identity) != 0) {
            VELCLP_LOG_BRANCH(function, "The object is in cache!");
            continue;
        }
        if (m_service.getUfctFromObject(found.path, m_level.cimclass) != m_level.ufct)
            continue;
        int number = -1;
        if (m_level.numberedByProperty) {
            number = m_service.getUfisFromCIMObjectPath(found.path, m_level.property);
            if (number < 0) {
                VELCLP_LOG_FAILURE(function, "object has no number=[%d]", number);
                continue;
            }
        }
        objects.push_back({&found, number});
    }
    return objects;
}

bool LevelRefresh::isFree(const NewObject& object) {
    if (m_cached.count(object.found->identity) != 0)
        return false;
    if (m_numbers.count(object.number) == 0)
        return true;
    VELCLP_LOG_FAILURE(function, "number=[%d] of [%s] is another object's", object.number,
                       m_level.key.c_str());
    return false;
}

// The next number of the level. A counter that fell behind its rows, as in a database that was put
// back from a copy, catches up.
int LevelRefresh::counterForNew() {
    const int next = readCounter(function, m_db, m_level.key);
    if (next == -1)
        writeCounter(function, m_db, m_level.key, 1, true);
    return std::max({next, 1, m_highest < lastNumber ? m_highest + 1 : lastNumber});
}

void LevelRefresh::store(const std::vector<NewObject>& objects) {
    const CacheGuard guard(1);
    DBTransaction transaction(m_db);
    int row = readCounter(function, m_db, rowCounter);
    if (row < 1 || objects.size() > static_cast<std::size_t>(lastNumber - row)) {
        VELCLP_LOG_FAILURE(function, "no number for rows");
        return;
    }
    if (row != m_level.firstYoungRow)
        for (const CachedRow& other : readRows(function, m_db, instancesOf(m_level.key)))
            takeIn(other, identityOf(other));
    int next = m_level.numberedByProperty ? 0 : counterForNew();
    for (const NewObject& object : objects) {
        if (!isFree(object))
            continue;
        if (next == lastNumber) {
            VELCLP_LOG_FAILURE(function, "no number left in [%s]", m_level.key.c_str());
            break;
        }
        const int number = m_level.numberedByProperty ? object.number : next++;
        CMPIObjectPath* const path = object.found->path;
        insertRow(function, m_db, m_level.key + std::to_string(number), path, row++,
                  cimNameSpace(path));
        m_numbers.insert(number);
    }
    writeCounter(function, m_db, rowCounter, row, false);
    if (!m_level.numberedByProperty)
        writeCounter(function, m_db, m_level.key, next, false);
    transaction.commit();
}

bool hasYoungRows(DBConnection& db, const Level& level) {
    DbStatement statement(function, db);
    return statement
        .query("SELECT id FROM addrsvc_clp WHERE " + instancesOf(level.key) +
               " AND id>=" + quoted(level.firstYoungRow) + " LIMIT 1")
        .next();
}

} // namespace

void CLPAddrSVC::refreshCacheUfct(const std::string& p_ufip, CMPIObjectPath* parent,
                                  const std::string& addrassoc, const std::string& ufct) {
    VELCLP_TRACE(function);
    const CLPSchema& schema = *CLPSchema::getInstance();
    const bool root = p_ufip.empty() && ufct == "admin";
    Level level;
    level.key = p_ufip + "/" + ufct;
    level.ufct = ufct;
    level.cimclass = schema.getCIMClass(ufct);
    if (level.cimclass.empty() || (!root && !parent)) {
        VELCLP_LOG_FAILURE(function, "With cimclass in schema!");
        return;
    }
    const auto& [type, property] = schema.getUfit(ufct);
    level.numberedByProperty = type == "property";
    level.property = property;
    if (type == "nature")
        openCounter(level.key);
    if (root) {
        level.rootNs = namespaceOf(level.cimclass);
    }
    const int nextRow = getNextSeq(rowCounter);
    level.firstYoungRow = nextRow > 0 ? nextRow : lastNumber;

    CimStatus status;
    const CimEnumeration objects(root ? enumerateRoot(level.rootNs, status.out())
                                      : cc->ft->associatorNames(cc, parent, addrassoc.c_str(),
                                                                level.cimclass.c_str(), nullptr,
                                                                nullptr, status.out()));
    if (!status.ok()) {
        VELCLP_LOG_FAILURE(function, "status.rc=[%d]", static_cast<int>(status.rc()));
        return;
    }
    CimStatus hasNext;
    cacheWork(function, [&] {
        if (objects && objects->ft->hasNext(objects.get(), hasNext.out()) != 0) {
            LevelRefresh(*this, *db, level).run(objects.get());
            return;
        }
        VELCLP_LOG_FAILURE(function, "Has no instance after associatorNames|enumerate!");
        if (!hasYoungRows(*db, level))
            emptyCacheUfct(p_ufip, ufct);
    });
}

// Whoever gets the lock first makes the counter.
void CLPAddrSVC::openCounter(const std::string& key) {
    if (getNextSeq(key) != -1)
        return;
    const CacheGuard guard(1);
    if (getNextSeq(key) == -1)
        setNextSeq(key, 1, true);
}

CMPIEnumeration* CLPAddrSVC::enumerateRoot(const std::string& ns, CMPIStatus* status) {
    const CimPath result(newCMPIObjectPath(ns.c_str(), "ZORM_AdminDomain", status));
    VELCLP_ASSERT(result, "result");
    return cc->ft->enumInstanceNames(cc, result.get(), status);
}

bool CLPAddrSVC::objectExistInCIMOM(CMPIEnumeration* enumeration, CMPIObjectPath* objectpath) {
    const char* const name = "CLP.CLPAddrSVC.objectExistInCIMOM";
    VELCLP_TRACE(name);
    if (!enumeration || !objectpath) {
        VELCLP_LOG_BRANCH(name, "Input is NULL!");
        return false;
    }
    CimStatus status;
    while (enumeration->ft->hasNext(enumeration, status.out()) != 0) {
        const CMPIData data = enumeration->ft->getNext(enumeration, status.out());
        VELCLP_ASSERT(isReference(data), "(data.type==((16+1)<<8))&&data.value.ref");
        const CimPath entry = cimClone(data.value.ref);
        if (cimNameSpace(entry.get()).empty())
            entry->ft->setNameSpace(entry.get(), DEFAULT_NAMESPACE);
        if (clp_sameCMPIObjectPath(entry.get(), objectpath) != 0) {
            VELCLP_LOG_BRANCH(name, "same objectpath!");
            return true;
        }
    }
    return false;
}

namespace {

// The text of the element at a position counted from 1, empty when there is none.
std::string elementAt(const CMPIData& data, int pos) {
    VELCLP_ASSERT(isArray(data.type), "((data.type) & ((1)<<13))");
    const int m = static_cast<int>(arraySize(arrayOf(data)));
    VELCLP_ASSERT(m >= pos, "m>=pos");
    return pos < 1 ? "" : elementText(arrayOf(data), static_cast<unsigned int>(pos - 1));
}

} // namespace

int CLPAddrSVC::getUfisFromCIMObjectPath(CMPIObjectPath* path, const std::string& prop) {
    const char* const name = "CLP.CLPAddrSVC.getUfisFromCIMObjectPath";
    VELCLP_TRACE(name);
    VELCLP_ASSERT(path && !prop.empty(), "path&&!prop.empty()");
    const std::vector<std::string> pieces = splitString(prop, "#");
    VELCLP_ASSERT(pieces.size() <= 2, "n<=2");
    CimStatus status;
    const CimInstance instance(cc->ft->getInstance(cc, path, 0, nullptr, status.out()));
    if (!instance || !status.ok()) {
        VELCLP_LOG_FAILURE(name, "failed to get instance!");
        return -1;
    }
    const CMPIData data =
        instance->ft->getProperty(instance.get(), pieces.front().c_str(), status.out());
    if (!status.ok() || !hasValue(data)) {
        VELCLP_LOG_FAILURE(name, "failed to get property!");
        return -1;
    }
    return boost::lexical_cast<int>(pieces.size() == 2
                                        ? elementAt(data, boost::lexical_cast<int>(pieces.back()))
                                        : dataText(data));
}

} // namespace velmora_clp
