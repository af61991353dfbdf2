#include "velclp/verbcommand.h"

#include "output/classes.h"
#include "velclp/addrsvc.h"
#include "velclp/assertion.h"
#include "velclp/clpsession.h"
#include "velclp/joberror.h"
#include "velclp/log.h"
#include "velclp/token.h"

namespace velmora_clp {

namespace {
constexpr char const* ROOT = "/admin1";
constexpr char const* SESSION = "SESSION";
} // namespace

const CLPToken& VerbCommand::line() const {
    VELCLP_ASSERT(m_token.get() != nullptr, "px != 0");
    return *m_token;
}

bool VerbCommand::normalTarget(CLPAddrSVC& addresses, std::string& target) {
    if (target == "/" || target == "\\")
        target = ROOT;
    if (target != SESSION)
        return true;
    CMPIObjectPath* session = CLPSession::getInstance()->getObjectPath();
    target = addressOf(addresses, session);
    return !target.empty();
}

bool VerbCommand::setAddress(CLPAddrpath& address, const std::string& cdt,
                             const std::string& target) {
    if (!address.setPath(cdt, target))
        return false;
    return !address.getTerms().empty() || address.setPath(ROOT, ROOT);
}

bool VerbCommand::readTarget(CLPAddrSVC& addresses, CLPAddrpath& address) const {
    std::string target = line()._Target;
    return normalTarget(addresses, target) && setAddress(address, m_cdt, target);
}

std::string VerbCommand::tagOf(const CLPAddrpath& address) {
    return address.getUfct(address.getTerms().back());
}

std::string VerbCommand::resultantTarget(const CLPAddrpath& address) {
    const std::string target = address.getResultantTarget();
    return target.empty() || target == "/" ? ROOT : target;
}

CimClass VerbCommand::readClass(CMPIObjectPath* object, CimStatus& status) const {
    const CimPath path(newCMPIObjectPath(cimNameSpace(object).c_str(), cimClassName(object).c_str(),
                                         status.out()));
    if (!path)
        return nullptr;
    CimClass definition(m_client->ft->getClass(m_client, path.get(), CMPI_FLAG_IncludeQualifiers,
                                               nullptr, status.out()));
    return status.ok() ? std::move(definition) : nullptr;
}

void VerbCommand::takeError(JobError* error) {
    delete m_error;
    m_error = error;
}

void VerbCommand::finish(char const* function) {
    if (m_error) {
        setCommandStatus(CommandStatus::COMMAND_EXECUTION_FAILED);
        VELCLP_LOG_FAILURE(function, "failed status=[%s]", m_error->getCimstatTag());
    } else {
        setCommandStatus(CommandStatus::COMMAND_COMPLETED);
    }
    display();
}

void VerbCommand::fail(char const* function, JobError::error error, JobError::stat cimStatus,
                       JobError::severity severity) {
    setJobError(error, cimStatus, severity);
    finish(function);
}

void VerbCommand::failNotFound(char const* function) {
    fail(function, JobError::Unavailable_Resource_Error, JobError::CIM_ERR_NOT_FOUND,
         JobError::S_Low);
}

_CLPStatus VerbCommand::outcome(char const* function) {
    VELCLP_LOG_VALUE(function, "job=[%d],status=[%s]", m_jobId, m_status.getStatusTag());
    return {&m_status, m_error, m_jobId};
}

} // namespace velmora_clp
