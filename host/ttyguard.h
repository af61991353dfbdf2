// Gives the terminal its settings back when the process ends in a way that no destructor sees: a
// call of exit(), a failed assertion, a fault.
#ifndef VELCLP_HOST_TTYGUARD_H
#define VELCLP_HOST_TTYGUARD_H

namespace host {

// Remembers the settings of the terminal on standard input, if it is one, before they are changed.
void guardTerminal();

} // namespace host

#endif
