#ifndef VELCLP_VERBSYMBOL_H
#define VELCLP_VERBSYMBOL_H

#include <string>
#include <vector>

// The thirteen verbs of the command language (DSP0214, clause 5). Constant data; any thread.

// The token number of a verb, without regard to case; TK_OEM_VERB (262) for the empty word and
// TK_UNKNOWN_VERB (263) for every other one. A null pointer ends the process.
short lookupVerbSymbol(const char* ele);

// The verbs in the order in which they are listed to the operator.
std::vector<std::string> getSupportedVerbs();

#endif
