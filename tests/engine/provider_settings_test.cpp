#include "tests/engine/provider_controller.h"

#include <gtest/gtest.h>

using velclp_sim::ObjectPath;
using velclp_sim::Value;

namespace {

std::uint64_t limit(Controller& controller, const ObjectPath& meter, int watts,
                    const char* unit = "watt") {
    return controller.call(controller.find("ZORM_PUMService"), "RequestPowerUtilizationLimit",
                           {{"EnforceUtilizationLimit", true},
                            {"UtilizationLimit", watts},
                            {"UtilizationLimitUnit", unit},
                            {"UtilizingElement", Value(meter)}});
}

std::uint64_t sideband(Controller& controller, int mode, const std::vector<ObjectPath>& ports) {
    Value::Array list;
    for (const ObjectPath& port : ports) {
        list.emplace_back(port);
    }
    return controller.call(controller.find("ZORM_EthernetConfigurationService"),
                           "RequestNCSIModeChange",
                           {{"RequestedNCSIMode", mode}, {"EthernetPorts", Value(list)}});
}

ObjectPath settings(Controller& controller, int origin) {
    return controller.find("ZORM_IPAssignmentSettingData", "AddressOrigin",
                           Value(std::uint64_t(origin)));
}

std::uint64_t apply(Controller& controller, const ObjectPath& what, const ObjectPath& endpoint) {
    return controller.call(controller.find("ZORM_IPConfigurationService"),
                           "ApplySettingToIPProtocolEndpoint",
                           {{"Configuration", Value(what)}, {"Endpoint", Value(endpoint)}});
}

} // namespace

TEST(Clock, IsReadAndSet) {
    Controller controller;
    const ObjectPath clock = controller.find("ZORM_TimeService");
    const Value sp(controller.find("ZORM_SPComputerSystem"));
    const auto read = [&] {
        return controller
            .invoke(clock, "ManageTime", {{"GetRequest", true}, {"ManagedElement", sp}})
            .out.get("TimeData")
            .toString();
    };
    EXPECT_TRUE(velclp_sim::isDatetime(read()));
    const auto set = [&](const char* time) {
        return controller.call(clock, "ManageTime",
                               {{"GetRequest", false}, {"ManagedElement", sp}, {"TimeData", time}});
    };
    EXPECT_EQ(set("20310203040500.000000+060"), 0u);
    EXPECT_EQ(read().substr(0, 12), "203102030305");
    EXPECT_EQ(set("19610203040500.250000+000"), 0u);
    EXPECT_EQ(read().substr(0, 12), "196102030405");
    EXPECT_TRUE(velclp_sim::isDatetime(read())) << read();
    EXPECT_EQ(set("99991231235959.999999-720"), 0u);
    EXPECT_EQ(read(), "99991231235959.999999+000");
}

TEST(Clock, RefusesWhatIsNoTime) {
    Controller controller;
    const ObjectPath clock = controller.find("ZORM_TimeService");
    const Value sp(controller.find("ZORM_SPComputerSystem"));
    EXPECT_EQ(controller.call(clock, "ManageTime", {{"GetRequest", false}, {"ManagedElement", sp}}),
              5u);
    EXPECT_EQ(controller.call(clock, "ManageTime",
                              {{"GetRequest", false},
                               {"ManagedElement", sp},
                               {"TimeData", "00000001000000.000000:000"}}),
              5u);
    EXPECT_EQ(controller.call(clock, "ManageTime", {{"GetRequest", true}}), 5u);
    EXPECT_EQ(controller.call(clock, "ManageTime", {{"ManagedElement", sp}}), 5u);
}

TEST(PowerLimit, HoldsForTheMeterThatWasNamed) {
    Controller controller;
    const ObjectPath meter = controller.find("ZORM_PowerMeter", "SystemName", "sysA");
    EXPECT_EQ(limit(controller, meter, 300), 0u);
    EXPECT_EQ(controller.get(meter, "PowerLimit").toUnsigned(), 300u);
    EXPECT_EQ(controller.get(meter, "LimitEnforced"), Value(true));
    EXPECT_EQ(controller.get(controller.find("ZORM_PowerMeter", "SystemName", "sysB"), "PowerLimit")
                  .toUnsigned(),
              400u);
    EXPECT_EQ(limit(controller, meter, 0), 5u);
    EXPECT_EQ(limit(controller, meter, 751), 5u);
    EXPECT_EQ(limit(controller, meter, 300, "BTU"), 5u);
    EXPECT_EQ(limit(controller, controller.find("ZORM_Fan"), 300), 5u);
    EXPECT_EQ(controller.get(meter, "PowerLimit").toUnsigned(), 300u);
}

