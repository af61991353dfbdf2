// The verb start (DSP0214): starts the first object of a target by the method that the schema binds
// to the verb, or by a state change request where it binds none.
#ifndef VELCLP_STARTCOMMAND_H
#define VELCLP_STARTCOMMAND_H

#include "velclp/clpcommand.h"
#include <string>

namespace velmora_clp {

class CLPStartCommand : public CLPCommand {
public:
    using CLPCommand::CLPCommand;
    ~CLPStartCommand() override;

    void svc() override;
    void display() override;

private:
    std::string m_address; // resultant target, for the response
};

} // namespace velmora_clp

#endif
