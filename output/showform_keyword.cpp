#include "output/classes.h"
#include "output/propvalue.h"
#include "output/showform.h"
#include "velclp/clpstring.h"

namespace velmora_clp {

namespace {

class KeywordForm : public ShowForm {
public:
    explicit KeywordForm(Transport& transport) : ShowForm(transport) {}

    void openTarget(const std::string& ufip) override {
        m_out.begingroup(T_INSTANCE).pair(T_UFIP, ufip);
    }

    void properties(const std::vector<ShownProperty>& properties) override {
        for (const ShownProperty& shown : properties) {
            m_out.begingroup(T_PROPERTY).pair(T_PROPERTY_NAME, shown.name);
            values(*shown.value);
            m_out.endgroup();
        }
    }

    void verbs(const std::vector<std::string>& verbs, bool oem) override {
        m_out.begingroup(T_VERBS);
        for (const std::string& verb : verbs)
            if (oem || !containsOem(verb))
                m_out.pair(T_VERB, verb);
        m_out.endgroup();
    }

    void openAssociations() override {}

    // The end that is the shown target itself is left out.
    void association(const ShownAssociation& association, const std::string& ownUfip) override {
        m_out.begingroup(T_ASSOCIATION).pair(T_UFCT, association.ufct);
        for (const ShownEnd& end : association.ends) {
            if (end.isReference && strcmp_nocase(end.value.c_str(), ownUfip.c_str()) == 0)
                continue;
            m_out.begingroup(T_PROPERTY).pair(T_PROPERTY_NAME, end.name);
            m_out.pair(T_PROPERTY_VAL, end.value).endgroup();
        }
        m_out.endgroup();
    }

    void closeAssociations() override {}

    void targets(const std::vector<std::string>& terms) override {
        m_out.begingroup(T_TARGETS);
        for (const std::string& term : terms)
            m_out.pair(T_UFIP, term);
        m_out.endgroup();
    }

    void closeInstance() override { m_out.endgroup(); }
    void closeTarget() override { m_out.flush(); }

private:
    void values(const PropValue& property) {
        if (isNullArray(property))
            m_out.pair(T_PROPERTY_VAL);
        else if (!isArray(property))
            value(shownText(*property.data, property.values, property.valuemap));
        for (const ShownText& element : shownElements(property))
            value(element);
    }

    void value(const ShownText& text) {
        m_out.pair(T_PROPERTY_VAL, text.value);
        if (text.name)
            m_out.pair(T_PROPERTY_VALSTRING, *text.name);
    }
};

} // namespace

std::unique_ptr<ShowForm> makeKeywordForm(Transport& transport) {
    return std::make_unique<KeywordForm>(transport);
}

} // namespace velmora_clp
