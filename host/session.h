// One CLP session from its set-up to its end.
#ifndef VELCLP_HOST_SESSION_H
#define VELCLP_HOST_SESSION_H

#include "host/options.h"

namespace host {

// Runs the session on the standard descriptors; gives the process's exit status.
int runSession(const Options& options);

} // namespace host

#endif
