// The simulator's repository and what changes a running model: order, identity, association index,
// copies.
#include "simulator/modelcontrol.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <thread>

using namespace velclp_sim;

namespace {

constexpr const char* space = "root/zorm";

class RepositoryTest : public testing::Test {
protected:
    RepositoryTest() {
        addToModel(repository_, space, R"mof(
class Base { [Key] string CreationClassName; [Key] string Name; uint16 Number; };
class Child : Base { };
[Association] class Holds { [Key] Base REF GroupComponent; [Key] Base REF PartComponent; };
instance of Base as $P { CreationClassName = "Base"; Name = "parent"; };
instance of Child as $C1 { CreationClassName = "Child"; Name = "c1"; Number = 7; };
instance of Base as $B1 { CreationClassName = "Base"; Name = "b1"; };
instance of Child as $C2 { CreationClassName = "Child"; Name = "c2"; Number = 12; };
instance of Holds { GroupComponent = $P; PartComponent = $C2; };
instance of Holds { GroupComponent = $P; PartComponent = $C1; };
instance of Holds { GroupComponent = $C1; PartComponent = $B1; };
)mof");
    }

    static ObjectPath path(const std::string& cls, const std::string& name) {
        return {space, cls, {{"CreationClassName", cls}, {"Name", name}}};
    }

    std::string names(const std::string& cls) const {
        std::string text;
        for (const InstancePtr& instance : repository_.instances(space, cls)) {
            text += instance->get("Name").toString() + " ";
        }
        return text;
    }

    /// The other ends of the object's associations.
    std::string tied(const ObjectPath& object) const {
        std::string text;
        for (const Link& link : repository_.links(object)) {
            text += link.association->at(1 - link.role).toPath()->key("Name").toString() + " ";
        }
        return text;
    }

    static int codeOf(const std::function<void()>& action) {
        try {
            action();
        } catch (const CimError& error) {
            return error.code();
        }
        return 0;
    }

