#include "simulator/cimxmlreader.h"

#include "simulator/cimerror.h"
#include "simulator/names.h"
#include "simulator/utf8.h"

#include <pugixml.hpp>

#include <cstring>

namespace velclp_sim {

namespace {

using Node = pugi::xml_node;

constexpr int maxReferenceDepth = 8;
constexpr std::size_t maxNameLength = 1024;

[[noreturn]] void invalid(const std::string& detail) {
    throw RequestError(400, "request-not-valid", detail);
}

bool is(Node node, const char* name) {
    return std::strcmp(node.name(), name) == 0;
}

/// The element's only child of that name.
Node child(Node parent, const char* name) {
    const Node node = parent.child(name);
    if (!node || node.next_sibling(name)) {
        invalid(std::string(parent.name()) + " needs one " + name);
    }
    return node;
}

std::string attribute(Node node, const char* name) {
    const pugi::xml_attribute found = node.attribute(name);
    const std::size_t length = std::strlen(found.value());
    if (!found || length == 0 || length > maxNameLength) {
        invalid(std::string(node.name()) + " needs an attribute " + name);
    }
    return {found.value(), length};
}

std::optional<CimType> typeAttribute(Node node, const char* name) {
    const char* text = node.attribute(name).value();
    if (*text == '\0') {
        return std::nullopt;
    }
    const auto type = typeFromName(text);
    if (!type) {
        invalid(std::string("unknown type ") + text);
    }
    return type;
}

/// The element's text, which may come in several pieces (CDATA among them).
std::string text(Node node) {
    std::string result;
    for (const Node part : node.children()) {
        if (part.type() != pugi::node_pcdata && part.type() != pugi::node_cdata) {
            invalid(std::string(node.name()) + " holds more than text");
        }
        result += part.value();
    }
    return result;
}

/// The blank text that stands alone between a start and an end tag. It is kept for the sake of
/// values and means nothing in other elements.
bool isBlank(Node node) {
    return node.type() == pugi::node_pcdata &&
           std::strspn(node.value(), " \t\r\n") == std::strlen(node.value());
}

std::string readNamespacePath(Node local) {
    std::string result;
    for (const Node part : local.children("NAMESPACE")) {
        result += (result.empty() ? "" : "/") + attribute(part, "NAME");
    }
    if (result.empty() || result.size() > maxNameLength) {
        invalid("LOCALNAMESPACEPATH without a namespace");
    }
    return std::string(trimNamespace(result));
}

ObjectPath readInstanceName(Node node, std::string nameSpace, int depth);

/// Any of the elements that name an object; `node` is the element itself.
ObjectPath readPath(Node node, const std::string& nameSpace, int depth) {
    if (is(node, "INSTANCENAME")) {
        return readInstanceName(node, nameSpace, depth);
    }
    if (is(node, "CLASSNAME")) {
        return {nameSpace, attribute(node, "NAME")};
    }
    const bool full = is(node, "INSTANCEPATH") || is(node, "CLASSPATH");
    if (!full && !is(node, "LOCALINSTANCEPATH") && !is(node, "LOCALCLASSPATH")) {
        invalid(std::string("no object path: ") + node.name());
    }
    const Node spaceParent = full ? child(node, "NAMESPACEPATH") : node;
    const std::string space = readNamespacePath(child(spaceParent, "LOCALNAMESPACEPATH"));
    const Node name =
        node.child("INSTANCENAME") ? node.child("INSTANCENAME") : node.child("CLASSNAME");
    return readPath(name, space, depth);
}

Node onlyElement(Node parent) {
    const Node node = parent.first_child();
    if (!node || node.type() != pugi::node_element || node.next_sibling()) {
        invalid(std::string(parent.name()) + " needs one element");
    }
    return node;
}

Value readReference(Node node, int depth) {
    if (depth >= maxReferenceDepth) {
        invalid("references are nested too deeply");
    }
    return readPath(onlyElement(node), "", depth + 1);
}

/// A key in the kind that VALUETYPE says; numbers are read as what they look like.
Value readKeyValue(Node node, int depth) {
    if (is(node, "VALUE.REFERENCE")) {
        return readReference(node, depth);
    }
    if (!is(node, "KEYVALUE")) {
        invalid(std::string("no key value: ") + node.name());
    }
    const std::string kind = node.attribute("VALUETYPE").as_string("string");
    std::string value = text(node);
    try {
        if (kind == "boolean") {
            return scalarFromText(value, CimType::boolean, "a key");
        }
        if (kind == "numeric") {
            const bool real = value.find('.') != std::string::npos;
            const bool negative = value.find('-') != std::string::npos;
            const CimType type = real       ? CimType::real64
                                 : negative ? CimType::sint64
                                            : CimType::uint64;
            return scalarFromText(value, type, "a key");
        }
    } catch (const CimError& error) {
        invalid(error.what());
    }
    return value;
}

ObjectPath readInstanceName(Node node, std::string nameSpace, int depth) {
    std::vector<KeyBinding> keys;
    for (const Node key : node.children()) {
        if (isBlank(key)) {
            continue;
        }
        if (is(key, "KEYBINDING")) {
            keys.push_back({attribute(key, "NAME"), readKeyValue(onlyElement(key), depth)});
        } else {
            keys.push_back({"", readKeyValue(key, depth)});
        }
    }
    return {std::move(nameSpace), attribute(node, "CLASSNAME"), std::move(keys)};
}

Value readArray(Node node) {
    Value::Array elements;
    for (const Node element : node.children()) {
        if (is(element, "VALUE")) {
            elements.emplace_back(text(element));
        } else if (is(element, "VALUE.REFERENCE")) {
            elements.push_back(readReference(element, 0));
        } else if (is(element, "VALUE.NULL")) {
            elements.emplace_back();
        } else if (!isBlank(element)) {
            invalid(std::string("no array element: ") + element.name());
        }
    }
    return elements;
}

/// One of the value elements; nothing when `node` is none.
std::optional<Value> readValue(Node node) {
    if (is(node, "VALUE")) {
        return Value(text(node));
    }
    if (is(node, "VALUE.ARRAY") || is(node, "VALUE.REFARRAY")) {
        return readArray(node);
    }
    if (is(node, "VALUE.REFERENCE")) {
        return readReference(node, 0);
    }
    return std::nullopt;
}

RawProperty readProperty(Node node) {
    RawProperty property;
    property.name = attribute(node, "NAME");
    property.isArray = is(node, "PROPERTY.ARRAY");
    property.type =
        is(node, "PROPERTY.REFERENCE") ? CimType::reference : typeAttribute(node, "TYPE");
    for (const Node part : node.children()) {
        if (is(part, "QUALIFIER") || isBlank(part)) {
            continue;
        }
        const auto value = readValue(part);
        if (!value) {
            invalid(std::string("a property holds ") + part.name());
        }
        property.value = *value;
    }
    return property;
}

RawInstance readInstance(Node node) {
    RawInstance instance;
    instance.className = attribute(node, "CLASSNAME");
    for (const Node part : node.children()) {
        if (is(part, "PROPERTY") || is(part, "PROPERTY.ARRAY") || is(part, "PROPERTY.REFERENCE")) {
            instance.properties.push_back(readProperty(part));
        } else if (!is(part, "QUALIFIER") && !isBlank(part)) {
            invalid(std::string("an instance holds ") + part.name());
        }
    }
    return instance;
}

RawParameter readParameter(Node node) {
    RawParameter parameter;
    parameter.name = attribute(node, "NAME");
    parameter.type = typeAttribute(node, "PARAMTYPE");
    const Node content = node.first_child();
    if (!content || isBlank(content)) {
        return parameter;
    }
    if (content.next_sibling()) {
        invalid(parameter.name + " holds more than one value");
    }
    if (is(content, "INSTANCE")) {
        parameter.instance = readInstance(content);
    } else if (is(content, "VALUE.NAMEDINSTANCE")) {
        parameter.value = readPath(child(content, "INSTANCENAME"), "", 0);
        parameter.instance = readInstance(child(content, "INSTANCE"));
    } else if (const auto value = readValue(content)) {
        parameter.value = *value;
    } else {
        parameter.value = readPath(content, "", 0);
    }
    return parameter;
}

void readParameters(Node call, const char* element, Request& request) {
    for (const Node node : call.children(element)) {
        request.parameters.push_back(readParameter(node));
    }
}

void checkVersion(Node node, const char* attributeName, char major, const char* cimError) {
    const std::string version = attribute(node, attributeName);
    if (version.size() < 3 || version[0] != major || version[1] != '.') {
        throw RequestError(501, cimError, std::string(attributeName) + " " + version);
    }
}

Node readEnvelope(const pugi::xml_document& document, Request& request) {
    const Node cim = document.document_element();
    if (!is(cim, "CIM")) {
        invalid("the document is no CIM element");
    }
    checkVersion(cim, "CIMVERSION", '2', "unsupported-cim-version");
    checkVersion(cim, "DTDVERSION", '2', "unsupported-dtd-version");
    const Node message = child(cim, "MESSAGE");
    checkVersion(message, "PROTOCOLVERSION", '1', "unsupported-protocol-version");
    request.messageId = attribute(message, "ID");
    if (message.child("MULTIREQ")) {
        throw RequestError(501, "multiple-requests-unsupported", "MULTIREQ");
    }
    if (message.child("SIMPLEEXPREQ") || message.child("MULTIEXPREQ")) {
        throw RequestError(501, "unsupported-operation", "an export message");
    }
    return onlyElement(child(message, "SIMPLEREQ"));
}

} // namespace

Request readRequest(std::string_view body) {
    pugi::xml_document document;
    const unsigned flags = pugi::parse_default | pugi::parse_ws_pcdata_single;
    const auto parsed = document.load_buffer(body.data(), body.size(), flags, pugi::encoding_utf8);
    if (!parsed || !isUtf8(body)) {
        throw RequestError(400, "request-not-well-formed",
                           parsed ? "the text is no UTF-8" : parsed.description());
    }
    Request request;
    const Node call = readEnvelope(document, request);
    request.name = attribute(call, "NAME");
    if (is(call, "IMETHODCALL")) {
        request.nameSpace = readNamespacePath(child(call, "LOCALNAMESPACEPATH"));
        readParameters(call, "IPARAMVALUE", request);
        return request;
    }
    if (!is(call, "METHODCALL")) {
        invalid(std::string("no call: ") + call.name());
    }
    request.intrinsic = false;
    const Node instance = call.child("LOCALINSTANCEPATH");
    request.object = readPath(instance ? instance : child(call, "LOCALCLASSPATH"), "", 0);
    request.nameSpace = request.object.nameSpace();
    readParameters(call, "PARAMVALUE", request);
    return request;
}

Value typedValue(const Value& raw, CimType type, bool isArray, const std::string& what) {
    if (raw.isArray() && isArray) {
        Value::Array elements;
        elements.reserve(raw.toArray().size());
        for (const Value& element : raw.toArray()) {
            elements.push_back(typedValue(element, type, false, what));
        }
        return elements;
    }
    if (raw.isString() && !isArray && type != CimType::reference) {
        return scalarFromText(raw.toString(), type, what);
    }
    return coerce(raw, type, isArray, what);
}

} // namespace velclp_sim
