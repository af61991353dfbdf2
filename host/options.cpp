#include "host/options.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <functional>
#include <stdexcept>

namespace host {

namespace {

int number(const std::string& option, const std::string& text) {
    char* end = nullptr;
    const long value = std::strtol(text.c_str(), &end, 10);
    if (text.empty() || *end != '\0' || value < 0 || value > INT_MAX)
        throw std::runtime_error(option + " takes a number, not \"" + text + "\"");
    return static_cast<int>(value);
}

// The lines of one -c, which may be several: a remote shell hands on what it was given.
void addLines(Options& options, const std::string& text) {
    std::size_t begin = 0;
    while (begin <= text.size()) {
        const std::size_t end = std::min(text.find('\n', begin), text.size());
        options.lines.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    options.hasLines = true;
}

struct Option {
    const char* name;
    bool takesValue;
    std::function<void(Options&, const std::string&)> apply;
};

const std::vector<Option>& table() {
    static const std::vector<Option> options = {
        {"--host", true, [](Options& o, const std::string& v) { o.host = v; }},
        {"--port", true, [](Options& o, const std::string& v) { o.port = v; }},
        {"--prefix", true, [](Options& o, const std::string& v) { o.prefix = v; }},
        {"-c", true, addLines},
        {"--timeout", true,
         [](Options& o, const std::string& v) { o.timeout = number("--timeout", v); }},
        {"--log", true, [](Options& o, const std::string& v) { o.logFile = v; }},
        {"--log-level", true,
         [](Options& o, const std::string& v) { o.logLevel = number("--log-level", v); }},
        {"--help-file", true, [](Options& o, const std::string& v) { o.helpFile = v; }},
        {"--provision", true,
         [](Options& o, const std::string& v) {
             o.provisionDir = v;
             o.action = Options::PROVISION;
         }},
        {"--help", false, [](Options& o, const std::string&) { o.action = Options::SHOW_HELP; }},
        {"--version", false,
         [](Options& o, const std::string&) { o.action = Options::SHOW_VERSION; }},
    };
    return options;
}

} // namespace

Options parseOptions(const std::vector<std::string>& arguments) {
    Options options;
    for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
        const std::size_t equals =
            argument->compare(0, 2, "--") == 0 ? argument->find('=') : std::string::npos;
        const std::string name = argument->substr(0, equals);
        const auto option = std::find_if(table().begin(), table().end(),
                                         [&](const Option& entry) { return name == entry.name; });
        if (option == table().end())
            throw std::runtime_error("unknown argument \"" + *argument + "\" (try --help)");
        if (!option->takesValue && equals != std::string::npos)
            throw std::runtime_error(name + " takes no value");
        std::string value;
        if (equals != std::string::npos)
            value = argument->substr(equals + 1);
        else if (option->takesValue && ++argument == arguments.end())
            throw std::runtime_error(name + " needs a value");
        else if (option->takesValue)
            value = *argument;
        option->apply(options, value);
    }
    return options;
}

std::string usage() {
    return "usage: velclp [option ...]\n"
           "Runs an SM CLP session against a CIM server, for the user in the environment\n"
           "variables USER and privileges (511: everything, 1: reading only, 0: nothing).\n"
           "\n"
           "  --host NAME       the CIM server's host (localhost)\n"
           "  --port PORT       its port (5988)\n"
           "  --prefix DIR      schema, databases and help topics of this run directory\n"
           "  -c LINE           run this line and end; may be given several times\n"
           "  --timeout SECONDS end the session at a prompt that is idle for so long\n"
           "  --log FILE        write the log there, not to the system's log\n"
           "  --log-level N     1 failures (the default), 3 values, 5 every step; 0 nothing\n"
           "  --help-file FILE  the help topics\n"
           "  --provision DIR   make a run directory and end\n"
           "  --help, --version show this, or the version\n"
           "\n"
           "On a terminal it prompts; otherwise it reads lines to the end of its input.\n";
}

} // namespace host
