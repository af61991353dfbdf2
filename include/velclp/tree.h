#ifndef VELCLP_TREE_H
#define VELCLP_TREE_H

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "velclp/assertion.h"

namespace velmora_clp {

template<typename Key, typename Value>
class MapTree;

// One node of a MapTree: an optional value and the children below it. A node owns both; only a
// node without children is a leaf, and only a leaf can be read as a value.
template<typename Key, typename Value>
class MapNode {
public:
    MapNode() = default;
    explicit MapNode(const Value& value) : m_value(std::make_unique<Value>(value)) {}

private:
    friend class MapTree<Key, Value>;
    std::unique_ptr<Value> m_value;
    std::map<Key, std::unique_ptr<MapNode>> m_children;
};

// A tree whose nodes are reached by a path of keys from the root downward. It holds the options of
// a command line and the description of a managed class. A tree grows from the top down, one level
// at a time, and no operation replaces a value. Children are always met in ascending key order.
//
// Every path must have at least one key; an empty one ends the process. A tree that is no longer
// changed may be read by any number of threads.
template<typename Key, typename Value>
class MapTree {
public:
    using Node = MapNode<Key, Value>;
    using Path = std::vector<Key>;

    // Thrown, by value, for a path that cannot be walked or a node of the wrong kind.
    class map_tree_error {
    public:
        explicit map_tree_error(std::string message) : m_message(std::move(message)) {}
        map_tree_error(const map_tree_error&) = default;
        map_tree_error& operator=(const map_tree_error&) = default;
        virtual ~map_tree_error() = default;
        const std::string& message() const { return m_message; }

    private:
        std::string m_message;
    };

    MapTree() = default;
    MapTree(const MapTree&) = delete;
    MapTree& operator=(const MapTree&) = delete;

    // Adds a node without a value. Throws map_tree_error when the parent is missing or the node is
    // there already; the result is otherwise true.
    bool addNode(const Path& path) { return _addNode(path, std::make_unique<Node>()); }

    // The same, with a node that holds a copy of value.
    bool addNode(const Path& path, const Value& value) {
        return _addNode(path, std::make_unique<Node>(value));
    }

    // True when every key of the path exists in turn.
    bool hasNode(const Path& path) const { return find(path) != nullptr; }

    // True when the node exists and has children.
    bool hasChildren(const Path& path) const {
        const Node* node = find(path);
        return node && !node->m_children.empty();
    }

    // The value of a leaf, borrowed from the tree; null for a leaf that was added without one.
    // Throws map_tree_error for a missing node and for one with children.
    const Value* getValue(const Path& path) const {
        const Node& node = existing(path);
        if (!node.m_children.empty())
            throw map_tree_error("The node is not leaf!");
        return node.m_value.get();
    }

    // The keys below a node, ascending. Throws map_tree_error for a missing node and for a leaf.
    Path getChildrenKeys(const Path& path) const {
        const Node& node = existing(path);
        if (node.m_children.empty())
            throw map_tree_error("The node is the leaf!");
        Path keys;
        keys.reserve(node.m_children.size());
        for (const auto& child : node.m_children)
            keys.push_back(child.first);
        return keys;
    }

private:
    using Children = std::map<Key, std::unique_ptr<Node>>;

    bool _addNode(const Path& p1, std::unique_ptr<Node> node) {
        VELCLP_ASSERT(!p1.empty(), "!p1.empty()");
        Children* level = &m_root;
        for (auto key = p1.begin(); key != p1.end() - 1; ++key) {
            const auto parent = level->find(*key);
            if (parent == level->end())
                throw map_tree_error("The node of parent doesn't exist!");
            level = &parent->second->m_children;
        }
        if (!level->emplace(p1.back(), std::move(node)).second)
            throw map_tree_error("The node already exist!");
        return true;
    }

    const Node* find(const Path& p1) const {
        VELCLP_ASSERT(!p1.empty(), "!p1.empty()");
        const Children* level = &m_root;
        const Node* node = nullptr;
        for (const Key& key : p1) {
            const auto child = level->find(key);
            if (child == level->end())
                return nullptr;
            node = child->second.get();
            level = &node->m_children;
        }
        return node;
    }

    const Node& existing(const Path& path) const {
        const Node* node = find(path);
        if (!node)
            throw map_tree_error("The node doesn't exist!");
        return *node;
    }

    Children m_root;
};

} // namespace velmora_clp

#endif
