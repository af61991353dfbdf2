// The responses of the verbs that answer with text of their own, help and version, and of load and
// dump, whose body is empty.
#include "output/writer.h"
#include "velclp/clpstatus.h"
#include "velclp/commandstatus.h"
#include "velclp/coutputer.h"
#include "velclp/log.h"

namespace velmora_clp {

void COutputer::help_output(Token token, _CLPStatus* status, std::string& text) {
    VELCLP_TRACE("CLP.COutputer.help_output");
    int form = TEXT_FORM;
    if (!open_response(token, status, {T_HELP, "On line help"}, form))
        return;
    const Writer out(*m_transport);
    if (form == KEYWORD_FORM) {
        out.pair(T_COMMAND, T_HELP).line(text).endoutput();
    } else if (form == CLPXML_FORM) {
        out.open(T_HELP).open(T_TEXT);
        xml_escaping_output(text.c_str());
        out.close(T_TEXT).close(T_HELP).close_response();
    } else {
        if (text.empty() && status->status->getStatusCode() == CommandStatus::COMMAND_COMPLETED)
            text = "Cannot find this help topic";
        out.line(text);
    }
}

void COutputer::version_output(Token token, _CLPStatus* status, std::string* clp_version,
                               std::string* addressing_version) {
    VELCLP_TRACE("CLP.COutputer.version_output");
    int form = TEXT_FORM;
    const Verb verb = {T_VERSION, "Show CLP and addressing version of the CLP service"};
    if (!open_response(token, status, verb, form) || !clp_version || !addressing_version)
        return;
    const Writer out(*m_transport);
    if (form == KEYWORD_FORM) {
        out.pair(T_COMMAND, T_VERSION).pair(T_CLPVERSION, *clp_version);
        out.pair(T_ADDRESSINGVERSION, *addressing_version).endoutput();
    } else if (form == CLPXML_FORM) {
        out.open(T_VERSION).element(T_CLPVERSION, *clp_version);
        out.element(T_ADDRESSINGVERSION, *addressing_version).close(T_VERSION).close_response();
    } else {
        out.line("SM CLP Version: ", *clp_version);
        out.line("SM ME Addressing Version: ", *addressing_version);
    }
}

void COutputer::load_output(Token token, _CLPStatus* status) {
    VELCLP_TRACE("CLP.COutputer.load_output");
    int form = TEXT_FORM;
    open_response(token, status, {T_LOAD, "Load data"}, form);
}

void COutputer::dump_output(Token token, _CLPStatus* status) {
    VELCLP_TRACE("CLP.COutputer.dump_output");
    int form = TEXT_FORM;
    open_response(token, status, {T_DUMP, "Dump data"}, form);
}

} // namespace velmora_clp
