// What all responses share: the choice of form and verbosity, escaping, and the frame that runs
// before a verb's own body.
#include "velclp/coutputer.h"

#include "output/parsedline.h"
#include "output/writer.h"
#include "velclp/addrsvc.h"
#include "velclp/clpman.h"
#include "velclp/clpsession.h"
#include "velclp/clpstatus.h"
#include "velclp/commandstatus.h"
#include "velclp/log.h"

namespace velmora_clp {

namespace {

constexpr char const* OPT_FORMAT = "-output:format";
constexpr char const* OPT_TERSE = "-output:terse";
constexpr char const* OPT_VERBOSE = "-output:verbose";
constexpr char const* OPT_ERROR = "-output:error";
constexpr char const* OPT_HELP = "-help";
constexpr char const* OPT_VERSION = "-version";
constexpr char const* OPT_EXAMINE = "-examine";

int formOfName(const std::string& name) {
    if (name == "keyword")
        return COutputer::KEYWORD_FORM;
    return name == "clpxml" ? COutputer::CLPXML_FORM : COutputer::TEXT_FORM;
}

// The session keeps the values that CIM gives its property OutputFormat.
int formOfSession() {
    std::string code;
    if (CLPSession* session = CLPSession::getInstance())
        session->getOutputFormat(code);
    if (code == "4")
        return COutputer::KEYWORD_FORM;
    return code == "5" ? COutputer::CLPXML_FORM : COutputer::TEXT_FORM;
}

} // namespace

COutputer::COutputer(_CMCIClient* client, Transport* transport)
    : m_client(client), m_transport(transport) {}

COutputer::~COutputer() {
    for (const auto& known : m_classes)
        known.second->ft->release(known.second);
}

void COutputer::setTransport(Transport* transport) {
    m_transport = transport;
}

int COutputer::output_format(Token token) {
    VELCLP_TRACE("CLP.COutputer.output_format");
    if (!token)
        return TEXT_FORM;
    if (!token->hasOption(OPT_FORMAT))
        return formOfSession();
    std::string name;
    return token->getOption(OPT_FORMAT, name) ? formOfName(name) : TEXT_FORM;
}

int COutputer::output_verbose(Token token) {
    VELCLP_TRACE("CLP.COutputer.output_verbose");
    if (!token || token->hasOption(OPT_TERSE))
        return TERSE;
    if (token->hasOption(OPT_VERBOSE))
        return VERBOSE;
    return token->hasOption(OPT_ERROR) ? ERROR_ONLY : TERSE;
}

std::string COutputer::xml_escaping_output(char const* text) {
    VELCLP_TRACE("CLP.COutputer.xml_escaping_output");
    const std::string source = text ? text : "";
    std::string escaped;
    escaped.reserve(source.size());
    for (const char c : source) {
        if (c == '<')
            escaped += "&lt;";
        else if (c == '>')
            escaped += "&gt;";
        else
            escaped += c;
    }
    *m_transport << escaped;
    return std::string();
}

bool COutputer::open_response(const Token& token, const _CLPStatus* status, const Verb& verb,
                              int& form) {
    VELCLP_TRACE("CLP.COutputer.open_response");
    form = output_format(token);
    if (!status || !status->status)
        return false;
    switch (status->status->getStatusCode()) {
    case CommandStatus::COMMAND_COMPLETED:
        output_cmdstat_complete(token, status->job_id, verb.description, form);
        break;
    case CommandStatus::COMMAND_SPAWNED:
        output_cmdstat_spawn(token, status->job_id, form);
        return false;
    case CommandStatus::COMMAND_EXECUTION_FAILED:
        output_cmdstat_je(token, status->error, status->job_id, form);
        break;
    default:
        return false;
    }
    return !option_response(token, verb.tag, form);
}

bool COutputer::option_response(const Token& token, char const* verb, int form) {
    const CLPToken& line = parsedLine(token);
    if (line.hasOption(OPT_HELP))
        help_option(verb, form);
    else if (line.hasOption(OPT_VERSION))
        version_option(verb, form);
    else if (line.hasOption(OPT_EXAMINE))
        examine_option(token, verb, form);
    else
        return false;
    return true;
}

void COutputer::help_option(char const* verb, int form) {
    std::string topic;
    CLP_Man_GetTopic(verb, topic);
    const Writer out(*m_transport);
    if (form == KEYWORD_FORM) {
        out.pair(T_COMMAND, verb).pair(T_HELP, topic).endoutput();
    } else if (form == CLPXML_FORM) {
        out.open(verb).open(T_HELP).open(T_TEXT);
        xml_escaping_output(topic.c_str());
        out.close(T_TEXT).close(T_HELP).close(verb).close_response();
    } else if (topic.empty()) {
        out.line("Cannot find help for ", verb);
    } else {
        out.line(topic);
    }
}

void COutputer::version_option(char const* verb, int form) {
    const Writer out(*m_transport);
    if (form == KEYWORD_FORM)
        out.pair(T_COMMAND, verb).pair(T_VERSION, "version of ", verb).endoutput();
    else if (form == CLPXML_FORM)
        out.open(verb).element(T_VERSION, "Version of ", verb).close(verb).close_response();
    else
        out.line("version of ", verb);
}

void COutputer::examine_option(const Token& token, char const* verb, int form) {
    const std::string sentence = "[" + parsedLine(token)._CommandLine + "] pass syntax checking";
    const Writer out(*m_transport);
    if (form == KEYWORD_FORM)
        out.pair(T_COMMAND, verb).pair(T_EXAMINE, sentence).endoutput();
    else if (form == CLPXML_FORM)
        out.open(verb)
            .open(T_EXAMINE)
            .element(T_TEXT, sentence)
            .close(T_EXAMINE)
            .close(verb)
            .close_response();
    else
        out.line(sentence);
}

void COutputer::exit_output(Token token) {
    VELCLP_TRACE("CLP.COutputer.exit_output");
    const int form = output_format(token);
    if (option_response(token, T_EXIT, form))
        return;
    const Writer out(*m_transport);
    if (form == KEYWORD_FORM)
        out.pair(T_COMMAND, T_EXIT).endoutput();
    else if (form == CLPXML_FORM)
        out.open(T_EXIT).close(T_EXIT).close_response();
    else
        out.line("CLP Session End");
}

} // namespace velmora_clp
