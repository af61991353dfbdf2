// Operations that follow associations, from instances and from classes.
#include "simulator/operations.h"

#include <algorithm>
#include <unordered_set>

namespace velclp_sim {

namespace {

bool admits(const std::string& wanted, const std::string& name) {
    return wanted.empty() || sameName(wanted, name);
}

} // namespace

void Operations::checkClassFilter(const std::string& name) const {
    const auto spaces = repository_.namespaces();
    const bool known =
        name.empty() || std::any_of(spaces.begin(), spaces.end(), [&](const auto& s) {
            return repository_.findClass(s, name) != nullptr;
        });
    if (!known) {
        throw CimError(CimStatus::invalidParameter, name);
    }
}

Operations::Walk Operations::walk(const RequestArguments& in, bool references) const {
    Walk walk;
    walk.object = in.path("ObjectName");
    walk.associationClass =
        in.optionalClassName(references ? "ResultClass" : "AssocClass").value_or("");
    walk.role = in.optionalText("Role").value_or("");
    if (!references) {
        walk.resultClass = in.optionalClassName("ResultClass").value_or("");
        walk.resultRole = in.optionalText("ResultRole").value_or("");
    }
    checkClassFilter(walk.associationClass);
    checkClassFilter(walk.resultClass);
    if (!repository_.findClass(walk.object.nameSpace(), walk.object.className())) {
        throw CimError(CimStatus::invalidParameter, walk.object.className());
    }
    return walk;
}

bool Operations::isSubclassOf(const ObjectPath& object, const std::string& className) const {
    const Class* cls = repository_.findClass(object.nameSpace(), object.className());
    return cls ? cls->isA(className) : sameName(object.className(), className);
}

std::vector<Link> Operations::walkLinks(const Walk& walk) {
    if (walk.resultClass.empty()) {
        providers_.refreshAll();
    } else {
        providers_.refresh(
            repository_.requireClass(walk.object.nameSpace(), walk.object.className()));
        for (const std::string& space : repository_.namespaces()) {
            if (const Class* cls = repository_.findClass(space, walk.resultClass)) {
                providers_.refresh(*cls);
            }
        }
    }
    std::vector<Link> links = repository_.links(walk.object, [&](const Class& cls) {
        return walk.associationClass.empty() || cls.isA(walk.associationClass);
    });
    const auto otherRole = [&](const Link& link) {
        return !admits(walk.role, link.association->cls().properties[link.role].name);
    };
    links.erase(std::remove_if(links.begin(), links.end(), otherRole), links.end());
    return links;
}

std::vector<ObjectPath> Operations::walkEnds(const Walk& walk) {
    std::vector<ObjectPath> ends;
    std::unordered_set<std::string> seen;
    for (const Link& link : walkLinks(walk)) {
        const Class& cls = link.association->cls();
        for (std::size_t i = 0; i < cls.properties.size(); ++i) {
            const ObjectPath* end = link.association->at(i).toPath();
            if (end && i != link.role && admits(walk.resultRole, cls.properties[i].name) &&
                (walk.resultClass.empty() || isSubclassOf(*end, walk.resultClass)) &&
                seen.insert(end->toText()).second) {
                ends.push_back(*end);
            }
        }
    }
    return ends;
}

std::vector<const Class*> Operations::classLinks(const Walk& walk) const {
    const Class& object =
        repository_.requireClass(walk.object.nameSpace(), walk.object.className());
    std::vector<const Class*> result;
    for (const Class* cls : repository_.subclasses(object.nameSpace, "", true)) {
        const bool refers = std::any_of(
            cls->properties.begin(), cls->properties.end(), [&](const Property& property) {
                return property.type == CimType::reference && admits(walk.role, property.name) &&
                       object.isA(property.referenceClass);
            });
        if (cls->isAssociation() && refers &&
            (walk.associationClass.empty() || cls->isA(walk.associationClass))) {
            result.push_back(cls);
        }
    }
    return result;
}

std::vector<const Class*> Operations::classEnds(const Walk& walk) const {
    const Class& object =
        repository_.requireClass(walk.object.nameSpace(), walk.object.className());
    std::vector<const Class*> ends;
    const auto consider = [&](const Property& end) {
        const Class* cls = repository_.findClass(object.nameSpace, end.referenceClass);
        if (cls && admits(walk.resultRole, end.name) &&
            (walk.resultClass.empty() || cls->isA(walk.resultClass)) &&
            std::find(ends.begin(), ends.end(), cls) == ends.end()) {
            ends.push_back(cls);
        }
    };
    for (const Class* association : classLinks(walk)) {
        for (const Property& from : association->properties) {
            if (from.type != CimType::reference || !object.isA(from.referenceClass) ||
                !admits(walk.role, from.name)) {
                continue;
            }
            for (const Property& to : association->properties) {
                if (&to != &from && to.type == CimType::reference) {
                    consider(to);
                }
            }
        }
    }
    return ends;
}

void Operations::writePaths(const std::vector<ObjectPath>& paths, std::string& out) const {
    CimXmlWriter writer(out);
    for (const ObjectPath& path : paths) {
        writer.open("OBJECTPATH");
        writer.openEnd();
        writer.objectPath(path, hostName_);
        writer.close("OBJECTPATH");
    }
}

void Operations::writeObject(const Instance& instance, Selection& selection,
                             std::string& out) const {
    CimXmlWriter writer(out);
    writer.open("VALUE.OBJECTWITHPATH");
    writer.openEnd();
    writer.objectPath(instance.path(), hostName_);
    writer.instance(instance, selection.of(instance.cls()));
    writer.close("VALUE.OBJECTWITHPATH");
}

void Operations::writeClasses(const std::vector<const Class*>& classes, Selection& selection,
                              std::string& out) const {
    CimXmlWriter writer(out);
    for (const Class* cls : classes) {
        writer.open("VALUE.OBJECTWITHPATH");
        writer.openEnd();
        writer.objectPath({cls->nameSpace, cls->name}, hostName_);
        writer.cls(*cls, selection.of(*cls), false);
        writer.close("VALUE.OBJECTWITHPATH");
    }
}

namespace {

std::vector<ObjectPath> classPaths(const std::vector<const Class*>& classes) {
    std::vector<ObjectPath> paths;
    std::transform(classes.begin(), classes.end(), std::back_inserter(paths),
                   [](const Class* cls) { return ObjectPath(cls->nameSpace, cls->name); });
    return paths;
}

/// The association instances, each once, though one may refer to the object in two roles.
std::vector<InstancePtr> distinct(const std::vector<Link>& links) {
    std::vector<InstancePtr> result;
    for (const Link& link : links) {
        if (result.empty() || result.back() != link.association) {
            result.push_back(link.association);
        }
    }
    return result;
}

} // namespace

void Operations::associatorNames(const RequestArguments& in, const Caller& /*caller*/,
                                 std::string& out) {
    const Walk way = walk(in, false);
    writePaths(way.object.keys().empty() ? classPaths(classEnds(way)) : walkEnds(way), out);
}

void Operations::associators(const RequestArguments& in, const Caller& /*caller*/,
                             std::string& out) {
    const Walk way = walk(in, false);
    Selection selection(in, false);
    if (way.object.keys().empty()) {
        writeClasses(classEnds(way), selection, out);
        return;
    }
    for (const ObjectPath& end : walkEnds(way)) {
        const bool known = repository_.findClass(end.nameSpace(), end.className()) != nullptr;
        if (const InstancePtr instance = known ? repository_.find(end) : nullptr) {
            writeObject(*instance, selection, out);
        }
    }
}

void Operations::referenceNames(const RequestArguments& in, const Caller& /*caller*/,
                                std::string& out) {
    const Walk way = walk(in, true);
    if (way.object.keys().empty()) {
        writePaths(classPaths(classLinks(way)), out);
        return;
    }
    std::vector<ObjectPath> paths;
    for (const InstancePtr& association : distinct(walkLinks(way))) {
        paths.push_back(association->path());
    }
    writePaths(paths, out);
}

void Operations::references(const RequestArguments& in, const Caller& /*caller*/,
                            std::string& out) {
    const Walk way = walk(in, true);
    Selection selection(in, false);
    if (way.object.keys().empty()) {
        writeClasses(classLinks(way), selection, out);
        return;
    }
    for (const InstancePtr& association : distinct(walkLinks(way))) {
        writeObject(*association, selection, out);
    }
}

} // namespace velclp_sim
