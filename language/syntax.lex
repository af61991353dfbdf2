/* Scanner of the command language (DSP0214, clause 5).
 *
 * The same characters mean different things in different parts of a line, so the grammar moves the
 * scanner from state to state by flex_change_state; only the move into the target state is the
 * scanner's own. Keywords match in any case. */
%{
#include "language/scanner.h"
#include "language/syntax.h"

using namespace velmora_clp;

#define YY_INPUT(buffer, result, max_size) result = my_yyinput(buffer, static_cast<int>(max_size))

/* A word that begins a target is scanned again, from its start, by the rules for targets. */
#define ENTER_TARGET                                                                               \
    do {                                                                                           \
        yyless(0);                                                                                 \
        target_limit = static_cast<int>(yyleng);                                                   \
        BEGIN(SC_TARGET);                                                                          \
    } while (false)

#define SKIP_IN_HELP                                                                               \
    do {                                                                                           \
        if (flex_help)                                                                             \
            return storeText(yytext, TK_HELP_TERM);                                                \
    } while (false)
%}

%option case-insensitive never-interactive nounput noinput

%x SC_VERB SC_MAIN SC_TARGET SC_HELP_ARG SC_KEEP_ARG SC_URI_ARG
%x SC_LEVEL_ARG SC_OUTPUT_ARG SC_DISPLAY_ARG SC_PROPERTY SC_VALUE

