#include "output/classes.h"
#include "output/propvalue.h"
#include "output/showform.h"
#include "velclp/coutputer.h"

namespace velmora_clp {

namespace {

class TextForm : public ShowForm {
public:
    explicit TextForm(Transport& transport) : ShowForm(transport) {}

    void openTarget(const std::string& ufip) override { m_out.endl().line(ufip); }

    void properties(const std::vector<ShownProperty>& properties) override {
        m_out.line(TAB, T_PROPERTIES);
        for (const ShownProperty& shown : properties)
            property(shown.name, *shown.value);
    }

    void verbs(const std::vector<std::string>& verbs, bool oem) override {
        m_out.line(TAB, T_VERBS);
        for (const std::string& verb : verbs)
            if (oem || !containsOem(verb))
                m_out.line(TAB, TAB, verb);
    }

    void openAssociations() override { m_out.line(TAB, T_ASSOCIATIONS); }

    void association(const ShownAssociation& association, const std::string&) override {
        m_out.line(TAB, TAB, association.ufct, " : ");
        for (const ShownEnd& end : association.ends)
            m_out.line(TAB, TAB, TAB, end.name, " = ", end.value);
    }

    void closeAssociations() override {}

    void targets(const std::vector<std::string>& terms) override {
        m_out.line(TAB, T_TARGETS);
        for (const std::string& term : terms)
            m_out.line(TAB, TAB, term);
    }

    void closeInstance() override {}
    void closeTarget() override { m_out.flush(); }

private:
    void property(const std::string& name, const PropValue& value) {
        if (isNullArray(value))
            m_out.line(TAB, TAB, name, " = ");
        else if (!isArray(value))
            labelled(name, shownText(*value.data, value.values, value.valuemap));
        int index = 0;
        for (const ShownText& element : shownElements(value))
            labelled(name + "[" + std::to_string(index++) + "]", element);
    }

    void labelled(const std::string& label, const ShownText& text) {
        m_out.raw(TAB, TAB, label, " = ", text.value);
        if (text.name)
            m_out.raw(" (", *text.name, ")");
        m_out.endl();
    }
};

} // namespace

std::unique_ptr<ShowForm> makeTextForm(Transport& transport) {
    return std::make_unique<TextForm>(transport);
}

std::unique_ptr<ShowForm> ShowForm::make(int form, Transport& transport) {
    if (form == COutputer::KEYWORD_FORM)
        return makeKeywordForm(transport);
    return form == COutputer::CLPXML_FORM ? makeXmlForm(transport) : makeTextForm(transport);
}

} // namespace velmora_clp
