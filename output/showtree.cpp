#include "output/showtree.h"

#include "output/classes.h"
#include "output/displayoption.h"
#include "output/lastterm.h"
#include "output/paging.h"
#include "output/propvalue.h"
#include "schema/cimnamespace.h"
#include "velclp/addrsvc.h"
#include "velclp/clpcommand.h"
#include "velclp/schema.h"
#include "velclp/token.h"

namespace velmora_clp {

namespace {

std::string associationTag(CMPIObjectPath* path) {
    return defaultTagOf(schemaClassOf(cimClassName(path)));
}

} // namespace

COutputer::ShowTree::ShowTree(COutputer& output, const CLPToken& line, const _show_filter& filter,
                              int form, CLPCommand& command)
    : m_output(output),
      m_line(line),
      m_filter(filter),
      m_command(command),
      m_form(ShowForm::make(form, *output.m_transport)) {}

void COutputer::ShowTree::print(std::list<TargetGroup*>& groups) {
    while (!groups.empty()) {
        m_command.checkpoint();
        const OwnedTargetGroup group(groups.front());
        groups.pop_front();
        printGroup(*group);
    }
}

void COutputer::ShowTree::printGroup(TargetGroup& group) {
    if (group.deepest)
        cutToPage(group);
    while (!group.targets.empty()) {
        m_command.checkpoint();
        const OwnedTarget target(group.targets.front());
        group.targets.pop_front();
        printTarget(group, *target);
    }
}

void COutputer::ShowTree::cutToPage(TargetGroup& group) const {
    std::list<Target*>& targets = group.targets;
    const Page page = treePage(m_line, static_cast<long>(targets.size()));
    TargetGroup dropped;
    dropped.targets.splice(dropped.targets.end(), targets, targets.begin(),
                           std::next(targets.begin(), page.start));
    dropped.targets.splice(dropped.targets.end(), targets,
                           std::next(targets.begin(), page.end - page.start), targets.end());
    for (Target* target : dropped.targets)
        freeTarget(target);
    if (isReverse(m_line))
        targets.reverse();
}

void COutputer::ShowTree::printTarget(const TargetGroup& group, Target& target) {
    bool shown = false;
    {
        // The server is not asked for what is not selected anyway.
        const CimInstance instance =
            isSelected(group, target) ? readInstance(target.object) : nullptr;
        if (instance)
            dropUnselectedAssociations(target);
        std::vector<ShownProperty> properties;
        shown = instance && collectProperties(group, target, instance.get(), properties);
        if (shown)
            printSections(group, target, properties);
    }
    if (!group.deepest && target.groups)
        print(*target.groups);
    if (shown)
        m_form->closeTarget();
}

CimInstance COutputer::ShowTree::readInstance(CMPIObjectPath* object) const {
    CimStatus status;
    CMCIClient* client = m_output.m_client;
    CimInstance instance(client->ft->getInstance(client, object, 0, nullptr, status.out()));
    return status.ok() ? std::move(instance) : nullptr;
}

bool COutputer::ShowTree::isSelected(const TargetGroup& group, const Target& target) const {
    if (beginsWithOem(group.ufct))
        return has(_show_filter::OEM_TARGETS);
    return m_filter.targets.empty() || listed(m_filter.targets, lastTermOf(target.ufip).ufct);
}

bool COutputer::ShowTree::isNamed(const std::string& property) const {
    return m_filter.properties.empty() || listed(m_filter.properties, property);
}

bool COutputer::ShowTree::collectProperties(const TargetGroup& group, const Target& target,
                                            CMPIInstance* instance,
                                            std::vector<ShownProperty>& properties) {
    if (!has(_show_filter::PROPERTIES))
        return true;
    const std::string cimclass = cimClassName(target.object);
    CMPIConstClass* definition = m_output.class_of(namespaceOf(cimclass), cimclass);
    const std::vector<std::string>& required =
        CLPSchema::getInstance()->getRequiredProperties(group.ufct);
    CimStatus status;
    const unsigned int count = instance->ft->getPropertyCount(instance, status.out());
    for (unsigned int i = 0; i < count; ++i) {
        CMPIString* raw = nullptr;
        const CMPIData data = instance->ft->getPropertyAt(instance, i, &raw, status.out());
        const CimString owned(raw);
        const std::string name = cimText(raw);
        if (!status.ok() || name.empty())
            continue;
        if ((has(_show_filter::ALL_PROPERTIES) || listed(required, name)) && isNamed(name))
            properties.push_back({name, copyValue(data, definition, name)});
    }
    collectPseudoProperties(group.ufct, target.object, properties);
    return m_filter.properties.empty() || !properties.empty();
}

void COutputer::ShowTree::collectPseudoProperties(const std::string& ufct, CMPIObjectPath* object,
                                                  std::vector<ShownProperty>& properties) {
    const CLPSchema& schema = *CLPSchema::getInstance();
    if (schema.getCIMClass(ufct).empty())
        return;
    for (const std::string& name : schema.getPseudoProperties(ufct)) {
        if (!isNamed(name))
            continue;
        m_command.checkpoint();
        OwnedPropValue value(m_output.getPseudoPropertyValue(ufct, name, object));
        if (!value)
            value = copyValue(CMPIData{CMPI_null, CMPI_nullValue, {}});
        properties.push_back({name, std::move(value)});
    }
}

bool COutputer::ShowTree::opens(_show_filter::Flag section) const {
    if (!has(section))
        return false;
    m_command.checkpoint();
    return true;
}

void COutputer::ShowTree::printSections(const TargetGroup& group, const Target& target,
                                        const std::vector<ShownProperty>& properties) {
    const CLPSchema& schema = *CLPSchema::getInstance();
    m_form->openTarget(target.ufip);
    if (opens(_show_filter::PROPERTIES))
        m_form->properties(properties);
    if (opens(_show_filter::VERBS)) {
        static const CLPSchema::Names none;
        const bool known = !schema.getCIMClass(group.ufct).empty();
        m_form->verbs(known ? schema.getVerbs_ufct(group.ufct) : none,
                      has(_show_filter::OEM_VERBS));
    }
    if (opens(_show_filter::ASSOCIATIONS))
        printAssociations(target);
    if (opens(_show_filter::TARGETS))
        m_form->targets(termsBelow(target));
    m_form->closeInstance();
}

// Before anything of the target is printed, since a class without a prefix ends the command.
void COutputer::ShowTree::dropUnselectedAssociations(Target& target) const {
    if (m_filter.associations.empty())
        return;
    std::list<CMPIObjectPath*>& paths = target.associations;
    for (auto path = paths.begin(); path != paths.end();) {
        if (listed(m_filter.associations, associationTag(*path))) {
            ++path;
            continue;
        }
        const CimPath dropped(*path);
        path = paths.erase(path);
    }
}

void COutputer::ShowTree::printAssociations(const Target& target) {
    m_form->openAssociations();
    for (CMPIObjectPath* path : target.associations) {
        m_command.checkpoint();
        ShownAssociation association;
        association.ufct = associationTag(path);
        const CimInstance instance = readInstance(path);
        if (!instance)
            continue;
        association.ends = collectEnds(instance.get(), target);
        m_form->association(association, target.ufip);
    }
    m_form->closeAssociations();
}

std::vector<ShownEnd> COutputer::ShowTree::collectEnds(CMPIInstance* association,
                                                       const Target& target) {
    const Addressed own = {target.object, target.ufip};
    std::vector<ShownEnd> ends;
    CimStatus status;
    const unsigned int count = association->ft->getPropertyCount(association, status.out());
    for (unsigned int i = 0; i < count; ++i) {
        CMPIString* raw = nullptr;
        const CMPIData data = association->ft->getPropertyAt(association, i, &raw, status.out());
        const CimString owned(raw);
        if (!status.ok() || cimText(raw).empty())
            continue;
        ShownEnd end = {cimText(raw), "", data.type == CMPI_ref};
        if (!end.isReference)
            end.value = data.type & CMPI_ARRAY ? "" : shownText(data, nullptr, nullptr).value;
        else if (!isNullValue(data))
            end.value = referredAddress(m_output.addresses(), data, own);
        if (!end.value.empty())
            ends.push_back(std::move(end));
    }
    return ends;
}

std::vector<std::string> COutputer::ShowTree::termsBelow(const Target& target) const {
    std::vector<std::string> terms;
    if (!target.groups)
        return terms;
    for (const TargetGroup* group : *target.groups) {
        if (beginsWithOem(group->ufct) && !has(_show_filter::OEM_TARGETS))
            continue;
        for (const Target* below : group->targets)
            terms.push_back(lastTermOf(below->ufip).term);
    }
    return terms;
}

} // namespace velmora_clp
