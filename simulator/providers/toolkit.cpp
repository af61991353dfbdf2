#include "simulator/providers/toolkit.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <ctime>

namespace velclp_sim {

namespace {

constexpr std::int64_t second = 1000000;
constexpr std::int64_t minute = 60 * second;
constexpr std::int64_t day = 24 * (60 * minute);

/// The decimal number at the place; -1 when it holds anything but digits.
std::int64_t digits(const std::string& text, std::size_t at, std::size_t count) {
    std::int64_t value = 0;
    for (const char c : text.substr(at, count)) {
        if (c < '0' || c > '9') {
            return -1;
        }
        value = value * 10 + (c - '0');
    }
    return value;
}

std::int64_t secondsSince1970(const std::string& text) {
    std::tm time{};
    time.tm_year = static_cast<int>(digits(text, 0, 4)) - 1900;
    time.tm_mon = static_cast<int>(digits(text, 4, 2)) - 1;
    time.tm_mday = static_cast<int>(digits(text, 6, 2));
    time.tm_hour = static_cast<int>(digits(text, 8, 2));
    time.tm_min = static_cast<int>(digits(text, 10, 2));
    time.tm_sec = static_cast<int>(digits(text, 12, 2));
    return timegm(&time);
}

std::int64_t secondsOfInterval(const std::string& text) {
    return ((digits(text, 0, 8) * 24 + digits(text, 8, 2)) * 60 + digits(text, 10, 2)) * 60 +
           digits(text, 12, 2);
}

/// Calls `take` with each end of the association instance that is not the role.
template<class Take>
void eachOtherEnd(const Link& link, Take take) {
    const std::vector<Property>& properties = link.association->cls().properties;
    for (std::size_t i = 0; i < properties.size(); ++i) {
        if (i != link.role && properties[i].type == CimType::reference) {
            if (const ObjectPath* path = link.association->at(i).toPath()) {
                take(*path);
            }
        }
    }
}

Repository::ClassFilter classFilter(std::string_view name) {
    return [name = std::string(name)](const Class& cls) { return cls.isA(name); };
}

} // namespace

MethodResult answer(Outcome outcome) {
    MethodResult result;
    result.returnValue = static_cast<std::uint32_t>(outcome);
    return result;
}

std::optional<ObjectPath> instanceArgument(const Repository& repository, const Value& value) {
    const ObjectPath* path = value.toPath();
    if (!path) {
        return std::nullopt;
    }
    try {
        const InstancePtr instance = repository.find(*path);
        return instance ? std::optional(repository.canonical(*path)) : std::nullopt;
    } catch (const CimError&) {
        return std::nullopt;
    }
}

std::vector<ObjectPath> partners(const Repository& repository, const ObjectPath& object,
                                 std::string_view association) {
    std::vector<ObjectPath> found;
    for (const Link& link : repository.links(object, classFilter(association))) {
        eachOtherEnd(link, [&](const ObjectPath& path) { found.push_back(path); });
    }
    return found;
}

std::optional<ObjectPath> tie(const Repository& repository, const ObjectPath& a,
                              const ObjectPath& b, std::string_view association) {
    for (const Link& link : repository.links(a, classFilter(association))) {
        bool joins = false;
        eachOtherEnd(link, [&](const ObjectPath& path) { joins = joins || path == b; });
        if (joins) {
            return repository.canonical(link.association->path());
        }
    }
    return std::nullopt;
}

void join(Repository& repository, const std::string& association,
          const std::pair<std::string, ObjectPath>& a,
          const std::pair<std::string, ObjectPath>& b) {
    Instance instance(repository.requireClass(a.second.nameSpace(), association));
    instance.set(a.first, Value(a.second));
    instance.set(b.first, Value(b.second));
    repository.add(std::move(instance));
}

ObjectPath ownerOf(const Repository& repository, std::string_view nameSpace,
                   std::string_view className) {
    const auto all = repository.instances(nameSpace, className);
    if (all.empty()) {
        throw CimError(CimStatus::failed, "there is no " + std::string(className));
    }
    return repository.canonical(all.front()->path());
}

ObjectPath serviceProcessor(const Repository& repository, std::string_view nameSpace) {
    return ownerOf(repository, nameSpace, "ZORM_SPComputerSystem");
}

bool updateIfThere(Repository& repository, const ObjectPath& path,
                   const std::function<void(Instance&)>& change) {
    try {
        repository.update(path, change);
        return true;
    } catch (const CimError& error) {
        if (error.code() != static_cast<int>(CimStatus::notFound)) {
            throw;
        }
        return false;
    }
}

void ownBy(const ObjectPath& system, Instance& instance) {
    const auto fill = [&](const char* name, Value value) {
        if (instance.get(name).isNull()) {
            instance.set(name, std::move(value));
        }
    };
    fill("SystemCreationClassName", system.key("CreationClassName"));
    fill("SystemName", system.key("Name"));
    fill("CreationClassName", instance.cls().name);
}

unsigned lowestFree(std::vector<unsigned> taken) {
    std::sort(taken.begin(), taken.end());
    unsigned number = 1;
    for (const unsigned one : taken) {
        if (one == number) {
            ++number;
        }
    }
    return number;
}

std::int64_t nowMicroseconds() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::microseconds>(now).count();
}

std::string timeText(std::int64_t microseconds) {
    // The years 0 to 9999 are all that the form can hold.
    constexpr std::int64_t first = -62167219200 * second;
    constexpr std::int64_t last = 253402300800 * second - 1;
    const std::int64_t since = std::clamp(microseconds, first, last) - first;
    const std::time_t seconds = since / second + first / second;
    std::tm time{};
    gmtime_r(&seconds, &time);
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%04d%02d%02d%02d%02d%02d.%06d+000",
                  time.tm_year + 1900, time.tm_mon + 1, time.tm_mday, time.tm_hour, time.tm_min,
                  time.tm_sec, static_cast<int>(since % second));
    return text.data();
}

std::string intervalText(std::int64_t microseconds) {
    const std::int64_t days = std::min<std::int64_t>(microseconds / day, 99999999);
    const std::int64_t seconds = microseconds % day / second;
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), "%08d%02d%02d%02d.%06d:000", static_cast<int>(days),
                  static_cast<int>(seconds / 3600), static_cast<int>(seconds / 60 % 60),
                  static_cast<int>(seconds % 60), static_cast<int>(microseconds % second));
    return text.data();
}

std::optional<std::int64_t> microsecondsOf(const std::string& datetime) {
    if (!isDatetime(datetime) || datetime.find('*') != std::string::npos) {
        return std::nullopt;
    }
    const std::int64_t fraction = digits(datetime, 15, 6);
    if (datetime[21] == ':') {
        return secondsOfInterval(datetime) * second + fraction;
    }
    const std::int64_t offset = digits(datetime, 22, 3) * minute;
    const std::int64_t local = secondsSince1970(datetime) * second + fraction;
    return datetime[21] == '-' ? local + offset : local - offset;
}

std::uint64_t LatestChange::start(const ObjectPath& object) {
    const std::lock_guard<std::mutex> lock(mutex_);
    return numbers_[object.toText()] = ++last_;
}

bool LatestChange::isLatest(const ObjectPath& object, std::uint64_t number) {
    const std::lock_guard<std::mutex> lock(mutex_);
    return numbers_[object.toText()] == number;
}

} // namespace velclp_sim
