// Which of several class tags of a class an object belongs to.
#include "mapping/cimvalue.h"
#include "schema/cimnamespace.h"
#include "velclp/addrsvc.h"
#include "velclp/assertion.h"
#include "velclp/clpstring.h"
#include "velclp/log.h"
#include "velclp/schema.h"

#include <algorithm>

namespace velmora_clp {

namespace {

const char* const matchFunction = "CLP.CLPAddrSVC.matchFilter";

bool matched(bool match) {
    VELCLP_LOG_BRANCH(matchFunction, "%s", match ? "Match!" : "Not match!");
    return match;
}

// The class with its qualifiers, in the schema's namespace.
CimClass readClass(CMCIClient* cc, const std::string& cimclass) {
    const CLPSchema& schema = *CLPSchema::getInstance();
    VELCLP_ASSERT(schema.hasCIMClass(cimclass), "schema.hasCIMClass(cimclass)");
    CimStatus status;
    const CimPath path(
        newCMPIObjectPath(namespaceOf(cimclass).c_str(), cimclass.c_str(), status.out()));
    CimClass cimClass(cc->ft->getClass(cc, path.get(),
                                       CMPI_FLAG_IncludeQualifiers | CMPI_FLAG_IncludeClassOrigin,
                                       nullptr, status.out()));
    return status.ok() ? std::move(cimClass) : nullptr;
}

// Whether the display text of a raw value is the filter's text.
bool matchText(CMPIArray* values, CMPIArray* valuemap, const std::string& text,
               const std::string& value) {
    const unsigned int count = arraySize(valuemap);
    for (unsigned int i = 0; i < count; ++i)
        if (elementText(valuemap, i) == text && lowerString(elementText(values, i)) == value)
            return true;
    return false;
}

// The display texts of a property, as the class has them.
bool matchQualifiers(CMPIConstClass* cimClass, const char* name, const std::string& text,
                     const std::string& value) {
    CimStatus status;
    const unsigned int count =
        cimClass->ft->getPropertyQualifierCount(cimClass, name, status.out());
    if (!status.ok() || count < 1) {
        VELCLP_LOG_BRANCH(matchFunction, "failed to getPropertyQualifierCount!");
        return false;
    }
    const CMPIData values =
        cimClass->ft->getPropertyQualifier(cimClass, name, "Values", status.out());
    if (!status.ok()) {
        VELCLP_LOG_BRANCH(matchFunction, "failed to getPropertyQualifier,values!");
        return false;
    }
    const CMPIData valuesmap =
        cimClass->ft->getPropertyQualifier(cimClass, name, "ValueMap", status.out());
    if (!status.ok()) {
        VELCLP_LOG_BRANCH(matchFunction, "failed to getPropertyQualifier,valuesmap!");
        return false;
    }
    VELCLP_ASSERT(isArray(values.type) && isArray(valuesmap.type),
                  "((values.type) & ((1)<<13))&&((valuesmap.type) & ((1)<<13))");
    if (!arrayOf(values) || !arrayOf(valuesmap)) {
        VELCLP_LOG_BRANCH(matchFunction, "has no values and valuesmap!");
        return false;
    }
    if (!hasElements(values) || !hasElements(valuesmap)) {
        VELCLP_LOG_BRANCH(matchFunction, "has no value in values and valuesmap!");
        return false;
    }
    return matchText(arrayOf(values), arrayOf(valuesmap), text, value);
}

} // namespace

bool CLPAddrSVC::matchFilter(const std::string& cimclass, const std::string& name,
                             const CMPIData& data, const std::string& value) {
    VELCLP_TRACE(matchFunction);
    CMPIData single = data;
    if (isArray(data.type)) {
        if (!hasElements(data))
            return matched(false);
        CimStatus status;
        single = data.value.array->ft->getElementAt(data.value.array, 0, status.out());
    }
    if (!hasValue(single))
        return matched(false);
    const std::string text = dataText(single);
    if (lowerString(text) == value)
        return matched(true);
    const CimClass cimClass = readClass(cc, cimclass);
    if (!cimClass) {
        VELCLP_LOG_BRANCH(matchFunction, "failed to get class!");
        return false;
    }
    return matched(matchQualifiers(cimClass.get(), name.c_str(), text, value));
}

bool CLPAddrSVC::matchTag(const std::string& cimclass, CMPIInstance* instance,
                          const std::vector<std::pair<std::string, std::string>>& filter) {
    const char* const function = "CLP.CLPAddrSVC.getUfctFromObject";
    // The values of one property, which stand side by side, are a choice; properties must all hold.
    for (auto first = filter.begin(); first != filter.end();) {
        const auto last = std::find_if(
            first, filter.end(), [&](const auto& pair) { return pair.first != first->first; });
        CimStatus status;
        const CMPIData data =
            instance->ft->getProperty(instance, first->first.c_str(), status.out());
        if (!status.ok()) {
            VELCLP_LOG_FAILURE(function, "status.rc=[%d]", static_cast<int>(status.rc()));
            return false;
        }
        if (std::none_of(first, last, [&](const auto& pair) {
                return matchFilter(cimclass, pair.first, data, pair.second);
            }))
            return false;
        first = last;
    }
    return true;
}

std::string CLPAddrSVC::getUfctFromObject(CMPIObjectPath* path, const std::string& cimclass) {
    const char* const function = "CLP.CLPAddrSVC.getUfctFromObject";
    VELCLP_TRACE(function);
    VELCLP_ASSERT(path, "path");
    const CLPSchema& schema = *CLPSchema::getInstance();
    const CLPSchema::Names& ufcts = schema.getUfcts(cimclass);
    VELCLP_ASSERT(!ufcts.empty(), "n>0");
    if (ufcts.size() == 1) {
        VELCLP_LOG_BRANCH(function, "Just one ufct=[%s]", ufcts.front().c_str());
        return ufcts.front();
    }
    std::string result = schema.getDefaultUfct(cimclass);
    VELCLP_LOG_VALUE(function, "default ufct=[%s]", result.c_str());
    CimStatus status;
    const CimInstance instance(cc->ft->getInstance(cc, path, 0, nullptr, status.out()));
    if (!instance || !status.ok()) {
        VELCLP_LOG_FAILURE(function, "object has no instance!");
        return "";
    }
    for (const std::string& ufct : ufcts) {
        const CLPSchema::Pairs& filter = schema.getFilter(ufct);
        if (filter.empty()) {
            VELCLP_LOG_BRANCH(function, "without filter!");
        } else if (matchTag(cimclass, instance.get(), filter)) {
            VELCLP_LOG_BRANCH(function, "The ufct is found!");
            return ufct;
        }
    }
    return result;
}

} // namespace velmora_clp
