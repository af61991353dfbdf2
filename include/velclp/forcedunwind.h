// For functions with a handler for abi::__forced_unwind, the exception as which a thread's
// pthread_exit unwinds its frames. It has no object, which the undefined-behaviour sanitizer takes
// for a reference to null.
#ifndef VELCLP_FORCEDUNWIND_H
#define VELCLP_FORCEDUNWIND_H

#include <cxxabi.h>

#define VELCLP_HANDLES_FORCED_UNWIND __attribute__((no_sanitize("null")))

#endif
