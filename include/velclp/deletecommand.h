// The verb delete (DSP0214): removes the elements of a target one by one, or all at once by a
// method of their container, and forgets their addresses.
#ifndef VELCLP_DELETECOMMAND_H
#define VELCLP_DELETECOMMAND_H

#include "velclp/verbcommand.h"

#include <list>
#include <string>

namespace velmora_clp {

class CLPMapping;

class CLPDeleteCommand : public VerbCommand {
public:
    using VerbCommand::VerbCommand;
    ~CLPDeleteCommand() override;

    void svc() override;
    void display() override;

private:
    // How the schema has the elements removed; all empty where it says nothing.
    struct Entry {
        std::string cimclass;
        std::string type;
        std::string method;
        std::string parameter;
    };
    static Entry entryOf(const std::string& ufct);
    void deleteEach(CLPAddrSVC& addresses, CLPMapping& mapping, const CimPaths& objects,
                    const Entry& entry);
    void emptyContainer(CLPAddrSVC& addresses, CLPMapping& mapping, const CLPAddrpath& path,
                        const CimPaths& objects, const Entry& entry);

    std::list<std::string> m_addresses; // deleted, or to be reported
};

} // namespace velmora_clp

#endif
