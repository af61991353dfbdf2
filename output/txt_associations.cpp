// The associations section of the text form of show.
#include "output/classes.h"
#include "output/joins.h"
#include "output/propvalue.h"
#include "output/writer.h"
#include "schema/cimnamespace.h"
#include "velclp/addrsvc.h"
#include "velclp/cimhandle.h"
#include "velclp/clpcommand.h"
#include "velclp/coutputer.h"
#include "velclp/log.h"
#include "velclp/schema.h"

namespace velmora_clp {

namespace {

// Prints the properties of one association instance; of a plain association the references only.
class AssociationText {
public:
    AssociationText(const Writer& out, CLPAddrSVC& addresses, const Addressed& own,
                    CMPIConstClass* cimclass)
        : m_out(out), m_addresses(addresses), m_own(own), m_class(cimclass) {}

    void print(CMPIInstance* instance, bool complete) const {
        CimStatus status;
        const unsigned int count = instance->ft->getPropertyCount(instance, status.out());
        for (unsigned int i = 0; i < count; ++i) {
            CMPIString* name = nullptr;
            const CMPIData data = instance->ft->getPropertyAt(instance, i, &name, status.out());
            const CimString owned(name);
            if (!status.ok())
                continue;
            if (data.type == CMPI_ref)
                reference(cimText(name), data);
            else if (complete)
                property(cimText(name), data);
        }
    }

private:
    void reference(const std::string& name, const CMPIData& data) const {
        if (isNullValue(data))
            return labelled(name, "NULL");
        const std::string address = referredAddress(m_addresses, data, m_own);
        if (!address.empty())
            labelled(name, address);
    }

    void property(const std::string& name, const CMPIData& data) const {
        const OwnedPropValue value = copyValue(data, m_class, name);
        if (isNullValue(data) || isNullArray(*value))
            return labelled(name, "NULL");
        if (!isArray(*value))
            return labelled(name, shownText(*value->data, nullptr, nullptr).value);
        int index = 0;
        for (const ShownText& element : shownElements(*value))
            labelled(name + "[" + std::to_string(index++) + "]",
                     element.name ? element.value + " (" + *element.name + ")" : element.value);
    }

    void labelled(const std::string& label, const std::string& text) const {
        m_out.line(TAB, TAB, TAB, label, " = ", text);
    }

    const Writer& m_out;
    CLPAddrSVC& m_addresses;
    Addressed m_own;
    CMPIConstClass* m_class;
};

} // namespace

void COutputer::txt_show_associations(CMPIObjectPath* object, FilterResult* result,
                                      CLPCommand* command) {
    VELCLP_TRACE("CLP.COutputer.txt_show_associations");
    command->checkpoint();
    Writer(*m_transport).line(TAB, T_ASSOCIATIONS);
    for (const std::string& association : result->association_classes) {
        if (association.empty())
            continue;
        command->checkpoint();
        CimPaths paths;
        RetriveAssocObjectPath(object, association, paths.vector(), result->reference);
        txt_show_associations_internal(association, paths.vector(), result);
    }
}

void COutputer::RetriveAssocObjectPath(CMPIObjectPath* object, std::string association_class,
                                       std::vector<CMPIObjectPath*>& out,
                                       CMPIObjectPath* reference) {
    VELCLP_TRACE("CLP.COutputer.RetriveAssocObjectPath");
    CimStatus status;
    const CimEnumeration names(m_client->ft->referenceNames(
        m_client, object, association_class.c_str(), nullptr, status.out()));
    if (!status.ok() || !names)
        return;
    while (names->ft->hasNext(names.get(), status.out())) {
        const CMPIData entry = names->ft->getNext(names.get(), status.out());
        if (isNullValue(entry) || !entry.value.ref)
            return;
        if (reference && !CheckAssocFilter(object, entry.value.ref, reference))
            continue;
        if (CimPath path = cimClone(entry.value.ref))
            out.push_back(path.release());
    }
}

void COutputer::txt_show_associations_internal(std::string association_class,
                                               std::vector<CMPIObjectPath*>& paths,
                                               FilterResult* result) {
    VELCLP_TRACE("CLP.COutputer.txt_show_associations_internal");
    const CLPSchema& schema = *CLPSchema::getInstance();
    const bool complete = schema.hasCIMClass(association_class) &&
                          schema.getType(association_class) == "complex_assoc";
    const std::string ufct = defaultTagOfClass(association_class);
    CMPIConstClass* cimclass = complete && !paths.empty()
                                   ? class_of(namespaceOf(association_class), association_class)
                                   : nullptr;
    const Writer out(*m_transport);
    const AssociationText text(out, addresses(), {result->object, result->address}, cimclass);
    for (CMPIObjectPath* path : paths) {
        result->command->checkpoint();
        CimStatus status;
        const CimInstance instance(
            m_client->ft->getInstance(m_client, path, 0, nullptr, status.out()));
        if (!status.ok() || !instance)
            continue;
        out.line(TAB, TAB, ufct, " : ");
        text.print(instance.get(), complete);
    }
}

bool COutputer::CheckAssocFilter(CMPIObjectPath* object, CMPIObjectPath* association,
                                 CMPIObjectPath* reference) {
    VELCLP_TRACE("CLP.COutputer.CheckAssocFilter");
    CimStatus status;
    const unsigned int count = association->ft->getKeyCount(association, status.out());
    Joins joins(object, reference);
    for (unsigned int i = 0; i < count && !joins.both(); ++i) {
        const CMPIData key = association->ft->getKeyAt(association, i, nullptr, status.out());
        if (status.ok())
            joins.look(key);
    }
    return joins.both();
}

} // namespace velmora_clp
