// What the CIM client sends, byte for byte.
#include "clientfixture.h"

using namespace velmora_clp;

namespace {

const std::string nameSpacePath = "<LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/>"
                                  "<NAMESPACE NAME=\"cimv2\"/></LOCALNAMESPACEPATH>";
const std::string thingName = "<INSTANCENAME CLASSNAME=\"CIM_Thing\"><KEYBINDING NAME=\"Name\">"
                              "<KEYVALUE VALUETYPE=\"string\">x</KEYVALUE></KEYBINDING>"
                              "</INSTANCENAME>";

std::string intrinsic(const std::string& operation, const std::string& parameters) {
    return "<IMETHODCALL NAME=\"" + operation + "\">" + nameSpacePath + parameters +
           "</IMETHODCALL>";
}

std::string parameter(const std::string& name, const std::string& content) {
    return "<IPARAMVALUE NAME=\"" + name + "\">" + content + "</IPARAMVALUE>";
}

std::string flag(const std::string& name, bool set) {
    return parameter(name, set ? "<VALUE>TRUE</VALUE>" : "<VALUE>FALSE</VALUE>");
}

std::string unset(std::initializer_list<const char*> names) {
    std::string all;
    for (const char* name : names)
        all += flag(name, false);
    return all;
}

std::string className(const std::string& parameterName, const std::string& cls) {
    return parameter(parameterName, "<CLASSNAME NAME=\"" + cls + "\"/>");
}

std::string text(const std::string& name, const std::string& value) {
    return parameter(name, "<VALUE>" + value + "</VALUE>");
}

const std::string ofThing = className("ClassName", "CIM_Thing");
const std::string instanceName = parameter("InstanceName", thingName);
const std::string objectName = parameter("ObjectName", thingName);

// Every call fails for want of a reply; what counts is what was sent.
class Requests : public WithServer {
protected:
    // The next request is this call.
    void expectSent(const std::string& operation, const std::string& parameters) {
        EXPECT_EQ(server.call(sent++), intrinsic(operation, parameters));
    }

