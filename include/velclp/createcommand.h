// The verb create (DSP0214): makes a new managed element under a parent target from the properties
// of the line, or by a special method that the schema names. The address of what was made comes
// from the address service; a number that the user gave is only a wish.
#ifndef VELCLP_CREATECOMMAND_H
#define VELCLP_CREATECOMMAND_H

#include "velclp/verbcommand.h"

#include <string>

namespace velmora_clp {

class CLPMapping;

class CLPCreateCommand : public VerbCommand {
public:
    using VerbCommand::VerbCommand;
    ~CLPCreateCommand() override;

    void svc() override;
    void display() override;

private:
    // Each false leaves the error in the command.
    bool mayCreate(CLPAddrSVC& addresses, CLPMapping& mapping, CLPAddrpath& address);
    bool isFree(CLPAddrSVC& addresses, const CLPAddrpath& address, const std::string& ufct);
    bool hasNumberLeft(CLPAddrSVC& addresses, const CLPAddrpath& address);
    bool refuse(JobError::stat cimStatus);
    bool refuseParent();
    bool hasParent(CLPAddrSVC& addresses, const CLPAddrpath& address) const;

    void createSpecially(CLPAddrSVC& addresses, CLPMapping& mapping, const std::string& entry);
    void createInstance(CLPAddrSVC& addresses, CLPMapping& mapping, const CLPAddrpath& address,
                        const std::string& ufct);
    // Sets the properties of the line; false at the first that the class does not take.
    bool fillIn(CMPIInstance* instance, CMPIConstClass* definition) const;

    CimPath m_object; // what was made, null until then
    std::string m_address;
};

} // namespace velmora_clp

#endif
