// The verb reset (DSP0214): resets the first object of a target by the method that the schema binds
// to the verb, or by a state change request where it binds none.
#ifndef VELCLP_RESETCOMMAND_H
#define VELCLP_RESETCOMMAND_H

#include "velclp/clpcommand.h"
#include <string>

namespace velmora_clp {

class CLPResetCommand : public CLPCommand {
public:
    using CLPCommand::CLPCommand;
    ~CLPResetCommand() override;

    void svc() override;
    void display() override;

private:
    std::string m_address; // resultant target, for the response
};

} // namespace velmora_clp

#endif
