#include <gtest/gtest.h>

#include "schema_file.h"
#include "velclp/schema.h"

namespace {

using velmora_clp::CLPSchema;
using velmora_clp::Locations;

// Loading this content ends the process with the text of the assertion.
void expectFault(const std::string& content, const std::string& text) {
    const SchemaFile file(content);
    std::string pattern;
    for (const char c : text)
        pattern +=
            std::string(std::string("()[]*.+?|\\{}^$").find(c) == std::string::npos ? "" : "\\") +
            c;
    EXPECT_DEATH(CLPSchema(), "Assertion.*" + pattern) << content;
}

std::string section(const std::string& lines) {
    return "[ZORM_A]\n" + lines + "[end]\n";
}

TEST(SchemaLoader, ReadsSectionsAndSkipsWhatStandsBetweenThem) {
    const SchemaFile file("Commentary, with = and (brackets)\n\n"
                          "[ZORM_Admin]\nParent=None\nChildren:ZORM_X=ZORM_B:ZORM_C\n"
                          "children:zorm_y=ZORM_D\n(Admin_1)\nVerbs=SHOW:CD\n(End)\n[END]\n"
                          " [zorm_indented]\n\n[ZORM_B]\n(b_1)\n(end)\n[end]\n" +
                          std::string(1024, 'x') + "\n[ZORM_C]\n[end]\n");
    const CLPSchema schema;
    EXPECT_TRUE(schema.hasCIMClass("ZORM_ADMIN"));
    EXPECT_EQ(schema.getParent("zorm_admin"), "none");
    EXPECT_EQ(schema.getRefs("zorm_admin", "zorm_x"), (CLPSchema::Names{"zorm_b", "zorm_c"}));
    EXPECT_EQ(schema.getVerbs_ufct("admin"), (CLPSchema::Names{"show", "cd"}));
    EXPECT_FALSE(schema.hasCIMClass("zorm_indented"));
    EXPECT_EQ(schema.getCIMClass("b"), "zorm_b");
    EXPECT_TRUE(schema.hasCIMClass("zorm_c"));
}

TEST(SchemaLoader, LowersTheCaseOfEverythingButRequiredProperties) {
    const SchemaFile file(section("Namespace=Root/Other\n(sp_1)\nproperties=EnabledState:Name\n"
                                  "Pseudo_Properties=PowerLimit\n(end)\n(log_1)\n"
                                  "Properties=Name\n(end)\n(fan_1)\nproperties =Name\n(end)\n"));
    const CLPSchema schema;
    EXPECT_EQ(schema.getNS("zorm_a"), "root/other");
    EXPECT_EQ(schema.getRequiredProperties("sp"), (CLPSchema::Names{"EnabledState", "Name"}));
    EXPECT_EQ(schema.getPseudoProperties("sp"), CLPSchema::Names{"powerlimit"});
    EXPECT_EQ(schema.getRequiredProperties("log"), CLPSchema::Names{"name"});
    EXPECT_TRUE(schema.getRequiredProperties("fan").empty());
}

TEST(SchemaLoader, TakesTheTagFromTheHeadOfItsBlock) {
    const SchemaFile file(section("(sp_1)\n(end)\n(OEMVelmora_Fan_x)\n(end)\n(log__7_\n(end)\n"));
    const CLPSchema schema;
    EXPECT_EQ(schema.getUfcts("zorm_a"), (CLPSchema::Names{"log", "oemvelmora_fan", "sp"}));
    EXPECT_EQ(schema.getCIMClass("OEMVELMORA_fan"), "zorm_a");
}

TEST(SchemaLoader, EndsTheProcessForEveryFaultOfAHead) {
    expectFault("[zorm_a\n", "buf[0]=='['&&buf[strlen(buf)-1]==']'");
    expectFault("[zorm_a]\r\n[end]\r\n", "buf[0]=='['&&buf[strlen(buf)-1]==']'");
    expectFault("[zorm_a]", "config.good()&&buf");
    expectFault(section("") + section(""), "m_classTree.find(key)==m_classTree.end()");
    expectFault(section("") + "[zorm_a]\n[END]\n", "m_classTree.find(key)==m_classTree.end()");
    for (const char* head : {"(sp)", "(a_b_c_1)", "(", "()"})
        expectFault(section(head + std::string("\n(end)\n")), "n<=3&&n>=2");
    expectFault(section("(sp_1)\n(end)\n(SP_2)\n(end)\n"),
                "m_ufctIndex.find(ufct)==m_ufctIndex.end()");
    expectFault(section("(sp_1)\n(end)\n") + "[zorm_b]\n(sp_1)\n(end)\n[end]\n",
                "m_ufctIndex.find(ufct)==m_ufctIndex.end()");
    expectFault(section("ufct:sp=x\n(sp_1)\n(end)\n"), "_class->hasNode(path)==false");
}

TEST(SchemaLoader, EndsTheProcessForEveryFaultOfAnElement) {
    expectFault(section("\n"), "_class&&!line.empty()");
    expectFault(section("parent\n"), "pos!=string::npos");
    expectFault(section("parent=\n"), "static_cast<int>(tmp.size())==2");
    expectFault(section("parent=a=b\n"), "static_cast<int>(tmp.size())==2");
    expectFault(section("parent=a\nPARENT=b\n"), "_class->hasNode(path)==false");
    expectFault(section("alias=x:y:x\n"), "m_aliasIndex.find(alias[i])==m_aliasIndex.end()");
    expectFault(section("alias=x\n") + "[zorm_b]\nalias=X\n[end]\n",
                "m_aliasIndex.find(alias[i])==m_aliasIndex.end()");
    expectFault(section("(sp_1)\n\n(end)\n"), "_class&&!line.empty()&&!ufct.empty()");
    expectFault(section("(sp_1)\nverbs\n(end)\n"), "pos!=string::npos");
    expectFault(section("(sp_1)\nverbs=\n(end)\n"), "static_cast<int>(tmp.size())==2");
    expectFault(section("(sp_1)\ncommand:stop=a=b\n(end)\n"), "static_cast<int>(tmp.size())==2");
    expectFault(section("(sp_1)\nverbs=a\nverbs=b\n(end)\n"), "_class->hasNode(path_tmp)==false");
}

TEST(SchemaLoader, EndsTheProcessForAFileThatIsCutOffOrCannotBeRead) {
    expectFault("[zorm_a]\nparent=b\n", "!config.fail()");
    expectFault("[zorm_a]\nparent=b", "!config.eof()");
    expectFault("[zorm_a]\n[end]", "!config.eof()");
    expectFault("[zorm_a]\n(sp_1)\nverbs=show\n", "!config.fail()");
    expectFault("[zorm_a]\n(sp_1)\nverbs=show", "!config.eof()");
    expectFault(section("parent=" + std::string(1018, 'x') + "\n"), "!config.fail()");
    expectFault(section("(sp_1)\nverbs=" + std::string(1019, 'x') + "\n(end)\n"), "!config.fail()");
    Locations nowhere;
    nowhere.schemaFile = "/nonexistent/schema.conf";
    Locations::set(nowhere);
    EXPECT_DEATH(CLPSchema(), "!config.fail\\(\\)&&config.is_open\\(\\)");
}

TEST(SchemaLoader, TakesLinesUpToTheirLimitAndStopsAtALongerOneBetweenSections) {
    const SchemaFile file("[zorm_a]\nparent=" + std::string(1017, 'x') + "\n[end]\n" +
                          std::string(1025, 'x') + "\n[zorm_b]\n[end]\n");
    const CLPSchema schema;
    EXPECT_EQ(schema.getParent("zorm_a").size(), 1017u);
    EXPECT_FALSE(schema.hasCIMClass("zorm_b"));
}

TEST(SchemaLoader, MakesOneSchemaForTheProcess) {
    const SchemaFile file(section("(sp_1)\n(end)\n"));
    CLPSchema* first = CLPSchema::getInstance();
    EXPECT_EQ(CLPSchema::getInstance(), first);
    EXPECT_EQ(first->getCIMClass("sp"), "zorm_a");
}

} // namespace
