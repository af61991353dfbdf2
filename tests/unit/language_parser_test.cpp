#include <gtest/gtest.h>

#include "parsed_line.h"

namespace {

using Lines = std::vector<const char*>;

// What these lines come to: a code, or 0 for lines that are accepted.
void expectOutcome(int code, const Lines& lines) {
    for (const char* line : lines)
        EXPECT_EQ(ParsedLine(line).outcome(), code) << line;
}

TEST(Parser, AcceptsOrRefusesVerbsAndWhatFollowsThem) {
    expectOutcome(0, {"SHOW", " show", "version", "exit", "cd", "cd SESSION", "start"});
    expectOutcome(246, {"show1"});
    expectOutcome(252, {"123", "   ", "-all", "version /a1", "exit SESSION", "version name",
                        "show show", "show \"x\""});
    expectOutcome(253, {"foo", "foo -x /a1"});
}

TEST(Parser, AcceptsOrRefusesOptionsAndTheirArguments) {
    expectOutcome(0, {"show -x -h -v -w -f -a", "show -all /admin1", "show -l all", "cd -keep 1.30",
                      "load -source http://h/f", "dump -destination \"file:///x\""});
    expectOutcome(247, {"load -force", "version -keep 5"});
    expectOutcome(
        248, {"show -l", "show -l -a", "cd -k", "cd -keep -1", "load -source", "load -source -x"});
    expectOutcome(250, {"show -l 1x", "show -l 0", "cd -keep x", "load -source nouri"});
    expectOutcome(251, {"set -q", "show -q", "show -level=5", "exit -wait"});
    expectOutcome(252, {"set -x", "show -a -a", "show -a -all", "show /admin1 -all", "cd /a1 -x",
                        "show -l 2 -l", "show -l 2 -l 2"});
}

TEST(Parser, AcceptsOrRefusesTheListOfOutput) {
    expectOutcome(0, {"show -o number=1-5 -a", "show -o begin,count=2",
                      "show -o FORMAT=CLPXML,Verbose /a1", "version -o format=text "});
    expectOutcome(248, {"show -o", "show -o ", "show -o -a"});
    expectOutcome(250, {"show -o\"x", "show -o foo", "show -o format=csv", "show -o format",
                        "show -o format=text,", "show -o ,format=text", "show -o format=text=x",
                        "show -o terse\"", "show -o 1-5", "show -o number=5-1",
                        "show -o number=123456-1"});
    expectOutcome(251, {"show -output:count 3"});
    expectOutcome(252, {"show -o format=text,format=text", "show -o order=reverse,order=default",
                        "show -o language=eng,language=eng", "show -o number=1-5,count=2",
                        "show -o count=2,number=1-5", "show -o begin,number=1-5",
                        "show -o number=1-5,end", "show -o begin,end", "show -o terse,verbose",
                        "show -o error,error", "show -o terse -output verbose"});
}

TEST(Parser, AcceptsOrRefusesTheListOfDisplay) {
    expectOutcome(0, {"show -d all,verbs,targets,properties,associations",
                      "show -d properties=cim_x", "show -d properties=(a,b_c)",
                      "show -d associations=(a,b)", "show -d targets properties"});
    expectOutcome(248, {"show -d", "show -d -a"});
    expectOutcome(250, {"show -d a1", "show -d targets=cim_x", "show -d properties=a:b",
                        "show -d associations=(a,b_c)", "show -d verbs=x"});
    expectOutcome(251, {"cd -d all"});
    expectOutcome(252, {"show -d all,all", "show -d targets=sys,targets"});
}

TEST(Parser, AcceptsOrRefusesTheFormsOfATarget) {
    expectOutcome(0, {"delete sys*", "show sys*", "show =>a", "show a1=>b=>c1",
                      "set =>a=> sessionid=c", "create -help", "create -version", "create sys*",
                      "create sys* a=b", "create SESSION", "load -help", "dump -version /a1"});
    expectOutcome(242, {"create", "create name", "create a=b", "create -examine"});
    expectOutcome(245, {"dump", "dump /a1", "load a1/", "load -examine"});
    expectOutcome(246, {"delete admin", "cd name", "start name", "load -h name", "cd sys*",
                        "stop sys*", "delete =>a", "cd session", "cd a1/", "set =>a b=c",
                        "set sys* b=c", "create =>a"});
    expectOutcome(252, {"cd a1 b1", "show -l 2 sys*"});
}

TEST(Parser, AcceptsOrRefusesPropertiesAndSelectors) {
    expectOutcome(0, {"set a=b", "set prop=5", "set a=\"1.2.3\"", "set /a1 a=1 b=2",
                      "set /a1 a=\"x\"b=y", "set a[0]=x a[1]=y", "set a=x,y", "show a",
                      "show /a1 a b a==x", "show a[0]==1 a[1]==2", "show a ==1", "show a a"});
    expectOutcome(246, {"set a=1.2", "set a1=5"});
    expectOutcome(252, {"set", "set -help", "set /a1", "set a=1 a=2", "set a=1 A=2",
                        "set a[0]=x a[0]=y", "set a[0]=x,y", "set a = 5", "set a= 5", "set a",
                        "set a==b", "set a=", "set /a1 show=5", "show a==1 a==2", "show a== 1",
                        "show a=1", "show /a1 n=v", "show a==x,y"});
}

TEST(Parser, KeepsTheWholeLineAndTheVerbInLowerCase) {
    const ParsedLine line("  ShOw -ALL /Admin1\\Sys1");
    EXPECT_EQ(line.token._CommandLine, "  ShOw -ALL /Admin1\\Sys1");
    EXPECT_EQ(line.token._Verb, "show");
    EXPECT_EQ(line.token._Target, "/admin1\\sys1");
    EXPECT_EQ(ParsedLine("FOO bar").token._Verb, "foo");
    EXPECT_EQ(ParsedLine("show SESSION").token._Target, "SESSION");
    EXPECT_EQ(ParsedLine("show -l 2 -q /a1").token._Verb, "show");
}

TEST(Parser, KeepsTheTargetOfAnAssociationInThreeParts) {
    const ParsedLine full("show A1=>Hosted=>B2");
    EXPECT_EQ(full.token._Target, "a1");
    EXPECT_EQ(full.token._AssocClass, "hosted");
    EXPECT_EQ(full.token._Ref, "B2");
    const ParsedLine bare("show =>Hosted");
    EXPECT_EQ(bare.token._Target, "");
    EXPECT_EQ(bare.token._AssocClass, "hosted");
    EXPECT_EQ(bare.token._Ref, "");
    EXPECT_EQ(ParsedLine("show SESSION=>a").token._Target, "SESSION");
}

TEST(Parser, BuildsTheOptionTree) {
    const ParsedLine line(
        "show -Keep 5.30 -level ALL -x -o format=keyword,number=3-12,order=reverse,"
        "language=ENG,terse -d targets=(Sp,System),properties,verbs /a1");
    ASSERT_EQ(line.outcome(), 0);
    EXPECT_EQ(line.option("-keep"), "5.30");
    EXPECT_EQ(line.option("-level"), "all");
    EXPECT_EQ(line.option("-examine"), "<present>");
    EXPECT_EQ(line.option("-output"), "<present>");
    EXPECT_EQ(line.option("-output:format"), "keyword");
    EXPECT_EQ(line.option("-output:number:start"), "3");
    EXPECT_EQ(line.option("-output:number:end"), "12");
    EXPECT_EQ(line.option("-output:order"), "reverse");
    EXPECT_EQ(line.option("-output:language"), "eng");
    EXPECT_EQ(line.option("-output:terse"), "<present>");
    EXPECT_EQ(line.option("-output:verbose"), "<absent>");
    EXPECT_EQ(line.option("-display:targets"), "sp:system");
    EXPECT_EQ(line.option("-display:properties"), "");
    EXPECT_EQ(line.option("-display:verbs"), "<present>");
    EXPECT_EQ(line.token.getOptionNames(),
              (std::vector<std::string>{"-display", "-examine", "-keep", "-level", "-output"}));

    EXPECT_EQ(ParsedLine("show -o count=()").option("-output:count"), "");
    EXPECT_EQ(ParsedLine("load -s \"http://h/F\"").option("-source"), "http://h/F");
    EXPECT_TRUE(ParsedLine("show").token.getOptionNames().empty());
}

TEST(Parser, StoresPropertiesInTheirNormalForm) {
    const auto assigned = [](const std::string& properties) {
        return listed(ParsedLine("set " + properties).token._AssignProperties);
    };
    EXPECT_EQ(assigned("Name=Value b=\"x y\""), "name=Value b=x y");
    EXPECT_EQ(assigned("a[2]=x a[5]=y"), "a=x,2:y,5");
    EXPECT_EQ(assigned("a[1]=x b=1 a[0]=y"), "a=x,1:y,0 b=1");
    EXPECT_EQ(assigned("a=\"x,,y\""), "a=x,0:y,1");
    EXPECT_EQ(assigned("a=\"Hello, x\""), "a=Hello,0: x,1");
    EXPECT_EQ(assigned("a=\"x,\""), "a=x,");
    EXPECT_EQ(assigned("a=X,Y"), "a=x:y");
    EXPECT_EQ(assigned("a[1]=x a=y"), "a=x,1 a=y");
    EXPECT_EQ(assigned("a=\"\" a[1]=x b=\"\""), "a=x,1 b=");

    const ParsedLine line("show A b a[0]==1 a[1]==2 a");
    EXPECT_EQ(line.token.getPropertyNames(CLPToken::PROPERTY_NAME),
              (std::vector<std::string>{"a", "b"}));
    EXPECT_EQ(listed(line.token._FilterProperties), "a=1,0:2,1");
    EXPECT_EQ(line.token.getPropertyNames(CLPToken::FILTER_PROPERTY),
              std::vector<std::string>{"a"});
}

TEST(Parser, NeverRefusesHelp) {
    for (const char* line : {"help", "help -wait", "help -q", "help (", "help show,cd", "HELP -o x",
                             "help set show a.b"})
        EXPECT_EQ(ParsedLine(line).result, 0) << line;
    EXPECT_EQ(ParsedLine("help Show /A1  x=y ").token._Target, "Show:/A1:x=y");
    EXPECT_EQ(ParsedLine("help -help cd").token._Target, "cd");
    const ParsedLine failed("help -o format=text -q");
    EXPECT_EQ(failed.option("-output:format"), "text");
    EXPECT_EQ(failed.token._Target, "");
}

TEST(Parser, ParsesEveryLineAsIfItWereTheFirst) {
    for (const char* spoiler : {"show -o format", "show -d targets=", "set a=\"open", "help x",
                                "foo", "show -o number=1-2,begin", "set a[0]=1 a[0]=2", "show -l",
                                "cd a1 b1 c1", "show -o begin,count=1,terse", "help (", ""}) {
        if (*spoiler)
            ParsedLine{spoiler};
        EXPECT_EQ(ParsedLine("=").outcome(), 252) << spoiler;
        const ParsedLine line("show -o begin,count=5,terse /a1 n==v");
        EXPECT_EQ(line.outcome(), 0) << spoiler;
        EXPECT_EQ(line.token._Target, "/a1");
        EXPECT_EQ(line.option("-output:count"), "5");
        EXPECT_EQ(listed(line.token._FilterProperties), "n=v");
        EXPECT_EQ(ParsedLine("help cd").token._Target, "cd");
    }
}

TEST(Parser, TakesNulBytesAsPartOfTheLine) {
    EXPECT_EQ(ParsedLine(std::string("help \0x", 7)).result, 0);
    EXPECT_EQ(ParsedLine(std::string("show\0", 5)).outcome(), 252);
    EXPECT_EQ(ParsedLine(std::string("cd /\0a1", 8)).outcome(), 246);
    EXPECT_EQ(ParsedLine(std::string("show -all\0x", 11)).outcome(), 251);
}

TEST(Parser, TakesLinesOfAnyLength) {
    std::string line = "show";
    for (int i = 0; i < 20000; ++i)
        line += " a" + std::string(1, static_cast<char>('a' + i % 26));
    const ParsedLine parsed(line);
    EXPECT_EQ(parsed.outcome(), 0);
    EXPECT_EQ(parsed.token._PropertyNames.size(), 26u);
}

TEST(ParsedCommand, EndsTheProcessForWhatItsCallersMustNotAsk) {
    CLPToken token;
    std::string value;
    const auto wrong = static_cast<CLPToken::CLPPropertyType>(3);
    EXPECT_DEATH(token.getPropertyNames(wrong), "type==PROPERTY_NAME\\|\\|type==ASSIGN_PROPERTY");
    EXPECT_DEATH(token.getProperty("a", value, CLPToken::PROPERTY_NAME),
                 "type==ASSIGN_PROPERTY\\|\\|type==FILTER_PROPERTY");
    EXPECT_DEATH(token.getProperty("", value, CLPToken::ASSIGN_PROPERTY), "!name.empty\\(\\)");
    EXPECT_DEATH(token.hasOption(""), "!path.empty\\(\\)");
    velmora_clp::ProcessingError pe;
    EXPECT_DEATH(velmora_clp::CLPParser().parse("", &token, &pe),
                 "!line.empty\\(\\)&&token!=__null&&pe!=__null");
    token._Options.addNode({"option"});
    velmora_clp::CLPParser().parse("version", &token, &pe);
    EXPECT_DEATH(velmora_clp::CLPParser().parse("version", &token, &pe),
                 "y_token->_Verb.empty\\(\\)");
    token._Verb.clear();
    token._Target = "/a1";
    EXPECT_DEATH(velmora_clp::CLPParser().parse("cd /a1", &token, &pe),
                 "y_token->_Target.empty\\(\\)");
}

TEST(ParsedCommand, FindsPropertiesByTheirExactName) {
    const ParsedLine line("set /a1 name=x");
    std::string value = "untouched";
    EXPECT_FALSE(line.token.getProperty("Name", value, CLPToken::ASSIGN_PROPERTY));
    EXPECT_FALSE(line.token.getProperty("name", value, CLPToken::FILTER_PROPERTY));
    EXPECT_EQ(value, "untouched");
    EXPECT_TRUE(line.token.getProperty("name", value, CLPToken::ASSIGN_PROPERTY));
    EXPECT_EQ(value, "x");
}

} // namespace