    std::size_t sent = 0;
    char first[5] = "Name";
    char second[8] = "Caption";
    char* properties[3] = {first, second, nullptr};
    const std::string propertyList =
        parameter("PropertyList", "<VALUE.ARRAY><VALUE>Name</VALUE><VALUE>Caption</VALUE>"
                                  "</VALUE.ARRAY>");
};

TEST_F(Requests, ArePostedWithTheHeadersOfCimXmlAndNoOthers) {
    table().enumInstanceNames(c(), op(), rc());
    EXPECT_EQ(
        server.request(),
        "POST /cimom HTTP/1.1\r\n"
        "Host: 127.0.0.1:" +
            server.port() +
            "\r\n"
            "Content-type: application/xml; charset=\"utf-8\"\r\n"
            "CIMProtocolVersion: 1.0\r\n"
            "CIMOperation: MethodCall\r\n"
            "CIMMethod: EnumerateInstanceNames\r\n"
            "CIMObject: root%2Fcimv2\r\n"
            "Content-Length: 377\r\n"
            "\r\n"
            "<?xml version=\"1.0\" encoding=\"utf-8\"?><CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\">"
            "<MESSAGE ID=\"4711\" PROTOCOLVERSION=\"1.0\"><SIMPLEREQ>" +
            intrinsic("EnumerateInstanceNames", ofThing) + "</SIMPLEREQ></MESSAGE></CIM>");
}

TEST_F(Requests, CarryTheUserWithAnEmptyPasswordAsWell) {
    client.reset(cmciConnect("127.0.0.1", nullptr, server.port().c_str(), "tok", nullptr, rc()));
    status = table().deleteInstance(c(), op());
    EXPECT_NE(server.request().find("\r\nAuthorization: Basic dG9rOg==\r\nContent-type:"),
              std::string::npos)
        << server.request();
    client.reset(cmciConnect("127.0.0.1", nullptr, server.port().c_str(), "u", "p:w", rc()));
    status = table().deleteInstance(c(), op());
    EXPECT_NE(server.request(1).find("\r\nAuthorization: Basic dTpwOnc=\r\n"), std::string::npos);
    client.reset(cmciConnect("127.0.0.1", nullptr, server.port().c_str(), nullptr, "pw", rc()));
    status = table().deleteInstance(c(), op());
    EXPECT_EQ(server.request(2).find("Authorization"), std::string::npos);
}

TEST_F(Requests, OfClassesSendEveryFlagAndThePropertyListWhenThereIsOne) {
    table().getClass(c(), op(), 0, nullptr, rc());
    expectSent("GetClass",
               unset({"LocalOnly", "IncludeClassOrigin", "IncludeQualifiers"}) + ofThing);
    table().getClass(
        c(), op(), CMPI_FLAG_LocalOnly | CMPI_FLAG_IncludeQualifiers | CMPI_FLAG_IncludeClassOrigin,
        properties, rc());
    expectSent("GetClass", flag("LocalOnly", true) + flag("IncludeClassOrigin", true) +
                               flag("IncludeQualifiers", true) + propertyList + ofThing);
    table().enumClassNames(c(), op(), CMPI_FLAG_DeepInheritance, rc());
    expectSent("EnumerateClassNames", ofThing + flag("DeepInheritance", true));
    table().enumClasses(c(), newPath("root/cimv2", "").get(), 0, rc());
    expectSent("EnumerateClasses",
               unset({"DeepInheritance", "LocalOnly", "IncludeQualifiers", "IncludeClassOrigin"}));
}

TEST_F(Requests, OfInstancesNameTheInstanceLast) {
    table().getInstance(c(), op(), CMPI_FLAG_IncludeQualifiers, properties, rc());
    expectSent("GetInstance", unset({"LocalOnly", "IncludeClassOrigin"}) +
                                  flag("IncludeQualifiers", true) + propertyList + instanceName);
    table().enumInstances(c(), op(), CMPI_FLAG_LocalOnly, nullptr, rc());
    expectSent("EnumerateInstances", ofThing + flag("DeepInheritance", false) +
                                         flag("LocalOnly", true) +
                                         unset({"IncludeQualifiers", "IncludeClassOrigin"}));
    status = table().deleteInstance(c(), op());
    expectSent("DeleteInstance", instanceName);
    table().enumInstanceNames(c(), newPath("root/cimv2", nullptr).get(), rc());
    expectSent("EnumerateInstanceNames", "");
}

TEST_F(Requests, OfAssociationsLeaveOutWhatIsNull) {
    table().associatorNames(c(), op(), "A", "R", "role", "other", rc());
    expectSent("AssociatorNames", objectName + className("AssocClass", "A") +
                                      className("ResultClass", "R") + text("Role", "role") +
                                      text("ResultRole", "other"));
    table().associatorNames(c(), op(), nullptr, nullptr, nullptr, nullptr, rc());
    expectSent("AssociatorNames", objectName);
    table().referenceNames(c(), op(), "R", "role", rc());
    expectSent("ReferenceNames", objectName + className("ResultClass", "R") + text("Role", "role"));
    table().associators(c(), op(), nullptr, "R", nullptr, nullptr, 0, nullptr, rc());
    expectSent("Associators", objectName + className("ResultClass", "R") +
                                  unset({"IncludeClassOrigin", "IncludeQualifiers"}));
    table().references(c(), op(), nullptr, "role", 0, properties, rc());
    expectSent("References", objectName + text("Role", "role") +
                                 unset({"IncludeClassOrigin", "IncludeQualifiers"}) + propertyList);
}

TEST_F(Requests, OfSinglePropertiesAndQueriesCarryTheirText) {
    CMPIValue value{};
    value.uint16 = 2;
    status = table().setProperty(c(), op(), "EnabledState", &value, CMPI_uint16);
    expectSent("SetProperty",
               text("PropertyName", "EnabledState") + text("NewValue", "2") + instanceName);
    table().getProperty(c(), op(), "A&B", rc());
    expectSent("GetProperty", text("PropertyName", "A&amp;B") + instanceName);
    table().execQuery(c(), op(), "select * from C where a < 1", "WQL", rc());
    expectSent("ExecQuery",
               text("QueryLanguage", "WQL") + text("Query", "select * from C where a &lt; 1"));
}

TEST_F(Requests, EscapeKeysInTheBodyAndSendNumbersAndReferencesAsSuch) {
    name = newPath("root//cimv2/", "CIM_\"Thing\n\"");
    addTextKey(name.get(), "K<1>", "a <b> & \"c'\r\n\t\xc3\xa4");
    CMPIValue value{};
    value.sint32 = -5;
    name->ft->addKey(op(), "N", &value, CMPI_sint32);
    value.real64 = 0.1;
    name->ft->addKey(op(), "R", &value, CMPI_real64);
    value.boolean = 9;
    name->ft->addKey(op(), "B", &value, CMPI_boolean);
    const CimPath there = thing();
    value.ref = there.get();
    name->ft->addKey(op(), "Located", &value, CMPI_ref);
    there->ft->setNameSpace(there.get(), "");
    name->ft->addKey(op(), "Bare", &value, CMPI_ref);
    status = table().deleteInstance(c(), op());
    expectSent("DeleteInstance",
               parameter("InstanceName",
                         "<INSTANCENAME CLASSNAME=\"CIM_&quot;Thing&#10;&quot;\">"
                         "<KEYBINDING NAME=\"K&lt;1&gt;\"><KEYVALUE VALUETYPE=\"string\">"
                         "a &lt;b&gt; &amp; &quot;c&apos;&#13;\n\t\xc3\xa4</KEYVALUE></KEYBINDING>"
                         "<KEYBINDING NAME=\"N\"><KEYVALUE VALUETYPE=\"numeric\">-5</KEYVALUE>"
                         "</KEYBINDING>"
                         "<KEYBINDING NAME=\"R\"><KEYVALUE VALUETYPE=\"numeric\">0.1</KEYVALUE>"
                         "</KEYBINDING>"
                         "<KEYBINDING NAME=\"B\"><KEYVALUE VALUETYPE=\"boolean\">true</KEYVALUE>"
                         "</KEYBINDING>"
                         "<KEYBINDING NAME=\"Located\"><VALUE.REFERENCE><INSTANCEPATH>"
                         "<NAMESPACEPATH><HOST>localhost</HOST>" +
                             nameSpacePath + "</NAMESPACEPATH>" + thingName +
                             "</INSTANCEPATH></VALUE.REFERENCE></KEYBINDING>"
                             "<KEYBINDING NAME=\"Bare\"><VALUE.REFERENCE>" +
                             thingName + "</VALUE.REFERENCE></KEYBINDING></INSTANCENAME>"));
}

TEST_F(Requests, WithTextThatXmlCannotCarryFailBeforeAnythingIsSent) {
    const Outcome refused{4, "A name or value holds a character that cannot be sent"};
    for (const char* bad : {"\x01", "bell\x07", "\x1b[31m", "broken \xc3", "\xff", "\xed\xa0\x80",
                            "\xc0\xaf", "\xef\xbf\xbf"}) {
        name = newPath("root/cimv2", "CIM_Thing");
        addTextKey(name.get(), "Name", bad);
        EXPECT_FALSE(table().getInstance(c(), op(), 0, nullptr, rc()));
        EXPECT_EQ(outcome(status), refused) << bad;
        EXPECT_FALSE(table().execQuery(c(), op(), bad, "WQL", rc()));
        EXPECT_EQ(outcome(status), refused) << bad;
    }
    EXPECT_EQ(server.requestCount(), 0U);
}

TEST_F(Requests, OfMethodsNameTheInstanceInTheHeaderAndNothingInAKeyEndsTheHeader) {
    name = newPath("root/cimv2", "CIM_Thing");
    addTextKey(name.get(), "Name", "x\r\nX-Evil: 1\",\xc3\xa4 %");
    CMPIValue value{};
    value.uint32 = 5;
    name->ft->addKey(op(), "Num", &value, CMPI_uint32);
    table().invokeMethod(c(), op(), "Do\r\nIt", nullptr, nullptr, rc());
    const std::string head = server.request().substr(0, server.request().find("\r\n\r\n"));
    EXPECT_NE(head.find("\r\nCIMMethod: Do%0D%0AIt\r\n"
                        "CIMObject: root%2Fcimv2%3ACIM_Thing.Name%3D\"x%0D%0AX-Evil%3A%201%22%2C"
                        "%C3%A4%20%25\",Num%3D5\r\nContent-Length:"),
              std::string::npos)
        << head;
}

TEST_F(Requests, OfMethodsWithLongKeysAreSentWhole) {
    const std::string longKey(5000, 'k');
    name = newPath("root/cimv2", "CIM_Thing");
    addTextKey(name.get(), "Name", longKey.c_str());
    server.methodReturns("<RETURNVALUE PARAMTYPE=\"uint32\"><VALUE>0</VALUE></RETURNVALUE>");
    const CimData result(table().invokeMethod(c(), op(), "Run", nullptr, nullptr, rc()));
    EXPECT_TRUE(result.hasValue());
    EXPECT_NE(server.request().find(".Name%3D\"" + longKey + "\"\r\n"), std::string::npos);
    EXPECT_NE(server.call().find(">" + longKey + "<"), std::string::npos);
}

TEST_F(Requests, OfMethodsWithoutKeysGoToTheClassAndWithoutNameSpaceHaveNoObjectHeader) {
    table().invokeMethod(c(), newPath("root/cimv2", "CIM_Thing").get(), "Run", nullptr, nullptr,
                         rc());
    EXPECT_EQ(server.call(0), "<METHODCALL NAME=\"Run\"><LOCALCLASSPATH>" + nameSpacePath +
                                  "<CLASSNAME NAME=\"CIM_Thing\"/></LOCALCLASSPATH></METHODCALL>");
    EXPECT_NE(server.request(0).find("CIMObject: root%2Fcimv2%3ACIM_Thing\r\n"), std::string::npos);
    table().invokeMethod(c(), newPath("", "CIM_Thing").get(), "Run", nullptr, nullptr, rc());
    EXPECT_EQ(server.request(1).find("CIMObject"), std::string::npos);
}

class Arguments : public Requests {
protected:
    template<typename Member, typename Value>
    void add(const char* argument, CMPIType type, Member member, Value value) {
        CMPIValue made{};
        made.*member = value;
        ASSERT_EQ(in->ft->addArg(in.get(), argument, &made, type).rc, CMPI_RC_OK);
    }
    void invoke() { CimData(table().invokeMethod(c(), op(), "Run", in.get(), nullptr, rc())); }
    static std::string call(const std::string& arguments) {
        return "<METHODCALL NAME=\"Run\"><LOCALINSTANCEPATH>" + nameSpacePath + thingName +
               "</LOCALINSTANCEPATH>" + arguments + "</METHODCALL>";
    }
    static CimArray words(const char* one) {
        CimArray array(native_new_CMPIArray(2, CMPI_string, nullptr));
        CMPIValue value{};
        value.chars = const_cast<char*>(one);
        array->ft->setElementAt(array.get(), 0, &value, CMPI_chars);
        return array;
    }
    CimArgs in{native_new_CMPIArgs(nullptr)};
};

TEST_F(Arguments, OfSimpleTypesAreSentInOrderWithTheirType) {
    const CimDateTime date(native_new_CMPIDateTime_fromChars("00000000000100.000000:000", nullptr));
    add("Small", CMPI_uint8, &CMPIValue::uint8, 255);
    add("Wide", CMPI_uint32, &CMPIValue::uint32, 4294967295U);
    add("Minus", CMPI_sint64, &CMPIValue::sint64, -9);
    add("Flag", CMPI_boolean, &CMPIValue::boolean, 14);
    add("Grade", CMPI_char16, &CMPIValue::char16, 0x20ac);
    add("Exact", CMPI_real64, &CMPIValue::real64, 1.0 / 3);
    add("Short", CMPI_real32, &CMPIValue::real32, 1.1e10f);
    add("When", CMPI_dateTime, &CMPIValue::dateTime, date.get());
    in->ft->addArg(in.get(), "Text", chars("b<o>b"), CMPI_chars);
    invoke();
    const auto simple = [](const char* argument, const char* type, const char* value) {
        return std::string("<PARAMVALUE NAME=\"") + argument + "\" PARAMTYPE=\"" + type +
               "\"><VALUE>" + value + "</VALUE></PARAMVALUE>";
    };
    EXPECT_EQ(server.call(),
              call(simple("Small", "uint8", "255") + simple("Wide", "uint32", "4294967295") +
                   simple("Minus", "sint64", "-9") + simple("Flag", "boolean", "true") +
                   simple("Grade", "char16", "\xe2\x82\xac") +
                   simple("Exact", "real64", "0.3333333333333333") +
                   simple("Short", "real32", "1.1e+10") +
                   simple("When", "datetime", "00000000000100.000000:000") +
                   simple("Text", "string", "b&lt;o&gt;b")));
}

TEST_F(Arguments, OfArraysAndReferencesHaveTheirOwnElements) {
    const CimArray text = words("two & more");
    const CimArray numbers(native_new_CMPIArray(1, CMPI_uint16, nullptr));
    const CimArray paths(native_new_CMPIArray(1, CMPI_ref, nullptr));
    const CimPath bare = thing();
    bare->ft->setNameSpace(bare.get(), nullptr);
    CMPIValue value{};
    value.ref = bare.get();
    paths->ft->setElementAt(paths.get(), 0, &value, CMPI_ref);
    add("Words", CMPI_stringA, &CMPIValue::array, text.get());
    add("Numbers", CMPI_uint16A, &CMPIValue::array, numbers.get());
    add("Paths", CMPI_refA, &CMPIValue::array, paths.get());
    add("Path", CMPI_ref, &CMPIValue::ref, op());
    invoke();
    EXPECT_EQ(server.call(),
              call("<PARAMVALUE NAME=\"Words\" PARAMTYPE=\"string\"><VALUE.ARRAY>"
                   "<VALUE>two &amp; more</VALUE><VALUE>NULL</VALUE></VALUE.ARRAY></PARAMVALUE>"
                   "<PARAMVALUE NAME=\"Numbers\" PARAMTYPE=\"uint16\"><VALUE.ARRAY>"
                   "<VALUE>0</VALUE></VALUE.ARRAY></PARAMVALUE>"
                   "<PARAMVALUE NAME=\"Paths\" PARAMTYPE=\"reference\"><VALUE.REFARRAY>"
                   "<VALUE.REFERENCE>" +
                   thingName +
                   "</VALUE.REFERENCE></VALUE.REFARRAY></PARAMVALUE>"
                   "<PARAMVALUE NAME=\"Path\" PARAMTYPE=\"reference\"><VALUE.REFERENCE>"
                   "<LOCALINSTANCEPATH>" +
                   nameSpacePath + thingName +
                   "</LOCALINSTANCEPATH></VALUE.REFERENCE></PARAMVALUE>"));
}

TEST_F(Arguments, ThatAreNullOrEmptyAreLeftOut) {
    const CimArray empty(native_new_CMPIArray(0, CMPI_string, nullptr));
    add("Empty", CMPI_stringA, &CMPIValue::array, empty.get());
    add("Missing", CMPI_string, &CMPIValue::string, nullptr);
    add("NoPath", CMPI_ref, &CMPIValue::ref, nullptr);
    invoke();
    EXPECT_EQ(server.call(), call(""));
}

TEST_F(Arguments, OfATypeThatCannotBeSentFailTheCallBeforeAnythingIsSent) {
    in->ft->addArg(in.get(), "Nothing", nullptr, CMPI_null);
    const CMPIData result = table().invokeMethod(c(), op(), "Run", in.get(), nullptr, rc());
    EXPECT_EQ(show(result), "0000/0500 null");
    EXPECT_EQ(outcome(status), (Outcome{1, "Unsupported IN argument type"}));
    EXPECT_EQ(server.requestCount(), 0U);
}

TEST_F(Arguments, ThatAreInstancesTravelInCdataAlsoOneInsideAnother) {
    const CimInstance inner(native_new_CMPIInstance(newPath(nullptr, "CIM_In").get(), nullptr));
    inner->ft->setProperty(inner.get(), "P", chars("]]>"), CMPI_chars);
    CMPIValue value{};
    value.inst = inner.get();
    const CimInstance outer(native_new_CMPIInstance(newPath(nullptr, "CIM_Out").get(), nullptr));
    outer->ft->setProperty(outer.get(), "E", &value, CMPI_instance);
    add("Outer", CMPI_instance, &CMPIValue::inst, outer.get());
    invoke();
    EXPECT_EQ(server.call(),
              call("<PARAMVALUE NAME=\"Outer\"><VALUE><![CDATA[<INSTANCE CLASSNAME=\"CIM_Out\">"
                   "<PROPERTY NAME=\"E\" TYPE=\"string\" EmbeddedObject=\"instance\"><VALUE>"
                   "<![CDATA[<INSTANCE CLASSNAME=\"CIM_In\"><PROPERTY NAME=\"P\" TYPE=\"string\">"
                   "<VALUE>]]&gt;</VALUE></PROPERTY></INSTANCE>]]]]><![CDATA[></VALUE></PROPERTY>"
                   "</INSTANCE>]]></VALUE></PARAMVALUE>"));
}

TEST_F(Arguments, AreNotNeededWithoutInAndWithoutAMethodNothingIsSent) {
    CimData(table().invokeMethod(c(), op(), "Run", nullptr, nullptr, rc()));
    EXPECT_EQ(server.call(), call(""));
    CimData(table().invokeMethod(c(), op(), nullptr, nullptr, nullptr, rc()));
    EXPECT_EQ(outcome(status), (Outcome{4, "No method name given"}));
    CimData(table().invokeMethod(c(), nullptr, "Run", nullptr, nullptr, rc()));
    EXPECT_EQ(outcome(status), (Outcome{4, "No object path given"}));
    EXPECT_EQ(server.requestCount(), 1U);
}

class NewInstances : public Arguments {
protected:
    NewInstances() {
        addTextKey(name.get(), "Second", "y");
        instance.reset(native_new_CMPIInstance(op(), nullptr));
    }
    template<typename Member, typename Value>
    void set(const char* property, CMPIType type, Member member, Value value) {
        CMPIValue made{};
        made.*member = value;
        instance->ft->setProperty(instance.get(), property, &made, type);
    }
    CimInstance instance;
    const std::string keys = "<PROPERTY NAME=\"Second\" TYPE=\"string\"><VALUE>y</VALUE></PROPERTY>"
                             "<PROPERTY NAME=\"Name\" TYPE=\"string\"><VALUE>x</VALUE></PROPERTY>";
};

TEST_F(NewInstances, AreSentWithClassOfThePathAndWithoutNullProperties) {
    const CimArray text = words("a<b>");
    const CimArray empty(native_new_CMPIArray(0, CMPI_string, nullptr));
    set("State", CMPI_uint16, &CMPIValue::uint16, 2);
    instance->ft->setProperty(instance.get(), "Null", nullptr, CMPI_uint16);
    set("Words", CMPI_stringA, &CMPIValue::array, text.get());
    set("Empty", CMPI_stringA, &CMPIValue::array, empty.get());
    set("Ref", CMPI_ref, &CMPIValue::ref, thing().get());
    instance->ft->setProperty(instance.get(), "Blank", chars(""), CMPI_chars);
    name->ft->setClassName(op(), "CIM_Other");
    CimPath(table().createInstance(c(), op(), instance.get(), rc()));
    expectSent(
        "CreateInstance",
        parameter("NewInstance", "<INSTANCE CLASSNAME=\"CIM_Other\">" + keys +
                                     "<PROPERTY NAME=\"State\" TYPE=\"uint16\"><VALUE>2</VALUE>"
                                     "</PROPERTY><PROPERTY.ARRAY NAME=\"Words\" TYPE=\"string\">"
                                     "<VALUE.ARRAY><VALUE>a&lt;b&gt;</VALUE><VALUE>NULL</VALUE>"
                                     "</VALUE.ARRAY></PROPERTY.ARRAY>"
                                     "<PROPERTY.REFERENCE NAME=\"Ref\"><VALUE.REFERENCE>"
                                     "<LOCALINSTANCEPATH>" +
                                     nameSpacePath + thingName +
                                     "</LOCALINSTANCEPATH></VALUE.REFERENCE></PROPERTY.REFERENCE>"
                                     "<PROPERTY NAME=\"Blank\" TYPE=\"string\"><VALUE></VALUE>"
                                     "</PROPERTY></INSTANCE>"));
}

TEST_F(NewInstances, ThatModifyOthersComeWithTheNameOfTheOther) {
    status = table().setInstance(c(), op(), instance.get(), 0, properties);
    const std::string both =
        "<KEYBINDING NAME=\"Name\"><KEYVALUE VALUETYPE=\"string\">x</KEYVALUE></KEYBINDING>"
        "<KEYBINDING NAME=\"Second\"><KEYVALUE VALUETYPE=\"string\">y</KEYVALUE></KEYBINDING>";
    expectSent("ModifyInstance",
               flag("IncludeQualifiers", false) + propertyList +
                   parameter("ModifiedInstance",
                             "<VALUE.NAMEDINSTANCE><INSTANCENAME CLASSNAME=\"CIM_Thing\">" + both +
                                 "</INSTANCENAME><INSTANCE CLASSNAME=\"CIM_Thing\">" + keys +
                                 "</INSTANCE></VALUE.NAMEDINSTANCE>"));
    status = table().setInstance(c(), op(), nullptr, 0, nullptr);
    EXPECT_EQ(outcome(status), (Outcome{4, "No instance given"}));
}

} // namespace
