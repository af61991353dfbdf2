// The verb help (DSP0214): a topic by its name, the verbs that a target supports, or without an
// argument the default topic. It never fails: what is not found is said in the text.
#ifndef VELCLP_HELPCOMMAND_H
#define VELCLP_HELPCOMMAND_H

#include "velclp/verbcommand.h"
#include <string>

namespace velmora_clp {

class CLPHelpCommand : public VerbCommand {
public:
    using VerbCommand::VerbCommand;
    ~CLPHelpCommand() override;

    void svc() override;
    void display() override;

private:
    enum Kind { DEFAULT_TOPIC = 0, TOPIC = 1, READY = 2, UNRECOGNIZED = 3 };

    Kind classify(CLPAddrSVC& addresses, std::string target);
    // Fills in the verbs of the one object that the target names; false when it is not just one.
    bool describeTarget(CLPAddrSVC& addresses, const std::string& target);

    int m_kind = DEFAULT_TOPIC;
    std::string m_text;
};

} // namespace velmora_clp

#endif
