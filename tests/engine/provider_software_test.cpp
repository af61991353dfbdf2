#include "tests/engine/provider_controller.h"

#include <gtest/gtest.h>

using velclp_sim::ObjectPath;
using velclp_sim::Value;

namespace {

constexpr double fast = 1000;

velclp_sim::MethodResult install(Controller& controller, const std::string& uri) {
    return controller.invoke(
        controller.find("ZORM_SoftwareInstallationService"), "InstallFromURI",
        {{"URI", uri}, {"Target", Value(controller.find("ZORM_SPComputerSystem"))}});
}

ObjectPath jobOf(const velclp_sim::MethodResult& started) {
    EXPECT_EQ(started.returnValue.toUnsigned(), 4096u);
    return *started.out.get("Job").toPath();
}

} // namespace

TEST(Update, RunsAndInstallsTheVersionThatTheImageIsNamedAfter) {
    Controller controller(fast);
    const ObjectPath job = jobOf(install(controller, "http://host/fw/sp-2.15.0.bin"));
    EXPECT_EQ(controller.get(job, "JobState").toUnsigned(), 4u);
    EXPECT_TRUE(
        Controller::eventually([&] { return controller.get(job, "JobState").toUnsigned() == 7; }));
    EXPECT_EQ(controller.get(job, "PercentComplete").toUnsigned(), 100u);
    const ObjectPath sp = controller.find("ZORM_SPComputerSystem");
    EXPECT_TRUE(Controller::eventually(
        [&] { return controller.get(sp, "FirmwareVersion") == Value("2.15.0"); }));
    EXPECT_EQ(controller.get(sp, "UpdateSource"), Value("http://host/fw/sp-2.15.0.bin"));
    EXPECT_TRUE(Controller::eventually([&] {
        return controller.get(controller.find("ZORM_SoftwareIdentity", "Name", "active image"),
                              "VersionString") == Value("2.15.0");
    }));
    EXPECT_EQ(controller.partners(job, "ZORM_AffectedJobElement").size(), 1u);
}

TEST(Update, CountsUpWhileItRuns) {
    Controller controller(100);
    const ObjectPath job = jobOf(install(controller, "http://host/x.bin?seconds=60"));
    EXPECT_TRUE(Controller::eventually([&] {
        const auto percent = controller.get(job, "PercentComplete").toUnsigned();
        return percent > 0 && percent < 100;
    }));
    EXPECT_EQ(controller.get(job, "JobState").toUnsigned(), 4u);
}

TEST(Update, EndsTheWayThatTheImageAsksFor) {
    struct Case {
        const char* end;
        std::uint64_t state;
    };
    Controller controller(fast);
    for (const Case& one : {Case{"completed", 7}, Case{"unchanged", 2}, Case{"terminated", 8},
                            Case{"killed", 9}, Case{"exception", 10}}) {
        const ObjectPath job =
            jobOf(install(controller, std::string("tftp://h/sp-9.9.bin?seconds=0&end=") + one.end));
        EXPECT_EQ(controller.get(job, "JobState").toUnsigned(), one.state) << one.end;
    }
    const ObjectPath gone = jobOf(install(controller, "http://h/x.bin?end=vanish&seconds=1"));
    EXPECT_TRUE(Controller::eventually([&] { return !controller.exists(gone); }));
    EXPECT_TRUE(controller.partners(gone, "ZORM_AffectedJobElement").empty());
}

TEST(Update, ChangesNothingForTheVersionThatRuns) {
    Controller controller;
    const ObjectPath job = jobOf(install(controller, "http://host/sp-2.14.3.bin?seconds=0"));
    EXPECT_EQ(controller.get(job, "JobState").toUnsigned(), 2u);
    EXPECT_EQ(controller.get(controller.find("ZORM_SPComputerSystem"), "FirmwareVersion"),
              Value("2.14.3"));
}

TEST(Update, IsRefusedWhenItCannotBegin) {
    Controller controller;
    for (const char* uri : {"", "sp.bin", "gopher://host/sp.bin", ":", "http"}) {
        EXPECT_EQ(install(controller, uri).returnValue.toUnsigned(), 5u) << uri;
    }
    EXPECT_EQ(
        controller.call(controller.find("ZORM_SoftwareInstallationService"), "InstallFromURI",
                        {{"URI", "http://h/x"}, {"Target", Value(controller.find("ZORM_Fan"))}}),
        5u);
    EXPECT_EQ(controller.count("ZORM_SoftwareInstallationJob"), 0u);
    jobOf(install(controller, "http://host/one.bin"));
    EXPECT_EQ(install(controller, "http://host/two.bin").returnValue.toUnsigned(), 6u);
}

TEST(Update, CanBeEndedFromOutside) {
    Controller controller;
    const ObjectPath job = jobOf(install(controller, "http://host/sp-3.0.bin"));
    EXPECT_EQ(controller.call(job, "RequestStateChange", {{"RequestedState", 2}}), 5u);
    EXPECT_EQ(controller.call(job, "RequestStateChange", {{"RequestedState", 5}}), 0u);
    EXPECT_EQ(controller.get(job, "JobState").toUnsigned(), 9u);
    EXPECT_EQ(controller.call(job, "RequestStateChange", {{"RequestedState", 4}}), 4u);
    EXPECT_EQ(install(controller, "http://host/next.bin").returnValue.toUnsigned(), 4096u);
}

TEST(Update, OutlivesTheRemovalOfItsJob) {
    Controller controller(fast);
    const ObjectPath job = jobOf(install(controller, "http://host/sp-3.1.bin"));
    controller.remove(job);
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_FALSE(controller.exists(job));
    EXPECT_EQ(controller.get(controller.find("ZORM_SPComputerSystem"), "FirmwareVersion"),
              Value("2.14.3"));
}
