// The text helpers that the library shares.
#include "velclp/clpstring.h"

#include <gtest/gtest.h>

#include <memory>

using namespace velmora_clp;

namespace {

using Words = std::vector<std::string>;

// The words that a line is cut into; "<null>" alone for a line that gives none.
Words cut(const char* line) {
    char** const argv = get_argv(line);
    if (argv == nullptr)
        return {"<null>"};
    Words words;
    for (char** word = argv; *word != nullptr; ++word)
        words.emplace_back(*word);
    del_argv(argv);
    return words;
}

TEST(CuttingALineIntoWords, FollowsQuotesAndBackslashesAsAShellDoes) {
    EXPECT_EQ(cut("a \"b c\" d\\ e"), (Words{"a", "b c", "d e"}));
    EXPECT_EQ(cut("  /bin/tolmax   -x  "), (Words{"/bin/tolmax", "-x"}));
    EXPECT_EQ(cut("a'b \"c'\"d 'e\"f"), (Words{"ab \"cd 'ef"}));
    EXPECT_EQ(cut("\"a\\\"b\" 'c\\'d' \\\\"), (Words{"a\"b", "c'd", "\\"}));
    EXPECT_EQ(cut("a \"\" b"), (Words{"a", "", "b"}));
    EXPECT_EQ(cut("a\tb"), (Words{"a\tb"})) << "a tab is no blank";
}

TEST(CuttingALineIntoWords, GivesNullForAnOpenQuoteAHangingBackslashAndNoWord) {
    for (const char* const line : {"a \"b", "a 'b", "a \\", "\"a\\\"", "", "   "})
        EXPECT_EQ(cut(line), Words{"<null>"}) << line;
    EXPECT_EQ(get_argv(nullptr), nullptr);
    del_argv(nullptr);
    char word[] = "word";
    const std::unique_ptr<char[]> copy(cpy_argv(word));
    EXPECT_STREQ(copy.get(), "word");
}

TEST(SplittingAText, KeepsEmptyPartsOnlyWhenAsked) {
    EXPECT_EQ(splitString("a..b", ".", false), (Words{"a", "b"}));
    EXPECT_EQ(splitString("a..b", ".", true), (Words{"a", "", "b"}));
    EXPECT_EQ(splitString("=>a=>b", "=>", true), (Words{"", "a", "b"}));
    EXPECT_EQ(splitString("a=>", "=>", true), (Words{"a", ""}));
    EXPECT_EQ(splitString("a=>", "=>", false), (Words{"a"}));
    EXPECT_EQ(splitString("", ":", true), (Words{""}));
    EXPECT_EQ(splitString("", ":", false), Words{});
    EXPECT_EQ(splitString("a:b", "", true), (Words{"a:b"}));
}

TEST(WordsAndCase, AreByteWise) {
    EXPECT_EQ(lastWord("show /admin1"), "/admin1");
    EXPECT_EQ(lastWord("show"), "show");
    EXPECT_EQ(lastWord("show "), " ");
    EXPECT_EQ(lastWord(""), " ");
    EXPECT_EQ(lowerString("AdMiN1 \xC4_Z"), "admin1 \xC4_z");
    EXPECT_EQ(strcmp_nocase("Show", "sHOW"), 0);
    EXPECT_LT(strcmp_nocase("a", "B"), 0);
    EXPECT_DEATH(strcmp_nocase(nullptr, "a"), "src!=__null&&dest!=__null");
}

} // namespace
