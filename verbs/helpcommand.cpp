#include "velclp/helpcommand.h"

#include "velclp/addrsvc.h"
#include "velclp/clpman.h"
#include "velclp/clpstring.h"
#include "velclp/coutputer.h"
#include "velclp/log.h"
#include "velclp/schema.h"
#include "velclp/token.h"

namespace velmora_clp {

namespace {

constexpr char const* COULD_NOT_RECOGNIZE = "Could not recognize the requested token ";

// What the look of a target says: nothing, an address, or neither address nor topic.
enum Mark { OPEN, ADDRESS, NEITHER };

bool isDigit(char c) {
    return c >= '0' && c <= '9';
}

Mark markOf(const std::string& target) {
    if (target.find('.') == std::string::npos)
        return OPEN;
    return target.back() == '.' || isDigit(target.back()) ? ADDRESS : NEITHER;
}

} // namespace

CLPHelpCommand::~CLPHelpCommand() = default;

void CLPHelpCommand::svc() {
    constexpr char const* FUNCTION = "CLP.CLPHelpCommand.svc";
    VELCLP_TRACE(FUNCTION);
    CLPAddrSVC addresses(m_client);
    std::string target = line()._Target;
    if (target == "SESSION" && !normalTarget(addresses, target)) {
        m_kind = UNRECOGNIZED;
        return failNotFound(FUNCTION);
    }
    m_kind = classify(addresses, target);
    finish(FUNCTION);
}

CLPHelpCommand::Kind CLPHelpCommand::classify(CLPAddrSVC& addresses, std::string target) {
    if (target.empty() || target.find(':') != std::string::npos)
        return DEFAULT_TOPIC;
    Mark mark = markOf(target);
    if (target == "/") {
        target = "/admin1";
        mark = ADDRESS;
    }
    if (mark == NEITHER || target.back() == '*')
        return UNRECOGNIZED;
    if (mark == ADDRESS || isDigit(target.back()))
        return describeTarget(addresses, lowerString(target)) ? READY : UNRECOGNIZED;
    return TOPIC;
}

bool CLPHelpCommand::describeTarget(CLPAddrSVC& addresses, const std::string& target) {
    CLPAddrpath path("/admin1", "/admin1");
    if (!setAddress(path, m_cdt, target))
        return false;
    const CimPaths objects(addresses.getCIMObjectPath(path));
    if (objects.size() != 1)
        return false;
    m_text = "Supported verbs:\n";
    for (const std::string& verb : CLPSchema::getInstance()->getVerbs_ufct(tagOf(path)))
        m_text += "\t" + verb + "\n";
    return true;
}

void CLPHelpCommand::display() {
    constexpr char const* FUNCTION = "CLP.CLPHelpCommand.display";
    VELCLP_TRACE(FUNCTION);
    if (m_kind == TOPIC || m_kind == DEFAULT_TOPIC) {
        CLP_Man_GetTopic(m_kind == TOPIC ? line()._Target : "default", m_text);
        if (m_text.empty())
            m_kind = UNRECOGNIZED;
    }
    if (m_kind == UNRECOGNIZED) {
        std::string topic;
        CLP_Man_GetTopic("default", topic);
        m_text = COULD_NOT_RECOGNIZE + ("\"" + line()._Target + "\"") + "\n" + topic;
    }
    VELCLP_LOG_VALUE(FUNCTION, "job=[%d],status=[%s],text=[%s]", m_jobId, m_status.getStatusTag(),
                     m_text.c_str());
    _CLPStatus status = {&m_status, m_error, m_jobId};
    m_output->help_output(m_token, &status, m_text);
}

} // namespace velmora_clp
