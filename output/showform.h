// The sections of one target in one of the three response forms, for the tree form of show. The
// caller collects what is shown, the form knows how it is written.
#ifndef VELCLP_OUTPUT_SHOWFORM_H
#define VELCLP_OUTPUT_SHOWFORM_H

#include "output/writer.h"
#include "velclp/showrecords.h"

#include <list>
#include <memory>
#include <string>
#include <vector>

namespace velmora_clp {

struct ShownProperty {
    std::string name;
    OwnedPropValue value;
};

// A property of an association: for a reference the address of what it refers to.
struct ShownEnd {
    std::string name;
    std::string value;
    bool isReference;
};

struct ShownAssociation {
    std::string ufct;
    std::vector<ShownEnd> ends;
};

class ShowForm {
public:
    // For COutputer's form values.
    static std::unique_ptr<ShowForm> make(int form, Transport& transport);
    virtual ~ShowForm() = default;

    virtual void openTarget(const std::string& ufip) = 0;
    virtual void properties(const std::vector<ShownProperty>& properties) = 0;
    virtual void verbs(const std::vector<std::string>& verbs, bool oem) = 0;
    virtual void openAssociations() = 0;
    virtual void association(const ShownAssociation& association, const std::string& ownUfip) = 0;
    virtual void closeAssociations() = 0;
    // The last terms of the targets below.
    virtual void targets(const std::vector<std::string>& terms) = 0;
    virtual void closeInstance() = 0;
    virtual void closeTarget() = 0;

protected:
    explicit ShowForm(Transport& transport) : m_out(transport) {}
    Writer m_out;
};

std::unique_ptr<ShowForm> makeTextForm(Transport& transport);
std::unique_ptr<ShowForm> makeKeywordForm(Transport& transport);
std::unique_ptr<ShowForm> makeXmlForm(Transport& transport);

} // namespace velmora_clp

#endif