TEST(Sideband, ChangesAllPortsOrNone) {
    Controller controller;
    const ObjectPath eth0 = controller.find("ZORM_EthernetPort", "DeviceID", "eth0");
    const ObjectPath eth1 = controller.find("ZORM_EthernetPort", "DeviceID", "eth1");
    EXPECT_EQ(sideband(controller, 4, {eth0, eth1}), 0u);
    EXPECT_EQ(controller.get(eth0, "CurrentNCSIMode").toUnsigned(), 4u);
    EXPECT_EQ(controller.get(eth1, "CurrentNCSIMode").toUnsigned(), 4u);
    EXPECT_EQ(sideband(controller, 6, {eth0, eth1}), 5u);
    EXPECT_EQ(sideband(controller, 3, {}), 5u);
    EXPECT_EQ(sideband(controller, 3, {eth0, controller.find("ZORM_VirtualMedia")}), 5u);
    EXPECT_EQ(controller.get(eth0, "CurrentNCSIMode").toUnsigned(), 4u);
}

TEST(IpSettings, BecomeCurrentAndTheAddressFollows) {
    Controller controller;
    const ObjectPath endpoint = controller.find("ZORM_IPProtocolEndpoint");
    const ObjectPath fixed = settings(controller, 3);
    const ObjectPath leased = settings(controller, 4);
    const auto isCurrent = [&](const ObjectPath& what) {
        return controller
            .get(controller.find("ZORM_ElementSettingData", "SettingData", Value(what)),
                 "IsCurrent")
            .toUnsigned();
    };
    EXPECT_EQ(apply(controller, leased, endpoint), 0u);
    EXPECT_EQ(isCurrent(leased), 1u);
    EXPECT_EQ(isCurrent(fixed), 2u);
    EXPECT_EQ(controller.get(endpoint, "IPv4Address"), Value("192.0.2.131"));
    EXPECT_EQ(controller.get(endpoint, "AddressOrigin").toUnsigned(), 4u);
    controller.modify(fixed, "IPv4Address", "192.0.2.9");
    EXPECT_EQ(apply(controller, fixed, endpoint), 0u);
    EXPECT_EQ(isCurrent(leased), 2u);
    EXPECT_EQ(controller.get(endpoint, "IPv4Address"), Value("192.0.2.9"));
    EXPECT_EQ(apply(controller, endpoint, endpoint), 5u);
    EXPECT_EQ(apply(controller, fixed, controller.find("ZORM_TCPProtocolEndpoint")), 5u);
}

TEST(Logs, LoseTheirOwnRecordsWhenTheyAreCleared) {
    Controller controller;
    const ObjectPath log = controller.find("ZORM_RecordLog", "InstanceID", "ZORM:log:sysA");
    EXPECT_EQ(controller.call(log, "ClearLog"), 0u);
    EXPECT_EQ(controller.count("ZORM_SELLogEntry"), 1u);
    EXPECT_EQ(controller.count("ZORM_EventLogEntry"), 2u);
    EXPECT_EQ(controller.get(log, "CurrentNumberOfRecords").toUnsigned(), 0u);
    EXPECT_TRUE(controller.partners(log, "ZORM_LogManagesRecord").empty());
}

TEST(Logs, CountARecordThatWasRemoved) {
    Controller controller;
    const ObjectPath log = controller.find("ZORM_RecordLog", "InstanceID", "ZORM:log:sysA");
    controller.remove(controller.find("ZORM_SELLogEntry", "RecordID", "2"));
    EXPECT_EQ(controller.get(log, "CurrentNumberOfRecords").toUnsigned(), 2u);
    EXPECT_EQ(controller.partners(log, "ZORM_LogManagesRecord").size(), 2u);
}

TEST(Chassis, SwitchesItsLamp) {
    Controller controller;
    const ObjectPath chassis = controller.find("ZORM_Chassis");
    EXPECT_EQ(controller.call(chassis, "SetIdentify", {{"IdentifyMode", 4}}), 0u);
    EXPECT_EQ(controller.get(chassis, "IdentifyMode").toUnsigned(), 4u);
    EXPECT_EQ(controller.call(chassis, "SetIdentify", {{"IdentifyMode", 5}}), 5u);
    EXPECT_EQ(controller.call(chassis, "SetIdentify"), 5u);
}

