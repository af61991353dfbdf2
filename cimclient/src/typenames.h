// The names of CIM types on the wire (DSP0201, 5.1.1, CIMType and ParamType).
#ifndef CIMCLIENT_TYPENAMES_H
#define CIMCLIENT_TYPENAMES_H

#include <CimClientLib/cmci.h>

#include <optional>
#include <string_view>

namespace cimclient {

// Of a type or an array type; null for a type that has no form on the wire. Embedded instances
// travel as strings.
const char* typeName(CMPIType type);

// In any case; nothing for a name that is none.
std::optional<CMPIType> typeFromName(std::string_view name);

} // namespace cimclient

#endif
