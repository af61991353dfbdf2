// Instances: look-up by path, extents of classes, and the index along associations.
#include "simulator/repository.h"

#include "simulator/repository_space.h"

#include <algorithm>
#include <mutex>
#include <unordered_set>

namespace velclp_sim {

namespace {

/// Calls `visit` for each object that an association instance refers to, with its property's index.
template<class Visit>
void eachEnd(const Instance& association, const Visit& visit) {
    const Class& cls = association.cls();
    if (!cls.isAssociation()) {
        return;
    }
    for (std::size_t i = 0; i < cls.properties.size(); ++i) {
        if (const ObjectPath* end = association.at(i).toPath()) {
            visit(i, *end);
        }
    }
}

template<class Endpoint>
auto findList(Endpoint& endpoint, const Class* cls) {
    return std::find_if(endpoint.begin(), endpoint.end(),
                        [cls](const auto& list) { return list.first == cls; });
}

} // namespace

Repository::Node* Repository::findNode(const ObjectPath& path) const {
    const auto found = nodes_.find(pathId(canonicalPath(path, 0)));
    return found == nodes_.end() ? nullptr : found->second.get();
}

InstancePtr Repository::find(const ObjectPath& path) const {
    const std::shared_lock<std::shared_mutex> lock(mutex_);
    const Node* node = findNode(path);
    return node ? node->instance : nullptr;
}

std::vector<InstancePtr> Repository::instances(std::string_view nameSpace,
                                               std::string_view className) const {
    const std::shared_lock<std::shared_mutex> lock(mutex_);
    const Class& top = demand(nameSpace, className);
    std::vector<const Class*> family{&top};
    const Space& space = *findSpace(nameSpace);
    for (std::size_t i = 0; i < family.size(); ++i) {
        if (const auto below = space.children.find(family[i]); below != space.children.end()) {
            family.insert(family.end(), below->second.begin(), below->second.end());
        }
    }
    std::vector<const Node*> nodes;
    for (const Class* cls : family) {
        if (const auto extent = extents_.find(cls); extent != extents_.end()) {
            std::transform(extent->second.begin(), extent->second.end(), std::back_inserter(nodes),
                           [](const auto& entry) { return entry.second; });
        }
    }
    std::sort(nodes.begin(), nodes.end(),
              [](const Node* a, const Node* b) { return a->position < b->position; });
    std::vector<InstancePtr> result;
    result.reserve(nodes.size());
    std::transform(nodes.begin(), nodes.end(), std::back_inserter(result),
                   [](const Node* node) { return node->instance; });
    return result;
}

void Repository::link(Node& node) {
    extents_[&node.instance->cls()].emplace(node.position, &node);
    eachEnd(*node.instance, [&](std::size_t, const ObjectPath& end) {
        Endpoint& endpoint = endpoints_[pathId(end)];
        auto list = findList(endpoint, &node.instance->cls());
        if (list == endpoint.end()) {
            list = endpoint.insert(list, {&node.instance->cls(), {}});
        }
        list->second.emplace(node.position, &node);
    });
}

void Repository::unlink(Node& node) {
    extents_[&node.instance->cls()].erase(node.position);
    eachEnd(*node.instance, [&](std::size_t, const ObjectPath& end) {
        const auto found = endpoints_.find(pathId(end));
        if (found == endpoints_.end()) {
            return; // both ends were the same object
        }
        const auto list = findList(found->second, &node.instance->cls());
        if (list != found->second.end()) {
            list->second.erase(node.position);
            if (list->second.empty()) {
                found->second.erase(list);
            }
        }
        if (found->second.empty()) {
            endpoints_.erase(found);
        }
    });
}

ObjectPath Repository::add(Instance instance) {
    const std::unique_lock<std::shared_mutex> lock(mutex_);
    if (instance.cls().isAbstract()) {
        throw CimError(CimStatus::failed, instance.cls().name + " is abstract");
    }
    canonicalReferences(instance);
    ObjectPath path = instance.path();
    auto node = std::make_unique<Node>();
    node->id = pathId(path);
    node->position = nextPosition_;
    node->instance = std::make_shared<const Instance>(std::move(instance));
    const auto [slot, added] = nodes_.emplace(node->id, nullptr);
    if (!added) {
        throw CimError(CimStatus::alreadyExists, path.localText());
    }
    slot->second = std::move(node);
    ++nextPosition_;
    link(*slot->second);
    return path;
}

void Repository::update(const ObjectPath& path, const std::function<void(Instance&)>& change) {
    const std::unique_lock<std::shared_mutex> lock(mutex_);
    Node* node = findNode(path);
    if (!node) {
        throw CimError(CimStatus::notFound, path.localText());
    }
    Instance changed = *node->instance;
    change(changed);
    canonicalReferences(changed);
    if (pathId(changed.path()) != node->id) {
        throw CimError(CimStatus::notSupported, "keys cannot change: " + path.localText());
    }
    unlink(*node);
    node->instance = std::make_shared<const Instance>(std::move(changed));
    link(*node);
}

bool Repository::remove(const ObjectPath& path) {
    const std::unique_lock<std::shared_mutex> lock(mutex_);
    Node* node = findNode(path);
    if (!node) {
        return false;
    }
    removeNode(*node);
    return true;
}

void Repository::removeNode(Node& node) {
    // Associations that refer to the object go with it, and what may refer to those in turn.
    for (auto tied = endpoints_.find(node.id); tied != endpoints_.end();
         tied = endpoints_.find(node.id)) {
        Node& association = *tied->second.front().second.begin()->second;
        if (&association == &node) {
            break;
        }
        removeNode(association);
    }
    unlink(node);
    nodes_.erase(std::string(node.id));
}

void Repository::reorder(std::string_view nameSpace, std::string_view className,
                         const std::vector<ObjectPath>& first) {
    const std::unique_lock<std::shared_mutex> lock(mutex_);
    const Class& cls = demand(nameSpace, className);
    std::vector<Node*> order;
    std::unordered_set<const Node*> placed;
    for (const ObjectPath& path : first) {
        Node* node = findNode(path);
        if (!node || &node->instance->cls() != &cls) {
            throw CimError(CimStatus::notFound, path.localText());
        }
        if (placed.insert(node).second) {
            order.push_back(node);
        }
    }
    for (const auto& [position, node] : extents_[&cls]) {
        if (placed.insert(node).second) {
            order.push_back(node);
        }
    }
    std::vector<const Class*> associations;
    for (const Node* node : order) {
        if (const auto tied = endpoints_.find(node->id); tied != endpoints_.end()) {
            for (const auto& list : tied->second) {
                if (std::find(associations.begin(), associations.end(), list.first) ==
                    associations.end()) {
                    associations.push_back(list.first);
                }
            }
        }
    }
    for (const Class* association : associations) {
        move(linksOf(order, *association));
    }
    move(order);
}

std::vector<Repository::Node*> Repository::linksOf(const std::vector<Node*>& order,
                                                   const Class& association) const {
    std::vector<Node*> result;
    std::unordered_set<const Node*> seen;
    for (const Node* node : order) {
        const auto tied = endpoints_.find(node->id);
        if (tied == endpoints_.end()) {
            continue;
        }
        const auto list = findList(tied->second, &association);
        if (list == tied->second.end()) {
            continue;
        }
        for (const auto& entry : list->second) {
            if (seen.insert(entry.second).second) {
                result.push_back(entry.second);
            }
        }
    }
    return result;
}

void Repository::move(const std::vector<Node*>& order) {
    std::vector<std::uint64_t> positions;
    positions.reserve(order.size());
    for (Node* node : order) {
        positions.push_back(node->position);
        unlink(*node);
    }
    std::sort(positions.begin(), positions.end());
    for (std::size_t i = 0; i < order.size(); ++i) {
        order[i]->position = positions[i];
        link(*order[i]);
    }
}

std::vector<Link> Repository::links(const ObjectPath& object, const ClassFilter& filter) const {
    const std::shared_lock<std::shared_mutex> lock(mutex_);
    const ObjectPath path = canonicalPath(object, 0);
    const auto found = endpoints_.find(pathId(path));
    if (found == endpoints_.end()) {
        return {};
    }
    std::vector<const Node*> nodes;
    bool several = false;
    for (const auto& [cls, list] : found->second) {
        if (!filter || filter(*cls)) {
            several = several || !nodes.empty();
            std::transform(list.begin(), list.end(), std::back_inserter(nodes),
                           [](const auto& entry) { return entry.second; });
        }
    }
    if (several) {
        std::sort(nodes.begin(), nodes.end(),
                  [](const Node* a, const Node* b) { return a->position < b->position; });
    }
    std::vector<Link> result;
    result.reserve(nodes.size());
    for (const Node* node : nodes) {
        eachEnd(*node->instance, [&](std::size_t role, const ObjectPath& end) {
            if (end == path) {
                result.push_back({node->instance, role});
            }
        });
    }
    return result;
}

} // namespace velclp_sim
