/* Grammar of the command language (DSP0214, clause 5): verb, options, target, properties.
 *
 * What the next word means depends on what was read before it, so many rules move the scanner to
 * another state behind a token. Such an action is an empty rule of its own in a state that has
 * nothing else to do: the parser runs it before it asks for the next token. A repeated option or
 * a refused word ends the parse at once, with its own error code; everything that fits no rule
 * goes through yyerror. */
%{
#include "language/parsestate.h"
#include "language/scanner.h"
#include "velclp/processingerror.h"

using namespace velmora_clp;

#define YYINITDEPTH 200
#define YYMAXDEPTH 10000
#define YY_(text) parserMessage(text)

/* Runs an action that may refuse the line. */
#define DO(action)                                                                                 \
    do {                                                                                           \
        if (!(action))                                                                             \
            YYABORT;                                                                               \
    } while (false)

/* Nothing may follow here but the end of the line. */
#define AT_END_OF_LINE                                                                             \
    do {                                                                                           \
        if (yychar != YYEOF) {                                                                     \
            yyerror(YY_("syntax error"));                                                          \
            YYABORT;                                                                               \
        }                                                                                          \
    } while (false)
%}

%union {
    char sval[256];
    int range[2];
}

%token <sval> TK_ILLEGAL 258 TK_BAD_TARGET 259 TK_BAD_ARG 260 TK_NEXT_OPTION 261
%token <sval> TK_OEM_VERB 262 TK_UNKNOWN_VERB 263
%token <sval> TK_CD 264 TK_CREATE 265 TK_DELETE 266 TK_EXIT 267 TK_HELP 268 TK_RESET 269
%token <sval> TK_SET 270 TK_SHOW 271 TK_START 272 TK_STOP 273 TK_VERSION 274 TK_DUMP 275
%token <sval> TK_LOAD 276
%token <sval> TK_CLASS_NAME 277 TK_NUMBERED_NAME 278 TK_ASSOC_TARGET 279 TK_PATH 280
%token <sval> TK_CLASS_WILDCARD 281 TK_SESSION 282
%token <sval> TK_OPT_ALL 283 TK_OPT_DESTINATION 284 TK_OPT_DISPLAY 285 TK_OPT_EXAMINE 286
%token <sval> TK_OPT_FORCE 287 TK_OPT_HELP 288 TK_OPT_KEEP 289 TK_OPT_LEVEL 290
%token <sval> TK_OPT_OUTPUT 291 TK_OPT_SOURCE 292 TK_OPT_VERSION 293 TK_OPT_WAIT 294
%token <sval> TK_OPT_INVALID 295 TK_OPT_UNSUPPORTED 296
%token <sval> TK_KEEP_VALUE 297 TK_URI 298 TK_LEVEL_VALUE 299
%token <sval> TK_COMMA 300 TK_EQUAL 301 TK_DOUBLE_EQUAL 302 TK_BLANK 303
%token <sval> TK_BEGIN 304 TK_END 305 TK_ERROR 306 TK_TERSE 307 TK_VERBOSE 308
%token <sval> TK_FORMAT 309 TK_FORMAT_VALUE 310 TK_ORDER 311 TK_ORDER_VALUE 312
%token <sval> TK_LANGUAGE 313 TK_LANGUAGE_VALUE 314 TK_NUMBER 315
%token <range> TK_NUMBER_VALUE 316
%token <sval> TK_COUNT 317 TK_COUNT_VALUE 318
%token <sval> TK_ALL 319 TK_VERBS 320
%token <sval> TK_PROP_NAME 321 TK_PROP_ARRAY_NAME 322 TK_PROP_VALUE 323
%token <sval> TK_ASSOCIATIONS 324 TK_TARGETS 325 TK_PROPERTIES 326
%token <sval> TK_NAME_LIST 327 TK_VALUE_LIST 328 TK_HELP_TERM 329

%type <sval> class_names property_names verbosity flag

%%

