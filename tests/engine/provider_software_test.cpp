// Firmware updates of the sample controller.
#include "tests/engine/provider_controller.h"

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
    controller.expect(job, {{"JobState", 4}});
    EXPECT_TRUE(eventually([&] { return controller.get(job, "JobState").toUnsigned() == 7; }));
    controller.expect(job, {{"PercentComplete", 100}});
    const ObjectPath sp = controller.find("ZORM_SPComputerSystem");
    const ObjectPath image = controller.find("ZORM_SoftwareIdentity", "Name", "active image");
    EXPECT_TRUE(eventually([&] {
        return controller.get(sp, "FirmwareVersion") == Value("2.15.0") &&
               controller.get(image, "VersionString") == Value("2.15.0");
    }));
    controller.expect(sp, {{"UpdateSource", "http://host/fw/sp-2.15.0.bin"}});
    EXPECT_EQ(controller.partners(job, "ZORM_AffectedJobElement").size(), 1u);
}

TEST(Update, CountsUpWhileItRuns) {
    Controller controller(100);
    const ObjectPath job = jobOf(install(controller, "http://host/x.bin?seconds=60"));
    EXPECT_TRUE(eventually([&] {
        const auto percent = controller.get(job, "PercentComplete").toUnsigned();
        return percent > 0 && percent < 100;
    }));
    controller.expect(job, {{"JobState", 4}});
}

TEST(Update, EndsTheWayThatTheImageAsksFor) {
    Controller controller(fast);
    for (const auto& [image, state] : {std::pair{"sp-2.14.3.bin?seconds=0", 2}, // which runs
                                       {"sp-9.9.bin?seconds=0&end=completed", 7},
                                       {"sp-9.9.bin?seconds=0&end=unchanged", 2},
                                       {"sp-9.9.bin?seconds=0&end=terminated", 8},
                                       {"sp-9.9.bin?seconds=0&end=killed", 9},
                                       {"sp-9.9.bin?seconds=0&end=exception", 10}}) {
        controller.expect(jobOf(install(controller, std::string("tftp://h/") + image)),
                          {{"JobState", state}});
    }
    const ObjectPath gone = jobOf(install(controller, "http://h/x.bin?end=vanish&seconds=1"));
    EXPECT_TRUE(eventually([&] { return !controller.exists(gone); }));
    EXPECT_TRUE(controller.partners(gone, "ZORM_AffectedJobElement").empty());
}

TEST(Update, IsRefusedWhenItCannotBeginAndCanBeEndedFromOutside) {
    Controller controller;
    for (const char* uri : {"", "sp.bin", "gopher://host/sp.bin", ":", "http"}) {
        EXPECT_EQ(install(controller, uri).returnValue.toUnsigned(), 5u) << uri;
    }
    EXPECT_EQ(
        controller.call("ZORM_SoftwareInstallationService", "InstallFromURI",
                        {{"URI", "http://h/x"}, {"Target", Value(controller.find("ZORM_Fan"))}}),
        5u);
    EXPECT_EQ(controller.count("ZORM_SoftwareInstallationJob"), 0u);
    const ObjectPath job = jobOf(install(controller, "http://host/one.bin"));
    EXPECT_EQ(install(controller, "http://host/two.bin").returnValue.toUnsigned(), 6u);
    for (const auto& [requested, result] : {std::pair{2, 5u}, {5, 0u}, {4, 4u}}) {
        EXPECT_EQ(controller.call(job, "RequestStateChange", {{"RequestedState", requested}}),
                  result);
    }
    controller.expect(job, {{"JobState", 9}});
    jobOf(install(controller, "http://host/next.bin"));
}

TEST(Update, OutlivesTheRemovalOfItsJob) {
    Controller controller(fast);
    const ObjectPath job = jobOf(install(controller, "http://host/sp-3.1.bin"));
    controller.remove(job);
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_FALSE(controller.exists(job));
    controller.expect(controller.find("ZORM_SPComputerSystem"), {{"FirmwareVersion", "2.14.3"}});
}
