// The current default target as commands take it over.
#ifndef VELCLP_CORE_DEFAULTTARGET_H
#define VELCLP_CORE_DEFAULTTARGET_H

#include <string>

namespace velmora_clp {

const char* const ROOT_TARGET = "/admin1";

// The session's current default target; "/admin1" when what stands there is no address of one
// object.
std::string currentDefaultTarget();

} // namespace velmora_clp

#endif
