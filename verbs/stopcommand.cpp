#include "velclp/stopcommand.h"

#include "velclp/coutputer.h"
#include "velclp/log.h"

namespace velmora_clp {

CLPStopCommand::~CLPStopCommand() = default;

void CLPStopCommand::svc() {
    changeState("CLP.CLPStopCommand.svc", STOP);
}

void CLPStopCommand::display() {
    constexpr char const* function = "CLP.CLPStopCommand.display";
    VELCLP_TRACE(function);
    _CLPStatus status = outcome(function);
    m_output->stop_output(m_token, &status, &m_address);
}

} // namespace velmora_clp
