// The verb set (DSP0214): writes property values of one managed element. The schema routes each
// name: plain properties go out together in one call at the end; names that stand for a method run
// at once, in the order of the line.
#ifndef VELCLP_SETCOMMAND_H
#define VELCLP_SETCOMMAND_H

#include "velclp/clpcommand.h"

#include <string>

namespace velmora_clp {

class CLPSetCommand : public CLPCommand {
public:
    using CLPCommand::CLPCommand;
    ~CLPSetCommand() override;

    void svc() override;
    void display() override;

    // Writes the ends and the class of an association to standard output, and changes nothing.
    void setAssocProperty();

private:
    CMPIObjectPath* m_object = nullptr; // what was written, owned; for the response
    std::string m_address;
};

} // namespace velmora_clp

#endif
