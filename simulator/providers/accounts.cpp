// Accounts of the service processor: created with a name of the provider's choosing when the
// request gives none, tied to the service processor and to the roles that they name. Passwords are
// taken and never shown.

#include "simulator/providers/toolkit.h"

#include <algorithm>
#include <iterator>

namespace velclp_sim {
namespace {

bool isUserName(const std::string& name) {
    constexpr std::size_t longest = 32;
    constexpr const char* allowed =
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789_-.@";
    return !name.empty() && name.size() <= longest &&
           name.find_first_not_of(allowed) == std::string::npos;
}

/// Clients send elements that were never filled as NULL, or as that word.
Value withoutGaps(const Value& list) {
    if (!list.isArray()) {
        return list;
    }
    Value::Array elements;
    std::copy_if(list.toArray().begin(), list.toArray().end(), std::back_inserter(elements),
                 [](const Value& one) { return !one.isNull() && one.toString() != "NULL"; });
    return elements;
}

class AccountProvider : public Provider {
public:
    explicit AccountProvider(Services& services) : services_(services) {}

    std::vector<std::string> classes() const override { return {"ZORM_Account"}; }

    std::optional<ObjectPath> createInstance(const Caller& /*caller*/,
                                             const Instance& draft) override {
        Repository& repository = services_.repository;
        const ObjectPath system = serviceProcessor(repository, draft.cls().nameSpace);
        Instance account = draft;
        const std::string name = chooseName(account);
        if (!isUserName(name)) {
            throw CimError(CimStatus::invalidParameter, "UserID is no user name");
        }
        complete(account, name);
        ownBy(system, account);
        const ObjectPath path = repository.add(std::move(account));
        join(repository, "ZORM_AccountOnSystem", {"GroupComponent", system},
             {"PartComponent", path});
        tieRoles(system, path);
        return path;
    }

    bool modifyInstance(const Caller& /*caller*/, const ObjectPath& path,
                        const std::vector<PropertyChange>& changes) override {
        bool roles = false;
        for (const PropertyChange& change : changes) {
            if (sameName(change.property->name, "UserID") && !isUserName(change.value.toString())) {
                throw CimError(CimStatus::invalidParameter, "UserID is no user name");
            }
            roles = roles || sameName(change.property->name, "Roles");
        }
        services_.repository.update(path, [&](Instance& account) {
            for (const PropertyChange& change : changes) {
                apply(account, change);
            }
        });
        if (roles) {
            tieRoles(serviceProcessor(services_.repository, path.nameSpace()), path);
        }
        return true;
    }

private:
    static void apply(Instance& account, const PropertyChange& change) {
        if (sameName(change.property->name, "Roles")) {
            account.set("Roles", withoutGaps(change.value));
        } else if (!sameName(change.property->name, "UserPassword")) {
            account.set(change.property->name, change.value);
        } else if (!change.value.isNull()) {
            account.set("PasswordLastChange", timeText(nowMicroseconds()));
        }
    }

    std::string chooseName(const Instance& account) const {
        for (const char* property : {"Name", "UserID"}) {
            if (!account.get(property).isNull()) {
                return account.get(property).toString();
            }
        }
        std::vector<unsigned> taken;
        for (const InstancePtr& other :
             services_.repository.instances(account.cls().nameSpace, "ZORM_Account")) {
            const std::string& name = other->get("Name").toString();
            if (name.compare(0, 4, "user") == 0 && name.size() < 12) {
                taken.push_back(static_cast<unsigned>(std::strtoul(name.c_str() + 4, nullptr, 10)));
            }
        }
        return "user" + std::to_string(lowestFree(std::move(taken)));
    }

    static void complete(Instance& account, const std::string& name) {
        const auto fill = [&](const char* property, Value value) {
            if (account.get(property).isNull()) {
                account.set(property, std::move(value));
            }
        };
        fill("Name", name);
        fill("UserID", name);
        fill("ElementName", account.get("UserID"));
        fill("Locked", false);
        fill("MaximumSessions", 1);
        fill("PasswordLastChange", timeText(nowMicroseconds()));
        account.set("UserPassword", Value());
        account.set("Roles", withoutGaps(account.get("Roles")));
        account.set("EnabledState", 2);
        account.set("RequestedState", 2);
    }

    /// Ties the account to the roles that it names, and to no others.
    void tieRoles(const ObjectPath& system, const ObjectPath& path) {
        Repository& repository = services_.repository;
        const InstancePtr account = repository.find(path);
        if (!account) {
            return;
        }
        const Value::Array& names = account->get("Roles").toArray();
        for (const ObjectPath& role :
             partners(repository, system, "ZORM_OwningCollectionElement")) {
            const bool named =
                std::find(names.begin(), names.end(), role.key("Name")) != names.end();
            const auto tied = tie(repository, role, path, "ZORM_RoleMember");
            if (named && !tied) {
                join(repository, "ZORM_RoleMember", {"Member", path}, {"Collection", role});
            } else if (!named && tied) {
                repository.remove(*tied);
            }
        }
    }

    Services& services_;
};

const ProviderRegistration accountsRegistration{
    [](Services& services) { return std::make_unique<AccountProvider>(services); }};

} // namespace
} // namespace velclp_sim
