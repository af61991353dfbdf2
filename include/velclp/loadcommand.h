// The verb load (DSP0214): hands a source URI to the special method that the schema names.
#ifndef VELCLP_LOADCOMMAND_H
#define VELCLP_LOADCOMMAND_H

#include "velclp/verbcommand.h"

namespace velmora_clp {

class CLPLoadCommand : public VerbCommand {
public:
    using VerbCommand::VerbCommand;
    ~CLPLoadCommand() override;

    void svc() override;
    void display() override;
};

} // namespace velmora_clp

#endif
