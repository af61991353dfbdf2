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
    std::string names(const std::string& returned) {
        server.returns(returned);
        return show(
            CimEnumeration(client->ft->enumInstanceNames(client.get(), name.get(), status.out()))
                .get());
    }
    CimInstance instance(const std::string& properties) {
        server.returns("<INSTANCE CLASSNAME=\"CIM_Other\">" + properties + "</INSTANCE>");
        return CimInstance(
            client->ft->getInstance(client.get(), name.get(), 0, nullptr, status.out()));
    }
    // Properties behind the key, which is always there.
    std::string properties(const std::string& xml) {
        const CimInstance got = instance(xml);
        if (!got)
            return "failed: " + status.message();
        const std::string all = show(got.get());
        return all.substr(all.find('\n') + 1);
    }
    std::string invoke(const std::string& returned, CMPIArgs* out = nullptr) {
        server.methodReturns(returned);
        return show(CimData(client->ft->invokeMethod(client.get(), name.get(), "Run", nullptr, out,
                                                     status.out()))
                        .get());
    }
};

TEST_F(Replies, WithNamesGivePathsWithoutNameSpace) {
    EXPECT_EQ(names(instanceName("A", "1") + "\n" + instanceName("B", "x y")),
              "A.K=\"1\"\nB.K=\"x y\"\n");
    server.returns(instanceName("A", "1"));
    const CimEnumeration list(
        client->ft->enumInstanceNames(client.get(), name.get(), status.out()));
    const CMPIData first = CMGetNext(list.get(), nullptr);
    EXPECT_EQ(CimString(CMGetNameSpace(first.value.ref, nullptr))->hdl, nullptr);
    EXPECT_EQ(first.type, CMPI_ref);
}

TEST_F(Replies, WithKeysKeepTheirTypesAndDecodeTheirText) {
    server.returns(
        "<INSTANCENAME CLASSNAME=\"C\">"
        "<KEYBINDING NAME=\"T\"><KEYVALUE VALUETYPE=\"string\"> a&lt;&amp;&quot;&#65;&#x42;"
        "&#228; </KEYVALUE></KEYBINDING>"
        "<KEYBINDING NAME=\"None\"><KEYVALUE VALUETYPE=\"string\" /></KEYBINDING>"
        "<KEYBINDING NAME=\"Empty\"><KEYVALUE></KEYVALUE></KEYBINDING>"
        "<KEYBINDING NAME=\"U\"><KEYVALUE VALUETYPE=\"numeric\">18446744073709551615"
        "</KEYVALUE></KEYBINDING>"
        "<KEYBINDING NAME=\"S\"><KEYVALUE VALUETYPE=\"numeric\" TYPE=\"uint8\">+7"
        "</KEYVALUE></KEYBINDING>"
        "<KEYBINDING NAME=\"M\"><KEYVALUE VALUETYPE=\"numeric\">-7</KEYVALUE></KEYBINDING>"
        "<KEYBINDING NAME=\"Hex\"><KEYVALUE VALUETYPE=\"numeric\">0x1F</KEYVALUE>"
        "</KEYBINDING>"
        "<KEYBINDING NAME=\"Real\"><KEYVALUE VALUETYPE=\"numeric\">1.5</KEYVALUE>"
        "</KEYBINDING>"
        "<KEYBINDING NAME=\"Yes\"><KEYVALUE VALUETYPE=\"boolean\">TRUE</KEYVALUE>"
        "</KEYBINDING>"
        "<KEYBINDING NAME=\"No\"><KEYVALUE VALUETYPE=\"boolean\">False</KEYVALUE>"
        "</KEYBINDING>"
        "<KEYBINDING NAME=\"yes\"><KEYVALUE>twice</KEYVALUE></KEYBINDING>"
        "</INSTANCENAME>");
    const CimPath path(client->ft->createInstance(
        client.get(), name.get(), CimInstance(native_new_CMPIInstance(name.get(), nullptr)).get(),
        status.out()));
    ASSERT_TRUE(path) << status.message();
    const auto key = [&path](const char* k) {
        return show(path->ft->getKey(path.get(), k, nullptr));
    };
    EXPECT_EQ(key("T"), "1600/0200 ' a<&\"AB\xc3\xa4 '");
    EXPECT_EQ(key("None"), "1600/0200 no text");
    EXPECT_EQ(key("Empty"), "1600/0200 ''");
    EXPECT_EQ(key("U"), "00b0/0200 18446744073709551615");
    EXPECT_EQ(key("S"), "00f0/0200 7");
    EXPECT_EQ(key("M"), "00f0/0200 -7");
    EXPECT_EQ(key("Hex"), "00b0/0200 0");
    EXPECT_EQ(key("Real"), "00b0/0200 1");
    EXPECT_EQ(key("Yes"), "0002/0200 true");
    EXPECT_EQ(key("No"), "0002/0200 false");
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
    const CimEnumeration list(
        client->ft->enumInstanceNames(client.get(), name.get(), status.out()));
    ASSERT_TRUE(list) << status.message();
    status = client->ft->deleteInstance(client.get(), CMGetNext(list.get(), nullptr).value.ref);
    EXPECT_NE(server.call(1).find(kept), std::string::npos) << server.call(1);
}

