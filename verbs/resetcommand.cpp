#include "velclp/resetcommand.h"

#include "velclp/coutputer.h"

namespace velmora_clp {

CLPResetCommand::~CLPResetCommand() = default;

void CLPResetCommand::svc() {
    changeState("CLP.CLPResetCommand.svc", RESET);
}

void CLPResetCommand::display() {
    _CLPStatus status = outcome("CLP.CLPResetCommand.display");
    m_output->reset_output(m_token, &status, &m_address);
}

} // namespace velmora_clp
