// The verb version (DSP0214): the versions of the language and of the addressing.
#ifndef VELCLP_VERSIONCOMMAND_H
#define VELCLP_VERSIONCOMMAND_H

#include "velclp/verbcommand.h"
#include <string>

namespace velmora_clp {

class CLPVersionCommand : public VerbCommand {
public:
    using VerbCommand::VerbCommand;
    ~CLPVersionCommand() override;

    void svc() override;
    void display() override;

private:
    std::string m_clp_version;
    std::string m_addressing_version;
};

} // namespace velmora_clp

#endif
