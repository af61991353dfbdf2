#include "objects.h"
#include "status.h"
#include "text.h"
#include "valuetext.h"

#include <utility>

namespace cimclient {

namespace {

CMPIStatus setText(CMPIObjectPath* path, std::optional<std::string> ObjectPath::*member,
                   const char* text) {
    if (!path)
        return status(CMPI_RC_ERR_INVALID_PARAMETER);
    ObjectPath::from(path)->*member = optionalText(text);
    return status(CMPI_RC_OK);
}

CMPIString* getText(CMPIObjectPath* path, std::optional<std::string> ObjectPath::*member,
                    CMPIStatus* rc) {
    if (!path)
        return noObject(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    setOk(rc);
    return newString(charsOf(ObjectPath::from(path)->*member));
}

CMPIStatus setNameSpace(CMPIObjectPath* path, const char* text) {
    return setText(path, &ObjectPath::nameSpace, text);
}

CMPIString* getNameSpace(CMPIObjectPath* path, CMPIStatus* rc) {
    return getText(path, &ObjectPath::nameSpace, rc);
}

CMPIStatus setHostname(CMPIObjectPath*, const char*) {
    return status(CMPI_RC_ERR_NOT_SUPPORTED);
}

CMPIString* getHostname(CMPIObjectPath*, CMPIStatus* rc) {
    return noObject(rc, CMPI_RC_ERR_NOT_SUPPORTED);
}

CMPIStatus setClassName(CMPIObjectPath* path, const char* text) {
    return setText(path, &ObjectPath::className, text);
}

CMPIString* getClassName(CMPIObjectPath* path, CMPIStatus* rc) {
    return getText(path, &ObjectPath::className, rc);
}

CMPIStatus addKey(CMPIObjectPath* path, const char* name, CMPIValue* value, CMPIType type) {
    if (!path || !name)
        return status(CMPI_RC_ERR_INVALID_PARAMETER);
    NamedValues& keys = ObjectPath::from(path)->keys;
    if (keys.find(name))
        return status(CMPI_RC_ERR_ALREADY_EXISTS);
    Data data;
    const CMPIrc code = Data::fromCaller(value, type, data);
    if (code != CMPI_RC_OK)
        return status(code);
    if (type != CMPI_null)
        data.addState(CMPI_keyValue);
    return status(keys.add(name, std::move(data)));
}

CMPIData getKey(CMPIObjectPath* path, const char* name, CMPIStatus* rc) {
    if (!path)
        return noData(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    return ObjectPath::from(path)->keys.get(name, CMPI_RC_ERR_NO_SUCH_PROPERTY, rc);
}

CMPIData getKeyAt(CMPIObjectPath* path, unsigned int index, CMPIString** name, CMPIStatus* rc) {
    if (!path)
        return noData(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    return ObjectPath::from(path)->keys.getAt(index, name, CMPI_RC_ERR_NO_SUCH_PROPERTY, rc);
}

unsigned int getKeyCount(CMPIObjectPath* path, CMPIStatus* rc) {
    setStatus(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    return path ? ObjectPath::from(path)->keys.count(rc) : 0;
}

CMPIStatus setNameSpaceFromObjectPath(CMPIObjectPath* path, CMPIObjectPath* source) {
    if (!path || !source)
        return status(CMPI_RC_ERR_INVALID_PARAMETER);
    ObjectPath::from(path)->nameSpace = ObjectPath::from(source)->nameSpace;
    return status(CMPI_RC_OK);
}

// A path knows no schema: qualifiers are read from the class.
CMPIData getClassQualifier(CMPIObjectPath*, const char*, CMPIStatus* rc) {
    return noData(rc, CMPI_RC_ERR_NOT_SUPPORTED);
}

CMPIData getMemberQualifier(CMPIObjectPath*, const char*, const char*, CMPIStatus* rc) {
    return noData(rc, CMPI_RC_ERR_NOT_SUPPORTED);
}

CMPIData getParameterQualifier(CMPIObjectPath*, const char*, const char*, const char*,
                               CMPIStatus* rc) {
    return noData(rc, CMPI_RC_ERR_NOT_SUPPORTED);
}

CMPIString* toString(CMPIObjectPath* path, CMPIStatus* rc) {
    if (!path || !ObjectPath::from(path)->className)
        return noObject(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    setOk(rc);
    return newString(ObjectPath::from(path)->text());
}

// A host is nothing that a path keeps, so both ways of taking the namespace over are the same.
CMPIObjectPathFT table = {NATIVE_FT_VERSION,
                          releaseSlot<ObjectPath>,
                          cloneSlot<ObjectPath>,
                          setNameSpace,
                          getNameSpace,
                          setHostname,
                          getHostname,
                          setClassName,
                          getClassName,
                          addKey,
                          getKey,
                          getKeyAt,
                          getKeyCount,
                          setNameSpaceFromObjectPath,
                          setNameSpaceFromObjectPath,
                          getClassQualifier,
                          getMemberQualifier,
                          getMemberQualifier,
                          getParameterQualifier,
                          toString};

} // namespace

ObjectPath::ObjectPath() : CMPIObjectPath{const_cast<char*>("CMPIObjectPath"), &table} {}

std::string ObjectPath::text() const {
    std::string out;
    if (nameSpace && !nameSpace->empty())
        out.append(*nameSpace).append(1, ':');
    out += className.value_or("");
    char separator = '.';
    for (const NamedValue& key : keys) {
        const char* quote = isNumber(key.data.type()) ? "" : "\"";
        out.append(1, separator).append(key.name).append("=");
        out.append(quote).append(valueText(key.data.get())).append(quote);
        separator = ',';
    }
    return out;
}

} // namespace cimclient

CIMCLIENT_EXPORT CMPIObjectPath* newCMPIObjectPath(const char* nameSpace, const char* classname,
                                                   CMPIStatus* rc) {
    auto path = std::make_unique<cimclient::ObjectPath>();
    path->nameSpace = cimclient::optionalText(nameSpace);
    path->className = cimclient::optionalText(classname);
    cimclient::setOk(rc);
    return path.release();
}