BLANKS      [ \t]+
RUN         [^ \t\n]+
WORD        [^ \t\n"]+
ITEM        [^ \t\n",=]+
NAME        [A-Za-z0-9_]*[A-Za-z]
DIGITS      [0-9]+
UPTO5       [0-9]{1,5}

CLASS       ([A-Za-z]+|OEMVELMORA_[A-Za-z]+)
INSTANCE    ([1-9][0-9]*|0[0-9]*[1-9])
SEP         [/\\]
SEGMENT     ("."|".."|{CLASS}{INSTANCE})
PATH        ({SEP}|{SEP}?{SEGMENT}({SEP}{SEGMENT})*)

    /* An "=" that is not part of "=>" separates a name from its value, so a run that holds one is
     * no target on account of its last character. */
NUMBERED    ([^ \t\n=]|"=>")*[0-9*]
PATHLIKE    [^ \t\n"]*([./\\]|"=>")[^ \t\n"]*

    /* 0x21 to 0x7E without " ( ) , - : = and, behind a first " or =, without ( ) , - : */
FIRSTPART   [\x21-\x7e]{-}["(),\-:=]
NEXTPART    [\x21-\x7e]{-}[(),\-:]
PRINTABLE   {FIRSTPART}+([\x22=]{NEXTPART}*)?

    /* Between quotes: space to "~"; a quote behind a backquote does not end the text. */
PLAIN       [\x20-\x7e]{-}["`]
QUOTED      \"({PLAIN}|`+({PLAIN}|\"))*\"

%%

<SC_VERB>{
{BLANKS}
[A-Za-z]+               return scanVerb(yytext);
.                       return TK_ILLEGAL;
}

<SC_MAIN>{
{BLANKS}
-{WORD}                 return scanOption(yytext);
[^ \t\n"]*session[^ \t\n"]* {
                            SKIP_IN_HELP;
                            if (!strstr(yytext, "SESSION"))
                                return TK_BAD_TARGET;
                            ENTER_TARGET;
                        }
{NUMBERED}|{PATHLIKE}   {
                            SKIP_IN_HELP;
                            ENTER_TARGET;
                        }
"=="                    {
                            SKIP_IN_HELP;
                            return TK_DOUBLE_EQUAL;
                        }
{NAME}"["{DIGITS}"]"    {
                            SKIP_IN_HELP;
                            return scanArrayName(yytext);
                        }
{NAME}                  {
                            SKIP_IN_HELP;
                            return scanPropertyName(yytext);
                        }
.                       return TK_ILLEGAL;
}

<SC_TARGET>{
{BLANKS}                if (target_limit != 0 && target_length > target_limit) return TK_ILLEGAL;
session                 return scanTarget(yytext, TK_SESSION);
{PATH}                  return scanTarget(yytext, TK_PATH);
{SEP}?({SEGMENT}{SEP})*{CLASS}"*"   return scanTarget(yytext, TK_CLASS_WILDCARD);
({PATH}|session)?"=>"{CLASS}("=>"{PATH}?)?  return scanTarget(yytext, TK_ASSOC_TARGET);
(OEMVELMORA_)?[A-Za-z]*session[A-Za-z]* {
                            SKIP_IN_HELP;
                            return TK_BAD_TARGET;
                        }
{CLASS}                 return scanTarget(yytext, TK_CLASS_NAME);
{RUN}                   {
                            SKIP_IN_HELP;
                            return TK_BAD_TARGET;
                        }
}

<SC_HELP_ARG>{
{BLANKS}                return TK_BLANK;
-[^ \t\n"]*             return storeText(yytext, TK_HELP_TERM);
{PRINTABLE}             return storeText(yytext, TK_HELP_TERM);
.                       return TK_ILLEGAL;
}

<SC_KEEP_ARG,SC_LEVEL_ARG,SC_URI_ARG>{BLANKS}
<SC_KEEP_ARG>{DIGITS}("."{DIGITS})*                 return storeLower(yytext, TK_KEEP_VALUE);
<SC_LEVEL_ARG>all|[0-9]*[1-9][0-9]*                 return storeLower(yytext, TK_LEVEL_VALUE);
<SC_KEEP_ARG,SC_LEVEL_ARG>-{RUN}                    return TK_NEXT_OPTION;
<SC_KEEP_ARG,SC_LEVEL_ARG>{RUN}                     return TK_BAD_ARG;

<SC_URI_ARG>{
-{WORD}                 return TK_NEXT_OPTION;
{WORD}|\"{WORD}\"       return scanUri(yytext);
.                       return TK_BAD_ARG;
}

<SC_OUTPUT_ARG,SC_DISPLAY_ARG>{
{BLANKS}                return TK_BLANK;
","                     return TK_COMMA;
"="                     return TK_EQUAL;
}

<SC_OUTPUT_ARG>{
format                  return storeLower(yytext, TK_FORMAT);
language                return storeLower(yytext, TK_LANGUAGE);
order                   return storeLower(yytext, TK_ORDER);
number                  return storeLower(yytext, TK_NUMBER);
count                   return storeLower(yytext, TK_COUNT);
begin                   return storeLower(yytext, TK_BEGIN);
end                     return storeLower(yytext, TK_END);
error                   return storeLower(yytext, TK_ERROR);
terse                   return storeLower(yytext, TK_TERSE);
verbose                 return storeLower(yytext, TK_VERBOSE);
text|keyword|clpxml|"("(text|keyword|clpxml)")"     return storeUnwrapped(yytext, TK_FORMAT_VALUE);
default|reverse|"("(default|reverse)")"             return storeUnwrapped(yytext, TK_ORDER_VALUE);
eng|"(eng)"                                         return storeUnwrapped(yytext, TK_LANGUAGE_VALUE);
{DIGITS}|all|"("({DIGITS}|all)?")"                  return storeUnwrapped(yytext, TK_COUNT_VALUE);
{UPTO5}-{UPTO5}|"("{UPTO5}-{UPTO5}")"               return scanRange(yytext);
}

<SC_DISPLAY_ARG>{
verbs                   return storeLower(yytext, TK_VERBS);
all                     return storeLower(yytext, TK_ALL);
targets                 return storeLower(yytext, TK_TARGETS);
properties              return storeLower(yytext, TK_PROPERTIES);
associations            return storeLower(yytext, TK_ASSOCIATIONS);
{CLASS}                 return storeLower(yytext, TK_CLASS_NAME);
{NAME}                  return storeLower(yytext, TK_NUMBERED_NAME);
"("{CLASS}(","{CLASS})*")"  return storeNameList(yytext, TK_NAME_LIST);
"("{NAME}(","{NAME})*")"    return storeNameList(yytext, TK_VALUE_LIST);
}

<SC_OUTPUT_ARG,SC_DISPLAY_ARG>-{ITEM}               return TK_NEXT_OPTION;
<SC_OUTPUT_ARG,SC_DISPLAY_ARG>{ITEM}                return TK_BAD_ARG;
<SC_OUTPUT_ARG,SC_DISPLAY_ARG>.                     return TK_BAD_ARG;

<SC_PROPERTY>{
{BLANKS}
"=="                    return TK_DOUBLE_EQUAL;
{NAME}"["{DIGITS}"]"    return scanArrayName(yytext);
{NAME}                  return scanPropertyName(yytext);
.                       return TK_ILLEGAL;
}

<SC_VALUE>{
"=="                    return TK_DOUBLE_EQUAL;
"="                     return TK_EQUAL;
{NAME}(","{NAME})+      return storeNameList(yytext, TK_VALUE_LIST);
{PRINTABLE}             return scanValue(yytext);
{QUOTED}                return storeUnquoted(yytext, TK_PROP_VALUE);
.|\n                    return TK_ILLEGAL;
}

%%

int yywrap()
{
    return 1;
}

void flex_init()
{
    BEGIN(INITIAL);
    target_limit = 0;
    target_length = 0;
    flex_help = false;
    yyrestart(yyin);
}

void flex_change_state(lex_state s)
{
    static const int conditions[] = {SC_VERB,      SC_MAIN,       SC_HELP_ARG,    SC_KEEP_ARG,
                                     SC_URI_ARG,   SC_LEVEL_ARG,  SC_OUTPUT_ARG,  SC_DISPLAY_ARG,
                                     SC_PROPERTY,  SC_VALUE};
    if (s <= LEX_VALUE)
        BEGIN(conditions[s]);
}
