// The way from objects to addresses.
#include "addressing/cacherows.h"
#include "addressing/cachewrite.h"
#include "mapping/cimvalue.h"
#include "velclp/addrsvc.h"
#include "velclp/assertion.h"
#include "velclp/cacheguard.h"
#include "velclp/dbstatement.h"
#include "velclp/schema.h"

#include <boost/lexical_cast/try_lexical_convert.hpp>

#include <algorithm>

namespace velmora_clp {

using namespace addrcache;

namespace {

// A class name in the schema's terms: one with another prefix counts as a class of the general
// model. Empty when the schema knows neither.
std::string schemaClass(std::string cimclass) {
    const CLPSchema& schema = *CLPSchema::getInstance();
    if (!schema.hasCIMClass(cimclass)) {
        const std::size_t prefix = cimclass.find('_');
        if (prefix == std::string::npos)
            return "";
        cimclass.replace(0, prefix, "cim");
    }
    return schema.hasCIMClass(cimclass) ? cimclass : "";
}

// The class tag of a cached address, empty when the address is damaged or its tag unknown.
std::string knownTag(const std::string& ufip) {
    CLPAddrpath path("/", "/");
    if (!path.setPath("/", ufip) || path.getTerms().empty())
        return "";
    const std::string ufct = path.getUfct(path.getTerms().back());
    return CLPSchema::getInstance()->getCIMClass(ufct).empty() ? "" : ufct;
}

std::string suffixOf(const std::string& ufip) {
    const CLPAddrpath path("/", ufip);
    return path.getUfis(path.getTerms().back());
}

} // namespace

std::string CLPAddrSVC::getUfip(CMPIObjectPath* path, bool /*flag*/, bool normal) {
    const char* const function = "CLP.CLPAddrSVC.getUfip";
    VELCLP_TRACE(function);
    VELCLP_ASSERT(path, "path");
    std::string ufip = getUfipFromCache(path);
    if (ufip.empty()) {
        const std::string given = cimClassName(path);
        const std::string cimclass = schemaClass(given);
        if (cimclass.empty()) {
            VELCLP_LOG_FAILURE(function, "class=[%s] is not in schema", given.c_str());
            return "";
        }
        ufip = getUfipFromCIMOM(path, cimclass);
    }
    return normal ? normalUfip(ufip) : ufip;
}

std::string CLPAddrSVC::getUfipFromCache(CMPIObjectPath* path) {
    const char* const function = "CLP.CLPAddrSVC.getUfipFromCache";
    VELCLP_TRACE(function);
    VELCLP_ASSERT(path, "path");
    const std::string cimclass = cimClassName(path);
    if (cimclass.find("SELLogEntry") != std::string::npos)
        return getUfipFromCacheForSEL(path);
    const std::optional<std::string> identity = identityOf(path);
    if (cimclass.empty() || !identity)
        return "";
    std::optional<CacheGuard> guard;
    if (isDynamic(cimclass))
        guard.emplace(0);
    std::vector<CachedRow> rows;
    cacheWork(function, [&] { rows = readCandidates(function, *db, path); });
    for (const CachedRow& row : rows) {
        VELCLP_LOG_VALUE(function, "ufip in db=[%s]", row.ufip.c_str());
        const std::string ufct = knownTag(row.ufip);
        if (ufct.empty()) {
            VELCLP_LOG_BRANCH(function, "fail to get cimcalss");
            continue;
        }
        if (identityOf(row) != *identity)
            continue;
        VELCLP_LOG_BRANCH(function, "same objectpath!");
        const auto& [type, property] = CLPSchema::getInstance()->getUfit(ufct);
        if (type == "property" &&
            std::to_string(getUfisFromCIMObjectPath(path, property)) != suffixOf(row.ufip)) {
            VELCLP_LOG_BRANCH(function, "ufit is not same!");
            return "";
        }
        return row.ufip;
    }
    return "";
}

std::string CLPAddrSVC::getUfipFromCacheForSEL(CMPIObjectPath* path) {
    const char* const function = "CLP.CLPAddrSVC.getUfipFromCacheForSEL";
    VELCLP_TRACE(function);
    VELCLP_ASSERT(path, "path");
    CimStatus status;
    const CMPIData key = path->ft->getKey(path, "InstanceID", status.out());
    if (!status.ok() || key.type != CMPI_string || !hasValue(key) || !key.value.string)
        return "";
    const CacheGuard guard(0);
    std::string ufip;
    cacheWork(function, [&] {
        DbStatement statement(function, *db);
        DBResultSet& keys = statement.query("SELECT * FROM addrsvc_cim WHERE value=" +
                                            quoted(cimText(key.value.string)));
        if (!keys.next())
            return;
        const int id = keys.getInt("id");
        DBResultSet& row = statement.query("SELECT * FROM addrsvc_clp WHERE id=" + quoted(id));
        if (row.next())
            ufip = row.getString("ufip");
    });
    return ufip;
}

std::string CLPAddrSVC::getUfipFromCIMOM(CMPIObjectPath* path, const std::string& cimclass) {
    const char* const function = "CLP.CLPAddrSVC.getUfipFromCIMOM";
    VELCLP_TRACE(function);
    VELCLP_ASSERT(path, "path");
    const std::string parent = CLPSchema::getInstance()->getParent(cimclass);
    if (parent.empty()) {
        VELCLP_LOG_BRANCH(function, "Parent is root!");
        refreshCacheUfct("", nullptr, "", "admin");
        return getUfipFromCache(path);
    }
    const std::string aa = getAssocClass(parent, cimclass);
    VELCLP_ASSERT(!aa.empty(), "!aa.empty()");
    CimStatus status;
    const CimEnumeration parents(cc->ft->associatorNames(cc, path, aa.c_str(), parent.c_str(),
                                                         nullptr, nullptr, status.out()));
    CimStatus next;
    if (!parents || !status.ok() || parents->ft->hasNext(parents.get(), next.out()) == 0) {
        if (!status.ok())
            VELCLP_LOG_FAILURE(function, "status.rc=[%d]", static_cast<int>(status.rc()));
        else
            VELCLP_LOG_FAILURE(function, "Has no instance after associatorNames!");
        return "";
    }
    // An object with several parents is addressed under the first that the server names.
    const CMPIData data = parents->ft->getNext(parents.get(), next.out());
    VELCLP_ASSERT(isReference(data), "(data.type==((16+1)<<8))&&data.value.ref");
    CMPIObjectPath* const parentObject = data.value.ref;
    std::string parentufip = getUfipFromCache(parentObject);
    if (parentufip.empty()) {
        VELCLP_LOG_BRANCH(function, "Get parent ufip from cimom!");
        parentufip = getUfipFromCIMOM(parentObject, parent);
    }
    if (parentufip.empty()) {
        emptyCacheUfct("", "");
    } else {
        const std::string ufct = getUfctFromObject(path, cimclass);
        if (!ufct.empty())
            refreshCacheUfct(parentufip, parentObject, aa, ufct);
    }
    std::string ufip = getUfipFromCache(path);
    VELCLP_LOG_VALUE(function, "ufip from cache=[%s]", ufip.c_str());
    return ufip;
}

bool CLPAddrSVC::setUfip(const CLPAddrpath& path, CMPIObjectPath* object) {
    const char* const function = "CLP.CLPAddrSVC.setUfip";
    VELCLP_TRACE(function);
    VELCLP_ASSERT(object, "object");
    CLPAddrpath internal("/", "/");
    internalPath(path, internal);
    const std::vector<std::string> terms = internal.getTerms();
    const std::string ufct = terms.empty() ? "" : internal.getUfct(terms.back());
    const CLPSchema& schema = *CLPSchema::getInstance();
    if (schema.getCIMClass(ufct).empty()) {
        VELCLP_LOG_FAILURE(function, "ufct is ilegal!");
        return false;
    }
    const std::string address = internal.getResultantAddress();
    const std::string key = address.substr(0, address.rfind('/') + 1) + ufct;
    const std::string suffix = internal.getUfis(terms.back());
    const auto& [type, property] = schema.getUfit(ufct);

    int number = 0;
    if (suffix != "*" &&
        (!boost::conversion::try_lexical_convert(suffix, number) || number == lastNumber)) {
        VELCLP_LOG_FAILURE(function, "number is too large=[%s]", suffix.c_str());
        return false;
    }
    const bool byCounter = type == "nature";
    if (!byCounter) {
        VELCLP_LOG_BRANCH(function, "ufit property=[%s]", property.c_str());
        number = getUfisFromCIMObjectPath(object, property);
    }
    // Number, row and keys belong together: one lock, one transaction.
    const CacheGuard guard(1);
    cacheWork(function, [&] {
        DBTransaction transaction(*db);
        if (byCounter)
            number = takeNumber(key, number);
        const std::string aufip = key + std::to_string(number);
        VELCLP_LOG_VALUE(function, "aufip=[%s]", aufip.c_str());
        const int id = readCounter(function, *db, rowCounter);
        VELCLP_ASSERT(id != -1, "id!=-1");
        if (number >= 0 && id < lastNumber && !isCached(object)) {
            insertRow(function, *db, aufip, object, id, cimNameSpace(object));
            writeCounter(function, *db, rowCounter, id + 1, false);
        }
        transaction.commit();
    });
    return true;
}

int CLPAddrSVC::takeNumber(const std::string& key, int requested) {
    const char* const function = "CLP.CLPAddrSVC.setUfip";
    const int next = readCounter(function, *db, key);
    if (requested == 0)
        requested = std::max(next, 1);
    if (requested == lastNumber) {
        VELCLP_LOG_FAILURE(function, "no number left in [%s]", key.c_str());
        return -1;
    }
    if (next == -1 || requested >= next)
        writeCounter(function, *db, key, requested + 1, next == -1);
    return requested;
}

bool CLPAddrSVC::isCached(CMPIObjectPath* object) {
    const std::optional<std::string> identity = identityOf(object);
    const std::vector<CachedRow> rows = readCandidates("CLP.CLPAddrSVC.setUfip", *db, object);
    return identity && std::any_of(rows.begin(), rows.end(), [&](const CachedRow& row) {
               return identityOf(row) == *identity;
           });
}

} // namespace velmora_clp
