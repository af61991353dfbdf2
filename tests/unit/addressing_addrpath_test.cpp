#include "velclp/addrpath.h"

#include <gtest/gtest.h>

namespace velmora_clp {
namespace {

TEST(AddrpathTest, WhatIsTypedComesIntoItsNormalForm) {
    struct {
        const char* cdt;
        const char* text;
        const char* address;
    } const cases[] = {
        {"/admin1", "/admin1/system1", "/admin1/system1"},
        {"/admin1", "\\admin1\\system1", "/admin1/system1"},
        {"/admin1", "/admin1//system1/", "/admin1/system1"},
        {"/x1", "/admin1/system*", "/admin1/system*"},
        {"/x1", "/system*", "/system*"},
        {"/admin1", "/", "/"},
        {"/admin1", "/..", "/"},
        {"/admin1", "/x1/..", "/"},
        {"/admin1", "/admin1/../../system1", "/admin1/system1"},
        {"/admin1", "/sp1a2", "/sp1a2"},
        {"/admin1", "/admin1/system1/.", "/admin1/system1"},
        {"/admin1", "/admin1/system1/sp1/..", "/admin1/system1"},
        {"/admin1", "", "/admin1"},
        {"/admin1/", "", "/admin1/"},
        {"/admin1/system1", "sp1", "/admin1/system1/sp1"},
        {"/admin1/system1", "..", "/admin1"},
        {"/admin1", "..", "/admin1"},
        {"/admin1/system1/sp1", "../..\\system2", "/admin1/system2"},
        {"/admin1", "system*", "/admin1/system*"},
        {"/x1", "..", "/"},
        {"/admin1\\system1", "sp1", "/admin1\\system1/sp1"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string(c.text) + " from " + c.cdt);
        CLPAddrpath path("/admin1/system3", "/admin1/sp*");
        EXPECT_TRUE(path.setPath(c.cdt, c.text));
        const std::string address = c.address;
        EXPECT_EQ(address, path.getResultantAddress());
        const bool isClass = address.back() == '*';
        EXPECT_EQ(isClass ? 1 : 0, path.getType());
        EXPECT_EQ(isClass ? address.substr(0, address.rfind('/')) : address,
                  path.getResultantTarget());
    }
}

TEST(AddrpathTest, TextThatIsNoAddressLeavesTheRootAndNotWhatWasThereBefore) {
    const auto expectRefused = [](const char* cdt, const char* text) {
        CLPAddrpath path("/admin1", "/admin1/system*");
        EXPECT_FALSE(path.setPath(cdt, text)) << text;
        EXPECT_EQ("/", path.getResultantAddress());
        EXPECT_EQ(0, path.getType());
        EXPECT_EQ("/", path.getResultantTarget());
        EXPECT_TRUE(path.setPath("/admin1", "system1"));
        EXPECT_EQ("/admin1/system1", path.getResultantAddress());
    };
    for (const char* text :
         {"system", "*", "1system", "system1*x", "system*/sp1", "/admin1/system*/.",
          "/admin1/system*/..", "...", " system1", "\xE4\x31"})
        expectRefused("/admin1", text);
    expectRefused("/admin", "system1");
}

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
