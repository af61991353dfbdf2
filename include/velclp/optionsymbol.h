#ifndef VELCLP_OPTIONSYMBOL_H
#define VELCLP_OPTIONSYMBOL_H

#include <string>
#include <vector>

// The options of the command language (DSP0214, clause 6), and which verb takes which. Constant
// data; any thread.

// The token number of an option as the verb takes it, by its long or short name without regard to
// case: TK_OPT_INVALID (295) when there is no such option or the verb does not allow it,
// TK_OPT_UNSUPPORTED (296) when the verb allows it but it is not implemented. The long name is
// stored in name whenever the option exists at all. The verb must be one of the thirteen; another
// one, or a null option, ends the process.
short lookupOptionSymbol(short verb, const char* option, std::string& name);

// The long names of the options that a verb takes and that are implemented, in the order in which
// they are listed to the operator. The verb must be one of the thirteen, or the process ends.
std::vector<std::string> getSupportedOptions(short verb);

#endif
