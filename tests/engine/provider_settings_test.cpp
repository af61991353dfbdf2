// Settings, accounts, logs and media of the sample controller.
#include "tests/engine/provider_controller.h"

using velclp_sim::ObjectPath;
using velclp_sim::Value;

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
    for (const auto& [typed, begin] :
         {std::pair{"20310203040500.000000+060", "203102030305"},
          {"19610203040500.250000+000", "196102030405"},
          {"99991231235959.999999-720", "99991231235959.999999+000"}}) {
        EXPECT_EQ(
            controller.call(clock, "ManageTime",
                            {{"GetRequest", false}, {"ManagedElement", sp}, {"TimeData", typed}}),
            0u);
        EXPECT_EQ(read().rfind(begin, 0), 0u) << read();
        EXPECT_TRUE(velclp_sim::isDatetime(read())) << read();
    }
}

TEST(IpSettings, BecomeCurrentAndTheAddressFollows) {
    Controller controller;
    const ObjectPath endpoint = controller.find("ZORM_IPProtocolEndpoint");
    const auto settings = [&](std::uint64_t origin) {
        return controller.find("ZORM_IPAssignmentSettingData", "AddressOrigin", origin);
    };
    const ObjectPath fixed = settings(3);
    const ObjectPath leased = settings(4);
    controller.modify(fixed, "IPv4Address", "192.0.2.9");
    for (const auto& [chosen, other, address] :
         {std::tuple{leased, fixed, "192.0.2.131"}, {fixed, leased, "192.0.2.9"}}) {
        EXPECT_EQ(
            controller.call("ZORM_IPConfigurationService", "ApplySettingToIPProtocolEndpoint",
                            {{"Configuration", Value(chosen)}, {"Endpoint", Value(endpoint)}}),
            0u);
        for (const auto& [what, isCurrent] : {std::pair{chosen, 1}, {other, 2}}) {
            controller.expect(
                controller.find("ZORM_ElementSettingData", "SettingData", Value(what)),
                {{"IsCurrent", isCurrent}});
        }
        controller.expect(endpoint, {{"IPv4Address", address},
                                     {"AddressOrigin", controller.get(chosen, "AddressOrigin")}});
    }
}

TEST(Logs, CountTheirOwnRecordsAndLoseThemWhenTheyAreCleared) {
    Controller controller;
    const ObjectPath log = controller.find("ZORM_RecordLog", "InstanceID", "ZORM:log:sysA");
    controller.remove(controller.find("ZORM_SELLogEntry", "RecordID", "2"));
    controller.expect(log, {{"CurrentNumberOfRecords", 2}});
    EXPECT_EQ(controller.partners(log, "ZORM_LogManagesRecord").size(), 2u);
    EXPECT_EQ(controller.call(log, "ClearLog"), 0u);
    EXPECT_EQ(controller.count("ZORM_SELLogEntry"), 1u);
    controller.expect(log, {{"CurrentNumberOfRecords", 0}});
    EXPECT_TRUE(controller.partners(log, "ZORM_LogManagesRecord").empty());
}

TEST(Accounts, GetKeysAndTiesOfTheProvidersChoosing) {
    Controller controller;
    const ObjectPath sp = controller.find("ZORM_SPComputerSystem");
    const ObjectPath mary = controller.create("ZORM_LocalAccount",
                                              {{"UserID", "mary"},
                                               {"Roles", Value::Array{"operator", Value(), "NULL"}},
                                               {"UserPassword", Value::Array{"secret"}}});
    EXPECT_EQ(mary.localText(),
              "ZORM_LocalAccount.Name=\"mary\",SystemCreationClassName=\"ZORM_SPComputerSystem\","
              "SystemName=\"sp0\",CreationClassName=\"ZORM_LocalAccount\"");
    EXPECT_EQ(controller.partners(mary, "ZORM_AccountOnSystem"), std::vector<ObjectPath>{sp});
    controller.expect(mary, {{"UserPassword", Value()}, {"EnabledState", 2}});
    EXPECT_EQ(controller.get(mary, "Roles").toArray().size(), 1u);
    for (const char* role : {"operator", "administrator"}) {
        ASSERT_EQ(controller.partners(mary, "ZORM_RoleMember").size(), 1u);
        EXPECT_EQ(controller.partners(mary, "ZORM_RoleMember").front().key("Name"), Value(role));
        controller.modify(mary, "Roles", Value::Array{"administrator", "nobody"});
    }
    for (const char* name : {"user1", "user2"}) {
        EXPECT_EQ(controller.create("ZORM_LocalAccount", {}).key("Name"), Value(name));
    }
}

TEST(Accounts, HidePasswordsAndRefuseNamesThatAreTakenOrNoNames) {
    Controller controller;
    const ObjectPath admin = controller.find("ZORM_Account", "Name", "admin");
    const Value before = controller.get(admin, "PasswordLastChange");
    controller.modify(admin, "UserPassword", Value::Array{"new"});
    controller.expect(admin, {{"UserPassword", Value()}});
    EXPECT_NE(controller.get(admin, "PasswordLastChange"), before);
    for (const auto& [name, code] : {std::pair{"admin", 11}, {"o'neill", 4}, {"", 4}}) {
        EXPECT_EQ(errorOf([&, id = name] {
                      controller.create("ZORM_LocalAccount", {{"UserID", id}});
                  }),
                  code);
    }
    EXPECT_EQ(errorOf([&] { controller.modify(admin, "UserID", "a b"); }), 4);
    EXPECT_EQ(controller.count("ZORM_Account"), 2u);
}

TEST(VirtualMedia, TakesTheLowestFreeUnit) {
    Controller controller;
    const ObjectPath disk = controller.create("ZORM_VirtualMedia", {{"ImageURI", "nfs://h/i.img"}});
    controller.expect(disk, {{"UnitNumber", 2}, {"DeviceID", "unit2"}});
    EXPECT_EQ(controller.partners(disk, "ZORM_SPDevice").size(), 1u);
    for (const auto& [unit, code] : {std::pair{7, 0}, {7, 11}, {9, 4}, {0, 4}}) {
        EXPECT_EQ(errorOf([&, number = unit] {
                      controller.create("ZORM_VirtualMedia", {{"UnitNumber", number}});
                  }),
                  code);
    }
    EXPECT_NO_THROW(controller.find("ZORM_VirtualMedia", "UnitNumber", Value(std::uint64_t(7))));
}
