// Inner records of the repository: one namespace's declarations, and one stored instance.
#pragma once

#include "simulator/repository.h"

namespace velclp_sim {

struct Repository::Space {
    std::string name;
    /// In the order of declaration.
    std::vector<std::unique_ptr<Class>> classes;
    std::unordered_map<std::string_view, const Class*, NameHash, NameEqual> byName;
    /// Direct subclasses; null stands for "no superclass".
    std::unordered_map<const Class*, std::vector<const Class*>> children;
    std::unordered_map<std::string, std::unique_ptr<QualifierType>, NameHash, NameEqual>
        qualifierTypes;
};

struct Repository::Node {
    /// The canonical path in a form that is equal for equal paths only.
    std::string id;
    std::uint64_t position = 0;
    InstancePtr instance;
};

/// The id of a canonical path.
std::string pathId(const ObjectPath& path);

} // namespace velclp_sim
