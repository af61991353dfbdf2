#include "tests/engine/provider_controller.h"

#include <gtest/gtest.h>

using velclp_sim::ObjectPath;
using velclp_sim::Value;

namespace {

constexpr double fast = 1000;
constexpr const char* powerTie = "ZORM_CSAssociatedPowerManagementService";

ObjectPath system(Controller& controller, const std::string& name) {
    return controller.find("ZORM_ComputerSystem", "Name", name);
}

ObjectPath tieOf(Controller& controller, const ObjectPath& owner) {
    return controller.find(powerTie, "UserOfService", Value(owner));
}

std::uint64_t power(Controller& controller, const ObjectPath& target, int state) {
    return controller.call(controller.find("ZORM_PowerManagementService"),
                           "RequestPowerStateChange",
                           {{"PowerState", state}, {"ManagedElement", Value(target)}});
}

} // namespace

TEST(RequestStateChange, ShowsInEnabledStateAndRequestedState) {
    Controller controller;
    const ObjectPath port = controller.find("ZORM_EthernetPort", "DeviceID", "eth1");
    struct Case {
        int requested;
        std::uint64_t enabled;
    };
    for (const Case& one : {Case{2, 2}, Case{3, 3}, Case{6, 6}, Case{7, 7}, Case{11, 10}}) {
        EXPECT_EQ(controller.call(port, "RequestStateChange", {{"RequestedState", one.requested}}),
                  0u);
        EXPECT_EQ(controller.get(port, "EnabledState").toUnsigned(), one.enabled);
        EXPECT_EQ(controller.get(port, "RequestedState").toSigned(), one.requested);
    }
    EXPECT_FALSE(controller.get(port, "TimeOfLastStateChange").isNull());
}

TEST(RequestStateChange, OfAServiceShowsInStarted) {
    Controller controller;
    const ObjectPath daemon = controller.find("ZORM_DaemonService");
    controller.call(daemon, "RequestStateChange", {{"RequestedState", 3}});
    EXPECT_EQ(controller.get(daemon, "Started"), Value(false));
    controller.call(daemon, "RequestStateChange", {{"RequestedState", 2}});
    EXPECT_EQ(controller.get(daemon, "Started"), Value(true));
}

TEST(RequestStateChange, EndsAResetInTheEnabledState) {
    Controller controller(fast);
    const ObjectPath sp = controller.find("ZORM_SPComputerSystem");
    controller.call(sp, "RequestStateChange", {{"RequestedState", 11}});
    EXPECT_TRUE(Controller::eventually(
        [&] { return controller.get(sp, "EnabledState").toUnsigned() == 2; }));
    EXPECT_EQ(controller.get(sp, "RequestedState").toUnsigned(), 11u);
}

TEST(RequestStateChange, GivesWayToALaterRequest) {
    Controller controller(20);
    const ObjectPath port = controller.find("ZORM_EthernetPort", "DeviceID", "eth0");
    controller.call(port, "RequestStateChange", {{"RequestedState", 11}});
    controller.call(port, "RequestStateChange", {{"RequestedState", 3}});
    std::this_thread::sleep_for(std::chrono::milliseconds(250));
    EXPECT_EQ(controller.get(port, "EnabledState").toUnsigned(), 3u);
}

TEST(RequestStateChange, RefusesWhatItCannotDo) {
    Controller controller;
    const ObjectPath port = controller.find("ZORM_EthernetPort", "DeviceID", "eth0");
    EXPECT_EQ(controller.call(port, "RequestStateChange", {{"RequestedState", 77}}), 5u);
    EXPECT_EQ(controller.call(port, "RequestStateChange"), 5u);
    EXPECT_EQ(
        controller.call(port, "RequestStateChange",
                        {{"RequestedState", 2}, {"TimeoutPeriod", "00000000000005.000000:000"}}),
        4098u);
    const ObjectPath domain = controller.find("ZORM_AdminDomain");
    EXPECT_EQ(controller.call(domain, "RequestStateChange", {{"RequestedState", 2}}), 1u);
    EXPECT_EQ(controller.get(port, "EnabledState").toUnsigned(), 2u);
}

TEST(PowerManagement, TakesASystemDownInSteps) {
    Controller controller;
    const ObjectPath node = system(controller, "sysA");
    const ObjectPath tie = tieOf(controller, node);
    EXPECT_EQ(power(controller, node, 12), 0u);
    EXPECT_EQ(controller.get(tie, "PowerState").toUnsigned(), 2u);
    EXPECT_EQ(controller.get(tie, "RequestedPowerState").toUnsigned(), 12u);
    EXPECT_EQ(controller.get(tie, "TransitioningToPowerState").toUnsigned(), 12u);
    EXPECT_EQ(controller.get(node, "EnabledState").toUnsigned(), 4u);
}

