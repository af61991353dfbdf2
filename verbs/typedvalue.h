// A value of a CIM property or parameter, made from the text of a line and owned here.
#ifndef VELCLP_VERBS_TYPEDVALUE_H
#define VELCLP_VERBS_TYPEDVALUE_H

#include "velclp/showrecords.h"

#include <string>

namespace velmora_clp {

// The text as a value of a property that the class has; null when it is no such value.
OwnedPropValue typedValue(CMPIConstClass* cimclass, const std::string& name,
                          const std::string& text);
// A uint32. Throws boost::bad_lexical_cast for text that is no integer.
OwnedPropValue integerValue(const std::string& text);

} // namespace velmora_clp

#endif
