// Command line sessions: an instance for each row of the table CLPSession. The row is there before
// CreateInstance returns, with the settings that a new session has; a write goes to the row. Rows
// of processes that are gone are cleared away.

#include "simulator/providers/session_database.h"
#include "simulator/providers/toolkit.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <set>

namespace velclp_sim {
namespace {

using Row = SessionDatabase::Row;

/// The settings of a new session, by column, which is also the property.
const std::vector<std::pair<std::string, std::string>> defaults{
    {"KeepTime", "300"},      {"WaitBehavior", "0"},
    {"DisplayOption", "all"}, {"OutputCount", "0"},
    {"OutputFormat", "2"},    {"OutputLanguage", "eng"},
    {"OutputOrder", "2"},     {"OutputPosition", "2"},
    {"OutputVerbosity", "3"}, {"CurrentDefaultTarget", "/admin1"}};

bool isSetting(const std::string& property) {
    return std::any_of(defaults.begin(), defaults.end(),
                       [&](const auto& one) { return sameName(one.first, property); });
}

std::vector<std::string> columns() {
    std::vector<std::string> names{"id", "OEMVelmora_pid"};
    for (const auto& [name, value] : defaults) {
        names.push_back(name);
    }
    return names;
}

bool isNumber(const std::string& text) {
    constexpr std::size_t longest = 10;
    return !text.empty() && text.size() <= longest &&
           text.find_first_not_of("0123456789") == std::string::npos;
}

/// True for an absolute address of one element, such as "/admin1/system1".
bool isAddress(const std::string& text) {
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t next = std::min(text.find('/', at + 1), text.size());
        const std::string term = text.substr(at + 1, next - at - 1);
        if (text[at] != '/' || term.size() < 2 ||
            std::isalpha(static_cast<unsigned char>(term.front())) == 0 ||
            std::isdigit(static_cast<unsigned char>(term.back())) == 0) {
            return false;
        }
        at = next;
    }
    return at > 0;
}

/// The value as the row holds it.
std::string columnText(const Property& property, const Value& value) {
    if (value.isNull()) {
        return {};
    }
    if (property.type == CimType::boolean) {
        return value.toBool() ? "1" : "0";
    }
    return scalarToText(value, property.type);
}

void fill(Instance& instance, const Row& row) {
    for (const auto& [column, text] : row) {
        const Property* property = instance.cls().property(column);
        if (!property || text.empty()) {
            continue;
        }
        if (property->type == CimType::boolean) {
            instance.set(column, text != "0");
            continue;
        }
        try {
            instance.set(column, scalarFromText(text, property->type, column));
        } catch (const CimError&) {
            // A text that is no number of the type reads as NULL.
        }
    }
    instance.set("ElementName", "Command line session of process " + row.at("OEMVelmora_pid"));
    instance.set("EnabledState", 2);
    instance.set("RequestedState", 12);
}

class SessionProvider : public Provider {
public:
    explicit SessionProvider(Services& services)
        : services_(services),
          database_(services.database),
          mirror_(services,
                  {"ZORM_CLPProtocolEndpoint", "Name", "clpsession:", "ZORM_SPComputerSystem",
                   "ZORM_HostedAccessPoint", "Antecedent", "Dependent", fill}) {}

    std::vector<std::string> classes() const override { return {"ZORM_CLPProtocolEndpoint"}; }

    bool opensToReaders(Change change, const Class& /*cls*/) const override {
        return change == Change::create || change == Change::modify;
    }

    void start() override {
        if (!database_.exists()) {
            return;
        }
        for (const Row& row : rows("")) {
            if (processLives(row.at("OEMVelmora_pid"))) {
                remember(row.at("OEMVelmora_pid"));
            } else {
                database_.change("DELETE FROM CLPSession WHERE id=" + row.at("id"));
            }
        }
    }

    void refresh() override {
        if (database_.exists()) {
            try {
                readRows();
            } catch (const CimError&) {
                // What was read last stays in sight until the database can be read again.
            }
        }
    }

    std::optional<ObjectPath> createInstance(const Caller& /*caller*/,
                                             const Instance& draft) override {
        const std::string pid = draft.get("OEMVelmora_pid").toString();
        if (!isNumber(pid)) {
            throw CimError(CimStatus::invalidParameter, "OEMVelmora_pid is no process id");
        }
        Row row{{"OEMVelmora_pid", pid}};
        for (const auto& [column, value] : defaults) {
            const Value& given = draft.get(column);
            check(column, given);
            row[column] = given.isNull() ? value : columnText(*draft.cls().property(column), given);
        }
        const std::uint64_t ticket = mirror_.ticket();
        const std::int64_t id = database_.exists() ? insert(row) : ++lastWithoutRow_;
        row["id"] = std::to_string(id);
        return mirror_.show(ticket, id, row);
    }

