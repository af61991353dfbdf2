// Any bytes as a request to the simulated controller: the first line is the Authorization header,
// the rest the body. What comes back is a CIM reply that answers this request, or an error of HTTP.
#include "simulator/cimservice.h"
#include "simulator/cimxmlreader.h"
#include "simulator/mofloader.h"
#include "simulator/providerset.h"
#include "tests/fuzz/require.h"

#include <pugixml.hpp>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>

namespace {

using namespace velclp_sim;

/// The sample controller and its providers, without a server and without a session database.
struct Controller {
    Repository repository;
    // What takes its time shall take none.
    Scheduler scheduler{1e9};
    Services services{repository, scheduler, ""};
    ProviderSet providers{repository, makeProviders(services)};
    CimService service{repository, providers, scheduler, "host"};

    Controller() {
        MofLoader loader(repository, "root/zorm");
        loader.addPath(VELCLP_SIM_SAMPLE_MODEL);
        loader.load();
        providers.start();
    }
};

/// True for an answer without an error.
bool checkBody(const std::string& body) {
    pugi::xml_document document;
    require(document.load_buffer(body.data(), body.size()).status == pugi::status_ok);
    const pugi::xml_node response =
        document.child("CIM").child("MESSAGE").child("SIMPLERSP").first_child();
    require(*document.child("CIM").child("MESSAGE").attribute("ID").value() != '\0');
    require(*response.attribute("NAME").value() != '\0');
    const pugi::xml_node error = response.child("ERROR");
    const int code = error.attribute("CODE").as_int();
    require(!error || (code >= 1 && code <= 17 && *error.attribute("DESCRIPTION").value() != '\0'));
    return !error;
}

bool isReading(const Request& request) {
    const std::string name = lowerName(request.name);
    const auto begins = [&](const char* word) { return name.rfind(word, 0) == 0; };
    return request.intrinsic && (begins("get") || begins("enumerate") || begins("associator") ||
                                 begins("reference") || begins("exec"));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static std::unique_ptr<Controller> controller;
    if (!controller)
        controller = std::make_unique<Controller>();
    const std::string input(reinterpret_cast<const char*>(data), size);
    const std::size_t line = std::min(input.find('\n'), input.size());
    const std::string body = input.substr(std::min(line + 1, size));
    const CimReply reply = controller->service.answer({body, "", "", input.substr(0, line)});
    require(!reply.drop && !reply.cutAfter);
    if (reply.status != 200) {
        require((reply.status == 400 || reply.status == 501) && !reply.cimError.empty());
        return 0;
    }
    // Each input meets the same controller.
    if (checkBody(reply.body) && !isReading(readRequest(body)))
        controller.reset();
    return 0;
}
