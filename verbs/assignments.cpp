#include "verbs/assignments.h"

#include "output/classes.h"
#include "velclp/addrsvc.h"
#include "velclp/clpstring.h"
#include "velclp/core_misc.h"
#include "velclp/joberror.h"
#include "velclp/log.h"
#include "velclp/schema.h"
#include "verbs/typedvalue.h"

namespace velmora_clp {

namespace {
constexpr char const* FUNCTION = "CLP.CLPSetCommand.svc";
constexpr char const* PSEUDO = "pseudo";
constexpr char const* SPECIAL = "special";
} // namespace

Assignments::Assignments(CLPAddrSVC& addresses, CLPMapping& mapping, CMPIObjectPath* object,
                         CMPIConstClass* definition, const std::string& ufct)
    : m_addresses(addresses),
      m_mapping(mapping),
      m_object(object),
      m_class(definition),
      m_ufct(ufct) {}

Assignments::~Assignments() = default;

Assignments::Route Assignments::routeOf(const std::string& name) const {
    const std::string entry =
        CLPSchema::getInstance()->getOptionMap(m_ufct, "set." + lowerString(name));
    std::vector<std::string> fields = splitString(entry, ":", true);
    fields.resize(3);
    if (!entry.empty())
        VELCLP_LOG_VALUE(FUNCTION, "method=[%s],type=[%s],cimclass=[%s]", fields[2].c_str(),
                         fields[1].c_str(), fields[0].c_str());
    return {fields[0], fields[1], fields[2]};
}

bool Assignments::add(const std::string& name, const std::string& value) {
    VELCLP_LOG_VALUE(FUNCTION, "name=[%s]", name.c_str());
    if (CLPMisc::checkPseudoProperty(m_ufct, name)) {
        VELCLP_LOG_BRANCH(FUNCTION, "Is pseudo property!");
    } else if (!CLPMisc::checkProperty(m_class, lowerString(name))) {
        VELCLP_LOG_FAILURE(FUNCTION, "Isn't property of this class!");
        return false;
    }
    const Route route = routeOf(name);
    if (route.type == PSEUDO || route.type == SPECIAL)
        return runMethod(route, name, value);
    return addTyped(route, name, value);
}

bool Assignments::runMethod(const Route& route, const std::string& name, const std::string& value) {
    if (route.type == PSEUDO)
        return succeeded(
            m_mapping.smPseudoMethod(m_object, m_ufct, route.method, {{name, value}}, nullptr));
    const CLPMapping::TextPairs arguments = {{"", addressOf(m_addresses, m_object)}, {name, value}};
    return succeeded(
        m_mapping.smSpecialMethod(route.cimclass, route.method, &arguments, nullptr, m_object));
}

// A pseudo property without a method is no property of the class, and so has no type.
bool Assignments::addTyped(const Route& route, const std::string& name, const std::string& value) {
    OwnedPropValue typed;
    if (CLPMisc::checkProperty(m_class, lowerString(name)))
        typed = typedValue(m_class, name, value);
    if (!typed) {
        VELCLP_LOG_FAILURE(FUNCTION, "Fail to normal property!");
        return false;
    }
    CMPIData* data = typed->data;
    m_values.push_back(std::move(typed));
    if (route.type.empty()) {
        m_plain[name] = data;
        return true;
    }
    const CLPMapping::DataPairs arguments = {{name, data}};
    CLPMapping::DataPairs outputs;
    return succeeded(m_mapping.smInvokeMethod(m_object, route.method, &arguments, &outputs));
}

bool Assignments::succeeded(JobError* error) {
    m_error.reset(error);
    return !m_error;
}

JobError* Assignments::takeError() {
    return m_error ? m_error.release() : m_mapping.smProcessOpError(nullptr);
}

JobError* Assignments::write() {
    return m_plain.empty() ? nullptr : m_mapping.smSetInstance(m_object, &m_plain);
}

} // namespace velmora_clp
