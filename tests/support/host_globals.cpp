// The globals that a host program defines; test programs have no completion of their own.
#include "velclp/parser.h"
#include "velclp/transport.h"

Transport* trans = nullptr;

std::vector<std::string> parser_help(const std::vector<std::string>& /*terms*/,
                                     const std::string& /*prefix*/) {
    return {};
}
