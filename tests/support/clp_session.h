// Sessions of the host program on pipes, the way a script uses it.
#ifndef VELCLP_TESTS_SUPPORT_CLP_SESSION_H
#define VELCLP_TESTS_SUPPORT_CLP_SESSION_H

#include "tests/support/child_process.h"
#include "tests/support/run_directory.h"

#include <memory>

struct SessionOptions {
    std::string user = "admin";
    std::string privileges = "511";
    // "" leaves the host's own default, a session on the controller itself.
    std::string host;
    std::vector<std::string> arguments;
    ChildProcess::Milliseconds limit{60000};
};

struct SessionResult {
    std::string output;
    std::string errors;
    int status = 0;
};

// Starts a session on the simulator's port; lines are sent to it and its output read by the caller.
std::unique_ptr<ChildProcess> startSession(const RunDirectory& directory, const std::string& port,
                                           const SessionOptions& options = {});

// Runs a whole session: the input is all that it reads. The bytes that it gave back.
SessionResult runSession(const RunDirectory& directory, const std::string& port,
                         const std::string& input, const SessionOptions& options = {});

#endif
