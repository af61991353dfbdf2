// States, power and speeds that are asked of the sample controller, and what it refuses.
#include "tests/engine/provider_controller.h"

using velclp_sim::ObjectPath;
using velclp_sim::Value;

namespace {

constexpr double fast = 1000;

ObjectPath tieOf(Controller& controller, const ObjectPath& owner) {
    return controller.find("ZORM_CSAssociatedPowerManagementService", "UserOfService",
                           Value(owner));
}

std::uint64_t power(Controller& controller, const ObjectPath& target, int state) {
    return controller.call("ZORM_PowerManagementService", "RequestPowerStateChange",
                           {{"PowerState", state}, {"ManagedElement", Value(target)}});
}

std::uint64_t change(Controller& controller, const ObjectPath& target, int state) {
    return controller.call(target, "RequestStateChange", {{"RequestedState", state}});
}

} // namespace

TEST(RequestStateChange, ShowsInTheObjectsStates) {
    Controller controller;
    const ObjectPath port = controller.find("ZORM_EthernetPort", "DeviceID", "eth1");
    for (const auto& [requested, enabled] : {std::pair{2, 2}, {3, 3}, {6, 6}, {7, 7}, {11, 10}}) {
        EXPECT_EQ(change(controller, port, requested), 0u);
        controller.expect(port, {{"EnabledState", enabled}, {"RequestedState", requested}});
    }
    EXPECT_FALSE(controller.get(port, "TimeOfLastStateChange").isNull());
    const ObjectPath daemon = controller.find("ZORM_DaemonService");
    change(controller, daemon, 3);
    controller.expect(daemon, {{"Started", false}});
    change(controller, daemon, 2);
    controller.expect(daemon, {{"Started", true}});
}

TEST(RequestStateChange, EndsAResetInTheEnabledState) {
    Controller controller(fast);
    const ObjectPath sp = controller.find("ZORM_SPComputerSystem");
    change(controller, sp, 11);
    EXPECT_TRUE(eventually([&] { return controller.get(sp, "EnabledState").toUnsigned() == 2; }));
    controller.expect(sp, {{"RequestedState", 11}});
}

TEST(RequestStateChange, GivesWayToALaterRequest) {
    Controller controller(20);
    const ObjectPath port = controller.find("ZORM_EthernetPort", "DeviceID", "eth0");
    change(controller, port, 11);
    change(controller, port, 3);
    std::this_thread::sleep_for(std::chrono::milliseconds(250));
    controller.expect(port, {{"EnabledState", 3}});
}

TEST(PowerManagement, TakesASystemDownInStepsAndRefusesWhatOneThatIsOffCannotDo) {
    Controller controller;
    const ObjectPath node = controller.find("ZORM_ComputerSystem", "Name", "sysA");
    EXPECT_EQ(power(controller, node, 11), 0u) << "an interrupt";
    controller.expect(tieOf(controller, node), {{"RequestedPowerState", 11}, {"PowerState", 2}});
    EXPECT_EQ(power(controller, node, 12), 0u);
    controller.expect(
        tieOf(controller, node),
        {{"PowerState", 2}, {"RequestedPowerState", 12}, {"TransitioningToPowerState", 12}});
    controller.expect(node, {{"EnabledState", 4}});

    const ObjectPath off = controller.find("ZORM_ComputerSystem", "Name", "sysB");
    for (const auto& [state, result] : {std::pair{5, 4097u}, {11, 4097u}, {8, 0u}, {6, 5u}}) {
        EXPECT_EQ(power(controller, off, state), result) << state;
    }
    controller.expect(tieOf(controller, off), {{"TransitioningToPowerState", 19}});
}

TEST(PowerManagement, ReachesThePowerStateThatWasAskedFor) {
    Controller controller(fast);
    struct Case {
        const char* name;
        int requested;
        int power;
        std::uint64_t enabled;
    };
    for (const Case& one : {Case{"sysA", 12, 8, 3}, Case{"sysA", 2, 2, 2}, Case{"sysA", 5, 2, 2},
                            Case{"sysA", 8, 8, 3}, Case{"sysB", 2, 2, 2}}) {
        const ObjectPath node = controller.find("ZORM_ComputerSystem", "Name", one.name);
        const ObjectPath tie = tieOf(controller, node);
        EXPECT_EQ(power(controller, node, one.requested), 0u);
        EXPECT_TRUE(eventually([&] {
            return controller.get(tie, "TransitioningToPowerState").toUnsigned() == 19 &&
                   controller.get(node, "EnabledState").toUnsigned() == one.enabled;
        }));
        controller.expect(tie, {{"PowerState", one.power}});
    }
}

TEST(Services, AreStartedAndStoppedByTheirOwnMethods) {
    Controller controller;
    const ObjectPath agent = controller.find("ZORM_Service", "Name", "snmp");
    EXPECT_EQ(controller.call(agent, "StartService"), 0u);
    controller.expect(agent, {{"Started", true}, {"EnabledState", 2}});
    EXPECT_EQ(controller.call(agent, "StopService"), 0u);
    controller.expect(agent, {{"Started", false}, {"EnabledState", 3}});
    EXPECT_EQ(controller.call("ZORM_DaemonService", "Restart"), 0u);
}

