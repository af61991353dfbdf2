#include "tests/unit/address_fixture.h"

#include <boost/lexical_cast.hpp>

namespace velmora_clp {
namespace {

class AddressResolveTest : public AddressFixture {
protected:
    AddressResolveTest() : m_service(m_server.client()) {}

    // Another session works while the next call of the operation is under way.
    void during(const char* operation, const std::function<void(CLPAddrSVC&)>& work) {
        m_happened = false;
        m_server.onCall = [this, operation, work](const fakecim::Call& call) {
            if (call.operation == operation && !std::exchange(m_happened, true)) {
                CLPAddrSVC other(m_server.client());
                work(other);
            }
            return 0;
        };
    }

    bool m_happened = false;
    CLPAddrSVC m_service;
};

TEST_F(AddressResolveTest, AMissWalksDownFromTheRootWithOneCallALevel) {
    fakecim::Object& system = addSystem("a");
    addSystem("b");
    addBelow(system, "ZORM_Part", "ZORM_SP", "sp-a");
    EXPECT_EQ("sp-a", resolve(m_service, "/admin1/system1/sp1"));
    EXPECT_EQ(1, m_server.count("enumInstanceNames", "ZORM_AdminDomain"));
    EXPECT_EQ(2, m_server.count("associatorNames"));
    EXPECT_EQ("/admin1\n/admin1/system1\n/admin1/system2\n/admin1/system1/sp1\n", addresses());
    EXPECT_EQ("2\n3\n2\n",
              counter("/admin") + counter("/admin1/system") + counter("/admin1/system1/sp"));
}

TEST_F(AddressResolveTest, AKnownTargetMakesNoCall) {
    addBelow(addSystem("a"), "ZORM_Part", "ZORM_SP", "sp-a");
    resolve(m_service, "/admin1/system1/sp1");
    m_server.calls.clear();
    EXPECT_EQ("sp-a", resolve(m_service, "/admin1/system1/sp1"));
    EXPECT_EQ("a", resolve(m_service, "/system1"));
    EXPECT_EQ("a", resolve(m_service, "/admin1/SYSTEM1"));
    EXPECT_EQ("a", resolve(m_service, "system*"));
    EXPECT_EQ("root", resolve(m_service, "/"));
    EXPECT_TRUE(m_service.hasTarget(CLPAddrpath("/admin1", "system1")));
    EXPECT_TRUE(m_server.calls.empty());
}

TEST_F(AddressResolveTest, AnAddressOfNothingIsEmptyAndRefreshesItsLevel) {
    addSystem("a");
    resolve(m_service, "/admin1/system1");
    addSystem("b");
    EXPECT_EQ("a", resolve(m_service, "system*"));
    EXPECT_EQ("", resolve(m_service, "/admin1/system9"));
    EXPECT_EQ("a b", resolve(m_service, "system*"));
    for (const char* address : {"/admin1/nosuch1", "/admin1/sp1", "/admin1/system9/sp1", "/admin2",
                                "/admin2/system1", "/nosuch1/system1", "/admin1/system1/system1"})
        EXPECT_EQ("", resolve(m_service, address)) << address;
}

TEST_F(AddressResolveTest, NumbersStayWhateverOrderTheServerReports) {
    fakecim::Object& a = addSystem("a");
    addSystem("b");
    resolve(m_service, "system1");
    std::reverse(m_server.links.begin(), m_server.links.end());
    addSystem("c");
    EXPECT_EQ("", resolve(m_service, "system9"));
    EXPECT_EQ("a", resolve(m_service, "system1"));
    EXPECT_EQ("b", resolve(m_service, "system2"));
    EXPECT_EQ("c", resolve(m_service, "system3"));
    m_server.remove(a);
    resolve(m_service, "system9");
    addSystem("d");
    resolve(m_service, "system9");
    EXPECT_EQ("/admin1\n/admin1/system2\n/admin1/system3\n/admin1/system4\n", addresses());
}

TEST_F(AddressResolveTest, AVanishedObjectTakesWhatIsBelowItAndThatNumberingStartsAgain) {
    fakecim::Object& a = addSystem("a");
    fakecim::Object& sp = addBelow(a, "ZORM_Part", "ZORM_SP", "sp");
    addBelow(sp, "ZORM_User", "ZORM_Account", "u1");
    resolve(m_service, "system1/sp1/user1");
    fakecim::Object& sp2 = addBelow(a, "ZORM_Part", "ZORM_SP", "sp2");
    m_server.remove(sp);
    EXPECT_EQ("", resolve(m_service, "system1/sp9"));
    EXPECT_EQ("/admin1\n/admin1/system1\n/admin1/system1/sp2\n", addresses());
    EXPECT_EQ("", counter("/admin1/system1/sp1/user"));
    EXPECT_EQ("3\n", counter("/admin1/system1/sp"));
    EXPECT_EQ("3\n", m_directory.query("clp.db3", "SELECT count(DISTINCT id) FROM addrsvc_cim"));
    addBelow(sp2, "ZORM_User", "ZORM_Account", "u2");
    EXPECT_EQ("u2", resolve(m_service, "system1/sp2/user1"));
}

TEST_F(AddressResolveTest, AClassWithoutInstancesIsEmptiedAndAFailedCallKeepsIt) {
    fakecim::Object& a = addSystem("a");
    resolve(m_service, "system1");
    m_server.fail("associatorNames");
    EXPECT_EQ("", resolve(m_service, "system2"));
    EXPECT_EQ("/admin1\n/admin1/system1\n", addresses());
    m_server.onCall = nullptr;
    m_server.remove(a);
    EXPECT_EQ("", resolve(m_service, "system2"));
    EXPECT_EQ("/admin1\n", addresses());
    EXPECT_EQ("2\n", counter("/admin1/system"));
    addSystem("b");
    EXPECT_EQ("b", resolve(m_service, "system2"));
}

TEST_F(AddressResolveTest, AnObjectThatTheServerNamesTwiceHasOneNumber) {
    fakecim::Object& a = addSystem("a");
    m_server.link("ZORM_Has", *m_admin, a);
    EXPECT_EQ("", resolve(m_service, "system9"));
    EXPECT_EQ("/admin1\n/admin1/system1\n", addresses());
}

TEST_F(AddressResolveTest, ANumberOfThePropertyIsTheObjectsOwn) {
    const fakecim::Object& a = addSystem("a");
    using fakecim::number;
    fakecim::Object& seven = addBelow(a, "ZORM_Device", "ZORM_Sensor", "s7",
                                      {{"SensorNumber", number(CMPI_uint16, "7")}});
    addBelow(a, "ZORM_Device", "ZORM_Sensor", "s12", {{"SensorNumber", number(CMPI_uint16, "12")}});
    addBelow(a, "ZORM_Device", "ZORM_Sensor", "double",
             {{"SensorNumber", number(CMPI_uint16, "12")}});
    addBelow(a, "ZORM_Device", "ZORM_Sensor", "null",
             {{"SensorNumber", fakecim::null(CMPI_uint16)}});
    EXPECT_EQ("s7 s12", resolve(m_service, "system1/sensor*"));
    EXPECT_EQ("s12", resolve(m_service, "system1/sensor12"));
    EXPECT_EQ("", counter("/admin1/system1/sensor"));

    seven.properties["SensorNumber"] = number(CMPI_uint16, "8");
    EXPECT_EQ("", resolve(m_service, "system1/sensor7"));
    EXPECT_EQ("s7", resolve(m_service, "system1/sensor8"));
    EXPECT_EQ("s12 s7", resolve(m_service, "system1/sensor*"));

    // What cannot be read keeps its number.
    m_server.fail("getInstance");
    EXPECT_EQ("", resolve(m_service, "system1/sensor9"));
    EXPECT_EQ("s12 s7", resolve(m_service, "system1/sensor*"));
}

TEST_F(AddressResolveTest, ANumberCanBeAnElementOfAnArray) {
    const fakecim::Object& a = addSystem("a");
    addBelow(a, "ZORM_Device", "ZORM_Slot", "slot", {{"Location", fakecim::texts({"x", "3"})}});
    EXPECT_EQ("slot", resolve(m_service, "system1/slot3"));
    const CimPath path = m_server.objects.back().path();
    EXPECT_EQ(3, m_service.getUfisFromCIMObjectPath(path.get(), "Location#2"));
    EXPECT_EQ(-1, m_service.getUfisFromCIMObjectPath(path.get(), "Missing"));
    EXPECT_THROW(m_service.getUfisFromCIMObjectPath(path.get(), "Location#1"),
                 boost::bad_lexical_cast);
    EXPECT_DEATH(m_service.getUfisFromCIMObjectPath(path.get(), "Location#3"), "m>=pos");
    EXPECT_DEATH(m_service.getUfisFromCIMObjectPath(path.get(), "Location#1#2"), "n<=2");
    EXPECT_DEATH(m_service.getUfisFromCIMObjectPath(path.get(), "InstanceID#1"),
                 "\\(\\(data.type\\) & \\(\\(1\\)<<13\\)\\)");
}

TEST_F(AddressResolveTest, AVirtualTagStandsWhereTheTagsAboveAreItsOwn) {
    const fakecim::Object& a = addSystem("a");
    addBelow(a, "ZORM_Log", "ZORM_RecordLog", "record log");
    const fakecim::Object& sp = addBelow(a, "ZORM_Part", "ZORM_SP", "sp");
    addBelow(sp, "ZORM_SPLog", "ZORM_EventLog", "event log");
    EXPECT_EQ("record log", resolve(m_service, "system1/log1"));
    EXPECT_EQ("event log", resolve(m_service, "system1/sp1/log1"));
    EXPECT_EQ("event log", resolve(m_service, "system1/sp1/splog1"));
    EXPECT_EQ("", resolve(m_service, "system1/splog1"));

    const auto internal = [&](const char* address) {
        CLPAddrpath path("/admin1", address);
        m_service.internalPath(path, path);
        return path.getResultantAddress();
    };
    EXPECT_EQ("/admin1/system1/sp1/splog12", internal("system1/sp1/log12"));
    EXPECT_EQ("/admin1/system1/sp1/splog*", internal("/system1/sp1/log*"));
    EXPECT_EQ("/admin1/system1/sp1/splog1/x1", internal("system1/sp1/log1/x1"));
    EXPECT_EQ("/admin1/sp1/log1", internal("sp1/log1"));
    EXPECT_EQ("/admin1/system1/x1/sp1/log1", internal("system1/x1/sp1/log1"));
    EXPECT_EQ("/admin1/system1/log1", internal("system1/log1"));
    EXPECT_EQ("/admin1", internal("/"));
    EXPECT_EQ("/admin2", internal("/admin2"));
    EXPECT_EQ("/admin1/system1/sp1/log1", m_service.normalUfip("/admin1/system1/sp1/splog1"));
    EXPECT_EQ("/admin1/system*", m_service.normalUfip("/admin1/system*"));
    EXPECT_EQ("", m_service.normalUfip(""));
}

TEST_F(AddressResolveTest, TagsOfOneClassAreToldApartByTheirFilters) {
    using fakecim::texts;
    const auto enabled = fakecim::number(CMPI_uint16, "2");
    m_server.classes["ZORM_ComputerSystem"] = {
        {{"Dedicated", {CMPI_uint16A, {}}},
         {"EnabledState",
          {CMPI_uint16, {{"Values", {"Enabled", "Disabled"}}, {"ValueMap", {"2", "3"}}}}}}};
    addSystem("plain", {{"Dedicated", texts({"unknown"})}, {"EnabledState", enabled}});
    addSystem("blade", {{"Dedicated", texts({"Blade"})}, {"EnabledState", enabled}});
    addSystem("center", {{"Dedicated", texts({"BladeCenter"})}, {"EnabledState", enabled}});
    addSystem("off", {{"Dedicated", texts({"Blade"})},
                      {"EnabledState", fakecim::number(CMPI_uint16, "3")}});
    addSystem("second", {{"Dedicated", texts({"x", "Blade"})}, {"EnabledState", enabled}});
    EXPECT_EQ("blade", resolve(m_service, "blade1"));
    EXPECT_EQ("blade center", resolve(m_service, "blade*"));
    EXPECT_EQ("plain off second", (resolve(m_service, "system1"), resolve(m_service, "system*")));
    // An object that cannot be read belongs to no tag.
    addSystem("late", {{"Dedicated", texts({"Blade"})}, {"EnabledState", enabled}});
    m_server.fail("getInstance");
    EXPECT_EQ("", resolve(m_service, "blade3"));
    m_server.onCall = nullptr;
    EXPECT_EQ("late", resolve(m_service, "blade3"));
}

TEST_F(AddressResolveTest, AnotherSessionThatIsFasterNumbersTheObjectsForBoth) {
    addSystem("a");
    addSystem("b");
    during("associatorNames", [&](CLPAddrSVC& other) {
        std::reverse(m_server.links.begin(), m_server.links.end());
        resolve(other, "system1");
        addSystem("c");
    });
    EXPECT_EQ("b", resolve(m_service, "system1"));
    EXPECT_EQ("/admin1\n/admin1/system1\n/admin1/system2\n/admin1/system3\n", addresses());
    EXPECT_EQ("4\n", counter("/admin1/system"));
    // And between the look at the cache and the write.
    addSystem("d");
    during("getInstance", [&](CLPAddrSVC& other) { resolve(other, "system4"); });
    EXPECT_EQ("d", resolve(m_service, "system4"));
    EXPECT_TRUE(m_happened);
    EXPECT_EQ("5\n", counter("/admin1/system"));
}

TEST_F(AddressResolveTest, AnAddressThatBecameAnotherObjectsMeanwhileIsLeftToIt) {
    using fakecim::number;
    const fakecim::Object& a = addSystem("a");
    fakecim::Object& moved = addBelow(a, "ZORM_Device", "ZORM_Sensor", "moved",
                                      {{"SensorNumber", number(CMPI_uint16, "7")}});
    resolve(m_service, "system1/sensor7");
    moved.properties["SensorNumber"] = number(CMPI_uint16, "8");
    addBelow(a, "ZORM_Device", "ZORM_Sensor", "new", {{"SensorNumber", number(CMPI_uint16, "7")}});
    const auto rowOf7 = [&] {
        return m_directory.query("clp.db3",
                                 "SELECT id FROM addrsvc_clp WHERE ufip LIKE '%/sensor7'");
    };
    std::string row;
    during("getInstance", [&](CLPAddrSVC& other) {
        resolve(other, "system1/sensor9");
        row = rowOf7();
    });
    resolve(m_service, "system1/sensor9");
    EXPECT_EQ(row, rowOf7());
    EXPECT_EQ("new", resolve(m_service, "system1/sensor7"));
    EXPECT_EQ("moved", resolve(m_service, "system1/sensor8"));
}

TEST_F(AddressResolveTest, ACounterThatFellBehindItsRowsCatchesUp) {
    addSystem("a");
    addSystem("b");
    resolve(m_service, "system1");
    m_service.setNextSeq("/admin1/system", 1, false);
    addSystem("c");
    EXPECT_EQ("c", resolve(m_service, "system3"));
}

TEST_F(AddressResolveTest, AnObjectThatIsNamedWithoutANamespaceLiesInTheDefaultOne) {
    addBelow(addSystem("a"), "ZORM_Device", "ZORM_Fan", "f").ns = "";
    m_server.links.back().b.ns = "";
    EXPECT_EQ("f", resolve(m_service, "system1/oem_fan1"));
    EXPECT_EQ("root/zorm\n", m_directory.query("clp.db3", "SELECT ns FROM addrsvc_clp WHERE id=3"));
}

TEST_F(AddressResolveTest, AnAnswerSaysNothingOfObjectsThatWereAddedAfterIt) {
    fakecim::Object& a = addSystem("a");
    resolve(m_service, "system1");
    // The answer of the call was made before: it holds nothing of what comes now.
    const auto whileAnswering = [&](const std::function<void(CLPAddrSVC&)>& work) {
        during("associatorNames", [this, work](CLPAddrSVC& other) {
            const auto links = m_server.links;
            work(other);
            m_server.links = links;
        });
    };
    whileAnswering([&](CLPAddrSVC& other) {
        addSystem("b");
        EXPECT_EQ("b", resolve(other, "system2"));
    });
    resolve(m_service, "system9");
    EXPECT_EQ("/admin1\n/admin1/system1\n/admin1/system2\n", addresses());

    m_server.remove(a);
    m_server.links.clear();
    whileAnswering([&](CLPAddrSVC& other) {
        addSystem("c");
        EXPECT_EQ("c", resolve(other, "system3"));
    });
    resolve(m_service, "system9");
    EXPECT_NE(std::string::npos, addresses().find("/admin1/system3"));
}

TEST_F(AddressResolveTest, AssociationInstancesAreFoundByOneEndOrByBoth) {
    const fakecim::Object& a = addSystem("a");
    addBelow(a, "ZORM_Device", "ZORM_Fan", "f1");
    addBelow(a, "ZORM_Device", "ZORM_Fan", "f2");
    const auto ties = [&](const char* one, const char* association, const char* other) {
        return CimPaths(m_service.getCIMObjectPath_Assoc(one, association, other)).size();
    };
    EXPECT_EQ(2U, ties("/admin1/system1", "device", ""));
    EXPECT_EQ(1U, ties("/admin1/system1", "device", "/system1/oem_fan2"));
    EXPECT_EQ(0U, ties("/admin1/system1", "device", "/admin1"));
    EXPECT_EQ(0U, ties("/admin1/system1", "device", "/admin1/system7"));
    EXPECT_EQ(0U, ties("/admin1/system1", "nosuch", ""));
    EXPECT_EQ(0U, ties("/admin1/system7", "device", ""));
    EXPECT_EQ(0U, ties("/admin1/system1", "device", "nonsense"));
    EXPECT_EQ(0U, ties("/admin1/system1", "device", "SESSION"));
    // References count as lying where the other end does.
    m_server.links.back().b.ns = "root/other";
    EXPECT_EQ(1U, ties("/admin1/system1", "device", "/system1/oem_fan2"));
    // A fork of this process has no database.
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_DEATH(ties("", "device", ""), "!ref1.empty\\(\\)&&!assoc.empty\\(\\)");
    EXPECT_DEATH(ties("/admin1/system1/oem_fan*", "device", ""), "n<=1");
    EXPECT_DEATH(ties("/admin1", "device", "/admin1/system1/oem_fan*"), "m<=1");
}

TEST_F(AddressResolveTest, ATreeThatTheSchemaDoesNotJoinEndsTheProcess) {
    const fakecim::Object& a = addSystem("a");
    addBelow(a, "ZORM_Part", "ZORM_SP", "sp");
    const fakecim::Object& lost = addBelow(a, "ZORM_Part", "ZORM_Lost", "lost");
    // A fork of this process has no database.
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_DEATH(resolve(m_service, "system1/sp1/lost1"), "aa.empty\\(\\)!=true");
    EXPECT_DEATH(m_service.getUfip(lost.path().get()), "!aa.empty\\(\\)");
    EXPECT_DEATH(m_service.getAssocClass("zorm_orphan", "zorm_sp"), "n>=1");
    EXPECT_DEATH(m_service.refreshCache(CLPAddrpath("/", "/system1")), "n>1");
}

// The admin class and the one below it lie in a namespace of their own.
void resolveInOtherNamespaces() {
    const RunDirectory directory;
    directory.write("schema.conf", "[zorm_admindomain]\nnamespace=root/top\n"
                                   "children:zorm_has=zorm_computersystem\n(admin_1)\n(end)\n"
                                   "[end]\n[zorm_computersystem]\nnamespace=root/other\n"
                                   "parent=zorm_admindomain\n(system_1)\n(end)\n[end]\n");
    directory.use();
    fakecim::Server server;
    server.add({"ZORM_AdminDomain", {{"Name", "root"}}, {}, "root/top"});
    server.add({"ZORM_ComputerSystem", {{"Name", "a"}}, {}, "root/sub"});
    server.link("ZORM_Has", server.objects.front(), server.objects.back());
    CLPAddrSVC service(server.client());
    service.hasTarget(CLPAddrpath("/", "/admin1/system1"));
    std::fputs(directory.query("clp.db3", "SELECT ufip,ns FROM addrsvc_clp").c_str(), stderr);
    std::exit(service.getUfip(server.objects.back().path().get()) == "/admin1/system1" ? 3 : 4);
}

TEST(AddressNamespaceDeathTest, TheRootTakesTheSchemasNamespaceAndWhatIsBelowTheServers) {
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(resolveInOtherNamespaces(), testing::ExitedWithCode(3),
                "/admin1\\|root/top\n/admin1/system1\\|root/sub");
}

TEST_F(AddressResolveTest, AnEnumerationIsSearchedFromWhereItStands) {
    addSystem("a");
    const fakecim::Object& b = addSystem("b");
    const CimPath admin = m_admin->path();
    const CimEnumeration all(m_server.client()->ft->associatorNames(
        m_server.client(), admin.get(), "ZORM_Has", nullptr, nullptr, nullptr, CimStatus().out()));
    const CimEnumeration twice = cimClone(all.get());
    const CimPath path = b.path();
    EXPECT_TRUE(m_service.objectExistInCIMOM(all.get(), path.get()));
    EXPECT_FALSE(m_service.objectExistInCIMOM(all.get(), path.get()));
    EXPECT_FALSE(m_service.objectExistInCIMOM(twice.get(), admin.get()));
    EXPECT_FALSE(m_service.objectExistInCIMOM(nullptr, path.get()));
    // The names of a class's instances come without a namespace.
    const CimEnumeration roots(m_server.client()->ft->enumInstanceNames(
        m_server.client(), admin.get(), CimStatus().out()));
    EXPECT_TRUE(m_service.objectExistInCIMOM(roots.get(), admin.get()));
    EXPECT_FALSE(m_service.objectExistInCIMOM(twice.get(), nullptr));
}

} // namespace
} // namespace velmora_clp
