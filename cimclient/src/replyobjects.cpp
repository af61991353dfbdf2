#include "replydocument.h"
#include "replyreader.h"
#include "status.h"
#include "typenames.h"

#include <algorithm>
#include <iterator>
#include <utility>

// Names, paths, instances and classes.
namespace cimclient {

namespace {

[[noreturn]] void throwUnexpected(pugi::xml_node element) {
    throw Failure{CMPI_RC_ERR_FAILED,
                  element ? std::string("Unexpected reply: element ") + element.name()
                          : std::string("Unexpected reply: an element is missing")};
}

const char* requiredAttribute(pugi::xml_node element, const char* name) {
    const pugi::xml_attribute attribute = element.attribute(name);
    if (!attribute)
        throw Failure{CMPI_RC_ERR_FAILED,
                      std::string("Unexpected reply: ") + element.name() + " without " + name};
    return attribute.value();
}

// NAMESPACEPATH or LOCALNAMESPACEPATH; the host is of no interest.
std::string nameSpaceOf(pugi::xml_node element) {
    const pugi::xml_node local =
        is(element, "NAMESPACEPATH") ? element.child("LOCALNAMESPACEPATH") : element;
    std::string nameSpace;
    for (const pugi::xml_node component : local.children("NAMESPACE")) {
        if (!nameSpace.empty())
            nameSpace += '/';
        nameSpace += component.attribute("NAME").value();
    }
    return nameSpace;
}

CMPIType declaredType(pugi::xml_node element) {
    return typeFromName(element.attribute("TYPE").value()).value_or(CMPI_null);
}

bool isPathElement(pugi::xml_node element) {
    static constexpr const char* names[] = {"INSTANCENAME", "INSTANCEPATH",   "LOCALINSTANCEPATH",
                                            "CLASSPATH",    "LOCALCLASSPATH", "OBJECTPATH"};
    for (const char* name : names)
        if (is(element, name))
            return true;
    return false;
}

Members& membersOf(NamedValue& value) {
    if (!value.members)
        value.members = std::make_unique<Members>();
    return *value.members;
}

// Most properties carry no qualifiers, and then nothing is kept for them.
void takeQualifiers(NamedValue& value, NamedValues qualifiers) {
    if (qualifiers.size() > 0)
        membersOf(value).qualifiers = std::move(qualifiers);
}

CMPIType asArray(CMPIType type) {
    return type == CMPI_null ? type : static_cast<CMPIType>(CMPI_ARRAY | type);
}

} // namespace

Owned<ObjectPath> ReplyReader::path(pugi::xml_node element) const {
    if (is(element, "INSTANCENAME"))
        return instanceName(element);
    if (is(element, "OBJECTPATH"))
        return path(firstElement(element));
    if (is(element, "CLASSNAME")) {
        Owned<ObjectPath> target(new ObjectPath());
        target->className = requiredAttribute(element, "NAME");
        return target;
    }
    if (!isPathElement(element))
        throwUnexpected(element);
    const pugi::xml_node location = firstElement(element);
    if (!is(location, "NAMESPACEPATH") && !is(location, "LOCALNAMESPACEPATH"))
        throwUnexpected(location);
    const pugi::xml_node name = nextElement(location);
    if (!is(name, "INSTANCENAME") && !is(name, "CLASSNAME"))
        throwUnexpected(name);
    auto target = path(name);
    target->nameSpace = nameSpaceOf(location);
    return target;
}

Owned<ObjectPath> ReplyReader::instanceName(pugi::xml_node element) const {
    Owned<ObjectPath> target(new ObjectPath());
    target->className = requiredAttribute(element, "CLASSNAME");
    for (auto child = firstElement(element); child; child = nextElement(child)) {
        if (is(child, "KEYBINDING"))
            keyBinding(firstElement(child), requiredAttribute(child, "NAME"), *target);
        else
            keyBinding(child, "", *target);
    }
    return target;
}

// KEYVALUE or VALUE.REFERENCE; a name that comes twice counts once.
void ReplyReader::keyBinding(pugi::xml_node element, const char* name, ObjectPath& target) const {
    Data data;
    if (is(element, "VALUE.REFERENCE"))
        data = reference(element);
    else if (is(element, "KEYVALUE") || is(element, absentKeyValue))
        data = keyValue(element);
    else
        throwUnexpected(element);
    data.addState(CMPI_keyValue);
    target.keys.add(name, std::move(data));
}

bool ReplyReader::isProperty(pugi::xml_node element) const {
    return is(element, "PROPERTY") || is(element, "PROPERTY.ARRAY") ||
           is(element, "PROPERTY.REFERENCE");
}

Data ReplyReader::propertyValue(pugi::xml_node element) const {
    if (is(element, "PROPERTY.REFERENCE"))
        return content(element, CMPI_ref, false);
    return content(element, declaredType(element), is(element, "PROPERTY.ARRAY"));
}

void ReplyReader::instance(pugi::xml_node element, Instance& target) const {
    if (!is(element, "INSTANCE"))
        throwUnexpected(element);
    target.qualifiers = qualifiers(element);
    for (auto child = firstElement(element); child; child = nextElement(child)) {
        if (is(child, "QUALIFIER"))
            continue;
        if (!isProperty(child))
            throwUnexpected(child);
        NamedValue& property = target.set(requiredAttribute(child, "NAME"), propertyValue(child));
        takeQualifiers(property, qualifiers(child));
    }
}

Owned<Instance> ReplyReader::locatedInstance(pugi::xml_node element,
                                             const std::optional<std::string>& nameSpace) const {
    pugi::xml_node part = is(element, "INSTANCE") ? element : firstElement(element);
    Owned<ObjectPath> location(new ObjectPath());
    if (isPathElement(part)) {
        location = path(part);
        part = nextElement(part);
    }
    if (!is(part, "INSTANCE"))
        throwUnexpected(part);
    if (!location->nameSpace)
        location->nameSpace = nameSpace;
    if (!location->className)
        location->className = requiredAttribute(part, "CLASSNAME");
    Owned<Instance> result(new Instance(*location));
    instance(part, *result);
    return result;
}

NamedValues ReplyReader::qualifiers(pugi::xml_node owner) const {
    NamedValues list;
    const auto elements = owner.children("QUALIFIER");
    list.reserve(static_cast<std::size_t>(std::distance(elements.begin(), elements.end())));
    for (const pugi::xml_node element : elements)
        list.append(
            {requiredAttribute(element, "NAME"), content(element, declaredType(element), false)});
    return list;
}

// A class has types only; default values are of no use to a client.
NamedValue ReplyReader::classProperty(pugi::xml_node element) const {
    CMPIType type = declaredType(element);
    if (is(element, "PROPERTY.ARRAY"))
        type = asArray(type);
    else if (is(element, "PROPERTY.REFERENCE"))
        type = CMPI_ref;
    NamedValue property(requiredAttribute(element, "NAME"), Data(type));
    takeQualifiers(property, qualifiers(element));
    return property;
}

NamedValue ReplyReader::parameter(pugi::xml_node element) const {
    CMPIType type = declaredType(element);
    if (is(element, "PARAMETER.ARRAY"))
        type = asArray(type);
    else if (is(element, "PARAMETER.REFERENCE"))
        type = CMPI_ref;
    else if (is(element, "PARAMETER.REFARRAY"))
        type = CMPI_refA;
    else if (!is(element, "PARAMETER"))
        throwUnexpected(element);
    NamedValue parameter(requiredAttribute(element, "NAME"), Data(type, CMPIValue{}));
    takeQualifiers(parameter, qualifiers(element));
    return parameter;
}

NamedValue ReplyReader::method(pugi::xml_node element) const {
    NamedValue method(requiredAttribute(element, "NAME"), Data(declaredType(element)));
    takeQualifiers(method, qualifiers(element));
    for (auto child = firstElement(element); child; child = nextElement(child))
        if (!is(child, "QUALIFIER"))
            membersOf(method).parameters.append(parameter(child));
    return method;
}

Owned<Class> ReplyReader::classDeclaration(pugi::xml_node element) const {
    if (!is(element, "CLASS"))
        throwUnexpected(element);
    Owned<Class> cls(new Class());
    cls->name = requiredAttribute(element, "NAME");
    cls->qualifiers = qualifiers(element);
    const auto children = element.children();
    cls->properties.reserve(static_cast<std::size_t>(
        std::count_if(children.begin(), children.end(),
                      [this](const pugi::xml_node child) { return isProperty(child); })));
    for (auto child = firstElement(element); child; child = nextElement(child)) {
        if (is(child, "METHOD"))
            cls->methods.append(method(child));
        else if (isProperty(child))
            cls->properties.append(classProperty(child));
        else if (!is(child, "QUALIFIER"))
            throwUnexpected(child);
    }
    return cls;
}

} // namespace cimclient
