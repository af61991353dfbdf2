#include "simulator/controlroutes.h"

#include "simulator/modelcontrol.h"
#include "simulator/words.h"

#include <functional>
#include <stdexcept>

namespace velclp_sim {

namespace {

constexpr const char* plainText = "text/plain; charset=utf-8";
constexpr const char* json = "application/json";

/// Runs the action; what it throws becomes a 400 with one line of text.
void guarded(httplib::Response& response, const std::function<void()>& action) {
    try {
        action();
    } catch (const std::exception& error) {
        response.status = 400;
        response.set_content(std::string(error.what()) + "\n", plainText);
    }
}

void clearFaults(const httplib::Request& request, FaultTable& faults) {
    const std::string id = request.get_param_value("id");
    faults.clear(id.empty() ? 0 : static_cast<unsigned>(parseNumber(id, "id")));
}

void plantFaults(const httplib::Request& request, httplib::Response& response, FaultTable& faults) {
    if (request.get_param_value("do") == "clear") {
        clearFaults(request, faults);
        response.set_content("", plainText);
        return;
    }
    std::string ids;
    for (const unsigned id : faults.plant(request.body)) {
        ids += std::to_string(id) + "\n";
    }
    response.set_content(ids, plainText);
}

void changeModel(const httplib::Request& request, httplib::Response& response,
                 Repository& repository, const std::string& nameSpace) {
    const std::string what = request.get_param_value("do");
    if (what == "add") {
        addToModel(repository, nameSpace, request.body);
    } else if (what == "remove") {
        removeFromModel(repository, nameSpace, request.body);
    } else if (what == "reorder") {
        reorderModel(repository, nameSpace, request.get_param_value("class"), request.body);
    } else {
        throw std::invalid_argument("do=add, do=remove or do=reorder is needed");
    }
    response.set_content("", plainText);
}

void addObservation(HttpServer& server, CimService& service) {
    Statistics& statistics = service.statistics();
    server.Get("/sim/stats", [&](const httplib::Request&, httplib::Response& response) {
        response.set_content(statistics.toJson(), json);
    });
    const auto resetStatistics = [&](const httplib::Request&, httplib::Response& response) {
        statistics.reset();
        response.set_content(statistics.toJson(), json);
    };
    server.Post("/sim/stats", resetStatistics);
    server.Delete("/sim/stats", resetStatistics);
    server.Get("/sim/log", [&](const httplib::Request&, httplib::Response& response) {
        response.set_content(statistics.toLog(), plainText);
    });
    const auto resetLog = [&](const httplib::Request&, httplib::Response& response) {
        statistics.resetLog();
        response.set_content("", plainText);
    };
    server.Post("/sim/log", resetLog);
    server.Delete("/sim/log", resetLog);
}

void addFaults(HttpServer& server, FaultTable& faults) {
    server.Get("/sim/faults", [&](const httplib::Request&, httplib::Response& response) {
        response.set_content(faults.list(), plainText);
    });
    server.Post("/sim/faults", [&](const httplib::Request& request, httplib::Response& response) {
        guarded(response, [&] { plantFaults(request, response, faults); });
    });
    server.Delete("/sim/faults", [&](const httplib::Request& request, httplib::Response& response) {
        guarded(response, [&] {
            clearFaults(request, faults);
            response.set_content("", plainText);
        });
    });
}

} // namespace

void addControlRoutes(HttpServer& server, CimService& service, Repository& repository,
                      const std::string& nameSpace) {
    addObservation(server, service);
    addFaults(server, service.faults());
    const auto spaceOf = [nameSpace](const httplib::Request& request) {
        return request.has_param("namespace") ? request.get_param_value("namespace") : nameSpace;
    };
    server.Get("/sim/model", [&repository, spaceOf](const httplib::Request& request,
                                                    httplib::Response& response) {
        guarded(response, [&] {
            response.set_content(
                listModel(repository, spaceOf(request), request.get_param_value("class")),
                plainText);
        });
    });
    server.Post("/sim/model", [&repository, spaceOf](const httplib::Request& request,
                                                     httplib::Response& response) {
        guarded(response, [&] { changeModel(request, response, repository, spaceOf(request)); });
    });
}

} // namespace velclp_sim
