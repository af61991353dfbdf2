#include <gtest/gtest.h>

#include "parsed_line.h"

namespace {

struct Outcome {
    const char* line;
    int code; // 0 for a line that is accepted
};

template<std::size_t N>
void expectOutcomes(const Outcome (&lines)[N]) {
    for (const Outcome& expected : lines)
        EXPECT_EQ(ParsedLine(expected.line).outcome(), expected.code) << expected.line;
}

TEST(Parser, AcceptsOrRefusesVerbsAndWhatFollowsThem) {
    const Outcome lines[] = {
        {"foo", 253},          {"foo -x /a1", 253},  {"123", 252},
        {"   ", 252},          {"-all", 252},        {"show1", 246},
        {"SHOW", 0},           {" show", 0},         {"version", 0},
        {"exit", 0},           {"version /a1", 252}, {"exit SESSION", 252},
        {"version name", 252}, {"show show", 252},   {"cd", 0},
        {"cd SESSION", 0},     {"show \"x\"", 252},  {"start", 0},
    };
    expectOutcomes(lines);
}

TEST(Parser, AcceptsOrRefusesOptionsAndTheirArguments) {
    const Outcome lines[] = {
        {"set -x", 252},
        {"set -q", 251},
        {"show -q", 251},
        {"show -level=5", 251},
        {"exit -wait", 251},
        {"load -force", 247},
        {"version -keep 5", 247},
        {"show -a -a", 252},
        {"show -a -all", 252},
        {"show -x -h -v -w -f -a", 0},
        {"show -all /admin1", 0},
        {"show /admin1 -all", 252},
        {"cd /a1 -x", 252},
        {"show -l", 248},
        {"show -l 1x", 250},
        {"show -l 0", 250},
        {"show -l -a", 248},
        {"show -l 2 -l", 252},
        {"show -l 2 -l 2", 252},
        {"show -l all", 0},
        {"cd -k", 248},
        {"cd -keep 1.30", 0},
        {"cd -keep -1", 248},
        {"cd -keep x", 250},
        {"load -source", 248},
        {"load -source nouri", 250},
        {"load -source -x", 248},
        {"load -source http://h/f", 0},
        {"dump -destination \"file:///x\"", 0},
    };
    expectOutcomes(lines);
}

TEST(Parser, AcceptsOrRefusesTheListOfOutput) {
    const Outcome lines[] = {
        {"show -o", 248},
        {"show -o ", 248},
        {"show -o -a", 248},
        {"show -o\"x", 250},
        {"show -o foo", 250},
        {"show -o format=csv", 250},
        {"show -o format", 250},
        {"show -o format=text,", 250},
        {"show -o ,format=text", 250},
        {"show -o format=text=x", 250},
        {"show -o terse\"", 250},
        {"show -o 1-5", 250},
        {"show -o number=1-5 -a", 0},
        {"show -o number=5-1", 250},
        {"show -o number=123456-1", 250},
        {"show -o format=text,format=text", 252},
        {"show -o order=reverse,order=default", 252},
        {"show -o language=eng,language=eng", 252},
        {"show -o number=1-5,count=2", 252},
        {"show -o count=2,number=1-5", 252},
        {"show -o begin,number=1-5", 252},
        {"show -o number=1-5,end", 252},
        {"show -o begin,end", 252},
        {"show -o begin,count=2", 0},
        {"show -o terse,verbose", 252},
        {"show -o error,error", 252},
        {"show -o terse -output verbose", 252},
        {"show -o FORMAT=CLPXML,Verbose /a1", 0},
        {"version -o format=text ", 0},
        {"show -output:count 3", 251},
    };
    expectOutcomes(lines);
}

TEST(Parser, AcceptsOrRefusesTheListOfDisplay) {
    const Outcome lines[] = {
        {"show -d", 248},
        {"show -d -a", 248},
        {"show -d a1", 250},
        {"show -d all,all", 252},
        {"show -d all,verbs,targets,properties,associations", 0},
        {"show -d targets=sys,targets", 252},
        {"show -d targets=cim_x", 250},
        {"show -d properties=cim_x", 0},
        {"show -d properties=(a,b_c)", 0},
        {"show -d properties=a:b", 250},
        {"show -d associations=(a,b)", 0},
        {"show -d associations=(a,b_c)", 250},
        {"show -d verbs=x", 250},
        {"show -d targets properties", 0},
        {"cd -d all", 251},
    };
    expectOutcomes(lines);
}

TEST(Parser, AcceptsOrRefusesTheFormsOfATarget) {
    const Outcome lines[] = {
        {"delete admin", 246},
        {"cd name", 246},
        {"start name", 246},
        {"load -h name", 246},
        {"cd sys*", 246},
        {"stop sys*", 246},
        {"delete sys*", 0},
        {"delete =>a", 246},
        {"cd session", 246},
        {"cd a1 b1", 252},
        {"cd a1/", 246},
        {"show -l 2 sys*", 252},
        {"show sys*", 0},
        {"show =>a", 0},
        {"show a1=>b=>c1", 0},
        {"set =>a=> sessionid=c", 0},
        {"set =>a b=c", 246},
        {"set sys* b=c", 246},
        {"create", 242},
        {"create name", 242},
        {"create a=b", 242},
        {"create -help", 0},
        {"create -version", 0},
        {"create -examine", 242},
        {"create sys*", 0},
        {"create sys* a=b", 0},
        {"create =>a", 246},
        {"create SESSION", 0},
        {"dump", 245},
        {"dump /a1", 245},
        {"load a1/", 245},
        {"load -help", 0},
        {"dump -version /a1", 0},
        {"load -examine", 245},
    };
    expectOutcomes(lines);
}

TEST(Parser, AcceptsOrRefusesPropertiesAndSelectors) {
    const Outcome lines[] = {
        {"set", 252},
        {"set -help", 252},
        {"set /a1", 252},
        {"set a=b", 0},
        {"set prop=5", 0},
        {"set a=\"1.2.3\"", 0},
        {"set a=1.2", 246},
        {"set a1=5", 246},
        {"set /a1 a=1 b=2", 0},
        {"set /a1 a=\"x\"b=y", 0},
        {"set a=1 a=2", 252},
        {"set a=1 A=2", 252},
        {"set a[0]=x a[1]=y", 0},
        {"set a[0]=x a[0]=y", 252},
        {"set a[0]=x,y", 252},
        {"set a=x,y", 0},
        {"set a = 5", 252},
        {"set a= 5", 252},
        {"set a", 252},
        {"set a==b", 252},
        {"set a=", 252},
        {"set /a1 show=5", 252},
        {"show a", 0},
        {"show /a1 a b a==x", 0},
        {"show a==1 a==2", 252},
        {"show a[0]==1 a[1]==2", 0},
        {"show a ==1", 0},
        {"show a== 1", 252},
        {"show a=1", 252},
        {"show /a1 n=v", 252},
        {"show a==x,y", 252},
        {"show a a", 0},
    };
    expectOutcomes(lines);
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
