#include "typenames.h"

#include "text.h"

#include <algorithm>
#include <iterator>

namespace cimclient {

namespace {

struct Name {
    CMPIType type;
    const char* name;
};

// The first entry of a type or name is the one that is found.
constexpr Name names[] = {
    {CMPI_string, "string"},         {CMPI_uint16, "uint16"},        {CMPI_boolean, "boolean"},
    {CMPI_uint32, "uint32"},         {CMPI_uint64, "uint64"},        {CMPI_dateTime, "datetime"},
    {CMPI_ref, "reference"},         {CMPI_uint8, "uint8"},          {CMPI_sint8, "sint8"},
    {CMPI_sint16, "sint16"},         {CMPI_sint32, "sint32"},        {CMPI_sint64, "sint64"},
    {CMPI_real32, "real32"},         {CMPI_real64, "real64"},        {CMPI_char16, "char16"},
    {CMPI_instance, "string"},       {CMPI_numericString, "string"}, {CMPI_booleanString, "string"},
    {CMPI_dateTimeString, "string"},
};

} // namespace

const char* typeName(CMPIType type) {
    const auto element = static_cast<CMPIType>(type & ~CMPI_ARRAY);
    const auto found = std::find_if(std::begin(names), std::end(names),
                                    [element](const Name& n) { return n.type == element; });
    return found == std::end(names) ? nullptr : found->name;
}

std::optional<CMPIType> typeFromName(std::string_view name) {
    const auto found = std::find_if(std::begin(names), std::end(names),
                                    [name](const Name& n) { return equalNoCase(n.name, name); });
    return found == std::end(names) ? std::nullopt : std::optional<CMPIType>(found->type);
}

} // namespace cimclient
