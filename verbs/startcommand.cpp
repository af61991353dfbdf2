#include "velclp/startcommand.h"

#include "velclp/coutputer.h"
#include "velclp/log.h"

namespace velmora_clp {

CLPStartCommand::~CLPStartCommand() = default;

void CLPStartCommand::svc() {
    changeState("CLP.CLPStartCommand.svc", START);
}

void CLPStartCommand::display() {
    constexpr char const* function = "CLP.CLPStartCommand.display";
    VELCLP_TRACE(function);
    _CLPStatus status = outcome(function);
    m_output->start_output(m_token, &status, &m_address);
}

} // namespace velmora_clp
