#include "tests/unit/address_fixture.h"

namespace velmora_clp {
namespace {

class AddressReverseTest : public AddressFixture {
protected:
    AddressReverseTest() : m_service(m_server.client()) {}

    std::string ufip(const fakecim::Object& object, bool normal = true) {
        return m_service.getUfip(object.path().get(), true, normal);
    }
    bool set(const std::string& address, const fakecim::Object& object) {
        return m_service.setUfip(CLPAddrpath("/admin1", address), object.path().get());
    }
    CMPIData* data(const fakecim::Value& value) { return &m_data.emplace_back(value).get(); }

    std::deque<fakecim::Data> m_data;
    CLPAddrSVC m_service;
};

TEST_F(AddressReverseTest, ACachedObjectGivesItsAddressWithoutACall) {
    const fakecim::Object& a = addSystem("a");
    const fakecim::Object& b = addSystem("b");
    resolve(m_service, "system1");
    m_server.calls.clear();
    EXPECT_EQ("/admin1/system1", ufip(a));
    EXPECT_EQ("/admin1/system2", ufip(b));
    EXPECT_TRUE(m_server.calls.empty());
    // Case counts in values alone.
    fakecim::Object other = b;
    other.cimclass = "zorm_COMPUTERSYSTEM";
    other.keys = {{"NAME", "b"}, {"creationclassname", "ZORM_ComputerSystem"}};
    EXPECT_EQ("/admin1/system2", m_service.getUfipFromCache(other.path().get()));
    other.keys[0].second = "B";
    EXPECT_EQ("", m_service.getUfipFromCache(other.path().get()));
    other = b;
    other.ns = "ROOT/zorm";
    EXPECT_EQ("/admin1/system2", m_service.getUfipFromCache(other.path().get()));
    other.ns = "root/other";
    EXPECT_EQ("", m_service.getUfipFromCache(other.path().get()));
    other.keys.pop_back();
    EXPECT_EQ("", m_service.getUfipFromCache(other.path().get()));
}

TEST_F(AddressReverseTest, AnUnknownObjectIsNumberedByRefreshingTheLevelsAboveIt) {
    const fakecim::Object& a = addSystem("a");
    const fakecim::Object& sp = addBelow(a, "ZORM_Part", "ZORM_SP", "sp");
    addBelow(sp, "ZORM_SPLog", "ZORM_EventLog", "log 1");
    const fakecim::Object& log = addBelow(sp, "ZORM_SPLog", "ZORM_EventLog", "log 2");
    EXPECT_EQ("/admin1/system1/sp1/log2", ufip(log));
    EXPECT_EQ("/admin1/system1/sp1/splog2", ufip(log, false));
    EXPECT_EQ("/admin1\n/admin1/system1\n/admin1/system1/sp1\n/admin1/system1/sp1/splog1\n"
              "/admin1/system1/sp1/splog2\n",
              addresses());
}

TEST_F(AddressReverseTest, AnObjectWithSeveralParentsStandsUnderTheFirstThatIsNamed) {
    const fakecim::Object& a = addSystem("a");
    const fakecim::Object& b = addSystem("b");
    const fakecim::Object& fan = addBelow(b, "ZORM_Device", "ZORM_Fan", "fan");
    m_server.link("ZORM_Device", a, fan);
    EXPECT_EQ("/admin1/system2/oem_fan1", ufip(fan));
}

TEST_F(AddressReverseTest, AnObjectOfAnotherPrefixIsOneOfTheGeneralModel) {
    fakecim::Object& foreign = m_server.add({"ACME_ComputerSystem", {{"Name", "x"}}, {}});
    m_server.link("ZORM_Has", *m_admin, foreign);
    EXPECT_EQ("/admin1/system1", ufip(foreign));
    EXPECT_EQ("ACME_ComputerSystem\n",
              m_directory.query("clp.db3", "SELECT cimclass FROM addrsvc_clp WHERE id=2"));
    for (const char* unknown : {"ACME_Toaster", "Toaster", "_Toaster", ""})
        EXPECT_EQ("", ufip({unknown, {{"Name", "x"}}, {}})) << unknown;
}

TEST_F(AddressReverseTest, AnObjectWithoutAKnownParentHasNoAddress) {
    addSystem("a");
    const fakecim::Object& lost = m_server.add({"ZORM_Fan", {{"InstanceID", "lost"}}, {}});
    EXPECT_EQ("", ufip(lost));
    EXPECT_EQ("", ufip({"ZORM_Orphan", {{"Name", "x"}}, {}}));
    m_server.fail("associatorNames");
    EXPECT_EQ("", ufip(*std::next(m_server.objects.begin())));
    EXPECT_DEATH(m_service.getUfip(nullptr), "path");
}

TEST_F(AddressReverseTest, ANumberThatTheObjectHasChangedMeansNoAddressInTheCache) {
    fakecim::Object& sensor = addBelow(addSystem("a"), "ZORM_Device", "ZORM_Sensor", "s",
                                       {{"SensorNumber", fakecim::number(CMPI_uint16, "7")}});
    EXPECT_EQ("/admin1/system1/sensor7", ufip(sensor));
    sensor.properties["SensorNumber"] = fakecim::number(CMPI_uint16, "9");
    EXPECT_EQ("", m_service.getUfipFromCache(sensor.path().get()));
    EXPECT_EQ("/admin1/system1/sensor9", ufip(sensor));
}

TEST_F(AddressReverseTest, ALogRecordIsFoundByItsInstanceIdAlone) {
    const fakecim::Object& log = addBelow(addSystem("a"), "ZORM_Log", "ZORM_RecordLog", "log");
    const fakecim::Object& record = addBelow(log, "ZORM_Record", "ZORM_SELLogEntry", "r1");
    EXPECT_EQ("/admin1/system1/log1/record1", ufip(record));
    m_server.calls.clear();
    fakecim::Object sameId = record;
    sameId.ns = "root/other";
    sameId.keys.emplace_back("More", "x");
    EXPECT_EQ("/admin1/system1/log1/record1", ufip(sameId));
    EXPECT_TRUE(m_server.calls.empty());
    EXPECT_EQ("", m_service.getUfipFromCacheForSEL(
                      fakecim::Object{"ZORM_SELLogEntry", {{"Other", "r1"}}, {}}.path().get()));
}

TEST_F(AddressReverseTest, ACommonKeyValueOfManyObjectsDoesNotHideTheOne) {
    // All keys but one are alike, and that one is not the first or the last.
    const auto fan = [](int i) {
        return fakecim::Object{
            "ZORM_Fan", {{"System", "s"}, {"Name", std::to_string(i)}, {"Kind", "k"}}, {}};
    };
    for (int i = 1; i <= 300; ++i)
        m_service.addCacheItem("/admin1/oem_fan" + std::to_string(i), fan(i).path().get(),
                               "root/zorm");
    EXPECT_EQ("/admin1/oem_fan299", m_service.getUfipFromCache(fan(299).path().get()));
    EXPECT_EQ("", m_service.getUfipFromCache(fan(301).path().get()));
}

TEST_F(AddressReverseTest, AValueThatStandsInSeveralKeysFindsTheObjectOnce) {
    const fakecim::Object twin = {"ZORM_Fan", {{"System", "x"}, {"Name", "x"}, {"Tag", "x"}}, {}};
    const fakecim::Object keyless = {"ZORM_Fan", {}, {}};
    m_service.addCacheItem("/admin1/oem_fan1", keyless.path().get(), "root/zorm");
    m_service.addCacheItem("/admin1/oem_fan2", twin.path().get(), "root/zorm");
    EXPECT_EQ("/admin1/oem_fan2", m_service.getUfipFromCache(twin.path().get()));
    EXPECT_EQ("/admin1/oem_fan1", m_service.getUfipFromCache(keyless.path().get()));
}

TEST_F(AddressReverseTest, ADamagedAddressInTheDatabaseIsPassedOver) {
    const fakecim::Object& a = addSystem("a");
    resolve(m_service, "system1");
    for (const std::string damaged : {"", "system", "/nosuch1", "/admin1/''", "/"}) {
        m_directory.execute("clp.db3", "UPDATE addrsvc_clp SET ufip='" + damaged + "' WHERE id=2");
        EXPECT_EQ("", m_service.getUfipFromCache(a.path().get())) << damaged;
    }
}

TEST_F(AddressReverseTest, ACreatedObjectTakesTheNumberThatWasAskedForOrTheNextFreeOne) {
    const auto account = [](const char* name) {
        return fakecim::Object{"ZORM_Account", {{"InstanceID", name}}, {}};
    };
    const std::string key = "/admin1/system1/sp1/user";
    const auto numbered = [&](const char* suffix, const char* name) {
        EXPECT_TRUE(set(std::string("system1/sp1/user") + suffix, account(name)));
        return m_service.getUfipFromCache(account(name).path().get());
    };
    EXPECT_EQ(key + "1", numbered("*", "a"));
    EXPECT_EQ("2\n", counter(key));
    EXPECT_EQ(key + "2", numbered("*", "b"));
    EXPECT_EQ(key + "7", numbered("7", "c"));
    EXPECT_EQ("8\n", counter(key));
    EXPECT_EQ(key + "5", numbered("05", "d"));
    EXPECT_EQ("8\n", counter(key));
    EXPECT_EQ(key + "8", numbered("8", "e"));
    EXPECT_EQ("9\n", counter(key));
    // Another session has numbered it already: it keeps that number.
    EXPECT_EQ(key + "2", numbered("30", "b"));
    EXPECT_EQ(std::string::npos, addresses().find("user30"));
    EXPECT_FALSE(set("nosuch1", account("f")));
    EXPECT_FALSE(set("system1/sp1/user2147483647", account("f")));
    EXPECT_FALSE(set("system1/sp1/user99999999999", account("f")));
    EXPECT_DEATH(m_service.setUfip(CLPAddrpath("/", "/admin1"), nullptr), "object");
}

TEST_F(AddressReverseTest, ACreatedObjectThatIsNumberedByAPropertyIgnoresTheNumberAskedFor) {
    const fakecim::Object& sensor =
        m_server.add({"ZORM_Sensor",
                      {{"InstanceID", "s"}},
                      {{"SensorNumber", fakecim::number(CMPI_uint32, "31")}}});
    EXPECT_TRUE(set("system1/sensor5", sensor));
    EXPECT_EQ("/admin1/system1/sensor31\n", addresses());
}

TEST_F(AddressReverseTest, AnExplicitFirstNumberStartsTheCounterBehindIt) {
    EXPECT_TRUE(set("system1/sp1/log4", {"ZORM_EventLog", {{"InstanceID", "x"}}, {}}));
    EXPECT_EQ("/admin1/system1/sp1/splog4\n", addresses());
    EXPECT_EQ("5\n", counter("/admin1/system1/sp1/splog"));
}

TEST_F(AddressReverseTest, AFilterMatchesTheRawValueOrItsTextInAnyCase) {
    m_server.classes["ZORM_ComputerSystem"] = {
        {{"State",
          {CMPI_uint16, {{"Values", {"Enabled", "Off", "Late"}}, {"ValueMap", {"2", "3"}}}}},
         {"Twice", {CMPI_uint16, {{"Values", {"Off", "Enabled"}}, {"ValueMap", {"2", "2"}}}}},
         {"Half", {CMPI_uint16, {{"Values", {"Enabled"}}}}},
         {"Plain", {CMPI_string, {}}},
         {"Empty", {CMPI_uint16, {{"Values", {}}, {"ValueMap", {}}}}}}};
    const auto matches = [&](const char* name, const fakecim::Value& value, const char* filter) {
        return m_service.matchFilter("zorm_computersystem", name, *data(value), filter);
    };
    const auto two = fakecim::number(CMPI_uint16, "2");
    EXPECT_TRUE(matches("State", two, "2"));
    EXPECT_TRUE(matches("State", two, "enabled"));
    EXPECT_EQ("12", m_server.calls.back().detail);
    EXPECT_TRUE(matches("Twice", two, "enabled"));
    EXPECT_FALSE(matches("State", two, "Enabled"));
    EXPECT_FALSE(matches("State", two, "off"));
    EXPECT_TRUE(matches("Plain", fakecim::text("BLADE"), "blade"));
    EXPECT_FALSE(matches("Plain", fakecim::text("BLADE"), "rack"));
    EXPECT_FALSE(matches("Half", two, "enabled"));
    EXPECT_FALSE(matches("Empty", two, "enabled"));
    EXPECT_TRUE(matches("Plain", fakecim::texts({"a", "b"}), "a"));
    EXPECT_FALSE(matches("Plain", fakecim::texts({"a", "b"}), "b"));
    EXPECT_FALSE(matches("Plain", fakecim::texts({}), "a"));
    EXPECT_FALSE(matches("Plain", fakecim::null(CMPI_stringA), "null"));
    EXPECT_FALSE(matches("Plain", fakecim::null(CMPI_string), "null"));
    EXPECT_FALSE(matches("State", fakecim::null(CMPI_uint16), "0"));
    m_server.classes.clear();
    EXPECT_FALSE(matches("State", two, "enabled"));
}

TEST_F(AddressReverseTest, AnObjectOfAClassWithOneTagIsNotRead) {
    EXPECT_EQ("oem_fan",
              m_service.getUfctFromObject(
                  fakecim::Object{"ZORM_Fan", {{"InstanceID", "x"}}, {}}.path().get(), "zorm_fan"));
    EXPECT_TRUE(m_server.calls.empty());
    EXPECT_DEATH(m_service.getUfctFromObject(m_admin->path().get(), "zorm_unknown"), "n>0");
}

} // namespace
} // namespace velmora_clp
