// What gives life to classes of the model. A provider names the classes it serves (their subclasses
// are served too) and takes over the operations it cares for; whatever it declines goes to the next
// provider up the class hierarchy, and last to the repository itself.
//
// A provider is one file below simulator/providers/ that registers itself:
//
//     class PowerProvider : public Provider { ... };
//     const ProviderRegistration registration{
//         [](Services& services) { return std::make_unique<PowerProvider>(services); }};
//
// Calls come from many threads at once; the repository is safe to use from all of them, a
// provider's own state is the provider's to guard. No lock may be held while the repository, the
// scheduler's pause() or a database is called. Refusals are thrown as CimError.
#pragma once

#include "simulator/repository.h"
#include "simulator/scheduler.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace velclp_sim {

/// What the simulator offers to its providers; lives longer than they do.
struct Services {
    Repository& repository;
    Scheduler& scheduler;
    /// Path of the session database (--database); empty when none was given.
    std::string database;
};

/// Who calls, as the login token says.
struct Caller {
    /// The token's name part, or the whole user; empty when nobody logged in.
    std::string user;
    bool mayRead = true;
    bool mayWrite = true;
};

enum class Change { create, modify, remove, invoke };

/// A property that ModifyInstance or SetProperty changes, with its new value in the declared type.
struct PropertyChange {
    const Property* property = nullptr;
    Value value;
};

/// Arguments of an extrinsic method by parameter name; values are of the declared types.
class Arguments {
public:
    /// NULL when the argument was not given. Borrowed.
    const Value& get(std::string_view name) const;
    bool has(std::string_view name) const;
    /// Adds the argument, or replaces it.
    void set(std::string name, Value value);
    const std::vector<std::pair<std::string, Value>>& all() const { return values_; }

private:
    std::vector<std::pair<std::string, Value>> values_;
};

struct MethodResult {
    /// Of the method's declared type, or what coerces to it; NULL for a method that returns
    /// nothing.
    Value returnValue;
    /// OUT parameters by name; names must be those of the declaration.
    Arguments out;
};

class Provider {
public:
    Provider() = default;
    Provider(const Provider&) = delete;
    Provider& operator=(const Provider&) = delete;
    virtual ~Provider() = default;

    /// Names of the classes that it serves, in any namespace. Read once.
    virtual std::vector<std::string> classes() const = 0;

    /// Called once, when the model has been loaded and before the first request.
    virtual void start() {}

    /// Called before every operation that reads instances of the classes, along associations too:
    /// the place to bring the repository's instances (and the associations that tie them to the
    /// model) into step with what lies elsewhere. Throwing fails the operation.
    virtual void refresh() {}

    /// True when a caller who may only read is allowed this change nevertheless.
    virtual bool opensToReaders(Change /*change*/, const Class& /*cls*/) const { return false; }

    /// Makes the instance and gives its path; nothing when the next in line shall do it. Keys may
    /// be NULL in the draft: choosing them is the provider's right.
    virtual std::optional<ObjectPath> createInstance(const Caller& /*caller*/,
                                                     const Instance& /*draft*/) {
        return std::nullopt;
    }

    /// Applies the changes; false when the next in line shall do it. The instance exists, the path
    /// is canonical, no change is of a key.
    virtual bool modifyInstance(const Caller& /*caller*/, const ObjectPath& /*path*/,
                                const std::vector<PropertyChange>& /*changes*/) {
        return false;
    }

    /// Removes the instance; false when the next in line shall do it. The instance exists.
    virtual bool deleteInstance(const Caller& /*caller*/, const ObjectPath& /*path*/) {
        return false;
    }

    /// Runs a method of an existing instance, or of a class when the path has no keys; nothing when
    /// the next in line shall do it (the last answer is CIM_ERR_METHOD_NOT_AVAILABLE).
    virtual std::optional<MethodResult> invokeMethod(const Caller& /*caller*/,
                                                     const ObjectPath& /*path*/,
                                                     const Method& /*method*/,
                                                     const Arguments& /*in*/) {
        return std::nullopt;
    }
};

using ProviderFactory = std::function<std::unique_ptr<Provider>(Services&)>;

/// Puts a provider's factory into the list of all; meant for objects of static storage.
class ProviderRegistration {
public:
    explicit ProviderRegistration(ProviderFactory factory);
};

/// One of each registered provider.
std::vector<std::unique_ptr<Provider>> makeProviders(Services& services);

} // namespace velclp_sim
