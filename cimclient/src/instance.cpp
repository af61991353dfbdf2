#include "objects.h"
#include "status.h"
#include "text.h"

#include <algorithm>
#include <utility>

namespace cimclient {

namespace {

CMPIData getProperty(CMPIInstance* instance, const char* name, CMPIStatus* rc) {
    if (!instance || !name)
        return noData(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    return Instance::from(instance)->properties.get(name, CMPI_RC_ERR_NO_SUCH_PROPERTY, rc);
}

CMPIData getPropertyAt(CMPIInstance* instance, unsigned int index, CMPIString** name,
                       CMPIStatus* rc) {
    if (!instance)
        return noData(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    return Instance::from(instance)->properties.getAt(index, name, CMPI_RC_ERR_NO_SUCH_PROPERTY,
                                                      rc);
}

unsigned int getPropertyCount(CMPIInstance* instance, CMPIStatus* rc) {
    setStatus(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    return instance ? Instance::from(instance)->properties.count(rc) : 0;
}

bool isFiltered(const Instance& instance, std::string_view name) {
    return instance.filter &&
           std::none_of(instance.filter->names.begin(), instance.filter->names.end(),
                        [name](const std::string& taken) { return equalNoCase(taken, name); });
}

CMPIStatus setProperty(CMPIInstance* instance, const char* name, CMPIValue* value, CMPIType type) {
    if (!instance || !name)
        return status(CMPI_RC_ERR_INVALID_PARAMETER);
    Instance& self = *Instance::from(instance);
    if (isFiltered(self, name))
        return status(CMPI_RC_OK);
    Data data(type);
    if (value && type != CMPI_null)
        Data::fromCaller(value, type, data);
    self.set(name, std::move(data));
    return status(CMPI_RC_OK);
}

// The key properties in reverse, which is the order that the keys had in the path.
CMPIObjectPath* getObjectPath(CMPIInstance* instance, CMPIStatus* rc) {
    if (!instance)
        return noObject(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    const Instance& self = *Instance::from(instance);
    auto path = std::make_unique<ObjectPath>();
    path->nameSpace = self.nameSpace;
    path->className = self.className;
    std::for_each(self.properties.rbegin(), self.properties.rend(), [&](const NamedValue& value) {
        if (value.data.get().state & CMPI_keyValue)
            path->keys.append({value.name, value.data});
    });
    setOk(rc);
    return path.release();
}

void appendNames(std::vector<std::string>& names, char** list) {
    for (; list && *list; ++list)
        names.emplace_back(*list);
}

CMPIStatus setPropertyFilter(CMPIInstance* instance, char** propertyList, char** keys) {
    if (!instance)
        return status(CMPI_RC_ERR_INVALID_PARAMETER);
    auto& filter = Instance::from(instance)->filter;
    filter.reset();
    if (propertyList) {
        filter.emplace();
        appendNames(filter->names, propertyList);
        appendNames(filter->names, keys);
    }
    return status(CMPI_RC_OK);
}

CMPIData getQualifier(CMPIInstance* instance, const char* name, CMPIStatus* rc) {
    if (!instance || !name)
        return noData(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    return Instance::from(instance)->qualifiers.get(name, CMPI_RC_ERR_FAILED, rc);
}

CMPIData getQualifierAt(CMPIInstance* instance, unsigned int index, CMPIString** name,
                        CMPIStatus* rc) {
    if (!instance)
        return noData(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    return Instance::from(instance)->qualifiers.getAt(index, name, CMPI_RC_ERR_NO_SUCH_PROPERTY,
                                                      rc);
}

unsigned int getQualifierCount(CMPIInstance* instance, CMPIStatus* rc) {
    setStatus(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    return instance ? Instance::from(instance)->qualifiers.count(rc) : 0;
}

CMPIData getPropertyQualifier(CMPIInstance* instance, const char* pname, const char* qname,
                              CMPIStatus* rc) {
    if (!instance || !pname || !qname)
        return noData(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    const NamedValues* qualifiers = Instance::from(instance)->properties.qualifiersOf(pname);
    return qualifiers ? qualifiers->get(qname, CMPI_RC_ERR_FAILED, rc)
                      : noData(rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

CMPIData getPropertyQualifierAt(CMPIInstance* instance, const char* pname, unsigned int index,
                                CMPIString** name, CMPIStatus* rc) {
    if (!instance || !pname)
        return noData(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    const NamedValues* qualifiers = Instance::from(instance)->properties.qualifiersOf(pname);
    return qualifiers ? qualifiers->getAt(index, name, CMPI_RC_ERR_NO_SUCH_PROPERTY, rc)
                      : noData(rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

unsigned int getPropertyQualifierCount(CMPIInstance* instance, const char* pname, CMPIStatus* rc) {
    setStatus(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    if (!instance || !pname)
        return 0;
    setStatus(rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    const NamedValues* qualifiers = Instance::from(instance)->properties.qualifiersOf(pname);
    return qualifiers ? qualifiers->count(rc) : 0;
}

CMPIInstanceFT table = {NATIVE_FT_VERSION,    releaseSlot<Instance>,  cloneSlot<Instance>,
                        getProperty,          getPropertyAt,          getPropertyCount,
                        setProperty,          getObjectPath,          setPropertyFilter,
                        getQualifier,         getQualifierAt,         getQualifierCount,
                        getPropertyQualifier, getPropertyQualifierAt, getPropertyQualifierCount};

} // namespace

Instance::Instance() : CMPIInstance{const_cast<char*>("CMPIInstance"), &table} {}

Instance::Instance(const ObjectPath& path) : Instance() {
    nameSpace = path.nameSpace;
    className = path.className;
    properties.reserve(path.keys.size());
    std::for_each(path.keys.rbegin(), path.keys.rend(), [this](const NamedValue& key) {
        properties.append({key.name, key.data}).key = true;
    });
}

NamedValue& Instance::set(std::string_view name, Data data) {
    NamedValue* present = properties.find(name);
    if (!present)
        return properties.append({std::string(name), std::move(data)});
    // A key that is null is no part of the path, but becomes one again with a value.
    if (present->key && !(data.get().state & CMPI_nullValue))
        data.addState(CMPI_keyValue);
    present->data = std::move(data);
    return *present;
}

} // namespace cimclient

CIMCLIENT_EXPORT CMPIInstance* native_new_CMPIInstance(CMPIObjectPath* op, CMPIStatus* rc) {
    cimclient::setOk(rc);
    return op ? new cimclient::Instance(*cimclient::ObjectPath::from(op))
              : new cimclient::Instance();
}
