// What the schema's getters answer is taken from the trees once, when the file has been read: the
// getters are asked many times for every target, the file never changes under them.
#include <algorithm>
#include <utility>

#include "schema/cimnamespace.h"
#include "velclp/clpstring.h"
#include "velclp/schema.h"

namespace velmora_clp {

namespace {

using Tree = MapTree<std::string, std::string>;
using Path = std::vector<std::string>;

// The value of a path, or the default when the tree holds none there.
std::string valueOf(const Tree& tree, const Path& path, const char* otherwise = "") {
    if (!tree.hasNode(path) || tree.hasChildren(path))
        return otherwise;
    const std::string* value = tree.getValue(path);
    return value ? *value : otherwise;
}

Path listOf(const Tree& tree, const Path& path, const char* delimiter = ":") {
    return splitString(valueOf(tree, path), delimiter);
}

Path childrenOf(const Tree& tree, const Path& path) {
    return tree.hasChildren(path) ? tree.getChildrenKeys(path) : Path();
}

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// One pair for each value of each property; a property without values stands alone.
CLPSchema::Pairs filterOf(const Tree& tree, const std::string& tag) {
    CLPSchema::Pairs filter;
    for (const std::string& property : childrenOf(tree, {"ufct", tag, "filter"})) {
        auto values = listOf(tree, {"ufct", tag, "filter", property});
        if (values.empty())
            values.emplace_back();
        for (std::string& value : values)
            filter.emplace_back(property, std::move(value));
    }
    return filter;
}

} // namespace

// FNV-1a over the lower-case text, so that a look-up needs no lower-case copy of its key.
std::size_t CLPSchema::NoCaseHash::operator()(const std::string& text) const {
    std::size_t hash = 14695981039346656037ULL;
    for (const char c : text)
        hash = (hash ^ static_cast<unsigned char>(lower(c))) * 1099511628211ULL;
    return hash;
}

bool CLPSchema::NoCaseEqual::operator()(const std::string& a, const std::string& b) const {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lower(x) == lower(y); });
}

void CLPSchema::prepare() {
    for (const auto& tag : m_ufctIndex)
        m_tags.emplace(tag.first, prepareTag(*m_classTree.at(tag.second), tag.first, tag.second));
    for (const auto& section : m_classTree)
        m_classByName[section.first] =
            &m_classes.emplace(section.first, prepareClass(*section.second)).first->second;
    for (const auto& alias : m_aliasIndex)
        m_classByName[alias.first] = &m_classes.at(alias.second);
    for (auto& info : m_classes)
        info.second.childrenUfcts = collectChildrenUfcts(info.second);
}

CLPSchema::TagInfo CLPSchema::prepareTag(const Tree& tree, const std::string& tag,
                                         const std::string& section) {
    const auto at = [&tag](const char* name) { return Path{"ufct", tag, name}; };
    TagInfo info;
    info.tag = tag;
    info.section = section;
    info.cimclass = valueOf(tree, at("cimclass"));
    info.realUfct = valueOf(tree, at("realufct"));
    if (tree.hasNode(at("ufit"))) {
        const auto fields = listOf(tree, at("ufit"));
        info.ufitFields = fields.size();
        if (fields.size() == 2)
            info.ufit = {fields[0], fields[1]};
    }
    info.virtualUfcts = listOf(tree, at("virtualufcts"), ",");
    info.pseudoProperties = listOf(tree, at("pseudo_properties"));
    info.requiredProperties = listOf(tree, at("properties"));
    info.verbs = listOf(tree, at("verbs"));
    for (const std::string& command : childrenOf(tree, at("command")))
        info.commands[command] = valueOf(tree, {"ufct", tag, "command", command});
    info.filter = filterOf(tree, tag);
    return info;
}

CLPSchema::ClassInfo CLPSchema::prepareClass(const Tree& tree) const {
    ClassInfo info;
    info.type = valueOf(tree, {"type"}, "static");
    info.ns = valueOf(tree, {"namespace"}, DEFAULT_NAMESPACE);
    info.parent = valueOf(tree, {"parent"});
    info.verbs = listOf(tree, {"verbs"});
    info.assoc = listOf(tree, {"assoc"});
    info.ufcts = childrenOf(tree, {"ufct"});
    info.addrAssoc = childrenOf(tree, {"children"});
    for (const std::string& assoc : info.addrAssoc)
        info.refs[assoc] = listOf(tree, {"children", assoc});
    const auto unfiltered =
        std::find_if(info.ufcts.begin(), info.ufcts.end(),
                     [this](const std::string& ufct) { return tagOrDefault(ufct).filter.empty(); });
    if (unfiltered != info.ufcts.end())
        info.defaultUfct = *unfiltered;
    return info;
}

CLPSchema::Names CLPSchema::collectChildrenUfcts(const ClassInfo& info) const {
    Names result;
    for (const std::string& assoc : info.addrAssoc)
        for (const std::string& cimclass : info.refs.at(assoc))
            for (const std::string& ufct : getUfcts(cimclass))
                if (std::find(result.begin(), result.end(), ufct) == result.end())
                    result.push_back(ufct);
    return result;
}

} // namespace velmora_clp
