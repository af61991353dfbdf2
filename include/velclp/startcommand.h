// The verb start (DSP0214): starts the first object of a target by the method that the schema binds
// to the verb, or by a state change request where it binds none.
#ifndef VELCLP_STARTCOMMAND_H
#define VELCLP_STARTCOMMAND_H

#include "velclp/statecommand.h"

namespace velmora_clp {

class CLPStartCommand : public StateCommand {
public:
    using StateCommand::StateCommand;
    ~CLPStartCommand() override;

    void svc() override;
    void display() override;
};

} // namespace velmora_clp

#endif
