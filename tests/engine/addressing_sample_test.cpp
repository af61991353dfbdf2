#include "tests/engine/address_session.h"

#include <gtest/gtest.h>

namespace velmora_clp {
namespace {

class AddressSampleTest : public testing::Test {
protected:
    AddressSampleTest() : m_simulator(ready()), m_session(m_simulator) {}

    const RunDirectory& ready() {
        m_directory.use();
        return m_directory;
    }
    // How often the simulator was asked for an operation since the last reset.
    std::string calls() const { return m_simulator.get("/sim/stats"); }
    void reset() const { m_simulator.post("/sim/stats", ""); }
    std::string tail(const std::string& address) {
        const std::string path = m_session.resolve(address);
        return path.substr(path.rfind('=') + 1);
    }
    // An object path as MOF has it within a text.
    std::string quotedPath(const std::string& address) {
        std::string quoted;
        for (const char c : m_session.resolve(address))
            quoted += c == '"' ? std::string("\\\"") : std::string(1, c);
        return quoted;
    }
    void expectNoWalk() const {
        for (const char* walk : {"EnumerateInstanceNames", "AssociatorNames", "ReferenceNames"})
            EXPECT_EQ(std::string::npos, calls().find(walk)) << calls();
    }

    RunDirectory m_directory;
    SimulatorProcess m_simulator;
    AddressSession m_session;
};

TEST_F(AddressSampleTest, EveryObjectHasOneAddressAndEveryAddressItsObject) {
    const std::map<std::string, std::string> all = m_session.walk();
    EXPECT_GT(all.size(), 60U);
    for (const char* address :
         {"/admin1/system2/log1", "/admin1/system1/sp1/log1", "/admin1/blade1",
          "/admin1/system1/oemvelmora_fan2", "/admin1/chassis1", "/admin1/system1/sp1/role1",
          "/admin1/system1/sp1/ethport1/ipendpt1/ipsettings1"})
        EXPECT_EQ(1U, all.count(address)) << address;
    std::map<std::string, std::string> addresses;
    for (const auto& [address, path] : all) {
        EXPECT_TRUE(addresses.emplace(path, address).second) << path << " stands twice";
        EXPECT_EQ(address, m_session.addressOf(address));
    }
    // Another session, on the cache alone.
    reset();
    AddressSession other(m_simulator);
    for (const auto& [address, path] : all) {
        EXPECT_EQ(path, other.resolve(address));
        EXPECT_EQ(address, other.addressOf(address));
    }
    expectNoWalk();
}

TEST_F(AddressSampleTest, AReverseLookUpOnAnEmptyCacheNumbersTheLevelsAbove) {
    CimStatus status;
    const CimPath fans(newCMPIObjectPath("root/zorm", "ZORM_Fan", status.out()));
    const CimEnumeration names(
        m_session.client()->ft->enumInstanceNames(m_session.client(), fans.get(), status.out()));
    ASSERT_TRUE(names);
    std::map<std::string, std::string> addresses;
    while (names->ft->hasNext(names.get(), status.out()) != 0) {
        const CimPath path = cimClone(names->ft->getNext(names.get(), status.out()).value.ref);
        path->ft->setNameSpace(path.get(), "root/zorm");
        addresses[m_session.service().getUfip(path.get())] = textOf(path.get());
    }
    EXPECT_EQ(3U, addresses.size());
    for (const auto& [address, path] : addresses)
        EXPECT_EQ(path, m_session.resolve(address)) << address;
}

TEST_F(AddressSampleTest, NumbersComeFromPropertiesWhereTheSchemaSaysSo) {
    EXPECT_NE("", m_session.resolve("/admin1/system1/sensor7"));
    EXPECT_NE("", m_session.resolve("/admin1/system1/sensor12"));
    EXPECT_EQ("", m_session.resolve("/admin1/system1/sensor1"));
    EXPECT_NE("", m_session.resolve("/admin1/chassis1/slot3"));
}

TEST_F(AddressSampleTest, AVanishedObjectsNumberIsNotGivenOutAgain) {
    const std::string first = m_session.resolve("/admin1/system1/oemvelmora_fan1");
    const std::string second = m_session.resolve("/admin1/system1/oemvelmora_fan2");
    ASSERT_NE("", second);
    m_simulator.post("/sim/model?do=reorder&class=ZORM_Fan", "reverse");
    EXPECT_EQ("", m_session.resolve("/admin1/system1/oemvelmora_fan9"));
    EXPECT_EQ(first, m_session.resolve("/admin1/system1/oemvelmora_fan1"));

    m_simulator.post("/sim/model?do=remove", second.substr(second.find(':') + 1) + "\n");
    EXPECT_EQ(second, m_session.resolve("/admin1/system1/oemvelmora_fan2"));
    EXPECT_EQ("", m_session.resolve("/admin1/system1/oemvelmora_fan9"));
    EXPECT_EQ("", m_session.resolve("/admin1/system1/oemvelmora_fan2"));
    EXPECT_EQ(first, m_session.resolve("/admin1/system1/oemvelmora_fan1"));
    m_simulator.post("/sim/model?do=add",
                     "instance of ZORM_Fan as $F { SystemName = \"late\"; "
                     "SystemCreationClassName = \"x\"; CreationClassName = \"ZORM_Fan\"; "
                     "DeviceID = \"late\"; };\n"
                     "instance of ZORM_SystemDevice { GroupComponent = \"" +
                         quotedPath("/admin1/system1") + "\"; PartComponent = $F; };\n");
    EXPECT_EQ("\"late\"", tail("/admin1/system1/oemvelmora_fan3"));
    EXPECT_EQ("", m_session.resolve("/admin1/system1/oemvelmora_fan2"));
}

TEST_F(AddressSampleTest, AServerThatFailsCostsTheAddressAndNothingThatIsKnown) {
    ASSERT_NE("", m_session.resolve("/admin1/system1/sp1"));
    const std::string rows = m_directory.query("clp.db3", "SELECT * FROM addrsvc_clp");
    for (const char* fault : {"kind=error code=1", "kind=error code=6", "kind=drop",
                              "kind=malformed", "kind=cut bytes=200"}) {
        m_simulator.post("/sim/faults", std::string(fault) + " count=1000\n");
        EXPECT_EQ("", m_session.resolve("/admin1/system1/sp1/user1")) << fault;
        EXPECT_EQ("", m_session.resolve("/admin1/system9")) << fault;
        EXPECT_NE("", m_session.resolve("/admin1/system1/sp1")) << fault;
        m_simulator.post("/sim/faults?do=clear", "");
        EXPECT_EQ(rows, m_directory.query("clp.db3", "SELECT * FROM addrsvc_clp")) << fault;
    }
    EXPECT_NE("", m_session.resolve("/admin1/system1/sp1/user1"));
}

TEST_F(AddressSampleTest, AssociationsBetweenAddressesAreFound) {
    CLPAddrSVC& service = m_session.service();
    EXPECT_EQ(1U, CimPaths(service.getCIMObjectPath_Assoc("/admin1/system1", "systemsp",
                                                          "/admin1/system1/sp1"))
                      .size());
    EXPECT_LT(
        3U, CimPaths(service.getCIMObjectPath_Assoc("/admin1/system1", "systemdevice", "")).size());
    EXPECT_TRUE(
        service.getCIMObjectPath_Assoc("/admin1/system1", "systemdevice", "/admin1/chassis1")
            .empty());
}

} // namespace
} // namespace velmora_clp
