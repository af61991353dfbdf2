#include "velclp/createcommand.h"

#include "mapping/cimvalue.h"
#include "velclp/addrsvc.h"
#include "velclp/assertion.h"
#include "velclp/clpstring.h"
#include "velclp/core_misc.h"
#include "velclp/coutputer.h"
#include "velclp/log.h"
#include "velclp/mapping.h"
#include "velclp/message.h"
#include "velclp/schema.h"
#include "velclp/token.h"
#include "verbs/typedvalue.h"

#include <CimClientLib/native.h>

#include <climits>
#include <cstdlib>
#include <memory>

namespace velmora_clp {

namespace {

constexpr char const* FUNCTION = "CLP.CLPCreateCommand.svc";

// All terms but the last, each behind a "/".
std::string parentOf(const std::vector<std::string>& terms) {
    std::string parent;
    for (std::size_t i = 0; i + 1 < terms.size(); ++i)
        parent += "/" + terms[i];
    return parent;
}

// The number at the end of an instance term. Too large a number is the largest.
long numberOf(const CLPAddrpath& address) {
    return std::strtol(address.getUfis(address.getTerms().back()).c_str(), nullptr, 10);
}

// The address with the number written without leading zeros, as it is cached.
CLPAddrpath withPlainNumber(const CLPAddrpath& address, const std::string& ufct) {
    const std::string parent = parentOf(address.getTerms());
    return CLPAddrpath("/", parent + "/" + ufct + std::to_string(numberOf(address)));
}

} // namespace

CLPCreateCommand::~CLPCreateCommand() = default;

void CLPCreateCommand::svc() {
    VELCLP_TRACE(FUNCTION);
    CLPAddrSVC addresses(m_client);
    CLPAddrpath address("/admin1", "/admin1");
    CLPMapping mapping(m_client, nullptr);
    if (mayCreate(addresses, mapping, address)) {
        checkpoint();
        const std::string ufct = tagOf(address);
        const std::string entry = CLPSchema::getInstance()->getOptionMap(ufct, "create");
        if (entry.empty())
            createInstance(addresses, mapping, address, ufct);
        else
            createSpecially(addresses, mapping, entry);
    }
    finish(FUNCTION);
}

bool CLPCreateCommand::refuse(JobError::stat cimStatus) {
    setJobError(JobError::Unavailable_Resource_Error, cimStatus, JobError::S_High);
    return false;
}

bool CLPCreateCommand::mayCreate(CLPAddrSVC& addresses, CLPMapping& mapping, CLPAddrpath& address) {
    const std::string target = line()._Target;
    if (target == "/" || target == "\\" || target == "SESSION")
        return refuse(JobError::CIM_ERR_ALREADY_EXISTS);
    if (!address.setPath(m_cdt, target))
        return refuse(JobError::CIM_ERR_NOT_FOUND);
    if (address.getTerms().empty())
        return refuse(JobError::CIM_ERR_ALREADY_EXISTS);
    const std::string ufct = tagOf(address);
    if (address.getTerms().size() == 1 && ufct != "admin")
        address = CLPAddrpath("/admin1", "/admin1" + address.getResultantAddress());
    takeError(mapping.smCheckCommand(ufct, "create"));
    if (m_error)
        return false;
    if (address.getTerms().size() > 1 && !hasParent(addresses, address))
        return refuseParent();
    return address.getType() != 0 ? hasNumberLeft(addresses, address)
                                  : isFree(addresses, address, ufct);
}

// A class whose counter is at its end can take no further object.
bool CLPCreateCommand::hasNumberLeft(CLPAddrSVC& addresses, const CLPAddrpath& address) {
    CLPAddrpath internal("/", "/");
    addresses.internalPath(address, internal);
    if (addresses.getNextSeq(internal.getResultantTarget() + "/" + tagOf(internal)) == INT_MAX)
        return refuse(JobError::CIM_ERR_ALREADY_EXISTS);
    return true;
}

bool CLPCreateCommand::hasParent(CLPAddrSVC& addresses, const CLPAddrpath& address) const {
    const CLPSchema& schema = *CLPSchema::getInstance();
    const CLPAddrpath parent("/", parentOf(address.getTerms()));
    const std::string cimclass = schema.getCIMClass(tagOf(address));
    const std::string parentClass = schema.getCIMClass(tagOf(parent));
    return !cimclass.empty() && !parentClass.empty() && schema.getParent(cimclass) == parentClass &&
           addresses.hasTarget(parent);
}

bool CLPCreateCommand::refuseParent() {
    refuse(JobError::CIM_ERR_NOT_FOUND);
    std::unique_ptr<CLPMessage> message(CLPMessage::NEW_MESSAGE("0xF0000000"));
    VELCLP_LOG_FAILURE(FUNCTION, "%s", message->getMessage().c_str());
    m_error->messages.push_back(message.get());
    static_cast<void>(message.release());
    return false;
}

// A number that the cache could not hold, or that is another writing of one it holds, is as good as
// taken.
bool CLPCreateCommand::isFree(CLPAddrSVC& addresses, const CLPAddrpath& address,
                              const std::string& ufct) {
    if (numberOf(address) > INT_MAX - 1 || addresses.hasTarget(withPlainNumber(address, ufct)))
        return refuse(JobError::CIM_ERR_ALREADY_EXISTS);
    return true;
}

void CLPCreateCommand::createSpecially(CLPAddrSVC& addresses, CLPMapping& mapping,
                                       const std::string& entry) {
    VELCLP_LOG_BRANCH(FUNCTION, "Special method!");
    std::vector<std::string> fields = splitString(entry, ":", true);
    fields.resize(3);
    VELCLP_ASSERT(fields[1] == "special", "type==\"special\"");
    CLPMapping::TextPairs pairs;
    for (const std::string& name : line().getPropertyNames(CLPToken::ASSIGN_PROPERTY)) {
        std::string value;
        const bool flag = line().getProperty(name, value, CLPToken::ASSIGN_PROPERTY);
        VELCLP_ASSERT(flag, "flag");
        pairs.emplace_back(name, value);
    }
    CimStatus status;
    const CimArgs args(native_new_CMPIArgs(status.out()));
    takeError(mapping.smSpecialMethod(fields[0], fields[2], &pairs, args.get(), nullptr));
    if (m_error)
        return;
    VELCLP_ASSERT(args->ft->getArgCount(args.get(), nullptr) == 1,
                  "((args)->ft->getArgCount((args),(__null)))==1");
    const CMPIData data = args->ft->getArgAt(args.get(), 0, nullptr, status.out());
    VELCLP_ASSERT(data.type == CMPI_ref, "data.type==((16+1)<<8)");
    m_object = cimClone(data.value.ref);
    m_address = m_object ? addresses.getUfip(m_object.get()) : std::string();
    VELCLP_ASSERT(!m_address.empty(), "!ufip.empty()");
    VELCLP_LOG_VALUE(FUNCTION, "object=[%s]", m_address.c_str());
}

void CLPCreateCommand::createInstance(CLPAddrSVC& addresses, CLPMapping& mapping,
                                      const CLPAddrpath& address, const std::string& ufct) {
    CMPIObjectPath* object = nullptr;
    CMPIInstance* ins = nullptr;
    mapping.smNewInstance(ufct, &object, &ins);
    const CimPath path(object);
    const CimInstance instance(ins);
    VELCLP_ASSERT(object && ins, "object&&ins");
    CimStatus status;
    const CimClass definition(m_client->ft->getClass(m_client, object, CMPI_FLAG_IncludeQualifiers,
                                                     nullptr, status.out()));
    if (!status.ok() || !definition)
        return takeError(mapping.smProcessOpError(status.ok() ? nullptr : status.get()));
    CMPIObjectPath* result = nullptr;
    if (fillIn(instance.get(), definition.get()))
        takeError(mapping.smCreateInstance(path.get(), instance.get(), &result));
    m_object.reset(result);
    if (m_error)
        return;
    const bool flag = addresses.setUfip(address, result);
    VELCLP_ASSERT(flag, "flag");
    m_address = addresses.getUfip(result);
}

bool CLPCreateCommand::fillIn(CMPIInstance* instance, CMPIConstClass* definition) const {
    for (const std::string& name : line().getPropertyNames(CLPToken::ASSIGN_PROPERTY)) {
        std::string value;
        if (!CLPMisc::checkProperty(definition, lowerString(name)) ||
            !line().getProperty(name, value, CLPToken::ASSIGN_PROPERTY))
            return false;
        const OwnedPropValue typed = typedValue(definition, name, value);
        if (!typed)
            return false;
        setProperty(instance, name, *typed->data);
    }
    return true;
}

void CLPCreateCommand::display() {
    constexpr char const* function = "CLP.CLPCreateCommand.display";
    VELCLP_TRACE(function);
    _CLPStatus status = outcome(function);
    m_output->create_output(m_token, &status, &m_address, m_object.get());
}

} // namespace velmora_clp
