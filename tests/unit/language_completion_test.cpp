#include <gtest/gtest.h>

#include <stdexcept>

#include "language/parsestate.h"
#include "log/osalog.h"
#include "parsed_line.h"
#include "tests/support/run_directory.h"
#include "velclp/parser.h"

namespace {

using Words = std::vector<std::string>;

// What the parser asks of the engine.
struct Question {
    Words terms;
    std::string word;
    int count = 0;
};
Question asked;
Words answer;
bool engineFails = false;

Words complete(const std::string& line) {
    asked = Question();
    return velmora_clp::CLPParser().tabContinue(line);
}

// "a|b|c (word)" for what a line asks of the engine; empty when it asks nothing.
std::string question(const std::string& line) {
    complete(line);
    std::string text;
    for (const std::string& term : asked.terms)
        text += (&term == &asked.terms.front() ? "" : "|") + term;
    return asked.count == 0 ? "" : text + " (" + asked.word + ")";
}

} // namespace

std::vector<std::string> parser_help(const std::vector<std::string>& terms,
                                     const std::string& word) {
    asked = {terms, word, asked.count + 1};
    if (engineFails)
        throw std::runtime_error("no cache");
    return answer;
}

namespace {

TEST(Completion, OffersVerbsAndTheirOptionsWithoutAskingTheEngine) {
    EXPECT_EQ(complete("  S"), (Words{"set", "show", "start", "stop"}));
    EXPECT_EQ(complete("show -all -output format=text -d"), Words{"-display"});
    EXPECT_EQ(complete("show -q -d"), Words{"-display"});
    for (const char* line :
         {"x", "   ", "123 ", "foo ", "s x", "foo -a", "/adm", "load -k", "-", "foo -"})
        EXPECT_EQ(complete(line), Words{}) << line;
    EXPECT_EQ(asked.count, 0);
}

TEST(Completion, AsksTheEngineForTargetsAndForPropertiesBehindThem) {
    answer = {"admin1"};
    EXPECT_EQ(complete("show /"), Words{"admin1"});
    const std::pair<const char*, const char*> cases[] = {{"show ", " ()"},
                                                         {"cd -x /adm", "/adm ()"},
                                                         {"show /Admin1", "/Admin1 ()"},
                                                         {"delete sys*", "sys* ()"},
                                                         {"show SESSION/", "SESSION/ ()"},
                                                         {"show a1=>", "a1| ()"},
                                                         {"show =>", "| ()"},
                                                         {"show a1=>b", "a1|b ()"},
                                                         {"show a1=>b=>", "a1|b| ()"},
                                                         {"show a1=>b=>c", "a1|b|c ()"},
                                                         {"show /Admin1 na", "/admin1|| (na)"},
                                                         {"show SESSION ", "SESSION|| ( )"},
                                                         {"set /a1 x=1 Na", "/a1|| (Na)"},
                                                         {"show a1=>B=>c1 ", "a1|b|c1 ( )"},
                                                         {"show =>b x", "|b| (x)"}};
    for (const auto& [line, asks] : cases)
        EXPECT_EQ(question(line), asks) << line;
}

TEST(Completion, NeverEndsTheSession) {
    EXPECT_EQ(complete("show a1=>b=>c1=>d1"), Words{});
    EXPECT_EQ(asked.count, 0);
    const RunDirectory directory;
    ASSERT_TRUE(osalog_set_file(directory.file("log")));
    engineFails = true;
    EXPECT_EQ(complete("show /"), Words{});
    EXPECT_EQ(asked.count, 1);
    engineFails = false;
    osalog_set_file("");
    EXPECT_NE(directory.read("log").find("unknown error! in clp_parser::tabContinue!"),
              std::string::npos);
    EXPECT_EQ(complete("show /"), answer);
}

TEST(Completion, LeavesNothingBehindForTheNextLine) {
    for (const char* typed : {"show -o form", "set a=\"x", "help (", "show a1=>b"}) {
        complete(typed);
        EXPECT_TRUE(!y_token && !y_pe && !continueTerms && !lex_buf) << typed;
        EXPECT_EQ(ParsedLine("show -o format=text /a1 n==v").outcome(), 0) << typed;
        EXPECT_EQ(ParsedLine("foo").outcome(), 253) << typed;
        EXPECT_TRUE(!y_token && !y_pe && !lex_buf) << typed;
    }
}

} // namespace
