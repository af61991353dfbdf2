// Verbs and properties of a class tag that are, on the CIM side, a method of some other object.
#include "velclp/mapping.h"

#include "mapping/cimvalue.h"
#include "mapping/operation.h"
#include "schema/cimnamespace.h"
#include "velclp/assertion.h"
#include "velclp/clpstring.h"
#include "velclp/core_misc.h"
#include "velclp/log.h"
#include "velclp/schema.h"

#include <CimClientLib/native.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <limits>

#include <strings.h>

namespace velmora_clp {

namespace {

const char* const powerAssociation = "ZORM_CSAssociatedPowerManagementService";

// What a missing association target is reported as.
constexpr int noAssociate = CMPI_RC_ERR_ACCESS_DENIED;

JobError* operationError(int rc) {
    return newJobError(JobError::Other, rc, JobError::S_Unknown);
}

JobError* badParameters() {
    return newJobError(JobError::Other, JobError::CIM_ERR_NOT_SUPPORTED, JobError::S_Low);
}

CimArgs newArgs() {
    CimStatus status;
    return CimArgs(native_new_CMPIArgs(status.out()));
}

// The number that the only pair of a "set" holds: its name must be the given one, in any case, and
// the number lie in the range. False otherwise.
bool onlyNumber(const CLPMapping::TextPairs& props, const char* name, long lowest, long highest,
                int& number) {
    if (props.size() != 1 || strcasecmp(props.front().first.c_str(), name) != 0)
        return false;
    const long value = std::strtol(props.front().second.c_str(), nullptr, 10);
    number = static_cast<int>(std::clamp(value, lowest, highest));
    return value >= lowest && value <= highest;
}

void addValue(CMPIArgs* args, const std::string& name, const CMPIData& data) {
    if (hasValue(data))
        addArg(args, name, data);
}

// Adds the texts that a class has for the values of a property, if it has both lists.
void addTexts(CMPIConstClass* cimClass, const std::string& name, CMPIArgs* outP) {
    const CimArray values(CLPMisc::getPropertyQualify(cimClass, name, "Values"));
    const CimArray valuemap(CLPMisc::getPropertyQualify(cimClass, name, "Valuemap"));
    if (!values || !valuemap)
        return;
    CMPIData data = {};
    data.type = CMPI_ARRAY;
    data.value.array = values.get();
    addArg(outP, "_values_", data);
    data.value.array = valuemap.get();
    addArg(outP, "_valuemap_", data);
}

// The power state to ask for when a state is set; the crossed pairs are meant. -1 for a value that
// cannot be asked for.
int powerStateFor(const std::string& value) {
    static const std::array<std::pair<const char*, int>, 5> states = {
        {{"2", 2}, {"5", 11}, {"8", 12}, {"11", 8}, {"12", 5}}};
    const auto* const found = std::find_if(states.begin(), states.end(),
                                           [&](const auto& state) { return value == state.first; });
    return found != states.end() ? found->second : -1;
}

// The power state that a verb asks for; -1 for a word that asks for none.
int powerStateForVerb(const std::string& method) {
    static const std::array<std::pair<const char*, int>, 4> states = {
        {{"start", 2}, {"stop", 12}, {"hardstop", 8}, {"reset", 5}}};
    const auto* const found = std::find_if(
        states.begin(), states.end(), [&](const auto& state) { return method == state.first; });
    return found != states.end() ? found->second : -1;
}

} // namespace

JobError* CLPMapping::smCheckCommand(const std::string& ufct, const std::string& verb) {
    VELCLP_TRACE("CLP.CLPMapping.smCheckCommand");
    const CLPSchema& schema = *CLPSchema::getInstance();
    const std::string& cimclass = schema.getCIMClass(ufct);
    if (cimclass.empty())
        return newJobError(JobError::Other, JobError::CIM_ERR_NOT_FOUND, JobError::S_Low);
    const CLPSchema::Names& own = schema.getVerbs_ufct(ufct);
    const CLPSchema::Names& verbs = own.empty() ? schema.getVerbs_class(cimclass) : own;
    return std::find(verbs.begin(), verbs.end(), verb) != verbs.end() ? nullptr : badParameters();
}

JobError* CLPMapping::smPseudoMethod(CMPIObjectPath* path, const std::string& ufct,
                                     const std::string& method, const TextPairs& props,
                                     CMPIArgs* outP) {
    const char* const function = "CLP.CLPMapping.smPseudoMethod";
    VELCLP_TRACE(function);
    VELCLP_ASSERT(path, "path");
    using Operation = JobError* (CLPMapping::*)(const std::string&, CMPIObjectPath*,
                                                const std::string&, const TextPairs&, CMPIArgs*);
    static const std::array<std::pair<const char*, Operation>, 7> operations = {
        {{"system", &CLPMapping::SYSTEM_PseudoMethod},
         {"sp", &CLPMapping::SP_PseudoMethod},
         {"log", &CLPMapping::LOG_PseudoMethod},
         {"splog", &CLPMapping::SPLOG_PseudoMethod},
         {"elementsettingdata", &CLPMapping::ELEMENTSETTINGDATA_PseudoMethod},
         {"netportcfgsvc", &CLPMapping::NETPORTCFGSVC_PseudoMethod},
         {"pwrcurr", &CLPMapping::PWRCURR_PseudoMethod}}};
    const std::string tag = lowerString(ufct);
    VELCLP_LOG_VALUE(function, "ufct=[%s],method=[%s]", tag.c_str(), method.c_str());
    for (const auto& [name, operation] : operations)
        if (tag == name)
            return (this->*operation)(tag, path, method, props, outP);
    return nullptr;
}

JobError* CLPMapping::SYSTEM_PseudoMethod(const std::string& ufct, CMPIObjectPath* path,
                                          const std::string& method, const TextPairs& props,
                                          CMPIArgs* outP) {
    const char* const function = "CLP.CLPMapping.SYSTEM_PseudoMethod";
    VELCLP_TRACE(function);
    VELCLP_ASSERT(path, "path");
    VELCLP_ASSERT(ufct == "system", "ufct==\"system\"");
    if (method == "show") {
        VELCLP_ASSERT(static_cast<int>(props.size()) == 1, "static_cast<int>(props.size())==1");
        VELCLP_ASSERT(outP, "outP");
        return logFailure(function, showSystemProperty(ufct, path, props.front().first, outP));
    }
    const CimPath service = first(associators(cc, path, powerAssociation, nullptr));
    if (!service)
        return logFailure(function, operationError(noAssociate));
    int state = powerStateForVerb(method);
    if (state != -1)
        VELCLP_ASSERT(static_cast<int>(props.size()) == 0, "static_cast<int>(props.size())==0");
    if (method == "set") {
        VELCLP_ASSERT(static_cast<int>(props.size()) == 1, "static_cast<int>(props.size())==1");
        state = powerStateFor(props.front().second);
        if (state == -1) {
            VELCLP_LOG_FAILURE(function, "Not support this value");
            return logFailure(function, operationError(CMPI_RC_ERR_NOT_SUPPORTED));
        }
    }
    if (state == -1)
        return nullptr;
    return logFailure(function, smRequestPowerStateChange(service.get(), path, state));
}

JobError* CLPMapping::showSystemProperty(const std::string& ufct, CMPIObjectPath* path,
                                         const std::string& name, CMPIArgs* outP) {
    CimStatus status;
    const CimEnumeration references(
        cc->ft->referenceNames(cc, path, powerAssociation, nullptr, status.out()));
    if (!references || !status.ok() ||
        references->ft->hasNext(references.get(), CimStatus().out()) == 0)
        return operationError(noAssociate);
    const CimPath reference = first(references);
    const CimInstance instance(cc->ft->getInstance(cc, reference.get(), 0, nullptr, status.out()));
    if (!status.ok() || !instance)
        return smProcessOpError(status.ok() ? nullptr : status.get());
    const CMPIData data = instance->ft->getProperty(instance.get(), name.c_str(), status.out());
    if (!status.ok())
        return smProcessOpError(status.get());
    addValue(outP, name, data);
    VELCLP_LOG_BRANCH("CLP.CLPMapping.SYSTEM_PseudoMethod", "Get values and valuesmap!");
    const CimClass cimClass(CLPMisc::getClass(cc, namespaceOf(classOfTag(ufct)), powerAssociation));
    if (!cimClass)
        return operationError(CMPI_RC_ERR_INVALID_CLASS);
    if (hasValue(data))
        addTexts(cimClass.get(), name, outP);
    return nullptr;
}

JobError* CLPMapping::SP_PseudoMethod(const std::string& ufct, CMPIObjectPath* path,
                                      const std::string& method, const TextPairs& props,
                                      CMPIArgs* outP) {
    const char* const function = "CLP.CLPMapping.SP_PseudoMethod";
    VELCLP_TRACE(function);
    VELCLP_ASSERT(path, "path");
    VELCLP_ASSERT(ufct == "sp", "ufct==\"sp\"");
    if (method != "show")
        return nullptr;
    VELCLP_ASSERT(static_cast<int>(props.size()) == 1, "static_cast<int>(props.size())==1");
    VELCLP_ASSERT(outP, "outP");
    const CimPath service =
        first(associators(cc, path, "ZORM_SPHostedService", "ZORM_TimeService"));
    if (!service)
        return logFailure(function, operationError(noAssociate));
    const CimArgs in = newArgs();
    addArg(in.get(), "GetRequest", trueData());
    addArg(in.get(), "ManagedElement", refData(path));
    const CimArgs out = newArgs();
    if (JobError* const error = invoke(service.get(), "ManageTime", in.get(), out.get()))
        return logFailure(function, error);
    CimStatus status;
    const CMPIData time = out->ft->getArg(out.get(), "TimeData", status.out());
    if (status.ok())
        addValue(outP, props.front().first, time);
    return nullptr;
}

JobError* CLPMapping::PWRCURR_PseudoMethod(const std::string& ufct, CMPIObjectPath* path,
                                           const std::string& method, const TextPairs& props,
                                           CMPIArgs* /*outP*/) {
    const char* const function = "CLP.CLPMapping.PWRCURR_PseudoMethod";
    VELCLP_TRACE(function);
    VELCLP_ASSERT(path, "path");
    VELCLP_ASSERT(ufct == "pwrcurr", "ufct==\"pwrcurr\"");
    if (method != "set")
        return logFailure(function, operationError(noAssociate));
    int limit = 0;
    if (!onlyNumber(props, "limit", 1, std::numeric_limits<CMPIUint16>::max(), limit))
        return logFailure(function, badParameters());
    const CimPath service = first(associators(cc, path, "ZORM_PUMServiceAffectsElement", nullptr));
    if (!service)
        return logFailure(function, operationError(noAssociate));
    CimStatus status;
    const CimString unit(native_new_CMPIString("watt", status.out()));
    const CimArgs in = newArgs();
    addArg(in.get(), "EnforceUtilizationLimit", trueData());
    addArg(in.get(), "UtilizationLimit", uint16Data(limit));
    addArg(in.get(), "UtilizationLimitUnit", stringData(unit.get()));
    addArg(in.get(), "UtilizingElement", refData(path));
    return logFailure(function,
                      invoke(service.get(), "RequestPowerUtilizationLimit", in.get(), nullptr));
}

JobError* CLPMapping::NETPORTCFGSVC_PseudoMethod(const std::string& ufct, CMPIObjectPath* path,
                                                 const std::string& method, const TextPairs& props,
                                                 CMPIArgs* /*outP*/) {
    const char* const function = "CLP.CLPMapping.NETPORTCFGSVC_PseudoMethod";
    VELCLP_TRACE(function);
    VELCLP_ASSERT(path, "path");
    VELCLP_ASSERT(ufct == "netportcfgsvc", "ufct==\"netportcfgsvc\"");
    if (method != "set")
        return logFailure(function, operationError(noAssociate));
    int mode = 0;
    if (!onlyNumber(props, "currentncsimode", 2, 5, mode))
        return logFailure(function, badParameters());
    const CimEnumeration ports = associators(cc, path, "ZORM_EthServiceAffectsElement", nullptr);
    if (!ports)
        return logFailure(function, operationError(noAssociate));
    CimStatus status;
    CMPIData portArray = {};
    portArray.type = CMPI_refA;
    portArray.value.array = ports->ft->toArray(ports.get(), status.out());
    const CimArgs in = newArgs();
    addArg(in.get(), "RequestedNCSIMode", uint16Data(mode));
    addArg(in.get(), "EthernetPorts", portArray);
    return logFailure(function, invoke(path, "RequestNCSIModeChange", in.get(), nullptr));
}

JobError* CLPMapping::ELEMENTSETTINGDATA_PseudoMethod(const std::string& ufct, CMPIObjectPath* path,
                                                      const std::string& method,
                                                      const TextPairs& props, CMPIArgs* /*outP*/) {
    const char* const function = "CLP.CLPMapping.ELEMENTSETTINGDATA_PseudoMethod";
    VELCLP_TRACE(function);
    VELCLP_ASSERT(path, "path");
    VELCLP_ASSERT(ufct == "elementsettingdata", "ufct==\"elementsettingdata\"");
    if (method != "set")
        return nullptr;
    if (props.size() != 1 || strcasecmp(props.front().first.c_str(), "IsCurrent") != 0 ||
        strcasecmp(props.front().second.c_str(), "1") != 0)
        return logFailure(function, badParameters());
    CimStatus status;
    const CMPIData ipendpt_ref = path->ft->getKey(path, "ManagedElement", status.out());
    const CMPIData setting_ref = path->ft->getKey(path, "SettingData", status.out());
    VELCLP_ASSERT(isReference(ipendpt_ref) && isReference(setting_ref),
                  "ipendpt_ref.type==((16+1)<<8) && ipendpt_ref.value.ref && "
                  "setting_ref.type==((16+1)<<8) && setting_ref.value.ref");
    const CimPath endpoint = inNamespaceOf(ipendpt_ref.value.ref, path);
    const CimPath setting = inNamespaceOf(setting_ref.value.ref, path);
    const CimPath service = first(associators(cc, endpoint.get(), "ZORM_IPServiceAffectsElement",
                                              "ZORM_IPConfigurationService"),
                                  "ipcfgsvc_ref.type==((16+1)<<8) && ipcfgsvc_ref.value.ref");
    if (!service)
        return logFailure(function, operationError(noAssociate));
    const CimArgs in = newArgs();
    addArg(in.get(), "Configuration", refData(setting.get()));
    addArg(in.get(), "Endpoint", refData(endpoint.get()));
    return logFailure(function,
                      invoke(service.get(), "ApplySettingToIPProtocolEndpoint", in.get(), nullptr));
}

JobError* CLPMapping::LOG_PseudoMethod(const std::string& ufct, CMPIObjectPath* path,
                                       const std::string& method, const TextPairs& /*props*/,
                                       CMPIArgs* /*outP*/) {
    const char* const function = "CLP.CLPMapping.LOG_PseudoMethod";
    VELCLP_TRACE(function);
    VELCLP_ASSERT(path, "path");
    VELCLP_ASSERT(ufct == "log", "ufct==\"log\"");
    return logFailure(function, clearLog(path, method));
}

JobError* CLPMapping::SPLOG_PseudoMethod(const std::string& ufct, CMPIObjectPath* path,
                                         const std::string& method, const TextPairs& /*props*/,
                                         CMPIArgs* /*outP*/) {
    const char* const function = "CLP.CLPMapping.SPLOG_PseudoMethod";
    VELCLP_TRACE(function);
    VELCLP_ASSERT(path, "path");
    VELCLP_ASSERT(ufct == "splog", "ufct==\"splog\"");
    return logFailure(function, clearLog(path, method));
}

JobError* CLPMapping::clearLog(CMPIObjectPath* path, const std::string& method) {
    return method == "clearlog" ? invoke(path, "ClearLog", newArgs().get(), nullptr) : nullptr;
}

} // namespace velmora_clp
