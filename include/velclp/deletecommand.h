// The verb delete (DSP0214): removes the elements of a target one by one, or all at once by a
// method of their container, and forgets their addresses.
#ifndef VELCLP_DELETECOMMAND_H
#define VELCLP_DELETECOMMAND_H

#include "velclp/clpcommand.h"
#include <list>
#include <string>

namespace velmora_clp {

class CLPDeleteCommand : public CLPCommand {
public:
    using CLPCommand::CLPCommand;
    ~CLPDeleteCommand() override;

    void svc() override;
    void display() override;

private:
    std::list<std::string> m_addresses; // deleted, or to be reported
};

} // namespace velmora_clp

#endif
