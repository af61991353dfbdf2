#include "velclp/schema.h"

#include "schema/cimnamespace.h"
#include "velclp/assertion.h"
#include "velclp/log.h"

namespace velmora_clp {

namespace {

const std::string EMPTY;
const std::string GENERAL_NAMESPACE = DEFAULT_NAMESPACE;

template<typename Map>
const typename Map::mapped_type* find(const Map& map, const std::string& key) {
    const auto found = map.find(key);
    return found == map.end() ? nullptr : &found->second;
}

} // namespace

const CLPSchema::ClassInfo* CLPSchema::findClass(const std::string& cimclass) const {
    const auto* info = find(m_classByName, cimclass);
    return info ? *info : nullptr;
}

const CLPSchema::ClassInfo& CLPSchema::knownClass(const std::string& cimclass) const {
    const ClassInfo* p = findClass(cimclass);
    VELCLP_ASSERT(p != nullptr, "p!=m_classTree.end()");
    return *p;
}

// A tag in other letters than the file's finds its class, but nothing that is said of it.
const CLPSchema::TagInfo& CLPSchema::declared(const TagInfo* info, const std::string& ufct) {
    static const TagInfo none;
    return info && info->tag == ufct ? *info : none;
}

const CLPSchema::TagInfo& CLPSchema::tagOrDefault(const std::string& ufct) const {
    return declared(find(m_tags, ufct), ufct);
}

const CLPSchema::TagInfo& CLPSchema::knownTag(const std::string& ufct) const {
    const TagInfo* p = find(m_tags, ufct);
    VELCLP_ASSERT(p != nullptr, "p!=m_classTree.end()");
    return declared(p, ufct);
}

const std::string& CLPSchema::getCIMClass(const std::string& ufct) const {
    VELCLP_TRACE("CLP.CLPSchema.getCIMClass");
    const TagInfo* info = find(m_tags, ufct);
    return info ? info->section : EMPTY;
}

bool CLPSchema::hasCIMClass(const std::string& cimclass) const {
    VELCLP_TRACE("CLP.CLPSchema.hasCIMClass");
    if (findClass(cimclass))
        return true;
    VELCLP_LOG_BRANCH("CLP.CLPSchema.hasCIMClass", "[%s] in classtree not found!",
                      cimclass.c_str());
    return false;
}

const std::string& CLPSchema::getCIMClass_Ufct(const std::string& ufct) const {
    VELCLP_TRACE("CLP.CLPSchema.getCIMClass_Ufct");
    return knownTag(ufct).cimclass;
}

const std::pair<std::string, std::string>& CLPSchema::getUfit(const std::string& ufct) const {
    VELCLP_TRACE("CLP.CLPSchema.getUfit");
    const TagInfo& info = knownTag(ufct);
    VELCLP_ASSERT(info.ufitFields == 2, "static_cast<int>(i.size())==2");
    return info.ufit;
}

const std::string& CLPSchema::getRealUfct(const std::string& ufct) const {
    VELCLP_TRACE("CLP.CLPSchema.getRealUfct");
    return tagOrDefault(ufct).realUfct;
}

const CLPSchema::Names& CLPSchema::getVertualUfcts(const std::string& ufct) const {
    VELCLP_TRACE("CLP.CLPSchema.getVertualUfcts");
    return tagOrDefault(ufct).virtualUfcts;
}

const CLPSchema::Names& CLPSchema::getPseudoProperties(const std::string& ufct) const {
    VELCLP_TRACE("CLP.CLPSchema.getPseudoProperties");
    return knownTag(ufct).pseudoProperties;
}

const CLPSchema::Names& CLPSchema::getRequiredProperties(const std::string& ufct) const {
    VELCLP_TRACE("CLP.CLPSchema.getRequiredProperties");
    return tagOrDefault(ufct).requiredProperties;
}

const CLPSchema::Names& CLPSchema::getVerbs_ufct(const std::string& ufct) const {
    VELCLP_TRACE("CLP.CLPSchema.getVerbs_ufct");
    return knownTag(ufct).verbs;
}

const std::string& CLPSchema::getOptionMap(const std::string& ufct, const std::string& cmd) const {
    VELCLP_TRACE("CLP.CLPSchema.getOptionMap");
    const std::string* entry = find(tagOrDefault(ufct).commands, cmd);
    return entry ? *entry : EMPTY;
}

const CLPSchema::Pairs& CLPSchema::getFilter(const std::string& ufct) const {
    VELCLP_TRACE("CLP.CLPSchema.getFilter");
    const Pairs& filter = knownTag(ufct).filter;
    if (filter.empty())
        VELCLP_LOG_BRANCH("CLP.CLPSchema.getFilter", "Without filter!");
    return filter;
}

const CLPSchema::Names& CLPSchema::getVerbs_class(const std::string& cimclass) const {
    VELCLP_TRACE("CLP.CLPSchema.getVerbs_class");
    return knownClass(cimclass).verbs;
}

const std::string& CLPSchema::getType(const std::string& cimclass) const {
    VELCLP_TRACE("CLP.CLPSchema.getType");
    return knownClass(cimclass).type;
}

const std::string& CLPSchema::getNS(const std::string& cimclass) const {
    VELCLP_TRACE("CLP.CLPSchema.getNS");
    const ClassInfo* info = findClass(cimclass);
    return info ? info->ns : GENERAL_NAMESPACE;
}

const std::string& CLPSchema::getParent(const std::string& cimclass) const {
    VELCLP_TRACE("CLP.CLPSchema.getParent");
    return knownClass(cimclass).parent;
}

const CLPSchema::Names& CLPSchema::getAssoc(const std::string& cimclass) const {
    VELCLP_TRACE("CLP.CLPSchema.getAssoc");
    return classOrDefault(cimclass).assoc;
}

const CLPSchema::Names& CLPSchema::getUfcts(const std::string& cimclass) const {
    VELCLP_TRACE("CLP.CLPSchema.getUfcts");
    return classOrDefault(cimclass).ufcts;
}

const CLPSchema::Names& CLPSchema::getAddrAssoc(const std::string& cimclass) const {
    VELCLP_TRACE("CLP.CLPSchema.getAddrAssoc");
    return classOrDefault(cimclass).addrAssoc;
}

const CLPSchema::Names& CLPSchema::getRefs(const std::string& cimclass,
                                           const std::string& assoc) const {
    VELCLP_TRACE("CLP.CLPSchema.getRefs");
    static const Names none;
    const Names* refs = find(knownClass(cimclass).refs, assoc);
    return refs ? *refs : none;
}

const CLPSchema::Names& CLPSchema::getChildren_ufcts(const std::string& cimclass) const {
    VELCLP_TRACE("CLP.CLPSchema.getChildren_ufcts");
    return classOrDefault(cimclass).childrenUfcts;
}

const std::string& CLPSchema::getDefaultUfct(const std::string& cimclass) const {
    VELCLP_TRACE("CLP.CLPSchema.getDefaultUfct");
    const ClassInfo& info = classOrDefault(cimclass);
    VELCLP_ASSERT(!info.ufcts.empty(), "!ufcts.empty()");
    VELCLP_ASSERT(!info.defaultUfct.empty(), "false");
    return info.defaultUfct;
}

const CLPSchema::ClassInfo& CLPSchema::classOrDefault(const std::string& cimclass) const {
    static const ClassInfo none;
    const ClassInfo* info = findClass(cimclass);
    return info ? *info : none;
}

} // namespace velmora_clp
