// RequestStateChange of everything that can be enabled and disabled: the states show in
// EnabledState and RequestedState, and in Started of services. Shutting down and resetting take
// their time.

#include "simulator/providers/toolkit.h"

namespace velclp_sim {
namespace {

constexpr std::uint16_t stateEnabled = 2;
constexpr std::uint16_t stateDisabled = 3;
constexpr std::uint16_t stateShuttingDown = 4;
constexpr std::uint16_t stateNotApplicable = 5;
constexpr std::uint16_t stateOffline = 6;
constexpr std::uint16_t stateInTest = 7;
constexpr std::uint16_t stateDeferred = 8;
constexpr std::uint16_t stateQuiesce = 9;
constexpr std::uint16_t stateStarting = 10;

/// What a requested state does: the state at once, and the one that follows when it takes its time.
struct Course {
    std::uint16_t atOnce;
    std::optional<std::uint16_t> later;
};

std::optional<Course> courseTo(std::uint64_t requested) {
    switch (requested) {
    case 2:
        return Course{stateEnabled, std::nullopt};
    case 3:
        return Course{stateDisabled, std::nullopt};
    case 4:
        return Course{stateShuttingDown, stateDisabled};
    case 6:
        return Course{stateOffline, std::nullopt};
    case 7:
        return Course{stateInTest, std::nullopt};
    case 8:
        return Course{stateDeferred, std::nullopt};
    case 9:
        return Course{stateQuiesce, std::nullopt};
    case 10:
    case 11:
        return Course{stateStarting, stateEnabled};
    default:
        return std::nullopt;
    }
}

void enter(Instance& instance, std::uint16_t state) {
    instance.set("EnabledState", state);
    instance.set("TimeOfLastStateChange", timeText(nowMicroseconds()));
    if (instance.cls().property("Started")) {
        instance.set("Started", state == stateEnabled);
    }
}

class StateChangeProvider : public Provider {
public:
    explicit StateChangeProvider(Services& services) : services_(services) {}

    std::vector<std::string> classes() const override { return {"CIM_EnabledLogicalElement"}; }

    std::optional<MethodResult> invokeMethod(const Caller& /*caller*/, const ObjectPath& path,
                                             const Method& method, const Arguments& in) override {
        if (!sameName(method.name, "RequestStateChange")) {
            return std::nullopt;
        }
        const Value& timeout = in.get("TimeoutPeriod");
        if (timeout.isString() && microsecondsOf(timeout.toString()).value_or(1) != 0) {
            return answer(Outcome::noTimeout);
        }
        return answer(request(path, in.get("RequestedState").toUnsigned()));
    }

private:
    Outcome request(const ObjectPath& path, std::uint64_t requested) {
        const std::optional<Course> course = courseTo(requested);
        if (!course) {
            return Outcome::invalidParameter;
        }
        bool applicable = true;
        services_.repository.update(path, [&](Instance& instance) {
            applicable = instance.get("EnabledState").toUnsigned() != stateNotApplicable;
            if (applicable) {
                instance.set("RequestedState", requested);
                enter(instance, course->atOnce);
            }
        });
        if (!applicable) {
            return Outcome::notSupported;
        }
        const std::uint64_t number = latest_->start(path);
        if (course->later) {
            finishLater(path, number, *course->later);
        }
        return Outcome::done;
    }

    void finishLater(const ObjectPath& path, std::uint64_t number, std::uint16_t state) {
        services_.scheduler.after(std::chrono::seconds(2), [latest = latest_, path, number, state,
                                                            &repository = services_.repository] {
            if (latest->isLatest(path, number)) {
                updateIfThere(repository, path,
                              [&](Instance& instance) { enter(instance, state); });
            }
        });
    }

    Services& services_;
    std::shared_ptr<LatestChange> latest_ = std::make_shared<LatestChange>();
};

const ProviderRegistration stateChangeRegistration{
    [](Services& services) { return std::make_unique<StateChangeProvider>(services); }};

} // namespace
} // namespace velclp_sim
