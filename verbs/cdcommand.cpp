#include "velclp/cdcommand.h"

#include "velclp/addrsvc.h"
#include "velclp/clpsession.h"
#include "velclp/coutputer.h"
#include "velclp/log.h"

namespace velmora_clp {

namespace {

// Puts an absolute address under the first level. One letter is looked at: an address whose first
// term begins as "admin1" does stays as it is.
std::string underRoot(std::string address) {
    if (address == "/")
        address += "admin1";
    else if (address.size() > 1 && address[0] == '/' && address[1] != 'a')
        address.insert(1, "admin1/");
    return address;
}

} // namespace

CLPCdCommand::~CLPCdCommand() = default;

void CLPCdCommand::svc() {
    constexpr char const* FUNCTION = "CLP.CLPCdCommand.svc";
    VELCLP_TRACE(FUNCTION);
    CLPAddrSVC addresses(m_client);
    CLPAddrpath path("/admin1", "/admin1");
    CimPaths objects;
    if (readTarget(addresses, path)) {
        VELCLP_LOG_VALUE(FUNCTION, "ufct=[%s],ufip=[%s]", tagOf(path).c_str(),
                         path.getResultantAddress().c_str());
        objects = CimPaths(addresses.getCIMObjectPath(path));
    }
    if (objects.empty())
        return failStaying();
    m_cdt = underRoot(path.getResultantAddress());
    CLPSession::getInstance()->setCurrentDefaultTarget(m_cdt);
    finish(FUNCTION);
}

void CLPCdCommand::failStaying() {
    setJobError(JobError::Unavailable_Resource_Error, JobError::CIM_ERR_NOT_FOUND, JobError::S_Low);
    setCommandStatus(CommandStatus::COMMAND_EXECUTION_FAILED);
    VELCLP_LOG_FAILURE("CLP.CLPCdCommand.svc", "failed status=[%d]",
                       static_cast<int>(m_error->getCimstatCode()));
    display();
}

void CLPCdCommand::display() {
    constexpr char const* FUNCTION = "CLP.CLPCdCommand.display";
    VELCLP_TRACE(FUNCTION);
    VELCLP_LOG_VALUE(FUNCTION, "job=[%d],status=[%s],cdt=[%s]", m_jobId, m_status.getStatusTag(),
                     m_cdt.c_str());
    _CLPStatus status = {&m_status, m_error, m_jobId};
    m_output->cd_output(m_token, &status, &m_cdt);
}

} // namespace velmora_clp
