// The verb show: its target, the choice between the two forms, and the text form.
#include "velclp/showcommand.h"

#include "output/classes.h"
#include "output/paging.h"
#include "velclp/assertion.h"
#include "velclp/clpsession.h"
#include "velclp/coutputer.h"
#include "velclp/log.h"
#include "velclp/schema.h"
#include "velclp/token.h"

#include <boost/lexical_cast.hpp>

#include <algorithm>

namespace velmora_clp {

namespace {
constexpr char const* FUNCTION = "CLP.CLPShowCommand.svc";
} // namespace

CLPShowCommand::~CLPShowCommand() = default;

CLPAddrSVC& CLPShowCommand::addresses() {
    if (!m_addresses)
        m_addresses = std::make_unique<CLPAddrSVC>(m_client);
    return *m_addresses;
}

int CLPShowCommand::level() const {
    std::string text = "1";
    line().getOption("-level", text);
    return boost::lexical_cast<int>(text == "all" ? "256" : text);
}

void CLPShowCommand::svc() {
    VELCLP_TRACE(FUNCTION);
    CLPAddrpath address("/admin1", "/admin1");
    CimPaths objects(findObjects(address));
    checkpoint();
    if (objects.empty())
        return failNotFound(FUNCTION);
    if (requireTxtShow(m_token))
        showText(objects.vector(), address);
    else
        showTree(objects.vector());
}

std::vector<CMPIObjectPath*> CLPShowCommand::findObjects(CLPAddrpath& address) {
    if (!readTarget(addresses(), address))
        return {};
    if (line()._Target == "SESSION") {
        CimPaths session;
        if (CimPath object = cimClone(CLPSession::getInstance()->getObjectPath()))
            session.push_back(std::move(object));
        return session.release();
    }
    primeDynamicClass(address);
    return addresses().getCIMObjectPath(address);
}

// Objects of a dynamic class come and go: an instance 0, which is never cached, has the level
// looked at on the server.
void CLPShowCommand::primeDynamicClass(const CLPAddrpath& address) {
    const CLPSchema& schema = *CLPSchema::getInstance();
    const std::string ufct = tagOf(address);
    const std::string& cimclass = schema.getCIMClass(ufct);
    if (cimclass.empty() || schema.getType(cimclass) != "dynamic")
        return;
    const std::string up = address.getType() == 0 ? "/.." : "";
    const std::string instance = resultantTarget(address) + up + "/" + ufct + "0";
    CLPAddrpath probe("/admin1", "/admin1");
    if (setAddress(probe, "/admin1", instance))
        const CimPaths dropped(addresses().getCIMObjectPath(probe));
}

void CLPShowCommand::display() {
    constexpr char const* function = "CLP.CLPShowCommand.display";
    VELCLP_TRACE(function);
    if (stopRequested())
        return;
    _CLPStatus status = outcome(function);
    m_output->show_output(m_token, &status, m_response, this);
}

bool CLPShowCommand::requireTxtShow(const boost::shared_ptr<CLPToken>& token) {
    VELCLP_TRACE("CLP.CLPShowCommand.requireTxtShow");
    if (COutputer::output_format(token) != COutputer::TEXT_FORM)
        return false;
    return token->getPropertyNames(CLPToken::FILTER_PROPERTY).empty() || !hasPaging(*token);
}

std::vector<CMPIObjectPath*>
CLPShowCommand::handleOutputObjectPath(std::vector<CMPIObjectPath*> objects) {
    VELCLP_TRACE("CLP.CLPShowCommand.handleOutputObjectPath");
    if (!hasPaging(line()))
        return objects;
    const Page page = textPage(line(), static_cast<long>(objects.size()));
    std::vector<CMPIObjectPath*> kept(objects.begin() + page.start, objects.begin() + page.end);
    std::string order;
    if (line().hasOption("-output:order")) {
        line().getOption("-output:order", order);
        if (order != "reverse")
            return {};
        std::reverse(kept.begin(), kept.end());
    }
    return kept;
}

void CLPShowCommand::showText(std::vector<CMPIObjectPath*>& objects, CLPAddrpath& address) {
    std::string reference = line()._Ref;
    CimPaths ends;
    if (!reference.empty()) {
        CLPAddrpath end("/admin1", "/admin1");
        if (normalTarget(addresses(), reference) && setAddress(end, m_cdt, reference))
            ends = CimPaths(addresses().getCIMObjectPath(end));
        if (ends.size() != 1)
            return failNotFound(FUNCTION);
    }
    txt_show(level(), objects, address, line()._AssocClass, reference,
             ends.empty() ? nullptr : ends.front());
    setCommandStatus(CommandStatus::COMMAND_COMPLETED);
}

void CLPShowCommand::txt_show(int level, std::vector<CMPIObjectPath*>& objects, CLPAddrpath&,
                              std::string association_class, std::string reference,
                              CMPIObjectPath* object) {
    VELCLP_TRACE("CLP.CLPShowCommand.txt_show");
    checkpoint();
    if (objects.empty())
        return;
    FilterResult result;
    result.command = this;
    result.cim_class = cimClassName(objects.front());
    const bool selecting = m_output->CheckSelectorStatic(m_token, &result);
    if (result.display && association_class.empty()) {
        m_output->FilterCheckT(m_token, &result);
    } else if (result.display) {
        result.reference_text = reference;
        result.reference = object;
        m_output->FilterCheckA(m_token, &result, association_class);
    }
    const std::vector<std::string>& children =
        CLPSchema::getInstance()->getChildren_ufcts(knownClassOf(result.cim_class));
    const bool isLast = level <= 1 || children.empty();
    const bool wasDisplayed = result.display;
    for (CMPIObjectPath* path : !selecting && isLast ? handleOutputObjectPath(objects) : objects) {
        checkpoint();
        result.startObject(path);
        result.display = wasDisplayed;
        if (selecting)
            m_output->CheckSelectorDynamic(m_token, &result);
        if (result.display)
            m_output->txt_show_target(&result, path, this);
        if (!association_class.empty())
            return;
        if (!isLast)
            showBelow(level, path, result, children);
    }
}

void CLPShowCommand::showBelow(int level, CMPIObjectPath* object, const FilterResult& result,
                               const std::vector<std::string>& children) {
    const std::string parent = result.internal_address.empty()
                                   ? addressOf(addresses(), object, false)
                                   : result.internal_address;
    if (parent.empty())
        return;
    for (const std::string& ufct : children) {
        checkpoint();
        CLPAddrpath below("/admin1", std::string(parent).append("/").append(ufct).append("*"));
        // The list of targets has just looked at the dynamic classes.
        if (!(result.display && result.show_targets))
            primeDynamicClass(below);
        CimPaths objects(addresses().getCIMObjectPath(below));
        txt_show(level - 1, objects.vector(), below, "", "");
    }
}

} // namespace velmora_clp
