// The verb dump (DSP0214): accepted by the language, supported by no target.
#ifndef VELCLP_DUMPCOMMAND_H
#define VELCLP_DUMPCOMMAND_H

#include "velclp/clpcommand.h"

namespace velmora_clp {

class CLPDumpCommand : public CLPCommand {
public:
    using CLPCommand::CLPCommand;
    ~CLPDumpCommand() override;

    void svc() override;
    void display() override;
};

} // namespace velmora_clp

#endif
