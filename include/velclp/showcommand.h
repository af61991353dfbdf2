// The verb show (DSP0214): reads a target and, to the depth of -level, what hangs below it. Keyword
// and clpxml forms, and text with value selectors and paging, walk first and print the finished
// tree; all other text is printed object by object while the walk runs, so that its memory does not
// grow with the number of objects.
#ifndef VELCLP_SHOWCOMMAND_H
#define VELCLP_SHOWCOMMAND_H

#include "velclp/clpcommand.h"
#include "velclp/showrecords.h"

#include <list>
#include <string>
#include <vector>

namespace velmora_clp {

class CLPAddrpath;

class CLPShowCommand : public CLPCommand {
public:
    using CLPCommand::CLPCommand;
    ~CLPShowCommand() override;

    void svc() override;
    void display() override;

    // True when the line is printed while it is walked.
    static bool requireTxtShow(const boost::shared_ptr<CLPToken>& token);

    // Walks one object, which is taken over, and what hangs below it to the level. Gives the
    // caller's record of it, or null when it is not shown; what hangs below an object that is not
    // shown is put into groups, made on first need. found tells that anything was found below.
    Target* show(CMPIObjectPath* object, int level, bool& found, std::list<TargetGroup*>** groups);

    // The objects that survive -output paging, in the order asked for. Borrowed in and out.
    std::vector<CMPIObjectPath*> handleOutputObjectPath(std::vector<CMPIObjectPath*> objects);

    // Prints the objects of one address and recurses to the level. Objects are borrowed. The
    // object is the other end that an association must have, or null.
    void txt_show(int level, std::vector<CMPIObjectPath*>& objects, CLPAddrpath& path,
                  std::string association_class, std::string reference,
                  CMPIObjectPath* object = nullptr);
};

} // namespace velmora_clp

#endif
