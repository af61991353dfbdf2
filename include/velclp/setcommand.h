// The verb set (DSP0214): writes property values of one managed element. The schema routes each
// name: plain properties go out together in one call at the end; names that stand for a method run
// at once, in the order of the line.
#ifndef VELCLP_SETCOMMAND_H
#define VELCLP_SETCOMMAND_H

#include "velclp/verbcommand.h"

#include <string>
#include <vector>

namespace velmora_clp {

class CLPMapping;

class CLPSetCommand : public VerbCommand {
public:
    using VerbCommand::VerbCommand;
    ~CLPSetCommand() override;

    void svc() override;
    void display() override;

    // Writes the ends and the class of an association to standard output, and changes nothing.
    void setAssocProperty();

private:
    std::vector<CMPIObjectPath*> findObjects(CLPAddrSVC& addresses, const CLPAddrpath& path) const;
    JobError* write(CLPAddrSVC& addresses, CLPMapping& mapping, CMPIObjectPath* object,
                    const std::string& ufct);

    CimPath m_object; // what was written, for the response
    std::string m_address;
};

} // namespace velmora_clp

#endif
