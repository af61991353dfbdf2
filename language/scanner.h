// The scanner of the command language: the interface to the generated automaton (syntax.lex) and
// the work behind its rules. Its state is the process's, so one line is scanned at a time.
#ifndef LANGUAGE_SCANNER_H
#define LANGUAGE_SCANNER_H

#include <string>

// What the next characters of the line may be; the values are fixed.
enum lex_state {
    LEX_VERB,
    LEX_MAIN,
    LEX_HELP_ARG,
    LEX_KEEP_ARG,
    LEX_URI_ARG,
    LEX_LEVEL_ARG,
    LEX_OUTPUT_ARG,
    LEX_DISPLAY_ARG,
    LEX_PROPERTY,
    LEX_VALUE
};

extern const std::string* lex_buf; // the line being scanned, borrowed; null between lines
extern unsigned lex_buf_position;  // the next character to hand out
extern bool flex_help;             // words behind the verb help are topics
extern int target_length;          // summed length of the target tokens of the line
extern int target_limit;           // bound for that sum; 0 means none

// The next token number, 0 at the end of the line.
int yylex();

// Puts the scanner into its first state and drops what it has buffered. That state recognises
// nothing, so flex_change_state must follow.
void flex_init();

// Selects the state for what comes next; a value beyond LEX_VALUE is ignored.
void flex_change_state(lex_state s);

// Hands out at most max_size characters of the line and gives their number, 0 at its end. A null
// buffer or a size below 1 ends the process.
int my_yyinput(char* buf, int max_size);

// "name[3]" as the property stores keep it, "name:3". A null pointer ends the process.
std::string format_property_array(const char* str);

namespace velmora_clp {

// What the rules do with the text that they matched. Each gives the token to return; text that is
// too long for a semantic value gives TK_ILLEGAL.
int storeText(const char* text, short token);
int storeLower(const char* text, short token);
int storeUnwrapped(const char* text, short token); // a pair of parentheses dropped, lower case
int storeUnquoted(const char* text, short token);  // a pair of double quotes dropped
int storeNameList(const char* text, short token);  // the same as unwrapped, "," becomes ":"
int scanVerb(const char* text);
int scanOption(const char* text);
int scanTarget(const char* text, short token);
int scanPropertyName(const char* text);
int scanArrayName(const char* text);
int scanValue(const char* text);
int scanRange(const char* text);
int scanUri(const char* text);

} // namespace velmora_clp

#endif
