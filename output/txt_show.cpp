// The text form of show, printed one object at a time: its address, properties, subtargets and
// verbs.
#include "output/classes.h"
#include "output/lastterm.h"
#include "output/propvalue.h"
#include "output/writer.h"
#include "velclp/addrsvc.h"
#include "velclp/cimhandle.h"
#include "velclp/clpcommand.h"
#include "velclp/core_misc.h"
#include "velclp/coutputer.h"
#include "velclp/joberror.h"
#include "velclp/log.h"
#include "velclp/mapping.h"

#include <CimClientLib/native.h>

#include <algorithm>

namespace velmora_clp {

namespace {

void textScalar(const Writer& out, const std::string& label, const ShownText& text) {
    out.raw(label, " = ", text.value);
    if (text.name)
        out.raw(" (", *text.name, ")");
    out.endl();
}

void textProperty(const Writer& out, const std::string& name, const PropValue* property) {
    const std::string label = std::string(TAB) + TAB + name;
    if (!property || !property->data || isNullArray(*property)) {
        out.line(label, " = NULL");
    } else if (isArray(*property)) {
        int index = 0;
        for (const ShownText& element : shownElements(*property))
            textScalar(out, label + "[" + std::to_string(index++) + "]", element);
    } else {
        textScalar(out, label, shownText(*property->data, property->values, property->valuemap));
    }
}

} // namespace

CLPAddrSVC& COutputer::addresses() {
    if (!m_addresses)
        m_addresses = std::make_unique<CLPAddrSVC>(m_client);
    return *m_addresses;
}

CMPIConstClass* COutputer::class_of(const std::string& name_space, const std::string& cimclass) {
    const std::string key = name_space + ":" + cimclass;
    const auto known = m_classes.find(key);
    if (known != m_classes.end())
        return known->second;
    CimClass read(CLPMisc::getClass(m_client, name_space, cimclass));
    if (read)
        m_classes.emplace(key, read.get());
    return read.release();
}

bool COutputer::read_class(FilterResult* result) {
    if (!result->cim_class_def)
        result->cim_class_def = class_of(result->cim_namespace, result->cim_class);
    return result->cim_class_def != nullptr;
}

bool COutputer::read_instance(CMPIObjectPath* object, FilterResult* result) {
    if (!result->instance) {
        CimStatus status;
        CimInstance instance(m_client->ft->getInstance(m_client, object, 0, nullptr, status.out()));
        if (status.ok())
            result->instance = instance.release();
    }
    return result->instance != nullptr;
}

void COutputer::txt_show_target(FilterResult* result, CMPIObjectPath* object, CLPCommand* command) {
    VELCLP_TRACE("CLP.COutputer.txt_show_target");
    command->checkpoint();
    result->object = object;
    result->internal_address = addressOf(addresses(), object, false);
    result->address = addresses().normalUfip(result->internal_address);
    Writer(*m_transport).line(result->address);
    if (result->show_properties)
        txt_show_properties(object, result, command);
    if (result->show_associations)
        txt_show_associations(object, result, command);
    if (result->show_targets)
        txt_show_subtargets(object, result, command);
    if (!result->show_verbs)
        return;
    command->checkpoint();
    const Writer out(*m_transport);
    out.line(TAB, T_VERBS);
    for (const std::string& verb : result->verbs)
        out.line(TAB, TAB, verb);
}

void COutputer::txt_show_target_title(CMPIObjectPath* object) {
    VELCLP_TRACE("CLP.COutputer.txt_show_target_title");
    Writer(*m_transport).line(addressOf(addresses(), object));
}

void COutputer::fetch_properties(CMPIObjectPath* object, FilterResult* result) {
    const bool complete =
        std::all_of(result->properties.begin(), result->properties.end(),
                    [](const auto& property) { return property.second != nullptr; });
    if (complete || !read_instance(object, result))
        return;
    read_class(result);
    for (auto& property : result->properties) {
        if (property.second || property.first.empty())
            continue;
        CimStatus status;
        const CMPIData data = result->instance->ft->getProperty(
            result->instance, property.first.c_str(), status.out());
        if (status.ok())
            property.second = copyValue(data, result->cim_class_def, property.first).release();
    }
}

void COutputer::fetch_pseudo_properties(CMPIObjectPath* object, FilterResult* result) {
    for (auto& property : result->pseudo_properties)
        if (!property.second)
            property.second = getPseudoPropertyValue(result->ufct, property.first, object);
}

void COutputer::txt_show_properties(CMPIObjectPath* object, FilterResult* result,
                                    CLPCommand* command) {
    VELCLP_TRACE("CLP.COutputer.txt_show_properties");
    command->checkpoint();
    fetch_properties(object, result);
    txt_show_properties_interval(result->properties, true);
    fetch_pseudo_properties(object, result);
    txt_show_properties_interval(result->pseudo_properties, false);
}

void COutputer::txt_show_properties_interval(std::map<std::string, PropValue*>& properties,
                                             bool first) {
    VELCLP_TRACE("CLP.COutputer.txt_show_properties_interval");
    const Writer out(*m_transport);
    if (first)
        out.line(TAB, T_PROPERTIES);
    for (const auto& property : properties)
        if (!property.first.empty())
            textProperty(out, property.first, property.second);
}

void COutputer::txt_show_subtargets(CMPIObjectPath* object, FilterResult* result,
                                    CLPCommand* command) {
    VELCLP_TRACE("CLP.COutputer.txt_show_subtargets");
    command->checkpoint();
    const Writer out(*m_transport);
    out.line(TAB, T_TARGETS);
    const std::string parent = result->internal_address.empty()
                                   ? addressOf(addresses(), object, false)
                                   : result->internal_address;
    if (parent.empty())
        return;
    const std::vector<std::string>& dynamic = result->dynamic_ufcts;
    for (const std::string& ufct : result->target_ufcts) {
        if (ufct.empty())
            continue;
        command->checkpoint();
        const std::string level = std::string(parent).append("/").append(ufct);
        // An instance 0 is never cached, so looking for it brings the level up to date.
        if (std::find(dynamic.begin(), dynamic.end(), ufct) != dynamic.end())
            const CimPaths known(addresses().getCIMObjectPath(CLPAddrpath("/", level + "0")));
        for (const std::string& address : addresses().selectUfip(level))
            out.line(TAB, TAB, lastTermOf(address).term);
    }
}

PropValue* COutputer::getPseudoPropertyValue(std::string ufct, std::string property,
                                             CMPIObjectPath* object) {
    VELCLP_TRACE("CLP.COutputer.getPseudoPropertyValue");
    CimStatus status;
    const CimArgs out(native_new_CMPIArgs(status.out()));
    CLPMapping mapping(m_client, nullptr);
    const CLPMapping::TextPairs wanted = {{property, ""}};
    const std::unique_ptr<JobError> error(
        mapping.smPseudoMethod(object, ufct, "show", wanted, out.get()));
    const unsigned int count = out && !error ? out->ft->getArgCount(out.get(), status.out()) : 0;
    if (count == 0)
        return nullptr;
    OwnedPropValue value = copyValue(out->ft->getArgAt(out.get(), 0, nullptr, status.out()));
    if (count == 3) {
        const CMPIData values = out->ft->getArgAt(out.get(), 1, nullptr, status.out());
        const CMPIData valuemap = out->ft->getArgAt(out.get(), 2, nullptr, status.out());
        if ((values.type & valuemap.type & CMPI_ARRAY) && !isNullValue(values) &&
            !isNullValue(valuemap)) {
            value->values = cimClone(values.value.array).release();
            value->valuemap = cimClone(valuemap.value.array).release();
        }
    }
    return value.release();
}

} // namespace velmora_clp
