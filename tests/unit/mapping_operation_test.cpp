#include "tests/unit/mapping_fixture.h"

namespace velmora_clp {
namespace {

using fakecim::Data;
using fakecim::null;
using fakecim::number;
using fakecim::text;
using fakecim::texts;

TEST_F(MappingTest, AFailedOperationBecomesAnErrorWithItsStatus) {
    const auto codesOf = [&](int rc) {
        const CMPIStatus status = {static_cast<CMPIrc>(rc), nullptr};
        return codes(m_mapping.smProcessOpError(&status));
    };
    EXPECT_EQ("1,1,0", codesOf(1));
    EXPECT_EQ("1,6,0", codesOf(6));
    EXPECT_EQ("1,17,0", codesOf(17));
    EXPECT_EQ("4,1,0", codesOf(18));
    EXPECT_EQ("4,1,0", codesOf(200));
    EXPECT_EQ("4,1,0", codes(m_mapping.smProcessOpError(nullptr)));
    EXPECT_DEATH(codesOf(0), "!status\\|\\|status->rc");
}

TEST_F(MappingTest, AReturnValueBecomesAnErrorByItsNumber) {
    struct {
        CMPIType type;
        const char* value;
        int number;
        const char* codes;
    } const cases[] = {
        {CMPI_uint32, "0", 0, "ok"},
        {CMPI_uint8, "200", 200, "1,1,2"},
        {CMPI_sint8, "-1", -1, "1,1,2"},
        {CMPI_uint16, "65535", 65535, "1,1,2"},
        {CMPI_sint16, "-2", -2, "1,1,2"},
        {CMPI_uint32, "1", 1, "1,7,2"},
        {CMPI_sint32, "5", 5, "1,4,2"},
        {CMPI_uint64, "4096", 4096, "1,1,2"},
        {CMPI_sint64, "-1", -1, "1,1,2"},
        {CMPI_uint32, "-1", -1, "1,1,2"},
        {CMPI_UINT | 0x4000, "0", -1, "1,1,2"},
    };
    for (const auto& c : cases) {
        Data data(number(c.type, c.value));
        EXPECT_EQ(c.number, smExtractCMPIIntValue(data.get())) << c.type << " " << c.value;
        EXPECT_EQ(c.codes, codes(m_mapping.smProcessRetError(data.get())));
    }
    Data nothing(null(CMPI_uint32));
    EXPECT_EQ("1,1,2", codes(m_mapping.smProcessRetError(nothing.get())));
    Data wrong(text("0"));
    EXPECT_DEATH(smExtractCMPIIntValue(wrong.get()), "type&\\(\\(\\(\\(8\\)<<4\\) \\|");
}

TEST_F(MappingTest, ANewInstanceIsOfTheTagsClassInTheClassesNamespace) {
    const auto made = [&](const char* ufct) {
        CMPIObjectPath* path = nullptr;
        CMPIInstance* instance = nullptr;
        m_mapping.smNewInstance(ufct, &path, &instance);
        const CimPath ownedPath(path);
        const CimInstance owned(instance);
        return cimNameSpace(path) + ":" + cimClassName(path);
    };
    EXPECT_EQ("root/zorm:zorm_computersystem", made("system"));
    EXPECT_EQ("root/other:zorm_blade", made("blade"));
}

TEST_F(MappingTest, ACreatedObjectComesInTheNamespaceOfItsPath) {
    const CimInstance instance(native_new_CMPIInstance(m_path.get(), nullptr));
    const auto create = [&](CimPath& object) {
        CMPIObjectPath* made = nullptr;
        const std::string result =
            codes(m_mapping.smCreateInstance(m_path.get(), instance.get(), &made));
        object.reset(made);
        return result;
    };
    CimPath object;
    m_server.created = m_object;
    EXPECT_EQ("ok", create(object));
    EXPECT_EQ("root/zorm", cimNameSpace(object.get()));
    m_server.created = nullptr;
    EXPECT_EQ("4,1,0", create(object));
    m_server.fail("createInstance", 11);
    EXPECT_EQ("1,11,0", create(object));
    EXPECT_EQ(nullptr, object);
}

TEST_F(MappingTest, PropertiesAreWrittenTogetherOverWhatIsThere) {
    m_object->properties = {{"Old", text("stays")}, {"Number", null(CMPI_uint16)}};
    Data name(text("new"));
    Data value(number(CMPI_uint16, "7"));
    EXPECT_EQ("ok", set({{"Number", &value.get()}, {"Text", &name.get()}}));
    EXPECT_EQ("ZORM_Thing Name:1600=a;Old:1600=stays;Number:0090=7;Text:1600=new;", lastCall());
    EXPECT_EQ(1, m_server.count("setInstance"));
    m_server.fail("getInstance", 6);
    EXPECT_EQ("1,6,0", set({{"Text", &name.get()}}));
    m_server.fail("setInstance", 2);
    EXPECT_EQ("1,2,0", set({{"Text", &name.get()}}));
    EXPECT_DEATH(set({}), "props->empty\\(\\)==false");
    EXPECT_DEATH(set({{"Text", nullptr}}), "p->second");
}

TEST_F(MappingTest, AnArrayKeepsWhatIsNotWrittenAndItsLength) {
    const auto roles = [&](const fakecim::Value& present, const char* typed) {
        m_object->properties["Roles"] = present;
        const CimClass cimClass(fakecim::Class::make({{{"Roles", {CMPI_stringA, {}}}}}));
        CMPIData data = {};
        EXPECT_TRUE(CLPMisc::normalProperty(cimClass.get(), "Roles", typed, &data));
        const CimArray owned(data.value.array);
        EXPECT_EQ("ok", set({{"Roles", &data}}));
        const std::string call = lastCall();
        return call.substr(call.find('['));
    };
    EXPECT_EQ("[x,b];", roles(texts({"a", "b"}), "x"));
    EXPECT_EQ("[a,x];", roles(texts({"a", "b"}), "x,1"));
    EXPECT_EQ("[x,y];", roles(texts({"a", "b"}), "x:y:z"));
    EXPECT_EQ("[x,y,null];", roles(null(CMPI_stringA), "x:y"));
    EXPECT_EQ("[null,x];", roles(texts({}), "x,1"));
}

TEST_F(MappingTest, AMethodIsInvokedWithItsParametersInOrder) {
    Data one(number(CMPI_uint32, "5"));
    Data two(text("x"));
    const DataPairs in = {{"speed", &one.get()}, {"name", &two.get()}};
    DataPairs out;
    EXPECT_EQ("ok", invoke("setspeed", &in, &out));
    EXPECT_EQ("ZORM_Thing setspeed(speed:00a0=5;name:1600=x;)", lastCall());
    m_server.methods["setspeed"] = [](CMPIArgs*) { return number(CMPI_uint32, "5"); };
    EXPECT_EQ("1,4,2", invoke("setspeed", &in, &out));
    m_server.fail("invokeMethod", 16);
    EXPECT_EQ("1,16,0", invoke("setspeed", &in, &out));
    const DataPairs missing = {{"speed", nullptr}};
    EXPECT_DEATH(invoke("setspeed", &missing, &out), "\\(\\*inP\\)\\[i\\].second");
}

TEST_F(MappingTest, TwoMethodNamesStandForOperations) {
    Data state(number(CMPI_uint16, "4"));
    const DataPairs in = {{"requestedstate", &state.get()}};
    EXPECT_EQ("ok", invoke("requestSTATEchange", &in));
    EXPECT_EQ("ZORM_Thing RequestStateChange(requestedstate:0090=4;)", lastCall());
    EXPECT_EQ("ok", invoke("DeleteInstance", &in));
    EXPECT_EQ("deleteInstance", m_server.calls.back().operation);
    m_server.fail("deleteInstance", 7);
    EXPECT_EQ("1,7,0", invoke("deleteinstance", nullptr));
    const DataPairs none;
    EXPECT_DEATH(invoke("requeststatechange", &none), "static_cast<int>\\(inP->size\\(\\)\\)==1");
}

TEST_F(MappingTest, TheBuiltInStatesAreThoseOfTheGeneralModel) {
    const auto asked = [&](JobError* error) {
        EXPECT_EQ("ok", codes(error));
        return m_server.calls.back().detail;
    };
    EXPECT_EQ("RequestStateChange(RequestedState:0090=2;)",
              asked(m_mapping.smStartRSC(m_path.get())));
    EXPECT_EQ("RequestStateChange(RequestedState:0090=3;)",
              asked(m_mapping.smStopRSC(m_path.get())));
    EXPECT_EQ("RequestStateChange(RequestedState:0090=11;)",
              asked(m_mapping.smResetRSC(m_path.get())));
    const fakecim::Object usb = {"zorm_usbredirectionsap", {{"Name", "x"}}, {}};
    EXPECT_EQ("RequestStateChange(RequestedState:0090=6;)",
              asked(m_mapping.smStopRSC(usb.path().get())));
}

TEST_F(MappingTest, AVerbIsAllowedByTheTagsListOrElseTheClasss) {
    EXPECT_EQ("ok", codes(m_mapping.smCheckCommand("system", "start")));
    EXPECT_EQ("1,7,2", codes(m_mapping.smCheckCommand("system", "show")));
    EXPECT_EQ("ok", codes(m_mapping.smCheckCommand("blade", "show")));
    EXPECT_EQ("1,7,2", codes(m_mapping.smCheckCommand("blade", "Show")));
    EXPECT_EQ("1,6,2", codes(m_mapping.smCheckCommand("nosuch", "show")));
}

TEST_F(MappingTest, ASystemsPowerIsAskedOfItsService) {
    EXPECT_EQ("1,2,0", pseudo("system", "start", {}));
    addAssociate("ZORM_CSAssociatedPowerManagementService", "ZORM_PowerManagementService");
    const auto state = [&](const char* method, const Pairs& props) {
        EXPECT_EQ("ok", pseudo("System", method, props));
        return lastCall();
    };
    const auto request = [](const char* power) {
        return std::string("ZORM_PowerManagementService RequestPowerStateChange(PowerState:0090=") +
               power +
               ";ManagedElement:1100=root/zorm:ZORM_Thing.Name=\"a\";"
               "Time:1800=00000000000000.000000:000;"
               "TimeoutPeriod:1800=00000000000000.000000:000;)";
    };
    EXPECT_EQ(request("2"), state("start", {}));
    EXPECT_EQ(request("12"), state("stop", {}));
    EXPECT_EQ(request("8"), state("hardstop", {}));
    EXPECT_EQ(request("5"), state("reset", {}));
    const char* const crossed[][2] = {
        {"2", "2"}, {"5", "11"}, {"8", "12"}, {"11", "8"}, {"12", "5"}};
    for (const auto& pair : crossed)
        EXPECT_EQ(request(pair[1]), state("set", {{"powerstate", pair[0]}}));
    EXPECT_EQ("1,7,0", pseudo("system", "set", {{"powerstate", "3"}}));
    const long before = m_server.count("invokeMethod");
    EXPECT_EQ("ok", pseudo("system", "other", {}));
    EXPECT_EQ(before, m_server.count("invokeMethod"));
    EXPECT_DEATH(pseudo("system", "start", {{"a", "b"}}),
                 "static_cast<int>\\(props.size\\(\\)\\)==0");
    EXPECT_DEATH(pseudo("system", "set", {}), "static_cast<int>\\(props.size\\(\\)\\)==1");
    EXPECT_DEATH(m_mapping.SYSTEM_PseudoMethod("sp", m_path.get(), "set", {}, nullptr),
                 "ufct==\"system\"");
}

TEST_F(MappingTest, ASystemsPowerPropertyIsReadFromTheAssociation) {
    const char* const association = "ZORM_CSAssociatedPowerManagementService";
    const auto shown = [&](const char* name, CimArgs& out) {
        out.reset(native_new_CMPIArgs(nullptr));
        return pseudo("system", "show", {{name, ""}}, out.get());
    };
    CimArgs out;
    EXPECT_EQ("1,2,0", shown("powerstate", out));
    m_server.link(association, *m_object, *m_object,
                  {{"PowerState", number(CMPI_uint16, "8")}, {"Other", null(CMPI_uint16)}});
    EXPECT_EQ("1,5,0", shown("powerstate", out));
    m_server.classes[association] = {
        {{"PowerState", {CMPI_uint16, {{"Values", {"On", "Off"}}, {"ValueMap", {"2", "8"}}}}},
         {"Other", {CMPI_uint16, {}}}}};
    EXPECT_EQ("ok", shown("powerstate", out));
    ASSERT_EQ(3U, out->ft->getArgCount(out.get(), nullptr));
    const CMPIData value = out->ft->getArg(out.get(), "powerstate", nullptr);
    EXPECT_EQ("8", cimValueText(value.type, value.value));
    const CMPIData values = out->ft->getArg(out.get(), "_values_", nullptr);
    ASSERT_NE(0, values.type & CMPI_ARRAY);
    const CMPIData off = values.value.array->ft->getElementAt(values.value.array, 1, nullptr);
    EXPECT_EQ("Off", cimValueText(off.type, off.value));
    EXPECT_EQ("ok", shown("Other", out));
    EXPECT_EQ(0U, out->ft->getArgCount(out.get(), nullptr));
    EXPECT_EQ("1,12,0", shown("nosuch", out));
    EXPECT_DEATH(pseudo("system", "show", {{"powerstate", ""}}), "outP");
}

TEST_F(MappingTest, TheTimeOfAServiceProcessorIsAskedOfItsTimeService) {
    const CimArgs out(native_new_CMPIArgs(nullptr));
    EXPECT_EQ("1,2,0", pseudo("sp", "show", {{"time", ""}}, out.get()));
    addAssociate("ZORM_SPHostedService", "ZORM_TimeService");
    EXPECT_EQ("ok", pseudo("sp", "show", {{"time", ""}}, out.get()));
    EXPECT_EQ(0U, out->ft->getArgCount(out.get(), nullptr));
    m_server.methods["ManageTime"] = [](CMPIArgs* given) {
        Data now({CMPI_dateTime, {"20200101000000.000000+000"}});
        given->ft->addArg(given, "TimeData", &now.get().value, CMPI_dateTime);
        return number(CMPI_uint32, "0");
    };
    EXPECT_EQ("ok", pseudo("sp", "show", {{"time", ""}}, out.get()));
    EXPECT_EQ("ZORM_TimeService ManageTime(GetRequest:0002=true;"
              "ManagedElement:1100=root/zorm:ZORM_Thing.Name=\"a\";)",
              lastCall());
    const CMPIData time = out->ft->getArg(out.get(), "time", nullptr);
    EXPECT_EQ("20200101000000.000000+000", cimValueText(time.type, time.value));
    m_server.methods["ManageTime"] = [](CMPIArgs*) { return number(CMPI_uint32, "1"); };
    EXPECT_EQ("1,7,2", pseudo("sp", "show", {{"time", ""}}, out.get()));
    EXPECT_EQ("ok", pseudo("sp", "set", {}));
}

TEST_F(MappingTest, APowerLimitIsAPositiveNumberOfWatts) {
    for (const Pairs& props :
         {Pairs{}, Pairs{{"limit", "0"}}, Pairs{{"limit", "-5"}}, Pairs{{"limit", ""}},
          Pairs{{"limit", "many"}}, Pairs{{"limit", "65536"}}, Pairs{{"other", "5"}},
          Pairs{{"limit", "5"}, {"limit", "6"}}})
        EXPECT_EQ("1,7,2", pseudo("pwrcurr", "set", props));
    EXPECT_EQ("1,2,0", pseudo("pwrcurr", "show", {{"limit", ""}}));
    EXPECT_TRUE(m_server.calls.empty());
    EXPECT_EQ("1,2,0", pseudo("pwrcurr", "set", {{"Limit", "400"}}));
    addAssociate("ZORM_PUMServiceAffectsElement", "ZORM_PUMService");
    EXPECT_EQ("ok", pseudo("pwrcurr", "set", {{"Limit", "400"}}));
    EXPECT_EQ("ZORM_PUMService RequestPowerUtilizationLimit(EnforceUtilizationLimit:0002=true;"
              "UtilizationLimit:0090=400;UtilizationLimitUnit:1600=watt;"
              "UtilizingElement:1100=root/zorm:ZORM_Thing.Name=\"a\";)",
              lastCall());
}

TEST_F(MappingTest, ASidebandModeGoesToTheServiceWithAllItsPorts) {
    for (const char* mode : {"1", "6", "", "x"})
        EXPECT_EQ("1,7,2", pseudo("netportcfgsvc", "set", {{"currentncsimode", mode}}));
    EXPECT_EQ("1,2,0", pseudo("netportcfgsvc", "show", {{"currentncsimode", ""}}));
    EXPECT_TRUE(m_server.calls.empty());
    EXPECT_EQ("1,2,0", pseudo("netportcfgsvc", "set", {{"currentncsimode", "2"}}));
    addAssociate("ZORM_EthServiceAffectsElement", "ZORM_EthernetPort");
    addAssociate("ZORM_EthServiceAffectsElement", "ZORM_OtherPort");
    EXPECT_EQ("ok", pseudo("netportcfgsvc", "set", {{"CurrentNCSIMode", "5"}}));
    EXPECT_EQ("ZORM_Thing RequestNCSIModeChange(RequestedNCSIMode:0090=5;EthernetPorts:3100="
              "[root/zorm:ZORM_EthernetPort.Name=\"ZORM_EthernetPort\","
              "root/zorm:ZORM_OtherPort.Name=\"ZORM_OtherPort\"];)",
              lastCall());
}

TEST_F(MappingTest, AnIpSettingIsAppliedByTheServiceOfItsEndpoint) {
    const fakecim::Object& endpoint =
        m_server.add({"ZORM_IPProtocolEndpoint", {{"Name", "e"}}, {}});
    const fakecim::Object setting = {"ZORM_Setting", {{"Name", "s"}}, {}};
    m_path.reset(newCMPIObjectPath("root/zorm", "ZORM_ElementSettingData", nullptr));
    for (const auto& [name, end] :
         {std::pair<const char*, const fakecim::Object*>("ManagedElement", &endpoint),
          {"SettingData", &setting}}) {
        const CimPath reference = end->path();
        reference->ft->setNameSpace(reference.get(), "");
        CMPIValue value = {};
        value.ref = reference.get();
        m_path->ft->addKey(m_path.get(), name, &value, CMPI_ref);
    }
    for (const Pairs& props :
         {Pairs{}, Pairs{{"iscurrent", "2"}}, Pairs{{"isnext", "1"}}, Pairs{{"iscurrent", "true"}}})
        EXPECT_EQ("1,7,2", pseudo("elementsettingdata", "set", props));
    EXPECT_EQ("ok", pseudo("elementsettingdata", "show", {{"iscurrent", ""}}));
    EXPECT_TRUE(m_server.calls.empty());
    EXPECT_EQ("1,2,0", pseudo("elementsettingdata", "set", {{"ISCURRENT", "1"}}));
    m_server.link("ZORM_IPServiceAffectsElement", endpoint,
                  m_server.add({"ZORM_IPConfigurationService", {{"Name", "c"}}, {}}));
    EXPECT_EQ("ok", pseudo("elementsettingdata", "set", {{"ISCURRENT", "1"}}));
    EXPECT_EQ("ZORM_IPConfigurationService ApplySettingToIPProtocolEndpoint("
              "Configuration:1100=root/zorm:ZORM_Setting.Name=\"s\";"
              "Endpoint:1100=root/zorm:ZORM_IPProtocolEndpoint.Name=\"e\";)",
              lastCall());
    m_path = m_object->path();
    EXPECT_DEATH(pseudo("elementsettingdata", "set", {{"iscurrent", "1"}}),
                 "ipendpt_ref.type==\\(\\(16\\+1\\)<<8\\) && ipendpt_ref.value.ref && ");
}

TEST_F(MappingTest, APseudoMethodIsForItsOwnTag) {
    using Operation = JobError* (CLPMapping::*)(const std::string&, CMPIObjectPath*,
                                                const std::string&, const Pairs&, CMPIArgs*);
    const std::pair<Operation, const char*> operations[] = {
        {&CLPMapping::SP_PseudoMethod, "sp"},
        {&CLPMapping::LOG_PseudoMethod, "log"},
        {&CLPMapping::SPLOG_PseudoMethod, "splog"},
        {&CLPMapping::PWRCURR_PseudoMethod, "pwrcurr"},
        {&CLPMapping::NETPORTCFGSVC_PseudoMethod, "netportcfgsvc"},
        {&CLPMapping::ELEMENTSETTINGDATA_PseudoMethod, "elementsettingdata"}};
    for (const auto& [operation, tag] : operations)
        EXPECT_DEATH((m_mapping.*operation)("system", m_path.get(), "set", {}, nullptr),
                     "ufct==\"" + std::string(tag) + "\"");
    EXPECT_DEATH(pseudo("sp", "show", {}), "static_cast<int>\\(props.size\\(\\)\\)==1");
    EXPECT_DEATH(pseudo("sp", "show", {{"time", ""}}), "outP");
    EXPECT_DEATH(m_mapping.smPseudoMethod(nullptr, "sp", "show", {}), "path");
}

TEST_F(MappingTest, ALogIsClearedByItsOwnMethod) {
    for (const char* tag : {"log", "splog"}) {
        EXPECT_EQ("ok", pseudo(tag, "clearlog", {{"logstate", "1"}}));
        EXPECT_EQ("ZORM_Thing ClearLog()", lastCall());
        m_server.calls.clear();
        EXPECT_EQ("ok", pseudo(tag, "show", {}));
        EXPECT_TRUE(m_server.calls.empty());
    }
    m_server.fail("invokeMethod", 2);
    EXPECT_EQ("1,2,0", pseudo("log", "clearlog", {}));
    EXPECT_EQ("ok", pseudo("fan", "clearlog", {}));
}

} // namespace
} // namespace velmora_clp
