// The tree form of the verb show: the walk that collects targets, associations and what hangs
// below.
#include "output/classes.h"
#include "output/displayoption.h"
#include "output/joins.h"
#include "output/lastterm.h"
#include "velclp/assertion.h"
#include "velclp/core_misc.h"
#include "velclp/log.h"
#include "velclp/schema.h"
#include "velclp/showcommand.h"
#include "velclp/token.h"

namespace velmora_clp {

namespace {

constexpr char const* FUNCTION = "CLP.CLPShowCommand.show";

std::string tagOrTerm(const std::string& cimclass, const Target& target) {
    const std::string ufct = defaultTagOfClass(cimclass);
    return ufct.empty() ? lastTermOf(target.ufip).ufct : ufct;
}

std::string typeOf(const std::string& cimclass) {
    const CLPSchema& schema = *CLPSchema::getInstance();
    return schema.hasCIMClass(cimclass) ? schema.getType(cimclass) : "static";
}

void append(OwnedTargetGroup& group, const std::string& cimclass, OwnedTarget target) {
    if (!group) {
        group.reset(new TargetGroup);
        group->ufct = tagOrTerm(cimclass, *target);
        group->type = typeOf(cimclass);
    }
    group->targets.push_back(target.get());
    static_cast<void>(target.release());
}

// A list of groups that a walk may make, owned until somebody takes it.
class FoundGroups {
public:
    FoundGroups() = default;
    FoundGroups(const FoundGroups&) = delete;
    FoundGroups& operator=(const FoundGroups&) = delete;
    ~FoundGroups() { const OwnedTargetGroups owned(m_groups); }

    std::list<TargetGroup*>** out() { return &m_groups; }
    bool empty() const { return !m_groups || m_groups->empty(); }
    void moveTo(std::list<TargetGroup*>& list) { list.splice(list.end(), *m_groups); }

private:
    std::list<TargetGroup*>* m_groups = nullptr;
};

void append(std::list<TargetGroup*>& list, OwnedTargetGroup group) {
    list.push_back(group.get());
    static_cast<void>(group.release());
}

} // namespace

// The list is made when the first group comes.
struct CLPShowCommand::GroupList {
    std::list<TargetGroup*>** place;

