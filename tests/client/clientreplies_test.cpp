// What the CIM client makes of replies that are as they should be, in every form they may have.
#include "clientfixture.h"

#include <chrono>

using namespace velmora_clp;

namespace {

const std::string location = "<NAMESPACEPATH><HOST>vm</HOST><LOCALNAMESPACEPATH>"
                             "<NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"zorm\"/>"
                             "</LOCALNAMESPACEPATH></NAMESPACEPATH>";

std::string instanceName(const std::string& cls, const std::string& key) {
    return "<INSTANCENAME CLASSNAME=\"" + cls + "\"><KEYBINDING NAME=\"K\"><KEYVALUE>" + key +
           "</KEYVALUE></KEYBINDING></INSTANCENAME>";
}

std::string property(const std::string& name, const std::string& type, const std::string& value) {
    return "<PROPERTY NAME=\"" + name + "\" TYPE=\"" + type + "\">" + value + "</PROPERTY>";
}

class Replies : public WithServer {
protected:
    std::string namesIn(const std::string& returned) {
        server.returns(returned);
        return show(names().get());
    }
    CimInstance instanceOf(const std::string& properties) {
        server.returns("<INSTANCE CLASSNAME=\"CIM_Other\">" + properties + "</INSTANCE>");
        return instance();
    }
    // Properties behind the key, which is always there.
    std::string properties(const std::string& xml) {
        const CimInstance got = instanceOf(xml);
        if (!got)
            return "failed: " + status.message();
        const std::string all = show(got.get());
        return all.substr(all.find('\n') + 1);
    }
    std::string invoke(const std::string& returned, CMPIArgs* out = nullptr) {
        server.methodReturns(returned);
        return show(CimData(table().invokeMethod(c(), op(), "Run", nullptr, out, rc())).get());
    }
};

TEST_F(Replies, WithNamesGivePathsWithoutNameSpace) {
    EXPECT_EQ(namesIn(instanceName("A", "1") + "\n" + instanceName("B", "x y")),
              "A.K=\"1\"\nB.K=\"x y\"\n");
    server.returns(instanceName("A", "1"));
    const CimEnumeration list = names();
    const CMPIData first = CMGetNext(list.get(), nullptr);
    EXPECT_EQ(CimString(CMGetNameSpace(first.value.ref, nullptr))->hdl, nullptr);
    EXPECT_EQ(first.type, CMPI_ref);
}

TEST_F(Replies, WithKeysKeepTheirTypesAndDecodeTheirText) {
    const struct {
        const char* name;
        const char* attributes;
        const char* text;
        const char* shown;
    } keys[] = {
        {"T", "VALUETYPE=\"string\"", " a&lt;&amp;&quot;&#65;&#x42;&#228; ",
         "1600/0200 ' a<&\"AB\xc3\xa4 '"},
        {"Empty", "", "", "1600/0200 ''"},
        {"U", "VALUETYPE=\"numeric\"", "18446744073709551615", "00b0/0200 18446744073709551615"},
        {"S", "VALUETYPE=\"numeric\" TYPE=\"uint8\"", "+7", "00f0/0200 7"},
        {"M", "VALUETYPE=\"numeric\"", "-7", "00f0/0200 -7"},
        {"Hex", "VALUETYPE=\"numeric\"", "0x1F", "00b0/0200 0"},
        {"Real", "VALUETYPE=\"numeric\"", "1.5", "00b0/0200 1"},
        {"Yes", "VALUETYPE=\"boolean\"", "TRUE", "0002/0200 true"},
        {"No", "VALUETYPE=\"boolean\"", "False", "0002/0200 false"}};
    std::string bindings = "<KEYBINDING NAME=\"None\"><KEYVALUE VALUETYPE=\"string\" />"
                           "</KEYBINDING>";
    for (const auto& key : keys)
        bindings += std::string("<KEYBINDING NAME=\"") + key.name + "\"><KEYVALUE " +
                    key.attributes + ">" + key.text + "</KEYVALUE></KEYBINDING>";
    server.returns("<INSTANCENAME CLASSNAME=\"C\">" + bindings +
                   "<KEYBINDING NAME=\"yes\"><KEYVALUE>twice</KEYVALUE></KEYBINDING>"
                   "</INSTANCENAME>");
    const CimPath path(table().createInstance(
        c(), op(), CimInstance(native_new_CMPIInstance(op(), nullptr)).get(), rc()));
    ASSERT_TRUE(path) << status.message();
    for (const auto& key : keys)
        EXPECT_EQ(show(path->ft->getKey(path.get(), key.name, nullptr)), key.shown);
    EXPECT_EQ(show(path->ft->getKey(path.get(), "None", nullptr)), "1600/0200 no text");
    EXPECT_EQ(path->ft->getKeyCount(path.get(), nullptr), 10U);
}

TEST_F(Replies, SendKeysBackAsTheyCame) {
    const std::string kept = "<INSTANCENAME CLASSNAME=\"C\"><KEYBINDING NAME=\"A\">"
                             "<KEYVALUE VALUETYPE=\"string\">&lt;&amp;&gt; \n&#13;</KEYVALUE>"
                             "</KEYBINDING><KEYBINDING NAME=\"R\"><VALUE.REFERENCE>"
                             "<INSTANCENAME CLASSNAME=\"D\"><KEYVALUE VALUETYPE=\"numeric\">8"
                             "</KEYVALUE></INSTANCENAME></VALUE.REFERENCE></KEYBINDING>"
                             "</INSTANCENAME>";
    server.returns(kept);
    const CimEnumeration list = names();
    ASSERT_TRUE(list) << status.message();
    status = table().deleteInstance(c(), CMGetNext(list.get(), nullptr).value.ref);
    EXPECT_NE(server.call(1).find(kept), std::string::npos) << server.call(1);
}

TEST_F(Replies, WithPathsKeepTheNameSpaceAndDropTheHost) {
    server.returns("<OBJECTPATH><INSTANCEPATH>" + location + instanceName("A", "1") +
                   "</INSTANCEPATH></OBJECTPATH><OBJECTPATH><CLASSPATH>" + location +
                   "<CLASSNAME NAME=\"B\"/></CLASSPATH></OBJECTPATH>");
    EXPECT_EQ(show(CimEnumeration(
                       table().associatorNames(c(), op(), nullptr, nullptr, nullptr, nullptr, rc()))
                       .get()),
              "root/zorm:A.K=\"1\"\nroot/zorm:B\n");
    server.returns("<CLASSNAME NAME=\"A\"/><CLASSNAME NAME=\"B\"/>");
    EXPECT_EQ(show(CimEnumeration(table().enumClassNames(c(), op(), 0, rc())).get()), "A\nB\n");
}

TEST_F(Replies, ThatReturnNothingAreEmptyListsOrDoneInBothForms) {
    for (const char* empty :
         {"<IMETHODRESPONSE NAME=\"X\"/>", "<IMETHODRESPONSE NAME=\"X\"></IMETHODRESPONSE>",
          "<IMETHODRESPONSE NAME=\"X\"><IRETURNVALUE/></IMETHODRESPONSE>",
          "<IMETHODRESPONSE NAME=\"X\"><IRETURNVALUE>\n</IRETURNVALUE>"
          "</IMETHODRESPONSE>"}) {
        for (int i = 0; i < 5; ++i)
            server.replyXml(replyMessage(empty));
        const CimEnumeration list(table().referenceNames(c(), op(), nullptr, nullptr, rc()));
        ASSERT_TRUE(list) << empty;
        EXPECT_TRUE(status.ok());
        EXPECT_FALSE(CMHasNext(list.get(), nullptr));
        EXPECT_EQ(CMGetArrayType(CMToArray(list.get(), nullptr), nullptr), CMPI_null);
        status = table().deleteInstance(c(), op());
        EXPECT_TRUE(status.ok()) << empty;
        const CimInstance made(native_new_CMPIInstance(op(), nullptr));
        status = table().setInstance(c(), op(), made.get(), 0, nullptr);
        EXPECT_TRUE(status.ok()) << empty;
        EXPECT_EQ(table().createInstance(c(), op(), made.get(), rc()), nullptr);
        EXPECT_TRUE(status.ok()) << empty;
        EXPECT_FAILS(instance(), 1, "The reply holds no object");
    }
}

TEST_F(Replies, WithAnInstanceTakePathAndKeysFromTheRequest) {
    const CimInstance got = instanceOf(property("name", "string", "<VALUE>y</VALUE>") +
                                       property("Caption", "string", "<VALUE>c</VALUE>"));
    ASSERT_TRUE(got) << status.message();
    EXPECT_EQ(show(got.get()), "Name=1600/0200 'y'\nCaption=1600/0000 'c'\n");
    EXPECT_EQ(show(CimPath(CMGetObjectPath(got.get(), nullptr)).get()),
              "root/cimv2:CIM_Thing.Name=\"y\"");
}

TEST_F(Replies, WithNumbersReadThemByTheirTypeAndGiveZeroForWhatIsNone) {
    const struct {
        const char* type;
        const char* text;
        const char* shown;
    } cases[] = {{"uint8", "255", "0080/0000 255"},
                 {"UINT32", " 4294967295\n", "00a0/0000 4294967295"},
                 {"sint8", "-128", "00c0/0000 -128"},
                 {"sint64", "-9223372036854775808", "00f0/0000 -9223372036854775808"},
                 {"uint16", "0x1F", "0090/0000 31"},
                 {"real32", "3.2500000e+00", "0008/0000 3.25"},
                 {"real64", "1.2345678000000000e+03", "000c/0000 1234.57"},
                 {"sint16", "+12", "00d0/0000 12"},
                 {"uint8", "256", "0080/0000 0"},
                 {"uint32", "-1", "00a0/0000 0"},
                 {"uint32", "4294967296", "00a0/0000 0"},
                 {"sint16", "12 apples", "00d0/0000 0"},
                 {"real64", "one", "000c/0000 0"},
                 {"uint64", "99999999999999999999", "00b0/0000 0"},
                 {"sint32", "+-1", "00e0/0000 0"}};
    std::string xml, expected;
    for (const auto& c : cases) {
        const std::string named = "P" + std::to_string(&c - cases);
        xml += property(named, c.type, "<VALUE>" + std::string(c.text) + "</VALUE>");
        expected += named + "=" + c.shown + "\n";
    }
    EXPECT_EQ(properties(xml), expected);
}

TEST_F(Replies, WithoutAValueAreNullAndWithAnEmptyOneEmptyText) {
    EXPECT_EQ(
        properties(property("A", "string", "") + property("B", "string", "<VALUE/>") +
                   property("C", "string", "<VALUE ></VALUE>") + property("D", "uint16", "\n") +
                   property("E", "uint16", "<VALUE/>") +
                   property("F", "boolean", "<VALUE></VALUE>") +
                   property("G", "strange", "<VALUE>x</VALUE>") +
                   "<PROPERTY.ARRAY NAME=\"H\" TYPE=\"uint8\"/>"
                   "<PROPERTY.ARRAY NAME=\"I\" TYPE=\"string\"><VALUE.ARRAY/></PROPERTY.ARRAY>"
                   "<PROPERTY.REFERENCE NAME=\"J\" REFERENCECLASS=\"C\"/>"),
        "A=1600/0100 null\nB=1600/0100 null\nC=1600/0000 ''\nD=0090/0100 null\n"
        "E=0090/0100 null\nF=0002/0100 null\nG=0000/0100 null\nH=2080/0100 null\n"
        "I=3600/0100 null\nJ=1100/0100 null\n");
}

TEST_F(Replies, WithTextKeepEveryByteOfIt) {
    EXPECT_EQ(
        properties(property("Blank", "string", "<VALUE>  </VALUE>") +
                   property("Lines", "string", "<VALUE>\n one\n two \xc3\xa4\xc2\xa0</VALUE>") +
                   property("Mixed", "string",
                            "<VALUE>a<![CDATA[<b>&amp;]]>&#x20AC;<!-- no -->c</VALUE>") +
                   property("Markup", "string", "<VALUE>&lt;VALUE/&gt;</VALUE>") +
                   property("Plain", "string", "<VALUE><![CDATA[<VALUE/> stays]]></VALUE>")),
        "Blank=1600/0000 '  '\nLines=1600/0000 '\n one\n two \xc3\xa4\xc2\xa0'\n"
        "Mixed=1600/0000 'a<b>&amp;\xe2\x82\xac"
        "c'\nMarkup=1600/0000 '<VALUE/>'\n"
        "Plain=1600/0000 '<VALUE/> stays'\n");
}

TEST_F(Replies, WithBooleansCharactersAndDatesReadThem) {
    EXPECT_EQ(properties(property("A", "boolean", "<VALUE>FALSE</VALUE>") +
                         property("B", "boolean", "<VALUE>anything</VALUE>") +
                         property("C", "char16", "<VALUE>A</VALUE>") +
                         property("D", "char16", "<VALUE>&#8364;</VALUE>") +
                         property("E", "datetime", "<VALUE>20240131123456.654321+060</VALUE>")),
              "A=0002/0000 false\nB=0002/0000 true\nC=0003/0000 65\nD=0003/0000 8364\n"
              "E=1800/0000 20240131123456.654321+060\n");
    const CimInstance got = instanceOf(property("B", "boolean", "<VALUE>TRUE</VALUE>") +
                                       property("D", "datetime", "<VALUE>tomorrow</VALUE>"));
    EXPECT_EQ(CMGetProperty(got.get(), "B", nullptr).value.boolean, 1);
    EXPECT_EQ(CMGetProperty(got.get(), "D", nullptr).value.dateTime, nullptr);
    EXPECT_EQ(CMGetProperty(got.get(), "D", nullptr).state, CMPI_goodValue);
}

TEST_F(Replies, WithArraysKeepTheirOrderAndTheirNullElements) {
    EXPECT_EQ(properties("<PROPERTY.ARRAY NAME=\"A\" TYPE=\"string\"><VALUE.ARRAY><VALUE>x</VALUE>"
                         "<VALUE/><VALUE.NULL/><VALUE></VALUE></VALUE.ARRAY></PROPERTY.ARRAY>"
                         "<PROPERTY.ARRAY NAME=\"B\" TYPE=\"boolean\"><VALUE.ARRAY>"
                         "<VALUE>TRUE</VALUE><VALUE>FALSE</VALUE></VALUE.ARRAY></PROPERTY.ARRAY>"),
              "A=3600/0000 [1600/0000 'x', 1600/0100 null, 1600/0100 null, 1600/0000 '']\n"
              "B=2002/0000 [0002/0000 true, 0002/0000 false]\n");
}

TEST_F(Replies, WithReferencesTakeTheNameSpaceThatTheyName) {
    const auto reference = [](const char* named, const std::string& path) {
        return std::string("<PROPERTY.REFERENCE NAME=\"") + named + "\"><VALUE.REFERENCE>" + path +
               "</VALUE.REFERENCE></PROPERTY.REFERENCE>";
    };
    const std::string local = "<LOCALNAMESPACEPATH><NAMESPACE NAME=\"a\"/></LOCALNAMESPACEPATH>";
    const CimInstance got = instanceOf(
        reference("A", "<INSTANCEPATH>" + location + instanceName("C", "1") + "</INSTANCEPATH>") +
        reference("B",
                  "<LOCALINSTANCEPATH>" + local + instanceName("C", "2") + "</LOCALINSTANCEPATH>") +
        reference("D", instanceName("C", "3")) + reference("E", "<CLASSNAME NAME=\"C\"/>"));
    ASSERT_TRUE(got) << status.message();
    EXPECT_EQ(show(got.get()), "Name=1600/0200 'x'\nA=1100/0000 root/zorm:C.K=\"1\"\n"
                               "B=1100/0000 a:C.K=\"2\"\nD=1100/0000 C.K=\"3\"\nE=1100/0000 C\n");
    CMPIObjectPath* bare = CMGetProperty(got.get(), "D", nullptr).value.ref;
    EXPECT_STREQ(CMGetCharPtr(CimString(CMGetNameSpace(bare, nullptr))), "");
}

TEST_F(Replies, WithInstancesInCdataGiveInstancesAndAsTextGiveText) {
    const std::string inner =
        "<INSTANCE CLASSNAME=\"I\">" + property("P", "uint8", "<VALUE>3</VALUE>") + "</INSTANCE>";
    EXPECT_EQ(
        properties(property("A", "string", "<VALUE><![CDATA[" + inner + "]]></VALUE>") +
                   property("B", "string", "<VALUE>&lt;INSTANCE CLASSNAME='I'/&gt;</VALUE>") +
                   property("C", "string", "<VALUE><![CDATA[<INSTANCE broken]]></VALUE>") +
                   "<PROPERTY.ARRAY NAME=\"D\" TYPE=\"string\"><VALUE.ARRAY><VALUE><![CDATA[" +
                   inner + "]]></VALUE><VALUE/></VALUE.ARRAY></PROPERTY.ARRAY>"),
        "A=1000/0000 {P=0080/0000 3\n}\nB=1600/0000 '<INSTANCE CLASSNAME='I'/>'\n"
        "C=1600/0000 '<INSTANCE broken'\nD=3000/0000 [1000/0000 {P=0080/0000 3\n}, "
        "1000/0100 null]\n");
}

TEST_F(Replies, WithManyInstancesGiveEachItsOwnPath) {
    const std::string content = "<INSTANCE CLASSNAME=\"A\">" +
                                property("K", "string", "<VALUE>1</VALUE>") +
                                property("P", "uint8", "<VALUE>3</VALUE>") + "</INSTANCE>";
    const auto paths = [](CMPIEnumeration* given) {
        const CimEnumeration list(given);
        std::string out;
        while (list && CMHasNext(list.get(), nullptr)) {
            CMPIInstance* instance = CMGetNext(list.get(), nullptr).value.inst;
            out += show(CimPath(CMGetObjectPath(instance, nullptr)).get()) + " " + show(instance);
        }
        return out;
    };
    server.returns("<VALUE.NAMEDINSTANCE>" + instanceName("A", "1") + content +
                   "</VALUE.NAMEDINSTANCE>");
    EXPECT_EQ(paths(table().enumInstances(c(), op(), 0, nullptr, rc())),
              "root/cimv2:A.K=\"1\" K=1600/0200 '1'\nP=0080/0000 3\n");
    server.returns("<VALUE.OBJECTWITHPATH><INSTANCEPATH>" + location + instanceName("A", "1") +
                   "</INSTANCEPATH>" + content + "</VALUE.OBJECTWITHPATH>");
    EXPECT_EQ(
        paths(table().associators(c(), op(), nullptr, nullptr, nullptr, nullptr, 0, nullptr, rc())),
        "root/zorm:A.K=\"1\" K=1600/0200 '1'\nP=0080/0000 3\n");
    server.returns("<VALUE.OBJECT>" + content + "</VALUE.OBJECT>");
    EXPECT_EQ(paths(table().execQuery(c(), op(), "q", "WQL", rc())),
              "root/cimv2:A K=1600/0000 '1'\nP=0080/0000 3\n");
}

TEST_F(Replies, WithQualifiersOnInstancesKeepThem) {
    const std::string quoted = "<QUALIFIER NAME=\"Q\" TYPE=\"string\"><VALUE>a &amp; b</VALUE>"
                               "</QUALIFIER>";
    const CimInstance got = instanceOf(quoted + property("P", "uint8", quoted));
    ASSERT_TRUE(got) << status.message();
    EXPECT_EQ(show(got->ft->getQualifier(got.get(), "q", nullptr)), "1600/0000 'a & b'");
    EXPECT_EQ(show(got->ft->getPropertyQualifier(got.get(), "p", "Q", nullptr)),
              "1600/0000 'a & b'");
    EXPECT_EQ(got->ft->getPropertyQualifierCount(got.get(), "P", nullptr), 1U);
    EXPECT_EQ(got->ft->getPropertyQualifierCount(got.get(), "Name", nullptr), 0U);
}

TEST_F(Replies, OfMethodsGiveReturnValueAndOutputArguments) {
    const CimArgs out(native_new_CMPIArgs(nullptr));
    CMPIValue value{};
    out->ft->addArg(out.get(), "Kept", &value, CMPI_uint8);
    EXPECT_EQ(
        invoke("<RETURNVALUE PARAMTYPE=\"uint32\"><VALUE>4096</VALUE></RETURNVALUE>"
               "<PARAMVALUE NAME=\"Job\" PARAMTYPE=\"reference\"><VALUE.REFERENCE>" +
                   instanceName("J", "1") +
                   "</VALUE.REFERENCE></PARAMVALUE>"
                   "<PARAMVALUE NAME=\"kept\" PARAMTYPE=\"uint8\"><VALUE>9</VALUE></PARAMVALUE>"
                   "<PARAMVALUE NAME=\"Codes\" PARAMTYPE=\"uint16\"><VALUE.ARRAY>"
                   "<VALUE>1</VALUE><VALUE>2</VALUE></VALUE.ARRAY></PARAMVALUE>"
                   "<PARAMVALUE NAME=\"Null\" PARAMTYPE=\"uint16\"/>"
                   "<PARAMVALUE NAME=\"Refs\"><VALUE.REFARRAY><VALUE.REFERENCE>" +
                   instanceName("J", "2") +
                   "</VALUE.REFERENCE></VALUE.REFARRAY></PARAMVALUE>"
                   "<PARAMVALUE NAME=\"Text\" PARAMTYPE=\"string\"><VALUE>a&amp;b</VALUE>"
                   "</PARAMVALUE>",
               out.get()),
        "00a0/0000 4096");
    EXPECT_EQ(show(out.get()), "Kept=0080/0000 0\nJob=1100/0000 J.K=\"1\"\n"
                               "Codes=2090/0000 [0090/0000 1, 0090/0000 2]\nNull=0090/0100 null\n"
                               "Refs=3100/0000 [1100/0000 J.K=\"2\"]\nText=1600/0000 'a&b'\n");
}

TEST_F(Replies, OfMethodsWithoutATypeAreGuessedFromTheirText) {
    const auto guessed = [this](const std::string& text) {
        return invoke("<RETURNVALUE><VALUE>" + text + "</VALUE></RETURNVALUE>");
    };
    EXPECT_EQ(guessed("42"), "00b0/0000 42");
    EXPECT_EQ(guessed("-42"), "00f0/0000 -42");
    EXPECT_EQ(guessed("True"), "0002/0000 true");
    EXPECT_EQ(guessed("4.2"), "1600/0000 '4.2'");
    EXPECT_EQ(guessed("-"), "1600/0000 '-'");
    const CimArgs out(native_new_CMPIArgs(nullptr));
    invoke("<PARAMVALUE NAME=\"A\"><VALUE>7</VALUE></PARAMVALUE>"
           "<PARAMVALUE NAME=\"B\"><VALUE.ARRAY><VALUE>7</VALUE><VALUE>-7</VALUE></VALUE.ARRAY>"
           "</PARAMVALUE>"
           "<PARAMVALUE NAME=\"C\"><VALUE.ARRAY><VALUE>7</VALUE><VALUE>x</VALUE></VALUE.ARRAY>"
           "</PARAMVALUE>"
           "<PARAMVALUE NAME=\"D\"/>",
           out.get());
    EXPECT_EQ(show(out.get()), "A=00b0/0000 7\nB=20f0/0000 [00f0/0000 7, 00f0/0000 -7]\n"
                               "C=3600/0000 [1600/0000 '7', 1600/0000 'x']\nD=0000/0100 null\n");
}

TEST_F(Replies, OfMethodsThatReturnNothingAreNoFailure) {
    EXPECT_EQ(invoke(""), "0000/8000 null");
    EXPECT_TRUE(status.ok());
    EXPECT_EQ(invoke("<RETURNVALUE PARAMTYPE=\"uint32\"/>"), "00a0/0100 null");
    EXPECT_EQ(invoke("<RETURNVALUE PARAMTYPE=\"string\"><VALUE.ARRAY><VALUE>a</VALUE></VALUE.ARRAY>"
                     "</RETURNVALUE>"),
              "3600/0000 [1600/0000 'a']");
}

TEST_F(Replies, WithOnePropertyGuessItsType) {
    server.returns("<VALUE>-40</VALUE>");
    const CimData reading(table().getProperty(c(), op(), "Temperature", rc()));
    EXPECT_EQ(show(reading.get()), "00f0/0000 -40");
    server.returns("");
    EXPECT_EQ(show(table().getProperty(c(), op(), "Null", rc())), "0000/0100 null");
    EXPECT_TRUE(status.ok());
}

TEST_F(Replies, MayHaveWhatOtherServersWriteAroundThem) {
    const std::string response = "<IMETHODRESPONSE NAME=\"X\"><IRETURNVALUE>" +
                                 instanceName("A", "1") +
                                 "</IRETURNVALUE>"
                                 "<PARAMVALUE NAME=\"EndOfSequence\"/></IMETHODRESPONSE>";
    const std::string message = "<CIM xml:lang=\"en\" CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">"
                                "<MESSAGE PROTOCOLVERSION=\"1.0\" ID=\"1\"><SIMPLERSP>" +
                                response + "</SIMPLERSP></MESSAGE></CIM>";
    for (const std::string& xml :
         {message, "<!DOCTYPE CIM SYSTEM \"cim.dtd\" [<!ENTITY e \"x\">]>" + message,
          "\xef\xbb\xbf<?xml version='1.0'?><!-- hello -->" + message + "\n<!-- bye -->"}) {
        server.replyXml(xml);
        EXPECT_EQ(show(names().get()), "A.K=\"1\"\n") << status.message();
    }
}

TEST_F(Replies, WithFortyThousandNamesAreReadQuickly) {
    std::string all;
    for (int i = 0; i < 40000; ++i)
        all += instanceName("CIM_LogEntry", std::to_string(i)) + "\n";
    server.returns(all);
    const auto begin = std::chrono::steady_clock::now();
    const CimEnumeration list = names();
    const auto took = std::chrono::steady_clock::now() - begin;
    ASSERT_TRUE(list) << status.message();
    EXPECT_EQ(CMGetArrayCount(CMToArray(list.get(), nullptr), nullptr), 40000U);
    // Generous: instrumented builds on a busy machine take part in this.
    EXPECT_LT(took, std::chrono::seconds(5));
}

} // namespace
