#include "simulator/options.h"

#include "simulator/names.h"
#include "simulator/words.h"

#include <getopt.h>

#include <array>
#include <filesystem>
#include <stdexcept>

namespace velclp_sim {

namespace {

double readSpeed(const std::string& text) {
    std::size_t used = 0;
    double speed = 0;
    try {
        speed = std::stod(text, &used);
    } catch (const std::logic_error&) {
        used = 0;
    }
    if (used != text.size() || !(speed > 0) || speed > 1e6) {
        throw std::invalid_argument("--speed needs a number above 0, not " + text);
    }
    return speed;
}

int readPort(const std::string& text) {
    const std::uint64_t port = parseNumber(text, "--port");
    if (port > 65535) {
        throw std::invalid_argument("--port goes up to 65535");
    }
    return static_cast<int>(port);
}

void apply(Options& options, int option, const std::string& value) {
    switch (option) {
    case 'H':
        options.host = value;
        break;
    case 'p':
        options.port = readPort(value);
        break;
    case 'm':
        options.models.push_back(value);
        break;
    case 'n':
        options.nameSpace = trimNamespace(value);
        break;
    case 'd':
        options.database = value;
        break;
    case 's':
        options.scales.push_back(readScale(value));
        break;
    case 'f':
        options.speed = readSpeed(value);
        break;
    case 'P':
        options.dieWithParent = true;
        break;
    case 'h':
        options.help = true;
        break;
    case 'V':
        options.version = true;
        break;
    default:
        throw std::invalid_argument("try --help");
    }
}

} // namespace

Options readOptions(int argc, char* argv[]) {
    static constexpr std::array<option, 11> known = {{
        {"host", required_argument, nullptr, 'H'},
        {"port", required_argument, nullptr, 'p'},
        {"model", required_argument, nullptr, 'm'},
        {"namespace", required_argument, nullptr, 'n'},
        {"database", required_argument, nullptr, 'd'},
        {"scale", required_argument, nullptr, 's'},
        {"speed", required_argument, nullptr, 'f'},
        {"die-with-parent", no_argument, nullptr, 'P'},
        {"help", no_argument, nullptr, 'h'},
        {"version", no_argument, nullptr, 'V'},
        {nullptr, 0, nullptr, 0},
    }};
    Options options;
    optind = 0;
    for (int found = 0; (found = getopt_long(argc, argv, "hV", known.data(), nullptr)) != -1;) {
        apply(options, found, optarg ? optarg : "");
    }
    if (optind < argc) {
        throw std::invalid_argument(std::string("unexpected argument ") + argv[optind]);
    }
    return options;
}

std::string usage() {
    return R"(usage: velclp-sim [options]

A CIM server (CIM-XML over HTTP) that plays a server's management controller.

  --host ADDRESS      listen on this address (127.0.0.1)
  --port PORT         listen on this port (5988); 0 takes a free one
  --model PATH        load this MOF file, or the *.mof files of this directory;
                      may be given several times (the installed sample)
  --namespace NAME    namespace of the model where it names none (root/zorm)
  --database FILE     the session database, in which sessions and jobs are rows
  --scale CLASS=N     copy the instances of a class until there are N;
                      CLASS=N:PROPERTY,... numbers these properties on as well
  --speed FACTOR      let changes that take time happen that much faster (1)
  --die-with-parent   end when the starting process ends
  --help, --version   say this, or the version, and end

"listening on ADDRESS:PORT" is printed when requests are answered. SIGTERM and
SIGINT end the server. /sim/stats, /sim/log, /sim/faults and /sim/model observe
and change it while it runs.
)";
}

std::string sampleModel() {
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error).parent_path();
    for (const char* beside : {"../share/velclp/model", "../../share/model"}) {
        const fs::path model = program / beside;
        if (fs::is_directory(model, error)) {
            return model.string();
        }
    }
    return VELCLP_SIM_MODEL_DIR;
}

} // namespace velclp_sim
