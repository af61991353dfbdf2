#include "tests/support/clp_session.h"

std::unique_ptr<ChildProcess> startSession(const RunDirectory& directory, const std::string& port,
                                           const SessionOptions& options) {
    std::vector<std::string> command = {VELCLP_HOST_PROGRAM, "--prefix", directory.path(), "--port",
                                        port};
    if (!options.host.empty())
        command.insert(command.end(), {"--host", options.host});
    command.insert(command.end(), options.arguments.begin(), options.arguments.end());
    return std::make_unique<ChildProcess>(
        command, std::map<std::string, std::string>{{"USER", options.user},
                                                    {"privileges", options.privileges}});
}

SessionResult runSession(const RunDirectory& directory, const std::string& port,
                         const std::string& input, const SessionOptions& options) {
    const auto session = startSession(directory, port, options);
    session->send(input);
    const int status = session->wait(options.limit);
    return {session->output(), session->errors(), status};
}
