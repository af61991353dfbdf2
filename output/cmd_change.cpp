// The responses of the verbs that answer with one address: cd, start, stop and reset.
#include "output/lastterm.h"
#include "output/writer.h"
#include "velclp/clpstatus.h"
#include "velclp/commandstatus.h"
#include "velclp/coutputer.h"
#include "velclp/log.h"

#include <ctime>

namespace velmora_clp {

namespace {

// Ends in a line feed.
std::string timeText() {
    const std::time_t now = std::time(nullptr);
    std::tm local = {};
    char text[64] = "";
    if (!localtime_r(&now, &local) || !asctime_r(&local, text))
        return "\n";
    return text;
}

} // namespace

void COutputer::cd_output(Token token, _CLPStatus* status, std::string* address) {
    VELCLP_TRACE("CLP.COutputer.cd_output");
    int form = TEXT_FORM;
    if (!open_response(token, status, {T_CD, "Change current default target (CDT)"}, form) ||
        !address)
        return;
    const Writer out(*m_transport);
    if (form == KEYWORD_FORM)
        out.pair(T_COMMAND, T_CD).pair(T_UFIP, *address).endoutput();
    else if (form == CLPXML_FORM)
        out.open(T_CD).element(T_UFIP, *address).close(T_CD).close_response();
    else
        out.line(*address);
}

void COutputer::change_output(const Token& token, const _CLPStatus* status, const Verb& verb,
                              char const* done, char const* failed, const std::string* address) {
    VELCLP_TRACE("CLP.COutputer.change_output");
    int form = TEXT_FORM;
    if (!open_response(token, status, verb, form) || !address)
        return;
    const std::string now = timeText();
    const Writer out(*m_transport);
    if (form == KEYWORD_FORM) {
        out.pair(T_COMMAND, verb.tag).pair(T_UFIP, *address).pair(T_TIMESTAMP, now).endoutput();
    } else if (form == CLPXML_FORM) {
        out.open(verb.tag).open(T_INSTANCE);
        ufit_element(out, *address);
        out.element(T_UFIP, *address).close(T_INSTANCE);
        out.element(T_TIMESTAMP, now).close(verb.tag).close_response();
    } else {
        const bool isFailure =
            status->status->getStatusCode() == CommandStatus::COMMAND_EXECUTION_FAILED;
        out.line(*address, isFailure ? failed : done, now);
    }
}

void COutputer::start_output(Token token, _CLPStatus* status, std::string* address) {
    change_output(token, status, {T_START, "Start the target"}, " started at ",
                  " started FAILED at ", address);
}

void COutputer::stop_output(Token token, _CLPStatus* status, std::string* address) {
    change_output(token, status, {T_STOP, "Stop the target"}, " stopped at ", " stopped FAILED at ",
                  address);
}

void COutputer::reset_output(Token token, _CLPStatus* status, std::string* address) {
    change_output(token, status, {T_RESET, "Reset the state of the target"}, " reset at ",
                  " reset FAILED at ", address);
}

} // namespace velmora_clp
