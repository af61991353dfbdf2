#include "velclp/resetcommand.h"

#include "velclp/coutputer.h"
#include "velclp/log.h"

namespace velmora_clp {

CLPResetCommand::~CLPResetCommand() = default;

void CLPResetCommand::svc() {
    changeState("CLP.CLPResetCommand.svc", RESET);
}

void CLPResetCommand::display() {
    constexpr char const* function = "CLP.CLPResetCommand.display";
    VELCLP_TRACE(function);
    _CLPStatus status = outcome(function);
    m_output->reset_output(m_token, &status, &m_address);
}

} // namespace velmora_clp
