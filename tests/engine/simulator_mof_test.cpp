// The simulator's MOF reader: what a model may say, and how it is told what is wrong with it.
#include "simulator/mofloader.h"
#include "tests/support/run_directory.h"

#include <gtest/gtest.h>

using namespace velclp_sim;

namespace {

void load(Repository& repository, const std::string& text) {
    MofLoader loader(repository, "root/zorm");
    loader.addText(text, "t.mof");
    loader.load();
}

std::string failure(const std::string& text) {
    Repository repository;
    try {
        load(repository, text);
    } catch (const MofError& error) {
        return error.what();
    }
    return "no error";
}

std::string valueOf(const Repository& repository, const std::string& path, const char* property) {
    const InstancePtr instance = repository.find(ObjectPath::fromText(path));
    const Value& value = instance->get(property);
    const CimType type = instance->cls().property(property)->type;
    if (!value.isArray()) {
        return value.isNull() ? "NULL" : scalarToText(value, type);
    }
    std::string text;
    for (const Value& element : value.toArray()) {
        text += "<" + (element.isNull() ? "NULL" : scalarToText(element, type)) + ">";
    }
    return text;
}

TEST(MofLiterals, AllNotationsOfNumbersTextsAndArraysHaveTheirValues) {
    Repository repository;
    load(repository, R"mof(
// a comment
class T { [Key] string K; /* another
   one */ uint64 Big; sint64 Small; uint8 Hex; uint8 Bin; uint16 Oct; real64 R; real32 F;
   boolean B; char16 C; datetime D; string Text; string Nothing = "default"; uint8 List[];
   string Words[]; boolean Flags[]; };
INSTANCE OF t {
   k = "a" " " "b";
   Big = 18446744073709551615; Small = -9223372036854775808;
   Hex = 0xfF; Bin = 101B; Oct = 0755; R = -1.5e+3; F = .100000006e4;
   B = TRUE; C = 'x'; D = "20240131123456.654321+060";
   Text = "tab\tnew\nquote\"back\\ \x41\x00e9 \x20AC";
   Nothing = null; List = { 1, 0x2, 3 }; Words = { }; Flags = { true, FALSE };
};
)mof");
    const auto value = [&](const char* name) {
        return valueOf(repository, "root/zorm:T.K=\"a b\"", name);
    };
    EXPECT_EQ(value("Big"), "18446744073709551615");
    EXPECT_EQ(value("Small"), "-9223372036854775808");
    EXPECT_EQ(value("Hex"), "255");
    EXPECT_EQ(value("Bin"), "5");
    EXPECT_EQ(value("Oct"), "493");
    EXPECT_EQ(value("R"), "-1.5000000000000000e+03");
    EXPECT_EQ(value("F"), "1.00000006e+03");
    EXPECT_EQ(value("B"), "TRUE");
    EXPECT_EQ(value("C"), "x");
    EXPECT_EQ(value("D"), "20240131123456.654321+060");
    EXPECT_EQ(value("Text"), "tab\tnew\nquote\"back\\ A\xC3\xA9 \xE2\x82\xAC");
    EXPECT_EQ(value("Nothing"), "NULL");
    EXPECT_EQ(value("List"), "<1><2><3>");
    EXPECT_EQ(value("Words"), "");
    EXPECT_EQ(value("Flags"), "<TRUE><FALSE>");
}

TEST(MofClasses, SubclassesInheritOverrideAndKeepTheirOrigins) {
    Repository repository;
    load(repository, R"mof(
Qualifier Color : string = "blue", Scope(class, property), Flavor(ToSubclass, Translatable);
Qualifier Local : boolean = false, Scope(class), Flavor(Restricted);
[Abstract, Local, Color] class Base { [Key] string Name; [Color("red")] uint16 State = 5;
   uint32 Start([In] uint16 How, [In(false), Out] Base REF Job[]); };
class Derived : base { [Description("own"), Write] uint16 state = 7; string Extra; };
)mof");
    const Class& cls = repository.requireClass("root/zorm", "DERIVED");
    ASSERT_EQ(cls.properties.size(), 3u);
    EXPECT_EQ(cls.name, "Derived");
    EXPECT_TRUE(cls.isA("base"));
    EXPECT_FALSE(cls.isAbstract());
    EXPECT_EQ(findQualifier(cls.qualifiers, "Local"), nullptr);
    EXPECT_EQ(findQualifier(cls.qualifiers, "color")->value.toString(), "blue");

    const Property& state = cls.properties[1];
    EXPECT_EQ(state.name, "State");
    EXPECT_EQ(state.origin, "Base");
    EXPECT_FALSE(state.propagated);
    EXPECT_EQ(state.defaultValue.toUnsigned(), 7u);
    EXPECT_EQ(findQualifier(state.qualifiers, "Color")->value.toString(), "red");
    EXPECT_TRUE(findQualifier(state.qualifiers, "Color")->propagated);
    EXPECT_FALSE(findQualifier(state.qualifiers, "Write")->propagated);
    EXPECT_TRUE(cls.properties[0].key);
    EXPECT_TRUE(cls.properties[0].propagated);
    EXPECT_EQ(cls.properties[2].origin, "Derived");

    const Method& start = *cls.method("start");
    EXPECT_EQ(start.origin, "Base");
    EXPECT_TRUE(start.parameters[0].in && !start.parameters[0].out);
    EXPECT_TRUE(!start.parameters[1].in && start.parameters[1].out);
    EXPECT_TRUE(start.parameters[1].isArray);
}

TEST(MofInstances, AliasesMayComeLaterAndReferencesMayBeTexts) {
    Repository repository;
    load(repository, R"mof(
class N { [Key] string Id; };
[Association] class L { [Key] N REF From; [Key] N REF To; };
instance of L { From = $Second; To = $First; };
instance of N as $First { Id = "1"; };
instance of N as $Second { Id = "2"; };
instance of L { From = "N.Id=\"1\""; To = "root/zorm:n.ID=\"2\""; };
)mof");
    const auto links = repository.links(ObjectPath::fromText("root/zorm:N.Id=\"2\""));
    ASSERT_EQ(links.size(), 2u);
    EXPECT_EQ(links[0].association->get("To").toPath()->toText(), "root/zorm:N.Id=\"1\"");
    EXPECT_EQ(links[1].association->path().localText(),
              R"(L.From="root/zorm:N.Id=\"1\"",To="root/zorm:N.Id=\"2\"")");
}

TEST(MofErrors, NameFileLineAndColumn) {
    EXPECT_EQ(failure("class A { string 5; };"), "t.mof:1:18: expected a name, found '5'");
    EXPECT_EQ(failure("class A {\n  uint99 B;\n};"), "t.mof:2:10: expected 'REF', found 'B'");
    EXPECT_EQ(failure("class A { string B }"), "t.mof:1:20: expected ';', found '}'");
    EXPECT_EQ(failure("class A : B { };"), "t.mof:1:7: unknown superclass B");
    EXPECT_EQ(failure("class A { B REF C; };"), "t.mof:1:17: reference to unknown class B");
    EXPECT_EQ(failure("[Nope] class A { };"), "t.mof:1:2: unknown qualifier Nope");
    EXPECT_EQ(failure("[Key] class A { };"), "t.mof:1:2: qualifier Key is not meant for a class");
    EXPECT_EQ(failure("class A { [Key] string K; };\nclass B : A { [Key(false)] string K; };"),
              "t.mof:2:16: qualifier Key cannot be overridden");
    EXPECT_EQ(failure("class A { };\n\nclass a { };"), "t.mof:3:7: CIM_ERR_ALREADY_EXISTS: a");
    EXPECT_EQ(failure("class A { uint8 B = 256; };"),
              "t.mof:1:21: CIM_ERR_TYPE_MISMATCH: B is uint8");
    EXPECT_EQ(failure("class A { string B = { \"x\" }; };"), "t.mof:1:22: B is no array");
    EXPECT_EQ(failure("class A { datetime B = \"today\"; };"),
              "t.mof:1:24: CIM_ERR_TYPE_MISMATCH: B is datetime");
    EXPECT_EQ(failure("class A { string B = \"open\n\"; };"),
              "t.mof:1:22: text without a closing quote");
    EXPECT_EQ(failure("class A { string B = \"\\q\"; };"), "t.mof:1:23: unknown escape in a text");
    EXPECT_EQ(failure("class A { uint64 B = 18446744073709551616; };"),
              "t.mof:1:22: '18446744073709551616' is no number of up to 64 bits");
    EXPECT_EQ(failure("/* open"), "t.mof:1:1: comment without an end");
    EXPECT_EQ(failure("class A { [Key] string K; };\ninstance of A { K = \"1\"; X = 1; };"),
              "t.mof:2:26: A has no property X");
    EXPECT_EQ(failure("class A { [Key] string K; };\ninstance of A { };"),
              "t.mof:2:1: CIM_ERR_INVALID_PARAMETER: key K has no value");
    EXPECT_EQ(failure("class A { [Key] string K; A REF R; };\n"
                      "instance of A { K = \"1\"; R = $None; };"),
              "t.mof:2:30: unknown alias $None");
    EXPECT_EQ(failure("class A { [Key] A REF R; };\ninstance of A as $X { R = $X; };"),
              "t.mof:2:27: keys refer to each other in a circle");
}

TEST(MofErrors, LeaveNoInstanceOfATextBehind) {
    Repository repository;
    load(repository, "class A { [Key] string K; };");
    EXPECT_THROW(load(repository, "instance of A { K = \"1\"; };\ninstance of A { K = \"1\"; };"),
                 MofError);
    EXPECT_TRUE(repository.instances("root/zorm", "A").empty());
}

class MofFiles : public testing::Test {
protected:
    RunDirectory folder_;
};

TEST_F(MofFiles, OfAFolderAreLoadedByNameButForThoseThatAreIncluded) {
    folder_.write("a-types.mof", "class A { [Key] string K; };");
    folder_.write("b-all.mof",
                  "#pragma include(\"a-types.mof\")\n#pragma locale(\"en_US\")\n"
                  "instance of A { K = \"zorm\"; };\n#pragma namespace(\"root/other\")\n"
                  "#pragma include(\"a-types.mof\")\ninstance of A { K = \"other\"; };");
    folder_.write("c-more.mof", "instance of A { K = \"zorm2\"; };");
    folder_.write("readme.txt", "not MOF");
    Repository repository;
    MofLoader loader(repository, "root/zorm");
    loader.addPath(folder_.path());
    loader.load();
    EXPECT_EQ(repository.instances("root/zorm", "A").size(), 2u);
    EXPECT_EQ(repository.instances("root/other", "A").size(), 1u);
}

TEST_F(MofFiles, ThatIncludeEachOtherOrAreMissingAreRefused) {
    folder_.write("a.mof", "#pragma include(\"b.mof\")");
    folder_.write("b.mof", "#pragma include(\"none.mof\")");
    Repository repository;
    MofLoader missing(repository, "root/zorm");
    EXPECT_THROW(missing.addPath(folder_.file("a.mof")), MofError);
    folder_.write("b.mof", "#pragma include(\"a.mof\")");
    MofLoader circle(repository, "root/zorm");
    circle.addPath(folder_.file("a.mof"));
    EXPECT_THROW(circle.load(), MofError);
    EXPECT_THROW(MofLoader(repository, "x").addPath(folder_.file("zzz.mof")), std::runtime_error);
}

} // namespace
