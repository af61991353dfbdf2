// Turns the result of one command into the bytes that the user sees, in one of three forms: plain
// text, keyword lines, or the clpxml document of DSP0224. Every response leaves through this class.
// It writes as it goes, holds no state but a message counter, changes nothing on the CIM server and
// takes no lock: one object belongs to the thread that prints.
#ifndef VELCLP_COUTPUTER_H
#define VELCLP_COUTPUTER_H

#include "velclp/showrecords.h"

#include <CimClientLib/cmci.h>
#include <boost/shared_ptr.hpp>

#include <list>
#include <map>
#include <memory>
#include <string>
#include <vector>

class CLPToken;
class Transport;

namespace velmora_clp {

class CLPAddrSVC;
class CLPCommand;
class JobError;
class ProcessingError;
struct _CLPStatus;

class COutputer {
public:
    enum Form { TEXT_FORM = 1, KEYWORD_FORM = 2, CLPXML_FORM = 3 };
    enum Verbosity { TERSE = 4, VERBOSE = 5, ERROR_ONLY = 6 };
    using Token = boost::shared_ptr<CLPToken>;

    // Both are borrowed. The client may be null where no show and no set or create is printed.
    COutputer(_CMCIClient* client, Transport* transport);
    virtual ~COutputer();

    // All later output goes there. Borrowed, must not be null.
    void setTransport(Transport* transport);

    // The form that the line asks for with -output, else the session's (DSP0214, output options).
    // A null token gives text, as does any value that names no form.
    static int output_format(Token token);

    // terse, verbose or error, in that order of precedence; terse without an option or a token.
    static int output_verbose(Token token);

    // Writes text with "<" and ">" escaped and returns the empty string, so that it can stand in a
    // chain of writes. Null writes nothing.
    std::string xml_escaping_output(char const* text);

    // The status block of a completed command. The description is printed only as the beginning of
    // the message that -keep gives. In clpxml the response element stays open for the verb's body.
    void output_cmdstat_complete(Token token, int job_id, char const* description, int form);
    // The whole response of a spawned command.
    void output_cmdstat_spawn(Token token, int job_id, int form);
    // The status block of a failed execution; a verb's body follows.
    void output_cmdstat_je(Token token, JobError* error, int job_id, int form);
    // The whole response of a line that was not run.
    void output_cmdstat_pe(Token token, ProcessingError* error, int form);
    // The same, in the form that the line or the session asks for.
    void pe_output(Token token, ProcessingError* error);

    // The responses of the verbs. Each takes the parsed line, the outcome (null prints nothing) and
    // what the verb has to tell; everything is borrowed. A null address or text prints the status
    // block alone.
    void exit_output(Token token);
    void cd_output(Token token, _CLPStatus* status, std::string* address);
    void help_output(Token token, _CLPStatus* status, std::string& text);
    void version_output(Token token, _CLPStatus* status, std::string* clp_version,
                        std::string* addressing_version);
    void start_output(Token token, _CLPStatus* status, std::string* address);
    void stop_output(Token token, _CLPStatus* status, std::string* address);
    void reset_output(Token token, _CLPStatus* status, std::string* address);
    void load_output(Token token, _CLPStatus* status);
    void dump_output(Token token, _CLPStatus* status);
    // Reads the instance again and prints the properties that the line assigned.
    void set_output(Token token, _CLPStatus* status, std::string* address, CMPIObjectPath* object);
    // As set_output; a completed creation must come with both (else the process ends).
    void create_output(Token token, _CLPStatus* status, std::string* address,
                       CMPIObjectPath* object);
    // The list is reversed in place when the line asks for that order.
    void delete_output(Token token, _CLPStatus* status, std::list<std::string>* addresses);
    void delete_output(Token token, _CLPStatus* status, std::string* address);

    // Prints the tree of a show and frees it: the list is left empty. Null prints no target.
    void show_output(Token token, _CLPStatus* status, std::list<TargetGroup*>* groups,
                     CLPCommand* command);
    // One level of that tree. Each record is freed when it is printed, and unlinked before that, so
    // that the list can be freed at any checkpoint of the command.
    void show_result(Token token, std::list<TargetGroup*>* groups, _show_filter* filter, int form,
                     CLPCommand* command);

