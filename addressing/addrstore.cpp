// The storage side of the address service: counters, rows and their keys.
#include "addressing/cacherows.h"
#include "addressing/cachewrite.h"
#include "velclp/addrsvc.h"
#include "velclp/assertion.h"
#include "velclp/cacheguard.h"
#include "velclp/dbstatement.h"
#include "velclp/locations.h"
#include "velclp/schema.h"

#include <cxxabi.h>

namespace velmora_clp {

using namespace addrcache;

namespace {

// The tag at the end of a counter's key.
std::string tagOfKey(const std::string& key) {
    const std::string tag = key.substr(key.rfind('/') + 1);
    return tag.substr(0, tag.find_first_of("0123456789"));
}

// Whether reads of a counter take the shared lock. The root counter goes with the class at the top
// of the tree, which every schema has.
bool isDynamicKey(const std::string& key) {
    const CLPSchema& schema = *CLPSchema::getInstance();
    if (key.back() == '/')
        return schema.getType(schema.getCIMClass("admin")) == "dynamic";
    return isDynamic(schema.getCIMClass(tagOfKey(key)));
}

std::vector<std::string> readAddresses(const char* function, DBConnection& db,
                                       const std::string& condition) {
    DbStatement statement(function, db);
    DBResultSet& result =
        statement.query("SELECT ufip FROM addrsvc_clp WHERE " + condition + " ORDER BY id");
    std::vector<std::string> addresses;
    while (result.next())
        addresses.push_back(result.getString("ufip"));
    return addresses;
}

} // namespace

void CLPAddrSVC::ConnectionCloser::operator()(DBConnection* connection) const {
    connection->close();
}

CLPAddrSVC::CLPAddrSVC(CMCIClient* client) : cc(client) {
    const char* const function = "CLP.CLPAddrSVC.CLPAddrSVC";
    VELCLP_TRACE(function);
    VELCLP_ASSERT(cc != nullptr, "cc!=__null");
    DBUrl url(Locations::get().addressDatabase);
    db.reset(DBDriver::getConnection(url));
    VELCLP_ASSERT(db, "db");
    if (getNextSeq(rowCounter) != -1)
        return;
    // Whoever gets the lock first makes the counter.
    const CacheGuard guard(1);
    if (getNextSeq(rowCounter) == -1) {
        VELCLP_LOG_BRANCH(function, "set seq of / to 1");
        setNextSeq(rowCounter, 1, true);
    }
}

CLPAddrSVC::~CLPAddrSVC() = default;

int CLPAddrSVC::getNextSeq(const std::string& ufip) {
    const char* const function = "CLP.CLPAddrSVC.getNextSeq";
    VELCLP_TRACE(function);
    std::optional<CacheGuard> guard;
    if (!ufip.empty() && isDynamicKey(ufip))
        guard.emplace(0);
    int next = -1;
    cacheWork(function, [&] { next = readCounter(function, *db, ufip); });
    VELCLP_LOG_VALUE(function, "ufip=[%s],next=[%d]", ufip.c_str(), next);
    return next;
}

bool CLPAddrSVC::setNextSeq(const std::string& ufip, int id, bool add) {
    const char* const function = "CLP.CLPAddrSVC.setNextSeq";
    VELCLP_TRACE(function);
    VELCLP_ASSERT(id > 0, "id>0");
    const CacheGuard guard(1);
    return cacheWork(function, [&] { writeCounter(function, *db, ufip, id, add); });
}

int CLPAddrSVC::addCacheItem(const std::string& ufip, CMPIObjectPath* objectpath,
                             const std::string& ns) {
    const char* const function = "CLP.CLPAddrSVC.addCacheItem";
    VELCLP_TRACE(function);
    VELCLP_ASSERT(!ufip.empty() && objectpath, "!ufip.empty()&&objectpath");
    const CacheGuard guard(1);
    cacheWork(function, [&] {
        DBTransaction transaction(*db);
        const int id = readCounter(function, *db, rowCounter);
        if (id < 1 || id == lastNumber) {
            VELCLP_LOG_FAILURE(function, "no number for the row of [%s]", ufip.c_str());
            return;
        }
        insertRow(function, *db, ufip, objectpath, id, ns);
        writeCounter(function, *db, rowCounter, id + 1, false);
        transaction.commit();
    });
    return 0;
}

std::vector<CMPIObjectPath*> CLPAddrSVC::getCacheItem(const CLPAddrpath& path) {
    const char* const function = "CLP.CLPAddrSVC.getCacheItem";
    VELCLP_TRACE(function);
    const std::vector<std::string> terms = path.getTerms();
    if (terms.empty())
        return {};
    const CLPSchema& schema = *CLPSchema::getInstance();
    const std::string ufct = path.getUfct(terms.back());
    const std::string& cimclass = schema.getCIMClass(ufct);
    if (cimclass.empty()) {
        VELCLP_LOG_BRANCH(function, "ufct is not in schema");
        return {};
    }
    const auto& [type, property] = schema.getUfit(ufct);
    const bool single = path.getType() == 0;
    const std::string target = path.getResultantTarget();

    std::vector<CachedRow> rows;
    {
        std::optional<CacheGuard> guard;
        if (isDynamic(cimclass))
            guard.emplace(0);
        cacheWork(function, [&] {
            rows = readRows(function, *db,
                            single ? "ufip=" + quoted(target) : instancesOf(target + "/" + ufct));
        });
    }
    CimPaths objects;
    for (const CachedRow& row : rows) {
        CimPath object = rebuild(row);
        // A number that the object holds itself may have changed since the row was written.
        if (single && type == "property" &&
            std::to_string(getUfisFromCIMObjectPath(object.get(), property)) !=
                path.getUfis(terms.back()))
            continue;
        objects.push_back(std::move(object));
    }
    return objects.release();
}

CMPIObjectPath* CLPAddrSVC::createCIMObjectPathFromDB(int id, const std::string& cimclass,
                                                      const std::string& ns) {
    const char* const function = "CLP.CLPAddrSVC.createCIMObjectPathFromDB";
    VELCLP_TRACE(function);
    std::optional<CacheGuard> guard;
    if (isDynamic(cimclass))
        guard.emplace(0);
    CimPath path;
    cacheWork(function, [&] {
        path = rebuild({id, "", cimclass, ns, readKeys(function, *db, id)});
    });
    return path.release();
}

void CLPAddrSVC::deleteUfip(const std::string& ufip) {
    const char* const function = "CLP.CLPAddrSVC.deleteUfip";
    VELCLP_TRACE(function);
    CLPAddrpath path("/admin1", "/admin1");
    if (ufip.empty() || !path.setPath("/admin1", ufip))
        return;
    internalPath(path, path);
    const std::string address = quoted(path.getResultantAddress());
    const CacheGuard guard(1);
    try {
        DBTransaction transaction(*db);
        DbStatement statement(function, *db);
        DBResultSet& result = statement.query("SELECT id FROM addrsvc_clp WHERE ufip=" + address);
        if (!result.next())
            return;
        const int id = result.getInt("id");
        VELCLP_ASSERT(!result.next(), "!pResult->next()");
        statement.update("DELETE FROM addrsvc_clp WHERE ufip=" + address);
        const int r = statement.update("DELETE FROM addrsvc_cim WHERE id=" + quoted(id));
        VELCLP_ASSERT(r == 0, "r==0");
        transaction.commit();
    } catch (const CDBC_Exception& failure) {
        VELCLP_LOG_FAILURE(function, "cdbc_ex=[%s]", failure.text());
    }
}

void CLPAddrSVC::emptyCacheUfct(std::string parent, std::string ufct) {
    const char* const function = "CLP.CLPAddrSVC.emptyCacheUfct";
    VELCLP_TRACE(function);
    try {
        const CacheGuard guard(1);
        cacheWork(function, [&] {
            DBTransaction transaction(*db);
            deleteRows(function, *db, subtreesOf(parent + "/" + ufct));
            transaction.commit();
        });
    } catch (const abi::__forced_unwind&) {
        throw;
    } catch (...) {
        VELCLP_LOG_FAILURE(function, "Catch unknow error.");
    }
}

std::vector<std::string> CLPAddrSVC::selectUfip(const std::string& ufst) {
    const char* const function = "CLP.CLPAddrSVC.selectUfip";
    VELCLP_TRACE(function);
    const std::string tag = ufst.substr(ufst.rfind('/') + 1);
    std::optional<CacheGuard> guard;
    if (isDynamic(CLPSchema::getInstance()->getCIMClass(tag.empty() ? "admin" : tag)))
        guard.emplace(0);
    std::vector<std::string> addresses;
    cacheWork(function, [&] {
        for (const std::string& address : readAddresses(function, *db, instancesOf(ufst)))
            addresses.push_back(normalUfip(address));
    });
    return addresses;
}

std::vector<std::string> CLPAddrSVC::selectSubTargets(const std::string& ufst) {
    const char* const function = "CLP.CLPAddrSVC.selectSubTargets";
    VELCLP_TRACE(function);
    const CacheGuard guard(0);
    std::vector<std::string> targets;
    cacheWork(function, [&] {
        for (const std::string& address : readAddresses(function, *db, directlyAt(ufst))) {
            CLPAddrpath path("/", "/");
            if (path.setPath("/", normalUfip(address)) && !path.getTerms().empty())
                targets.push_back(path.getTerms().back());
        }
    });
    return targets;
}

} // namespace velmora_clp
