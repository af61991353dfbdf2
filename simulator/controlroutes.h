// The requests with which a test or a developer watches and changes the running simulator:
// /sim/stats, /sim/log, /sim/faults and /sim/model. docs/simulator.md describes them.
#pragma once

#include "simulator/cimservice.h"
#include "simulator/httpserver.h"

#include <string>

namespace velclp_sim {

/// Adds the routes; the service and the repository must outlive the server.
void addControlRoutes(HttpServer& server, CimService& service, Repository& repository,
                      const std::string& nameSpace);

} // namespace velclp_sim
