// Methods of the hardware: fans that run up and down, and the chassis's identification lamp.

#include "simulator/providers/toolkit.h"

namespace velclp_sim {
namespace {

class FanProvider : public Provider {
public:
    explicit FanProvider(Services& services) : services_(services) {}

    std::vector<std::string> classes() const override { return {"ZORM_Fan"}; }

    std::optional<MethodResult> invokeMethod(const Caller& /*caller*/, const ObjectPath& path,
                                             const Method& method, const Arguments& in) override {
        if (sameName(method.name, "SetSpeed")) {
            return answer(setSpeed(path, in));
        }
        if (sameName(method.name, "Restart")) {
            return answer(restart(path));
        }
        return std::nullopt;
    }

private:
    Outcome setSpeed(const ObjectPath& path, const Arguments& in) {
        constexpr std::uint64_t fastest = 12000;
        constexpr std::uint64_t usualRamp = 2;
        if (in.get("DesiredSpeed").isNull() || in.get("DesiredSpeed").toUnsigned() > fastest) {
            return Outcome::invalidParameter;
        }
        const std::uint64_t speed = in.get("DesiredSpeed").toUnsigned();
        bool variable = false;
        services_.repository.update(path, [&](Instance& fan) {
            variable = fan.get("VariableSpeed").toBool();
            if (variable) {
                fan.set("DesiredSpeed", speed);
                fan.set("EnabledState", speed > 0 ? 2 : 3);
                fan.set("RequestedState", speed > 0 ? 2 : 3);
            }
        });
        if (!variable) {
            return Outcome::notSupported;
        }
        reachLater(path, in.get("RampSeconds").toUnsigned(usualRamp));
        return Outcome::done;
    }

    Outcome restart(const ObjectPath& path) {
        services_.repository.update(path, [](Instance& fan) { fan.set("CurrentSpeed", 0); });
        reachLater(path, 1);
        return Outcome::done;
    }

    /// Whatever speed is asked for by then is the one that the fan has.
    void reachLater(const ObjectPath& path, std::uint64_t seconds) {
        constexpr std::uint64_t longest = 3600;
        services_.scheduler.after(std::chrono::seconds(std::min(seconds, longest)),
                                  [path, &repository = services_.repository] {
                                      updateIfThere(repository, path, [](Instance& fan) {
                                          fan.set("CurrentSpeed", fan.get("DesiredSpeed"));
                                      });
                                  });
    }

    Services& services_;
};

class ChassisProvider : public Provider {
public:
    explicit ChassisProvider(Services& services) : services_(services) {}

    std::vector<std::string> classes() const override { return {"ZORM_Chassis"}; }

    std::optional<MethodResult> invokeMethod(const Caller& /*caller*/, const ObjectPath& path,
                                             const Method& method, const Arguments& in) override {
        if (!sameName(method.name, "SetIdentify")) {
            return std::nullopt;
        }
        const std::uint64_t mode = in.get("IdentifyMode").toUnsigned();
        if (mode < 2 || mode > 4) {
            return answer(Outcome::invalidParameter);
        }
        services_.repository.update(path,
                                    [&](Instance& chassis) { chassis.set("IdentifyMode", mode); });
        return answer(Outcome::done);
    }

private:
    Services& services_;
};

const ProviderRegistration fans{
    [](Services& services) { return std::make_unique<FanProvider>(services); }};
const ProviderRegistration chassis{
    [](Services& services) { return std::make_unique<ChassisProvider>(services); }};

} // namespace
} // namespace velclp_sim
