#include "xmlwriter.h"

#include "status.h"
#include "typenames.h"
#include "utf8.h"
#include "valuetext.h"

#include <algorithm>

namespace cimclient {

namespace {

// What stands for a character in text and attributes; nothing for one that stands for itself. White
// space other than a blank would be changed by a reader of attributes, and CR everywhere.
std::string_view entityOf(char c, bool inAttribute) {
    switch (c) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    case '\'':
        return "&apos;";
    case '\r':
        return "&#13;";
    case '\n':
        return inAttribute ? "&#10;" : "";
    case '\t':
        return inAttribute ? "&#9;" : "";
    default:
        return "";
    }
}

bool isPlain(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x20 && byte < 0x80 && c != '&' && c != '<' && c != '>' && c != '"' && c != '\'';
}

const Array& arrayOf(const Data& data) {
    return *Array::from(data.get().value.array);
}

const char* keyValueType(CMPIType type) {
    if (type == CMPI_boolean)
        return "boolean";
    return isNumber(type) ? "numeric" : "string";
}

bool isReference(CMPIType type) {
    return (type & ~CMPI_ARRAY) == CMPI_ref;
}

std::size_t checkedLength(std::string_view text) {
    const std::size_t length = xmlCharacterLength(text);
    if (length == 0)
        throw Failure{CMPI_RC_ERR_INVALID_PARAMETER,
                      "A name or value holds a character that cannot be sent"};
    return length;
}

void appendEscaped(std::string& out, std::string_view text, bool inAttribute) {
    while (!text.empty()) {
        const auto plainEnd = std::find_if_not(text.begin(), text.end(), isPlain);
        const auto plain = static_cast<std::size_t>(plainEnd - text.begin());
        out += text.substr(0, plain);
        text.remove_prefix(plain);
        if (text.empty())
            return;
        const std::size_t length = checkedLength(text);
        const std::string_view entity = entityOf(text.front(), inAttribute);
        out += entity.empty() ? text.substr(0, length) : entity;
        text.remove_prefix(length);
    }
}

} // namespace

bool isSendable(const Data& data) {
    return !data.isNull() && !((data.type() & CMPI_ARRAY) && arrayOf(data).elements.empty());
}

XmlWriter& XmlWriter::text(std::string_view text) {
    appendEscaped(m_out, text, false);
    return *this;
}

XmlWriter& XmlWriter::attribute(std::string_view name, std::string_view value) {
    raw(" ").raw(name).raw("=\"");
    appendEscaped(m_out, value, true);
    return raw("\"");
}

XmlWriter& XmlWriter::value(std::string_view text) {
    return raw("<VALUE>").text(text).raw("</VALUE>");
}

void XmlWriter::simpleText(const CMPIData& data) {
    m_scratch.clear();
    appendWireText(m_scratch, data);
    text(m_scratch);
}

void XmlWriter::localNameSpacePath(std::string_view nameSpace) {
    raw("<LOCALNAMESPACEPATH>");
    while (!nameSpace.empty()) {
        const std::size_t end = std::min(nameSpace.find('/'), nameSpace.size());
        if (end > 0)
            raw("<NAMESPACE").attribute("NAME", nameSpace.substr(0, end)).raw("/>");
        nameSpace.remove_prefix(std::min(end + 1, nameSpace.size()));
    }
    raw("</LOCALNAMESPACEPATH>");
}

void XmlWriter::instanceName(const ObjectPath& path) {
    raw("<INSTANCENAME").attribute("CLASSNAME", path.className.value_or("")).raw(">");
    for (const NamedValue& key : path.keys)
        keyBinding(key);
    raw("</INSTANCENAME>");
}

// A key without a name is the only one of its class (DSP0201, 5.2.5.3).
void XmlWriter::keyBinding(const NamedValue& key) {
    if (!key.name.empty())
        raw("<KEYBINDING").attribute("NAME", key.name).raw(">");
    const CMPIData& data = key.data.get();
    if (data.type == CMPI_ref && data.value.ref) {
        keyReference(*ObjectPath::from(data.value.ref));
    } else {
        raw("<KEYVALUE").attribute("VALUETYPE", keyValueType(data.type)).raw(">");
        simpleText(data);
        raw("</KEYVALUE>");
    }
    if (!key.name.empty())
        raw("</KEYBINDING>");
}

