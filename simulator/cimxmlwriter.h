// Writes CIM-XML replies (DSP0201) straight into one string: no document tree, since replies can be
// long. Every text is escaped; what XML 1.0 cannot hold becomes U+FFFD. Attributes are those of the
// DTD of DSP0203, and no element is ever written as CDATA.
#pragma once

#include "simulator/cimclass.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace velclp_sim {

/// Appends the text with the five markup characters and line ends escaped.
void appendEscaped(std::string& out, std::string_view text);

/// What of a class or an instance is to be shown.
struct Shown {
    bool qualifiers = false;
    bool classOrigin = false;
    /// By property index; an empty vector shows all.
    std::vector<char> properties;

    bool shows(std::size_t index) const { return properties.empty() || properties[index] != 0; }
};

class CimXmlWriter {
public:
    explicit CimXmlWriter(std::string& out) : out_(out) {}

    void className(std::string_view name);
    /// INSTANCENAME; references in keys keep their namespace only where it is another.
    void instanceName(const ObjectPath& path);
    /// INSTANCEPATH or CLASSPATH with the host, as association operations give it.
    void objectPath(const ObjectPath& path, const std::string& host);
    void instance(const Instance& instance, const Shown& shown);
    /// `localOnly` leaves out what is inherited unchanged.
    void cls(const Class& cls, const Shown& shown, bool localOnly);

    /// VALUE, VALUE.ARRAY, VALUE.REFERENCE or VALUE.REFARRAY; nothing for NULL.
    void value(const Value& value, CimType type, const std::string& nameSpace);
    /// RETURNVALUE and PARAMVALUE of an extrinsic method's reply; nothing for NULL.
    void returnValue(const Value& value, CimType type);
    void parameterValue(const Parameter& parameter, const Value& value);

    /// `<name` and the attributes given so far stay open until the next call of openEnd().
    void open(const char* name);
    void attribute(const char* name, std::string_view value);
    void openEnd();
    void close(const char* name);

private:
    void simple(const char* name, std::string_view text);
    void localNamespacePath(const std::string& nameSpace);
    void reference(const ObjectPath& path, const std::string& nameSpace);
    void qualifier(const Qualifier& qualifier, bool asInherited);
    void qualifiers(const Qualifiers& qualifiers, bool localOnly, bool asInherited);
    void property(const Property& property, const Value& value, const Shown& shown,
                  const std::string& nameSpace, bool inClass, bool localOnly);
    void method(const Method& method, const Shown& shown, bool localOnly);
    void parameter(const Parameter& parameter, const Shown& shown);

    std::string& out_;
};

} // namespace velclp_sim
