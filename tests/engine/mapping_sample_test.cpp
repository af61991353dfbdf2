#include "tests/engine/address_session.h"

#include "velclp/core_misc.h"
#include "velclp/joberror.h"
#include "velclp/mapping.h"

#include <CimClientLib/native.h>
#include <gtest/gtest.h>

namespace velmora_clp {
namespace {

class MappingSampleTest : public testing::Test {
protected:
    MappingSampleTest()
        : m_simulator(ready()), m_session(m_simulator), m_mapping(m_session.client(), nullptr) {}

    const RunDirectory& ready() {
        m_directory.use();
        return m_directory;
    }
    CimPath object(const std::string& address) {
        const CimPaths paths(m_session.service().getCIMObjectPath(CLPAddrpath("/admin1", address)));
        return paths.empty() ? nullptr : cimClone(paths.front());
    }
    static std::string codes(JobError* error) {
        const std::unique_ptr<JobError> owned(error);
        return owned ? std::to_string(owned->getErrorCode()) + "," +
                           std::to_string(owned->getCimstatCode()) + "," +
                           std::to_string(owned->getSeverityCode())
                     : "ok";
    }
    // Writes one property as an operator types it.
    std::string set(const CimPath& path, const std::string& name, const std::string& value) {
        const CimClass cimClass(CLPMisc::getClass(m_session.client(), cimNameSpace(path.get()),
                                                  cimClassName(path.get())));
        CMPIData data = {};
        if (!CLPMisc::normalProperty(cimClass.get(), name, value, &data))
            return "no value";
        const CimData owned(data);
        const CLPMapping::PropertyMap props = {{name, &data}};
        return codes(m_mapping.smSetInstance(path.get(), &props));
    }
    std::string get(const CimPath& path, const std::string& name) {
        CimStatus status;
        const CimInstance instance(m_session.client()->ft->getInstance(
            m_session.client(), path.get(), 0, nullptr, status.out()));
        const CMPIData data = instance->ft->getProperty(instance.get(), name.c_str(), status.out());
        if ((data.state & CMPI_nullValue) != 0)
            return "NULL";
        if ((data.type & CMPI_ARRAY) == 0)
            return cimValueText(data.type, data.value);
        std::string all;
        CMPIArray* const array = data.value.array;
        for (CMPICount i = 0; i < array->ft->getSize(array, status.out()); ++i) {
            const CMPIData item = array->ft->getElementAt(array, i, status.out());
            all += (i ? "," : "") + cimValueText(item.type, item.value);
        }
        return all;
    }
    std::string pseudo(const CimPath& path, const char* ufct, const char* method,
                       const CLPMapping::TextPairs& props, CMPIArgs* out = nullptr) {
        return codes(m_mapping.smPseudoMethod(path.get(), ufct, method, props, out));
    }
    bool passes(const CimPath& path, const char* ufct,
                const std::map<std::string, std::string>& filters) {
        return CLPMisc::checkFilter(m_session.client(), path.get(), ufct, {}, filters);
    }

