// The verb create (DSP0214): makes a new managed element under a parent target from the properties
// of the line, or by a special method that the schema names. The address of what was made comes
// from the address service; a number that the user gave is only a wish.
#ifndef VELCLP_CREATECOMMAND_H
#define VELCLP_CREATECOMMAND_H

#include "velclp/clpcommand.h"
#include <string>

namespace velmora_clp {

class CLPCreateCommand : public CLPCommand {
public:
    using CLPCommand::CLPCommand;
    ~CLPCreateCommand() override;

    void svc() override;
    void display() override;

private:
    CMPIObjectPath* m_object = nullptr; // what was made, owned; null until then
    std::string m_address;
};

} // namespace velmora_clp

#endif
