// Jobs of the command line: an instance for each row of the table CLPCmdJob. Sessions on the
// controller write their rows themselves; sessions from elsewhere create and modify the instances.
// Rows are removed when their time has come, and a job whose process is gone has been killed.

#include "simulator/providers/job_row.h"
#include "simulator/providers/toolkit.h"

#include <algorithm>
#include <set>

namespace velclp_sim {
namespace {

using Row = SessionDatabase::Row;

/// A job that has ended may still be told to have been killed, by the end of its own session.
constexpr std::int64_t settleTime = microsecondsPerSecond / 2;
constexpr std::int64_t sweepPeriod = 2 * microsecondsPerSecond;

class JobProvider : public Provider {
public:
    explicit JobProvider(Services& services)
        : services_(services),
          database_(services.database),
          mirror_(services, {"ZORM_CLPConcreteJob", "InstanceID", "clpjob:", "ZORM_CLPService",
                             "ZORM_OwningJobElement", "OwningElement", "OwnedElement", fillJob}) {}

    std::vector<std::string> classes() const override { return {"ZORM_CLPConcreteJob"}; }

    bool opensToReaders(Change change, const Class& /*cls*/) const override {
        return change == Change::create || change == Change::modify;
    }

    void refresh() override {
        if (database_.exists()) {
            try {
                sweep(nowMicroseconds());
                readRows();
            } catch (const CimError&) {
                // What was read last stays in sight until the database can be read again.
            }
        }
    }

    std::optional<ObjectPath> createInstance(const Caller& /*caller*/,
                                             const Instance& draft) override {
        const std::string pid = draft.get("OEMVelmora_pid").toString();
        if (pid.empty() || pid.find_first_not_of("0123456789") != std::string::npos) {
            throw CimError(CimStatus::invalidParameter, "OEMVelmora_pid is no process id");
        }
        Row row = newJobRow(pid, draft.get("TimeBeforeRemoval").toString());
        const std::uint64_t ticket = mirror_.ticket();
        const std::int64_t id = database_.exists() ? insert(row) : ++lastWithoutRow_;
        row["id"] = std::to_string(id);
        row["Name"] = "CLP Concrete Job" + row["id"];
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            foreign_.insert(id);
            open_.insert(id);
        }
        return mirror_.show(ticket, id, row);
    }

    bool modifyInstance(const Caller& /*caller*/, const ObjectPath& path,
                        const std::vector<PropertyChange>& changes) override {
        const InstancePtr present = services_.repository.find(path);
        std::string settings;
        for (const PropertyChange& change : changes) {
            const std::string& name = change.property->name;
            if (!present || present->get(name) != change.value) {
                settings += (settings.empty() ? "" : ",") + jobSetting(name, change.value);
            }
        }
        if (!database_.exists()) {
            return false;
        }
        if (!settings.empty()) {
            write(mirror_.idOf(path), settings);
        }
        return true;
    }

    bool deleteInstance(const Caller& /*caller*/, const ObjectPath& path) override {
        const InstancePtr job = services_.repository.find(path);
        if (job && job->get("JobState").toSigned() == jobRunning) {
            throw CimError(CimStatus::failed, "the job is running");
        }
        const std::int64_t id = mirror_.idOf(path);
        if (database_.exists()) {
            database_.change("DELETE FROM CLPCmdJob WHERE id=" + std::to_string(id));
        }
        forget(id);
        return true;
    }

    std::optional<MethodResult> invokeMethod(const Caller& /*caller*/, const ObjectPath& path,
                                             const Method& method, const Arguments& in) override {
        if (sameName(method.name, "EndCommand")) {
            return answer(askToEnd(path, in.get("Killed").toUnsigned() != 0));
        }
        if (!sameName(method.name, "RequestStateChange")) {
            return std::nullopt;
        }
        constexpr std::uint64_t terminate = 4;
        constexpr std::uint64_t kill = 5;
        const std::uint64_t requested = in.get("RequestedState").toUnsigned();
        if (requested != terminate && requested != kill) {
            return answer(Outcome::invalidParameter);
        }
        return answer(askToEnd(path, requested == kill));
    }

private:
    std::int64_t insert(const Row& row) {
        std::string names;
        std::string values;
        for (const auto& [column, value] : row) {
            if (!value.empty()) {
                names += (names.empty() ? "" : ",") + column;
                values += (values.empty() ? "" : ",") + SessionDatabase::literal(value);
            }
        }
        const std::int64_t id =
            database_.insert("INSERT INTO CLPCmdJob(" + names + ") VALUES(" + values + ")");
        const std::string text = std::to_string(id);
        database_.change("UPDATE CLPCmdJob SET InstanceID='clpjob:" + text +
                         "',Name='CLP Concrete Job" + text + "' WHERE id=" + text);
        return id;
    }

    void write(std::int64_t id, const std::string& settings) {
        if (database_.change("UPDATE CLPCmdJob SET " + settings +
                             " WHERE id=" + std::to_string(id)) == 0) {
            throw CimError(CimStatus::notFound, "the job is gone");
        }
        const std::lock_guard<std::mutex> lock(mutex_);
        open_.insert(id);
    }

