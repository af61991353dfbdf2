#include "output/classes.h"

#include "schema/cimnamespace.h"
#include "velclp/addrsvc.h"
#include "velclp/cimhandle.h"
#include "velclp/clpstring.h"
#include "velclp/core_misc.h"
#include "velclp/schema.h"

namespace velmora_clp {

std::string schemaClassOf(const std::string& cimclass) {
    const CLPSchema& schema = *CLPSchema::getInstance();
    std::string name = lowerString(cimclass);
    if (schema.hasCIMClass(name))
        return name;
    const std::string standard = "cim" + name.substr(name.find('_'));
    return schema.hasCIMClass(standard) ? standard : std::string();
}

std::string knownClassOf(const std::string& cimclass) {
    const bool hasName =
        CLPSchema::getInstance()->hasCIMClass(cimclass) || cimclass.find('_') != std::string::npos;
    return hasName ? schemaClassOf(cimclass) : std::string();
}

std::string defaultTagOf(const std::string& schemaClass) {
    const CLPSchema& schema = *CLPSchema::getInstance();
    if (schemaClass.empty() || schema.getUfcts(schemaClass).empty())
        return std::string();
    return schema.getDefaultUfct(schemaClass);
}

std::string defaultTagOfClass(const std::string& cimclass) {
    return defaultTagOf(knownClassOf(cimclass));
}

std::string addressOf(CLPAddrSVC& addresses, CMPIObjectPath* object, bool normal) {
    if (!object || knownClassOf(cimClassName(object)).empty())
        return std::string();
    return addresses.getUfip(object, true, normal);
}

std::string referredAddress(CLPAddrSVC& addresses, const CMPIData& reference,
                            const Addressed& known) {
    if (!reference.value.ref)
        return std::string();
    const CimPath object = cimClone(reference.value.ref);
    if (!object)
        return std::string();
    object->ft->setNameSpace(object.get(), namespaceOf(cimClassName(object.get())).c_str());
    if (!known.address.empty() && clp_sameCMPIObjectPath(object.get(), known.object))
        return known.address;
    return addressOf(addresses, object.get());
}

bool beginsWithOem(const std::string& name) {
    return lowerString(name.substr(0, 3)) == "oem";
}

bool containsOem(const std::string& name) {
    return lowerString(name).find("oem") != std::string::npos;
}

} // namespace velmora_clp