line
    : TK_CD verb options_a target_plain
    | TK_CREATE verb options_b target_class after_create created
    | TK_DELETE verb options_c target_delete
    | TK_EXIT verb options_d
    | TK_HELP verb help_mode options_a help_state help_args     { setTopics(); }
    | TK_RESET verb options_c target_plain
    | TK_START verb options_c target_plain
    | TK_STOP verb options_c target_plain
    | TK_DUMP verb options_e needs_destination target_plain
    | TK_LOAD verb options_f needs_source target_plain
    | TK_SET verb options_c target_set after_target properties
    | TK_SHOW verb options_g target_show after_target selectors
    | TK_VERSION verb options_a
    | TK_OEM_VERB verb          { DO(refuse(ProcessingError::COMMAND_NOT_SUPPORTED)); }
    | TK_UNKNOWN_VERB verb      { DO(refuse(ProcessingError::COMMAND_NOT_RECOGNIZED)); }
    ;

verb: %empty                    { startVerb($<sval>0); };

/* Options, each group any number in any order. */

options_a: %empty {} | options_a option_a;
options_b: %empty {} | options_b option_b;
options_c: %empty {} | options_c option_c;
options_d: %empty {} | options_d common;
options_e: %empty {} | options_e option_e;
options_f: %empty {} | options_f option_f;
options_g: %empty {} | options_g option_g;

option_a: common | wait;
option_b: common | wait | source;
option_c: common | wait | force;
option_e: option_c | destination;
option_f: option_c | source;
option_g: option_c | level | all | display;

common
    : flag                      { DO(addOption($1)); }
    | keep
    | output
    | TK_OPT_INVALID            { DO(refuse(ProcessingError::INVALID_OPTION)); }
    | TK_OPT_UNSUPPORTED        { DO(refuse(ProcessingError::OPTION_NOT_SUPPORTED)); }
    ;

flag: TK_OPT_EXAMINE | TK_OPT_HELP | TK_OPT_VERSION;
wait: TK_OPT_WAIT               { DO(addOption($1)); };
force: TK_OPT_FORCE             { DO(addOption($1)); };
all: TK_OPT_ALL                 { DO(addOption($1)); };

keep: TK_OPT_KEEP keep_state keep_value         { endOption(); };
keep_state: %empty              { DO(beginOption($<sval>0, LEX_KEEP_ARG)); };
keep_value: argument {} | TK_KEEP_VALUE         { storeOption($1); };

level: TK_OPT_LEVEL level_state level_value     { endOption(); };
level_state: %empty             { DO(beginOption($<sval>0, LEX_LEVEL_ARG)); };
level_value: argument {} | TK_LEVEL_VALUE       { storeOption($1); };

source: TK_OPT_SOURCE uri_state uri_value       { endOption(); };
destination: TK_OPT_DESTINATION uri_state uri_value     { endOption(); };
uri_state: %empty               { DO(beginOption($<sval>0, LEX_URI_ARG)); };
uri_value: argument {} | TK_URI                 { storeOption($1); };

/* What stands where an argument should. */
argument
    : %empty                    { AT_END_OF_LINE; DO(refuse(ProcessingError::MISSING_ARGUMENT)); }
    | TK_BAD_ARG                { DO(refuse(ProcessingError::INVALID_ARGUMENT)); }
    | TK_NEXT_OPTION            { DO(refuse(ProcessingError::MISSING_ARGUMENT)); }
    ;

list_error
    : argument
    | TK_BLANK                  { AT_END_OF_LINE; DO(refuse(ProcessingError::MISSING_ARGUMENT)); }
    | TK_BLANK TK_NEXT_OPTION   { DO(refuse(ProcessingError::MISSING_ARGUMENT)); }
    | TK_BLANK TK_BAD_ARG       { DO(refuse(ProcessingError::INVALID_ARGUMENT)); }
    ;

/* A list ends at a blank or with the line; whatever else stands behind it belongs to it. */
list_end
    : %empty                    { AT_END_OF_LINE; }
    | TK_BLANK                  {}
    ;

output: TK_OPT_OUTPUT output_state output_list  { endList(); };
output_state: %empty            { DO(beginList($<sval>0, LEX_OUTPUT_ARG)); };
output_list: list_error | TK_BLANK output_items list_end;
output_items: output_item | output_items TK_COMMA output_item;
output_item
    : TK_FORMAT TK_EQUAL TK_FORMAT_VALUE        { DO(addItem($1, $3)); }
    | TK_LANGUAGE TK_EQUAL TK_LANGUAGE_VALUE    { DO(addItem($1, $3)); }
    | TK_ORDER TK_EQUAL TK_ORDER_VALUE          { DO(addItem($1, $3)); }
    | TK_NUMBER TK_EQUAL TK_NUMBER_VALUE        { DO(addRange($1, $3)); }
    | TK_COUNT TK_EQUAL TK_COUNT_VALUE          { DO(addCount($1, $3)); }
    | TK_BEGIN                                  { DO(addPosition($1)); }
    | TK_END                                    { DO(addPosition($1)); }
    | verbosity                                 { DO(addVerbosity($1)); }
    ;