void XmlWriter::keyReference(const ObjectPath& path) {
    raw("<VALUE.REFERENCE>");
    const bool located = path.nameSpace && !path.nameSpace->empty();
    if (located) {
        raw("<INSTANCEPATH><NAMESPACEPATH><HOST>localhost</HOST>");
        localNameSpacePath(*path.nameSpace);
        raw("</NAMESPACEPATH>");
    }
    instanceName(path);
    raw(located ? "</INSTANCEPATH></VALUE.REFERENCE>" : "</VALUE.REFERENCE>");
}

void XmlWriter::valueReference(const ObjectPath& path) {
    raw("<VALUE.REFERENCE>");
    const bool located = path.nameSpace && !path.nameSpace->empty();
    if (located) {
        raw("<LOCALINSTANCEPATH>");
        localNameSpacePath(*path.nameSpace);
    }
    instanceName(path);
    raw(located ? "</LOCALINSTANCEPATH></VALUE.REFERENCE>" : "</VALUE.REFERENCE>");
}

void XmlWriter::instance(std::string_view className, const Instance& instance) {
    raw("<INSTANCE").attribute("CLASSNAME", className).raw(">");
    for (const NamedValue& value : instance.properties)
        property(value);
    raw("</INSTANCE>");
}

void XmlWriter::property(const NamedValue& property) {
    const CMPIType type = property.data.type();
    if (!isSendable(property.data))
        return;
    const char* name = typeName(type);
    if (!name || type == CMPI_refA)
        throw Failure{CMPI_RC_ERR_FAILED, "Unsupported property type"};
    const std::string_view element = type & CMPI_ARRAY   ? "PROPERTY.ARRAY"
                                     : isReference(type) ? "PROPERTY.REFERENCE"
                                                         : "PROPERTY";
    raw("<").raw(element).attribute("NAME", property.name);
    if (!isReference(type))
        attribute("TYPE", name);
    if ((type & ~CMPI_ARRAY) == CMPI_instance)
        attribute("EmbeddedObject", "instance");
    raw(">");
    anyValue(property.data);
    raw("</").raw(element).raw(">");
}

void XmlWriter::parameter(const NamedValue& argument) {
    const CMPIType type = argument.data.type();
    const char* name = typeName(type);
    if (!name)
        throw Failure{CMPI_RC_ERR_FAILED, "Unsupported IN argument type"};
    if (!isSendable(argument.data))
        return;
    raw("<PARAMVALUE").attribute("NAME", argument.name);
    if ((type & ~CMPI_ARRAY) != CMPI_instance)
        attribute("PARAMTYPE", name);
    raw(">");
    anyValue(argument.data);
    raw("</PARAMVALUE>");
}

void XmlWriter::anyValue(const Data& data) {
    const CMPIData& plain = data.get();
    if (plain.type & CMPI_ARRAY) {
        valueArray(arrayOf(data));
    } else if (plain.type == CMPI_ref) {
        valueReference(*ObjectPath::from(plain.value.ref));
    } else {
        valueElement(data);
    }
}

void XmlWriter::valueArray(const Array& array) {
    const bool references = array.elementType == CMPI_ref;
    raw(references ? "<VALUE.REFARRAY>" : "<VALUE.ARRAY>");
    for (const Data& element : array.elements) {
        if (!references)
            valueElement(element);
        else if (!element.isNull())
            valueReference(*ObjectPath::from(element.get().value.ref));
    }
    raw(references ? "</VALUE.REFARRAY>" : "</VALUE.ARRAY>");
}

// An element that was never set goes out as what the usual client sends for it.
void XmlWriter::valueElement(const Data& data) {
    raw("<VALUE>");
    if (data.type() == CMPI_instance) {
        if (!data.isNull())
            embeddedInstance(*Instance::from(data.get().value.inst));
    } else if (data.isNull() && data.type() != CMPI_boolean) {
        raw(isObjectType(data.type()) ? "NULL" : "0");
    } else {
        simpleText(data.get());
    }
    raw("</VALUE>");
}

void XmlWriter::embeddedInstance(const Instance& instance) {
    constexpr std::string_view end = "]]>";
    std::string inner;
    XmlWriter(inner).instance(instance.className.value_or(""), instance);
    raw("<![CDATA[");
    // An end mark inside is split over two sections.
    std::size_t from = 0;
    for (auto at = inner.find(end); at != std::string::npos; at = inner.find(end, from)) {
        raw(std::string_view(inner).substr(from, at - from)).raw("]]]]><![CDATA[>");
        from = at + end.size();
    }
    raw(std::string_view(inner).substr(from)).raw(end);
}

} // namespace cimclient
