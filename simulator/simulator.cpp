#include "simulator/simulator.h"

#include "simulator/controlroutes.h"
#include "simulator/mofloader.h"

#include <unistd.h>

#include <array>
#include <stdexcept>

namespace velclp_sim {

namespace {

std::string hostName() {
    std::array<char, 256> name{};
    return ::gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "localhost";
}

} // namespace

Simulator::Simulator(const Options& options)
    : options_(options),
      scheduler_(options.speed),
      services_{repository_, scheduler_, options.database},
      providers_(repository_, makeProviders(services_)),
      service_(repository_, providers_, scheduler_, hostName()) {
    MofLoader loader(repository_, options_.nameSpace);
    const std::vector<std::string> sample{sampleModel()};
    for (const std::string& model : options_.models.empty() ? sample : options_.models) {
        loader.addPath(model);
    }
    loader.load();
    for (const Scale& scale : options_.scales) {
        scaleModel(repository_, options_.nameSpace, scale);
    }
    providers_.start();
    // Clients differ in the path that they post to.
    server_.Post("/(cimom)?", [this](const httplib::Request& request, httplib::Response& response) {
        answer(request, response);
    });
    addControlRoutes(server_, service_, repository_, options_.nameSpace);
}

int Simulator::bind() {
    const int port = server_.bindTo(options_.host, options_.port);
    if (port <= 0) {
        throw std::runtime_error("cannot listen on " + options_.host + ":" +
                                 std::to_string(options_.port));
    }
    return port;
}

void Simulator::stop() {
    scheduler_.stop();
    server_.stopServing();
}

void Simulator::answer(const httplib::Request& request, httplib::Response& response) {
    CimReply reply = service_.answer({request.body, request.get_header_value("CIMOperation"),
                                      request.get_header_value("CIMMethod"),
                                      request.get_header_value("Authorization")});
    if (reply.drop) {
        HttpServer::dropConnection();
        return;
    }
    if (reply.cutAfter) {
        HttpServer::cutReply(reply.body.size() - *reply.cutAfter);
    }
    response.status = reply.status;
    if (!reply.cimError.empty()) {
        response.set_header("CIMError", reply.cimError);
    }
    if (reply.status == 200) {
        response.set_header("CIMOperation", "MethodResponse");
        response.body = std::move(reply.body);
        response.set_header("Content-Type", "application/xml; charset=\"utf-8\"");
    }
}

} // namespace velclp_sim
