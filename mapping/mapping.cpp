// Changes to CIM objects, and the errors that come of them.
#include "velclp/mapping.h"

#include "mapping/cimvalue.h"
#include "mapping/operation.h"
#include "schema/cimnamespace.h"
#include "velclp/assertion.h"
#include "velclp/clpstring.h"
#include "velclp/log.h"

#include <CimClientLib/native.h>

#include <strings.h>

namespace velmora_clp {

namespace {

constexpr int lastCimStatus = CMPI_RC_ERR_METHOD_NOT_FOUND;

// RequestedState of the general model.
enum RequestedState : int { Enabled = 2, Disabled = 3, Offline = 6, Reset = 11 };

constexpr unsigned int integerMask = (8 << 4) | ((8 + 4) << 4);

int cutToInt(CMPIUint64 bits) {
    return static_cast<int>(static_cast<unsigned int>(bits));
}

void assertInteger(const CMPIData& data) {
    VELCLP_ASSERT((data.type & integerMask) != 0, "type&((((8)<<4) | ((8+4)<<4)))");
}

// The present array with the elements that the new one sets. Null when nothing is there to keep.
CimArray mergedArray(CMPIArray* present, CMPIArray* wanted, CMPIType type) {
    const char* const function = "CLP.CLPMapping.smSetInstance";
    const unsigned int count = arraySize(present);
    if (count == 0 || !wanted)
        return nullptr;
    CimStatus status;
    CimArray merged(native_new_CMPIArray(count, type, status.out()));
    for (unsigned int i = 0; merged && i < count; ++i) {
        CMPIData element = wanted->ft->getElementAt(wanted, i, status.out());
        if (status.ok() && hasValue(element)) {
            VELCLP_LOG_BRANCH(function, "set array[%u] with new value", i);
        } else {
            VELCLP_LOG_BRANCH(function, "set arrray[%u] with old value", i);
            element = present->ft->getElementAt(present, i, status.out());
        }
        if (hasValue(element))
            merged->ft->setElementAt(merged.get(), i, &element.value, element.type);
    }
    return merged;
}

// A writable copy without the properties that are null: a null that is written over may stay one.
CimInstance copyOf(CMPIInstance* instance, CMPIObjectPath* path) {
    CimStatus status;
    CimInstance copy(native_new_CMPIInstance(path, status.out()));
    VELCLP_ASSERT(copy, "ins");
    const unsigned int count = instance->ft->getPropertyCount(instance, status.out());
    for (unsigned int i = 0; i < count; ++i) {
        CMPIString* rawName = nullptr;
        const CMPIData data = instance->ft->getPropertyAt(instance, i, &rawName, status.out());
        const CimString name(rawName);
        if (hasValue(data))
            setProperty(copy.get(), cimText(name.get()), data);
    }
    return copy;
}

void setMerged(CMPIInstance* instance, CMPIInstance* present, const std::string& name,
               CMPIData data) {
    CimStatus status;
    CimArray merged;
    if (isArray(data.type)) {
        const CMPIData old = present->ft->getProperty(present, name.c_str(), status.out());
        if (status.ok())
            merged = mergedArray(arrayOf(old), data.value.array, elementType(data.type));
        if (merged)
            data.value.array = merged.get();
    }
    setProperty(instance, name, data);
}

CMPIData interval(CMPIDateTime* dateTime) {
    CMPIData data = {};
    data.type = CMPI_dateTime;
    data.value.dateTime = dateTime;
    return data;
}

} // namespace

int smExtractCMPIIntValue(const CMPIData& data) {
    assertInteger(data);
    switch (data.type) {
    case CMPI_uint8:
        return data.value.uint8;
    case CMPI_uint16:
        return data.value.uint16;
    case CMPI_uint32:
        return cutToInt(data.value.uint32);
    case CMPI_uint64:
        return cutToInt(data.value.uint64);
    case CMPI_sint8:
        return data.value.sint8;
    case CMPI_sint16:
        return data.value.sint16;
    case CMPI_sint32:
        return cutToInt(static_cast<CMPIUint64>(data.value.sint32));
    case CMPI_sint64:
        return cutToInt(static_cast<CMPIUint64>(data.value.sint64));
    default:
        return -1;
    }
}

CLPMapping::CLPMapping(CMCIClient* client, Transport* progress) : cc(client), transport(progress) {}

void CLPMapping::smNewInstance(const std::string& ufct, CMPIObjectPath** path, CMPIInstance** ins) {
    VELCLP_TRACE("CLP.CLPMapping.smNewInstance");
    VELCLP_ASSERT(path && ins, "path&&ins");
    VELCLP_ASSERT(*path == nullptr && *ins == nullptr, "(*path)==__null&&(*ins)==__null");
    const std::string cimclass = classOfTag(ufct);
    CimStatus status;
    *path = newCMPIObjectPath(namespaceOf(cimclass).c_str(), cimclass.c_str(), status.out());
    *ins = native_new_CMPIInstance(*path, status.out());
}

JobError* CLPMapping::smCreateInstance(CMPIObjectPath* path, CMPIInstance* ins,
                                       CMPIObjectPath** object) {
    VELCLP_TRACE("CLP.CLPMapping.smCreateInstance");
    VELCLP_ASSERT(path && ins && object, "path&&ins&&object");
    VELCLP_ASSERT(*object == nullptr, "(*object)==__null");
    CimStatus status;
    CimPath created(cc->ft->createInstance(cc, path, ins, status.out()));
    if (!status.ok())
        return smProcessOpError(status.get());
    if (!created)
        return smProcessOpError(nullptr);
    created->ft->setNameSpace(created.get(), cimNameSpace(path).c_str());
    *object = created.release();
    return nullptr;
}

JobError* CLPMapping::smDeleteInstance(CMPIObjectPath* path) {
    VELCLP_TRACE("CLP.CLPMapping.smDeleteInstance");
    VELCLP_ASSERT(path, "path");
    const CimStatus status(cc->ft->deleteInstance(cc, path));
    return status.ok() ? nullptr : smProcessOpError(status.get());
}

JobError* CLPMapping::smSetInstance(CMPIObjectPath* path, const PropertyMap* props) {
    VELCLP_TRACE("CLP.CLPMapping.smSetInstance");
    VELCLP_ASSERT(path != nullptr, "path!=__null");
    VELCLP_ASSERT(props && !props->empty(), "props->empty()==false");
    CimStatus status;
    const CimInstance present(cc->ft->getInstance(cc, path, 0, nullptr, status.out()));
    if (!status.ok() || !present)
        return smProcessOpError(status.ok() ? nullptr : status.get());
    const CimInstance instance = copyOf(present.get(), path);
    for (const auto& [name, data] : *props) {
        VELCLP_ASSERT(data, "p->second");
        setMerged(instance.get(), present.get(), name, *data);
    }
    status = cc->ft->setInstance(cc, path, instance.get(), 0, nullptr);
    return status.ok() ? nullptr : smProcessOpError(status.get());
}

JobError* CLPMapping::invoke(CMPIObjectPath* path, const char* method, CMPIArgs* in,
                             CMPIArgs* out) {
    CimStatus status;
    const CimArgs unread(out ? nullptr : native_new_CMPIArgs(status.out()));
    const CimData value(
        cc->ft->invokeMethod(cc, path, method, in, out ? out : unread.get(), status.out()));
    return status.ok() ? smProcessRetError(value.get()) : smProcessOpError(status.get());
}

JobError* CLPMapping::smInvokeMethod(CMPIObjectPath* path, const std::string& method,
                                     const DataPairs* inP, DataPairs* /*outP*/) {
    const char* const function = "CLP.CLPMapping.smInvokeMethod";
    VELCLP_TRACE(function);
    VELCLP_LOG_VALUE(function, "method=[%s]", method.c_str());
    const std::string lower = lowerString(method);
    if (lower == "deleteinstance")
        return smDeleteInstance(path);
    CimStatus status;
    const CimArgs args(native_new_CMPIArgs(status.out()));
    if (lower == "requeststatechange") {
        VELCLP_ASSERT(static_cast<int>(inP->size()) == 1, "static_cast<int>(inP->size())==1");
        const CMPIData* const val = inP->front().second;
        VELCLP_ASSERT(val, "val");
        addArg(args.get(), inP->front().first, *val);
        return smOpRequestStateChange(path, args.get());
    }
    if (inP) {
        for (const auto& [name, data] : *inP) {
            VELCLP_ASSERT(data, "(*inP)[i].second");
            addArg(args.get(), name, *data);
        }
    }
    return invoke(path, method.c_str(), args.get(), nullptr);
}

JobError* CLPMapping::smOpRequestStateChange(CMPIObjectPath* path, CMPIArgs* args) {
    VELCLP_TRACE("CLP.CLPMapping.smOpRequestStateChange");
    VELCLP_ASSERT(path && args, "path&&args");
    return invoke(path, "RequestStateChange", args, nullptr);
}

JobError* CLPMapping::smRequestStateChange(CMPIObjectPath* path, int state) {
    VELCLP_TRACE("CLP.CLPMapping.smRequestStateChange");
    CimStatus status;
    const CimArgs args(native_new_CMPIArgs(status.out()));
    addArg(args.get(), "RequestedState", uint16Data(state));
    return smOpRequestStateChange(path, args.get());
}

JobError* CLPMapping::smStartRSC(CMPIObjectPath* path) {
    VELCLP_TRACE("CLP.CLPMapping.smStartRSC");
    return smRequestStateChange(path, Enabled);
}

JobError* CLPMapping::smStopRSC(CMPIObjectPath* path) {
    VELCLP_TRACE("CLP.CLPMapping.smStopRSC");
    const bool redirected = strcasecmp(cimClassName(path).c_str(), "ZORM_USBRedirectionSAP") == 0;
    return smRequestStateChange(path, redirected ? Offline : Disabled);
}

JobError* CLPMapping::smResetRSC(CMPIObjectPath* path) {
    VELCLP_TRACE("CLP.CLPMapping.smResetRSC");
    return smRequestStateChange(path, Reset);
}

JobError* CLPMapping::smRequestPowerStateChange(CMPIObjectPath* pms, CMPIObjectPath* target,
                                                int state) {
    VELCLP_TRACE("CLP.CLPMapping.smRequestPowerStateChange");
    VELCLP_ASSERT(pms && target, "pms&&target");
    CimStatus status;
    const CimDateTime time(native_new_CMPIDateTime_fromBinary(0, 1, status.out()));
    const CimDateTime timeout(native_new_CMPIDateTime_fromBinary(0, 1, status.out()));
    const CimArgs in(native_new_CMPIArgs(status.out()));
    addArg(in.get(), "PowerState", uint16Data(state));
    addArg(in.get(), "ManagedElement", refData(target));
    addArg(in.get(), "Time", interval(time.get()));
    addArg(in.get(), "TimeoutPeriod", interval(timeout.get()));
    return invoke(pms, "RequestPowerStateChange", in.get(), nullptr);
}

JobError* CLPMapping::smProcessOpError(const CMPIStatus* status) {
    VELCLP_TRACE("CLP.CLPMapping.smProcessOpError");
    VELCLP_ASSERT(!status || status->rc, "!status||status->rc");
    const int rc = status ? static_cast<int>(status->rc) : 0;
    if (rc < 1 || rc > lastCimStatus)
        return newJobError(JobError::Software_Error, JobError::CIM_ERR_FAILED, JobError::S_Unknown);
    return newJobError(JobError::Other, rc, JobError::S_Unknown);
}

JobError* CLPMapping::smProcessRetError(const CMPIData& data) {
    VELCLP_TRACE("CLP.CLPMapping.smProcessRetError");
    const int value = smExtractCMPIIntValue(data);
    switch (hasValue(data) ? value : -1) {
    case 0:
        return nullptr;
    case 1:
        return newJobError(JobError::Other, JobError::CIM_ERR_NOT_SUPPORTED, JobError::S_Low);
    case 5:
        return newJobError(JobError::Other, JobError::CIM_ERR_INVALID_PARAMETER, JobError::S_Low);
    default:
        return newJobError(JobError::Other, JobError::CIM_ERR_FAILED, JobError::S_Low);
    }
}

} // namespace velmora_clp
