#include "language/parsestate.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "language/normalproperty.h"
#include "velclp/assertion.h"
#include "velclp/clpstring.h"
#include "velclp/log.h"
#include "velclp/token.h"

using velmora_clp::ProcessingError;

CLPToken* y_token = nullptr;
ProcessingError* y_pe = nullptr;
std::string prop_tmp;
std::vector<std::string>* continueTerms = nullptr;

namespace velmora_clp {

namespace {

std::string propvalue_tmp;

// The option being read, from the root of the option tree.
std::vector<std::string> optionPath{"option"};
bool inArgumentList = false;

// Which selectors of -output stood before; of each group only one may.
struct OutputGroups {
    bool position = false; // begin, end, number
    bool count = false;    // count, number
    bool verbosity = false;
};
OutputGroups outputGroups;

void resetLine() {
    inArgumentList = false;
    prop_tmp.clear();
    propvalue_tmp.clear();
    optionPath.assign(1, "option");
    outputGroups = OutputGroups();
    flex_init();
    lex_buf_position = 0;
}

std::vector<std::string> below(const char* name) {
    auto path = optionPath;
    path.emplace_back(name);
    return path;
}

bool present(const char* name) {
    return y_token->_Options.hasNode(below(name));
}

bool repeated() {
    return refuse(ProcessingError::COMMAND_SYNTAX_ERROR);
}

// True, once, for the first selector of a group.
bool takeGroup(bool& taken) {
    return !std::exchange(taken, true);
}

bool hasName(const CLPToken::PropertyList& list, const std::string& name) {
    return std::any_of(list.begin(), list.end(),
                       [&](const auto& property) { return property.first == name; });
}

// Adds the current property to a list; a name that is there already is a syntax error.
bool addProperty(CLPToken::PropertyList& list, const char* value) {
    prop_tmp = lowerString(prop_tmp);
    if (hasName(list, prop_tmp))
        return repeated();
    propvalue_tmp = value;
    list.emplace_back(prop_tmp, propvalue_tmp);
    flex_change_state(LEX_PROPERTY);
    return true;
}

bool helpOrVersion() {
    return y_token->hasOption("-help") || y_token->hasOption("-version");
}

std::string targetText(const std::string& text) {
    return text == "SESSION" ? text : lowerString(text);
}

} // namespace

ParseScope::ParseScope(CLPToken* token, ProcessingError* pe) {
    y_token = token;
    y_pe = pe;
}

ParseScope::~ParseScope() {
    resetLine();
    lex_buf = nullptr;
    y_token = nullptr;
    y_pe = nullptr;
}

bool refuse(ProcessingError::error code) {
    y_pe->setErrorCode(code);
    return false;
}

void startVerb(const char* word) {
    VELCLP_ASSERT(y_token->_Verb.empty(), "y_token->_Verb.empty()");
    y_token->_Verb = lowerString(word);
    flex_change_state(LEX_MAIN);
}

bool addOption(const char* name) {
    return addItem(name);
}

// The repeat is found before the argument is read: a repeated option is a syntax error even when
// its argument is missing.
bool beginOption(const char* name, lex_state argument) {
    if (present(name))
        return repeated();
    optionPath.emplace_back(name);
    flex_change_state(argument);
    return true;
}

void storeOption(const char* value) {
    y_token->_Options.addNode(optionPath, value);
}

void endOption() {
    optionPath.pop_back();
    flex_change_state(LEX_MAIN);
}

bool requireOption(const char* name) {
    if (y_token->hasOption(name) || helpOrVersion())
        return true;
    return refuse(ProcessingError::REQUIRED_OPTION_MISSING);
}

bool beginList(const char* name, lex_state items) {
    inArgumentList = true;
    if (!beginOption(name, items))
        return false;
    y_token->_Options.addNode(optionPath);
    return true;
}

bool addItem(const char* name) {
    return present(name) ? repeated() : y_token->_Options.addNode(below(name));
}

bool addItem(const char* name, const char* value) {
    return present(name) ? repeated() : y_token->_Options.addNode(below(name), value);
}

bool addRange(const char* name, const int (&range)[2]) {
    const bool first = !outputGroups.position && !outputGroups.count;
    outputGroups.position = outputGroups.count = true;
    if (!first || !addItem(name))
        return repeated();
    auto path = below(name);
    path.emplace_back("start");
    y_token->_Options.addNode(path, std::to_string(range[0]));
    path.back() = "end";
    return y_token->_Options.addNode(path, std::to_string(range[1]));
}

bool addCount(const char* name, const char* value) {
    return takeGroup(outputGroups.count) ? addItem(name, value) : repeated();
}

bool addPosition(const char* name) {
    return takeGroup(outputGroups.position) ? addItem(name) : repeated();
}

bool addVerbosity(const char* name) {
    return takeGroup(outputGroups.verbosity) ? addItem(name) : repeated();
}

void endList() {
    inArgumentList = false;
    endOption();
}

bool refuseTarget() {
    return refuse(ProcessingError::INVALID_TARGET);
}

void setTarget(const char* text) {
    VELCLP_ASSERT(y_token->_Target.empty(), "y_token->_Target.empty()");
    y_token->_Target = targetText(text);
}

bool setShowWildcard(const char* text) {
    if (y_token->hasOption("-level"))
        return refuse(ProcessingError::COMMAND_SYNTAX_ERROR);
    setTarget(text);
    return true;
}

bool setAssociation(const char* text, std::size_t leastParts) {
    const auto tmp = splitString(text, "=>", true);
    if (tmp.size() < leastParts)
        return refuseTarget();
    VELCLP_ASSERT(static_cast<int>(tmp.size()) >= 2 && static_cast<int>(tmp.size()) <= 3,
                  "static_cast<int>(tmp.size())>=2&&static_cast<int>(tmp.size())<=3");
    if (!tmp[0].empty())
        setTarget(tmp[0].c_str());
    VELCLP_ASSERT(y_token->_AssocClass.empty() && !tmp[1].empty() && y_token->_Ref.empty(),
                  "y_token->_AssocClass.empty()&&!tmp[1].empty()&&y_token->_Ref.empty()");
    y_token->_AssocClass = lowerString(tmp[1]);
    if (tmp.size() == 3)
        y_token->_Ref = tmp[2];
    return true;
}

bool afterCreateTarget() {
    const bool target = !y_token->_Target.empty();
    if (!target && !helpOrVersion())
        return refuse(ProcessingError::MISSING_REQUIRED_TARGET);
    flex_change_state(target ? LEX_PROPERTY : LEX_MAIN);
    return true;
}

void afterTarget() {
    const bool target = !y_token->_Target.empty() || !y_token->_AssocClass.empty();
    flex_change_state(target ? LEX_PROPERTY : LEX_MAIN);
}

void beginProperty(const char* name) {
    prop_tmp = name;
    flex_change_state(LEX_VALUE);
}

bool addAssignment(const char* value) {
    VELCLP_ASSERT(!prop_tmp.empty() && value, "!prop_tmp.empty()&&propvalue_tmp.c_str()");
    return addProperty(y_token->_AssignProperties, value);
}

bool addFilter(const char* value) {
    VELCLP_ASSERT(!prop_tmp.empty() && value, "!prop_tmp.empty()&&yyvsp[0].sval");
    return addProperty(y_token->_FilterProperties, value);
}

void addPropertyName(const char* name) {
    auto& names = y_token->_PropertyNames;
    const std::string lower = lowerString(name);
    if (std::find(names.begin(), names.end(), lower) == names.end())
        names.push_back(lower);
}

void addTopic(const char* term) {
    VELCLP_ASSERT(term && std::strlen(term) != 0, "yyvsp[0].sval&&strlen(yyvsp[0].sval)!=0");
    if (!prop_tmp.empty())
        prop_tmp += ':';
    prop_tmp += term;
}

void setTopics() {
    VELCLP_ASSERT(y_token->_Target.empty(), "y_token->_Target.empty()");
    y_token->_Target = prop_tmp;
}

} // namespace velmora_clp

using namespace velmora_clp;

int call_214(const std::string& line) {
    VELCLP_TRACE("CLP.CLPParser.call_214");
    if (line.empty())
        return 0;
    resetLine();
    flex_change_state(LEX_VERB);
    lex_buf = &line;
    y_token->_CommandLine = line;
    const int result = yyparse();
    if (!y_token->_AssignProperties.empty())
        normalProperty(y_token->_AssignProperties);
    if (!y_token->_FilterProperties.empty())
        normalProperty(y_token->_FilterProperties);
    return result;
}

int yyerror(char* msg) {
    const char* const function = "CLP.CLPParser.yyerror";
    VELCLP_TRACE(function);
    VELCLP_ASSERT(msg != nullptr, "msg!=__null");
    VELCLP_LOG_BRANCH(function, "%s", msg);
    flex_init();
    refuse(inArgumentList ? ProcessingError::INVALID_ARGUMENT
                          : ProcessingError::COMMAND_SYNTAX_ERROR);
    return 1;
}

char* parserMessage(const char* text) {
    static char overflow[] = "parser stack overflow";
    static char syntax[] = "syntax error";
    return std::strcmp(text, "memory exhausted") == 0 ? overflow : syntax;
}
