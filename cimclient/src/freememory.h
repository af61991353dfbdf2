// What a single large reply took is given back to the system instead of staying with a process
// that may sit at its prompt for hours.
#ifndef CIMCLIENT_MEMORY_H
#define CIMCLIENT_MEMORY_H

#include <cstddef>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace cimclient {

// Takes milliseconds: for after something large was freed.
inline void returnFreeMemory() {
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

} // namespace cimclient

#endif
