// Whether an object passes the selection of the verb show.
#include "mapping/cimvalue.h"
#include "velclp/assertion.h"
#include "velclp/clpstring.h"
#include "velclp/core_misc.h"
#include "velclp/joberror.h"
#include "velclp/log.h"
#include "velclp/mapping.h"

#include <CimClientLib/native.h>

#include <algorithm>

namespace velmora_clp {

namespace {

const char* const function = "CLP.CLPMisc.checkFilter";

bool isClassProperty(CMPIConstClass* cimClass, const std::string& name) {
    return CLPMisc::checkProperty(cimClass, lowerString(name));
}

// Compares a pseudo property, which its pseudo method reads.
bool checkPseudo(CMCIClient* cc, CMPIObjectPath* op, const std::string& ufct,
                 const std::string& name, const std::string& value) {
    CLPMapping mapping(cc, nullptr);
    CimStatus status;
    const CimArgs args(native_new_CMPIArgs(status.out()));
    const CLPMapping::TextPairs list = {{name, ""}};
    const std::unique_ptr<JobError> error(
        mapping.smPseudoMethod(op, ufct, "show", list, args.get()));
    if (error) {
        VELCLP_LOG_FAILURE(function, "failed status=[%s]", error->getErrorTag());
        return false;
    }
    VELCLP_LOG_BRANCH(function, "Got the pseudo value!");
    const unsigned int count = args->ft->getArgCount(args.get(), status.out());
    if (count == 0)
        return false;
    const CMPIData data = args->ft->getArgAt(args.get(), 0, nullptr, status.out());
    CMPIArray* values = nullptr;
    CMPIArray* valuesmap = nullptr;
    if (count == 3) {
        const CMPIData array = args->ft->getArgAt(args.get(), 1, nullptr, status.out());
        VELCLP_ASSERT(isArray(array.type), "array.type&((1)<<13)");
        const CMPIData arraymap = args->ft->getArgAt(args.get(), 2, nullptr, status.out());
        VELCLP_ASSERT(isArray(arraymap.type), "arraymap.type&((1)<<13)");
        values = arrayOf(array);
        valuesmap = arrayOf(arraymap);
    }
    return elementType(data.type) != 0 &&
           CLPMisc::equalPropertyValue(data, value, values, valuesmap);
}

// Compares a property of the object, by its raw value and then by the text that the class shows
// for it.
bool checkPlain(CMPIConstClass* cimClass, CMPIInstance* instance, const std::string& name,
                const std::string& value) {
    CimStatus status;
    const CMPIData data = instance->ft->getProperty(instance, name.c_str(), status.out());
    if (!status.ok() || !isClassProperty(cimClass, name)) {
        VELCLP_LOG_FAILURE(function, "The property is not ilegal!");
        return false;
    }
    if (CLPMisc::equalPropertyValue(data, value, nullptr, nullptr)) {
        VELCLP_LOG_BRANCH(function, "equal property value!");
        return true;
    }
    VELCLP_LOG_BRANCH(function, "look up valuesmap!");
    const CimArray values(CLPMisc::getPropertyQualify(cimClass, name, "Values"));
    const CimArray valuesmap(CLPMisc::getPropertyQualify(cimClass, name, "ValueMap"));
    return values && valuesmap &&
           CLPMisc::equalPropertyValue(data, value, values.get(), valuesmap.get());
}

} // namespace

bool CLPMisc::checkFilter(CMCIClient* cc, CMPIObjectPath* op, const std::string& ufct,
                          const std::vector<std::string>& props,
                          const std::map<std::string, std::string>& filters) {
    VELCLP_TRACE(function);
    if (props.empty() && filters.empty())
        return true;
    VELCLP_ASSERT(op != nullptr && cc != nullptr, "op!=__null&&cc!=__null");
    CimStatus status;
    const CimClass cimClass(cc->ft->getClass(
        cc, op, CMPI_FLAG_IncludeQualifiers | CMPI_FLAG_IncludeClassOrigin, nullptr, status.out()));
    if (!cimClass || !status.ok()) {
        VELCLP_LOG_FAILURE(function, "failed get class=[%d]", static_cast<int>(status.rc()));
        return false;
    }
    const CimInstance instance(cc->ft->getInstance(cc, op, 0, nullptr, status.out()));
    if (!instance || !status.ok()) {
        VELCLP_LOG_FAILURE(function, "failed get instance=[%d]", static_cast<int>(status.rc()));
        return false;
    }
    const bool known = std::all_of(props.begin(), props.end(), [&](const std::string& name) {
        return checkPseudoProperty(ufct, name) || isClassProperty(cimClass.get(), name);
    });
    if (!known)
        return false;
    VELCLP_LOG_BRANCH(function, "The props are ok!");
    return std::all_of(filters.begin(), filters.end(), [&](const auto& filter) {
        return checkPseudoProperty(ufct, filter.first)
                   ? checkPseudo(cc, op, ufct, filter.first, filter.second)
                   : checkPlain(cimClass.get(), instance.get(), filter.first, filter.second);
    });
}

} // namespace velmora_clp
