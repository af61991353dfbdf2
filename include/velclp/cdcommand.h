// The verb cd (DSP0214): moves the session's current default target to a target that exists. The
// command's own default target holds what the response shows: the new one, or the old one that
// stays in force.
#ifndef VELCLP_CDCOMMAND_H
#define VELCLP_CDCOMMAND_H

#include "velclp/verbcommand.h"

namespace velmora_clp {

class CLPCdCommand : public VerbCommand {
public:
    using VerbCommand::VerbCommand;
    ~CLPCdCommand() override;

    void svc() override;
    void display() override;

private:
    // The answer to a target that names nothing: the default target stays as it is.
    void failStaying();
};

} // namespace velmora_clp

#endif