    // The text form of show, one object at a time. Objects are borrowed.
    void txt_show_target(FilterResult* result, CMPIObjectPath* object, CLPCommand* command);
    void txt_show_target_title(CMPIObjectPath* object);
    void txt_show_properties(CMPIObjectPath* object, FilterResult* result, CLPCommand* command);
    void txt_show_properties_interval(std::map<std::string, PropValue*>& properties, bool first);
    void txt_show_subtargets(CMPIObjectPath* object, FilterResult* result, CLPCommand* command);
    void txt_show_associations(CMPIObjectPath* object, FilterResult* result, CLPCommand* command);
    void txt_show_associations_internal(std::string association_class,
                                        std::vector<CMPIObjectPath*>& paths, FilterResult* result);

    // Appends the association instances of the class that refer to the object, and to the
    // reference unless that is null. The paths are the caller's.
    void RetriveAssocObjectPath(CMPIObjectPath* object, std::string association_class,
                                std::vector<CMPIObjectPath*>& out, CMPIObjectPath* reference);
    // The value of a pseudo property, the caller's; null when it cannot be read.
    PropValue* getPseudoPropertyValue(std::string ufct, std::string property,
                                      CMPIObjectPath* object);
    // The text of a value, and of its entry in the Values qualifier where there is one, else null.
    // Both texts are the caller's, to be given to free().
    static void SET_VALUE_VALUEMAP_STR(CMPIData* data, CMPIArray* values, CMPIArray* valuemap,
                                       char** value, char** value_string);

    // The decision what the text form prints. They never report: what cannot be read is not shown.
    // True when the class passes and the line has value selectors, to be compared per object.
    bool CheckSelectorStatic(Token token, FilterResult* result);
    // Fills in the sections of a target, or those of one association class by its tag.
    void FilterCheckT(Token token, FilterResult* result);
    void FilterCheckA(Token token, FilterResult* result, std::string association_ufct);
    // Compares the value selectors with the object of the result; false when it is not displayed.
    bool CheckSelectorDynamic(Token token, FilterResult* result);
    // Does the association, by its keys, join the two objects?
    static bool CheckAssocFilter(CMPIObjectPath* object, CMPIObjectPath* association,
                                 CMPIObjectPath* reference);
    // A hook for a debugger, called at the end of the checks.
    static void _dump_FilterResult(FilterResult* result, char const* where);

private:
    class ShowTree;
    struct Verb {
        char const* tag;
        char const* description;
    };
    // The frame of a verb's response: status block, then -help, -version and -examine. True when
    // the verb's own body is to follow, in the form that is set.
    bool open_response(const Token& token, const _CLPStatus* status, const Verb& verb, int& form);
    bool option_response(const Token& token, char const* verb, int form);
    void help_option(char const* verb, int form);
    void version_option(char const* verb, int form);
    void examine_option(const Token& token, char const* verb, int form);
    void message(const std::string& text, int form);
    void create_nothing(int form);
    void change_output(const Token& token, const _CLPStatus* status, const Verb& verb,
                       char const* done, char const* failed, const std::string* address);

    // The text form of show.
    void fetch_properties(CMPIObjectPath* object, FilterResult* result);
    void fetch_pseudo_properties(CMPIObjectPath* object, FilterResult* result);
    bool read_instance(CMPIObjectPath* object, FilterResult* result);
    bool read_class(FilterResult* result);
    void select_targets(const Token& token, FilterResult* result);
    void select_verbs(const Token& token, FilterResult* result);
    void select_associations(const Token& token, FilterResult* result);
    void select_properties(const Token& token, FilterResult* result, const std::string& ufct,
                           const std::string& cimclass);
    bool selector_holds(const Token& token, FilterResult* result, const std::string& name);

    // Kept for all objects of one response: the address service and the classes read so far.
    CLPAddrSVC& addresses();
    CMPIConstClass* class_of(const std::string& name_space, const std::string& cimclass);

    _CMCIClient* m_client;
    Transport* m_transport;
    int m_message_id = 0;
    std::unique_ptr<CLPAddrSVC> m_addresses;
    std::map<std::string, CMPIConstClass*> m_classes; // owned
};

} // namespace velmora_clp

#endif