    Repository repository_;
};

TEST_F(RepositoryTest, PathsAreFoundInAnyCaseAndOrderOfKeysButValuesAreExact) {
    const ObjectPath odd("/ROOT/Zorm/", "CHILD", {{"name", "c1"}, {"CREATIONCLASSNAME", "Child"}});
    EXPECT_EQ(repository_.canonical(odd).toText(),
              "root/zorm:Child.CreationClassName=\"Child\",Name=\"c1\"");
    EXPECT_NE(repository_.find(odd), nullptr);
    EXPECT_EQ(repository_.find(path("Child", "C1")), nullptr);
    EXPECT_EQ(repository_.find(path("Base", "c1")), nullptr);
    EXPECT_EQ(codeOf([&] { repository_.find({space, "Child", {{"Name", "c1"}}}); }), 4);
    EXPECT_EQ(codeOf([&] { repository_.find({space, "Nope", {}}); }), 5);
    EXPECT_EQ(codeOf([&] { repository_.find({"root/x", "Child", {}}); }), 3);
}

TEST_F(RepositoryTest, AssociationsAreMetFromBothEndsAndGoWithTheObjectsTheyTie) {
    EXPECT_EQ(tied(path("Base", "parent")), "c2 c1 ");
    EXPECT_EQ(tied(path("Child", "c1")), "parent b1 ");
    EXPECT_TRUE(repository_.remove(path("Child", "c1")));
    EXPECT_FALSE(repository_.remove(path("Child", "c1")));
    EXPECT_EQ(tied(path("Base", "parent")), "c2 ");
    EXPECT_EQ(tied(path("Base", "b1")), "");
    EXPECT_EQ(repository_.instances(space, "Holds").size(), 1u);
}

TEST_F(RepositoryTest, UpdatesAreWholeOrNothingAndKeepTheKeys) {
    const InstancePtr before = repository_.find(path("Child", "c1"));
    repository_.update(path("Child", "c1"), [](Instance& i) { i.set("Number", 8); });
    EXPECT_EQ(before->get("Number").toUnsigned(), 7u);
    EXPECT_EQ(repository_.find(path("Child", "c1"))->get("Number").toUnsigned(), 8u);
    const auto update = [&](const char* property, const Value& value) {
        return codeOf([&] {
            repository_.update(path("Child", "c1"), [&](Instance& i) {
                i.set("Number", 9);
                i.set(property, value);
            });
        });
    };
    EXPECT_EQ(update("Name", "other"), 7);
    EXPECT_EQ(update("Number", 65536), 13);
    EXPECT_EQ(update("Number", -1), 13);
    EXPECT_EQ(update("Nope", 1), 12);
    EXPECT_EQ(repository_.find(path("Child", "c1"))->get("Number").toUnsigned(), 8u);
    EXPECT_EQ(names("Child"), "c1 c2 ");
}

TEST_F(RepositoryTest, ReorderingMovesTheInstancesAndTheWalksThatMeetThem) {
    reorderModel(repository_, space, "Child", "reverse");
    EXPECT_EQ(names("Base"), "parent c2 b1 c1 ");
    reorderModel(repository_, space, "Child", "Child.CreationClassName=\"Child\",Name=\"c1\"\n");
    EXPECT_EQ(names("Child"), "c1 c2 ");
    EXPECT_EQ(tied(path("Base", "parent")), "c1 c2 ");
    reorderModel(repository_, space, "Child", "rotate\r\n");
    EXPECT_EQ(tied(path("Base", "parent")), "c2 c1 ");
    EXPECT_EQ(codeOf([&] {
                  reorderModel(repository_, space, "Base",
                               "Child.CreationClassName=\"Child\",Name=\"c1\"");
              }),
              6);
    EXPECT_EQ(tied(path("Child", "c1")), "parent b1 ");
}

TEST_F(RepositoryTest, ModelsAreListedAndShortenedByPath) {
    EXPECT_EQ(listModel(repository_, space, "Child"),
              "root/zorm:Child.CreationClassName=\"Child\",Name=\"c1\"\n"
              "root/zorm:Child.CreationClassName=\"Child\",Name=\"c2\"\n");
    removeFromModel(repository_, space, "Child.CreationClassName=\"Child\",Name=\"c2\"\n\n");
    EXPECT_EQ(names("Child"), "c1 ");
    for (const char* bad : {"Child.CreationClassName=\"Child\",Name=\"c2\"", "Child.Name", "\"",
                            "Child.Name=\"open", "x:y:z", "Child.Name=1a"}) {
        EXPECT_THROW(removeFromModel(repository_, space, bad), CimError) << bad;
    }
}

TEST_F(RepositoryTest, ScalingCopiesInstancesWithTheirTiesToTheirParents) {
    scaleModel(repository_, space, readScale("Child=5:Number"));
    EXPECT_EQ(names("Child"), "c1 c2 c1-2 c2-3 c1-4 ");
    EXPECT_EQ(tied(path("Base", "parent")), "c2 c1 c1-2 c2-3 c1-4 ");
    // What an original holds stays its own.
    EXPECT_EQ(tied(path("Child", "c1-2")), "parent ");
    EXPECT_EQ(repository_.find(path("Child", "c1-4"))->get("Number").toUnsigned(), 15u);
    EXPECT_THROW(readScale("Child"), std::invalid_argument);
    EXPECT_THROW(readScale("Child=many"), std::invalid_argument);
    EXPECT_EQ(codeOf([&] { scaleModel(repository_, space, readScale("Nope=3")); }), 5);
    EXPECT_EQ(codeOf([&] { scaleModel(repository_, space, readScale("Child=9:Nope")); }), 12);
}

TEST_F(RepositoryTest, ReadersAndWritersOnManyThreadsSeeWholeInstances) {
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([this, t] {
            const std::string name = "t" + std::to_string(t);
            for (int i = 0; i < 200; ++i) {
                Instance made(repository_.requireClass(space, "Child"));
                made.set("CreationClassName", "Child");
                made.set("Name", name);
                repository_.add(made);
                Instance tie(repository_.requireClass(space, "Holds"));
                tie.set("GroupComponent", path("Base", "parent"));
                tie.set("PartComponent", path("Child", name));
                repository_.add(tie);
                repository_.update(path("Child", name),
                                   [i](Instance& each) { each.set("Number", i); });
                for (const Link& link : repository_.links(path("Base", "parent"))) {
                    EXPECT_EQ(link.association->cls().name, "Holds");
                }
                EXPECT_GE(repository_.instances(space, "Base").size(), 4u);
                EXPECT_TRUE(repository_.remove(path("Child", name)));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(names("Base"), "parent c1 b1 c2 ");
    EXPECT_EQ(tied(path("Base", "parent")), "c2 c1 ");
}

} // namespace