    /// Leaves word for the session's process, which looks for it by itself.
    Outcome askToEnd(const ObjectPath& path, bool kill) {
        const InstancePtr job = services_.repository.find(path);
        if (!database_.exists() || !job || job->get("JobState").toSigned() != jobRunning) {
            return Outcome::failed;
        }
        const std::size_t slash = services_.database.rfind('/');
        const std::string directory =
            slash == std::string::npos ? "" : services_.database.substr(0, slash + 1);
        SessionDatabase(directory + "clp.db3")
            .change("INSERT INTO job_terminate(pid,jobid,killed) VALUES(" +
                    SessionDatabase::literal(job->get("OEMVelmora_pid").toString()) + "," +
                    std::to_string(mirror_.idOf(path)) + "," + (kill ? "1" : "0") + ")");
        return Outcome::done;
    }

    void forget(std::int64_t id) {
        mirror_.drop(id);
        const std::lock_guard<std::mutex> lock(mutex_);
        open_.erase(id);
        removal_.erase(id);
        foreign_.erase(id);
    }

    /// Rows that are new, and those that may still change; the ids of the latter.
    std::pair<std::string, std::set<std::int64_t>> pending() const {
        const std::lock_guard<std::mutex> lock(mutex_);
        std::string condition = "id>" + std::to_string(lastRead_);
        std::string list;
        for (const std::int64_t id : open_) {
            list += (list.empty() ? "" : ",") + std::to_string(id);
        }
        return {list.empty() ? condition : condition + " OR id IN(" + list + ")", open_};
    }

    void readRows() {
        const std::uint64_t ticket = mirror_.ticket();
        auto [condition, missing] = pending();
        for (const Row& row : database_.select(
                 "SELECT * FROM CLPCmdJob WHERE " + condition + " ORDER BY id", jobColumns())) {
            const std::int64_t id = jobNumber(row, "id");
            missing.erase(id);
            mirror_.show(ticket, id, row);
            note(id, row);
            if (isOrphan(id, row)) {
                write(id, jobSetting("JobState", Value(jobKilled)));
            }
        }
        for (const std::int64_t id : missing) {
            forget(id);
        }
    }

    void note(std::int64_t id, const Row& row) {
        const std::int64_t now = nowMicroseconds();
        const std::lock_guard<std::mutex> lock(mutex_);
        lastRead_ = std::max(lastRead_, id);
        const bool ended = jobNumber(row, "JobState") > jobLastLiving;
        if (ended && now - jobNumber(row, "TimeOfLastStateChange") > settleTime) {
            open_.erase(id);
        } else {
            open_.insert(id);
        }
        if (const std::int64_t removal = jobNumber(row, "TimeToRemove"); removal > 0) {
            removal_[id] = removal;
        }
    }

    /// Now and then: removes what is overdue.
    void sweep(std::int64_t now) {
        if (now < nextSweep_.load() || now < nextSweep_.exchange(now + sweepPeriod)) {
            return;
        }
        checkRestart();
        const std::string text = std::to_string(now);
        database_.change("DELETE FROM CLPCmdJob WHERE TimeToRemove>0 AND TimeToRemove<" + text);
        for (const std::int64_t id : overdue(now)) {
            forget(id);
        }
    }

    std::vector<std::int64_t> overdue(std::int64_t now) const {
        const std::lock_guard<std::mutex> lock(mutex_);
        std::vector<std::int64_t> ids;
        for (const auto& [id, removal] : removal_) {
            if (removal < now) {
                ids.push_back(id);
            }
        }
        return ids;
    }

    bool isOrphan(std::int64_t id, const Row& row) const {
        if (jobNumber(row, "JobState") > jobLastLiving || processLives(row.at("OEMVelmora_pid"))) {
            return false;
        }
        const std::lock_guard<std::mutex> lock(mutex_);
        return foreign_.count(id) == 0;
    }

    /// A database that begins to count anew is another one: nothing of the old one is true.
    void checkRestart() {
        const auto rows = database_.select(
            "SELECT ifnull(max(seq),0) AS last FROM sqlite_sequence WHERE name='CLPCmdJob'",
            {"last"});
        const std::int64_t last = rows.empty() ? 0 : jobNumber(rows.front(), "last");
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            if (last >= lastRead_) {
                return;
            }
            lastRead_ = 0;
        }
        for (const std::int64_t id : mirror_.ids()) {
            forget(id);
        }
    }

    Services& services_;
    SessionDatabase database_;
    RowMirror mirror_;
    std::atomic<std::int64_t> lastWithoutRow_{0};
    std::atomic<std::int64_t> nextSweep_{0};
    mutable std::mutex mutex_;
    std::int64_t lastRead_ = 0;
    /// Jobs whose rows may still change.
    std::set<std::int64_t> open_;
    /// When ended jobs are to be removed.
    std::map<std::int64_t, std::int64_t> removal_;
    /// Jobs of sessions from elsewhere, whose process cannot be looked at.
    std::set<std::int64_t> foreign_;
};

const ProviderRegistration jobsRegistration{
    [](Services& services) { return std::make_unique<JobProvider>(services); }};

} // namespace
} // namespace velclp_sim
