// Virtual media: each takes a unit of its own, the lowest free one when none is asked for.

#include "simulator/providers/toolkit.h"

#include <algorithm>

namespace velclp_sim {
namespace {

constexpr std::uint64_t units = 8;

class VirtualMediaProvider : public Provider {
public:
    explicit VirtualMediaProvider(Services& services) : services_(services) {}

    std::vector<std::string> classes() const override { return {"ZORM_VirtualMedia"}; }

    std::optional<ObjectPath> createInstance(const Caller& /*caller*/,
                                             const Instance& draft) override {
        Repository& repository = services_.repository;
        const ObjectPath system = serviceProcessor(repository, draft.cls().nameSpace);
        Instance media = draft;
        media.set("UnitNumber", chooseUnit(media));
        if (media.get("DeviceID").isNull()) {
            media.set("DeviceID", "unit" + std::to_string(media.get("UnitNumber").toUnsigned()));
        }
        media.set("EnabledState", 2);
        media.set("RequestedState", 2);
        ownBy(system, media);
        const ObjectPath path = repository.add(std::move(media));
        join(repository, "ZORM_SPDevice", {"GroupComponent", system}, {"PartComponent", path});
        return path;
    }

private:
    std::uint64_t chooseUnit(const Instance& media) const {
        std::vector<unsigned> taken;
        for (const InstancePtr& other :
             services_.repository.instances(media.cls().nameSpace, "ZORM_VirtualMedia")) {
            taken.push_back(static_cast<unsigned>(other->get("UnitNumber").toUnsigned()));
        }
        const bool asked = !media.get("UnitNumber").isNull();
        const std::uint64_t unit = asked ? media.get("UnitNumber").toUnsigned() : lowestFree(taken);
        if (asked && std::find(taken.begin(), taken.end(), unit) != taken.end()) {
            throw CimError(CimStatus::alreadyExists, "the unit holds a medium");
        }
        if (unit == 0 || unit > units) {
            throw CimError(CimStatus::invalidParameter, "there is no such unit");
        }
        return unit;
    }

    Services& services_;
};

const ProviderRegistration virtualMediaRegistration{
    [](Services& services) { return std::make_unique<VirtualMediaProvider>(services); }};

} // namespace
} // namespace velclp_sim
