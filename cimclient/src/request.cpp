#include "request.h"

#include "text.h"
#include "valuetext.h"

#include <cstring>

namespace cimclient {

namespace {

constexpr std::string_view prolog = "<?xml version=\"1.0\" encoding=\"utf-8\"?>"
                                    "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">"
                                    "<MESSAGE ID=\"4711\" PROTOCOLVERSION=\"1.0\"><SIMPLEREQ>";
constexpr std::string_view epilog = "</SIMPLEREQ></MESSAGE></CIM>";

// A small request has room without growing.
constexpr std::size_t usualSize = 1024;

bool isUnreserved(unsigned char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
           std::strchr("-_.~", c) != nullptr;
}

// Percent-encoded for a header: nothing in a name or value can end the line or the part that it
// stands in.
std::string headerText(std::string_view text) {
    constexpr char digits[] = "0123456789ABCDEF";
    std::string out;
    out.reserve(text.size() + 16);
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte != 0 && isUnreserved(byte)) {
            out += c;
        } else {
            out += '%';
            out += digits[byte >> 4];
            out += digits[byte & 0xf];
        }
    }
    return out;
}

void appendKeyHeader(std::string& out, const CMPIData& key) {
    std::string text;
    if (key.type == CMPI_ref)
        text = valueText(key);
    else
        appendWireText(text, key);
    const char* quote = isNumber(key.type) ? "" : "\"";
    out.append(quote).append(headerText(text)).append(quote);
}

// DSP0200, 6.3.7: the target of an extrinsic call, with the separators of a path left readable.
// Empty without a namespace.
std::string objectHeader(const ObjectPath& target) {
    std::string out = headerText(target.nameSpace.value_or(""));
    if (out.empty())
        return out;
    out.append("%3A").append(headerText(target.className.value_or("")));
    char separator = '.';
    for (const NamedValue& key : target.keys) {
        out.append(1, separator).append(headerText(key.name)).append("%3D");
        appendKeyHeader(out, key.data.get());
        separator = ',';
    }
    return out;
}

} // namespace

IntrinsicCall::IntrinsicCall(const char* name, const ObjectPath& target) {
    m_request.method = name;
    m_request.object = headerText(target.nameSpace.value_or(""));
    m_request.body.reserve(usualSize);
    XmlWriter writer(m_request.body);
    writer.raw(prolog).raw("<IMETHODCALL").attribute("NAME", name).raw(">");
    writer.localNameSpacePath(target.nameSpace.value_or(""));
}

XmlWriter IntrinsicCall::open(const char* parameter) {
    XmlWriter writer(m_request.body);
    writer.raw("<IPARAMVALUE").attribute("NAME", parameter).raw(">");
    return writer;
}

IntrinsicCall& IntrinsicCall::flag(const char* parameter, bool set) {
    open(parameter).value(set ? "TRUE" : "FALSE").raw("</IPARAMVALUE>");
    return *this;
}

IntrinsicCall& IntrinsicCall::detail(CMPIFlags flags, char** properties) {
    flag("IncludeClassOrigin", (flags & CMPI_FLAG_IncludeClassOrigin) != 0);
    flag("IncludeQualifiers", (flags & CMPI_FLAG_IncludeQualifiers) != 0);
    return propertyList(properties);
}

IntrinsicCall& IntrinsicCall::className(const char* parameter, const char* name) {
    if (name)
        open(parameter).raw("<CLASSNAME").attribute("NAME", name).raw("/></IPARAMVALUE>");
    return *this;
}

IntrinsicCall& IntrinsicCall::text(const char* parameter, const char* text) {
    if (text)
        open(parameter).value(text).raw("</IPARAMVALUE>");
    return *this;
}

IntrinsicCall& IntrinsicCall::propertyList(char** properties) {
    if (!properties)
        return *this;
    XmlWriter writer = open("PropertyList");
    writer.raw("<VALUE.ARRAY>");
    for (; *properties; ++properties)
        writer.value(*properties);
    writer.raw("</VALUE.ARRAY></IPARAMVALUE>");
    return *this;
}

IntrinsicCall& IntrinsicCall::instanceName(const char* parameter, const ObjectPath& path) {
    XmlWriter writer = open(parameter);
    writer.instanceName(path);
    writer.raw("</IPARAMVALUE>");
    return *this;
}

IntrinsicCall& IntrinsicCall::instance(const char* parameter, const ObjectPath& path,
                                       const Instance& instance) {
    XmlWriter writer = open(parameter);
    writer.instance(path.className.value_or(""), instance);
    writer.raw("</IPARAMVALUE>");
    return *this;
}

IntrinsicCall& IntrinsicCall::namedInstance(const char* parameter, const ObjectPath& path,
                                            const Instance& instance) {
    XmlWriter writer = open(parameter);
    writer.raw("<VALUE.NAMEDINSTANCE>");
    writer.instanceName(path);
    writer.instance(path.className.value_or(""), instance);
    writer.raw("</VALUE.NAMEDINSTANCE></IPARAMVALUE>");
    return *this;
}

IntrinsicCall& IntrinsicCall::value(const char* parameter, const Data& data) {
    if (!isSendable(data))
        return *this;
    XmlWriter writer = open(parameter);
    writer.anyValue(data);
    writer.raw("</IPARAMVALUE>");
    return *this;
}

Request IntrinsicCall::take() {
    XmlWriter(m_request.body).raw("</IMETHODCALL>").raw(epilog);
    return std::move(m_request);
}

Request methodCall(const ObjectPath& target, const char* method, const Args* in) {
    Request request;
    request.method = headerText(method);
    request.object = objectHeader(target);
    request.body.reserve(usualSize);
    XmlWriter writer(request.body);
    writer.raw(prolog).raw("<METHODCALL").attribute("NAME", method).raw(">");
    const bool ofClass = target.keys.size() == 0;
    writer.raw(ofClass ? "<LOCALCLASSPATH>" : "<LOCALINSTANCEPATH>");
    writer.localNameSpacePath(target.nameSpace.value_or(""));
    if (ofClass)
        writer.raw("<CLASSNAME").attribute("NAME", target.className.value_or("")).raw("/>");
    else
        writer.instanceName(target);
    writer.raw(ofClass ? "</LOCALCLASSPATH>" : "</LOCALINSTANCEPATH>");
    if (in)
        for (const NamedValue& argument : in->values)
            writer.parameter(argument);
    writer.raw("</METHODCALL>").raw(epilog);
    return request;
}

} // namespace cimclient
