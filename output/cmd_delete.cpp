// The response of delete.
#include "output/lastterm.h"
#include "output/parsedline.h"
#include "output/writer.h"
#include "velclp/clpstatus.h"
#include "velclp/commandstatus.h"
#include "velclp/coutputer.h"
#include "velclp/log.h"

namespace velmora_clp {

namespace {

void textDeleted(const Writer& out, const std::list<std::string>& addresses) {
    if (addresses.empty())
        out.line("Delete failed");
    for (const std::string& address : addresses)
        out.line(address, " deleted");
}

void keywordDeleted(const Writer& out, const std::list<std::string>& addresses) {
    out.pair(T_COMMAND, T_DELETE);
    for (const std::string& address : addresses)
        out.pair(T_UFIP, address);
    out.endoutput();
}

void xmlDeleted(const Writer& out, const std::list<std::string>& addresses) {
    out.open(T_DELETE);
    for (const std::string& address : addresses) {
        out.open(T_TARGET).open(T_INSTANCE);
        ufit_element(out, address);
        out.element(T_UFIP, address).close(T_INSTANCE).close(T_TARGET);
    }
    out.close(T_DELETE).close_response();
}

} // namespace

void COutputer::delete_output(Token token, _CLPStatus* status, std::list<std::string>* addresses) {
    VELCLP_TRACE("CLP.COutputer.delete_output");
    int form = TEXT_FORM;
    if (!open_response(token, status, {T_DELETE, "Delete management element(s)"}, form) ||
        status->status->getStatusCode() == CommandStatus::COMMAND_EXECUTION_FAILED)
        return;
    VELCLP_ASSERT(addresses != nullptr, "(pufiplist != __null)");
    std::string order;
    if (parsedLine(token).getOption("-output:order", order) && order == "reverse")
        addresses->reverse();
    const Writer out(*m_transport);
    if (form == KEYWORD_FORM)
        keywordDeleted(out, *addresses);
    else if (form == CLPXML_FORM)
        xmlDeleted(out, *addresses);
    else
        textDeleted(out, *addresses);
}

void COutputer::delete_output(Token, _CLPStatus*, std::string*) {}

} // namespace velmora_clp
