#include "simulator/cimxmlwriter.h"

#include "simulator/utf8.h"

#include <algorithm>

namespace velclp_sim {

namespace {

/// Bytes that are written as they are without a second look.
bool isPlain(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x20 && byte < 0x7F && c != '<' && c != '>' && c != '&' && c != '"' && c != '\'';
}

const char* entity(char c) {
    switch (c) {
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '&':
        return "&amp;";
    case '"':
        return "&quot;";
    case '\'':
        return "&apos;";
    case '\t':
        return "&#9;";
    case '\n':
        return "&#10;";
    case '\r':
        return "&#13;";
    case '\x7F':
        return "&#127;";
    default:
        return nullptr;
    }
}

/// True for U+FFFE and U+FFFF, the only well-formed sequences that XML does not take.
bool isNonCharacter(std::string_view sequence) {
    return sequence == "\xEF\xBF\xBE" || sequence == "\xEF\xBF\xBF";
}

} // namespace

void appendEscaped(std::string& out, std::string_view text) {
    while (!text.empty()) {
        const auto plain = static_cast<std::size_t>(
            std::find_if_not(text.begin(), text.end(), isPlain) - text.begin());
        out.append(text.data(), plain);
        text.remove_prefix(plain);
        if (text.empty()) {
            return;
        }
        const unsigned length = utf8Length(text);
        const std::string_view sequence = text.substr(0, std::max(length, 1U));
        if (const char* escaped = entity(text[0])) {
            out += escaped;
        } else if (length > 1 && !isNonCharacter(sequence)) {
            out += sequence;
        } else {
            out += "\xEF\xBF\xBD";
        }
        text.remove_prefix(sequence.size());
    }
}

void CimXmlWriter::open(const char* name) {
    out_.append(1, '<').append(name);
}

void CimXmlWriter::attribute(const char* name, std::string_view value) {
    out_.append(1, ' ').append(name).append("=\"");
    appendEscaped(out_, value);
    out_ += '"';
}

void CimXmlWriter::openEnd() {
    out_ += ">\n";
}

void CimXmlWriter::close(const char* name) {
    out_.append("</").append(name).append(">\n");
}

void CimXmlWriter::simple(const char* name, std::string_view text) {
    out_.append(1, '<').append(name).append(1, '>');
    appendEscaped(out_, text);
    close(name);
}

void CimXmlWriter::className(std::string_view name) {
    open("CLASSNAME");
    attribute("NAME", name);
    out_ += "/>\n";
}

void CimXmlWriter::instanceName(const ObjectPath& path) {
    open("INSTANCENAME");
    attribute("CLASSNAME", path.className());
    openEnd();
    for (const KeyBinding& key : path.keys()) {
        open("KEYBINDING");
        attribute("NAME", key.name);
        openEnd();
        if (const ObjectPath* target = key.value.toPath()) {
            reference(*target, path.nameSpace());
        } else {
            const char* kind = key.value.isString()    ? "string"
                               : key.value.isBoolean() ? "boolean"
                                                       : "numeric";
            out_.append("<KEYVALUE VALUETYPE=\"").append(kind).append("\">");
            appendEscaped(out_, scalarToText(key.value, CimType::real64));
            close("KEYVALUE");
        }
        close("KEYBINDING");
    }
    close("INSTANCENAME");
}

void CimXmlWriter::localNamespacePath(const std::string& nameSpace) {
    out_ += "<LOCALNAMESPACEPATH>\n";
    for (std::string_view rest = nameSpace; !rest.empty();) {
        const auto end = std::min(rest.find('/'), rest.size());
        open("NAMESPACE");
        attribute("NAME", rest.substr(0, end));
        out_ += "/>\n";
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    close("LOCALNAMESPACEPATH");
}

void CimXmlWriter::reference(const ObjectPath& path, const std::string& nameSpace) {
    out_ += "<VALUE.REFERENCE>\n";
    if (path.nameSpace().empty() || sameName(path.nameSpace(), nameSpace)) {
        instanceName(path);
    } else {
        out_ += "<LOCALINSTANCEPATH>\n";
        localNamespacePath(path.nameSpace());
        instanceName(path);
        close("LOCALINSTANCEPATH");
    }
    close("VALUE.REFERENCE");
}

void CimXmlWriter::objectPath(const ObjectPath& path, const std::string& host) {
    const char* element = path.keys().empty() ? "CLASSPATH" : "INSTANCEPATH";
    open(element);
    out_ += ">\n<NAMESPACEPATH>\n";
    simple("HOST", host);
    localNamespacePath(path.nameSpace());
    close("NAMESPACEPATH");
    if (path.keys().empty()) {
        className(path.className());
    } else {
        instanceName(path);
    }
    close(element);
}

void CimXmlWriter::value(const Value& value, CimType type, const std::string& nameSpace) {
    if (value.isNull()) {
        return;
    }
    if (const ObjectPath* path = value.toPath()) {
        reference(*path, nameSpace);
        return;
    }
    if (!value.isArray()) {
        simple("VALUE", scalarToText(value, type));
        return;
    }
    const char* element = type == CimType::reference ? "VALUE.REFARRAY" : "VALUE.ARRAY";
    open(element);
    openEnd();
    for (const Value& each : value.toArray()) {
        if (each.isNull()) {
            out_ += "<VALUE.NULL/>\n";
        } else {
            this->value(each, type, nameSpace);
        }
    }
    close(element);
}

void CimXmlWriter::returnValue(const Value& result, CimType type) {
    if (!result.isNull()) {
        open("RETURNVALUE");
        attribute("PARAMTYPE", typeName(type));
        openEnd();
        value(result, type, "");
        close("RETURNVALUE");
    }
}

void CimXmlWriter::parameterValue(const Parameter& parameter, const Value& argument) {
    if (!argument.isNull()) {
        open("PARAMVALUE");
        attribute("NAME", parameter.name);
        attribute("PARAMTYPE", typeName(parameter.type));
        openEnd();
        value(argument, parameter.type, "");
        close("PARAMVALUE");
    }
}

void CimXmlWriter::qualifier(const Qualifier& qualifier, bool asInherited) {
    open("QUALIFIER");
    attribute("NAME", qualifier.name);
    attribute("TYPE", typeName(qualifier.type));
    if (qualifier.propagated || asInherited) {
        attribute("PROPAGATED", "true");
    }
    if (!qualifier.overridable) {
        attribute("OVERRIDABLE", "false");
    }
    if (!qualifier.toSubclass) {
        attribute("TOSUBCLASS", "false");
    }
    if (qualifier.translatable) {
        attribute("TRANSLATABLE", "true");
    }
    openEnd();
    value(qualifier.value, qualifier.type, "");
    close("QUALIFIER");
}

void CimXmlWriter::qualifiers(const Qualifiers& all, bool localOnly, bool asInherited) {
    for (const Qualifier& each : all) {
        // One without a value says nothing, and strict readers stumble over it.
        if (!each.value.isNull() && !(localOnly && each.propagated)) {
            qualifier(each, asInherited);
        }
    }
}

void CimXmlWriter::property(const Property& property, const Value& content, const Shown& shown,
                            const std::string& nameSpace, bool inClass, bool localOnly) {
    const char* element = property.type == CimType::reference ? "PROPERTY.REFERENCE"
                          : property.isArray                  ? "PROPERTY.ARRAY"
                                                              : "PROPERTY";
    open(element);
    attribute("NAME", property.name);
    if (property.type != CimType::reference) {
        attribute("TYPE", typeName(property.type));
    } else if (!property.referenceClass.empty()) {
        attribute("REFERENCECLASS", property.referenceClass);
    }
    if (property.isArray && property.arraySize != 0) {
        attribute("ARRAYSIZE", std::to_string(property.arraySize));
    }
    if (shown.classOrigin) {
        attribute("CLASSORIGIN", property.origin);
    }
    if (inClass && property.propagated) {
        attribute("PROPAGATED", "true");
    }
    openEnd();
    if (shown.qualifiers) {
        qualifiers(property.qualifiers, localOnly, !inClass);
    }
    value(content, property.type, nameSpace);
    close(element);
}

void CimXmlWriter::instance(const Instance& instance, const Shown& shown) {
    const Class& cls = instance.cls();
    open("INSTANCE");
    attribute("CLASSNAME", cls.name);
    openEnd();
    if (shown.qualifiers) {
        qualifiers(cls.qualifiers, false, true);
    }
    for (std::size_t i = 0; i < cls.properties.size(); ++i) {
        if (shown.shows(i)) {
            property(cls.properties[i], instance.at(i), shown, cls.nameSpace, false, false);
        }
    }
    close("INSTANCE");
}

void CimXmlWriter::cls(const Class& cls, const Shown& shown, bool localOnly) {
    open("CLASS");
    attribute("NAME", cls.name);
    if (cls.super) {
        attribute("SUPERCLASS", cls.super->name);
    }
    openEnd();
    if (shown.qualifiers) {
        qualifiers(cls.qualifiers, localOnly, false);
    }
    for (std::size_t i = 0; i < cls.properties.size(); ++i) {
        const Property& each = cls.properties[i];
        if (shown.shows(i) && !(localOnly && each.propagated)) {
            property(each, each.defaultValue, shown, cls.nameSpace, true, localOnly);
        }
    }
    for (const Method& each : cls.methods) {
        if (!localOnly || !each.propagated) {
            method(each, shown, localOnly);
        }
    }
    close("CLASS");
}

void CimXmlWriter::method(const Method& method, const Shown& shown, bool localOnly) {
    open("METHOD");
    attribute("NAME", method.name);
    attribute("TYPE", typeName(method.type));
    if (shown.classOrigin) {
        attribute("CLASSORIGIN", method.origin);
    }
    if (method.propagated) {
        attribute("PROPAGATED", "true");
    }
    openEnd();
    if (shown.qualifiers) {
        qualifiers(method.qualifiers, localOnly, false);
    }
    for (const Parameter& each : method.parameters) {
        parameter(each, shown);
    }
    close("METHOD");
}

void CimXmlWriter::parameter(const Parameter& parameter, const Shown& shown) {
    const bool isReference = parameter.type == CimType::reference;
    const char* element = isReference
                              ? (parameter.isArray ? "PARAMETER.REFARRAY" : "PARAMETER.REFERENCE")
                          : parameter.isArray ? "PARAMETER.ARRAY"
                                              : "PARAMETER";
    open(element);
    attribute("NAME", parameter.name);
    if (isReference) {
        attribute("REFERENCECLASS", parameter.referenceClass);
    } else {
        attribute("TYPE", typeName(parameter.type));
    }
    if (parameter.isArray && parameter.arraySize != 0) {
        attribute("ARRAYSIZE", std::to_string(parameter.arraySize));
    }
    openEnd();
    if (shown.qualifiers) {
        qualifiers(parameter.qualifiers, false, false);
    }
    close(element);
}

} // namespace velclp_sim