    std::list<TargetGroup*>& get() const {
        if (!*place)
            *place = new std::list<TargetGroup*>;
        return **place;
    }
};

void CLPShowCommand::showTree(const std::vector<CMPIObjectPath*>& objects) {
    const int depth = level();
    const GroupList result = {&m_response};
    bool deepest = true;
    OwnedTargetGroup group;
    for (CMPIObjectPath* object : objects) {
        checkpoint();
        bool found = false;
        FoundGroups below;
        OwnedTarget target(show(cimClone(object).release(), depth, found, below.out()));
        if (!target && !below.empty())
            below.moveTo(result.get());
        if (depth > 1 && found)
            deepest = false;
        if (target) {
            const std::string cimclass = cimClassName(target->object);
            if (cimclass.empty())
                break;
            append(group, cimclass, std::move(target));
        }
        if (m_error)
            break;
    }
    if (group) {
        group->deepest = deepest;
        append(result.get(), std::move(group));
    }
    finish("CLP.CLPShowCommand.svc");
}

Target* CLPShowCommand::show(CMPIObjectPath* object, int level, bool& found,
                             std::list<TargetGroup*>** groups) {
    VELCLP_TRACE(FUNCTION);
    CimPath owned(object);
    checkpoint();
    if (m_error || !object)
        return nullptr;
    const std::string ufip = addressOf(addresses(), object);
    const LastTerm last = lastTermOf(ufip);
    if (last.term.empty())
        return nullptr;
    OwnedTarget target;
    if (passesFilter(object, level, last.ufct)) {
        target.reset(new Target);
        target->object = owned.release();
        target->ufip = ufip;
        if (wantsAssociations(level) && !gatherAssociations(*target, level))
            return level == 1 && !line()._AssocClass.empty() ? nullptr : target.release();
    } else {
        VELCLP_LOG_BRANCH(FUNCTION, "Pass filter failed!");
        if (level == 1)
            return nullptr;
    }
    if (level >= 1 && line()._AssocClass.empty()) {
        GroupList below = {target ? &target->groups : groups};
        showChildren(object, CLPSchema::getInstance()->getCIMClass(last.ufct), level, found, below);
    }
    return target.release();
}

bool CLPShowCommand::passesFilter(CMPIObjectPath* object, int level,
                                  const std::string& ufct) const {
    if (level <= 0)
        return level == 0;
    std::map<std::string, std::string> filters;
    for (const std::string& name : line().getPropertyNames(CLPToken::FILTER_PROPERTY)) {
        const bool f = line().getProperty(name, filters[name], CLPToken::FILTER_PROPERTY);
        VELCLP_ASSERT(f, "f");
    }
    return CLPMisc::checkFilter(m_client, object, ufct,
                                line().getPropertyNames(CLPToken::PROPERTY_NAME), filters);
}

bool CLPShowCommand::wantsAssociations(int level) const {
    return level > 0 &&
           (line().hasOption(OPT_DISPLAY_ALL) || line().hasOption(OPT_DISPLAY_ASSOCIATIONS) ||
            !line().hasOption(OPT_DISPLAY) || !line()._AssocClass.empty());
}

bool CLPShowCommand::gatherAssociations(Target& target, int level) {
    std::string association;
    CimPath reference;
    bool done = true;
    if (level == 1 && !line()._AssocClass.empty()) {
        association = CLPSchema::getInstance()->getCIMClass(line()._AssocClass);
        done = !association.empty() && (line()._Ref.empty() || findReference(reference));
    }
    done = done && collectAssociations(target, association, reference.get()) &&
           (!reference || !target.associations.empty());
    if (!done)
        setJobError(JobError::Unavailable_Resource_Error, JobError::CIM_ERR_NOT_FOUND,
                    JobError::S_Low);
    return done;
}

bool CLPShowCommand::findReference(CimPath& reference) {
    std::string text = line()._Ref;
    CLPAddrpath end("/admin1", "/admin1");
    if (!normalTarget(addresses(), text) || !setAddress(end, m_cdt, text))
        return false;
    const CimPaths tmp(addresses().getCIMObjectPath(end));
    VELCLP_ASSERT(static_cast<int>(tmp.size()) <= 1, "static_cast<int>(tmp.size())<=1");
    if (!tmp.empty())
        reference = cimClone(tmp.front());
    return reference != nullptr;
}

bool CLPShowCommand::collectAssociations(Target& target, const std::string& association,
                                         CMPIObjectPath* reference) const {
    CimStatus status;
    const CimEnumeration names(m_client->ft->referenceNames(
        m_client, target.object, association.empty() ? nullptr : association.c_str(), nullptr,
        status.out()));
    if (!status.ok() || !names || !names->ft->hasNext(names.get(), nullptr))
        return false;
    while (names->ft->hasNext(names.get(), nullptr)) {
        const CMPIData entry = names->ft->getNext(names.get(), status.out());
        if (!entry.value.ref) {
            VELCLP_LOG_BRANCH(FUNCTION, "Has no object!");
            continue;
        }
        if (reference && !joins(entry.value.ref, target.object, reference))
            continue;
        CimPath clone = cimClone(entry.value.ref);
        if (!clone)
            continue;
        target.associations.push_back(clone.get());
        static_cast<void>(clone.release());
        if (reference)
            break;
    }
    return true;
}

bool CLPShowCommand::joins(CMPIObjectPath* association, CMPIObjectPath* object,
                           CMPIObjectPath* reference) const {
    CimStatus status;
    const CimInstance instance(m_client->ft->getInstance(
        m_client, association, CMPI_FLAG_IncludeQualifiers, nullptr, status.out()));
    if (!status.ok() || !instance) {
        VELCLP_LOG_BRANCH(FUNCTION, "GetInstance failed!=[%d]", static_cast<int>(status.rc()));
        return false;
    }
    const unsigned int count = instance->ft->getPropertyCount(instance.get(), status.out());
    Joins ends(object, reference);
    for (unsigned int i = 0; i < count && !ends.both(); ++i)
        ends.look(instance->ft->getPropertyAt(instance.get(), i, nullptr, status.out()));
    if (ends.both())
        VELCLP_LOG_BRANCH(FUNCTION, "Find ob and pref!");
    return ends.both();
}

void CLPShowCommand::showChildren(CMPIObjectPath* object, const std::string& cimclass, int level,
                                  bool& found, GroupList& below) {
    VELCLP_LOG_BRANCH(FUNCTION, "look subtarget!");
    const CLPSchema& schema = *CLPSchema::getInstance();
    for (const std::string& association : schema.getAddrAssoc(cimclass)) {
        bool deepest = true;
        for (const std::string& reference : schema.getRefs(cimclass, association))
            if (!showReferences(object, association, reference, level, deepest, found, below))
                return;
    }
}

// False when the walk is to stop.
bool CLPShowCommand::showReferences(CMPIObjectPath* object, const std::string& association,
                                    const std::string& reference, int level, bool& deepest,
                                    bool& found, GroupList& below) {
    CimStatus status;
    const CimEnumeration names(m_client->ft->associatorNames(
        m_client, object, association.c_str(), reference.c_str(), nullptr, nullptr, status.out()));
    if (!status.ok() || !names) {
        VELCLP_LOG_FAILURE(FUNCTION, "fail to ain=[%x]", static_cast<int>(status.rc()));
        return true;
    }
    OwnedTargetGroup group;
    while (!m_error && names->ft->hasNext(names.get(), nullptr)) {
        const CMPIData data = names->ft->getNext(names.get(), status.out());
        VELCLP_ASSERT(data.value.ref != nullptr, "data.value.ref");
        bool innerFound = false;
        FoundGroups inner;
        OwnedTarget target(
            show(cimClone(data.value.ref).release(), level - 1, innerFound, inner.out()));
        if (!target && !inner.empty())
            inner.moveTo(below.get());
        if (level > 2 && innerFound)
            deepest = false;
        if (target)
            append(group, reference, std::move(target));
    }
    if (group) {
        found = true;
        group->deepest = deepest;
        append(below.get(), std::move(group));
    }
    return !m_error;
}

} // namespace velmora_clp
