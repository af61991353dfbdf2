// The verb dump (DSP0214): accepted by the language, supported by no target.
#ifndef VELCLP_DUMPCOMMAND_H
#define VELCLP_DUMPCOMMAND_H

#include "velclp/verbcommand.h"

namespace velmora_clp {

class CLPDumpCommand : public VerbCommand {
public:
    using VerbCommand::VerbCommand;
    ~CLPDumpCommand() override;

    void svc() override;
    void display() override;
};

} // namespace velmora_clp

#endif
