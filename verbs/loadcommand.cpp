#include "velclp/loadcommand.h"

#include "output/classes.h"
#include "velclp/addrsvc.h"
#include "velclp/assertion.h"
#include "velclp/clpstring.h"
#include "velclp/coutputer.h"
#include "velclp/log.h"
#include "velclp/mapping.h"
#include "velclp/schema.h"
#include "velclp/token.h"

namespace velmora_clp {

CLPLoadCommand::~CLPLoadCommand() = default;

void CLPLoadCommand::svc() {
    constexpr char const* FUNCTION = "CLP.CLPLoadCommand.svc";
    VELCLP_TRACE(FUNCTION);
    CLPAddrSVC addresses(m_client);
    CLPAddrpath path("/admin1", "/admin1");
    if (!readTarget(addresses, path))
        return failNotFound(FUNCTION);
    const std::string ufct = tagOf(path);
    VELCLP_LOG_VALUE(FUNCTION, "ufct=[%s],ufip=[%s]", ufct.c_str(), resultantTarget(path).c_str());
    CLPMapping mapping(m_client, m_transport);
    takeError(mapping.smCheckCommand(ufct, "load"));
    if (m_error)
        return finish(FUNCTION);
    const CimPaths objects(addresses.getCIMObjectPath(path));
    if (objects.empty())
        return failNotFound(FUNCTION);
    const std::string options = CLPSchema::getInstance()->getOptionMap(ufct, "load");
    VELCLP_ASSERT(!options.empty(), "!options.empty()");
    std::vector<std::string> fields = splitString(options, ":", true);
    fields.resize(3);
    VELCLP_LOG_VALUE(FUNCTION, "method=[%s],type=[%s],cimclass=[%s]", fields[2].c_str(),
                     fields[1].c_str(), fields[0].c_str());
    std::string source;
    line().getOption("-source", source);
    const CLPMapping::TextPairs arguments = {{"", addressOf(addresses, objects.front())},
                                             {"source", source}};
    takeError(mapping.smSpecialMethod(fields[0], fields[2], &arguments, nullptr, objects.front()));
    // What has been loaded is loaded: a stop that came in meanwhile comes too late.
    m_stop = NO_STOP;
    finish(FUNCTION);
}

void CLPLoadCommand::display() {
    constexpr char const* function = "CLP.CLPLoadCommand.display";
    VELCLP_TRACE(function);
    _CLPStatus status = outcome(function);
    m_output->load_output(m_token, &status);
}

} // namespace velmora_clp
