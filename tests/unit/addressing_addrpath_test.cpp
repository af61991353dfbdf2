#include "velclp/addrpath.h"

#include <gtest/gtest.h>

#include <ostream>

namespace velmora_clp {
namespace {

struct Typed {
    const char* cdt;
    const char* text;
    const char* address; // null for text that is no address
    int type;
    const char* target;
};

void PrintTo(const Typed& typed, std::ostream* out) {
    *out << '"' << typed.text << "\" from " << typed.cdt;
}

class AddressTest : public testing::TestWithParam<Typed> {};

TEST_P(AddressTest, ComesIntoItsNormalForm) {
    const Typed& typed = GetParam();
    CLPAddrpath path("/admin1/system3", "/admin1/sp*");
    const bool valid = path.setPath(typed.cdt, typed.text);
    EXPECT_EQ(typed.address != nullptr, valid);
    EXPECT_EQ(typed.address != nullptr ? typed.address : "/", path.getResultantAddress());
    EXPECT_EQ(typed.type, path.getType());
    EXPECT_EQ(typed.target, path.getResultantTarget());
}

INSTANTIATE_TEST_SUITE_P(
    Absolute, AddressTest,
    testing::Values(
        Typed{"/admin1", "/admin1/system1", "/admin1/system1", 0, "/admin1/system1"},
        Typed{"/admin1", "\\admin1\\system1", "/admin1/system1", 0, "/admin1/system1"},
        Typed{"/admin1", "/admin1//system1/", "/admin1/system1", 0, "/admin1/system1"},
        Typed{"/x1", "/admin1/system*", "/admin1/system*", 1, "/admin1"},
        Typed{"/x1", "/system*", "/system*", 1, ""}, Typed{"/admin1", "/", "/", 0, "/"},
        Typed{"/admin1", "/..", "/", 0, "/"}, Typed{"/admin1", "/x1/..", "/", 0, "/"},
        Typed{"/admin1", "/admin1/../../system1", "/admin1/system1", 0, "/admin1/system1"},
        Typed{"/admin1", "/sp1a2", "/sp1a2", 0, "/sp1a2"},
        Typed{"/admin1", "/admin1/system1/.", "/admin1/system1", 0, "/admin1/system1"},
        Typed{"/admin1", "/admin1/system1/sp1/..", "/admin1/system1", 0, "/admin1/system1"}));

INSTANTIATE_TEST_SUITE_P(
    Relative, AddressTest,
    testing::Values(
        Typed{"/admin1", "", "/admin1", 0, "/admin1"},
        Typed{"/admin1/", "", "/admin1/", 0, "/admin1/"},
        Typed{"/admin1/system1", "sp1", "/admin1/system1/sp1", 0, "/admin1/system1/sp1"},
        Typed{"/admin1/system1", "..", "/admin1", 0, "/admin1"},
        Typed{"/admin1", "..", "/admin1", 0, "/admin1"},
        Typed{"/admin1/system1/sp1", "../..\\system2", "/admin1/system2", 0, "/admin1/system2"},
        Typed{"/admin1", "system*", "/admin1/system*", 1, "/admin1"},
        Typed{"/x1", "..", "/", 0, "/"},
        Typed{"/admin1\\system1", "sp1", "/admin1\\system1/sp1", 0, "/admin1\\system1/sp1"}));

INSTANTIATE_TEST_SUITE_P(NoAddress, AddressTest,
                         testing::Values(Typed{"/admin1", "system", nullptr, 0, "/"},
                                         Typed{"/admin1", "*", nullptr, 0, "/"},
                                         Typed{"/admin1", "1system", nullptr, 0, "/"},
                                         Typed{"/admin1", "system1*x", nullptr, 0, "/"},
                                         Typed{"/admin1", "system*/sp1", nullptr, 0, "/"},
                                         Typed{"/admin1", "/admin1/system*/.", nullptr, 0, "/"},
                                         Typed{"/admin1", "/admin1/system*/..", nullptr, 0, "/"},
                                         Typed{"/admin1", "...", nullptr, 0, "/"},
                                         Typed{"/admin1", " system1", nullptr, 0, "/"},
                                         Typed{"/admin1", "\xE4\x31", nullptr, 0, "/"},
                                         Typed{"/admin", "system1", nullptr, 0, "/"}));

TEST(AddrpathTest, ATermIsCutIntoTagAndSuffix) {
    struct {
        const char* term;
        const char* tag;
        const char* suffix;
    } const cases[] = {{"system1", "system", "1"},
                       {"system12", "system", "12"},
                       {"system007", "system", "007"},
                       {"sp1a2", "sp1a", "2"},
                       {"system*", "system", "*"},
                       {"sp1*", "sp1", "*"},
                       {"a1", "a", "1"},
                       {"a*", "a", "*"},
                       {"oem_fan3", "oem_fan", "3"},
                       {"a*12", "a", "*"}};
    const CLPAddrpath any("/", "/");
    for (const auto& c : cases) {
        EXPECT_EQ(c.tag, any.getUfct(c.term)) << c.term;
        EXPECT_EQ(c.suffix, any.getUfis(c.term)) << c.term;
    }
}

TEST(AddrpathTest, TheTermsOfAnAddressAreItsPiecesAndTheRootHasNone) {
    EXPECT_EQ((std::vector<std::string>{"admin1", "system2", "sp*"}),
              CLPAddrpath("/admin1", "system2/sp*").getTerms());
    EXPECT_TRUE(CLPAddrpath("/", "/").getTerms().empty());
}

TEST(AddrpathTest, AFailureLeavesTheRootAndNotWhatWasThereBefore) {
    CLPAddrpath path("/admin1", "/admin1/system*");
    EXPECT_FALSE(path.setPath("/admin1", "nonsense"));
    EXPECT_EQ("/", path.getResultantAddress());
    EXPECT_EQ(0, path.getType());
    EXPECT_TRUE(path.setPath("/admin1", "system1"));
    EXPECT_EQ("/admin1/system1", path.getResultantAddress());
}

TEST(AddrpathDeathTest, TextThatIsNoAddressEndsTheProcessWhereOneIsRequired) {
    EXPECT_DEATH(CLPAddrpath("/admin1", "system"), "flag");
    EXPECT_DEATH(CLPAddrpath("", "/admin1"), "!cdt.empty\\(\\)&&path!=\"SESSION\"");
    CLPAddrpath path("/", "/");
    EXPECT_DEATH(path.setPath("/admin1", "SESSION"), "!cdt.empty\\(\\)&&path!=\"SESSION\"");
    EXPECT_DEATH(path.getUfct(""), "!addrTerm.empty\\(\\)");
    EXPECT_DEATH(path.getUfct("system"), "addrTerm\\[addrTerm.length\\(\\)-1\\]=='\\*'\\|\\| ");
    EXPECT_DEATH(path.getUfis("1system1"), "addrTerm\\[0\\]!='\\*'&&");
    EXPECT_DEATH(path.getUfis("*"), "addrTerm\\[0\\]!='\\*'&&");
}

} // namespace
} // namespace velmora_clp
