// The verb stop (DSP0214): stops the first object of a target by the method that the schema binds
// to the verb, or by a state change request where it binds none.
#ifndef VELCLP_STOPCOMMAND_H
#define VELCLP_STOPCOMMAND_H

#include "velclp/clpcommand.h"
#include <string>

namespace velmora_clp {

class CLPStopCommand : public CLPCommand {
public:
    using CLPCommand::CLPCommand;
    ~CLPStopCommand() override;

    void svc() override;
    void display() override;

private:
    std::string m_address; // resultant target, for the response
};

} // namespace velmora_clp

#endif
