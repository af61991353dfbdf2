#include "velclp/versioncommand.h"

#include "velclp/coutputer.h"
#include "velclp/log.h"

namespace velmora_clp {

CLPVersionCommand::~CLPVersionCommand() = default;

void CLPVersionCommand::svc() {
    VELCLP_TRACE("CLP.CLPVersionCommand.svc");
    m_clp_version = "1.0.2";
    m_addressing_version = "1.0.0b";
    finish("CLP.CLPVersionCommand.svc");
}

void CLPVersionCommand::display() {
    constexpr char const* function = "CLP.CLPVersionCommand.display";
    VELCLP_TRACE(function);
    _CLPStatus status = outcome(function);
    m_output->version_output(m_token, &status, &m_clp_version, &m_addressing_version);
}

} // namespace velmora_clp
