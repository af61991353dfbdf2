// The shape that start, stop and reset share: resolve the target, ask the schema whether the verb
// is allowed on it and how it is carried out, and do that to the target's first object. The binding
// of a verb to a CIM method is data of the schema.
#ifndef VELCLP_STATECOMMAND_H
#define VELCLP_STATECOMMAND_H

#include "velclp/verbcommand.h"

#include <string>

namespace velmora_clp {

class CLPMapping;

class StateCommand : public VerbCommand {
protected:
    using VerbCommand::VerbCommand;

    enum Change { START, STOP, RESET };
    // The whole of svc, display included.
    void changeState(char const* function, Change change);

    std::string m_address; // resultant target, for the response

private:
    JobError* carryOut(CLPMapping& mapping, CMPIObjectPath* object, const std::string& ufct,
                       Change change) const;
    JobError* invoke(CLPMapping& mapping, CMPIObjectPath* object, const std::string& method,
                     const std::string& parameters, Change change) const;
};

} // namespace velmora_clp

#endif
