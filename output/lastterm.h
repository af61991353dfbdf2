// The last term of an address, in its parts, and the ufit element that clpxml makes of it.
#ifndef VELCLP_OUTPUT_LASTTERM_H
#define VELCLP_OUTPUT_LASTTERM_H

#include "output/writer.h"

#include <string>

namespace velmora_clp {

// All parts are empty for the root and for a text that is no address.
struct LastTerm {
    std::string term; // "system1"
    std::string ufct; // "system"
    std::string ufis; // "1"
};

LastTerm lastTermOf(const std::string& address);

void ufit_element(const Writer& out, const std::string& address);

} // namespace velmora_clp

#endif
