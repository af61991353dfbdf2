#include "tests/unit/fake_cim.h"
#include "tests/unit/schema_file.h"

#include "mapping/cimvalue.h"

#include <gtest/gtest.h>

namespace velmora_clp {
namespace {

using fakecim::arrayOfTexts;
using fakecim::Data;
using fakecim::null;
using fakecim::number;
using fakecim::text;
using fakecim::texts;

// The text that a text becomes as a value of a type; "-" for none.
std::string normal(CMPIType type, const std::string& value, CMPIArray* values = nullptr,
                   CMPIArray* valuesmap = nullptr) {
    CMPIData data = {};
    data.type = type;
    if (!CLPMisc::normalValue(value, data.value, type, values, valuesmap))
        return "-";
    const std::string shown = cimValueText(type, data.value);
    if (type == CMPI_dateTime)
        CimDateTime(data.value.dateTime).reset();
    else if ((type & CMPI_ENC) != 0)
        CimString(data.value.string).reset();
    return shown;
}

TEST(NormalValueTest, TextBecomesAValueOfTheType) {
    struct {
        CMPIType type;
        const char* text;
        const char* value;
    } const cases[] = {
        {CMPI_string, "a <b> & c", "a <b> & c"},
        {CMPI_string, "", ""},
        {CMPI_numericString, "12", "12"},
        {CMPI_boolean, "true", "true"},
        {CMPI_boolean, "false", "false"},
        {CMPI_boolean, "True", "-"},
        {CMPI_boolean, "1", "-"},
        {CMPI_boolean, "", "-"},
        {CMPI_uint8, "200", "200"},
        {CMPI_uint8, "256", "0"},
        {CMPI_uint8, "-1", "255"},
        {CMPI_sint8, "200", "-56"},
        {CMPI_uint16, "65536", "0"},
        {CMPI_sint16, "-32768", "-32768"},
        {CMPI_uint32, "2147483647", "2147483647"},
        {CMPI_uint32, "2147483648", "2147483647"},
        {CMPI_uint32, "-1", "4294967295"},
        {CMPI_sint32, "-1", "-1"},
        {CMPI_sint32, "-99999999999", "-2147483648"},
        {CMPI_uint64, "-1", "18446744073709551615"},
        {CMPI_sint64, "-1", "-1"},
        {CMPI_sint64, "99999999999999999999", "2147483647"},
        {CMPI_uint32, "abc", "0"},
        {CMPI_uint32, "12abc", "12"},
        {CMPI_real32, "3.25", "3.25"},
        {CMPI_real64, "-1e3", "-1000"},
        {CMPI_real64, "x", "0"},
        {CMPI_dateTime, "20200101000000.000000+000", "20200101000000.000000+000"},
        {CMPI_dateTime, "00000000000000.000000:000", "00000000000000.000000:000"},
        {CMPI_dateTime, "yesterday", "-"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(c.value, normal(c.type, c.text)) << c.text << " as " << c.type;
}

TEST(NormalValueTest, ADisplayTextStandsForItsCode) {
    const CimArray values = arrayOfTexts({"Enabled", "On", "Late"});
    const CimArray valuemap = arrayOfTexts({"2", "true"});
    EXPECT_EQ("2", normal(CMPI_uint16, "Enabled", values.get(), valuemap.get()));
    EXPECT_EQ("0", normal(CMPI_uint16, "enabled", values.get(), valuemap.get()));
    EXPECT_EQ("7", normal(CMPI_uint16, "7", values.get(), valuemap.get()));
    EXPECT_EQ("true", normal(CMPI_boolean, "On", values.get(), valuemap.get()));
    EXPECT_EQ("0", normal(CMPI_uint16, "Late", values.get(), valuemap.get()));
    EXPECT_EQ("-", normal(CMPI_dateTime, "Enabled", values.get(), valuemap.get()));
    EXPECT_EQ("Enabled", normal(CMPI_string, "Enabled", values.get(), nullptr));
}

TEST(NormalValueDeathTest, ReferencesAndCharactersCannotBeTyped) {
    EXPECT_DEATH(normal(CMPI_ref, "x"), "Assertion `false'");
    EXPECT_DEATH(normal(CMPI_char16, "x"), "Assertion `false'");
    EXPECT_DEATH(normal(CMPI_stringA & CMPI_ARRAY, "x"), "type&~\\(\\(1\\)<<13\\)");
}

class PropertyTest : public testing::Test {
protected:
    PropertyTest() {
        const std::map<std::string, std::vector<std::string>> states = {
            {"Values", {"Enabled", "Disabled"}}, {"ValueMap", {"2", "3"}}};
        m_model.properties = {
            {"Name", {CMPI_string, {}}},        {"State", {CMPI_uint16, states}},
            {"States", {CMPI_uint16A, states}}, {"Half", {CMPI_uint16, {{"Values", {"Enabled"}}}}},
            {"Flags", {CMPI_booleanA, {}}},     {"Roles", {CMPI_stringA, {}}},
            {"Times", {CMPI_dateTimeA, {}}},    {"Owner", {CMPI_ref, {}}}};
        m_server.classes["ZORM_Thing"] = m_model;
        m_class.reset(fakecim::Class::make(m_model));
    }

    // The value as text, elements joined by commas and unset ones as "_"; "-" for none.
    std::string normal(const char* name, const std::string& value) {
        CMPIData data = {};
        if (!CLPMisc::normalProperty(m_class.get(), name, value, &data)) {
            EXPECT_EQ(CMPI_nullValue, data.state);
            EXPECT_EQ(nullptr, data.value.array);
            return "-";
        }
        if (!isArray(data.type)) {
            const CimString owned(data.type == CMPI_string ? data.value.string : nullptr);
            return cimValueText(data.type, data.value);
        }
        const CimArray array(data.value.array);
        std::string all;
        for (unsigned int i = 0; i < arraySize(array.get()); ++i) {
            const CMPIData item = array->ft->getElementAt(array.get(), i, nullptr);
            all += (i ? "," : "") + (hasValue(item) ? dataText(item) : "_");
        }
        return all;
    }

    fakecim::ClassModel m_model;
    fakecim::Server m_server;
    CimClass m_class;
};

TEST_F(PropertyTest, TextBecomesAPropertyByItsTypeAndTexts) {
    EXPECT_EQ("x:y,3", normal("name", "x:y,3"));
    EXPECT_EQ("3", normal("State", "Disabled"));
    EXPECT_EQ("0", normal("Half", "Enabled"));
    EXPECT_EQ("-", normal("Times", "now"));
}

TEST_F(PropertyTest, ArraysAreWrittenItemByItemWithOrWithoutPlaces) {
    EXPECT_EQ("x,y,_", normal("Roles", "x:y"));
    EXPECT_EQ("x,_", normal("Roles", "x"));
    EXPECT_EQ("_,_,_,_,_,x", normal("Roles", "x,5"));
    EXPECT_EQ("_,b,_,a", normal("Roles", "a,3:b,1"));
    EXPECT_EQ("b,_,_", normal("Roles", "a,0:b,0"));
    EXPECT_EQ("a,,c,_", normal("Roles", "a::c"));
    EXPECT_EQ("a,_,c,_", normal("Roles", "a:1,2,3:c"));
    EXPECT_EQ("x,_", normal("Roles", "x,"));
    EXPECT_EQ("3,2,_", normal("States", "Disabled:2"));
    EXPECT_EQ("true,false,_", normal("Flags", "true:false"));
    EXPECT_EQ("-", normal("Flags", "true:maybe"));
    EXPECT_EQ("-", normal("Roles", "x,-1"));
    EXPECT_EQ("-", normal("Roles", "x,65536"));
    EXPECT_EQ("-", normal("Roles", "x,999999999999999999999"));
    EXPECT_EQ("20200101000000.000000+000,_", normal("Times", "20200101000000.000000+000"));
}

TEST_F(PropertyTest, AClassIsAskedForItsPropertiesTypesAndTexts) {
    EXPECT_TRUE(CLPMisc::checkProperty(m_class.get(), "name"));
    EXPECT_FALSE(CLPMisc::checkProperty(m_class.get(), "Name"));
    EXPECT_FALSE(CLPMisc::checkProperty(m_class.get(), "nosuch"));
    EXPECT_FALSE(CLPMisc::checkProperty(m_class.get(), ""));
    EXPECT_EQ(CMPI_uint16A, CLPMisc::getPropertyType(m_class.get(), "states"));
    EXPECT_EQ(nullptr, CLPMisc::getPropertyQualify(m_class.get(), "Name", "Values"));
    const CimArray map(CLPMisc::getPropertyQualify(m_class.get(), "State", "Valuemap"));
    EXPECT_EQ("3", elementText(map.get(), 1));
    EXPECT_EQ("NULL", elementText(map.get(), 2));
    EXPECT_DEATH(CLPMisc::getPropertyType(m_class.get(), "nosuch"), "!status.rc");
    EXPECT_DEATH(normal("Owner", "x"), "Assertion `false'");

    EXPECT_EQ(nullptr, CLPMisc::getClass(m_server.client(), "root/zorm", "ZORM_Nothing"));
    const CimClass read(CLPMisc::getClass(m_server.client(), "root/zorm", "zorm_thing"));
    EXPECT_TRUE(CLPMisc::checkProperty(read.get(), "owner"));
    EXPECT_EQ("4", m_server.calls.back().detail);
    const fakecim::Object object = {"ZORM_Thing", {{"Name", "a"}}, {}};
    EXPECT_EQ((std::vector<std::string>{"Name", "State", "States", "Half", "Flags", "Roles",
                                        "Times", "Owner"}),
              CLPMisc::getPropertyNames(m_server.client(), object.path().get()));
}

TEST_F(PropertyTest, APropertyOfAnObjectIsReadAsText) {
    const fakecim::Object& object =
        m_server.add({"ZORM_Thing",
                      {{"Name", "a"}},
                      {{"State", number(CMPI_uint16, "2")},
                       {"None", null(CMPI_uint32)},
                       {"List", texts({"x"})},
                       {"Time", {CMPI_dateTime, {"20200101000000.000000+000"}}}}});
    const CimPath path = object.path();
    const auto read = [&](const char* name) {
        return CLPMisc::getProperty(m_server.client(), path.get(), name);
    };
    EXPECT_EQ("a", read("name"));
    EXPECT_EQ("2", read("State"));
    EXPECT_EQ("NULL", read("None"));
    EXPECT_EQ("", read("List"));
    const CimDateTime time(CLPMisc::getProperty_DataTime(m_server.client(), path.get(), "Time"));
    EXPECT_EQ("20200101000000.000000+000",
              cimText(CimString(time->ft->getStringFormat(time.get(), nullptr)).get()));
    EXPECT_DEATH(read("nosuch"), "!status.rc");
    EXPECT_DEATH(CLPMisc::getProperty(nullptr, path.get(), "Name"), "op!=__null&&cc!=__null");
    EXPECT_DEATH(CLPMisc::getProperty_DataTime(m_server.client(), path.get(), "State"),
                 "data.type==\\(\\(16\\+8\\)<<8\\)");
    CimStatus status;
    const CimInstance instance(m_server.client()->ft->getInstance(m_server.client(), path.get(), 0,
                                                                  nullptr, status.out()));
    EXPECT_TRUE(CLPMisc::checkSelectProperty(instance.get(), "Name", "a"));
    EXPECT_FALSE(CLPMisc::checkSelectProperty(instance.get(), "Name", "A"));
    EXPECT_FALSE(CLPMisc::checkSelectProperty(instance.get(), "State", "2"));
}

TEST_F(PropertyTest, PropertiesAreWrittenAloneByOneCallThatMustNotFail) {
    const CimPath path = m_server.add({"ZORM_Thing", {{"Name", "a"}}, {}}).path();
    Data state(number(CMPI_uint16, "3"));
    Data name(text("b"));
    const std::map<std::string, CMPIData*> props = {{"State", &state.get()}, {"Name", &name.get()}};
    EXPECT_EQ(CMPI_RC_OK, CLPMisc::setProperty(m_server.client(), path.get(), props));
    ASSERT_EQ(1U, m_server.calls.size());
    EXPECT_EQ("setInstance", m_server.calls.back().operation);
    EXPECT_EQ("Name:1600=b;State:0090=3;", m_server.calls.back().detail);
    EXPECT_DEATH(CLPMisc::setProperty(m_server.client(), nullptr, props), "op!=__null&&cc!=__null");
    EXPECT_DEATH(CLPMisc::setProperty(m_server.client(), path.get(), {}),
                 "props.empty\\(\\)==false");
    EXPECT_DEATH(CLPMisc::setProperty(m_server.client(), path.get(), {{"State", nullptr}}),
                 "p->second");
    m_server.onCall = [](const fakecim::Call&) { return CMPI_RC_ERR_ACCESS_DENIED; };
    EXPECT_DEATH(CLPMisc::setProperty(m_server.client(), path.get(), props), "status.rc==0");
}

TEST(EqualPropertyValueTest, TheRawTextOrTheOneShownForItMustBeTheSame) {
    const CimArray values = arrayOfTexts({"Enabled", "Disabled", "Twice"});
    const CimArray valuemap = arrayOfTexts({"2", "3", "2"});
    const auto equal = [&](const fakecim::Value& value, const char* wanted, bool mapped = true) {
        Data data(value);
        return CLPMisc::equalPropertyValue(data.get(), wanted, mapped ? values.get() : nullptr,
                                           mapped ? valuemap.get() : nullptr);
    };
    const auto two = number(CMPI_uint16, "2");
    EXPECT_TRUE(equal(two, "2"));
    EXPECT_TRUE(equal(two, "Enabled"));
    EXPECT_FALSE(equal(two, "enabled"));
    EXPECT_FALSE(equal(two, "Twice"));
    EXPECT_FALSE(equal(two, "Enabled", false));
    EXPECT_FALSE(equal(number(CMPI_uint16, "5"), "Enabled"));
    EXPECT_TRUE(equal(texts({"a", "b"}), "a"));
    EXPECT_FALSE(equal(texts({"a", "b"}), "b"));
    EXPECT_TRUE(equal({CMPI_uint16A, {"3", "2"}}, "Disabled"));
    EXPECT_FALSE(equal({CMPI_uint16A, {"3", "2"}}, "Enabled"));
    EXPECT_FALSE(equal(texts({}), "a"));
    EXPECT_FALSE(equal(null(CMPI_uint16), "0"));
    EXPECT_TRUE(equal(null(CMPI_uint16), "NULL"));
    EXPECT_FALSE(equal(null(CMPI_stringA), "CMPIArray"));
    std::string shown = "before";
    EXPECT_FALSE(CLPMisc::MapValue("9", shown, valuemap.get(), values.get()));
    EXPECT_FALSE(CLPMisc::MapValue("2", shown, valuemap.get(), nullptr));
    EXPECT_FALSE(CLPMisc::MapValue("2", shown, arrayOfTexts({}).get(), values.get()));
    EXPECT_EQ("before", shown);
}

TEST(SameObjectPathTest, NamesMatchInAnyCaseAndKeysAsTheyStand) {
    const auto path = [](const char* ns, const char* name,
                         std::vector<std::pair<std::string, std::string>> keys) {
        return fakecim::Object{name, std::move(keys), {}, ns}.path();
    };
    const CimPath one = path("root/zorm", "ZORM_Fan", {{"A", "x"}, {"B", "y"}});
    const auto same = [&](const CimPath& other) {
        const int forward = clp_sameCMPIObjectPath(one.get(), other.get());
        EXPECT_EQ(forward, clp_sameCMPIObjectPath(other.get(), one.get()));
        return forward != 0;
    };
    EXPECT_TRUE(same(path("root/ZORM", "zorm_FAN", {{"b", "y"}, {"a", "x"}})));
    EXPECT_FALSE(same(path("root/zorm", "ZORM_Fan", {{"A", "x"}, {"B", "Y"}})));
    EXPECT_FALSE(same(path("root/zorm", "ZORM_Fan", {{"A", "x"}, {"C", "y"}})));
    EXPECT_FALSE(same(path("root/zorm", "ZORM_Fan", {{"A", "x"}})));
    EXPECT_FALSE(same(path("root/other", "ZORM_Fan", {{"A", "x"}, {"B", "y"}})));
    EXPECT_FALSE(same(path("root/zorm", "ZORM_Fan2", {{"A", "x"}, {"B", "y"}})));
    CimPath typed = path("root/zorm", "ZORM_Fan", {{"A", "x"}});
    CMPIValue value = {};
    typed->ft->addKey(typed.get(), "B", &value, CMPI_uint16);
    EXPECT_FALSE(same(typed));
    EXPECT_NE(
        0, clp_sameCMPIObjectPath(path("", "ZORM_Fan", {}).get(), path("", "zorm_fan", {}).get()));
    EXPECT_EQ(0, clp_sameCMPIObjectPath(one.get(), nullptr));
}

class FilterTest : public testing::Test {
protected:
    FilterTest() {
        const std::map<std::string, std::vector<std::string>> states = {{"Values", {"On", "Off"}},
                                                                        {"ValueMap", {"2", "8"}}};
        m_server.classes["ZORM_ComputerSystem"] = {
            {{"Name", {CMPI_string, {}}}, {"State", {CMPI_uint16, states}}}};
        m_server.classes["ZORM_CSAssociatedPowerManagementService"] = {
            {{"PowerState", {CMPI_uint16, states}}}};
        m_system = &m_server.add(
            {"ZORM_ComputerSystem", {{"Name", "a"}}, {{"State", number(CMPI_uint16, "2")}}});
        const auto& service = m_server.add({"ZORM_PowerManagementService", {{"Name", "p"}}, {}});
        m_server.link("ZORM_CSAssociatedPowerManagementService", *m_system, service,
                      {{"PowerState", number(CMPI_uint16, "8")}});
    }

    bool passes(const std::vector<std::string>& names,
                const std::map<std::string, std::string>& filters, const char* ufct = "system") {
        return CLPMisc::checkFilter(m_server.client(), m_system->path().get(), ufct, names,
                                    filters);
    }

    SchemaFile m_schema{"[zorm_computersystem]\n(system_1)\npseudo_properties=powerstate:other\n"
                        "(end)\n(sp_1)\npseudo_properties=time\n(end)\n[end]\n"};
    fakecim::Server m_server;
    fakecim::Object* m_system;
};

TEST_F(FilterTest, AnObjectPassesWithAllNamesAndAllValues) {
    EXPECT_TRUE(passes({}, {}));
    EXPECT_TRUE(m_server.calls.empty());
    EXPECT_TRUE(passes({"NAME", "PowerState"}, {}));
    EXPECT_EQ("12", m_server.calls.front().detail);
    EXPECT_FALSE(passes({"Name", "nosuch"}, {}));
    EXPECT_TRUE(passes({}, {{"name", "a"}, {"State", "On"}}));
    EXPECT_TRUE(passes({}, {{"State", "2"}}));
    EXPECT_FALSE(passes({}, {{"State", "on"}}));
    EXPECT_FALSE(passes({}, {{"Name", "b"}, {"State", "On"}}));
    EXPECT_FALSE(passes({}, {{"nosuch", "a"}}));
    EXPECT_FALSE(passes({"nosuch"}, {{"Name", "a"}}));
}

TEST_F(FilterTest, APseudoPropertyIsReadByItsMethodAndHasItsTexts) {
    EXPECT_TRUE(passes({}, {{"powerstate", "8"}}));
    EXPECT_TRUE(passes({}, {{"PowerState", "Off"}}));
    EXPECT_FALSE(passes({}, {{"powerstate", "On"}}));
    EXPECT_FALSE(passes({}, {{"other", "1"}}));
    // The time service gives no time.
    m_server.link("ZORM_SPHostedService", *m_system,
                  m_server.add({"ZORM_TimeService", {{"Name", "t"}}, {}}));
    EXPECT_FALSE(passes({}, {{"time", ""}}, "sp"));
}

TEST_F(FilterTest, AClassOrObjectThatCannotBeReadFails) {
    for (const char* operation : {"getClass", "getInstance", "referenceNames"}) {
        m_server.fail(operation);
        EXPECT_FALSE(passes({"Name"}, {{"powerstate", "8"}})) << operation;
    }
}

} // namespace
} // namespace velmora_clp
