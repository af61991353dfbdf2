// What the providers share: answers of methods, walks along associations, time as CIM writes it,
// and the order among state changes that are still under way.
#pragma once

#include "simulator/provider.h"

#include <chrono>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace velclp_sim {

/// Return values that the methods of the model have in common.
enum class Outcome : std::uint32_t {
    done = 0,
    notSupported = 1,
    failed = 4,
    invalidParameter = 5,
    inUse = 6,
    jobStarted = 4096,
    invalidTransition = 4097,
    noTimeout = 4098
};

MethodResult answer(Outcome outcome);

/// The argument as a path in canonical form; nothing when it is NULL or names no instance.
std::optional<ObjectPath> instanceArgument(const Repository& repository, const Value& value);

/// The objects that an association class (or a subclass of it) ties to the object.
std::vector<ObjectPath> partners(const Repository& repository, const ObjectPath& object,
                                 std::string_view association);

/// The instance of the association class that ties the two; nothing when they are not tied.
std::optional<ObjectPath> tie(const Repository& repository, const ObjectPath& a,
                              const ObjectPath& b, std::string_view association);

/// Adds an association instance; `ends` are its two references by name.
void join(Repository& repository, const std::string& association,
          const std::pair<std::string, ObjectPath>& a, const std::pair<std::string, ObjectPath>& b);

/// The first instance of a class, as the owner of what is created below it. Throws CIM_ERR_FAILED
/// when the model has none.
ObjectPath ownerOf(const Repository& repository, std::string_view nameSpace,
                   std::string_view className);
/// The owner of most things: the service processor.
ObjectPath serviceProcessor(const Repository& repository, std::string_view nameSpace);

/// As Repository::update, for what comes due later: false when the instance is gone by then.
bool updateIfThere(Repository& repository, const ObjectPath& path,
                   const std::function<void(Instance&)>& change);

/// Fills the four keys of what belongs to a system; keys that are there already stay.
void ownBy(const ObjectPath& system, Instance& instance);

/// The lowest number from 1 on that is not among those taken.
unsigned lowestFree(std::vector<unsigned> taken);

/// Microseconds since 1970.
std::int64_t nowMicroseconds();
/// A point in time as the 25 characters of DSP0004, 5.2.4, in UTC.
std::string timeText(std::int64_t microseconds);
/// An interval likewise.
std::string intervalText(std::int64_t microseconds);
/// The reverse of the two above (an offset from UTC is taken into account); nothing for text with
/// asterisks.
std::optional<std::int64_t> microsecondsOf(const std::string& datetime);

/// Tells a change that comes due later whether it is still the last one of its object.
class LatestChange {
public:
    /// Starts a change and gives its number.
    std::uint64_t start(const ObjectPath& object);
    bool isLatest(const ObjectPath& object, std::uint64_t number);

private:
    std::mutex mutex_;
    std::uint64_t last_ = 0;
    std::map<std::string, std::uint64_t> numbers_;
};

} // namespace velclp_sim