    RunDirectory m_directory;
    SimulatorProcess m_simulator;
    AddressSession m_session;
    CLPMapping m_mapping;
};

TEST_F(MappingSampleTest, APropertyThatIsWrittenReadsAsItWasTyped) {
    const CimPath user = object("/admin1/system1/sp1/user1");
    ASSERT_TRUE(user);
    struct {
        const char* name;
        const char* typed;
        const char* read;
    } const cases[] = {
        {"ElementName", "A <b> & \"c\" \xC3\xA4", "A <b> & \"c\" \xC3\xA4"},
        {"ElementName", " two  blanks ", " two  blanks "},
        {"maximumsessions", "65535", "65535"},
        {"Locked", "true", "true"},
        {"PasswordLastChange", "20250101000000.000000+000", "20250101000000.000000+000"},
        {"Roles", "guest,1", "administrator,guest"},
        {"Roles", "a:b:c", "a,b"}};
    for (const auto& c : cases) {
        EXPECT_EQ("ok", set(user, c.name, c.typed)) << c.name;
        EXPECT_EQ(c.read, get(user, c.name));
    }
    EXPECT_EQ("no value", set(user, "Locked", "maybe"));
    EXPECT_EQ("no value", set(user, "PasswordLastChange", "now"));
    EXPECT_EQ("a", get(user, "Roles").substr(0, 1));
}

TEST_F(MappingSampleTest, APropertyThatWasNullTakesAValue) {
    const CimPath user = object("/admin1/system1/sp1/user2");
    ASSERT_TRUE(user);
    ASSERT_EQ("NULL", get(user, "Description"));
    EXPECT_EQ("ok", set(user, "Description", "on call"));
    EXPECT_EQ("on call", get(user, "Description"));
}

TEST_F(MappingSampleTest, FiltersKnowValuesTheirTextsAndPseudoProperties) {
    const CimPath user = object("/admin1/system1/sp1/user1");
    EXPECT_TRUE(passes(user, "user", {{"userid", "admin"}, {"Roles", "administrator"}}));
    EXPECT_TRUE(passes(user, "user", {{"EnabledState", "2"}}));
    EXPECT_TRUE(passes(user, "user", {{"EnabledState", "Enabled"}}));
    EXPECT_FALSE(passes(user, "user", {{"EnabledState", "Disabled"}}));
    const CimPath system = object("/admin1/system1");
    EXPECT_TRUE(passes(system, "system", {{"powerstate", "2"}}));
    EXPECT_FALSE(passes(system, "system", {{"powerstate", "8"}}));
}

TEST_F(MappingSampleTest, PseudoPropertiesAreReadWithTheirTexts) {
    const CimArgs power(native_new_CMPIArgs(nullptr));
    EXPECT_EQ("ok", pseudo(object("/admin1/system1"), "system", "show", {{"powerstate", ""}},
                           power.get()));
    ASSERT_EQ(3U, power->ft->getArgCount(power.get(), nullptr));
    const CMPIData state = power->ft->getArgAt(power.get(), 0, nullptr, nullptr);
    EXPECT_EQ("2", cimValueText(state.type, state.value));
    const CimArgs time(native_new_CMPIArgs(nullptr));
    EXPECT_EQ("ok", pseudo(object("/admin1/system1/sp1"), "sp", "show", {{"currenttime", ""}},
                           time.get()));
    const CMPIData now = time->ft->getArgAt(time.get(), 0, nullptr, nullptr);
    EXPECT_EQ(CMPI_dateTime, now.type);
}

TEST_F(MappingSampleTest, MethodsOfOtherObjectsAreFoundAndCalled) {
    EXPECT_EQ("ok",
              pseudo(object("/admin1/system1/pwrcurr1"), "pwrcurr", "set", {{"limit", "450"}}));
    EXPECT_EQ("450", get(object("/admin1/system1/pwrcurr1"), "PowerLimit"));
    EXPECT_EQ("ok", pseudo(object("/admin1/system1/sp1/netportcfgsvc1"), "netportcfgsvc", "set",
                           {{"currentncsimode", "3"}}));
    EXPECT_EQ("3", get(object("/admin1/system1/sp1/ethport1"), "CurrentNCSIMode"));
    EXPECT_EQ("ok", pseudo(object("/admin1/system1"), "system", "stop", {}));
    const CimPaths settings(m_session.service().getCIMObjectPath_Assoc(
        "/admin1/system1/sp1/ethport1/ipendpt1", "elementsettingdata",
        "/admin1/system1/sp1/ethport1/ipendpt1/ipsettings2"));
    ASSERT_EQ(1U, settings.size());
    EXPECT_EQ("ok", pseudo(cimClone(settings.front()), "elementsettingdata", "set",
                           {{"iscurrent", "1"}}));
    EXPECT_EQ("1", get(cimClone(settings.front()), "IsCurrent"));
}

TEST_F(MappingSampleTest, ObjectsAreCreatedNumberedAndDeleted) {
    CMPIObjectPath* path = nullptr;
    CMPIInstance* instance = nullptr;
    m_mapping.smNewInstance("user", &path, &instance);
    const CimPath ownedPath(path);
    const CimInstance ownedInstance(instance);
    for (const auto& [name, text] : {std::pair("UserID", "guest"), {"Name", "guest"}}) {
        CimString value(native_new_CMPIString(text, nullptr));
        CMPIValue data = {};
        data.string = value.get();
        instance->ft->setProperty(instance, name, &data, CMPI_string);
    }
    CMPIObjectPath* made = nullptr;
    ASSERT_EQ("ok", codes(m_mapping.smCreateInstance(path, instance, &made)));
    const CimPath created(made);
    CLPAddrSVC& service = m_session.service();
    ASSERT_NE("", m_session.resolve("/admin1/system1/sp1"));
    EXPECT_TRUE(service.setUfip(CLPAddrpath("/", "/admin1/system1/sp1/user9"), made));
    EXPECT_EQ("/admin1/system1/sp1/user9", service.getUfip(made));
    EXPECT_EQ(textOf(made), m_session.resolve("/admin1/system1/sp1/user9"));
    EXPECT_EQ("", m_session.resolve("/admin1/system1/sp1/user30"));
    EXPECT_EQ("/admin1/system1/sp1/user9", service.getUfip(made));
    EXPECT_EQ("ok", codes(m_mapping.smDeleteInstance(made)));
    service.deleteUfip("/admin1/system1/sp1/user9");
    EXPECT_EQ("", m_session.resolve("/admin1/system1/sp1/user9"));
    EXPECT_EQ("1,6,0", codes(m_mapping.smDeleteInstance(made)));
}

TEST_F(MappingSampleTest, ALoginThatMayOnlyReadIsRefusedChanges) {
    CimStatus status;
    const CimClient reader(cmciConnect("127.0.0.1", "http", m_simulator.port().c_str(), "guest0001",
                                       nullptr, status.out()));
    CLPMapping mapping(reader.get(), nullptr);
    const CimPath service = object("/admin1/system1/sp1/daemon1");
    EXPECT_EQ("1,2,0", codes(mapping.smStopRSC(service.get())));
    EXPECT_EQ("ok", codes(m_mapping.smStopRSC(service.get())));
    EXPECT_EQ("3", get(service, "EnabledState"));
}

} // namespace
} // namespace velmora_clp
