// The verb show (DSP0214): reads a target and, to the depth of -level, what hangs below it. Keyword
// and clpxml forms, and text with value selectors and paging, walk first and print the finished
// tree; all other text is printed object by object while the walk runs, so that its memory does not
// grow with the number of objects.
#ifndef VELCLP_SHOWCOMMAND_H
#define VELCLP_SHOWCOMMAND_H

#include "velclp/addrsvc.h"
#include "velclp/showrecords.h"
#include "velclp/verbcommand.h"

#include <list>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace velmora_clp {

class CLPAddrpath;

class CLPShowCommand : public VerbCommand {
public:
    using VerbCommand::VerbCommand;
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

private:
    // Where a walk puts the groups it finds: below a target, or beside it when there is none.
    struct GroupList;

    CLPAddrSVC& addresses();
    int level() const;
    std::vector<CMPIObjectPath*> findObjects(CLPAddrpath& address);
    void primeDynamicClass(const CLPAddrpath& address);

    void showText(std::vector<CMPIObjectPath*>& objects, CLPAddrpath& address);
    void showBelow(int level, CMPIObjectPath* object, const FilterResult& result,
                   const std::vector<std::string>& children);

    void showTree(const std::vector<CMPIObjectPath*>& objects);
    bool passesFilter(CMPIObjectPath* object, int level, const std::string& ufct) const;
    bool wantsAssociations(int level) const;
    // False when there is nothing to show; the error is set then.
    bool gatherAssociations(Target& target, int level);
    bool findReference(CimPath& reference);
    bool collectAssociations(Target& target, const std::string& association,
                             CMPIObjectPath* reference) const;
    bool joins(CMPIObjectPath* association, CMPIObjectPath* object,
               CMPIObjectPath* reference) const;
    void showChildren(CMPIObjectPath* object, const std::string& cimclass, int level, bool& found,
                      GroupList& below);
    bool showReferences(CMPIObjectPath* object, const std::string& association,
                        const std::string& reference, int level, bool& deepest, bool& found,
                        GroupList& below);

    std::unique_ptr<CLPAddrSVC> m_addresses;
};

} // namespace velmora_clp

#endif
