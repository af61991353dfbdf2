// Any text as the value of a property of any type (the first byte chooses it): refused, or made a
// value whose text, typed again, makes the same value again.
#include "mapping/cimvalue.h"
#include "output/propvalue.h"
#include "tests/fuzz/require.h"
#include "tests/unit/fake_cim.h"

#include <cctype>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

using namespace velmora_clp;

const CMPIType TYPES[] = {CMPI_string, CMPI_boolean, CMPI_uint8,   CMPI_uint16, CMPI_uint32,
                          CMPI_uint64, CMPI_sint8,   CMPI_sint16,  CMPI_sint32, CMPI_sint64,
                          CMPI_real32, CMPI_real64,  CMPI_dateTime};
constexpr unsigned int MOST_ELEMENTS = 4096;
constexpr unsigned int ARRAY = 1;
constexpr unsigned int NAMED = 2;

// A class with one property for each type, each array type, and both with display texts.
CimClass makeClass() {
    const std::map<std::string, std::vector<std::string>> texts = {
        {"Values", {"Enabled", "Disabled", "Yes", "Other", "Vendor", "Unmapped"}},
        {"ValueMap", {"2", "3", "true", "", "32768..65535"}}};
    fakecim::ClassModel model;
    for (const CMPIType type : TYPES)
        for (const unsigned int form : {0U, ARRAY, NAMED, ARRAY | NAMED})
            model.properties.push_back(
                {"P" + std::to_string(model.properties.size()),
                 {static_cast<CMPIType>(type | (form & ARRAY ? CMPI_ARRAY : 0)),
                  form & NAMED ? texts : std::map<std::string, std::vector<std::string>>()}});
    return CimClass(fakecim::Class::make(model));
}

// Null for a text that is no value of the property.
OwnedPropValue normal(CMPIConstClass* cimclass, const std::string& name, const std::string& text) {
    CMPIData data = {};
    if (!CLPMisc::normalProperty(cimclass, name, text, &data)) {
        require(data.state == CMPI_nullValue && !data.value.array);
        return nullptr;
    }
    require(data.state == CMPI_goodValue);
    const CimArray array(isArray(data.type) ? data.value.array : nullptr);
    const CimString string(data.type == CMPI_string ? data.value.string : nullptr);
    const CimDateTime time(data.type == CMPI_dateTime ? data.value.dateTime : nullptr);
    return copyValue(data, cimclass, name);
}

// A number is typed within the bounds of an int, whatever the width of the type.
bool canBeTyped(CMPIType type, const std::string& text) {
    const bool integer = (type & CMPI_INTEGER) != 0 && type < CMPI_ENC && (type & 0xf0) != 0;
    return !integer || std::strtoll(text.c_str(), nullptr, 10) <= INT_MAX;
}

bool isHarmless(const std::string& text) {
    return harmless(text) == text;
}

void checkScalar(CMPIConstClass* cimclass, const std::string& name, const PropValue& value) {
    const std::string text = dataText(*value.data);
    const ShownText shown = shownText(*value.data, value.values, value.valuemap);
    require(shown.value == harmless(text) && isHarmless(shown.value));
    if (!canBeTyped(value.data->type, text))
        return;
    const OwnedPropValue again = normal(cimclass, name, text);
    require(again && dataText(*again->data) == text);
    if (!shown.name || !isHarmless(text))
        return;
    const OwnedPropValue named = normal(cimclass, name, *shown.name);
    require(named && dataText(*named->data) == text);
}

// Each element with its place, as an operator would type it.
std::string typedElements(const PropValue& value) {
    std::string typed;
    CMPIArray* const array = arrayOf(*value.data);
    for (unsigned int i = 0; i < arraySize(array); ++i) {
        const CMPIData element = array->ft->getElementAt(array, i, nullptr);
        if (hasValue(element) && canBeTyped(element.type, dataText(element)))
            typed += (typed.empty() ? "" : ":") + dataText(element) + "," + std::to_string(i);
    }
    return typed;
}

void checkArray(CMPIConstClass* cimclass, const std::string& name, const PropValue& value) {
    if (arraySize(arrayOf(*value.data)) > MOST_ELEMENTS)
        return;
    const std::string typed = typedElements(value);
    require(shownElements(value).size() == arraySize(arrayOf(*value.data)));
    if (typed.empty())
        return;
    const OwnedPropValue again = normal(cimclass, name, typed);
    require(again && typedElements(*again) == typed);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const CimClass cimclass = makeClass();
    const std::string text(reinterpret_cast<const char*>(data), size);
    if (text.find('\0') != std::string::npos || text.empty())
        return 0;
    const std::size_t properties = 4 * (sizeof TYPES / sizeof TYPES[0]);
    const std::string name = "P" + std::to_string((data[0] - 1U) % properties);
    const OwnedPropValue value = normal(cimclass.get(), name, text.substr(1));
    if (!value)
        return 0;
    if (isArray(value->data->type))
        checkArray(cimclass.get(), name, *value);
    else
        checkScalar(cimclass.get(), name, *value);
    return 0;
}