TEST(Fan, RunsUpToTheSpeedThatWasAskedFor) {
    Controller controller(fast);
    const ObjectPath fan = controller.find("ZORM_Fan", "DeviceID", "fan1");
    EXPECT_EQ(controller.call(fan, "SetSpeed", {{"DesiredSpeed", 8000}, {"RampSeconds", 10}}), 0u);
    EXPECT_TRUE(
        eventually([&] { return controller.get(fan, "CurrentSpeed").toUnsigned() == 8000; }));
    EXPECT_EQ(controller.call(fan, "SetSpeed", {{"DesiredSpeed", 0}}), 0u);
    controller.expect(fan, {{"EnabledState", 3}});
    EXPECT_TRUE(eventually([&] { return controller.get(fan, "CurrentSpeed").toUnsigned() == 0; }));
    controller.modify(fan, "VariableSpeed", false);
    EXPECT_EQ(controller.call(fan, "SetSpeed", {{"DesiredSpeed", 100}}), 1u);
}

// Calls with arguments that are missing or out of range; most answer 5 and change nothing.
TEST(Methods, RefuseWhatTheyCannotDo) {
    Controller controller;
    const Value sp(controller.find("ZORM_SPComputerSystem"));
    const Value fan(controller.find("ZORM_Fan"));
    const Value port(controller.find("ZORM_EthernetPort", "DeviceID", "eth0"));
    const Value meter(controller.find("ZORM_PowerMeter", "SystemName", "sysA"));
    const Value endpoint(controller.find("ZORM_IPProtocolEndpoint"));
    const Value settings(controller.find("ZORM_IPAssignmentSettingData"));
    const auto limit = [](const Value& watts, const char* unit, const Value& element) {
        return Controller::Named{{"EnforceUtilizationLimit", true},
                                 {"UtilizationLimit", watts},
                                 {"UtilizationLimitUnit", unit},
                                 {"UtilizingElement", element}};
    };
    const auto sideband = [](int mode, const Value::Array& ports) {
        return Controller::Named{{"RequestedNCSIMode", mode}, {"EthernetPorts", Value(ports)}};
    };
    const struct {
        const char* className;
        const char* method;
        Controller::Named arguments;
        std::uint64_t result = 5;
    } cases[] = {
        {"ZORM_EthernetPort", "RequestStateChange", {{"RequestedState", 77}}},
        {"ZORM_EthernetPort", "RequestStateChange", {}},
        {"ZORM_EthernetPort",
         "RequestStateChange",
         {{"RequestedState", 2}, {"TimeoutPeriod", "00000000000005.000000:000"}},
         4098},
        {"ZORM_AdminDomain", "RequestStateChange", {{"RequestedState", 2}}, 1},
        {"ZORM_PowerManagementService",
         "RequestPowerStateChange",
         {{"PowerState", 2}, {"ManagedElement", sp}}},
        {"ZORM_DaemonService", "SetLogLevel", {{"LogLevel", 4}}},
        {"ZORM_DaemonService", "SetLogLevel", {}},
        {"ZORM_Fan", "SetSpeed", {{"DesiredSpeed", 12001}}},
        {"ZORM_Fan", "SetSpeed", {}},
        {"ZORM_Chassis", "SetIdentify", {{"IdentifyMode", 5}}},
        {"ZORM_Chassis", "SetIdentify", {}},
        {"ZORM_TimeService", "ManageTime", {{"GetRequest", false}, {"ManagedElement", sp}}},
        {"ZORM_TimeService",
         "ManageTime",
         {{"GetRequest", false},
          {"ManagedElement", sp},
          {"TimeData", "00000001000000.000000:000"}}},
        {"ZORM_TimeService", "ManageTime", {{"GetRequest", true}}},
        {"ZORM_TimeService", "ManageTime", {{"ManagedElement", sp}}},
        {"ZORM_PUMService", "RequestPowerUtilizationLimit", limit(0, "watt", meter)},
        {"ZORM_PUMService", "RequestPowerUtilizationLimit", limit(751, "watt", meter)},
        {"ZORM_PUMService", "RequestPowerUtilizationLimit", limit(300, "BTU", meter)},
        {"ZORM_PUMService", "RequestPowerUtilizationLimit", limit(300, "watt", fan)},
        {"ZORM_EthernetConfigurationService", "RequestNCSIModeChange", sideband(6, {port})},
        {"ZORM_EthernetConfigurationService", "RequestNCSIModeChange", sideband(3, {})},
        {"ZORM_EthernetConfigurationService", "RequestNCSIModeChange", sideband(3, {port, fan})},
        {"ZORM_IPConfigurationService",
         "ApplySettingToIPProtocolEndpoint",
         {{"Configuration", endpoint}, {"Endpoint", endpoint}}},
        {"ZORM_IPConfigurationService",
         "ApplySettingToIPProtocolEndpoint",
         {{"Configuration", settings}, {"Endpoint", port}}},
    };
    for (const auto& c : cases) {
        const auto before = controller.repository.instances("root/zorm", "CIM_ManagedElement");
        EXPECT_EQ(controller.call(c.className, c.method, c.arguments), c.result) << c.method;
        const auto after = controller.repository.instances("root/zorm", "CIM_ManagedElement");
        EXPECT_TRUE(after == before || c.result != 5) << c.method;
    }
}
