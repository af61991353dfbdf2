// Property values on their way to the terminal: owned copies of what the server sent, and their
// texts.
#ifndef VELCLP_OUTPUT_PROPVALUE_H
#define VELCLP_OUTPUT_PROPVALUE_H

#include "velclp/showrecords.h"

#include <optional>
#include <string>

namespace velmora_clp {

// Null, not found or bad: a value without a content.
bool isNullValue(const CMPIData& data);

// A deep copy of the value; its qualifier arrays are left null.
OwnedPropValue copyValue(const CMPIData& data);
// The same with the property's Values and ValueMap from the class, which may be null.
OwnedPropValue copyValue(const CMPIData& data, CMPIConstClass* cimclass, const std::string& name);

// The text with control characters replaced by "?", those of ISO 6429's C1 set in UTF-8 too, since
// values come from outside and terminals obey such characters. Tabs and line ends stay.
std::string harmless(std::string text);

// A value as it is shown, and what the qualifiers call it.
struct ShownText {
    std::string value;
    std::optional<std::string> name;
};
ShownText shownText(const CMPIData& data, CMPIArray* values, CMPIArray* valuemap);

// The texts of an array's elements; none for a null array.
std::vector<ShownText> shownElements(const PropValue& value);
bool isArray(const PropValue& value);
// Is it an array property that holds no array?
bool isNullArray(const PropValue& value);

} // namespace velmora_clp

#endif
