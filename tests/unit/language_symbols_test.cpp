#include <gtest/gtest.h>

#include <map>

#include "velclp/optionsymbol.h"
#include "velclp/reservedsymbol.h"
#include "velclp/verbsymbol.h"

namespace {

using Names = std::vector<std::string>;

TEST(Verbs, AreKnownInAnyCaseAndListedInTheirOrder) {
    const std::pair<const char*, short> verbs[] = {
        {"cd", 264},    {"Create", 265}, {"DELETE", 266}, {"exit", 267},  {"help", 268},
        {"reset", 269}, {"set", 270},    {"SHOW", 271},   {"start", 272}, {"stop", 273},
        {"dump", 275},  {"Load", 276},   {"version", 274}};
    for (const auto& [verb, token] : verbs)
        EXPECT_EQ(lookupVerbSymbol(verb), token) << verb;
    EXPECT_EQ(lookupVerbSymbol(""), 262);
    EXPECT_EQ(lookupVerbSymbol("shows"), 263);
    EXPECT_EQ(lookupVerbSymbol("sho"), 263);
    EXPECT_EQ(getSupportedVerbs(), (Names{"cd", "create", "delete", "exit", "help", "dump", "load",
                                          "reset", "set", "show", "start", "stop", "version"}));
    EXPECT_DEATH(lookupVerbSymbol(nullptr), "ele!=__null");
}

// What each verb makes of each option: itself (+), not allowed (.), not implemented (u).
TEST(Options, OfEveryVerbAreThoseOfTheMatrixAndTheImplementedOnesAreListed) {
    const Names options{"-all",  "-destination", "-display", "-examine", "-force",   "-help",
                        "-keep", "-level",       "-output",  "-source",  "-version", "-wait"};
    const std::map<std::string, std::string> matrix{
        {"cd", "...+.++.+.++"},     {"create", "...+.++.++++"}, {"delete", "...++++.+.++"},
        {"dump", ".+.+u+u.+.+u"},   {"exit", "...+.+u.+.+."},   {"help", "...+.+u.+.+u"},
        {"load", "...+u+u.+++u"},   {"reset", "...++++.+.++"},  {"set", "...+++u.+.++"},
        {"show", "+.+++++++.++"},   {"start", "...++++.+.++"},  {"stop", "...++++.+.++"},
        {"version", "...+.+u.+.++"}};
    ASSERT_EQ(matrix.size(), getSupportedVerbs().size());
    for (const auto& [verb, row] : matrix) {
        Names implemented;
        for (std::size_t i = 0; i < options.size(); ++i) {
            std::string name;
            const short token =
                lookupOptionSymbol(lookupVerbSymbol(verb.c_str()), options[i].c_str(), name);
            const short own = static_cast<short>(283 + i);
            const short expected = row[i] == '+' ? own : row[i] == 'u' ? short{296} : short{295};
            EXPECT_EQ(token, expected) << verb << " " << options[i];
            EXPECT_EQ(name, options[i]);
            if (row[i] == '+')
                implemented.push_back(name);
        }
        if (verb != "create") {
            EXPECT_EQ(getSupportedOptions(lookupVerbSymbol(verb.c_str())), implemented) << verb;
        }
    }
    EXPECT_EQ(getSupportedOptions(265),
              (Names{"-examine", "-source", "-help", "-keep", "-output", "-version", "-wait"}));
}

TEST(Options, HaveShortFormsInAnyCase) {
    const std::map<std::string, std::string> forms{
        {"-a", "-all"},   {"-D", "-display"}, {"-x", "-examine"}, {"-F", "-force"},
        {"-h", "-help"},  {"-k", "-keep"},    {"-L", "-level"},   {"-o", "-output"},
        {"-ALL", "-all"}, {"-v", "-version"}, {"-w", "-wait"}};
    for (const auto& [word, longName] : forms) {
        std::string name;
        EXPECT_LT(lookupOptionSymbol(271, word.c_str(), name), 295) << word;
        EXPECT_EQ(name, longName);
    }
    std::string name = "untouched";
    EXPECT_EQ(lookupOptionSymbol(265, "-s", name), 292);
    EXPECT_EQ(name, "-source");
    name = "untouched";
    EXPECT_EQ(lookupOptionSymbol(271, "-q", name), 295);
    EXPECT_EQ(name, "untouched");
}

TEST(Options, OfAWordThatIsNoVerbEndTheProcess) {
    std::string name;
    EXPECT_DEATH(lookupOptionSymbol(263, "-all", name),
                 "vindex!=sizeof\\(verbs\\)/sizeof\\(short\\)");
    EXPECT_DEATH(getSupportedOptions(262), "vindex!=sizeof\\(verbs\\)/sizeof\\(short\\)");
    EXPECT_DEATH(lookupOptionSymbol(271, nullptr, name), "option!=__null");
}

TEST(ReservedStrings, AreFoundAnywhereInTheirOwnCase) {
    for (const char* plain : {"abc", "", "session", "a+b", "x>y", "a:b", "a'b"})
        EXPECT_FALSE(lookupReservedSymbol(plain)) << plain;
    for (const char* reserved : {"a b", "a\tb", "a\nb", "a\rb", "a\\b", "a,b", "a-b", "a=b", "a/b",
                                 "a.b", "a\"b", "xSESSIONy", "a`b", "a(b", "a)b"})
        EXPECT_TRUE(lookupReservedSymbol(reserved)) << reserved;
    EXPECT_DEATH(lookupReservedSymbol(nullptr), "ele!=__null");
}

} // namespace
