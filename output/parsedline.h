// Access to the parsed line of a command: a response without one is a programming error.
#ifndef VELCLP_OUTPUT_PARSEDLINE_H
#define VELCLP_OUTPUT_PARSEDLINE_H

#include "velclp/assertion.h"
#include "velclp/token.h"

#include <boost/shared_ptr.hpp>

namespace velmora_clp {

inline CLPToken& parsedLine(const boost::shared_ptr<CLPToken>& token) {
    VELCLP_ASSERT(token.get() != nullptr, "px != 0");
    return *token;
}

} // namespace velmora_clp

#endif
