#include <gtest/gtest.h>

#include "schema_file.h"
#include "velclp/schema.h"

namespace {

using velmora_clp::CLPSchema;
using Names = CLPSchema::Names;
using Pairs = CLPSchema::Pairs;

const char* const CONTENT = "[ZORM_Computer]\n"
                            "alias=CIM_Computer:ACME_Computer:ZORM_Shadowed\n"
                            "parent=zorm_admin\n"
                            "type=dynamic\n"
                            "namespace=root/other\n"
                            "verbs=show:set::cd\n"
                            "assoc=zorm_hosts:zorm_device\n"
                            "children:zorm_device=zorm_fan:zorm_log:zorm_unknown\n"
                            "children:zorm_contains=CIM_Computer:zorm_fan\n"
                            "(system_1)\n"
                            "ufit=property:number\n"
                            "cimclass=zorm_other\n"
                            "virtualufcts=splog:sp,ignored:blade\n"
                            "properties=Name:EnabledState\n"
                            "pseudo_properties=limit:time\n"
                            "verbs=show:start\n"
                            "command:stop.-force=zorm_computer:pseudo:hardstop\n"
                            "command:start=zorm_computer:pseudo:start\n"
                            "(end)\n"
                            "(blade_1)\n"
                            "filter:enabledstate=2:3\n"
                            "filter:dedicated=blade\n"
                            "filter:anything=:\n"
                            "(end)\n"
                            "[end]\n"
                            "[zorm_fan]\n"
                            "(oemvelmora_fan_1)\n(end)\n"
                            "(splog_1)\nrealufct=log\n(end)\n"
                            "[end]\n"
                            "[zorm_log]\n"
                            "(log_1)\nufit=nature\nfilter:a=b\n(end)\n"
                            "[end]\n"
                            "[zorm_shadowed]\nverbs=none\n[end]\n"
                            "[zorm_bare]\n[end]\n";

class SchemaQueries : public testing::Test {
protected:
    SchemaFile file{CONTENT};
    CLPSchema schema;
};

TEST_F(SchemaQueries, FindTheClassOfATagInAnyCase) {
    EXPECT_EQ(schema.getCIMClass("System"), "zorm_computer");
    EXPECT_EQ(schema.getCIMClass("nosuch"), "");
    EXPECT_EQ(schema.getCIMClass_Ufct("system"), "zorm_other");
    EXPECT_EQ(schema.getCIMClass_Ufct("blade"), "");
}

TEST_F(SchemaQueries, KnowSectionsAndAliasesInAnyCase) {
    for (const char* known : {"zorm_computer", "ZORM_COMPUTER", "cim_computer", "ACME_computer"})
        EXPECT_TRUE(schema.hasCIMClass(known)) << known;
    for (const char* unknown : {"computer", "", "system", "zorm_computerx", "zorm_compute"})
        EXPECT_FALSE(schema.hasCIMClass(unknown)) << unknown;
}

TEST_F(SchemaQueries, GiveWhatATagDeclares) {
    EXPECT_EQ(schema.getUfit("system"),
              (std::pair<std::string, std::string>("property", "number")));
    EXPECT_EQ(schema.getRealUfct("splog"), "log");
    EXPECT_EQ(schema.getVertualUfcts("system"), (Names{"splog:sp", "ignored:blade"}));
    EXPECT_EQ(schema.getRequiredProperties("system"), (Names{"Name", "EnabledState"}));
    EXPECT_EQ(schema.getPseudoProperties("system"), (Names{"limit", "time"}));
    EXPECT_EQ(schema.getVerbs_ufct("system"), (Names{"show", "start"}));
    EXPECT_EQ(schema.getOptionMap("system", "stop.-force"), "zorm_computer:pseudo:hardstop");
    EXPECT_EQ(schema.getOptionMap("system", "stop"), "");
}

TEST_F(SchemaQueries, GiveDefaultsForWhatATagDoesNotDeclare) {
    // A tag in upper case finds its class but none of its declarations.
    for (const char* tag : {"oemvelmora_fan", "SYSTEM"}) {
        EXPECT_EQ(schema.getUfit(tag), (std::pair<std::string, std::string>("nature", "")));
        EXPECT_EQ(schema.getCIMClass_Ufct(tag), "");
        EXPECT_TRUE(schema.getVerbs_ufct(tag).empty());
        EXPECT_TRUE(schema.getPseudoProperties(tag).empty());
        EXPECT_TRUE(schema.getFilter(tag).empty());
    }
    EXPECT_EQ(schema.getRealUfct("nosuch"), "");
    EXPECT_TRUE(schema.getVertualUfcts("nosuch").empty());
    EXPECT_TRUE(schema.getRequiredProperties("nosuch").empty());
    EXPECT_EQ(schema.getOptionMap("nosuch", "start"), "");
}

TEST_F(SchemaQueries, GiveAFilterAsOnePairForEachValue) {
    EXPECT_EQ(schema.getFilter("blade"), (Pairs{{"anything", ""},
                                                {"dedicated", "blade"},
                                                {"enabledstate", "2"},
                                                {"enabledstate", "3"}}));
}

TEST_F(SchemaQueries, GiveWhatAClassDeclaresByItsNameAndByEveryAlias) {
    // An alias goes before a section of the same name.
    for (const char* name : {"ZORM_Computer", "cim_computer", "ACME_Computer", "zorm_shadowed"}) {
        EXPECT_EQ(schema.getType(name), "dynamic");
        EXPECT_EQ(schema.getNS(name), "root/other");
        EXPECT_EQ(schema.getParent(name), "zorm_admin");
        EXPECT_EQ(schema.getVerbs_class(name), (Names{"show", "set", "cd"}));
        EXPECT_EQ(schema.getAssoc(name), (Names{"zorm_hosts", "zorm_device"}));
        EXPECT_EQ(schema.getUfcts(name), (Names{"blade", "system"}));
        EXPECT_EQ(schema.getAddrAssoc(name), (Names{"zorm_contains", "zorm_device"}));
        EXPECT_EQ(schema.getRefs(name, "zorm_device"),
                  (Names{"zorm_fan", "zorm_log", "zorm_unknown"}));
        EXPECT_TRUE(schema.getRefs(name, "ZORM_Device").empty());
        EXPECT_EQ(schema.getDefaultUfct(name), "system");
    }
}

TEST_F(SchemaQueries, GiveDefaultsForWhatAClassDoesNotDeclare) {
    EXPECT_EQ(schema.getType("zorm_fan"), "static");
    EXPECT_EQ(schema.getParent("zorm_fan"), "");
    for (const char* name : {"zorm_bare", "zorm_unknown"}) {
        EXPECT_EQ(schema.getNS(name), "root/zorm");
        EXPECT_TRUE(schema.getAssoc(name).empty());
        EXPECT_TRUE(schema.getUfcts(name).empty());
        EXPECT_TRUE(schema.getAddrAssoc(name).empty());
        EXPECT_TRUE(schema.getChildren_ufcts(name).empty());
    }
}

TEST_F(SchemaQueries, GatherTheTagsBelowAClassInFirstSeenOrder) {
    EXPECT_EQ(schema.getChildren_ufcts("zorm_computer"),
              (Names{"blade", "system", "oemvelmora_fan", "splog", "log"}));
}

TEST_F(SchemaQueries, EndTheProcessForWhatMustBeKnown) {
    const char* const unknown = "p!=m_classTree.end\\(\\)";
    EXPECT_DEATH(schema.getCIMClass_Ufct("nosuch"), unknown);
    EXPECT_DEATH(schema.getUfit("nosuch"), unknown);
    EXPECT_DEATH(schema.getPseudoProperties("nosuch"), unknown);
    EXPECT_DEATH(schema.getVerbs_ufct("nosuch"), unknown);
    EXPECT_DEATH(schema.getFilter("nosuch"), unknown);
    EXPECT_DEATH(schema.getVerbs_class("nosuch"), unknown);
    EXPECT_DEATH(schema.getType("nosuch"), unknown);
    EXPECT_DEATH(schema.getParent("nosuch"), unknown);
    EXPECT_DEATH(schema.getRefs("nosuch", "zorm_device"), unknown);
    EXPECT_DEATH(schema.getUfit("log"), "static_cast<int>\\(i.size\\(\\)\\)==2");
    EXPECT_DEATH(schema.getDefaultUfct("nosuch"), "!ufcts.empty\\(\\)");
    EXPECT_DEATH(schema.getDefaultUfct("zorm_bare"), "!ufcts.empty\\(\\)");
    EXPECT_DEATH(schema.getDefaultUfct("zorm_log"), "Assertion `false'");
}

} // namespace
