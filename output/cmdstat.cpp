// The status block that opens every response (DSP0214, command status; DSP0224, cmdstat): of a
// command that completed, was spawned, failed, or was not run at all.
#include "output/parsedline.h"
#include "output/writer.h"
#include "velclp/commandstatus.h"
#include "velclp/coutputer.h"
#include "velclp/joberror.h"
#include "velclp/log.h"
#include "velclp/processingerror.h"

#include <optional>

namespace velmora_clp {

namespace {

// What -keep adds to the description; nothing without the option or its value.
std::optional<std::string> keepMessage(CLPToken& line, char const* description) {
    std::string keep;
    if (!line.getOption("-keep", keep))
        return std::nullopt;
    std::string text = description ? description : "";
    text += " and keep command result for ";
    const std::string::size_type dot = keep.find('.');
    text += keep.substr(0, dot) + " minutes ";
    if (dot != std::string::npos)
        text += keep.substr(dot + 1) + " seconds ";
    return text;
}

void textStatus(const Writer& out, const CommandStatus& status) {
    out.line(T_CMDSTAT);
    out.line(TAB, T_STATUS, "     : ", static_cast<int>(status.getStatusCode()));
    out.line(TAB, T_STATUS_TAG, " : ", status.getStatusTag());
}

void textJob(const Writer& out, int job_id) {
    out.line(T_JOB);
    out.line(TAB, T_JOB_ID, "     : ", job_id);
}

void textJobError(const Writer& out, const JobError& error) {
    out.line(TAB, T_JOBERR);
    out.line(TAB, TAB, T_ERRTYPE, "       : ", static_cast<int>(error.getErrorCode()));
    out.line(TAB, TAB, T_ERRTYPE_DESC, "  : ", error.getErrorTag());
    out.line(TAB, TAB, T_CIMSTAT, "       : ", static_cast<int>(error.getCimstatCode()));
    out.line(TAB, TAB, T_CIMSTAT_DESC, "  : ", error.getCimstatTag());
    out.line(TAB, TAB, T_SEVERITY, "      : ", static_cast<int>(error.getSeverityCode()));
    out.line(TAB, TAB, T_SEVERITY_DESC, " : ", error.getSeverityTag());
}

void keywordStatus(const Writer& out, CLPToken& line, const CommandStatus& status) {
    out.pair(T_COMMANDLINE, line._CommandLine);
    out.pair(T_STATUS, static_cast<int>(status.getStatusCode()));
    out.pair(T_STATUS_TAG, status.getStatusTag());
}

void keywordJobError(const Writer& out, const JobError& error) {
    out.pair(T_ERRTYPE, static_cast<int>(error.getErrorCode()));
    out.pair(T_ERRTYPE_DESC, error.getErrorTag());
    out.pair(T_CIMSTAT, static_cast<int>(error.getCimstatCode()));
    out.pair(T_CIMSTAT_DESC, error.getCimstatTag());
    out.pair(T_SEVERITY, static_cast<int>(error.getSeverityCode()));
    out.pair(T_SEVERITY_DESC, error.getSeverityTag());
}

// The head of the document up to the code of the status; the cmdstat element stays open.
void xmlStatus(const Writer& out, CLPToken& line, const CommandStatus& status) {
    out.raw(T_XML_HEAD, T_RESPONSE_BEGIN);
    out.open(T_COMMAND).element(T_INPUTLINE, line._CommandLine).close(T_COMMAND);
    out.open(T_CMDSTAT);
    out.element(T_STATUS, static_cast<int>(status.getStatusCode()));
    out.element(T_STATUS_TAG, status.getStatusTag());
}

void xmlJobError(const Writer& out, const JobError& error) {
    out.open(T_JOBERR);
    out.element(T_ERRTYPE, static_cast<int>(error.getErrorCode()));
    out.element(T_ERRTYPE_DESC, error.getErrorTag());
    out.element(T_CIMSTAT, static_cast<int>(error.getCimstatCode()));
    out.element(T_CIMSTAT_DESC, error.getCimstatTag());
    out.element(T_SEVERITY, static_cast<int>(error.getSeverityCode()));
    out.element(T_SEVERITY_DESC, error.getSeverityTag());
    out.close(T_JOBERR);
}

} // namespace

void COutputer::message(const std::string& text, int form) {
    const Writer out(*m_transport);
    if (form == KEYWORD_FORM) {
        out.begingroup(T_MESSAGE).pair(T_OWNINGENTITY, MESSAGE_ENTITY);
        out.pair(T_MESSAGE_ID, ++m_message_id).pair(T_MESSAGE, text).endgroup();
    } else if (form == CLPXML_FORM) {
        out.open(T_MESSAGES).open(T_MESSAGE).element(T_MESSAGEENTITY, MESSAGE_ENTITY);
        out.element(T_MESSAGEID, ++m_message_id).element(T_MESSAGETEXT, text);
        out.close(T_MESSAGE).close(T_MESSAGES);
    } else {
        out.line(text);
    }
}

void COutputer::output_cmdstat_complete(Token token, int job_id, char const* description,
                                        int form) {
    VELCLP_TRACE("CLP.COutputer.output_cmdstat_complete");
    CLPToken& line = parsedLine(token);
    const CommandStatus status(CommandStatus::COMMAND_COMPLETED);
    const std::optional<std::string> keep = keepMessage(line, description);
    const Writer out(*m_transport);
    if (form == KEYWORD_FORM) {
        keywordStatus(out, line, status);
        out.pair(T_JOB_ID, job_id);
    } else if (form == CLPXML_FORM) {
        xmlStatus(out, line, status);
        out.open(T_JOB).element(T_JOB_ID, job_id).close(T_JOB);
    } else if (output_verbose(token) == VERBOSE) {
        textStatus(out, status);
    }
    if (keep)
        message(*keep, form);
    if (form == CLPXML_FORM)
        out.close(T_CMDSTAT).endl();
}

void COutputer::output_cmdstat_spawn(Token token, int job_id, int form) {
    VELCLP_TRACE("CLP.COutputer.output_cmdstat_spawn");
    CLPToken& line = parsedLine(token);
    const CommandStatus status(CommandStatus::COMMAND_SPAWNED);
    const Writer out(*m_transport);
    if (form == KEYWORD_FORM) {
        keywordStatus(out, line, status);
        out.pair(T_JOB_ID, job_id).endoutput();
    } else if (form == CLPXML_FORM) {
        xmlStatus(out, line, status);
        out.open(T_JOB).element(T_JOB_ID, job_id).close(T_JOB).close(T_CMDSTAT).close_response();
    } else if (output_verbose(token) != ERROR_ONLY) {
        textStatus(out, status);
        textJob(out, job_id);
    }
}

void COutputer::output_cmdstat_je(Token token, JobError* error, int job_id, int form) {
    VELCLP_TRACE("CLP.COutputer.output_cmdstat_je");
    CLPToken& line = parsedLine(token);
    JobError unnamed;
    unnamed.setCode(JobError::Software_Error, JobError::CIM_ERR_FAILED, JobError::S_Unknown);
    const JobError& shown = error ? *error : unnamed;
    const CommandStatus status(CommandStatus::COMMAND_EXECUTION_FAILED);
    const Writer out(*m_transport);
    if (form == KEYWORD_FORM) {
        keywordStatus(out, line, status);
        out.pair(T_JOB_ID, job_id);
        keywordJobError(out, shown);
    } else if (form == CLPXML_FORM) {
        xmlStatus(out, line, status);
        out.open(T_JOB).element(T_JOB_ID, job_id);
        xmlJobError(out, shown);
        out.close(T_JOB).close(T_CMDSTAT).endl();
    } else {
        textStatus(out, status);
        textJob(out, job_id);
        textJobError(out, shown);
    }
}

void COutputer::output_cmdstat_pe(Token token, ProcessingError* error, int form) {
    VELCLP_TRACE("CLP.COutputer.output_cmdstat_pe");
    CLPToken& line = parsedLine(token);
    const ProcessingError unspecified;
    const ProcessingError& shown = error ? *error : unspecified;
    const int code = static_cast<int>(shown.getErrorCode());
    const CommandStatus status(CommandStatus::COMMAND_PROCESSING_FAILED);
    const Writer out(*m_transport);
    if (form == KEYWORD_FORM) {
        keywordStatus(out, line, status);
        out.pair(T_ERROR, code).pair(T_ERROR_TAG, shown.getErrorTag()).endoutput();
    } else if (form == CLPXML_FORM) {
        xmlStatus(out, line, status);
        out.element(T_ERROR, code).element(T_ERROR_TAG, shown.getErrorTag());
        out.close(T_CMDSTAT).close_response();
    } else {
        out.line(T_CMDSTAT);
        out.line(TAB, T_STATUS, "       : ", static_cast<int>(status.getStatusCode()));
        out.line(TAB, T_STATUS_TAG, "   : ", status.getStatusTag());
        out.line(TAB, T_ERROR, "        : ", code);
        out.line(TAB, T_ERROR_TAG, "    : ", shown.getErrorTag());
    }
}

void COutputer::pe_output(Token token, ProcessingError* error) {
    VELCLP_TRACE("CLP.COutputer.pe_output");
    output_cmdstat_pe(token, error, output_format(token));
}

} // namespace velmora_clp
