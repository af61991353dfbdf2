// The host program with what a test cannot arrange from outside: a terminal that is named like a
// serial line, a configuration store, and updates that are looked at more often.
//
//     velclp_pretended_host [<the host's arguments>] [--tty NAME] [--store FILE] [--poll MSEC]
#include "config/aim_config.h"
#include "host/options.h"
#include "host/session.h"
#include "velclp/clpman.h"
#include "velclp/locations.h"
#include "velclp/mapping.h"

namespace {

std::string s_terminal;

// False for an option that is the host's own.
bool pretend(const std::string& option, const std::string& value) {
    if (option == "--poll") {
        velmora_clp::CLPMapping::setUpdatePollInterval(std::chrono::milliseconds(std::stoi(value)));
    } else if (option == "--store") {
        aim_config_use_file(value);
    } else if (option == "--tty") {
        s_terminal = value;
        setTtyNameFunc([](int) { return s_terminal.c_str(); });
    } else {
        return false;
    }
    return true;
}

} // namespace

int main(int argc, char** argv) {
    std::vector<std::string> arguments(argv + 1, argv + argc);
    while (arguments.size() > 1 && pretend(arguments[arguments.size() - 2], arguments.back()))
        arguments.resize(arguments.size() - 2);
    const host::Options options = host::parseOptions(arguments);
    velmora_clp::Locations::set(velmora_clp::Locations::inDirectory(options.prefix));
    return host::runSession(options);
}