verbosity: TK_ERROR | TK_TERSE | TK_VERBOSE;

display: TK_OPT_DISPLAY display_state display_list      { endList(); };
display_state: %empty           { DO(beginList($<sval>0, LEX_DISPLAY_ARG)); };
display_list: list_error | TK_BLANK display_items list_end;
display_items: display_item | display_items TK_COMMA display_item;
display_item
    : TK_ALL                                    { DO(addItem($1)); }
    | TK_VERBS                                  { DO(addItem($1)); }
    | TK_TARGETS                                { DO(addItem($1, "")); }
    | TK_TARGETS TK_EQUAL class_names           { DO(addItem($1, $3)); }
    | TK_ASSOCIATIONS                           { DO(addItem($1, "")); }
    | TK_ASSOCIATIONS TK_EQUAL class_names      { DO(addItem($1, $3)); }
    | TK_PROPERTIES                             { DO(addItem($1, "")); }
    | TK_PROPERTIES TK_EQUAL property_names     { DO(addItem($1, $3)); }
    ;
class_names: TK_CLASS_NAME | TK_NAME_LIST;
property_names: TK_CLASS_NAME | TK_NUMBERED_NAME | TK_NAME_LIST | TK_VALUE_LIST;

/* Targets. */

target_plain: %empty {} | instance | no_instance | TK_PROP_NAME { DO(refuseTarget()); };
target_class: %empty {} | instance | wildcard | no_class;
target_delete: target_class | TK_PROP_NAME      { DO(refuseTarget()); };
target_set: %empty {} | instance | TK_ASSOC_TARGET { DO(setAssociation($1, 3)); }
    | TK_CLASS_WILDCARD         { DO(refuseTarget()); }
    | no_target;
target_show: %empty {} | instance | TK_ASSOC_TARGET { DO(setAssociation($1, 2)); }
    | TK_CLASS_WILDCARD         { DO(setShowWildcard($1)); }
    | no_target;

instance
    : TK_PATH                   { setTarget($1); }
    | TK_SESSION                { setTarget($1); }
    ;
wildcard: TK_CLASS_WILDCARD     { setTarget($1); };
no_instance: no_class | TK_CLASS_WILDCARD       { DO(refuseTarget()); };
no_class: no_target | TK_ASSOC_TARGET           { DO(refuseTarget()); };
no_target
    : TK_BAD_TARGET             { DO(refuseTarget()); }
    | TK_CLASS_NAME             { DO(refuseTarget()); }
    ;

after_create: %empty            { DO(afterCreateTarget()); };
after_target: %empty            { afterTarget(); };
needs_destination: %empty       { DO(requireOption("-destination")); };
needs_source: %empty            { DO(requireOption("-source")); };

/* Properties. */

created: %empty {} | properties;
properties: property | properties property;
property
    : TK_PROP_NAME value_state TK_EQUAL TK_PROP_VALUE           { DO(addAssignment($4)); }
    | TK_PROP_NAME value_state TK_EQUAL TK_VALUE_LIST           { DO(addAssignment($4)); }
    | TK_PROP_ARRAY_NAME value_state TK_EQUAL TK_PROP_VALUE     { DO(addAssignment($4)); }
    ;
value_state: %empty             { beginProperty($<sval>0); };

selectors: %empty {} | some_selectors;
some_selectors: selector | some_selectors selector;
selector
    : TK_PROP_NAME              { addPropertyName($1); }
    | TK_PROP_NAME value_state TK_DOUBLE_EQUAL TK_PROP_VALUE    { DO(addFilter($4)); }
    | TK_PROP_ARRAY_NAME value_state TK_DOUBLE_EQUAL TK_PROP_VALUE      { DO(addFilter($4)); }
    ;

/* The topics of the verb help: what follows its options. */

help_mode: %empty               { flex_help = true; };
help_state: %empty              { flex_change_state(LEX_HELP_ARG); };
help_args: %empty {} | topics | topics TK_BLANK;
topics: topic | topics TK_BLANK topic;
topic: TK_HELP_TERM             { addTopic($1); };
