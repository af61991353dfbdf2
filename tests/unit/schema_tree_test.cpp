#include <gtest/gtest.h>

#include "velclp/tree.h"

namespace {

using Tree = velmora_clp::MapTree<std::string, std::string>;
using Path = Tree::Path;

// The message of what an operation throws.
template<typename Operation>
std::string thrown(Operation operation) {
    try {
        operation();
    } catch (const Tree::map_tree_error& error) {
        return error.message();
    }
    return "nothing";
}

TEST(StringTree, GrowsFromTheTopDownAndNeverReplaces) {
    Tree tree;
    EXPECT_EQ(thrown([&] { tree.addNode({"a", "b"}); }), "The node of parent doesn't exist!");
    EXPECT_TRUE(tree.addNode({"a"}));
    EXPECT_TRUE(tree.addNode({"a", "b"}, "first"));
    EXPECT_EQ(thrown([&] { tree.addNode({"a"}); }), "The node already exist!");
    EXPECT_EQ(thrown([&] { tree.addNode({"a", "b"}, "second"); }), "The node already exist!");
    EXPECT_EQ(*tree.getValue({"a", "b"}), "first");
}

TEST(StringTree, ReadsOnlyLeavesAsValues) {
    Tree tree;
    tree.addNode({"empty"});
    tree.addNode({"a"}, "hidden by its child");
    tree.addNode({"a", "b"}, "value");
    EXPECT_EQ(tree.getValue({"empty"}), nullptr);
    EXPECT_EQ(thrown([&] { tree.getValue({"a"}); }), "The node is not leaf!");
    EXPECT_EQ(thrown([&] { tree.getValue({"a", "c"}); }), "The node doesn't exist!");
}

TEST(StringTree, GivesChildrenInAscendingOrder) {
    Tree tree;
    tree.addNode({"root"});
    for (const char* key : {"b", "c", "a"})
        tree.addNode({"root", key});
    EXPECT_EQ(tree.getChildrenKeys({"root"}), (Path{"a", "b", "c"}));
    EXPECT_TRUE(tree.hasChildren({"root"}));
    EXPECT_FALSE(tree.hasChildren({"root", "a"}));
    EXPECT_FALSE(tree.hasChildren({"other"}));
    EXPECT_FALSE(tree.hasNode({"root", "a", "x"}));
    EXPECT_EQ(thrown([&] { tree.getChildrenKeys({"root", "a"}); }), "The node is the leaf!");
    EXPECT_EQ(thrown([&] { tree.getChildrenKeys({"x"}); }), "The node doesn't exist!");
}

TEST(StringTree, EndsTheProcessForAnEmptyPath) {
    Tree tree;
    EXPECT_DEATH(tree.addNode({}), "!p1.empty\\(\\)");
    EXPECT_DEATH(tree.addNode(Path(), "value"), "!p1.empty\\(\\)");
    EXPECT_DEATH(tree.hasNode({}), "!p1.empty\\(\\)");
    EXPECT_DEATH(tree.hasChildren({}), "!p1.empty\\(\\)");
    EXPECT_DEATH(tree.getValue({}), "!p1.empty\\(\\)");
    EXPECT_DEATH(tree.getChildrenKeys({}), "!p1.empty\\(\\)");
}

} // namespace
