// A session on the sample controller as the address service sees it: a client of the simulator and
// a run directory's database.
#ifndef VELCLP_TESTS_ENGINE_ADDRESS_SESSION_H
#define VELCLP_TESTS_ENGINE_ADDRESS_SESSION_H

#include "tests/support/run_directory.h"
#include "tests/support/simulator_process.h"
#include "velclp/addrsvc.h"
#include "velclp/cimhandle.h"
#include "velclp/schema.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <vector>

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

// The cache has no object without keys, no keys without an object, and neither an object nor an
// address twice.
inline void expectSoundCache(const RunDirectory& directory) {
    EXPECT_EQ("", directory.query(
                      "clp.db3",
                      "SELECT 'bare',ufip FROM addrsvc_clp WHERE id NOT IN (SELECT id FROM "
                      "addrsvc_cim) UNION ALL SELECT 'lost',id FROM addrsvc_cim WHERE id NOT IN "
                      "(SELECT id FROM addrsvc_clp) UNION ALL SELECT 'address',ufip FROM "
                      "addrsvc_clp GROUP BY ufip HAVING count(*)>1 UNION ALL SELECT 'key',name "
                      "FROM addrsvc_cim GROUP BY id,name HAVING count(*)>1 UNION ALL SELECT "
                      "'object',min(u) FROM (SELECT c.ufip AS u,c.cimclass||c.ns||group_concat("
                      "k.name||'='||k.value) AS o FROM addrsvc_clp c JOIN addrsvc_cim k ON "
                      "k.id=c.id GROUP BY c.id) GROUP BY o HAVING count(*)>1"));
    EXPECT_EQ("ok\n", directory.query("clp.db3", "PRAGMA integrity_check"));
}

// The lines of a text.
inline std::vector<std::string> linesOf(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
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
