#include "core/remotejob.h"

#include "core/cimconnect.h"
#include "schema/cimnamespace.h"
#include "velclp/assertion.h"
#include "velclp/core_misc.h"
#include "velclp/joberror.h"
#include "velclp/log.h"
#include "velclp/mapping.h"

#include <CimClientLib/native.h>

#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <map>

namespace velmora_clp {

namespace {

const char* const JOB_CLASS = "ZORM_CLPConcreteJob";
const char* const JOB_LOGIN = "oper02aa";
const std::size_t JOB_PREFIX = 7; // "clpjob:"

int jobNumber(CMPIObjectPath* path) {
    CimStatus status;
    const CMPIData key = path->ft->getKey(path, "InstanceID", status.out());
    if (!status.ok() || (key.state & CMPI_nullValue) != 0)
        return 0;
    const std::string id = cimValueText(key.type, key.value);
    const long number =
        id.size() > JOB_PREFIX ? std::strtol(id.c_str() + JOB_PREFIX, nullptr, 10) : 0;
    return static_cast<int>(std::clamp<long>(number, INT_MIN, INT_MAX));
}

} // namespace

int createRemoteJob(CMCIClient* client, Transport* transport, int keepSeconds, CimPath& path) {
    const char* const function = "CLP.createRemoteJob";
    VELCLP_TRACE(function);
    CimStatus status;
    const CimPath classPath(newCMPIObjectPath(DEFAULT_NAMESPACE, JOB_CLASS, status.out()));
    const CimInstance instance(native_new_CMPIInstance(classPath.get(), status.out()));
    setCimText(instance.get(), "oemvelmora_pid", std::to_string(getpid()));
    const CMPIUint64 keepTime = static_cast<CMPIUint64>(keepSeconds) * 1000000;
    const CimDateTime t(native_new_CMPIDateTime_fromBinary(keepTime, 1, status.out()));
    VELCLP_ASSERT(t != nullptr, "t");
    CMPIValue removal{};
    removal.dateTime = t.get();
    instance->ft->setProperty(instance.get(), "TimeBeforeRemoval", &removal, CMPI_dateTime);

    VELCLP_LOG_VALUE(function, "Create Job in cimserver");
    CMPIObjectPath* _job = nullptr;
    JobError* const error =
        CLPMapping(client, transport).smCreateInstance(classPath.get(), instance.get(), &_job);
    path.reset(_job);
    if (error != nullptr) {
        VELCLP_LOG_FAILURE(function, "create job error!=[%s]", error->getErrorTag());
        throw error;
    }
    VELCLP_ASSERT(_job != nullptr, "_job");
    path->ft->setNameSpace(path.get(), DEFAULT_NAMESPACE);
    return jobNumber(path.get());
}

void writeRemoteJobState(const std::string& host, const std::string& port, CMPIObjectPath* path,
                         unsigned short state) {
    const CimClient client = connectCim(host, port, JOB_LOGIN);
    if (!client)
        return;
    CMPIData data{};
    data.type = CMPI_uint16;
    data.value.uint16 = state;
    // A job that is gone, or a server that fails now, is no reason to end the session.
    const CMPIrc rc = CLPMisc::writeProperties(client.get(), path, {{"JobState", &data}});
    if (rc != CMPI_RC_OK)
        VELCLP_LOG_FAILURE("CLP.writeRemoteJobState", "set JobState failed=[%d]",
                           static_cast<int>(rc));
}

} // namespace velmora_clp
