// What the client allows a server: how long it may take and how much it may send. The values hold
// for the whole process; a program may replace them before its first client, and tests do.
#ifndef CIMCLIENT_LIMITS_H
#define CIMCLIENT_LIMITS_H

#include <chrono>
#include <cstddef>

namespace cimclient {

struct Limits {
    // To have a connection, name look-up and TLS included.
    std::chrono::milliseconds connect{10'000};
    // Without a byte in either direction.
    std::chrono::seconds idle{300};
    // For a whole operation.
    std::chrono::milliseconds operation{600'000};
    // Bytes of a reply's body.
    std::size_t reply = 64UL * 1024 * 1024;
};

// Any thread; a call that has begun goes on with what it found.
Limits limits();
void setLimits(const Limits& limits);

} // namespace cimclient

#endif
