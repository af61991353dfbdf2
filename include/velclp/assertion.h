// Assertions that are part of the behaviour: they hold in every build type.
#ifndef VELCLP_ASSERTION_H
#define VELCLP_ASSERTION_H

namespace velmora_clp {

// Prints "FILE:LINE: Assertion `TEXT' failed." on standard error, logs it as a failure and ends
// the process with abort().
[[noreturn]] void assertionFailed(const char* text, const char* file, int line);

} // namespace velmora_clp

// Ends the process with the fixed text when the condition does not hold.
#define VELCLP_ASSERT(condition, text)                                                             \
    do {                                                                                           \
        if (!(condition))                                                                          \
            ::velmora_clp::assertionFailed(text, __FILE__, __LINE__);                              \
    } while (false)

#endif
