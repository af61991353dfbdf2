// Methods of the services themselves: starting and stopping any service, and what daemons can do
// beyond that.

#include "simulator/providers/toolkit.h"

namespace velclp_sim {
namespace {

class ServiceProvider : public Provider {
public:
    explicit ServiceProvider(Services& services) : services_(services) {}

    std::vector<std::string> classes() const override { return {"CIM_Service"}; }

    std::optional<MethodResult> invokeMethod(const Caller& /*caller*/, const ObjectPath& path,
                                             const Method& method,
                                             const Arguments& /*in*/) override {
        const bool starts = sameName(method.name, "StartService");
        if (!starts && !sameName(method.name, "StopService")) {
            return std::nullopt;
        }
        services_.repository.update(path, [&](Instance& instance) {
            instance.set("Started", starts);
            instance.set("EnabledState", starts ? 2 : 3);
            instance.set("RequestedState", starts ? 2 : 3);
            instance.set("TimeOfLastStateChange", timeText(nowMicroseconds()));
        });
        return answer(Outcome::done);
    }

private:
    Services& services_;
};

class DaemonProvider : public Provider {
public:
    explicit DaemonProvider(Services& services) : services_(services) {}

    std::vector<std::string> classes() const override { return {"ZORM_DaemonService"}; }

    std::optional<MethodResult> invokeMethod(const Caller& /*caller*/, const ObjectPath& path,
                                             const Method& method, const Arguments& in) override {
        if (sameName(method.name, "SetLogLevel")) {
            return answer(setLogLevel(path, in.get("LogLevel").toUnsigned(0xffff)));
        }
        if (sameName(method.name, "Restart")) {
            services_.repository.update(path, [](Instance& instance) {
                instance.set("TimeOfLastStateChange", timeText(nowMicroseconds()));
            });
            return answer(Outcome::done);
        }
        return std::nullopt;
    }

private:
    Outcome setLogLevel(const ObjectPath& path, std::uint64_t level) {
        constexpr std::uint64_t highest = 3;
        if (level > highest) {
            return Outcome::invalidParameter;
        }
        services_.repository.update(path,
                                    [&](Instance& instance) { instance.set("LogLevel", level); });
        return Outcome::done;
    }

    Services& services_;
};

const ProviderRegistration anyService{
    [](Services& services) { return std::make_unique<ServiceProvider>(services); }};
const ProviderRegistration daemons{
    [](Services& services) { return std::make_unique<DaemonProvider>(services); }};

} // namespace
} // namespace velclp_sim
