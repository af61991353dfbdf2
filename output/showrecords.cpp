#include "velclp/showrecords.h"

#include "velclp/cimhandle.h"

namespace velmora_clp {

namespace {

void freeValues(std::map<std::string, PropValue*>& properties) {
    for (auto& property : properties) {
        freePropValue(property.second);
        property.second = nullptr;
    }
}

void releaseInstance(CMPIInstance*& instance) {
    const CimInstance old(instance);
    instance = nullptr;
}

} // namespace

FilterResult::~FilterResult() {
    startObject(nullptr);
}

void FilterResult::startObject(CMPIObjectPath* next) {
    object = next;
    address.clear();
    internal_address.clear();
    releaseInstance(instance);
    freeValues(properties);
    freeValues(pseudo_properties);
}

void freeTarget(Target* target) {
    if (!target)
        return;
    const CimPath object(target->object);
    const CimPaths associations(
        std::vector<CMPIObjectPath*>(target->associations.begin(), target->associations.end()));
    const OwnedTargetGroups groups(target->groups);
    delete target;
}

void freeTargetGroup(TargetGroup* group) {
    if (!group)
        return;
    while (!group->targets.empty()) {
        const OwnedTarget target(group->targets.front());
        group->targets.pop_front();
    }
    delete group;
}

void freeTargetGroups(std::list<TargetGroup*>& groups) {
    while (!groups.empty()) {
        const OwnedTargetGroup group(groups.front());
        groups.pop_front();
    }
}

void ShowRecordDeleter::operator()(std::list<TargetGroup*>* groups) const {
    freeTargetGroups(*groups);
    delete groups;
}

} // namespace velmora_clp
