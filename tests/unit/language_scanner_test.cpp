#include <gtest/gtest.h>

#include <cstdio>
#include <map>

#include "language/scanner.h"
#include "language/syntax.h"

void yyset_out(std::FILE* out);

namespace {

const std::map<int, const char*> NAMES{{TK_ILLEGAL, "ILLEGAL"}, {TK_BAD_TARGET, "BAD_TARGET"},
                                       {TK_BAD_ARG, "BAD_ARG"}, {TK_NEXT_OPTION, "NEXT_OPTION"},
                                       {TK_COMMA, ","},         {TK_EQUAL, "="},
                                       {TK_DOUBLE_EQUAL, "=="}, {TK_BLANK, "_"}};
const std::map<int, const char*> WORDS{
    {TK_SHOW, "SHOW"},
    {TK_UNKNOWN_VERB, "UNKNOWN_VERB"},
    {TK_CLASS_NAME, "CLASS"},
    {TK_NUMBERED_NAME, "NUMBERED"},
    {TK_ASSOC_TARGET, "ASSOC"},
    {TK_PATH, "PATH"},
    {TK_CLASS_WILDCARD, "WILDCARD"},
    {TK_SESSION, "SESSION"},
    {TK_KEEP_VALUE, "KEEP"},
    {TK_URI, "URI"},
    {TK_LEVEL_VALUE, "LEVEL"},
    {TK_FORMAT, "format"},
    {TK_FORMAT_VALUE, "FORMAT"},
    {TK_ORDER_VALUE, "ORDER"},
    {TK_LANGUAGE_VALUE, "LANGUAGE"},
    {TK_COUNT, "count"},
    {TK_COUNT_VALUE, "COUNT"},
    {TK_ALL, "all"},
    {TK_TARGETS, "targets"},
    {TK_PROP_NAME, "NAME"},
    {TK_PROP_ARRAY_NAME, "ARRAY"},
    {TK_PROP_VALUE, "VALUE"},
    {TK_NAME_LIST, "NAMES"},
    {TK_VALUE_LIST, "VALUES"},
    {TK_HELP_TERM, "TERM"},
};

std::string spelled(int token) {
    if (token == TK_NUMBER_VALUE)
        return "RANGE(" + std::to_string(yylval.range[0]) + "," + std::to_string(yylval.range[1]) +
               ")";
    const auto name = NAMES.find(token);
    if (name != NAMES.end())
        return name->second;
    const auto word = WORDS.find(token);
    return (word == WORDS.end() ? std::to_string(token) : word->second) +
           ("(" + std::string(yylval.sval) + ")");
}

int scannedLength = 0; // of the targets in the last text

// The tokens of a text, scanned in one state as far as the scanner itself goes.
std::string scan(lex_state state, const std::string& text, bool help = false) {
    flex_init();
    flex_change_state(state);
    flex_help = help;
    lex_buf = &text;
    lex_buf_position = 0;
    std::string result;
    for (int token = yylex(); token != 0; token = yylex())
        result += (result.empty() ? "" : " ") + spelled(token);
    scannedLength = target_length;
    flex_init();
    lex_buf = nullptr;
    return result;
}

using Cases = std::vector<std::pair<std::string, std::string>>;

void expectTokens(lex_state state, const Cases& cases) {
    for (const auto& [text, tokens] : cases)
        EXPECT_EQ(scan(state, text), tokens) << "'" << text << "'";
}

// Every text on its own is this token.
void expectEach(lex_state state, const char* token, const std::vector<const char*>& texts) {
    for (const char* text : texts)
        EXPECT_EQ(scan(state, text), token) << "'" << text << "'";
}

TEST(Scanner, TakesLettersAsTheVerb) {
    expectTokens(LEX_VERB, {{"  \tshow", "SHOW(show)"},
                            {"ShOw", "SHOW(ShOw)"},
                            {"shows", "UNKNOWN_VERB(shows)"},
                            {"show1", "SHOW(show) ILLEGAL"},
                            {"", ""}});
    expectEach(LEX_VERB, "ILLEGAL", {"/"});
}

TEST(Scanner, TellsOptionsNamesAndTargetsApartBehindTheVerb) {
    scan(LEX_VERB, "show");
    expectTokens(LEX_MAIN, {{"-ALL", "283(-all)"},
                            {"-level=5", "295()"},
                            {"name a_b", "NAME(name) NAME(a_b)"},
                            {"a1b", "NAME(a1b)"},
                            {"Name[12]", "ARRAY(Name:12)"},
                            {"a==b", "NAME(a) == NAME(b)"},
                            {"a=b", "NAME(a) ILLEGAL NAME(b)"},
                            {"a=15", "NAME(a) ILLEGAL BAD_TARGET"}});
    expectEach(LEX_MAIN, "ILLEGAL", {"-", "show", "\""});
    // A digit or "*" at the end makes no target of a name with its value.
    EXPECT_EQ(scan(LEX_MAIN, "count=5").substr(0, 19), "NAME(count) ILLEGAL");
    EXPECT_EQ(scan(LEX_MAIN, "a=\"x y1\"").substr(0, 15), "NAME(a) ILLEGAL");
}

TEST(Scanner, KnowsEveryFormOfATarget) {
    const std::map<std::string, std::vector<std::string>> forms{
        {"PATH",
         {"/", "\\", ".", "..", "../sys01", "/Admin1\\System1", "a10", "a01", "OEMVelmora_fan1"}},
        {"WILDCARD", {"sys*", "/sys*", "\\sys*", "a1/b*"}},
        {"SESSION", {"SESSION"}},
        {"ASSOC", {"=>a", "=>a=>", "=>a=>b1/c2", "a1=>B=>c2", "/a1=>b=>/c2", "SESSION=>a"}}};
    for (const auto& [form, targets] : forms)
        for (const std::string& target : targets)
            EXPECT_EQ(scan(LEX_MAIN, target), form + "(" + target + ")");
    expectEach(LEX_MAIN, "BAD_TARGET", {"a010", "a0", "a00", "1", "a_b1", "x=y.z"});
    expectEach(LEX_MAIN, "BAD_TARGET", {"admin1/", "a1//b1", "a1/b", ".../a1", "a1/*", "a1/b1*"});
    expectEach(LEX_MAIN, "BAD_TARGET",
               {"session", "Session1", "/admin1/session1", "XSESSIONY", "sessiontimeout=5"});
    expectEach(LEX_MAIN, "BAD_TARGET", {"=>a=>b", "=>", "a1=>b1"});
    // Once in a target, the rest of the line is scanned as targets.
    EXPECT_EQ(scan(LEX_MAIN, "/a1 name -all"), "PATH(/a1) CLASS(name) BAD_TARGET");
    EXPECT_EQ(scannedLength, 7);
}

TEST(Scanner, ReadsEveryWordBehindHelpAsATopic) {
    for (const char* word : {"name", "/a1", "a[3]", "session", "show", "==", "=>x", "a5"})
        EXPECT_EQ(scan(LEX_MAIN, word, true), "TERM(" + std::string(word) + ")");
    expectTokens(LEX_HELP_ARG, {{"a  b", "TERM(a) _ TERM(b)"},
                                {"x==y", "TERM(x==y)"},
                                {"a\"b=\"", "TERM(a\"b=\")"},
                                {"-all -", "TERM(-all) _ TERM(-)"},
                                {"a,b", "TERM(a) ILLEGAL TERM(b)"}});
    expectEach(LEX_HELP_ARG, "ILLEGAL", {"(", "\x80"});
}

TEST(Scanner, ReadsTheArgumentsOfKeepLevelAndUris) {
    expectTokens(LEX_KEEP_ARG, {{"5", "KEEP(5)"}, {"\t1.2.3", "KEEP(1.2.3)"}});
    expectTokens(LEX_LEVEL_ARG, {{"ALL", "LEVEL(all)"}, {"010", "LEVEL(010)"}});
    expectTokens(LEX_URI_ARG, {{"http://h/F.bin", "URI(http://h/F.bin)"},
                               {"\"ftp://u@h/a,b\"", "URI(ftp://u@h/a,b)"},
                               {"\"\"", "BAD_ARG BAD_ARG"}});
    expectEach(LEX_KEEP_ARG, "BAD_ARG", {"5.", "5x", "-", "5\""});
    expectEach(LEX_LEVEL_ARG, "BAD_ARG", {"0", "00", "1x", "-"});
    expectEach(LEX_URI_ARG, "BAD_ARG", {"nouri", "\""});
    for (const lex_state state : {LEX_KEEP_ARG, LEX_LEVEL_ARG, LEX_URI_ARG})
        EXPECT_EQ(scan(state, "-1"), "NEXT_OPTION");
}

TEST(Scanner, ReadsTheListOfOutput) {
    expectTokens(LEX_OUTPUT_ARG, {{"Format=(CLPXML)", "format(format) = FORMAT(clpxml)"},
                                  {"TEXT,keyword", "FORMAT(text) , FORMAT(keyword)"},
                                  {"(Eng)", "LANGUAGE(eng)"},
                                  {"reverse", "ORDER(reverse)"},
                                  {"12", "COUNT(12)"},
                                  {"()", "COUNT()"},
                                  {"(all)", "COUNT(all)"},
                                  {"1-5", "RANGE(1,5)"},
                                  {"(00007-99999)", "RANGE(7,99999)"},
                                  {"3-3", "RANGE(3,3)"},
                                  {"-x", "NEXT_OPTION"},
                                  {"\"x\"", "BAD_ARG BAD_ARG BAD_ARG"},
                                  {" \t ", "_"}});
    expectEach(LEX_OUTPUT_ARG, "BAD_ARG", {"textual", "(text", "5-1", "123456-1", "1-123456", "-"});
}

TEST(Scanner, ReadsTheListOfDisplay) {
    expectTokens(LEX_DISPLAY_ARG, {{"Targets=Sys", "targets(targets) = CLASS(sys)"},
                                   {"all", "all(all)"},
                                   {"OEMVELMORA_x", "CLASS(oemvelmora_x)"},
                                   {"cim_foo", "NUMBERED(cim_foo)"},
                                   {"a1b", "NUMBERED(a1b)"},
                                   {"(A,b)", "NAMES(a:b)"},
                                   {"(cim_foo,a)", "VALUES(cim_foo:a)"},
                                   {"(a,b1)", "BAD_ARG , BAD_ARG"},
                                   {"-x", "NEXT_OPTION"}});
    expectEach(LEX_DISPLAY_ARG, "BAD_ARG", {"a1"});
}

TEST(Scanner, ReadsPropertyNamesAndValues) {
    expectTokens(LEX_PROPERTY, {{"aB a[3]", "NAME(aB) ARRAY(a:3)"},
                                {"a1", "NAME(a) ILLEGAL"},
                                {"-all", "ILLEGAL NAME(all)"}});
    expectEach(LEX_PROPERTY, "ILLEGAL", {"version", "="});
    expectTokens(LEX_VALUE, {{"=Val", "= VALUE(Val)"},
                             {"==Val", "== VALUE(Val)"},
                             {"A,b_c", "VALUES(a:b_c)"},
                             {"a1,b2", "VALUE(a1) ILLEGAL VALUE(b2)"},
                             {"a:b", "VALUE(a) ILLEGAL VALUE(b)"},
                             {"\"\x80\"", "ILLEGAL ILLEGAL ILLEGAL"},
                             {" a", "ILLEGAL VALUE(a)"},
                             {"a\n", "VALUE(a) ILLEGAL"},
                             {"\"a.b (x), y\"", "VALUE(a.b (x), y)"},
                             {"\"\"", "VALUE()"},
                             {"\"a`\"b\"", "VALUE(a`\"b)"},
                             {"\"a`b\"", "VALUE(a`b)"},
                             {"\"a`\"", "ILLEGAL ILLEGAL"},
                             {"\"open", "ILLEGAL VALUE(open)"}});
    expectEach(LEX_VALUE, "ILLEGAL", {"a.b", "a\"b", "xSESSION"});
}

TEST(Scanner, RefusesTokensThatAreTooLongForTheirPlace) {
    const std::string longest(254, 'a');
    EXPECT_EQ(scan(LEX_PROPERTY, longest), "NAME(" + longest + ")");
    EXPECT_EQ(scan(LEX_PROPERTY, longest + "a"), "ILLEGAL");
    EXPECT_EQ(scan(LEX_VERB, longest + "a"), "ILLEGAL");
    EXPECT_EQ(scan(LEX_MAIN, "/" + longest + "1"), "ILLEGAL");
    EXPECT_EQ(scan(LEX_VALUE, "\"" + longest + "\""), "ILLEGAL");
    EXPECT_EQ(scan(LEX_KEEP_ARG, std::string(255, '1')), "ILLEGAL");
    EXPECT_EQ(scan(LEX_HELP_ARG, longest + "a"), "ILLEGAL");
    EXPECT_EQ(scan(LEX_URI_ARG, "file:///" + longest), "ILLEGAL");
    EXPECT_EQ(scan(LEX_MAIN, "-" + longest), "ILLEGAL");
    EXPECT_EQ(scan(LEX_MAIN, std::string(100000, '/')), "BAD_TARGET");
}

TEST(Scanner, HandsOutTheLineInPieces) {
    const std::string line = "abcde";
    char piece[3];
    lex_buf = &line;
    lex_buf_position = 0;
    EXPECT_EQ(my_yyinput(piece, 3), 3);
    EXPECT_EQ(std::string(piece, 3), "abc");
    EXPECT_EQ(my_yyinput(piece, 3), 2);
    EXPECT_EQ(std::string(piece, 2), "de");
    EXPECT_EQ(my_yyinput(piece, 3), 0);
    lex_buf = nullptr;
    EXPECT_DEATH(my_yyinput(nullptr, 3), "buf!=__null&&max_size>0");
    EXPECT_DEATH(my_yyinput(piece, 0), "buf!=__null&&max_size>0");
}

TEST(Scanner, PassesOnLineFeedsAndWhatComesBeforeAStateIsChosen) {
    std::FILE* const passed = std::tmpfile();
    yyset_out(passed);
    expectTokens(LEX_MAIN, {{"a\nb", "NAME(a) NAME(b)"}, {"/a1\n", "PATH(/a1)"}});
    flex_init();
    const std::string line = "show";
    lex_buf = &line;
    lex_buf_position = 0;
    EXPECT_EQ(yylex(), 0);
    flex_init();
    flex_change_state(LEX_PROPERTY);
    flex_change_state(static_cast<lex_state>(LEX_VALUE + 1));
    lex_buf_position = 0;
    EXPECT_EQ(yylex(), TK_ILLEGAL) << "a state beyond the last one is ignored";
    flex_init();
    lex_buf = nullptr;
    yyset_out(stdout);
    EXPECT_EQ(std::ftell(passed), 6);
    std::fclose(passed);
}

TEST(Scanner, FormatsAnIndexedNameAsAPath) {
    EXPECT_EQ(format_property_array("foo[3]"), "foo:3");
    EXPECT_DEATH(format_property_array(nullptr), "str!=__null");
}

} // namespace
