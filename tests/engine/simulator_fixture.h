// A CIM service over a small model of its own, asked with requests as clients send them.
#ifndef VELCLP_TESTS_ENGINE_SIMULATOR_FIXTURE_H
#define VELCLP_TESTS_ENGINE_SIMULATOR_FIXTURE_H

#include "simulator/cimservice.h"
#include "simulator/modelcontrol.h"

#include <gtest/gtest.h>

#include <string>

namespace velclp_sim {

constexpr const char* smallModel = R"mof(
[Description("Anything.")] class T_Element { [Key] string Name; string Caption; };
class T_System : T_Element {
   [Write, ValueMap{"2", "3"}, Values{"On", "Off & out"}] uint16 State = 2;
   uint8 Codes[]; boolean Busy; datetime Born;
   uint32 Reset([In] uint16 How, [In] T_Element REF Target, [In(false), Out] string Note);
};
class T_Sensor : T_Element { [Key] uint32 Index; sint32 Reading; };
[Association] class T_Part { [Key] T_Element REF Group; [Key] T_Element REF Part; };
[Association] class T_Watch : T_Part { uint16 Weight; };
instance of T_System as $A { Name = "a"; Caption = "<A> & \"co\""; Codes = { 1, 255 }; };
instance of T_System as $B { Name = "b"; State = 3; Busy = true; };
instance of T_Sensor as $S { Name = "s"; Index = 7; Reading = -40; };
instance of T_Part { Group = $A; Part = $S; };
instance of T_Watch { Group = $B; Part = $S; Weight = 9; };
)mof";

class SimulatorFixture : public testing::Test {
protected:
    explicit SimulatorFixture(std::vector<std::unique_ptr<Provider>> providers = {})
        : providers_(repository_, std::move(providers)),
          service_(repository_, providers_, scheduler_, "host") {
        addToModel(repository_, "root/zorm", smallModel);
        repository_.addNamespace("root/empty");
    }

    CimReply send(const std::string& body, const std::string& method = "",
                  const std::string& authorization = "") {
        return service_.answer({body, "MethodCall", method, authorization});
    }

    static std::string message(const std::string& request) {
        return "<?xml version=\"1.0\" encoding=\"utf-8\" ?><CIM CIMVERSION=\"2.0\" "
               "DTDVERSION=\"2.0\">"
               "<MESSAGE ID=\"4711\" PROTOCOLVERSION=\"1.0\"><SIMPLEREQ>" +
               request + "</SIMPLEREQ></MESSAGE></CIM>";
    }

    static std::string intrinsic(const std::string& name, const std::string& parameters,
                                 const std::string& space = "zorm") {
        return message("<IMETHODCALL NAME=\"" + name +
                       "\"><LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"" +
                       space + "\"/></LOCALNAMESPACEPATH>" + parameters + "</IMETHODCALL>");
    }

    static std::string parameter(const std::string& name, const std::string& content) {
        return "<IPARAMVALUE NAME=\"" + name + "\">" + content + "</IPARAMVALUE>";
    }
    static std::string flag(const std::string& name, const std::string& value) {
        return parameter(name, "<VALUE>" + value + "</VALUE>");
    }
    static std::string classNamed(const std::string& parameterName, const std::string& name) {
        return parameter(parameterName, "<CLASSNAME NAME=\"" + name + "\"/>");
    }

    static std::string element(const std::string& cls, const std::string& name) {
        return "<INSTANCENAME CLASSNAME=\"" + cls +
               "\"><KEYBINDING NAME=\"Name\"><KEYVALUE VALUETYPE=\"string\">" + name +
               "</KEYVALUE></KEYBINDING></INSTANCENAME>";
    }
    static std::string sensor() {
        return "<INSTANCENAME CLASSNAME=\"T_Sensor\"><KEYBINDING NAME=\"Index\"><KEYVALUE "
               "VALUETYPE=\"numeric\">7</KEYVALUE></KEYBINDING><KEYBINDING "
               "NAME=\"Name\"><KEYVALUE>s"
               "</KEYVALUE></KEYBINDING></INSTANCENAME>";
    }

    /// The reply's content between the elements of the response, or all of it for another reply.
    static std::string contentOf(const CimReply& reply) {
        const std::string& body = reply.body;
        const auto begin = body.find("RESPONSE NAME=\"");
        const auto end = body.find("</", body.rfind("METHODRESPONSE>") - 3);
        const auto from = body.find(">\n", begin) + 2;
        return begin == std::string::npos ? body : body.substr(from, end - from);
    }

    std::string ask(const std::string& name, const std::string& parameters,
                    const std::string& authorization = "") {
        return contentOf(send(intrinsic(name, parameters), name, authorization));
    }

    /// "CODE DESCRIPTION" of an error, or all of the content when there is none.
    static std::string errorIn(const std::string& content) {
        const auto code = content.find("<ERROR CODE=\"");
        if (code == std::string::npos) {
            return content;
        }
        const auto text = content.find("DESCRIPTION=\"", code) + 13;
        return content.substr(code + 13, content.find('"', code + 13) - code - 13) + " " +
               content.substr(text, content.find('"', text) - text);
    }

    Repository repository_;
    Scheduler scheduler_;
    ProviderSet providers_;
    CimService service_;
};

} // namespace velclp_sim

#endif
