// The one long operation that a verb means on a class: the firmware update.
#include "velclp/mapping.h"

#include "mapping/cimvalue.h"
#include "mapping/operation.h"
#include "velclp/assertion.h"
#include "velclp/clpstring.h"
#include "velclp/log.h"
#include "velclp/transport.h"

#include <CimClientLib/native.h>

#include <pthread.h>

#include <atomic>
#include <thread>

namespace velmora_clp {

namespace {

constexpr int jobStarted = 4096;
constexpr int marksInLine = 16;
std::atomic<std::chrono::milliseconds> timeBetweenPolls{std::chrono::seconds(5)};

// JobState of the general model, as far as it is told apart.
enum JobState : int { Unchanged = 2, Running = 4, Done = 7, Vanished = 10 };

const char* closingText(int state) {
    switch (state) {
    case Done:
        return "\nUpdating FW Done.";
    case Unchanged:
        return "\nOriginal FW without any updating.";
    default:
        return "\nUpdating FW failed.";
    }
}

// What stands for the poll of that count: a mark, or an end of line after every sixteen.
bool endsLine(int count) {
    return count > 0 && count % marksInLine == 0;
}

// The job's state; Vanished for a job that cannot be read.
int readJobState(CMCIClient* cc, CMPIObjectPath* job) {
    CimStatus status;
    const CimInstance instance(cc->ft->getInstance(cc, job, 0, nullptr, status.out()));
    if (!instance)
        return Vanished;
    const CMPIData data = instance->ft->getProperty(instance.get(), "JobState", status.out());
    return status.ok() && hasValue(data) ? smExtractCMPIIntValue(data) : Vanished;
}

} // namespace

JobError* CLPMapping::smSpecialMethod(const std::string& cimclass, const std::string& method,
                                      const TextPairs* params, CMPIArgs* args,
                                      CMPIObjectPath* path) {
    const char* const function = "CLP.CLPMapping.smSpecialMethod";
    VELCLP_TRACE(function);
    if (!params || params->empty()) {
        VELCLP_LOG_VALUE(function, "cimclass=[%s],method=[%s],input parameter is [<NULL,NULL>]",
                         cimclass.c_str(), method.c_str());
    } else {
        const auto& shown = (*params)[params->size() > 1 ? 1 : 0];
        VELCLP_LOG_VALUE(function, "cimclass=[%s],method=[%s],input parameter=[<%s,%s>]",
                         cimclass.c_str(), method.c_str(), shown.first.c_str(),
                         shown.second.c_str());
    }
    return lowerString(cimclass) == "zorm_spcomputersystem"
               ? SP_SpecialMethod(method, params, args, path)
               : nullptr;
}

JobError* CLPMapping::SP_SpecialMethod(const std::string& method, const TextPairs* params,
                                       CMPIArgs* /*args*/, CMPIObjectPath* path) {
    const char* const function = "CLP.CLPMapping.SP_SpecialMethod";
    VELCLP_TRACE(function);
    const bool callable = method == "installfromuri" && path && params && params->size() > 1;
    const CimPath service = callable ? first(associators(cc, path, "ZORM_SISServiceAffectsElement",
                                                         "ZORM_SoftwareInstallationService"))
                                     : nullptr;
    if (!service)
        return logFailure(
            function, newJobError(JobError::Other, CMPI_RC_ERR_ACCESS_DENIED, JobError::S_Unknown));
    CimStatus status;
    const CimString uri(native_new_CMPIString((*params)[1].second.c_str(), status.out()));
    const CimArgs in(native_new_CMPIArgs(status.out()));
    addArg(in.get(), "URI", stringData(uri.get()));
    addArg(in.get(), "Target", refData(path));
    const CimArgs out(native_new_CMPIArgs(status.out()));

    // An update is not to be cut off half-way; nothing turns cancellation on again.
    pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, nullptr);
    const CimData value(cc->ft->invokeMethod(cc, service.get(), "InstallFromURI", in.get(),
                                             out.get(), status.out()));
    if (!status.ok())
        return logFailure(function, smProcessOpError(status.get()));
    if (smExtractCMPIIntValue(value.get()) != jobStarted)
        return logFailure(function, smProcessRetError(value.get()));
    progress("Updating started.", true);
    const CMPIData job = out->ft->getArg(out.get(), "Job", status.out());
    const bool followed = status.ok() && hasValue(job) && isReference(job);
    followUpdate(followed ? inNamespaceOf(job.value.ref, path).get() : nullptr);
    return nullptr;
}

void CLPMapping::setUpdatePollInterval(std::chrono::milliseconds interval) {
    timeBetweenPolls = interval;
}

void CLPMapping::followUpdate(CMPIObjectPath* job) {
    progress(closingText(job ? pollUpdate(job) : Vanished), true);
}

int CLPMapping::pollUpdate(CMPIObjectPath* job) {
    int state = readJobState(cc, job);
    for (int count = 0; state == Running; ++count) {
        progress(endsLine(count) ? "" : "#", endsLine(count));
        std::this_thread::sleep_for(timeBetweenPolls.load());
        state = readJobState(cc, job);
    }
    return state;
}

void CLPMapping::progress(const char* text, bool endLine) {
    if (!transport)
        return;
    *transport << text;
    if (endLine)
        Transport::endl(*transport);
    transport->flush();
}

} // namespace velmora_clp
