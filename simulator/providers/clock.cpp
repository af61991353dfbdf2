// The time service: reads the controller's clock, and sets it by remembering how far it is off the
// clock of the machine.

#include "simulator/providers/toolkit.h"

#include <atomic>

namespace velclp_sim {
namespace {

class ClockProvider : public Provider {
public:
    explicit ClockProvider(Services& services) : services_(services) {}

    std::vector<std::string> classes() const override { return {"ZORM_TimeService"}; }

    std::optional<MethodResult> invokeMethod(const Caller& /*caller*/, const ObjectPath& path,
                                             const Method& method, const Arguments& in) override {
        if (!sameName(method.name, "ManageTime")) {
            return std::nullopt;
        }
        const auto element = instanceArgument(services_.repository, in.get("ManagedElement"));
        if (!element || !tie(services_.repository, path, *element, "ZORM_SPHostedService") ||
            !in.get("GetRequest").isBoolean()) {
            return answer(Outcome::invalidParameter);
        }
        if (in.get("GetRequest").toBool()) {
            MethodResult result = answer(Outcome::done);
            result.out.set("TimeData", timeText(nowMicroseconds() + ahead_));
            return result;
        }
        return answer(set(in.get("TimeData").toString()));
    }

private:
    Outcome set(const std::string& time) {
        const auto moment = microsecondsOf(time);
        if (!moment || time[21] == ':') {
            return Outcome::invalidParameter;
        }
        ahead_ = *moment - nowMicroseconds();
        return Outcome::done;
    }

    Services& services_;
    std::atomic<std::int64_t> ahead_{0};
};

const ProviderRegistration clockRegistration{
    [](Services& services) { return std::make_unique<ClockProvider>(services); }};

} // namespace
} // namespace velclp_sim
