// The verb stop (DSP0214): stops the first object of a target by the method that the schema binds
// to the verb, or by a state change request where it binds none.
#ifndef VELCLP_STOPCOMMAND_H
#define VELCLP_STOPCOMMAND_H

#include "velclp/statecommand.h"

namespace velmora_clp {

class CLPStopCommand : public StateCommand {
public:
    using StateCommand::StateCommand;
    ~CLPStopCommand() override;

    void svc() override;
    void display() override;
};

} // namespace velmora_clp

#endif
