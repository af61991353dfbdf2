// The simulator's CIM operations, by requests and replies as they cross the wire.
#include "tests/engine/simulator_fixture.h"

namespace velclp_sim {
namespace {

/// Resets systems, and lets readers do so to the system "b".
class ResetProvider : public Provider {
public:
    std::vector<std::string> classes() const override { return {"T_System"}; }
    bool opensToReaders(Change change, const Class&) const override {
        return change == Change::modify;
    }
    bool modifyInstance(const Caller&, const ObjectPath&,
                        const std::vector<PropertyChange>& changes) override {
        if (changes[0].property->name == "Caption" && changes[0].value.toString() == "refuse me") {
            throw CimError(CimStatus::invalidParameter, "refused");
        }
        return false;
    }
    std::optional<MethodResult> invokeMethod(const Caller& caller, const ObjectPath& path,
                                             const Method&, const Arguments& in) override {
        if (in.get("How").toUnsigned() == 99) {
            return std::nullopt;
        }
        MethodResult result;
        result.returnValue = in.get("How").isNull() ? 1 : 0;
        result.out.set(
            "Note",
            caller.user + " reset " + path.key("Name").toString() + " for " +
                (in.get("Target").isNull() ? "nobody" : in.get("Target").toPath()->toText()));
        return result;
    }
};

class SimulatorRequests : public SimulatorFixture {
protected:
    static std::vector<std::unique_ptr<Provider>> providers() {
        std::vector<std::unique_ptr<Provider>> all;
        all.push_back(std::make_unique<ResetProvider>());
        return all;
    }
    SimulatorRequests() : SimulatorFixture(providers()) {}

    struct Case {
        std::string operation;
        std::string parameters;
        std::string expected;
    };
    void expectAnswers(const std::vector<Case>& cases) {
        for (const Case& c : cases) {
            EXPECT_EQ(errorIn(ask(c.operation, c.parameters)), c.expected)
                << c.operation << " " << c.parameters;
        }
    }
    /// Of answers that name several things: their attributes of that name, each with a blank.
    void expectNames(const std::string& attribute, const std::vector<Case>& cases) {
        for (const Case& c : cases) {
            EXPECT_EQ(namesIn(ask(c.operation, c.parameters), attribute), c.expected)
                << c.operation << " " << c.parameters;
        }
    }

    static std::string system(const std::string& name) {
        return parameter("InstanceName", element("T_System", name));
    }
    static std::string instance(const std::string& cls, const std::string& properties) {
        return "<INSTANCE CLASSNAME=\"" + cls + "\">" + properties + "</INSTANCE>";
    }
    static std::string property(const std::string& name, const std::string& type,
                                const std::string& value) {
        return "<PROPERTY NAME=\"" + name + "\" TYPE=\"" + type + "\"><VALUE>" + value +
               "</VALUE></PROPERTY>";
    }
    static std::string listed(const std::vector<std::string>& names) {
        std::string values;
        for (const std::string& name : names) {
            values += "<VALUE>" + name + "</VALUE>";
        }
        return parameter("PropertyList", "<VALUE.ARRAY>" + values + "</VALUE.ARRAY>");
    }

    std::string call(const std::string& method, const std::string& object,
                     const std::string& parameters, const std::string& authorization = "") {
        return errorIn(contentOf(
            send(message("<METHODCALL NAME=\"" + method +
                         "\"><LOCALINSTANCEPATH><LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/>"
                         "<NAMESPACE NAME=\"zorm\"/></LOCALNAMESPACEPATH>" +
                         object + "</LOCALINSTANCEPATH>" + parameters + "</METHODCALL>"),
                 method, authorization)));
    }

