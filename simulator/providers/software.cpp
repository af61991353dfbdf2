// The software installation service: an update is a job that runs, counts up and ends. The image's
// URI says how, so that every end can be tried out:
//
//     http://host/sp-2.15.0.bin              ends completed; the version in the name is then
//     installed
//     ...                                    an image of the version that runs changes nothing
//     (state 2) http://host/x.bin?end=<end>            completed, unchanged, terminated, killed,
//     exception, vanish http://host/x.bin?end=vanish&seconds=5 takes that many nominal seconds
//     instead of thirty

#include "simulator/providers/toolkit.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdlib>

namespace velclp_sim {
namespace {

using JobState = std::uint16_t;
constexpr JobState jobNew = 2;
constexpr JobState jobRunning = 4;
constexpr JobState jobCompleted = 7;
constexpr JobState jobTerminated = 8;
constexpr JobState jobKilled = 9;
constexpr JobState jobException = 10;
/// No state of a job: it is gone.
constexpr JobState jobVanished = 0;

/// What an image's URI asks for.
struct Image {
    std::string uri;
    std::string scheme;
    std::string version;
    std::string end;
    std::chrono::seconds takes{30};
};

/// The value of a field in the URI's query; empty when it is not there.
std::string queryField(const std::string& uri, const std::string& name) {
    const std::size_t query = uri.find('?');
    if (query == std::string::npos) {
        return {};
    }
    std::size_t at = query;
    while (at != std::string::npos) {
        ++at;
        const std::size_t next = uri.find('&', at);
        const std::string field = uri.substr(at, next == std::string::npos ? next : next - at);
        if (field.compare(0, name.size() + 1, name + "=") == 0) {
            return field.substr(name.size() + 1);
        }
        at = next;
    }
    return {};
}

/// The first run of digits and dots in the file's name that holds a dot between digits.
std::string versionIn(const std::string& uri) {
    const std::string path = uri.substr(0, uri.find('?'));
    const std::string name = path.substr(path.rfind('/') + 1);
    constexpr const char* parts = "0123456789.";
    std::size_t at = name.find_first_of("0123456789");
    while (at != std::string::npos) {
        const std::size_t end = std::min(name.find_first_not_of(parts, at), name.size());
        std::string version = name.substr(at, end - at);
        version.erase(version.find_last_not_of('.') + 1);
        if (version.find('.') != std::string::npos) {
            return version;
        }
        at = name.find_first_of("0123456789", end);
    }
    return {};
}

Image readImage(const std::string& uri) {
    constexpr long longest = 86400;
    Image image;
    image.uri = uri;
    image.scheme = uri.substr(0, std::min(uri.find(':'), uri.size()));
    image.version = versionIn(uri);
    image.end = queryField(uri, "end");
    if (const std::string seconds = queryField(uri, "seconds"); !seconds.empty()) {
        const long asked = std::strtol(seconds.c_str(), nullptr, 10);
        image.takes = std::chrono::seconds(std::clamp(asked, 0L, longest));
    }
    return image;
}

JobState endOf(const Image& image, const std::string& installed) {
    constexpr std::array<std::pair<const char*, JobState>, 6> ends{{{"completed", jobCompleted},
                                                                    {"unchanged", jobNew},
                                                                    {"terminated", jobTerminated},
                                                                    {"killed", jobKilled},
                                                                    {"exception", jobException},
                                                                    {"vanish", jobVanished}}};
    const auto found = std::find_if(
        ends.begin(), ends.end(), [&](const auto& one) { return sameName(image.end, one.first); });
    if (found != ends.end()) {
        return found->second;
    }
    return image.version == installed ? jobNew : jobCompleted;
}

/// An update, from its start to its end; shared by the steps that are still due.
class Update {
public:
    Update(Services& services, ObjectPath job, ObjectPath target, Image image, JobState end)
        : repository_(services.repository),
          job_(std::move(job)),
          target_(std::move(target)),
          image_(std::move(image)),
          end_(end) {}

    Scheduler::Duration takes() const { return image_.takes; }

    void progress(unsigned percent) {
        updateIfThere(repository_, job_, [&](Instance& job) {
            if (job.get("JobState").toUnsigned() == jobRunning) {
                job.set("PercentComplete", percent);
            }
        });
    }

    void finish() {
        if (end_ == jobVanished) {
            repository_.remove(job_);
            return;
        }
        bool running = false;
        updateIfThere(repository_, job_, [&](Instance& job) {
            running = job.get("JobState").toUnsigned() == jobRunning;
            if (running) {
                conclude(job);
            }
        });
        if (running && end_ == jobCompleted) {
            install();
        }
    }

    void forget() { repository_.remove(job_); }

private:
    void conclude(Instance& job) const {
        job.set("JobState", end_);
        job.set("PercentComplete", end_ == jobCompleted ? 100 : 0);
        job.set("TimeOfLastStateChange", timeText(nowMicroseconds()));
        if (end_ == jobException) {
            job.set("JobStatus", "Failed");
            job.set("ErrorCode", 1);
            job.set("ErrorDescription", "The image could not be verified");
        } else {
            job.set("JobStatus", end_ == jobCompleted ? "Installed" : "Nothing installed");
        }
    }

    void install() const {
        if (image_.version.empty()) {
            return;
        }
        repository_.update(
            target_, [&](Instance& system) { system.set("FirmwareVersion", image_.version); });
        const auto installed = partners(repository_, target_, "ZORM_InstalledSoftwareIdentity");
        if (!installed.empty()) {
            updateIfThere(repository_, installed.front(), [&](Instance& software) {
                software.set("VersionString", image_.version);
                software.set("ReleaseDate", timeText(nowMicroseconds()));
            });
        }
    }