TEST(Accounts, GetKeysAndTiesOfTheProvidersChoosing) {
    Controller controller;
    const ObjectPath sp = controller.find("ZORM_SPComputerSystem");
    const ObjectPath mary = controller.create("ZORM_LocalAccount",
                                              {{"UserID", "mary"},
                                               {"Roles", Value::Array{"operator", Value(), "NULL"}},
                                               {"UserPassword", Value::Array{"secret"}}});
    EXPECT_EQ(mary.key("Name"), Value("mary"));
    EXPECT_EQ(mary.key("SystemName"), Value("sp0"));
    EXPECT_EQ(mary.key("SystemCreationClassName"), Value("ZORM_SPComputerSystem"));
    EXPECT_EQ(mary.key("CreationClassName"), Value("ZORM_LocalAccount"));
    EXPECT_EQ(controller.partners(mary, "ZORM_AccountOnSystem"), std::vector<ObjectPath>{sp});
    ASSERT_EQ(controller.partners(mary, "ZORM_RoleMember").size(), 1u);
    EXPECT_EQ(controller.partners(mary, "ZORM_RoleMember").front().key("Name"), Value("operator"));
    EXPECT_TRUE(controller.get(mary, "UserPassword").isNull());
    EXPECT_EQ(controller.get(mary, "Roles").toArray().size(), 1u);
    EXPECT_EQ(controller.get(mary, "EnabledState").toUnsigned(), 2u);
    EXPECT_EQ(controller.create("ZORM_LocalAccount", {}).key("Name"), Value("user1"));
    EXPECT_EQ(controller.create("ZORM_LocalAccount", {}).key("Name"), Value("user2"));
}

TEST(Accounts, FollowTheirRolesAndHidePasswords) {
    Controller controller;
    const ObjectPath account = controller.find("ZORM_Account", "Name", "operator");
    controller.modify(account, "Roles", Value::Array{"administrator", "nobody"});
    ASSERT_EQ(controller.partners(account, "ZORM_RoleMember").size(), 1u);
    EXPECT_EQ(controller.partners(account, "ZORM_RoleMember").front().key("Name"),
              Value("administrator"));
    const Value before = controller.get(account, "PasswordLastChange");
    controller.modify(account, "UserPassword", Value::Array{"new"});
    EXPECT_TRUE(controller.get(account, "UserPassword").isNull());
    EXPECT_NE(controller.get(account, "PasswordLastChange"), before);
}

TEST(Accounts, RefuseNamesThatAreTakenOrNoNames) {
    Controller controller;
    const ObjectPath admin = controller.find("ZORM_Account", "Name", "admin");
    EXPECT_EQ(errorOf([&] { controller.create("ZORM_LocalAccount", {{"UserID", "admin"}}); }), 11);
    EXPECT_EQ(errorOf([&] { controller.create("ZORM_LocalAccount", {{"UserID", "o'neill"}}); }), 4);
    EXPECT_EQ(errorOf([&] { controller.create("ZORM_LocalAccount", {{"UserID", ""}}); }), 4);
    EXPECT_EQ(errorOf([&] { controller.modify(admin, "UserID", "a b"); }), 4);
    EXPECT_EQ(controller.count("ZORM_Account"), 2u);
}

TEST(VirtualMedia, TakesTheLowestFreeUnit) {
    Controller controller;
    const ObjectPath disk = controller.create("ZORM_VirtualMedia", {{"ImageURI", "nfs://h/i.img"}});
    EXPECT_EQ(controller.get(disk, "UnitNumber").toUnsigned(), 2u);
    EXPECT_EQ(disk.key("DeviceID"), Value("unit2"));
    EXPECT_EQ(controller.partners(disk, "ZORM_SPDevice").size(), 1u);
    EXPECT_EQ(
        controller.get(controller.create("ZORM_VirtualMedia", {{"UnitNumber", 7}}), "UnitNumber")
            .toUnsigned(),
        7u);
    EXPECT_EQ(errorOf([&] { controller.create("ZORM_VirtualMedia", {{"UnitNumber", 7}}); }), 11);
    EXPECT_EQ(errorOf([&] { controller.create("ZORM_VirtualMedia", {{"UnitNumber", 9}}); }), 4);
    EXPECT_EQ(errorOf([&] { controller.create("ZORM_VirtualMedia", {{"UnitNumber", 0}}); }), 4);
}
