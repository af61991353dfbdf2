#include "velclp/stopcommand.h"

#include "velclp/coutputer.h"

namespace velmora_clp {

CLPStopCommand::~CLPStopCommand() = default;

void CLPStopCommand::svc() {
    changeState("CLP.CLPStopCommand.svc", STOP);
}

void CLPStopCommand::display() {
    _CLPStatus status = outcome("CLP.CLPStopCommand.display");
    m_output->stop_output(m_token, &status, &m_address);
}

} // namespace velmora_clp