    Repository& repository_;
    const ObjectPath job_;
    const ObjectPath target_;
    const Image image_;
    const JobState end_;
};

class InstallationProvider : public Provider {
public:
    explicit InstallationProvider(Services& services) : services_(services) {}

    std::vector<std::string> classes() const override {
        return {"ZORM_SoftwareInstallationService"};
    }

    std::optional<MethodResult> invokeMethod(const Caller& /*caller*/, const ObjectPath& path,
                                             const Method& method, const Arguments& in) override {
        if (!sameName(method.name, "InstallFromURI")) {
            return std::nullopt;
        }
        const auto target = instanceArgument(services_.repository, in.get("Target"));
        const Image image = readImage(in.get("URI").toString());
        if (!target || !tie(services_.repository, path, *target, "ZORM_SISServiceAffectsElement") ||
            !fetches(path, image)) {
            return answer(Outcome::invalidParameter);
        }
        if (isBusy(path)) {
            return answer(Outcome::inUse);
        }
        MethodResult result = answer(Outcome::jobStarted);
        result.out.set("Job", Value(begin(path, *target, image)));
        return result;
    }

private:
    bool fetches(const ObjectPath& service, const Image& image) const {
        const InstancePtr instance = services_.repository.find(service);
        if (!instance || image.scheme.size() == image.uri.size()) {
            return false;
        }
        const Value::Array& schemes = instance->get("SupportedURISchemes").toArray();
        return std::any_of(schemes.begin(), schemes.end(), [&](const Value& one) {
            return sameName(one.toString(), image.scheme);
        });
    }

    bool isBusy(const ObjectPath& service) const {
        const auto jobs = partners(services_.repository, service, "ZORM_AffectedJobElement");
        return std::any_of(jobs.begin(), jobs.end(), [&](const ObjectPath& path) {
            const InstancePtr job = services_.repository.find(path);
            return job && job->get("JobState").toUnsigned() == jobRunning;
        });
    }

    ObjectPath begin(const ObjectPath& service, const ObjectPath& target, const Image& image) {
        Repository& repository = services_.repository;
        ObjectPath path = addJob(service.nameSpace(), image);
        join(repository, "ZORM_AffectedJobElement", {"OwningElement", service},
             {"OwnedElement", path});
        const InstancePtr system = repository.find(target);
        const std::string installed =
            system ? system->get("FirmwareVersion").toString() : std::string();
        repository.update(target,
                          [&](Instance& instance) { instance.set("UpdateSource", image.uri); });
        run(std::make_shared<Update>(services_, path, target, image, endOf(image, installed)));
        return path;
    }

    ObjectPath addJob(const std::string& nameSpace, const Image& image) {
        const std::string number = std::to_string(++lastJob_);
        const std::string now = timeText(nowMicroseconds());
        Instance job(services_.repository.requireClass(nameSpace, "ZORM_SoftwareInstallationJob"));
        job.set("InstanceID", "ZORM:install:" + number);
        job.set("Name", "Firmware update " + number);
        job.set("Description", image.uri);
        job.set("JobState", jobRunning);
        job.set("JobStatus", "Installing");
        job.set("PercentComplete", 0);
        job.set("DeleteOnCompletion", true);
        job.set("ErrorCode", 0);
        job.set("TimeSubmitted", now);
        job.set("StartTime", now);
        job.set("TimeOfLastStateChange", now);
        return services_.repository.add(std::move(job));
    }

    void run(const std::shared_ptr<Update>& update) {
        constexpr unsigned tenths = 10;
        if (update->takes().count() == 0) {
            update->finish();
        } else {
            for (unsigned i = 1; i < tenths; ++i) {
                services_.scheduler.after(update->takes() * i / tenths,
                                          [update, i] { update->progress(i * tenths); });
            }
            services_.scheduler.after(update->takes(), [update] { update->finish(); });
        }
        services_.scheduler.after(update->takes() + std::chrono::minutes(5),
                                  [update] { update->forget(); });
    }

    Services& services_;
    std::atomic<unsigned> lastJob_{0};
};

/// A running update can be ended from outside.
class InstallationJobProvider : public Provider {
public:
    explicit InstallationJobProvider(Services& services) : services_(services) {}

    std::vector<std::string> classes() const override { return {"ZORM_SoftwareInstallationJob"}; }

    std::optional<MethodResult> invokeMethod(const Caller& /*caller*/, const ObjectPath& path,
                                             const Method& method, const Arguments& in) override {
        constexpr std::uint64_t terminate = 4;
        constexpr std::uint64_t kill = 5;
        if (!sameName(method.name, "RequestStateChange")) {
            return std::nullopt;
        }
        const std::uint64_t requested = in.get("RequestedState").toUnsigned();
        if (requested != terminate && requested != kill) {
            return answer(Outcome::invalidParameter);
        }
        bool running = false;
        services_.repository.update(path, [&](Instance& job) {
            running = job.get("JobState").toUnsigned() == jobRunning;
            if (running) {
                job.set("JobState", requested == terminate ? jobTerminated : jobKilled);
                job.set("TimeOfLastStateChange", timeText(nowMicroseconds()));
            }
        });
        return answer(running ? Outcome::done : Outcome::failed);
    }

private:
    Services& services_;
};

const ProviderRegistration installations{
    [](Services& services) { return std::make_unique<InstallationProvider>(services); }};
const ProviderRegistration installationJobs{
    [](Services& services) { return std::make_unique<InstallationJobProvider>(services); }};

} // namespace
} // namespace velclp_sim
