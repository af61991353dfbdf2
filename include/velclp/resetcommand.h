// The verb reset (DSP0214): resets the first object of a target by the method that the schema binds
// to the verb, or by a state change request where it binds none.
#ifndef VELCLP_RESETCOMMAND_H
#define VELCLP_RESETCOMMAND_H

#include "velclp/statecommand.h"

namespace velmora_clp {

class CLPResetCommand : public StateCommand {
public:
    using StateCommand::StateCommand;
    ~CLPResetCommand() override;

    void svc() override;
    void display() override;
};

} // namespace velmora_clp

#endif
