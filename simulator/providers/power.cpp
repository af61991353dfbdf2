// The power management service: systems take seconds to come up and to shut down. While they do,
// the association that ties them to the service says where they are going.

#include "simulator/providers/toolkit.h"

namespace velclp_sim {
namespace {

constexpr const char* serviceAssociation = "ZORM_CSAssociatedPowerManagementService";

constexpr std::uint16_t powerOn = 2;
constexpr std::uint16_t powerCycle = 5;
constexpr std::uint16_t powerOff = 8;
constexpr std::uint16_t powerInterrupt = 11;
constexpr std::uint16_t powerOffGraceful = 12;
constexpr std::uint16_t noTransition = 19;

/// How the system looks from a moment on; an absent power state stays as it is.
struct Step {
    Scheduler::Duration at;
    std::optional<std::uint16_t> power;
    std::uint16_t enabled;
    std::uint16_t operational;
};

/// The way to a power state: what the system is asked for, and its steps; the first comes at once.
struct Way {
    std::uint16_t requestedState;
    std::vector<Step> steps;
};

using std::chrono::seconds;

std::optional<Way> wayTo(std::uint64_t requested) {
    const Step starting{seconds(0), std::nullopt, 10, 8};
    const Step stopping{seconds(0), std::nullopt, 4, 9};
    switch (requested) {
    case powerOn:
        return Way{2, {starting, {seconds(3), powerOn, 2, 2}}};
    case powerOffGraceful:
        return Way{3, {stopping, {seconds(4), powerOff, 3, 10}}};
    case powerOff:
        return Way{3, {stopping, {seconds(1), powerOff, 3, 10}}};
    case powerCycle:
        return Way{11, {stopping, {seconds(1), powerOff, 10, 8}, {seconds(4), powerOn, 2, 2}}};
    default:
        return std::nullopt;
    }
}

struct Subject {
    ObjectPath system;
    ObjectPath tie;
};

/// The part of the provider that steps still due may outlive it with.
struct Course {
    explicit Course(Repository& all) : repository(all) {}

    Repository& repository;
    LatestChange latest;

    void take(const Subject& subject, const Step& step, bool last) {
        updateIfThere(repository, subject.tie, [&](Instance& tied) {
            if (step.power) {
                tied.set("PowerState", *step.power);
            }
            if (last) {
                tied.set("TransitioningToPowerState", noTransition);
            }
        });
        updateIfThere(repository, subject.system, [&](Instance& system) {
            system.set("EnabledState", step.enabled);
            system.set("OperationalStatus", Value::Array{Value(step.operational)});
            system.set("TimeOfLastStateChange", timeText(nowMicroseconds()));
        });
    }
};

class PowerProvider : public Provider {
public:
    explicit PowerProvider(Services& services)
        : services_(services), course_(std::make_shared<Course>(services.repository)) {}

    std::vector<std::string> classes() const override { return {"ZORM_PowerManagementService"}; }

    std::optional<MethodResult> invokeMethod(const Caller& /*caller*/, const ObjectPath& path,
                                             const Method& method, const Arguments& in) override {
        if (!sameName(method.name, "RequestPowerStateChange")) {
            return std::nullopt;
        }
        const auto system = instanceArgument(services_.repository, in.get("ManagedElement"));
        const auto tied =
            system ? tie(services_.repository, path, *system, serviceAssociation) : std::nullopt;
        if (!tied) {
            return answer(Outcome::invalidParameter);
        }
        return answer(request({*system, *tied}, in.get("PowerState").toUnsigned()));
    }

private:
    Outcome request(const Subject& subject, std::uint64_t requested) {
        const InstancePtr tied = services_.repository.find(subject.tie);
        if (!tied) {
            return Outcome::failed;
        }
        const bool running = tied->get("PowerState").toUnsigned() == powerOn;
        const bool resting = tied->get("TransitioningToPowerState").toUnsigned() == noTransition;
        if (requested == powerInterrupt) {
            return running ? note(subject, requested, noTransition) : Outcome::invalidTransition;
        }
        const std::optional<Way> way = wayTo(requested);
        if (!way) {
            return Outcome::invalidParameter;
        }
        if (requested == powerCycle && !running) {
            return Outcome::invalidTransition;
        }
        if (resting && running == (requested == powerOn) && requested != powerCycle) {
            return note(subject, requested, noTransition);
        }
        note(subject, requested, requested);
        go(subject, *way);
        return Outcome::done;
    }

    Outcome note(const Subject& subject, std::uint64_t requested, std::uint64_t towards) {
        services_.repository.update(subject.tie, [&](Instance& tied) {
            tied.set("RequestedPowerState", requested);
            tied.set("TransitioningToPowerState", towards);
        });
        return Outcome::done;
    }

    void go(const Subject& subject, const Way& way) {
        services_.repository.update(subject.system, [&](Instance& system) {
            system.set("RequestedState", way.requestedState);
        });
        const std::uint64_t number = course_->latest.start(subject.system);
        course_->take(subject, way.steps.front(), false);
        for (std::size_t i = 1; i < way.steps.size(); ++i) {
            const bool last = i + 1 == way.steps.size();
            const auto due = [course = course_, subject, step = way.steps[i], last, number] {
                if (course->latest.isLatest(subject.system, number)) {
                    course->take(subject, step, last);
                }
            };
            services_.scheduler.after(way.steps[i].at, due);
        }
    }

    Services& services_;
    std::shared_ptr<Course> course_;
};

const ProviderRegistration powerRegistration{
    [](Services& services) { return std::make_unique<PowerProvider>(services); }};

} // namespace
} // namespace velclp_sim
