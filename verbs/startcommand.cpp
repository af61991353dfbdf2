#include "velclp/startcommand.h"

#include "velclp/coutputer.h"

namespace velmora_clp {

CLPStartCommand::~CLPStartCommand() = default;

void CLPStartCommand::svc() {
    changeState("CLP.CLPStartCommand.svc", START);
}

void CLPStartCommand::display() {
    _CLPStatus status = outcome("CLP.CLPStartCommand.display");
    m_output->start_output(m_token, &status, &m_address);
}

} // namespace velmora_clp