    bool modifyInstance(const Caller& /*caller*/, const ObjectPath& path,
                        const std::vector<PropertyChange>& changes) override {
        const InstancePtr present = services_.repository.find(path);
        std::string settings;
        for (const PropertyChange& change : changes) {
            const std::string& name = change.property->name;
            if (present && present->get(name) == change.value) {
                continue;
            }
            if (!isSetting(name)) {
                throw CimError(CimStatus::notSupported, name + " cannot be written");
            }
            check(name, change.value);
            settings += (settings.empty() ? "" : ",") + name + "=" +
                        SessionDatabase::literal(columnText(*change.property, change.value));
        }
        if (!database_.exists()) {
            return false;
        }
        write(path, settings);
        return true;
    }

    bool deleteInstance(const Caller& /*caller*/, const ObjectPath& path) override {
        const std::int64_t id = mirror_.idOf(path);
        if (database_.exists()) {
            database_.change("DELETE FROM CLPSession WHERE id=" + std::to_string(id));
        }
        mirror_.drop(id);
        return true;
    }

private:
    static void check(const std::string& setting, const Value& value) {
        if (value.isNull()) {
            return;
        }
        if (sameName(setting, "CurrentDefaultTarget") && !isAddress(value.toString())) {
            throw CimError(CimStatus::invalidParameter, "CurrentDefaultTarget is no address");
        }
        constexpr std::array<const char*, 4> formats{"2", "3", "4", "5"};
        if (sameName(setting, "OutputFormat") &&
            std::find(formats.begin(), formats.end(), value.toString()) == formats.end()) {
            throw CimError(CimStatus::invalidParameter, "OutputFormat is no known form");
        }
    }

    std::vector<Row> rows(const std::string& condition) const {
        return database_.select("SELECT * FROM CLPSession " + condition + " ORDER BY id",
                                columns());
    }

    /// A process has one session; a row that bears its id already is left over from another.
    std::int64_t insert(const Row& row) {
        const std::string& pid = row.at("OEMVelmora_pid");
        const std::string condition = "WHERE OEMVelmora_pid=" + SessionDatabase::literal(pid);
        for (const Row& old : rows(condition)) {
            database_.change("DELETE FROM CLPSession WHERE id=" + old.at("id"));
            mirror_.drop(std::strtoll(old.at("id").c_str(), nullptr, 10));
        }
        std::string names;
        std::string values;
        for (const auto& [column, value] : row) {
            names += (names.empty() ? "" : ",") + column;
            values += (values.empty() ? "" : ",") + SessionDatabase::literal(value);
        }
        if (processLives(pid)) {
            remember(pid);
        }
        return database_.insert("INSERT INTO CLPSession(" + names + ") VALUES(" + values + ")");
    }

    void write(const ObjectPath& path, const std::string& settings) {
        const std::string id = std::to_string(mirror_.idOf(path));
        if (!settings.empty() &&
            database_.change("UPDATE CLPSession SET " + settings + " WHERE id=" + id) == 0) {
            throw CimError(CimStatus::notFound, "the session has ended");
        }
    }

    void readRows() {
        const std::uint64_t ticket = mirror_.ticket();
        const std::vector<std::int64_t> before = mirror_.ids();
        std::set<std::int64_t> present;
        for (const Row& row : rows("")) {
            const std::int64_t id = std::strtoll(row.at("id").c_str(), nullptr, 10);
            if (hasDied(row.at("OEMVelmora_pid"))) {
                database_.change("DELETE FROM CLPSession WHERE id=" + row.at("id"));
                continue;
            }
            present.insert(id);
            mirror_.show(ticket, id, row);
        }
        for (const std::int64_t id : before) {
            if (present.count(id) == 0) {
                mirror_.drop(id);
            }
        }
    }

    void remember(const std::string& pid) {
        const std::lock_guard<std::mutex> lock(mutex_);
        local_.insert(pid);
    }

    /// True for a process that once lived here and does no more; a session of another machine is
    /// nothing that can be judged.
    bool hasDied(const std::string& pid) {
        const std::lock_guard<std::mutex> lock(mutex_);
        if (local_.count(pid) == 0 || processLives(pid)) {
            return false;
        }
        local_.erase(pid);
        return true;
    }

    Services& services_;
    SessionDatabase database_;
    RowMirror mirror_;
    std::atomic<std::int64_t> lastWithoutRow_{0};
    std::mutex mutex_;
    std::set<std::string> local_;
};

const ProviderRegistration sessionsRegistration{
    [](Services& services) { return std::make_unique<SessionProvider>(services); }};

} // namespace
} // namespace velclp_sim
