#include "velclp/assertion.h"

#include "velclp/log.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace velmora_clp {

void assertionFailed(const char* text, const char* file, int line) {
    const char* slash = std::strrchr(file, '/');
    const char* name = slash != nullptr ? slash + 1 : file;
    std::fflush(stdout);
    std::fprintf(stderr, "%s:%d: Assertion `%s' failed.\n", name, line, text);
    std::fflush(stderr);
    if (osalog_enabled(OSALOG_FAILURE)) {
        osalogpre(OSALOG_FAILURE, "CLP.assert", file, line);
        osalogmini("Assertion `%s' failed.", text);
    }
    std::abort();
}

} // namespace velmora_clp
