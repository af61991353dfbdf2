// What the verbs do alike: read the target of the line, end with an outcome, and show it. A verb
// derives from it and overrides what CLPCommand leaves open.
#ifndef VELCLP_VERBCOMMAND_H
#define VELCLP_VERBCOMMAND_H

#include "velclp/addrpath.h"
#include "velclp/cimhandle.h"
#include "velclp/clpcommand.h"
#include "velclp/clpstatus.h"

#include <string>

namespace velmora_clp {

class CLPAddrSVC;

class VerbCommand : public CLPCommand {
protected:
    using CLPCommand::CLPCommand;

    // The parsed line; the process ends without one.
    const CLPToken& line() const;

    // The text of a target as the address classes take it: "/" and "\" are "/admin1", "SESSION" is
    // the address of the session's own object. False when that object has no address.
    static bool normalTarget(CLPAddrSVC& addresses, std::string& target);
    // Parses a target under a default target; the root counts as "/admin1". False when the text is
    // no address.
    static bool setAddress(CLPAddrpath& address, const std::string& cdt, const std::string& target);
    // Both, for the target of the line under the command's default target.
    bool readTarget(CLPAddrSVC& addresses, CLPAddrpath& address) const;
    // The last term's class tag.
    static std::string tagOf(const CLPAddrpath& address);
    // The resultant target of an address, "/admin1" in place of the root.
    static std::string resultantTarget(const CLPAddrpath& address);

    // The class of an object with its qualifiers; null, and the status, on failure.
    CimClass readClass(CMPIObjectPath* object, CimStatus& status) const;

    // Keeps an operation's error, which may be null; what was kept before is freed.
    void takeError(JobError* error);
    // Ends with the outcome: failed when there is an error, completed otherwise. Sets the status,
    // logs a failure under the function's name, and displays.
    void finish(char const* function);
    void fail(char const* function, JobError::error error, JobError::stat cimStatus,
              JobError::severity severity);
    // The answer to a target that names nothing.
    void failNotFound(char const* function);

    // The record that display hands to the renderer; logged under the function's name.
    _CLPStatus outcome(char const* function);
};

} // namespace velmora_clp

#endif
