// The power utilization management service: sets the limit of a power meter, or lifts it.

#include "simulator/providers/toolkit.h"

namespace velclp_sim {
namespace {

class PowerLimitProvider : public Provider {
public:
    explicit PowerLimitProvider(Services& services) : services_(services) {}

    std::vector<std::string> classes() const override { return {"ZORM_PUMService"}; }

    std::optional<MethodResult> invokeMethod(const Caller& /*caller*/, const ObjectPath& path,
                                             const Method& method, const Arguments& in) override {
        if (!sameName(method.name, "RequestPowerUtilizationLimit")) {
            return std::nullopt;
        }
        return answer(limit(path, in));
    }

private:
    Outcome limit(const ObjectPath& service, const Arguments& in) {
        const auto meter = instanceArgument(services_.repository, in.get("UtilizingElement"));
        if (!meter ||
            !tie(services_.repository, service, *meter, "ZORM_PUMServiceAffectsElement") ||
            !in.get("EnforceUtilizationLimit").isBoolean()) {
            return Outcome::invalidParameter;
        }
        const bool enforce = in.get("EnforceUtilizationLimit").toBool();
        const std::uint64_t watts = in.get("UtilizationLimit").toUnsigned();
        if (enforce && (!sameName(in.get("UtilizationLimitUnit").toString(), "watt") ||
                        watts == 0 || watts > maximum(service))) {
            return Outcome::invalidParameter;
        }
        services_.repository.update(*meter, [&](Instance& instance) {
            instance.set("LimitEnforced", enforce);
            if (enforce) {
                instance.set("PowerLimit", watts);
            }
        });
        return Outcome::done;
    }

    std::uint64_t maximum(const ObjectPath& service) const {
        const InstancePtr instance = services_.repository.find(service);
        return instance ? instance->get("MaximumLimit").toUnsigned(0xffff) : 0;
    }

    Services& services_;
};

const ProviderRegistration powerLimitRegistration{
    [](Services& services) { return std::make_unique<PowerLimitProvider>(services); }};

} // namespace
} // namespace velclp_sim
