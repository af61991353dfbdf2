// The globals that a host program defines; a test program may define a completion of its own.
#include "velclp/parser.h"
#include "velclp/transport.h"

Transport* trans = nullptr;

__attribute__((weak)) std::vector<std::string>
parser_help(const std::vector<std::string>& /*terms*/, const std::string& /*prefix*/) {
    return {};
}
