// velclp: an SM CLP session for a login shell, a serial console, or a script.
#include "host/options.h"
#include "host/provision.h"
#include "host/session.h"
#include "log/osalog.h"
#include "velclp/locations.h"

#include <iostream>
#include <malloc.h>
#include <stdexcept>

namespace {

void configure(const host::Options& options) {
    if (!options.prefix.empty())
        velmora_clp::Locations::set(velmora_clp::Locations::inDirectory(options.prefix));
    if (options.logLevel >= 0)
        osalog_set_level(options.logLevel);
    if (!options.logFile.empty() && !osalog_set_file(options.logFile))
        throw std::runtime_error("cannot write the log file " + options.logFile);
}

int act(const host::Options& options) {
    switch (options.action) {
    case host::Options::SHOW_HELP:
        std::cout << host::usage();
        return 0;
    case host::Options::SHOW_VERSION:
        std::cout << "velclp " VELCLP_VERSION "\n";
        return 0;
    case host::Options::PROVISION:
        host::provision(options.provisionDir);
        return 0;
    default:
        configure(options);
        return host::runSession(options);
    }
}

} // namespace

// As a login shell the program is called with "-" before its name, which changes nothing: a login's
// session is like any other.
int main(int argc, char** argv) {
    // Commands run one at a time, each on a thread of its own: a heap for each would only cost
    // memory.
    mallopt(M_ARENA_MAX, 1);
    try {
        return act(host::parseOptions({argv + (argc > 0 ? 1 : 0), argv + argc}));
    } catch (const std::exception& failure) {
        std::cerr << "velclp: " << failure.what() << std::endl;
        return 1;
    }
}
