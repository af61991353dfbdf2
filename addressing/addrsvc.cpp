// The way from addresses to objects: internal and user form, the walk down the schema's tree, and
// association instances.
#include "velclp/addrsvc.h"

#include "mapping/cimvalue.h"
#include "velclp/assertion.h"
#include "velclp/clpstring.h"
#include "velclp/core_misc.h"
#include "velclp/log.h"
#include "velclp/schema.h"

#include <algorithm>

namespace velmora_clp {

namespace {

const char* const rootAddress = "/admin1";

std::string joinTerms(const std::vector<std::string>& terms, std::size_t count) {
    std::string address;
    for (std::size_t i = 0; i < count; ++i)
        address += "/" + terms[i];
    return address;
}

// Whether the class tags above term i are those of a virtual entry, nearest first. The entry's
// first piece is the virtual tag itself.
bool standsBelow(const CLPAddrpath& path, const std::vector<std::string>& terms, std::size_t i,
                 const std::vector<std::string>& entry) {
    for (std::size_t j = 1; j < entry.size(); ++j)
        if (j > i || path.getUfct(terms[i - j]) != entry[j])
            return false;
    return true;
}

// Puts virtual class tags in the place of real ones; whether there were any. From the end, so that
// the terms above are still in user form when they are compared.
bool replaceVirtualTags(const CLPAddrpath& path, std::vector<std::string>& terms) {
    const CLPSchema& schema = *CLPSchema::getInstance();
    bool changed = false;
    for (std::size_t i = terms.size() - 1; i >= 1; --i) {
        const CLPSchema::Names& entries = schema.getVertualUfcts(path.getUfct(terms[i]));
        if (entries.empty())
            continue;
        const std::vector<std::string> entry = splitString(entries.front(), ":");
        VELCLP_ASSERT(entry.size() >= 2, "n>=2");
        if (!standsBelow(path, terms, i, entry))
            continue;
        terms[i] = entry.front() + path.getUfis(terms[i]);
        changed = true;
    }
    return changed;
}

// A parent address and the class tag and class of its last term.
struct Parent {
    CLPAddrpath path;
    std::string ufct;
    std::string cimclass;
};

Parent parentOf(const std::vector<std::string>& terms) {
    CLPAddrpath path("/", joinTerms(terms, terms.size() - 1));
    std::string ufct = path.getUfct(terms[terms.size() - 2]);
    std::string cimclass = CLPSchema::getInstance()->getCIMClass(ufct);
    return {std::move(path), std::move(ufct), std::move(cimclass)};
}

// Whether one of an association instance's references is the object; they count as lying in its
// namespace.
bool refersTo(CMPIInstance* association, CMPIObjectPath* object, const std::string& ns) {
    CimStatus status;
    const unsigned int count = association->ft->getPropertyCount(association, status.out());
    for (unsigned int i = 0; i < count; ++i) {
        const CMPIData data = association->ft->getPropertyAt(association, i, nullptr, status.out());
        if (!isReference(data) || !hasValue(data))
            continue;
        const CimPath reference = cimClone(data.value.ref);
        reference->ft->setNameSpace(reference.get(), ns.c_str());
        if (clp_sameCMPIObjectPath(reference.get(), object) != 0)
            return true;
    }
    return false;
}

} // namespace

std::vector<CMPIObjectPath*> CLPAddrSVC::getCIMObjectPath(const CLPAddrpath& path) {
    const char* const function = "CLP.CLPAddrSVC.getCIMObjectPath";
    VELCLP_TRACE(function);
    CLPAddrpath working(rootAddress, rootAddress);
    internalPath(path, working);
    const std::vector<std::string> terms = working.getTerms();
    if (terms.empty() ||
        CLPSchema::getInstance()->getCIMClass(working.getUfct(terms.back())).empty()) {
        VELCLP_LOG_BRANCH(function, "ufct is not in schema");
        return {};
    }
    CimPaths cached(getCacheItem(working));
    return cached.empty() ? refreshCache(working) : cached.release();
}

bool CLPAddrSVC::hasTarget(const CLPAddrpath& path) {
    VELCLP_TRACE("CLP.CLPAddrSVC.hasTarget");
    return !CimPaths(getCIMObjectPath(path)).empty();
}

void CLPAddrSVC::internalPath(const CLPAddrpath& in, CLPAddrpath& out) {
    const char* const function = "CLP.CLPAddrSVC.internalPath";
    VELCLP_TRACE(function);
    CLPAddrpath temporary(rootAddress, rootAddress);
    // The cache's text is in lower case, as the schema's tags are.
    const std::string address = lowerString(in.getResultantAddress());
    if (address != "/" && temporary.setPath("/", address) &&
        temporary.getUfct(temporary.getTerms().front()) != "admin")
        temporary.setPath(rootAddress, rootAddress + address);
    std::vector<std::string> terms = temporary.getTerms();
    if (terms.size() > 1 && replaceVirtualTags(temporary, terms))
        out.setPath(rootAddress, joinTerms(terms, terms.size()));
    else
        out.setPath(rootAddress, temporary.getResultantAddress());
    VELCLP_LOG_VALUE(function, "internal ufip=[%s]", out.getResultantAddress().c_str());
}

std::string CLPAddrSVC::normalUfip(const std::string& ufip) {
    VELCLP_TRACE("CLP.CLPAddrSVC.normalUfip");
    CLPAddrpath path(rootAddress, rootAddress);
    if (!path.setPath(rootAddress, ufip))
        return ufip;
    const CLPSchema& schema = *CLPSchema::getInstance();
    std::vector<std::string> terms = path.getTerms();
    bool changed = false;
    for (std::string& term : terms) {
        const std::string& real = schema.getRealUfct(path.getUfct(term));
        if (real.empty())
            continue;
        term.replace(0, path.getUfct(term).size(), real);
        changed = true;
    }
    return changed ? joinTerms(terms, terms.size()) : ufip;
}

std::vector<CMPIObjectPath*> CLPAddrSVC::refreshCache(const CLPAddrpath& path) {
    const char* const function = "CLP.CLPAddrSVC.refreshCache";
    VELCLP_TRACE(function);
    const std::string ufip = path.getResultantAddress();
    VELCLP_ASSERT(!ufip.empty(), "!ufip.empty()");
    const std::vector<std::string> terms = path.getTerms();
    const std::string ufct = terms.empty() ? "" : path.getUfct(terms.back());
    const CLPSchema& schema = *CLPSchema::getInstance();
    const std::string& cimclass = schema.getCIMClass(ufct);
    if (cimclass.empty()) {
        VELCLP_LOG_BRANCH(function, "Has no cimclass in schema!");
        return {};
    }
    const std::size_t n = terms.size();
    if (n == 1 && ufct == "admin") {
        VELCLP_LOG_BRANCH(function, "refresh admin");
        refreshCacheUfct("", nullptr, "", "admin");
        return getCacheItem(path);
    }
    VELCLP_ASSERT(n > 1, "n>1");
    const Parent parent = parentOf(terms);
    if (parent.cimclass.empty()) {
        VELCLP_LOG_BRANCH(function, "Has no cimclass in schema!");
        return {};
    }
    if (schema.getParent(cimclass) != parent.cimclass) {
        VELCLP_LOG_FAILURE(function, "parent=[%s] in schema is not same as p_cimclass",
                           schema.getParent(cimclass).c_str());
        return {};
    }
    CimPaths objectpath(getCacheItem(parent.path));
    VELCLP_ASSERT(objectpath.size() <= 1, "n<=1");
    if (objectpath.empty()) {
        VELCLP_LOG_BRANCH(function, "Refresh parent cache!");
        objectpath = CimPaths(refreshCache(parent.path));
        VELCLP_ASSERT(objectpath.size() <= 1, "n<=1");
    }
    if (objectpath.empty()) {
        VELCLP_LOG_BRANCH(function, "Has no parent after refresh!");
        return {};
    }
    VELCLP_ASSERT(objectpath.front() != nullptr, "objectpath[0]");
    const std::string aa = getAssocClass(parent.cimclass, cimclass);
    VELCLP_ASSERT(!aa.empty(), "aa.empty()!=true");
    refreshCacheUfct(parent.path.getResultantAddress(), objectpath.front(), aa, ufct);
    return getCacheItem(path);
}

std::string CLPAddrSVC::getAssocClass(const std::string& parent, const std::string& child) {
    const char* const function = "CLP.CLPAddrSVC.getAssocClass";
    VELCLP_TRACE(function);
    const CLPSchema& schema = *CLPSchema::getInstance();
    const CLPSchema::Names& associations = schema.getAddrAssoc(parent);
    VELCLP_ASSERT(!associations.empty(), "n>=1");
    const std::string& ufct = schema.getDefaultUfct(child);
    for (const std::string& association : associations) {
        const CLPSchema::Names& refs = schema.getRefs(parent, association);
        VELCLP_ASSERT(!refs.empty(), "m>=1");
        if (std::any_of(refs.begin(), refs.end(),
                        [&](const std::string& ref) { return schema.getDefaultUfct(ref) == ufct; }))
            return association;
    }
    return "";
}

std::vector<CMPIObjectPath*> CLPAddrSVC::getCIMObjectPath_Assoc(const std::string& ref1,
                                                                const std::string& assoc,
                                                                std::string ref2) {
    const char* const function = "CLP.CLPAddrSVC.getCIMObjectPath_Assoc";
    VELCLP_TRACE(function);
    VELCLP_ASSERT(!ref1.empty() && !assoc.empty(), "!ref1.empty()&&!assoc.empty()");
    const CimPaths first = resolveOne(ref1, "n<=1");
    if (first.empty()) {
        VELCLP_LOG_BRANCH(function, "ref1 has no instance!");
        return {};
    }
    CimPaths second;
    if (!ref2.empty()) {
        second = resolveOne(ref2, "m<=1");
        if (second.empty()) {
            VELCLP_LOG_BRANCH(function, "ref2 has no instance!");
            return {};
        }
    }
    const std::string& cim_assoc = CLPSchema::getInstance()->getCIMClass(assoc);
    if (cim_assoc.empty())
        return {};
    return associationsBetween(first.front(), cim_assoc, second.empty() ? nullptr : second.front());
}

CimPaths CLPAddrSVC::resolveOne(const std::string& address, const char* assertion) {
    CLPAddrpath path("/", "/");
    if (address == "SESSION" || !path.setPath("/", address))
        return {};
    CimPaths objects(getCIMObjectPath(path));
    VELCLP_ASSERT(objects.size() <= 1, assertion);
    return objects;
}

std::vector<CMPIObjectPath*> CLPAddrSVC::associationsBetween(CMPIObjectPath* object,
                                                             const std::string& association,
                                                             CMPIObjectPath* other) {
    const char* const function = "CLP.CLPAddrSVC.getCIMObjectPath_Assoc";
    CimStatus status;
    const CimEnumeration references(
        cc->ft->referenceNames(cc, object, association.c_str(), nullptr, status.out()));
    VELCLP_LOG_BRANCH(function, "after referenceNames!");
    if (!references || !status.ok())
        return {};
    const std::string ns = other ? cimNameSpace(other) : "";
    CimPaths found;
    CimStatus next;
    while (references->ft->hasNext(references.get(), next.out()) != 0) {
        const CMPIData data = references->ft->getNext(references.get(), next.out());
        VELCLP_ASSERT(isReference(data), "(data.type==((16+1)<<8))&&data.value.ref");
        if (!other) {
            found.push_back(cimClone(data.value.ref));
            continue;
        }
        const CimInstance instance(
            cc->ft->getInstance(cc, data.value.ref, 0, nullptr, status.out()));
        if (!instance || !status.ok()) {
            VELCLP_LOG_BRANCH(function, "Has no assoc this time");
        } else if (refersTo(instance.get(), other, ns)) {
            VELCLP_LOG_BRANCH(function, "Find the assoc instance!");
            found.push_back(cimClone(data.value.ref));
            break;
        }
    }
    return found.release();
}

} // namespace velmora_clp
