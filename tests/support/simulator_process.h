// A simulator on a free loopback port, with the sample model and the session database of a run
// directory. It ends with this object.
#ifndef VELCLP_TESTS_SUPPORT_SIMULATOR_PROCESS_H
#define VELCLP_TESTS_SUPPORT_SIMULATOR_PROCESS_H

#include "tests/support/child_process.h"
#include "tests/support/run_directory.h"

#include <memory>

class SimulatorProcess {
public:
    // Further arguments stand behind the usual ones ("--scale", "ZORM_Sensor=100"). Throws
    // std::runtime_error with what it printed when it does not come up.
    explicit SimulatorProcess(const RunDirectory& directory,
                              const std::vector<std::string>& arguments = {});

    const std::string& port() const { return m_port; }
    ChildProcess& process() { return *m_process; }

    // Asks a "/sim/..." resource; the reply's body. Throws std::runtime_error unless it is a 200.
    std::string get(const std::string& resource) const;
    std::string post(const std::string& resource, const std::string& body) const;

    // Ends it at once, as a controller's CIM server that goes away.
    void stop();

private:
    std::string request(const std::string& method, const std::string& resource,
                        const std::string& body) const;

    std::unique_ptr<ChildProcess> m_process;
    std::string m_port;
};

#endif