    /// Names in the order of the reply, of whatever is enumerated.
    static std::string namesIn(const std::string& content, const std::string& attribute) {
        std::string names;
        for (auto at = content.find(attribute + "=\""); at != std::string::npos;
             at = content.find(attribute + "=\"", at + 1)) {
            const auto from = at + attribute.size() + 2;
            names += content.substr(from, content.find('"', from) - from) + " ";
        }
        return names;
    }
};

TEST_F(SimulatorRequests, AnInstanceIsAnsweredWithAllItsPropertiesAsStrictClientsReadThem) {
    const CimReply reply =
        send(intrinsic("GetInstance", parameter("InstanceName", element("T_System", "a"))),
             "GetInstance");
    EXPECT_EQ(reply.body, R"(<?xml version="1.0" encoding="utf-8"?>
<CIM CIMVERSION="2.0" DTDVERSION="2.0">
<MESSAGE ID="4711" PROTOCOLVERSION="1.0">
<SIMPLERSP>
<IMETHODRESPONSE NAME="GetInstance">
<IRETURNVALUE>
<INSTANCE CLASSNAME="T_System">
<PROPERTY NAME="Name" TYPE="string">
<VALUE>a</VALUE>
</PROPERTY>
<PROPERTY NAME="Caption" TYPE="string">
<VALUE>&lt;A&gt; &amp; &quot;co&quot;</VALUE>
</PROPERTY>
<PROPERTY NAME="State" TYPE="uint16">
<VALUE>2</VALUE>
</PROPERTY>
<PROPERTY.ARRAY NAME="Codes" TYPE="uint8">
<VALUE.ARRAY>
<VALUE>1</VALUE>
<VALUE>255</VALUE>
</VALUE.ARRAY>
</PROPERTY.ARRAY>
<PROPERTY NAME="Busy" TYPE="boolean">
</PROPERTY>
<PROPERTY NAME="Born" TYPE="datetime">
</PROPERTY>
</INSTANCE>
</IRETURNVALUE>
</IMETHODRESPONSE>
</SIMPLERSP>
</MESSAGE>
</CIM>
)");
}

TEST_F(SimulatorRequests, AClassIsAnsweredWithQualifiersMethodsAndOrigins) {
    EXPECT_EQ(ask("GetClass", classNamed("ClassName", "t_system") + flag("LocalOnly", "FALSE") +
                                  flag("IncludeClassOrigin", "TRUE") + listed({"state", "Name"})),
              R"(<IRETURNVALUE>
<CLASS NAME="T_System" SUPERCLASS="T_Element">
<QUALIFIER NAME="Description" TYPE="string" PROPAGATED="true" TRANSLATABLE="true">
<VALUE>Anything.</VALUE>
</QUALIFIER>
<PROPERTY NAME="Name" TYPE="string" CLASSORIGIN="T_Element" PROPAGATED="true">
<QUALIFIER NAME="Key" TYPE="boolean" PROPAGATED="true" OVERRIDABLE="false">
<VALUE>TRUE</VALUE>
</QUALIFIER>
</PROPERTY>
<PROPERTY NAME="State" TYPE="uint16" CLASSORIGIN="T_System">
<QUALIFIER NAME="Write" TYPE="boolean">
<VALUE>TRUE</VALUE>
</QUALIFIER>
<QUALIFIER NAME="ValueMap" TYPE="string">
<VALUE.ARRAY>
<VALUE>2</VALUE>
<VALUE>3</VALUE>
</VALUE.ARRAY>
</QUALIFIER>
<QUALIFIER NAME="Values" TYPE="string" TRANSLATABLE="true">
<VALUE.ARRAY>
<VALUE>On</VALUE>
<VALUE>Off &amp; out</VALUE>
</VALUE.ARRAY>
</QUALIFIER>
<VALUE>2</VALUE>
</PROPERTY>
<METHOD NAME="Reset" TYPE="uint32" CLASSORIGIN="T_System">
<PARAMETER NAME="How" TYPE="uint16">
<QUALIFIER NAME="In" TYPE="boolean" OVERRIDABLE="false">
<VALUE>TRUE</VALUE>
</QUALIFIER>
</PARAMETER>
<PARAMETER.REFERENCE NAME="Target" REFERENCECLASS="T_Element">
<QUALIFIER NAME="In" TYPE="boolean" OVERRIDABLE="false">
<VALUE>TRUE</VALUE>
</QUALIFIER>
</PARAMETER.REFERENCE>
<PARAMETER NAME="Note" TYPE="string">
<QUALIFIER NAME="In" TYPE="boolean" OVERRIDABLE="false">
<VALUE>FALSE</VALUE>
</QUALIFIER>
<QUALIFIER NAME="Out" TYPE="boolean" OVERRIDABLE="false">
<VALUE>TRUE</VALUE>
</QUALIFIER>
</PARAMETER>
</METHOD>
</CLASS>
</IRETURNVALUE>
)");
    const std::string local = ask("GetClass", classNamed("ClassName", "T_Sensor"));
    EXPECT_EQ(namesIn(local, " NAME"), "T_Sensor Index Key Reading ");
}

TEST_F(SimulatorRequests, EnumerationsHonourDepthPropertyListAndLocalOnly) {
    expectNames(" NAME",
                {{"EnumerateClassNames", "", "T_Element T_Part "},
                 {"EnumerateClassNames", flag("DeepInheritance", "true"),
                  "T_Element T_System T_Sensor T_Part T_Watch "},
                 {"EnumerateClassNames", classNamed("ClassName", "T_PART"), "T_Watch "},
                 {"EnumerateClasses",
                  classNamed("ClassName", "T_Part") + flag("IncludeQualifiers", "FALSE"),
                  "T_Watch Weight "},
                 {"GetInstance", parameter("InstanceName", sensor()) + flag("LocalOnly", "TRUE"),
                  "Index Reading "}});
    const std::string elements = classNamed("ClassName", "T_Element");
    expectNames("PROPERTY NAME",
                {{"EnumerateInstances", elements,
                  "Name Caption State Busy Born Name Caption State Busy Born "
                  "Name Caption Index Reading "},
                 {"EnumerateInstances", elements + flag("DeepInheritance", "FALSE"),
                  "Name Caption Name Caption Name Caption "},
                 {"EnumerateInstances", elements + listed({"READING", "Nope"}), "Reading "},
                 {"EnumerateInstances", elements + listed({}), ""}});
    expectNames("CLASSNAME", {{"EnumerateInstanceNames", classNamed("ClassName", "t_element"),
                               "T_System T_System T_Sensor "}});
}

TEST_F(SimulatorRequests, AssociationsAreFollowedByClassRoleAndResult) {
    const std::string fromSensor = parameter("ObjectName", sensor());
    const std::string fromSystem = parameter("ObjectName", element("T_System", "a"));
    expectNames(
        "INSTANCENAME CLASSNAME",
        {{"AssociatorNames", fromSensor, "T_System T_System "},
         {"AssociatorNames", fromSensor + classNamed("AssocClass", "T_Part"), "T_System T_System "},
         {"AssociatorNames", fromSensor + classNamed("AssocClass", "t_watch"), "T_System "},
         {"AssociatorNames", fromSensor + flag("Role", "Group"), ""},
         {"AssociatorNames", fromSensor + flag("ResultRole", "group"), "T_System T_System "},
         {"AssociatorNames", fromSystem + classNamed("ResultClass", "T_Element"), "T_Sensor "},
         {"AssociatorNames", fromSystem + classNamed("ResultClass", "T_System"), ""},
         {"AssociatorNames", parameter("ObjectName", element("T_System", "gone")), ""},
         {"ReferenceNames", fromSensor, "T_Part T_System T_Sensor T_Watch T_System T_Sensor "}});
    expectAnswers({{"AssociatorNames", fromSensor + classNamed("AssocClass", "T_Nope"),
                    "4 CIM_ERR_INVALID_PARAMETER: T_Nope"}});
    // From a class: the classes that associations are declared for.
    const std::string fromClass = classNamed("ObjectName", "T_Sensor");
    expectNames(
        "CLASSNAME NAME",
        {{"AssociatorNames", fromClass + classNamed("AssocClass", "T_Watch"), "T_Element "}});
    expectNames("CLASS NAME", {{"References", fromClass, "T_Part T_Watch "}});
}

TEST_F(SimulatorRequests, AssociatorNamesAndReferencesHaveTheirFullForm) {
    EXPECT_EQ(ask("AssociatorNames", parameter("ObjectName", element("T_System", "b"))),
              R"(<IRETURNVALUE>
<OBJECTPATH>
<INSTANCEPATH>
<NAMESPACEPATH>
<HOST>host</HOST>
<LOCALNAMESPACEPATH>
<NAMESPACE NAME="root"/>
<NAMESPACE NAME="zorm"/>
</LOCALNAMESPACEPATH>
</NAMESPACEPATH>
<INSTANCENAME CLASSNAME="T_Sensor">
<KEYBINDING NAME="Name">
<KEYVALUE VALUETYPE="string">s</KEYVALUE>
</KEYBINDING>
<KEYBINDING NAME="Index">
<KEYVALUE VALUETYPE="numeric">7</KEYVALUE>
</KEYBINDING>
</INSTANCENAME>
</INSTANCEPATH>
</OBJECTPATH>
</IRETURNVALUE>
)");
    const std::string reference =
        ask("References", parameter("ObjectName", element("T_System", "b")) + listed({"Group"}));
    EXPECT_EQ(reference.substr(reference.find("<INSTANCE ")), R"(<INSTANCE CLASSNAME="T_Watch">
<PROPERTY.REFERENCE NAME="Group" REFERENCECLASS="T_Element">
<VALUE.REFERENCE>
<INSTANCENAME CLASSNAME="T_System">
<KEYBINDING NAME="Name">
<KEYVALUE VALUETYPE="string">b</KEYVALUE>
</KEYBINDING>
</INSTANCENAME>
</VALUE.REFERENCE>
</PROPERTY.REFERENCE>
</INSTANCE>
</VALUE.OBJECTWITHPATH>
</IRETURNVALUE>
)");
}

TEST_F(SimulatorRequests, InstancesAreCreatedChangedAndDeleted) {
    const std::string made = parameter(
        "NewInstance",
        instance("t_system", property("name", "string", "n") +
                                 "<PROPERTY.ARRAY NAME=\"Codes\" TYPE=\"uint8\"><VALUE.ARRAY>"
                                 "<VALUE>9</VALUE></VALUE.ARRAY></PROPERTY.ARRAY>"));
    EXPECT_EQ(ask("CreateInstance", made), R"(<IRETURNVALUE>
<INSTANCENAME CLASSNAME="T_System">
<KEYBINDING NAME="Name">
<KEYVALUE VALUETYPE="string">n</KEYVALUE>
</KEYBINDING>
</INSTANCENAME>
</IRETURNVALUE>
)");
    const auto modified = [](const std::string& properties) {
        return parameter("ModifiedInstance", "<VALUE.NAMEDINSTANCE>" + element("T_System", "n") +
                                                 instance("T_System", properties) +
                                                 "</VALUE.NAMEDINSTANCE>");
    };
    const auto named = [](const char* name) { return system("n") + flag("PropertyName", name); };
    const auto value = [](const std::string& text) {
        return "<IRETURNVALUE>\n<VALUE>" + text + "</VALUE>\n</IRETURNVALUE>\n";
    };
    const std::string nothing = "<IRETURNVALUE>\n</IRETURNVALUE>\n";
    const std::string caption = property("Caption", "string", "c");
    expectAnswers({
        {"CreateInstance", made, "11 CIM_ERR_ALREADY_EXISTS: T_System.Name=&quot;n&quot;"},
        {"ModifyInstance", modified(property("State", "uint16", "3") + caption) + listed({"state"}),
         nothing},
        {"GetProperty", named("State"), value("3")},
        {"GetProperty", named("Caption"), nothing},
        {"ModifyInstance", modified(caption + property("Name", "string", "n")), nothing},
        {"GetProperty", named("Caption"), value("c")},
        {"ModifyInstance", modified(property("Name", "string", "m")),
         "7 CIM_ERR_NOT_SUPPORTED: key Name cannot change"},
        {"ModifyInstance", modified(property("Caption", "string", "refuse me")),
         "4 CIM_ERR_INVALID_PARAMETER: refused"},
        {"SetProperty", named("Busy") + flag("NewValue", "TRUE"), nothing},
        {"GetProperty", named("Busy"), value("TRUE")},
        {"DeleteInstance", system("n"), nothing},
        {"DeleteInstance", system("n"), "6 CIM_ERR_NOT_FOUND: T_System.Name=&quot;n&quot;"},
    });
}

TEST_F(SimulatorRequests, WrongValuesAndNamesAreCimErrors) {
    const auto made = [](const std::string& properties, const char* cls = "T_System") {
        return parameter("NewInstance", instance(cls, properties));
    };
    expectAnswers({
        {"CreateInstance", made("", "T_Nope"), "5 CIM_ERR_INVALID_CLASS: T_Nope"},
        {"CreateInstance", made(""), "4 CIM_ERR_INVALID_PARAMETER: key Name has no value"},
        {"CreateInstance", made(property("Nope", "string", "x")),
         "4 CIM_ERR_INVALID_PARAMETER: T_System has no property Nope"},
        {"CreateInstance", made(property("State", "uint16", "65536")),
         "13 CIM_ERR_TYPE_MISMATCH: State is uint16"},
        {"CreateInstance", made(property("State", "uint32", "6")),
         "13 CIM_ERR_TYPE_MISMATCH: State is uint16"},
        {"CreateInstance", made(property("Busy", "boolean", "perhaps")),
         "13 CIM_ERR_TYPE_MISMATCH: Busy is boolean"},
        {"CreateInstance", made(property("Codes", "uint8", "1")),
         "13 CIM_ERR_TYPE_MISMATCH: Codes is an array"},
        {"CreateInstance", made(property("Born", "datetime", "now")),
         "13 CIM_ERR_TYPE_MISMATCH: Born is datetime"},
        {"GetInstance", parameter("InstanceName", element("T_Nope", "a")),
         "5 CIM_ERR_INVALID_CLASS: T_Nope"},
        {"GetInstance", parameter("InstanceName", element("T_Sensor", "s")),
         "4 CIM_ERR_INVALID_PARAMETER: wrong number of keys: T_Sensor.Name=&quot;s&quot;"},
        {"GetClass", classNamed("ClassName", "Nope"), "6 CIM_ERR_NOT_FOUND: Nope"},
        {"GetClass", "", "4 CIM_ERR_INVALID_PARAMETER: ClassName"},
        {"GetClass", flag("Nonsense", "1"), "4 CIM_ERR_INVALID_PARAMETER: Nonsense"},
        {"DeleteClass", "", "7 CIM_ERR_NOT_SUPPORTED: DeleteClass"},
        {"ExecQuery", flag("QueryLanguage", "WQL") + flag("Query", "select"),
         "7 CIM_ERR_NOT_SUPPORTED"},
        {"ExecQuery", flag("QueryLanguage", "SQL") + flag("Query", "select"),
         "14 CIM_ERR_QUERY_LANGUAGE_NOT_SUPPORTED: SQL"},
    });
    for (const auto& [space, error] : {std::pair{"none", "3 CIM_ERR_INVALID_NAMESPACE: root/none"},
                                       {"empty", "5 CIM_ERR_INVALID_CLASS: T_System"}}) {
        EXPECT_EQ(errorIn(contentOf(send(intrinsic("EnumerateInstanceNames",
                                                   classNamed("ClassName", "T_System"), space)))),
                  error);
    }
}

TEST_F(SimulatorRequests, MethodsGoToTheirProvidersWithTypedArguments) {
    EXPECT_EQ(call("reset", element("T_System", "a"),
                   "<PARAMVALUE NAME=\"how\" PARAMTYPE=\"uint16\"><VALUE>2</VALUE></PARAMVALUE>"
                   "<PARAMVALUE NAME=\"Target\" PARAMTYPE=\"reference\"><VALUE.REFERENCE>" +
                       sensor() + "</VALUE.REFERENCE></PARAMVALUE>"),
              R"(<RETURNVALUE PARAMTYPE="uint32">
<VALUE>0</VALUE>
</RETURNVALUE>
<PARAMVALUE NAME="Note" PARAMTYPE="string">
<VALUE> reset a for root/zorm:T_Sensor.Name=&quot;s&quot;,Index=7</VALUE>
</PARAMVALUE>
)");
    const auto how = [&](const std::string& text) {
        return call("Reset", element("T_System", "a"),
                    "<PARAMVALUE NAME=\"How\"><VALUE>" + text + "</VALUE></PARAMVALUE>");
    };
    EXPECT_EQ(how("99"), "16 CIM_ERR_METHOD_NOT_AVAILABLE: T_System.Reset");
    EXPECT_EQ(how("x"), "13 CIM_ERR_TYPE_MISMATCH: How is uint16");
    EXPECT_EQ(call("Nope", element("T_System", "a"), ""),
              "17 CIM_ERR_METHOD_NOT_FOUND: T_System.Nope");
    EXPECT_EQ(call("Reset", element("T_System", "gone"), ""),
              "6 CIM_ERR_NOT_FOUND: T_System.Name=&quot;gone&quot;");
    EXPECT_EQ(call("Reset", element("T_System", "a"), "<PARAMVALUE NAME=\"Note\"/>"),
              "4 CIM_ERR_INVALID_PARAMETER: Note");
}

TEST_F(SimulatorRequests, TheLoginTokenSaysWhatACallerMay) {
    const std::string get = parameter("InstanceName", element("T_System", "a"));
    const std::string made =
        parameter("NewInstance", "<INSTANCE CLASSNAME=\"T_System\"></INSTANCE>");
    const std::string denied0 = "2 CIM_ERR_ACCESS_DENIED: oper";
    const std::string denied1 = "2 CIM_ERR_ACCESS_DENIED: oper may only read";
    const auto basic = [](const char* base64) { return std::string("Basic ") + base64; };
    const std::string nothing = basic("b3BlcjAwMDA6"); // oper0000:
    const std::string reader = basic("b3BlcjAwMDE6");  // oper0001:
    EXPECT_EQ(errorIn(ask("GetInstance", get, nothing)), denied0);
    EXPECT_EQ(errorIn(ask("GetInstance", get, reader)).substr(0, 14), "<IRETURNVALUE>");
    EXPECT_EQ(errorIn(ask("CreateInstance", made, reader)), denied1);
    EXPECT_EQ(errorIn(ask("DeleteInstance", get, reader)), denied1);
    EXPECT_EQ(call("Reset", element("T_System", "a"), "", reader), denied1);
    // The provider opens changes of systems to readers.
    EXPECT_EQ(errorIn(ask("SetProperty",
                          get + flag("PropertyName", "Caption") + flag("NewValue", "x"), reader)),
              "<IRETURNVALUE>\n</IRETURNVALUE>\n");
    for (const char* full : {"b3BlcjAyYWE6" /* oper02aa: */, "d2JlbTpwdw==" /* wbem:pw */,
                             "MDAwMDp4" /* 0000:x, a user without a name */, "!!"}) {
        EXPECT_EQ(errorIn(ask("SetProperty", get + flag("PropertyName", "Caption"), basic(full))),
                  "<IRETURNVALUE>\n</IRETURNVALUE>\n")
            << full;
    }
}

TEST_F(SimulatorRequests, WhatIsNoRequestIsAnHttpErrorWithItsReason) {
    const auto status = [&](const std::string& body, const std::string& method = "") {
        const CimReply reply = send(body, method);
        return std::to_string(reply.status) + " " + reply.cimError;
    };
    const std::string good = intrinsic("EnumerateClassNames", "");
    const auto changed = [&](const std::string& from, const std::string& to) {
        std::string body = good;
        body.replace(body.find(from), from.size(), to);
        return status(body);
    };
    EXPECT_EQ(status(good), "200 ");
    EXPECT_EQ(status(""), "400 request-not-well-formed");
    EXPECT_EQ(status(good.substr(0, good.size() - 8)), "400 request-not-well-formed");
    EXPECT_EQ(changed("4711", "47\xC0\x80"), "400 request-not-well-formed");
    EXPECT_EQ(changed("CIM CIMVERSION=\"2.0\"", "CIM CIMVERSION=\"3.0\""),
              "501 unsupported-cim-version");
    EXPECT_EQ(changed("DTDVERSION=\"2.0\"", "DTDVERSION=\"1.0\""), "501 unsupported-dtd-version");
    EXPECT_EQ(changed("PROTOCOLVERSION=\"1.0\"", "PROTOCOLVERSION=\"2.0\""),
              "501 unsupported-protocol-version");
    EXPECT_EQ(changed("<SIMPLEREQ>", "<SIMPLEREQ/><SIMPLEREQ>"), "400 request-not-valid");
    EXPECT_EQ(changed(" ID=\"4711\"", ""), "400 request-not-valid");
    EXPECT_EQ(changed("IMETHODCALL NAME=\"EnumerateClassNames\"", "IMETHODCALL"),
              "400 request-not-valid");
    EXPECT_EQ(status(good, "GetClass"), "400 header-mismatch");
    EXPECT_EQ(status("<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"1\" "
                     "PROTOCOLVERSION=\"1.0\"><MULTIREQ/></MESSAGE></CIM>"),
              "501 multiple-requests-unsupported");
    std::string nested;
    for (int i = 0; i < 20; ++i) {
        nested = "<INSTANCENAME CLASSNAME=\"T_Part\"><KEYBINDING NAME=\"Group\"><VALUE.REFERENCE>" +
                 (i == 0 ? sensor() : nested) + "</VALUE.REFERENCE></KEYBINDING></INSTANCENAME>";
    }
    EXPECT_EQ(status(intrinsic("GetInstance", parameter("InstanceName", nested))),
              "400 request-not-valid");
    EXPECT_EQ(status(intrinsic("GetInstance", parameter("InstanceName", "<VALUE><B/></VALUE>"))),
              "400 request-not-valid");
}

TEST_F(SimulatorRequests, TextsThatXmlCannotHoldAreNeverSentRaw) {
    repository_.update(
        ObjectPath::fromText("root/zorm:T_System.Name=\"a\""), [](Instance& instance) {
            instance.set("Caption", std::string("esc\x1b[2J\r\n\t\xC3\xA9\xFF]]>", 16));
        });
    EXPECT_EQ(ask("GetProperty", parameter("InstanceName", element("T_System", "a")) +
                                     flag("PropertyName", "Caption")),
              "<IRETURNVALUE>\n<VALUE>esc\xEF\xBF\xBD[2J&#13;&#10;&#9;\xC3\xA9\xEF\xBF\xBD]]&gt;"
              "</VALUE>\n</IRETURNVALUE>\n");
}

} // namespace
} // namespace velclp_sim
