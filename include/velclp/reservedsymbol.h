#ifndef VELCLP_RESERVEDSYMBOL_H
#define VELCLP_RESERVEDSYMBOL_H

// True if the text holds, anywhere, one of the strings that an unquoted property value must not
// contain (DSP0214, clause 5.1); case counts. A null pointer ends the process. Any thread.
bool lookupReservedSymbol(const char* ele);

#endif
