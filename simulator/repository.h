// What the simulated CIM server knows: namespaces, qualifier types, classes and instances.
// Instances are found by path through a hash, class by class in the order in which they were added,
// and along associations through an index of the objects that association instances refer to.
//
// Every operation may be called from any thread and takes the repository's lock for its own time
// only. What is handed out are immutable snapshots: a change replaces an instance, so a reader goes
// on with what it has. Namespaces, class names and keys match without case.
#pragma once

#include "simulator/cimclass.h"
#include "simulator/cimerror.h"

#include <functional>
#include <map>
#include <memory>
#include <shared_mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace velclp_sim {

using InstancePtr = std::shared_ptr<const Instance>;

/// An association instance seen from one of the objects that it joins.
struct Link {
    InstancePtr association;
    /// Index of the reference property that names the object which was asked for.
    std::size_t role = 0;
};

class Repository {
public:
    using ClassFilter = std::function<bool(const Class&)>;

    Repository();
    ~Repository();

    // --- namespaces, qualifier types and classes ---

    void addNamespace(std::string_view nameSpace);
    bool hasNamespace(std::string_view nameSpace) const;
    std::vector<std::string> namespaces() const;

    /// Declares (or declares again) a qualifier type; its value is the default.
    void addQualifierType(std::string_view nameSpace, QualifierType type);
    /// Null when the namespace has no such qualifier type.
    const QualifierType* findQualifierType(std::string_view nameSpace, std::string_view name) const;

    /// Takes a complete class over and seals it; the namespace is made when it is new. Throws
    /// CIM_ERR_ALREADY_EXISTS.
    const Class& addClass(std::unique_ptr<Class> cls);
    /// Null when there is no such class or namespace. Good for the repository's life.
    const Class* findClass(std::string_view nameSpace, std::string_view name) const;
    /// As findClass, but throws CIM_ERR_INVALID_NAMESPACE or CIM_ERR_INVALID_CLASS.
    const Class& requireClass(std::string_view nameSpace, std::string_view name) const;
    /// The direct subclasses (of all depths when `deep`) in the order of declaration, without the
    /// class itself; an empty name means the top-level classes.
    std::vector<const Class*> subclasses(std::string_view nameSpace, std::string_view name,
                                         bool deep) const;

    // --- instances ---

    /// The path in the form that its class declares: canonical class and key names, keys in
    /// declaration order, values of the declared types, nested references likewise. A reference
    /// without a namespace gets the namespace of the path it stands in. Throws
    /// CIM_ERR_INVALID_NAMESPACE, CIM_ERR_INVALID_CLASS, CIM_ERR_INVALID_PARAMETER (keys missing or
    /// unknown) and CIM_ERR_TYPE_MISMATCH.
    ObjectPath canonical(const ObjectPath& path) const;

    /// The instance; null when there is none. Throws as canonical() does.
    InstancePtr find(const ObjectPath& path) const;

    /// Instances of the class and its subclasses in the repository's order. Throws
    /// CIM_ERR_INVALID_NAMESPACE and CIM_ERR_INVALID_CLASS.
    std::vector<InstancePtr> instances(std::string_view nameSpace,
                                       std::string_view className) const;

    /// Adds the instance at the end and gives its path. Throws CIM_ERR_ALREADY_EXISTS,
    /// CIM_ERR_INVALID_PARAMETER (a key is NULL), CIM_ERR_FAILED (an abstract class).
    ObjectPath add(Instance instance);

    /// Changes an instance in one step: `change` gets a copy under the repository's lock and must
    /// not call the repository. Keys cannot change (CIM_ERR_NOT_SUPPORTED). Throws
    /// CIM_ERR_NOT_FOUND, and whatever `change` throws, with nothing changed then.
    void update(const ObjectPath& path, const std::function<void(Instance&)>& change);

    /// Removes the instance and every association instance that refers to it. False when there is
    /// no such instance.
    bool remove(const ObjectPath& path);

    /// Puts the instances of the class (exactly of it) into a new order: the paths that are given
    /// first, the others behind them as they were. Association instances that refer to them are
    /// moved alike, so that walks meet the objects in the new order.
    void reorder(std::string_view nameSpace, std::string_view className,
                 const std::vector<ObjectPath>& first);

    /// The association instances that refer to the object, of the classes that the filter takes
    /// (null: all), in the repository's order; one entry for each reference to the object.
    std::vector<Link> links(const ObjectPath& object, const ClassFilter& filter = nullptr) const;

private:
    struct Node;
    struct Space;
    using Position = std::map<std::uint64_t, Node*>;
    /// What refers to one object, a list for each association class.
    using Endpoint = std::vector<std::pair<const Class*, Position>>;

    const Space* findSpace(std::string_view nameSpace) const;
    const Class* lookUp(std::string_view nameSpace, std::string_view name) const;
    const Class& demand(std::string_view nameSpace, std::string_view name) const;
    ObjectPath canonicalPath(const ObjectPath& path, int depth) const;
    Value canonicalReference(const Value& value, const std::string& nameSpace, int depth) const;
    void canonicalReferences(Instance& instance) const;
    Node* findNode(const ObjectPath& path) const;
    void link(Node& node);
    void unlink(Node& node);
    void removeNode(Node& node);
    void move(const std::vector<Node*>& order);
    std::vector<Node*> linksOf(const std::vector<Node*>& order, const Class& association) const;

    mutable std::shared_mutex mutex_;
    std::unordered_map<std::string, std::unique_ptr<Space>, NameHash, NameEqual> spaces_;
    std::vector<std::string> spaceNames_;
    std::unordered_map<std::string, std::unique_ptr<Node>> nodes_;
    std::unordered_map<const Class*, Position> extents_;
    std::unordered_map<std::string, Endpoint> endpoints_;
    std::uint64_t nextPosition_ = 1;
};

} // namespace velclp_sim
