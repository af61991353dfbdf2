// What the host program is told on its command line.
#ifndef VELCLP_HOST_OPTIONS_H
#define VELCLP_HOST_OPTIONS_H

#include <string>
#include <vector>

namespace host {

struct Options {
    enum Action { RUN, SHOW_HELP, SHOW_VERSION, PROVISION };

    Action action = RUN;
    std::string host = "localhost";
    std::string port = "5988";
    std::string prefix;       // a provisioned run directory; "" for the system's own places
    std::string provisionDir; // for PROVISION
    bool hasLines = false;    // lines were given with -c: nothing is read
    std::vector<std::string> lines;
    int timeout = -1; // seconds; not above 0 leaves the time-out as it is
    std::string logFile;
    int logLevel = -1; // -1 leaves the level as it is
    std::string helpFile;
};

// Reads the arguments behind the program's name. Throws std::runtime_error with a line that says
// what is wrong.
Options parseOptions(const std::vector<std::string>& arguments);

// The text of --help.
std::string usage();

} // namespace host

#endif
