// The command line of velclp-sim.
#pragma once

#include "simulator/modelcontrol.h"

#include <string>
#include <vector>

namespace velclp_sim {

struct Options {
    std::string host = "127.0.0.1";
    int port = 5988;
    /// Files and directories; the installed sample when none was given.
    std::vector<std::string> models;
    std::string nameSpace = "root/zorm";
    std::string database;
    std::vector<Scale> scales;
    double speed = 1.0;
    /// Ends when the process that started it ends.
    bool dieWithParent = false;
    bool help = false;
    bool version = false;
};

/// Throws std::invalid_argument with a line that says what is wrong.
Options readOptions(int argc, char* argv[]);

/// The text of --help.
std::string usage();

/// Where the sample model lies: beside the program as it is installed or built, else where it was
/// to be installed.
std::string sampleModel();

} // namespace velclp_sim
