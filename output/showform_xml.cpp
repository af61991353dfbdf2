#include "output/classes.h"
#include "output/lastterm.h"
#include "output/propvalue.h"
#include "output/showform.h"

#include <algorithm>

namespace velmora_clp {

namespace {

class XmlForm : public ShowForm {
public:
    explicit XmlForm(Transport& transport) : ShowForm(transport) {}

    void openTarget(const std::string& ufip) override {
        m_out.open(T_TARGET).open(T_INSTANCE);
        ufit_element(m_out, ufip);
        m_out.element(T_UFIP, ufip);
    }

    void properties(const std::vector<ShownProperty>& properties) override {
        m_out.open(T_PROPERTIES);
        for (const ShownProperty& shown : properties)
            property(shown);
        m_out.close(T_PROPERTIES);
    }

    void verbs(const std::vector<std::string>& verbs, bool oem) override {
        m_out.open(T_VERBS).open(T_STANDARDVERBS);
        for (const std::string& verb : verbs)
            m_out.raw(verb, " ");
        m_out.close(T_STANDARDVERBS);
        if (oem) {
            m_out.open(T_OEMVERBS);
            for (const std::string& verb : verbs)
                if (beginsWithOem(verb))
                    m_out.raw(verb, " ");
            m_out.close(T_OEMVERBS);
        }
        m_out.close(T_VERBS);
    }

    void openAssociations() override { m_out.open(T_ASSOCIATIONS); }

    // References first, the other properties in a block behind them.
    void association(const ShownAssociation& association, const std::string&) override {
        m_out.open(T_ASSOCIATION).element(T_UFCT, association.ufct);
        for (const ShownEnd& end : association.ends)
            if (end.isReference)
                reference(end);
        plainProperties(association.ends);
        m_out.close(T_ASSOCIATION);
    }

    void closeAssociations() override { m_out.close(T_ASSOCIATIONS); }

    // What is below prints as elements of its own.
    void targets(const std::vector<std::string>&) override {}

    void closeInstance() override { m_out.close(T_INSTANCE); }
    void closeTarget() override { m_out.close(T_TARGET).flush(); }

private:
    void property(const ShownProperty& shown) {
        const PropValue& value = *shown.value;
        m_out.open(T_PROPERTY).element(T_NAME, shown.name);
        if (isArray(value)) {
            m_out.open(T_MULTIVALUE);
            int index = 0;
            for (const ShownText& element : shownElements(value)) {
                m_out.element(T_INDEX, index++);
                valueElement(element);
            }
            m_out.close(T_MULTIVALUE);
        } else {
            valueElement(shownText(*value.data, value.values, value.valuemap));
        }
        m_out.close(T_PROPERTY);
    }

    void valueElement(const ShownText& text) {
        m_out.open(T_VALUE).element(T_VAL, text.value);
        if (text.name)
            m_out.element(T_VALSTRING, *text.name);
        m_out.close(T_VALUE);
    }

    void reference(const ShownEnd& end) {
        m_out.open(T_REFERENCE).element(T_NAME, end.name).open(T_INSTANCE);
        ufit_element(m_out, end.value);
        m_out.element(T_UFIP, end.value).close(T_INSTANCE).close(T_REFERENCE);
    }

    void plainProperties(const std::vector<ShownEnd>& ends) {
        const auto isPlain = [](const ShownEnd& end) { return !end.isReference; };
        if (std::none_of(ends.begin(), ends.end(), isPlain))
            return;
        m_out.open(T_PROPERTIES);
        for (const ShownEnd& end : ends) {
            if (end.isReference)
                continue;
            m_out.open(T_PROPERTY).element(T_NAME, end.name).open(T_VALUE);
            m_out.element(T_VAL, end.value).close(T_VALUE).close(T_PROPERTY);
        }
        m_out.close(T_PROPERTIES);
    }
};

} // namespace

std::unique_ptr<ShowForm> makeXmlForm(Transport& transport) {
    return std::make_unique<XmlForm>(transport);
}

} // namespace velmora_clp