TEST_F(Replies, WithPathsKeepTheNameSpaceAndDropTheHost) {
    server.returns("<OBJECTPATH><INSTANCEPATH>" + location + instanceName("A", "1") +
                   "</INSTANCEPATH></OBJECTPATH><OBJECTPATH><CLASSPATH>" + location +
                   "<CLASSNAME NAME=\"B\"/></CLASSPATH></OBJECTPATH>");
    EXPECT_EQ(
        show(CimEnumeration(client->ft->associatorNames(client.get(), name.get(), nullptr, nullptr,
                                                        nullptr, nullptr, status.out()))
                 .get()),
        "root/zorm:A.K=\"1\"\nroot/zorm:B\n");
    server.returns("<CLASSNAME NAME=\"A\"/><CLASSNAME NAME=\"B\"/>");
    EXPECT_EQ(
        show(CimEnumeration(client->ft->enumClassNames(client.get(), name.get(), 0, status.out()))
                 .get()),
        "A\nB\n");
}

TEST_F(Replies, ThatReturnNothingAreEmptyListsOrDoneInBothForms) {
    for (const char* empty :
         {"<IMETHODRESPONSE NAME=\"X\"/>", "<IMETHODRESPONSE NAME=\"X\"></IMETHODRESPONSE>",
          "<IMETHODRESPONSE NAME=\"X\"><IRETURNVALUE/></IMETHODRESPONSE>",
          "<IMETHODRESPONSE NAME=\"X\"><IRETURNVALUE>\n</IRETURNVALUE>"
          "</IMETHODRESPONSE>"}) {
        for (int i = 0; i < 5; ++i)
            server.replyXml(replyMessage(empty));
        const CimEnumeration list(
            client->ft->referenceNames(client.get(), name.get(), nullptr, nullptr, status.out()));
        ASSERT_TRUE(list) << empty;
        EXPECT_TRUE(status.ok());
        EXPECT_FALSE(CMHasNext(list.get(), nullptr));
        EXPECT_EQ(CMGetArrayType(CMToArray(list.get(), nullptr), nullptr), CMPI_null);
        status = client->ft->deleteInstance(client.get(), name.get());
        EXPECT_TRUE(status.ok()) << empty;
        const CimInstance made(native_new_CMPIInstance(name.get(), nullptr));
        status = client->ft->setInstance(client.get(), name.get(), made.get(), 0, nullptr);
        EXPECT_TRUE(status.ok()) << empty;
        EXPECT_EQ(client->ft->createInstance(client.get(), name.get(), made.get(), status.out()),
                  nullptr);
        EXPECT_TRUE(status.ok()) << empty;
        EXPECT_FAILS(client->ft->getInstance(client.get(), name.get(), 0, nullptr, status.out()), 1,
                     "The reply holds no object");
    }
}

TEST_F(Replies, WithAnInstanceTakePathAndKeysFromTheRequest) {
    const CimInstance got = instance(property("name", "string", "<VALUE>y</VALUE>") +
                                     property("Caption", "string", "<VALUE>c</VALUE>"));
    ASSERT_TRUE(got) << status.message();
    EXPECT_EQ(show(got.get()), "Name=1600/0200 'y'\nCaption=1600/0000 'c'\n");
    EXPECT_EQ(show(CimPath(CMGetObjectPath(got.get(), nullptr)).get()),
              "root/cimv2:CIM_Thing.Name=\"y\"");
}

