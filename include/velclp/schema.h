#ifndef VELCLP_SCHEMA_H
#define VELCLP_SCHEMA_H

#include <atomic>
#include <fstream>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include <pthread.h>

#include "velclp/tree.h"

namespace velmora_clp {

// The model of the managed classes, read once per process from the schema file (Locations): which
// CIM classes are targets, how they hang together, which class tag (UFcT) each has, how instances
// are numbered, which verbs and properties a tag has and which CIM method a verb means on it.
//
// Every fault of the file ends the process. After loading the object never changes, so any thread
// may read it without a lock; what the getters give is prepared while loading, and the references
// live as long as the schema.
//
// "By class" takes a class name or an alias in any case. "By tag" finds the class of a tag in any
// case, but only a lower-case tag has values. A value that the file does not give is empty unless
// said otherwise; a class or tag that the file does not know is empty too unless it "must be
// known", which means that the process ends otherwise.
class CLPSchema {
public:
    using Names = std::vector<std::string>;
    using Pairs = std::vector<std::pair<std::string, std::string>>;

    // The one schema of the process, made by the first call; never deleted. Any thread.
    static CLPSchema* getInstance();

    // Reads the schema file.
    CLPSchema();
    CLPSchema(const CLPSchema&) = delete;
    CLPSchema& operator=(const CLPSchema&) = delete;
    virtual ~CLPSchema();

    // The section key (lower-case class name) of the class that declares a tag.
    const std::string& getCIMClass(const std::string& ufct) const;
    // True for the name of a section and for an alias, in any case.
    bool hasCIMClass(const std::string& cimclass) const;

    // By tag; must be known: the class that objects of this tag are made of.
    const std::string& getCIMClass_Ufct(const std::string& ufct) const;
    // By tag; must be known: how instances are numbered, type ("nature" or "property") and
    // property; default ("nature", ""). A value that is not two fields ends the process.
    const std::pair<std::string, std::string>& getUfit(const std::string& ufct) const;
    // By tag: the tag that a virtual tag stands for.
    const std::string& getRealUfct(const std::string& ufct) const;
    // By tag: the virtual tags of a tag.
    const Names& getVertualUfcts(const std::string& ufct) const;
    // By tag; must be known: properties that the engine computes.
    const Names& getPseudoProperties(const std::string& ufct) const;
    // By tag: required properties, in the case of the file.
    const Names& getRequiredProperties(const std::string& ufct) const;
    // By tag; must be known: the verbs of the tag.
    const Names& getVerbs_ufct(const std::string& ufct) const;
    // By tag: the entry for a verb word or a form such as "stop.-force" or "set.<property>".
    const std::string& getOptionMap(const std::string& ufct, const std::string& cmd) const;
    // By tag; must be known: the property tests that pick this tag for an object, one pair of
    // property and value for each value.
    const Pairs& getFilter(const std::string& ufct) const;

    // By class; must be known: the verbs of the class.
    const Names& getVerbs_class(const std::string& cimclass) const;
    // By class: association classes of the class.
    const Names& getAssoc(const std::string& cimclass) const;
    // By class; must be known: "static" (default), "dynamic" or another type of the file.
    const std::string& getType(const std::string& cimclass) const;
    // By class: its CIM namespace, by default "root/zorm".
    const std::string& getNS(const std::string& cimclass) const;
    // By class; must be known: the section key of the class above it in the address tree.
    const std::string& getParent(const std::string& cimclass) const;
    // By class: its tags in ascending order.
    const Names& getUfcts(const std::string& cimclass) const;
    // By class: the associations that lead to its children, ascending.
    const Names& getAddrAssoc(const std::string& cimclass) const;
    // By class; must be known: the classes reached through an association, given in lower case.
    const Names& getRefs(const std::string& cimclass, const std::string& assoc) const;
    // By class: every tag that may stand one address term below the class, in first-seen order.
    const Names& getChildren_ufcts(const std::string& cimclass) const;
    // By class, which must have tags: the first tag without a filter; none ends the process.
    const std::string& getDefaultUfct(const std::string& cimclass) const;

private:
    using Tree = MapTree<std::string, std::string>;

    struct NoCaseHash {
        std::size_t operator()(const std::string& text) const;
    };
    struct NoCaseEqual {
        bool operator()(const std::string& a, const std::string& b) const;
    };
    template<typename T>
    using NoCaseMap = std::unordered_map<std::string, T, NoCaseHash, NoCaseEqual>;

    // What the getters answer, prepared from the trees.
    struct TagInfo {
        std::string tag, section, cimclass, realUfct;
        std::pair<std::string, std::string> ufit{"nature", ""};
        std::size_t ufitFields = 2;
        Names virtualUfcts, pseudoProperties, requiredProperties, verbs;
        std::unordered_map<std::string, std::string> commands;
        Pairs filter;
    };
    struct ClassInfo {
        std::string type, ns, parent, defaultUfct;
        Names verbs, assoc, ufcts, addrAssoc, childrenUfcts;
        std::unordered_map<std::string, Names> refs;
    };

    void initClass(std::ifstream& config, const char* buf);
    void addClassElement(const std::string& line, const std::string& key, Tree* _class);
    void addClassUfct(std::ifstream& config, const std::string& key, const std::string& line,
                      Tree* _class);
    void addUfctElement(const std::string& line, const std::string& ufct, Tree* _class);
    static void addElement(const std::vector<std::string>& path, const std::string& value,
                           const char* unique, Tree& tree);

    void prepare();
    ClassInfo prepareClass(const Tree& tree) const;
    static TagInfo prepareTag(const Tree& tree, const std::string& tag, const std::string& section);
    Names collectChildrenUfcts(const ClassInfo& info) const;

    const ClassInfo* findClass(const std::string& cimclass) const;
    const ClassInfo& knownClass(const std::string& cimclass) const;
    const ClassInfo& classOrDefault(const std::string& cimclass) const;
    static const TagInfo& declared(const TagInfo* info, const std::string& ufct);
    const TagInfo& tagOrDefault(const std::string& ufct) const;
    const TagInfo& knownTag(const std::string& ufct) const;

    static std::atomic<CLPSchema*> instance_;
    static pthread_mutex_t instance_lock_;

    std::map<std::string, std::string> m_ufctIndex;
    std::map<std::string, std::string> m_aliasIndex;
    std::map<std::string, std::unique_ptr<Tree>> m_classTree;

    std::map<std::string, ClassInfo> m_classes;
    NoCaseMap<const ClassInfo*> m_classByName;
    NoCaseMap<TagInfo> m_tags;
};

} // namespace velmora_clp

#endif
