// The whole simulator: model, providers, CIM operations and HTTP server, put together from the
// options of the command line.
#pragma once

#include "simulator/cimservice.h"
#include "simulator/httpserver.h"
#include "simulator/options.h"
#include "simulator/providerset.h"

namespace velclp_sim {

class Simulator {
public:
    /// Loads the model and starts the providers. Throws std::runtime_error (MofError, CimError)
    /// with a text for the user.
    explicit Simulator(const Options& options);

    /// Begins to listen. Throws std::runtime_error when the address cannot be had. The port.
    int bind();

    /// Answers requests until stop() is called on another thread.
    void serve() { server_.serve(); }
    void stop();

private:
    void answer(const httplib::Request& request, httplib::Response& response);

    const Options options_;
    Repository repository_;
    Scheduler scheduler_;
    Services services_;
    ProviderSet providers_;
    CimService service_;
    HttpServer server_;
};

} // namespace velclp_sim
