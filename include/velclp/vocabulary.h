// The words of every response: the tags and keys of DSP0224's clpxml and keyword forms and the few
// fixed pieces that frame them. They are constants, so they are there before any other static.
#ifndef VELCLP_VOCABULARY_H
#define VELCLP_VOCABULARY_H

namespace velmora_clp {

// Framing
inline constexpr char const* MESSAGE_ENTITY = "Velmora CLP";
inline constexpr char const* XML_TAG_L = "<";
inline constexpr char const* XML_TAG_R = ">";
inline constexpr char const* XML_TAG_LS = "</";
inline constexpr char const* KEYWORD_EQ = "=";
inline constexpr char const* TAB = "\t";
inline constexpr char const* SESSION_OUTPUT_FORMAT_PROP_NAME = "OutputFormat";

// Verbs
inline constexpr char const* T_CREATE = "create";
inline constexpr char const* T_DELETE = "delete";
inline constexpr char const* T_EXIT = "exit";
inline constexpr char const* T_START = "start";
inline constexpr char const* T_STOP = "stop";
inline constexpr char const* T_RESET = "reset";
inline constexpr char const* T_SET = "set";
inline constexpr char const* T_SHOW = "show";
inline constexpr char const* T_LOAD = "load";
inline constexpr char const* T_DUMP = "dump";
inline constexpr char const* T_CD = "cd";
inline constexpr char const* T_HELP = "help";
inline constexpr char const* T_VERSION = "version";
inline constexpr char const* T_EXAMINE = "examine";

// Status block
inline constexpr char const* T_CMDSTAT = "cmdstat";
inline constexpr char const* T_JOB = "job";
inline constexpr char const* T_JOBERR = "joberr";
inline constexpr char const* T_COMMANDLINE = "commandline";
inline constexpr char const* T_STATUS = "status";
inline constexpr char const* T_STATUS_TAG = "status_tag";
inline constexpr char const* T_ERROR = "error";
inline constexpr char const* T_ERROR_TAG = "error_tag";
inline constexpr char const* T_JOB_ID = "job_id";
inline constexpr char const* T_ERRTYPE = "errtype";
inline constexpr char const* T_ERRTYPE_DESC = "errtype_desc";
inline constexpr char const* T_CIMSTAT = "cimstat";
inline constexpr char const* T_CIMSTAT_DESC = "cimstat_desc";
inline constexpr char const* T_SEVERITY = "severity";
inline constexpr char const* T_SEVERITY_DESC = "severity_desc";

// Messages and groups
inline constexpr char const* T_BEGINGROUP = "begingroup";
inline constexpr char const* T_ENDGROUP = "endgroup";
inline constexpr char const* T_OWNINGENTITY = "owningentity";
inline constexpr char const* T_MESSAGE_ID = "message_id";
inline constexpr char const* T_MESSAGE = "message";
inline constexpr char const* T_MESSAGES = "messages";
inline constexpr char const* T_MESSAGEENTITY = "messageentity";
inline constexpr char const* T_MESSAGEID = "messageid";
inline constexpr char const* T_MESSAGETEXT = "messagetext";
inline constexpr char const* T_ENDOUTPUT = "endoutput";

// Document
inline constexpr char const* T_XML_HEAD = R"(<?xml version="1.0" encoding="UTF-8"?>)";
inline constexpr char const* T_RESPONSE_BEGIN =
    "<response xmlns=\"http://schemas.dmtf.org/smash/commandresponse/1.0.0/dsp0224.xsd\" \n"
    "           xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" \n"
    "           xsi:schemaLocation="
    "\"http://schemas.dmtf.org/smash/commandresponse/1.0.0/dsp0224.xsd "
    "smclp_command_response.xsd\">";
inline constexpr char const* T_RESPONSE = "response";
inline constexpr char const* T_COMMAND = "command";
inline constexpr char const* T_INPUTLINE = "inputline";
inline constexpr char const* T_TEXT = "text";

// Bodies
inline constexpr char const* T_UFIP = "ufip";
inline constexpr char const* T_UFIT = "ufit";
inline constexpr char const* T_UFCT = "ufct";
inline constexpr char const* T_TARGET = "target";
inline constexpr char const* T_TARGETS = "targets";
inline constexpr char const* T_SUBTARGETS = "subtargets";
inline constexpr char const* T_INSTANCE = "instance";
inline constexpr char const* T_PROPERTIES = "properties";
inline constexpr char const* T_PROPERTY = "property";
inline constexpr char const* T_NAME = "name";
inline constexpr char const* T_VALUE = "value";
inline constexpr char const* T_VAL = "val";
inline constexpr char const* T_VALSTRING = "valstring";
inline constexpr char const* T_TYPE = "type";
inline constexpr char const* T_PROPERTY_NAME = "property_name";
inline constexpr char const* T_PROPERTY_VAL = "property_val";
inline constexpr char const* T_PROPERTY_VALSTRING = "property_valstring";
inline constexpr char const* T_MULTIVALUE = "multivalue";
inline constexpr char const* T_INDEX = "index";
inline constexpr char const* T_VERB = "verb";
inline constexpr char const* T_VERBS = "verbs";
inline constexpr char const* T_STANDARDVERBS = "standardverbs";
inline constexpr char const* T_OEMVERBS = "oemverbs";
inline constexpr char const* T_ASSOCIATION = "association";
inline constexpr char const* T_ASSOCIATIONS = "associations";
inline constexpr char const* T_REFERENCE = "reference";
inline constexpr char const* T_TIMESTAMP = "timestamp";
inline constexpr char const* T_CLPVERSION = "clpversion";
inline constexpr char const* T_ADDRESSINGVERSION = "addressingversion";

} // namespace velmora_clp

#endif
