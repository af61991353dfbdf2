// The responses of set and create: the address, and what the properties that the line assigned hold
// now on the server.
#include "output/lastterm.h"
#include "output/parsedline.h"
#include "output/propvalue.h"
#include "output/writer.h"
#include "velclp/cimhandle.h"
#include "velclp/clpstatus.h"
#include "velclp/commandstatus.h"
#include "velclp/coutputer.h"
#include "velclp/log.h"

#include <utility>

namespace velmora_clp {

namespace {

using Assigned = std::vector<std::pair<std::string, std::string>>;

CimInstance readInstance(CMCIClient* client, CMPIObjectPath* object) {
    CimStatus status;
    CimInstance instance(client->ft->getInstance(client, object, 0, nullptr, status.out()));
    return status.ok() ? std::move(instance) : nullptr;
}

// The values of the names, up to the first one that has none. An array has an empty text.
Assigned assignedValues(CMPIInstance* instance, const std::vector<std::string>& names) {
    Assigned values;
    for (const std::string& name : names) {
        if (name.empty())
            break;
        CimStatus status;
        const CMPIData data = instance->ft->getProperty(instance, name.c_str(), status.out());
        if (!status.ok() || isNullValue(data))
            break;
        values.emplace_back(name, harmless(cimValueText(data.type, data.value)));
    }
    return values;
}

void textValues(const Writer& out, const Assigned& values) {
    for (const auto& [name, value] : values)
        out.line(TAB, name, "=", value);
}

void keywordInstance(const Writer& out, char const* verb, const std::string& address,
                     const Assigned& values) {
    out.pair(T_COMMAND, verb).begingroup(T_INSTANCE).pair(T_UFIP, address);
    for (const auto& [name, value] : values) {
        out.begingroup(T_PROPERTY).pair(T_PROPERTY_NAME, name);
        out.pair(T_PROPERTY_VAL, value).endgroup();
    }
    out.endgroup().endoutput();
}

void xmlProperties(const Writer& out, const Assigned& values) {
    out.open(T_PROPERTIES);
    for (const auto& [name, value] : values) {
        out.open(T_PROPERTY).element(T_NAME, name);
        out.open(T_VALUE).element(T_VAL, value).close(T_VALUE).close(T_PROPERTY);
    }
    out.close(T_PROPERTIES);
}

} // namespace

void COutputer::set_output(Token token, _CLPStatus* status, std::string* address,
                           CMPIObjectPath* object) {
    VELCLP_TRACE("CLP.COutputer.set_output");
    int form = TEXT_FORM;
    if (!open_response(token, status, {T_SET, "Set properties of ME"}, form) || !address || !object)
        return;
    const CimInstance instance = readInstance(m_client, object);
    if (!instance)
        return;
    const Assigned values = assignedValues(
        instance.get(), parsedLine(token).getPropertyNames(CLPToken::ASSIGN_PROPERTY));
    const Writer out(*m_transport);
    if (form == KEYWORD_FORM) {
        keywordInstance(out, T_SET, *address, values);
    } else if (form == CLPXML_FORM) {
        out.open(T_SET).open(T_INSTANCE).element(T_UFIP, *address);
        xmlProperties(out, values);
        out.close(T_INSTANCE).close(T_SET).close_response();
    } else {
        textValues(out, values);
    }
}

void COutputer::create_nothing(int form) {
    const Writer out(*m_transport);
    if (form == KEYWORD_FORM)
        out.pair(T_COMMAND, T_CREATE).endoutput();
    else if (form == CLPXML_FORM)
        out.open(T_CREATE).close(T_CREATE).close_response();
}

void COutputer::create_output(Token token, _CLPStatus* status, std::string* address,
                              CMPIObjectPath* object) {
    VELCLP_TRACE("CLP.COutputer.create_output");
    int form = TEXT_FORM;
    if (!open_response(token, status, {T_CREATE, "Create management element"}, form))
        return;
    if (status->status->getStatusCode() != CommandStatus::COMMAND_COMPLETED)
        return create_nothing(form);
    VELCLP_ASSERT(address != nullptr, "(pufip != __null)");
    VELCLP_ASSERT(object != nullptr, "(pobjpath != __null)");
    Assigned values;
    if (const CimInstance instance = readInstance(m_client, object))
        values = assignedValues(instance.get(),
                                parsedLine(token).getPropertyNames(CLPToken::ASSIGN_PROPERTY));
    const Writer out(*m_transport);
    if (form == KEYWORD_FORM) {
        keywordInstance(out, T_CREATE, *address, values);
    } else if (form == CLPXML_FORM) {
        out.open(T_CREATE).open(T_INSTANCE);
        ufit_element(out, *address);
        out.element(T_UFIP, *address);
        xmlProperties(out, values);
        out.close(T_INSTANCE).close(T_CREATE).close_response();
    } else {
        out.line(*address);
        textValues(out, values);
    }
}

} // namespace velmora_clp
