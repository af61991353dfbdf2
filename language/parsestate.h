// What the grammar's rules do (syntax.yacc), and the state that they share while a line is parsed.
// All of it is the process's, one line at a time; between lines nothing is left in it.
//
#ifndef LANGUAGE_PARSESTATE_H
#define LANGUAGE_PARSESTATE_H

#include <string>
#include <vector>

#include "language/scanner.h"
#include "velclp/processingerror.h"

class CLPToken;

extern CLPToken* y_token;                       // the line being filled, borrowed; else null
extern velmora_clp::ProcessingError* y_pe;      // where the error goes, borrowed; else null
extern std::string prop_tmp;                    // name of the current property; topics of help
extern std::vector<std::string>* continueTerms; // candidates of the completion under way, or null

// The generated parser: 0 when the line fits the grammar.
int yyparse();

// Parses a line into y_token and y_pe; an empty line gives 0 at once. Every line starts from a
// clean state, however the one before it ended.
int call_214(const std::string& line);

// Stores the code of a line that fits no rule, and gives 1. A null message ends the process.
int yyerror(char* msg);
// The words for a failure of the parser itself, in the form that yyerror takes.
char* parserMessage(const char* text);

// Fills continueTerms with what may stand in place of the word, the last one of the line that
// y_token and y_pe tell of.
void tab_parser(const std::string& word);

namespace velmora_clp {

// Lends a token and an error record to the parser for the length of a scope; when it ends, the
// parser and the scanner hold nothing of the line.
class ParseScope {
public:
    ParseScope(CLPToken* token, ProcessingError* pe);
    ParseScope(const ParseScope&) = delete;
    ParseScope& operator=(const ParseScope&) = delete;
    ~ParseScope();
};

// The actions of the rules. One that gives false has refused the line and stored the error code:
// the parse ends at once.
bool refuse(ProcessingError::error code);
void startVerb(const char* word);

// Options. The names are the long ones, with the "-".
bool addOption(const char* name);
bool beginOption(const char* name, lex_state argument);
void storeOption(const char* value);
void endOption();
bool requireOption(const char* name);

// Items of an option's argument list.
bool beginList(const char* name, lex_state items);
bool addItem(const char* name);
bool addItem(const char* name, const char* value);
bool addRange(const char* name, const int (&range)[2]);
bool addCount(const char* name, const char* value);
bool addPosition(const char* name);
bool addVerbosity(const char* name);
void endList();

// Targets.
bool refuseTarget();
void setTarget(const char* text);
bool setShowWildcard(const char* text);
bool setAssociation(const char* text, std::size_t leastParts);
bool afterCreateTarget();
void afterTarget();

// Properties.
void beginProperty(const char* name);
bool addAssignment(const char* value);
bool addFilter(const char* value);
void addPropertyName(const char* name);
void addTopic(const char* term);
void setTopics();

} // namespace velmora_clp

#endif
