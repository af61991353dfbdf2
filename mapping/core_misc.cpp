// Reading classes, objects and properties, and comparing them with text.
#include "velclp/core_misc.h"

#include "mapping/cimvalue.h"
#include "velclp/assertion.h"
#include "velclp/clpstring.h"
#include "velclp/log.h"
#include "velclp/schema.h"

#include <CimClientLib/native.h>

#include <algorithm>

#include <strings.h>

namespace {

using velmora_clp::CimStatus;
using velmora_clp::CimString;
using velmora_clp::cimText;
using velmora_clp::cimValueText;

// What a reader of two paths gives, compared without regard to case; false when one cannot be read.
template<typename Read>
bool sameText(CMPIObjectPath* a, CMPIObjectPath* b, Read read) {
    CimStatus statusA;
    CimStatus statusB;
    const CimString textA(read(a, statusA.out()));
    const CimString textB(read(b, statusB.out()));
    return statusA.ok() && statusB.ok() && textA && textB &&
           strcasecmp(cimText(textA.get()).c_str(), cimText(textB.get()).c_str()) == 0;
}

bool sameKey(CMPIObjectPath* a, CMPIObjectPath* b, unsigned int index) {
    CimStatus status;
    CMPIString* rawName = nullptr;
    const CMPIData keyA = a->ft->getKeyAt(a, index, &rawName, status.out());
    const CimString name(rawName);
    if (!status.ok() || !name)
        return false;
    const CMPIData keyB = b->ft->getKey(b, cimText(name.get()).c_str(), status.out());
    return status.ok() && keyA.type == keyB.type && keyA.state == keyB.state &&
           cimValueText(keyA.type, keyA.value) == cimValueText(keyB.type, keyB.value);
}

} // namespace

int clp_sameCMPIObjectPath(CMPIObjectPath* a, CMPIObjectPath* b) {
    if (!a || !b || !sameText(a, b, a->ft->getNameSpace) || !sameText(a, b, a->ft->getClassName))
        return 0;
    CimStatus status;
    const unsigned int count = a->ft->getKeyCount(a, status.out());
    if (count != b->ft->getKeyCount(b, status.out()))
        return 0;
    for (unsigned int i = 0; i < count; ++i)
        if (!sameKey(a, b, i))
            return 0;
    return 1;
}

