#include "velclp/setcommand.h"

#include "output/classes.h"
#include "velclp/addrsvc.h"
#include "velclp/assertion.h"
#include "velclp/coutputer.h"
#include "velclp/log.h"
#include "velclp/mapping.h"
#include "velclp/token.h"
#include "verbs/assignments.h"

#include <iostream>

namespace velmora_clp {

namespace {
constexpr char const* FUNCTION = "CLP.CLPSetCommand.svc";
} // namespace

CLPSetCommand::~CLPSetCommand() = default;

void CLPSetCommand::svc() {
    VELCLP_TRACE(FUNCTION);
    CLPAddrSVC addresses(m_client);
    CLPAddrpath path("/admin1", "/admin1");
    CimPaths objects;
    if (readTarget(addresses, path)) {
        m_address = resultantTarget(path);
        objects = CimPaths(findObjects(addresses, path));
    }
    if (objects.empty())
        return failNotFound(FUNCTION);
    m_object = cimClone(objects.front());
    const std::string cimclass = cimClassName(objects.front());
    VELCLP_ASSERT(!cimclass.empty(), "p_dispclass");
    std::string ufct = defaultTagOfClass(cimclass);
    if (ufct.empty())
        ufct = line()._AssocClass.empty() ? tagOf(path) : line()._AssocClass;
    CLPMapping mapping(m_client, m_transport);
    takeError(mapping.smCheckCommand(ufct, "set"));
    if (!m_error)
        takeError(write(addresses, mapping, objects.front(), ufct));
    finish(FUNCTION);
}

std::vector<CMPIObjectPath*> CLPSetCommand::findObjects(CLPAddrSVC& addresses,
                                                        const CLPAddrpath& path) const {
    if (line()._AssocClass.empty())
        return addresses.getCIMObjectPath(path);
    std::string reference = line()._Ref;
    if (!normalTarget(addresses, reference))
        return {};
    if (!reference.empty()) {
        CLPAddrpath end("/admin1", "/admin1");
        if (!setAddress(end, m_cdt, reference))
            return {};
        reference = end.getResultantAddress();
    }
    return addresses.getCIMObjectPath_Assoc(m_address, line()._AssocClass, reference);
}

JobError* CLPSetCommand::write(CLPAddrSVC& addresses, CLPMapping& mapping, CMPIObjectPath* object,
                               const std::string& ufct) {
    CimStatus status;
    const CimClass definition = readClass(object, status);
    if (!definition)
        return mapping.smProcessOpError(status.ok() ? nullptr : status.get());
    Assignments assignments(addresses, mapping, object, definition.get(), ufct);
    for (const std::string& name : line().getPropertyNames(CLPToken::ASSIGN_PROPERTY)) {
        checkpoint();
        std::string value;
        const bool flag = line().getProperty(name, value, CLPToken::ASSIGN_PROPERTY);
        VELCLP_ASSERT(flag, "flag");
        if (!assignments.add(name, value))
            return assignments.takeError();
    }
    return assignments.write();
}

void CLPSetCommand::display() {
    constexpr char const* function = "CLP.CLPSetCommand.display";
    VELCLP_TRACE(function);
    _CLPStatus status = outcome(function);
    m_output->set_output(m_token, &status, &m_address, m_object.get());
}

void CLPSetCommand::setAssocProperty() {
    VELCLP_TRACE("CLP.CLPSetCommand.setAssocProperty");
    CLPMapping mapping(m_client, m_transport);
    takeError(mapping.smCheckCommand(line()._AssocClass, "set"));
    if (m_error)
        return;
    const auto normal = [](const std::string& end) {
        return end == "/" || end == "\\" ? std::string("/admin1") : end;
    };
    std::cout << "left=" << normal(line()._Target) << " assoc=" << line()._AssocClass
              << " right=" << normal(line()._Ref) << std::endl;
}

} // namespace velmora_clp
