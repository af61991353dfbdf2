// Reading and writing single CMPI values by their type: what address service and mapping share.
#ifndef VELCLP_MAPPING_CIMVALUE_H
#define VELCLP_MAPPING_CIMVALUE_H

#include "velclp/cimhandle.h"

#include <string>

namespace velmora_clp {

// The bit that marks array types.
constexpr unsigned int arrayFlag = 1U << 13;

inline CMPIType elementType(CMPIType type) {
    return static_cast<CMPIType>(type & ~arrayFlag);
}

inline bool isArray(CMPIType type) {
    return (type & arrayFlag) != 0;
}

// Whether there is a value at all: not null, not missing, not bad. The key bit may be set.
inline bool hasValue(const CMPIData& data) {
    return (data.state & (CMPI_nullValue | CMPI_notFound | CMPI_badValue)) == 0;
}

// Whether the value is an array with at least one element.
bool hasElements(const CMPIData& data);

// The array of a value that is one, null for anything else and for a null value.
CMPIArray* arrayOf(const CMPIData& data);

// The text of a value; "NULL" for a null value, "" for an array.
std::string dataText(const CMPIData& data);

// The text of an array's element; "NULL" for one that is unset or out of range.
std::string elementText(CMPIArray* array, unsigned int index);

// The number of elements; 0 for null.
unsigned int arraySize(CMPIArray* array);

// Sets the member of an integer type to the low bits of a number.
void setInteger(CMPIValue& value, CMPIType type, CMPIUint64 bits);

// What a setter takes for a value: its address, but for CMPI_chars the text of its string. Writes
// to an instance or to arguments; both copy.
void setProperty(CMPIInstance* instance, const std::string& name, const CMPIData& data);
void addArg(CMPIArgs* args, const std::string& name, const CMPIData& data);

// Whether a value is an object path, as an enumeration of names holds them.
inline bool isReference(const CMPIData& data) {
    return data.type == CMPI_ref && data.value.ref != nullptr;
}

} // namespace velmora_clp

#endif
