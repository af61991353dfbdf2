#include "velclp/deletecommand.h"

#include "output/classes.h"
#include "velclp/addrsvc.h"
#include "velclp/assertion.h"
#include "velclp/clpsession.h"
#include "velclp/clpstring.h"
#include "velclp/coutputer.h"
#include "velclp/log.h"
#include "velclp/mapping.h"
#include "velclp/schema.h"
#include "velclp/token.h"

#include <CimClientLib/native.h>

namespace velmora_clp {

namespace {
constexpr char const* FUNCTION = "CLP.CLPDeleteCommand.svc";
} // namespace

CLPDeleteCommand::~CLPDeleteCommand() = default;

void CLPDeleteCommand::svc() {
    VELCLP_TRACE(FUNCTION);
    CLPAddrSVC addresses(m_client);
    CLPAddrpath path("/admin1", "/admin1");
    if (!normalTarget(addresses, m_cdt) || !readTarget(addresses, path))
        return failNotFound(FUNCTION);
    m_addresses.push_back(path.getResultantAddress());
    const std::string ufct = tagOf(path);
    VELCLP_LOG_VALUE(FUNCTION, "ufct=[%s],ufip=[%s]", ufct.c_str(), m_addresses.back().c_str());
    CLPMapping mapping(m_client, nullptr);
    takeError(mapping.smCheckCommand(ufct, "delete"));
    if (m_error)
        return finish(FUNCTION);
    const CimPaths objects(addresses.getCIMObjectPath(path));
    if (objects.empty())
        return failNotFound(FUNCTION);
    checkpoint();
    const Entry entry = entryOf(ufct);
    m_addresses.pop_front();
    if (entry.type == "container")
        emptyContainer(addresses, mapping, path, objects, entry);
    else
        deleteEach(addresses, mapping, objects, entry);
    finish(FUNCTION);
}

CLPDeleteCommand::Entry CLPDeleteCommand::entryOf(const std::string& ufct) {
    const std::string text = CLPSchema::getInstance()->getOptionMap(ufct, "delete");
    std::vector<std::string> fields = splitString(text, ":", true);
    fields.resize(4);
    Entry entry = {fields[0], fields[1], fields[2], fields[3]};
    if (!text.empty())
        VELCLP_ASSERT(entry.type == "special" || entry.type == "container",
                      "type==\"special\"||type==\"container\"");
    VELCLP_LOG_VALUE(FUNCTION, "method=[%s],type=[%s],cimclass=[%s]", entry.method.c_str(),
                     entry.type.c_str(), entry.cimclass.c_str());
    return entry;
}

void CLPDeleteCommand::deleteEach(CLPAddrSVC& addresses, CLPMapping& mapping,
                                  const CimPaths& objects, const Entry& entry) {
    for (CMPIObjectPath* object : objects) {
        checkpoint();
        const std::string ufip = addressOf(addresses, object);
        VELCLP_LOG_VALUE(FUNCTION, "ufip=[%s]", ufip.c_str());
        if (entry.type == "special") {
            CimStatus status;
            const CimArgs outputs(native_new_CMPIArgs(status.out()));
            const CLPMapping::TextPairs pairs = {{ufip, entry.parameter}};
            takeError(mapping.smSpecialMethod(entry.cimclass, entry.method, &pairs, outputs.get(),
                                              object));
        } else {
            takeError(mapping.smDeleteInstance(object));
        }
        m_addresses.push_back(ufip);
        if (m_error)
            return;
        if (!ufip.empty())
            addresses.deleteUfip(ufip);
    }
}

void CLPDeleteCommand::emptyContainer(CLPAddrSVC& addresses, CLPMapping& mapping,
                                      const CLPAddrpath& path, const CimPaths& objects,
                                      const Entry& entry) {
    if (path.getType() == 0)
        return setJobError(JobError::Unavailable_Resource_Error, JobError::CIM_ERR_NOT_SUPPORTED,
                           JobError::S_Medium);
    const CimPaths pobj(addresses.getCIMObjectPath(CLPAddrpath("/", resultantTarget(path))));
    VELCLP_ASSERT(static_cast<int>(pobj.size()) == 1, "static_cast<int>(pobj.size())==1");
    for (CMPIObjectPath* object : objects) {
        checkpoint();
        m_addresses.push_back(addressOf(addresses, object));
        VELCLP_LOG_VALUE(FUNCTION, "ufip=[%s]", m_addresses.back().c_str());
    }
    const CLPMapping::DataPairs inputs;
    CLPMapping::DataPairs outputs;
    takeError(mapping.smInvokeMethod(pobj.front(), entry.method, &inputs, &outputs));
    for (const std::string& ufip : m_addresses)
        if (!ufip.empty())
            addresses.deleteUfip(ufip);
}

void CLPDeleteCommand::display() {
    constexpr char const* function = "CLP.CLPDeleteCommand.display";
    VELCLP_TRACE(function);
    _CLPStatus status = outcome(function);
    m_output->delete_output(m_token, &status, &m_addresses);
}

} // namespace velmora_clp