TEST_F(Replies, WithNumbersReadThemByTheirDeclaredType) {
    EXPECT_EQ(properties(property("A", "uint8", "<VALUE>255</VALUE>") +
                         property("B", "UINT32", "<VALUE> 4294967295\n</VALUE>") +
                         property("C", "sint8", "<VALUE>-128</VALUE>") +
                         property("D", "sint64", "<VALUE>-9223372036854775808</VALUE>") +
                         property("E", "uint16", "<VALUE>0x1F</VALUE>") +
                         property("F", "real32", "<VALUE>3.2500000e+00</VALUE>") +
                         property("G", "real64", "<VALUE>1.2345678000000000e+03</VALUE>") +
                         property("H", "sint16", "<VALUE>+12</VALUE>")),
              "A=0080/0000 255\nB=00a0/0000 4294967295\nC=00c0/0000 -128\n"
              "D=00f0/0000 -9223372036854775808\nE=0090/0000 31\nF=0008/0000 3.25\n"
              "G=000c/0000 1234.57\nH=00d0/0000 12\n");
}

TEST_F(Replies, WithNumbersThatCannotBeReadGiveNothingElseThanZero) {
    EXPECT_EQ(properties(property("A", "uint8", "<VALUE>256</VALUE>") +
                         property("B", "uint32", "<VALUE>-1</VALUE>") +
                         property("C", "uint32", "<VALUE>4294967296</VALUE>") +
                         property("D", "sint16", "<VALUE>12 apples</VALUE>") +
                         property("E", "real64", "<VALUE>one</VALUE>") +
                         property("F", "uint64", "<VALUE>99999999999999999999</VALUE>") +
                         property("G", "sint32", "<VALUE>+-1</VALUE>")),
              "A=0080/0000 0\nB=00a0/0000 0\nC=00a0/0000 0\nD=00d0/0000 0\nE=000c/0000 0\n"
              "F=00b0/0000 0\nG=00e0/0000 0\n");
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
    const CimInstance got = instance(property("B", "boolean", "<VALUE>TRUE</VALUE>") +
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
    const CimInstance got = instance(
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
    EXPECT_EQ(paths(client->ft->enumInstances(client.get(), name.get(), 0, nullptr, status.out())),
              "root/cimv2:A.K=\"1\" K=1600/0200 '1'\nP=0080/0000 3\n");
    server.returns("<VALUE.OBJECTWITHPATH><INSTANCEPATH>" + location + instanceName("A", "1") +
                   "</INSTANCEPATH>" + content + "</VALUE.OBJECTWITHPATH>");
    EXPECT_EQ(paths(client->ft->associators(client.get(), name.get(), nullptr, nullptr, nullptr,
                                            nullptr, 0, nullptr, status.out())),
              "root/zorm:A.K=\"1\" K=1600/0200 '1'\nP=0080/0000 3\n");
    server.returns("<VALUE.OBJECT>" + content + "</VALUE.OBJECT>");
    EXPECT_EQ(paths(client->ft->execQuery(client.get(), name.get(), "q", "WQL", status.out())),
              "root/cimv2:A K=1600/0000 '1'\nP=0080/0000 3\n");
}

TEST_F(Replies, WithQualifiersOnInstancesKeepThem) {
    const std::string quoted = "<QUALIFIER NAME=\"Q\" TYPE=\"string\"><VALUE>a &amp; b</VALUE>"
                               "</QUALIFIER>";
    const CimInstance got = instance(quoted + property("P", "uint8", quoted));
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
    const CimData reading(
        client->ft->getProperty(client.get(), name.get(), "Temperature", status.out()));
    EXPECT_EQ(show(reading.get()), "00f0/0000 -40");
    server.returns("");
    EXPECT_EQ(show(client->ft->getProperty(client.get(), name.get(), "Null", status.out())),
              "0000/0100 null");
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
        EXPECT_EQ(show(CimEnumeration(
                           client->ft->enumInstanceNames(client.get(), name.get(), status.out()))
                           .get()),
                  "A.K=\"1\"\n")
            << status.message();
    }
}

TEST_F(Replies, WithFortyThousandNamesAreReadQuickly) {
    std::string all;
    for (int i = 0; i < 40000; ++i)
        all += instanceName("CIM_LogEntry", std::to_string(i)) + "\n";
    server.returns(all);
    const auto begin = std::chrono::steady_clock::now();
    const CimEnumeration list(
        client->ft->enumInstanceNames(client.get(), name.get(), status.out()));
    const auto took = std::chrono::steady_clock::now() - begin;
    ASSERT_TRUE(list) << status.message();
    EXPECT_EQ(CMGetArrayCount(CMToArray(list.get(), nullptr), nullptr), 40000U);
    // Generous: instrumented builds on a busy machine take part in this.
    EXPECT_LT(took, std::chrono::seconds(5));
}

class ClassReplies : public Replies {
protected:
    ClassReplies() {
        server.returns(
            "<CLASS NAME=\"C\" SUPERCLASS=\"B\">"
            "<QUALIFIER NAME=\"Description\" TYPE=\"string\"><VALUE>Un &amp; "
            "known</VALUE></QUALIFIER>"
            "<PROPERTY NAME=\"P\" TYPE=\"uint16\"><QUALIFIER NAME=\"Key\" TYPE=\"boolean\">"
            "<VALUE>TRUE</VALUE></QUALIFIER><QUALIFIER NAME=\"Values\" "
            "TYPE=\"string\"><VALUE.ARRAY>"
            "<VALUE>a&lt;b</VALUE><VALUE/></VALUE.ARRAY></QUALIFIER>"
            "<QUALIFIER NAME=\"Bare\" TYPE=\"boolean\"/><VALUE>5</VALUE></PROPERTY>"
            "<PROPERTY.ARRAY NAME=\"A\" TYPE=\"string\"/>"
            "<PROPERTY.REFERENCE NAME=\"R\" REFERENCECLASS=\"C\"/>"
            "<METHOD NAME=\"M\" TYPE=\"uint32\">"
            "<QUALIFIER NAME=\"ValueMap\" "
            "TYPE=\"string\"><VALUE.ARRAY><VALUE>0</VALUE></VALUE.ARRAY>"
            "</QUALIFIER>"
            "<PARAMETER NAME=\"In\" TYPE=\"uint16\"><QUALIFIER NAME=\"IN\" TYPE=\"boolean\">"
            "<VALUE>TRUE</VALUE></QUALIFIER></PARAMETER>"
            "<PARAMETER.ARRAY NAME=\"Words\" TYPE=\"string\"/>"
            "<PARAMETER.REFERENCE NAME=\"Ref\" REFERENCECLASS=\"C\"/>"
            "<PARAMETER.REFARRAY NAME=\"Refs\" REFERENCECLASS=\"C\"/></METHOD>"
            "<METHOD NAME=\"V\"/></CLASS>");
        cls.reset(client->ft->getClass(client.get(), name.get(), CMPI_FLAG_IncludeQualifiers,
                                       nullptr, status.out()));
        if (cls)
            cls.reset(CMClone(cls.get(), nullptr));
    }
    CimClass cls;
};

TEST_F(ClassReplies, GiveTypesWithoutValuesAndQualifiersWithThem) {
    ASSERT_TRUE(cls) << status.message();
    const auto prop = [this](const char* p) {
        return show(cls->ft->getProperty(cls.get(), p, nullptr));
    };
    EXPECT_EQ(cimText(CimString(CMGetClassName(cls.get(), nullptr)).get()), "C");
    EXPECT_EQ(prop("p"), "0090/0100 null");
    EXPECT_EQ(prop("A"), "3600/0100 null");
    EXPECT_EQ(prop("R"), "1100/0100 null");
    EXPECT_EQ(cls->ft->getPropertyCount(cls.get(), nullptr), 3U);
    EXPECT_EQ(show(cls->ft->getQualifier(cls.get(), "description", nullptr)),
              "1600/0000 'Un & known'");
    const auto qualifier = [this](const char* q) {
        return show(cls->ft->getPropertyQualifier(cls.get(), "P", q, nullptr));
    };
    EXPECT_EQ(qualifier("KEY"), "0002/0000 true");
    EXPECT_EQ(qualifier("Values"), "3600/0000 [1600/0000 'a<b', 1600/0100 null]");
    EXPECT_EQ(qualifier("Bare"), "0002/0100 null");
    EXPECT_EQ(cls->ft->getPropertyQualifierCount(cls.get(), "P", nullptr), 3U);
    EXPECT_EQ(cls->ft->getPropertyQualifierCount(cls.get(), "A", nullptr), 0U);
}

TEST_F(ClassReplies, GiveMethodsWithTheirParameters) {
    ASSERT_TRUE(cls) << status.message();
    EXPECT_EQ(show(cls->ft->getMethod(cls.get(), "m", nullptr)), "00a0/0100 null");
    EXPECT_EQ(show(cls->ft->getMethod(cls.get(), "V", nullptr)), "0000/0100 null");
    EXPECT_EQ(cls->ft->getMethodCount(cls.get(), nullptr), 2U);
    EXPECT_EQ(show(cls->ft->getMethodQualifier(cls.get(), "M", "ValueMap", nullptr)),
              "3600/0000 [1600/0000 '0']");
    std::string parameters;
    for (unsigned i = 0; i < cls->ft->getMethodParameterCount(cls.get(), "M", nullptr); ++i) {
        CMPIString* named = nullptr;
        const CMPIData data = cls->ft->getMethodParameterAt(cls.get(), "M", i, &named, nullptr);
        char type[8];
        std::snprintf(type, sizeof type, "%04x", data.type);
        parameters += cimText(CimString(named).get()) + " " + type + "\n";
        EXPECT_EQ(data.state, CMPI_goodValue);
    }
    EXPECT_EQ(parameters, "In 0090\nWords 3600\nRef 1100\nRefs 3100\n");
}

TEST_F(ClassReplies, SayWhatIsMissingWithTheCodeOfEachList) {
    ASSERT_TRUE(cls) << status.message();
    CMPIConstClass* c = cls.get();
    const auto code = [this](const CMPIData& data) {
        EXPECT_EQ(show(data), "0000/0100 null");
        return static_cast<int>(status.rc());
    };
    EXPECT_EQ(code(c->ft->getProperty(c, "x", status.out())), 12);
    EXPECT_EQ(code(c->ft->getPropertyAt(c, 3, nullptr, status.out())), 12);
    EXPECT_EQ(code(c->ft->getQualifier(c, "x", status.out())), 1);
    EXPECT_EQ(code(c->ft->getQualifierAt(c, 1, nullptr, status.out())), 12);
    EXPECT_EQ(code(c->ft->getPropertyQualifier(c, "P", "x", status.out())), 1);
    EXPECT_EQ(code(c->ft->getPropertyQualifier(c, "x", "Key", status.out())), 12);
    EXPECT_EQ(code(c->ft->getMethod(c, "x", status.out())), 1);
    EXPECT_EQ(code(c->ft->getMethodAt(c, 2, nullptr, status.out())), 17);
    EXPECT_EQ(code(c->ft->getMethodParameter(c, "M", "x", status.out())), 1);
    EXPECT_EQ(code(c->ft->getMethodParameterAt(c, "M", 4, nullptr, status.out())), 6);
    EXPECT_EQ(code(c->ft->getMethodParameter(c, "x", "In", status.out())), 17);
    EXPECT_EQ(code(c->ft->getMethodQualifier(c, "x", "Q", status.out())), 17);
    EXPECT_EQ(c->ft->getMethodParameterCount(c, "x", status.out()), 0U);
    EXPECT_EQ(status.rc(), 17);
}

TEST_F(ClassReplies, InAListAreClonedWithTheList) {
    server.returns("<CLASS NAME=\"A\"/><CLASS NAME=\"B\"/>");
    CimEnumeration list(client->ft->enumClasses(client.get(), name.get(), 0, status.out()));
    ASSERT_TRUE(list) << status.message();
    list.reset(CMClone(list.get(), nullptr));
    std::string classes;
    while (CMHasNext(list.get(), nullptr)) {
        CMPIConstClass* c = CMGetNext(list.get(), nullptr).value.cls;
        classes += cimText(CimString(CMGetClassName(c, nullptr)).get());
    }
    EXPECT_EQ(classes, "AB");
}

} // namespace
