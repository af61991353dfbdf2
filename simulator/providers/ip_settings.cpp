// The IP configuration service: applying settings to an endpoint makes them the current ones, and
// the endpoint's address follows.

#include "simulator/providers/toolkit.h"

namespace velclp_sim {
namespace {

constexpr const char* settingsAssociation = "ZORM_ElementSettingData";
constexpr std::uint64_t originDhcp = 4;
// What the simulated network's DHCP server hands out.
constexpr const char* leasedAddress = "192.0.2.131";
constexpr const char* leasedMask = "255.255.255.0";

class IpSettingsProvider : public Provider {
public:
    explicit IpSettingsProvider(Services& services) : services_(services) {}

    std::vector<std::string> classes() const override { return {"ZORM_IPConfigurationService"}; }

    std::optional<MethodResult> invokeMethod(const Caller& /*caller*/, const ObjectPath& path,
                                             const Method& method, const Arguments& in) override {
        if (!sameName(method.name, "ApplySettingToIPProtocolEndpoint")) {
            return std::nullopt;
        }
        const auto settings = instanceArgument(services_.repository, in.get("Configuration"));
        const auto endpoint = instanceArgument(services_.repository, in.get("Endpoint"));
        if (!settings || !endpoint ||
            !tie(services_.repository, path, *endpoint, "ZORM_IPServiceAffectsElement") ||
            !tie(services_.repository, *endpoint, *settings, settingsAssociation)) {
            return answer(Outcome::invalidParameter);
        }
        apply(*endpoint, *settings);
        return answer(Outcome::done);
    }

private:
    void apply(const ObjectPath& endpoint, const ObjectPath& settings) {
        Repository& repository = services_.repository;
        for (const ObjectPath& other : partners(repository, endpoint, settingsAssociation)) {
            if (const auto joining = tie(repository, endpoint, other, settingsAssociation)) {
                const std::uint16_t state = other == settings ? 1 : 2;
                repository.update(*joining, [&](Instance& instance) {
                    instance.set("IsCurrent", state);
                    instance.set("IsNext", state);
                });
            }
        }
        if (const InstancePtr applied = repository.find(settings)) {
            repository.update(endpoint, [&](Instance& instance) { follow(instance, *applied); });
        }
    }

    static void follow(Instance& endpoint, const Instance& settings) {
        const bool leased = settings.get("AddressOrigin").toUnsigned() == originDhcp;
        endpoint.set("AddressOrigin", settings.get("AddressOrigin"));
        endpoint.set("IPv4Address", leased ? Value(leasedAddress) : settings.get("IPv4Address"));
        endpoint.set("SubnetMask", leased ? Value(leasedMask) : settings.get("SubnetMask"));
    }

    Services& services_;
};

const ProviderRegistration ipSettingsRegistration{
    [](Services& services) { return std::make_unique<IpSettingsProvider>(services); }};

} // namespace
} // namespace velclp_sim
