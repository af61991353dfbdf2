#include "velclp/statecommand.h"

#include "velclp/addrsvc.h"
#include "velclp/assertion.h"
#include "velclp/clpstring.h"
#include "velclp/core_misc.h"
#include "velclp/log.h"
#include "velclp/mapping.h"
#include "velclp/schema.h"
#include "velclp/token.h"
#include "verbs/typedvalue.h"

namespace velmora_clp {

namespace {

constexpr char const* VERBS[] = {"start", "stop", "reset"};

// The parameters of a method, as the schema lists them: names, or name|value. The names are those
// of properties, whose types the values take; for stop others are allowed, with integer values.
class Parameters {
public:
    Parameters(CMPIConstClass* cimclass, bool othersAllowed)
        : m_class(cimclass), m_othersAllowed(othersAllowed) {}

    void add(const std::string& entry) {
        const std::vector<std::string> p = splitString(entry, "|", true);
        VELCLP_ASSERT(static_cast<int>(p.size()) <= 2, "static_cast<int>(p.size())<=2");
        const bool flag = CLPMisc::checkProperty(m_class, p[0]);
        VELCLP_ASSERT(flag || m_othersAllowed, "flag");
        if (!flag)
            VELCLP_LOG_BRANCH("CLP.StateCommand.invoke", "Is not property!");
        OwnedPropValue value;
        if (p.size() == 2) {
            value = flag ? typedValue(m_class, p[0], p[1]) : integerValue(p[1]);
            VELCLP_ASSERT(value != nullptr, "flag");
        }
        m_pairs.emplace_back(p[0], value ? value->data : nullptr);
        m_values.push_back(std::move(value));
    }

    const CLPMapping::DataPairs& pairs() const { return m_pairs; }

private:
    CMPIConstClass* m_class;
    bool m_othersAllowed;
    CLPMapping::DataPairs m_pairs; // borrowed from the values
    std::vector<OwnedPropValue> m_values;
};

} // namespace

void StateCommand::changeState(char const* function, Change change) {
    VELCLP_TRACE(function);
    CLPAddrSVC addresses(m_client);
    CLPAddrpath path("/admin1", "/admin1");
    if (!readTarget(addresses, path))
        return failNotFound(function);
    const std::string ufct = tagOf(path);
    m_address = resultantTarget(path);
    CLPMapping mapping(m_client, m_transport);
    takeError(mapping.smCheckCommand(ufct, VERBS[change]));
    if (m_error)
        return finish(function);
    const CimPaths objects(addresses.getCIMObjectPath(path));
    if (objects.empty())
        return failNotFound(function);
    checkpoint();
    takeError(carryOut(mapping, objects.front(), ufct, change));
    finish(function);
}

JobError* StateCommand::carryOut(CLPMapping& mapping, CMPIObjectPath* object,
                                 const std::string& ufct, Change change) const {
    const bool isForced = change == STOP && line().hasOption("-force");
    const std::string entry =
        CLPSchema::getInstance()->getOptionMap(ufct, isForced ? "stop.-force" : VERBS[change]);
    if (entry.empty()) {
        if (change == START)
            return mapping.smStartRSC(object);
        return change == STOP ? mapping.smStopRSC(object) : mapping.smResetRSC(object);
    }
    std::vector<std::string> fields = splitString(entry, ":", true);
    const std::string parameters = fields.size() == 4 ? fields[3] : "";
    fields.resize(3);
    const std::string& type = fields[1];
    const std::string& method = fields[2];
    VELCLP_LOG_VALUE("CLP.StateCommand.carryOut", "method=[%s],type=[%s]", method.c_str(),
                     type.c_str());
    if (type == "pseudo")
        return mapping.smPseudoMethod(object, ufct, method, {}, nullptr);
    if (type == "callback" || change == RESET)
        return nullptr;
    return invoke(mapping, object, method, parameters, change);
}

JobError* StateCommand::invoke(CLPMapping& mapping, CMPIObjectPath* object,
                               const std::string& method, const std::string& parameters,
                               Change change) const {
    CimStatus status;
    const CimClass definition = readClass(object, status);
    if (!definition)
        return mapping.smProcessOpError(status.ok() ? nullptr : status.get());
    if (!parameters.empty())
        VELCLP_LOG_VALUE("CLP.StateCommand.invoke", "params=[%s]", parameters.c_str());
    Parameters list(definition.get(), change == STOP);
    for (const std::string& entry : splitString(parameters, ",", false))
        list.add(entry);
    CLPMapping::DataPairs outputs;
    return mapping.smInvokeMethod(object, method, &list.pairs(), &outputs);
}

} // namespace velmora_clp
