// Builds the CIM-XML of a request (DSP0201). Everything that comes from a caller is escaped; text
// that XML cannot carry at all (control characters, broken UTF-8) ends the call with
// CMPI_RC_ERR_INVALID_PARAMETER before anything is sent.
#ifndef CIMCLIENT_XMLWRITER_H
#define CIMCLIENT_XMLWRITER_H

#include "objects.h"

#include <string>
#include <string_view>

namespace cimclient {

class XmlWriter {
public:
    explicit XmlWriter(std::string& out) : m_out(out) {}

    // Markup, as it stands.
    XmlWriter& raw(std::string_view markup) {
        m_out += markup;
        return *this;
    }
    XmlWriter& text(std::string_view text);
    // ` name="value"`.
    XmlWriter& attribute(std::string_view name, std::string_view value);
    // `<VALUE>text</VALUE>`.
    XmlWriter& value(std::string_view text);

    // LOCALNAMESPACEPATH with one NAMESPACE for each component.
    void localNameSpacePath(std::string_view nameSpace);
    void instanceName(const ObjectPath& path);
    // The class name is not the instance's own where an operation takes it from its path. Null
    // properties and empty arrays are left out.
    void instance(std::string_view className, const Instance& instance);
    // PARAMVALUE; nothing for a null value or an empty array.
    void parameter(const NamedValue& argument);
    // VALUE, VALUE.ARRAY or VALUE.REFERENCE of a value that is not null.
    void anyValue(const Data& data);

private:
    void keyBinding(const NamedValue& key);
    void keyReference(const ObjectPath& path);
    void property(const NamedValue& property);
    void valueReference(const ObjectPath& path);
    void valueArray(const Array& array);
    void valueElement(const Data& data);
    void embeddedInstance(const Instance& instance);
    // Escaped text of a simple value.
    void simpleText(const CMPIData& data);

    std::string& m_out;
    std::string m_scratch;
};

// Not null, and no array without elements: something that can be sent.
bool isSendable(const Data& data);

} // namespace cimclient

#endif