TEST(PowerManagement, ReachesThePowerStateThatWasAskedFor) {
    Controller controller(fast);
    struct Case {
        const char* name;
        int requested;
        std::uint64_t power;
        std::uint64_t enabled;
    };
    for (const Case& one : {Case{"sysA", 12, 8, 3}, Case{"sysA", 2, 2, 2}, Case{"sysA", 5, 2, 2},
                            Case{"sysA", 8, 8, 3}, Case{"sysB", 2, 2, 2}}) {
        const ObjectPath node = system(controller, one.name);
        const ObjectPath tie = tieOf(controller, node);
        EXPECT_EQ(power(controller, node, one.requested), 0u);
        EXPECT_TRUE(Controller::eventually([&] {
            return controller.get(tie, "TransitioningToPowerState").toUnsigned() == 19 &&
                   controller.get(node, "EnabledState").toUnsigned() == one.enabled;
        }));
        EXPECT_EQ(controller.get(tie, "PowerState").toUnsigned(), one.power);
    }
}

TEST(PowerManagement, RefusesWhatASwitchedOffSystemCannotDo) {
    Controller controller;
    const ObjectPath off = system(controller, "sysB");
    EXPECT_EQ(power(controller, off, 5), 4097u);
    EXPECT_EQ(power(controller, off, 11), 4097u);
    EXPECT_EQ(power(controller, off, 8), 0u);
    EXPECT_EQ(controller.get(tieOf(controller, off), "TransitioningToPowerState").toUnsigned(),
              19u);
    EXPECT_EQ(power(controller, off, 6), 5u);
    EXPECT_EQ(power(controller, controller.find("ZORM_SPComputerSystem"), 2), 5u);
}

TEST(PowerManagement, InterruptsOnlyARunningSystem) {
    Controller controller;
    const ObjectPath node = system(controller, "sysA");
    EXPECT_EQ(power(controller, node, 11), 0u);
    EXPECT_EQ(controller.get(tieOf(controller, node), "RequestedPowerState").toUnsigned(), 11u);
    EXPECT_EQ(controller.get(tieOf(controller, node), "PowerState").toUnsigned(), 2u);
}

TEST(Services, AreStartedAndStoppedByTheirOwnMethods) {
    Controller controller;
    const ObjectPath agent = controller.find("ZORM_Service", "Name", "snmp");
    EXPECT_EQ(controller.call(agent, "StartService"), 0u);
    EXPECT_EQ(controller.get(agent, "Started"), Value(true));
    EXPECT_EQ(controller.get(agent, "EnabledState").toUnsigned(), 2u);
    EXPECT_EQ(controller.call(agent, "StopService"), 0u);
    EXPECT_EQ(controller.get(agent, "Started"), Value(false));
    EXPECT_EQ(controller.get(agent, "EnabledState").toUnsigned(), 3u);
}

TEST(Daemon, TakesALogLevelWithinItsRange) {
    Controller controller;
    const ObjectPath daemon = controller.find("ZORM_DaemonService");
    EXPECT_EQ(controller.call(daemon, "SetLogLevel", {{"LogLevel", 3}}), 0u);
    EXPECT_EQ(controller.get(daemon, "LogLevel").toUnsigned(), 3u);
    EXPECT_EQ(controller.call(daemon, "SetLogLevel", {{"LogLevel", 4}}), 5u);
    EXPECT_EQ(controller.call(daemon, "SetLogLevel"), 5u);
    EXPECT_EQ(controller.call(daemon, "Restart"), 0u);
    EXPECT_EQ(controller.get(daemon, "LogLevel").toUnsigned(), 3u);
}

TEST(Fan, RunsUpToTheSpeedThatWasAskedFor) {
    Controller controller(fast);
    const ObjectPath fan = controller.find("ZORM_Fan", "DeviceID", "fan1");
    EXPECT_EQ(controller.call(fan, "SetSpeed", {{"DesiredSpeed", 8000}, {"RampSeconds", 10}}), 0u);
    EXPECT_TRUE(Controller::eventually(
        [&] { return controller.get(fan, "CurrentSpeed").toUnsigned() == 8000; }));
    EXPECT_EQ(controller.call(fan, "SetSpeed", {{"DesiredSpeed", 0}}), 0u);
    EXPECT_EQ(controller.get(fan, "EnabledState").toUnsigned(), 3u);
    EXPECT_TRUE(Controller::eventually(
        [&] { return controller.get(fan, "CurrentSpeed").toUnsigned() == 0; }));
}

TEST(Fan, RefusesSpeedsThatItDoesNotHave) {
    Controller controller;
    const ObjectPath fan = controller.find("ZORM_Fan", "DeviceID", "fan2");
    EXPECT_EQ(controller.call(fan, "SetSpeed", {{"DesiredSpeed", 12001}}), 5u);
    EXPECT_EQ(controller.call(fan, "SetSpeed"), 5u);
    controller.modify(fan, "VariableSpeed", false);
    EXPECT_EQ(controller.call(fan, "SetSpeed", {{"DesiredSpeed", 100}}), 1u);
    EXPECT_EQ(controller.get(fan, "DesiredSpeed").toUnsigned(), 6000u);
}
