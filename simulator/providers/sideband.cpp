// The Ethernet configuration service: changes how the ports are shared with the host, all of them
// together.

#include "simulator/providers/toolkit.h"

#include <algorithm>

namespace velclp_sim {
namespace {

class SidebandProvider : public Provider {
public:
    explicit SidebandProvider(Services& services) : services_(services) {}

    std::vector<std::string> classes() const override {
        return {"ZORM_EthernetConfigurationService"};
    }

    std::optional<MethodResult> invokeMethod(const Caller& /*caller*/, const ObjectPath& path,
                                             const Method& method, const Arguments& in) override {
        if (!sameName(method.name, "RequestNCSIModeChange")) {
            return std::nullopt;
        }
        return answer(change(path, in));
    }

private:
    Outcome change(const ObjectPath& service, const Arguments& in) {
        const std::uint64_t mode = in.get("RequestedNCSIMode").toUnsigned();
        const Value::Array& ports = in.get("EthernetPorts").toArray();
        if (!supports(service, mode) || ports.empty()) {
            return Outcome::invalidParameter;
        }
        std::vector<ObjectPath> paths;
        for (const Value& port : ports) {
            const auto path = instanceArgument(services_.repository, port);
            if (!path ||
                !tie(services_.repository, service, *path, "ZORM_EthServiceAffectsElement")) {
                return Outcome::invalidParameter;
            }
            paths.push_back(*path);
        }
        for (const ObjectPath& path : paths) {
            services_.repository.update(
                path, [&](Instance& instance) { instance.set("CurrentNCSIMode", mode); });
        }
        return Outcome::done;
    }

    bool supports(const ObjectPath& service, std::uint64_t mode) const {
        const InstancePtr instance = services_.repository.find(service);
        if (!instance) {
            return false;
        }
        const Value::Array& modes = instance->get("SupportedNCSIModes").toArray();
        return std::any_of(modes.begin(), modes.end(),
                           [&](const Value& one) { return one.toUnsigned() == mode; });
    }

    Services& services_;
};

const ProviderRegistration sidebandRegistration{
    [](Services& services) { return std::make_unique<SidebandProvider>(services); }};

} // namespace
} // namespace velclp_sim
