// Makes objects of the elements of a reply (DSP0201, 5.2). What does not fit where it stands ends
// the call as a Failure; values that cannot be read become null, or 0 for numbers.
#ifndef CIMCLIENT_REPLYREADER_H
#define CIMCLIENT_REPLYREADER_H

#include "objects.h"

#include <pugixml.hpp>

#include <memory>
#include <string>
#include <string_view>

namespace cimclient {

class ReplyReader {
public:
    // The level counts instances inside of instances.
    explicit ReplyReader(unsigned embeddingLevel = 0) : m_level(embeddingLevel) {}

    // INSTANCENAME, CLASSNAME, and the path elements around them. A name alone leaves the namespace
    // null.
    Owned<ObjectPath> path(pugi::xml_node element) const;

    // INSTANCE into an instance that may already have its path: key properties of the same name are
    // replaced where they stand.
    void instance(pugi::xml_node element, Instance& instance) const;
    // VALUE.NAMEDINSTANCE, VALUE.OBJECTWITHPATH and their like. Without a path of its own, or
    // without a namespace in it, the instance is in the one given.
    Owned<Instance> locatedInstance(pugi::xml_node element,
                                    const std::optional<std::string>& nameSpace) const;

    Owned<Class> classDeclaration(pugi::xml_node element) const;

    // RETURNVALUE, PARAMVALUE or IRETURNVALUE, of the type in the attribute or, without it, the one
    // that the text looks like.
    Data typedOrGuessed(pugi::xml_node element, const char* typeAttribute) const;

private:
    // VALUE.
    Data value(CMPIType type, pugi::xml_node element) const;
    Data valueOfText(CMPIType type, std::string_view text) const;
    Data valueArray(CMPIType type, pugi::xml_node element) const;
    Data referenceArray(pugi::xml_node element) const;
    // VALUE.REFERENCE; a name alone has the namespace "".
    Data reference(pugi::xml_node element) const;
    // The VALUE, VALUE.ARRAY or VALUE.REFERENCE in an element, null of the type when none is there.
    Data content(pugi::xml_node element, CMPIType type, bool isArray) const;
    CMPIType guessedType(pugi::xml_node element) const;

    Owned<ObjectPath> instanceName(pugi::xml_node element) const;
    void keyBinding(pugi::xml_node element, const char* name, ObjectPath& path) const;
    Data keyValue(pugi::xml_node element) const;

    // An instance in a CDATA section; null when there is none, or it cannot be read.
    Owned<Instance> embeddedInstance(pugi::xml_node value) const;

    // PROPERTY, PROPERTY.ARRAY, PROPERTY.REFERENCE: false for any other element.
    bool isProperty(pugi::xml_node element) const;
    Data propertyValue(pugi::xml_node element) const;
    NamedValue classProperty(pugi::xml_node element) const;
    NamedValue method(pugi::xml_node element) const;
    NamedValue parameter(pugi::xml_node element) const;
    NamedValues qualifiers(pugi::xml_node owner) const;

    unsigned m_level;
};

} // namespace cimclient

#endif
