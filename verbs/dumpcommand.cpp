#include "velclp/dumpcommand.h"

#include "velclp/coutputer.h"
#include "velclp/log.h"

namespace velmora_clp {

CLPDumpCommand::~CLPDumpCommand() = default;

void CLPDumpCommand::svc() {
    constexpr char const* FUNCTION = "CLP.CLPDumpCommand.svc";
    VELCLP_TRACE(FUNCTION);
    fail(FUNCTION, JobError::Other, JobError::CIM_ERR_NOT_SUPPORTED, JobError::S_High);
}

void CLPDumpCommand::display() {
    constexpr char const* function = "CLP.CLPDumpCommand.display";
    VELCLP_TRACE(function);
    _CLPStatus status = outcome(function);
    m_output->dump_output(m_token, &status);
}

} // namespace velmora_clp