namespace velmora_clp {

namespace {

// The instance of an object that exists.
CimInstance readInstance(CMCIClient* cc, CMPIObjectPath* op) {
    VELCLP_ASSERT(op != nullptr && cc != nullptr, "op!=__null&&cc!=__null");
    CimStatus status;
    CimInstance instance(cc->ft->getInstance(cc, op, 0, nullptr, status.out()));
    VELCLP_ASSERT(status.ok() && instance, "!status.rc");
    return instance;
}

CMPIData readProperty(CMPIInstance* instance, const std::string& name) {
    CimStatus status;
    const CMPIData data = instance->ft->getProperty(instance, name.c_str(), status.out());
    VELCLP_ASSERT(status.ok(), "!status.rc");
    return data;
}

} // namespace

CMPIConstClass* CLPMisc::getClass(CMCIClient* cc, const std::string& ns,
                                  const std::string& cimclass) {
    VELCLP_TRACE("CLP.CLPMisc.getClass");
    VELCLP_ASSERT(cc, "cc");
    CimStatus status;
    const CimPath op(newCMPIObjectPath(ns.c_str(), cimclass.c_str(), status.out()));
    VELCLP_ASSERT(op, "op");
    CimClass cimClass(
        cc->ft->getClass(cc, op.get(), CMPI_FLAG_IncludeQualifiers, nullptr, status.out()));
    return status.ok() ? cimClass.release() : nullptr;
}

CMPIArray* CLPMisc::getPropertyQualify(CMPIConstClass* _class, const std::string& prop,
                                       const std::string& qual) {
    const char* const function = "CLP.CLPMisc.getPropertyQualify";
    VELCLP_TRACE(function);
    VELCLP_ASSERT(_class, "_class");
    CimStatus status;
    const CMPIData data =
        _class->ft->getPropertyQualifier(_class, prop.c_str(), qual.c_str(), status.out());
    if (!status.ok()) {
        VELCLP_LOG_FAILURE(function, "status.rc=[%d]", static_cast<int>(status.rc()));
        return nullptr;
    }
    if (!arrayOf(data)) {
        VELCLP_LOG_FAILURE(function, "no array=[%s]", qual.c_str());
        return nullptr;
    }
    return cimClone(data.value.array).release();
}

CMPIDateTime* CLPMisc::getProperty_DataTime(CMCIClient* cc, CMPIObjectPath* op,
                                            const std::string& name) {
    VELCLP_TRACE("CLP.CLPMisc.getProperty_DataTime");
    const CimInstance instance = readInstance(cc, op);
    const CMPIData data = readProperty(instance.get(), name);
    VELCLP_ASSERT(data.type == CMPI_dateTime, "data.type==((16+8)<<8)");
    return hasValue(data) ? cimClone(data.value.dateTime).release() : nullptr;
}

CMPIType CLPMisc::getPropertyType(CMPIConstClass* _class, const std::string& name) {
    VELCLP_TRACE("CLP.CLPMisc.getPropertyType");
    VELCLP_ASSERT(_class, "_class");
    CimStatus status;
    const CMPIData data = _class->ft->getProperty(_class, name.c_str(), status.out());
    VELCLP_ASSERT(status.ok(), "!status.rc");
    return data.type;
}

std::string CLPMisc::getProperty(CMCIClient* cc, CMPIObjectPath* op, const std::string& name) {
    VELCLP_TRACE("CLP.CLPMisc.getProperty");
    const CimInstance instance = readInstance(cc, op);
    return dataText(readProperty(instance.get(), name));
}

bool CLPMisc::equalPropertyValue(const CMPIData& data, const std::string& value, CMPIArray* values,
                                 CMPIArray* valuesmap) {
    const char* const function = "CLP.CLPMisc.equalPropertyValue";
    VELCLP_TRACE(function);
    const std::string text = hasElements(data) ? elementText(arrayOf(data), 0) : dataText(data);
    if (text == value) {
        VELCLP_LOG_BRANCH(function, "Equal ");
        return true;
    }
    if (!values || !valuesmap)
        return false;
    VELCLP_LOG_BRANCH(function, "Compare with valuesmap ");
    std::string shown;
    const bool equal = MapValue(text, shown, valuesmap, values) && shown == value;
    if (equal)
        VELCLP_LOG_BRANCH(function, "Equal ");
    return equal;
}

bool CLPMisc::checkSelectProperty(CMPIInstance* instance, const std::string& prop,
                                  const std::string& value) {
    VELCLP_TRACE("CLP.CLPMisc.checkSelectProperty");
    VELCLP_ASSERT(instance, "instance");
    const CMPIData data = readProperty(instance, prop);
    return data.type == CMPI_string && hasValue(data) && data.value.string &&
           cimText(data.value.string) == value;
}

bool CLPMisc::checkProperty(CMPIConstClass* cl, const std::string& name) {
    VELCLP_TRACE("CLP.CLPMisc.checkProperty");
    VELCLP_ASSERT(cl, "cl");
    CimStatus status;
    cl->ft->getProperty(cl, name.c_str(), status.out());
    return status.ok() && !name.empty() && lowerString(name) == name;
}

bool CLPMisc::MapValue(const std::string& value, std::string& ret, CMPIArray* from, CMPIArray* to) {
    const char* const function = "CLP.CLPMisc.MapValue";
    VELCLP_TRACE(function);
    if (!from || !to) {
        VELCLP_LOG_BRANCH(function, "Without array!");
        return false;
    }
    const unsigned int count = std::min(arraySize(from), arraySize(to));
    if (count == 0) {
        VELCLP_LOG_BRANCH(function, "Without valuemap!");
        return false;
    }
    for (unsigned int i = 0; i < count; ++i) {
        if (elementText(from, i) != value)
            continue;
        ret = elementText(to, i);
        return true;
    }
    return false;
}

bool CLPMisc::checkPseudoProperty(const std::string& ufct, const std::string& name) {
    VELCLP_TRACE("CLP.CLPMisc.checkPseudoProperty");
    const CLPSchema::Names& names = CLPSchema::getInstance()->getPseudoProperties(ufct);
    const std::string wanted = lowerString(name);
    return std::any_of(names.begin(), names.end(),
                       [&](const std::string& pseudo) { return lowerString(pseudo) == wanted; });
}

std::vector<std::string> CLPMisc::getPropertyNames(CMCIClient* cc, CMPIObjectPath* op) {
    VELCLP_TRACE("CLP.CLPMisc.getPropertyNames");
    VELCLP_ASSERT(op != nullptr && cc != nullptr, "op!=__null&&cc!=__null");
    const std::string ns = cimNameSpace(op);
    const std::string name = cimClassName(op);
    std::vector<std::string> names;
    if (name.empty())
        return names;
    const CimClass cimClass(getClass(cc, ns, name));
    CimStatus status;
    const unsigned int count =
        cimClass ? cimClass->ft->getPropertyCount(cimClass.get(), status.out()) : 0;
    for (unsigned int i = 0; i < count; ++i) {
        CMPIString* property = nullptr;
        cimClass->ft->getPropertyAt(cimClass.get(), i, &property, status.out());
        names.push_back(cimText(CimString(property).get()));
    }
    return names;
}

} // namespace velmora_clp
