// Prints the tree of a show and frees it record by record. One object prints one response.
#ifndef VELCLP_OUTPUT_SHOWTREE_H
#define VELCLP_OUTPUT_SHOWTREE_H

#include "output/showform.h"
#include "velclp/cimhandle.h"
#include "velclp/coutputer.h"

namespace velmora_clp {

class COutputer::ShowTree {
public:
    // Everything is borrowed for the life of the object.
    ShowTree(COutputer& output, const CLPToken& line, const _show_filter& filter, int form,
             CLPCommand& command);

    // Leaves the list empty. May leave by a checkpoint; what is not printed then is still in the
    // list.
    void print(std::list<TargetGroup*>& groups);

private:
    void printGroup(TargetGroup& group);
    void printTarget(const TargetGroup& group, Target& target);
    void printSections(const TargetGroup& group, const Target& target,
                       const std::vector<ShownProperty>& properties);
    void printAssociations(const Target& target);
    void dropUnselectedAssociations(Target& target) const;

    void cutToPage(TargetGroup& group) const;
    bool isSelected(const TargetGroup& group, const Target& target) const;
    bool collectProperties(const TargetGroup& group, const Target& target, CMPIInstance* instance,
                           std::vector<ShownProperty>& properties);
    void collectPseudoProperties(const std::string& ufct, CMPIObjectPath* object,
                                 std::vector<ShownProperty>& properties);
    bool isNamed(const std::string& property) const;
    std::vector<ShownEnd> collectEnds(CMPIInstance* association, const Target& target);
    std::vector<std::string> termsBelow(const Target& target) const;
    CimInstance readInstance(CMPIObjectPath* object) const;
    bool has(_show_filter::Flag flag) const { return (m_filter.flags & flag) != 0; }
    // Whether a section is printed. A request to stop ends the command before it begins.
    bool opens(_show_filter::Flag section) const;

    COutputer& m_output;
    const CLPToken& m_line;
    const _show_filter& m_filter;
    CLPCommand& m_command;
    std::unique_ptr<ShowForm> m_form;
};

} // namespace velmora_clp

#endif
