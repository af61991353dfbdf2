// Logs: clearing one removes its records, removing a record is seen in the log's count.

#include "simulator/providers/toolkit.h"

namespace velclp_sim {
namespace {

constexpr const char* recordAssociation = "ZORM_LogManagesRecord";

class LogProvider : public Provider {
public:
    explicit LogProvider(Services& services) : services_(services) {}

    std::vector<std::string> classes() const override { return {"CIM_RecordLog"}; }

    std::optional<MethodResult> invokeMethod(const Caller& /*caller*/, const ObjectPath& path,
                                             const Method& method,
                                             const Arguments& /*in*/) override {
        if (!sameName(method.name, "ClearLog")) {
            return std::nullopt;
        }
        for (const ObjectPath& record : partners(services_.repository, path, recordAssociation)) {
            services_.repository.remove(record);
        }
        services_.repository.update(path, [](Instance& instance) {
            instance.set("CurrentNumberOfRecords", 0);
            instance.set("LogState", 2);
        });
        return answer(Outcome::done);
    }

private:
    Services& services_;
};

class LogEntryProvider : public Provider {
public:
    explicit LogEntryProvider(Services& services) : services_(services) {}

    std::vector<std::string> classes() const override { return {"CIM_LogEntry"}; }

    bool deleteInstance(const Caller& /*caller*/, const ObjectPath& path) override {
        const std::vector<ObjectPath> logs =
            partners(services_.repository, path, recordAssociation);
        if (!services_.repository.remove(path)) {
            return false;
        }
        for (const ObjectPath& log : logs) {
            services_.repository.update(log, [](Instance& instance) {
                const std::uint64_t count = instance.get("CurrentNumberOfRecords").toUnsigned();
                instance.set("CurrentNumberOfRecords", count > 0 ? count - 1 : 0);
            });
        }
        return true;
    }

private:
    Services& services_;
};

const ProviderRegistration logs{
    [](Services& services) { return std::make_unique<LogProvider>(services); }};
const ProviderRegistration entries{
    [](Services& services) { return std::make_unique<LogEntryProvider>(services); }};

} // namespace
} // namespace velclp_sim
