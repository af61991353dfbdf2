// A session on the sample controller as the address service sees it: a client of the simulator and
// a run directory's database.
#ifndef VELCLP_TESTS_ENGINE_ADDRESS_SESSION_H
#define VELCLP_TESTS_ENGINE_ADDRESS_SESSION_H

#include "tests/support/run_directory.h"
#include "tests/support/simulator_process.h"
#include "velclp/addrsvc.h"
#include "velclp/cimhandle.h"
#include "velclp/schema.h"

#include <map>
#include <string>

namespace velmora_clp {

inline CimClient connectTo(const SimulatorProcess& simulator) {
    CimStatus status;
    return CimClient(cmciConnect("127.0.0.1", "http", simulator.port().c_str(), "admin01ff",
                                 nullptr, status.out()));
}

inline std::string textOf(CMPIObjectPath* path) {
    CimStatus status;
    return cimText(CimString(path->ft->toString(path, status.out())).get());
}

class AddressSession {
public:
    explicit AddressSession(const SimulatorProcess& simulator)
        : m_client(connectTo(simulator)), m_service(m_client.get()) {}

    CLPAddrSVC& service() { return m_service; }
    CMCIClient* client() { return m_client.get(); }

    // The object paths of an address as text, one a line.
    std::string resolve(const std::string& address) {
        const CimPaths paths(m_service.getCIMObjectPath(CLPAddrpath("/admin1", address)));
        std::string all;
        for (CMPIObjectPath* path : paths)
            all += (all.empty() ? "" : "\n") + textOf(path);
        return all;
    }
    std::string addressOf(const std::string& address) {
        const CimPaths paths(m_service.getCIMObjectPath(CLPAddrpath("/admin1", address)));
        return paths.empty() ? "" : m_service.getUfip(paths.front());
    }

    // All that can be addressed from an address on, with its object path: every class below it is
    // brought up to date.
    std::map<std::string, std::string> walk(const std::string& from = "/admin1") {
        std::map<std::string, std::string> found = {{from, resolve(from)}};
        CLPAddrpath path("/admin1", from);
        m_service.internalPath(path, path);
        const CLPSchema& schema = *CLPSchema::getInstance();
        const std::string tag = path.getUfct(path.getTerms().back());
        for (const std::string& child : schema.getChildren_ufcts(schema.getCIMClass(tag))) {
            resolve(from + "/" + child + "0");
            const std::string parent = path.getResultantAddress();
            for (const std::string& address : m_service.selectUfip(parent + "/" + child))
                found.merge(walk(address));
        }
        return found;
    }

private:
    CimClient m_client;
    CLPAddrSVC m_service;
};

} // namespace velmora_clp

#endif
