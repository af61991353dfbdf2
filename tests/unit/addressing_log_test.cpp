// What the address service tells in the log, and at which level; and that no statement that it
// tells of searches a table row by row.
#include "tests/unit/address_fixture.h"

#include "database/faults.h"
#include "log/osalog.h"

#include <algorithm>
#include <functional>
#include <set>
#include <sqlite3.h>
#include <sstream>

namespace velmora_clp {
namespace {

class AddressLogTest : public AddressFixture {
protected:
    AddressLogTest() {
        osalog_set_file(m_directory.file("log"));
        osalog_set_level(OSALOG_TRACE);
    }
    ~AddressLogTest() override {
        dbfaults::clear();
        osalog_set_level(OSALOG_FAILURE);
        osalog_set_file("");
    }

    // All records so far: level, function without what all of them begin with, and text.
    std::multiset<std::string> records() const {
        std::multiset<std::string> all;
        std::istringstream log(m_directory.read("log"));
        for (std::string line; std::getline(log, line);) {
            std::istringstream words(line);
            std::string time, process, level, function, place, text;
            words >> time >> process >> level >> function >> place;
            std::getline(words, text);
            all.insert(level + " " + function.substr(function.rfind('.') + 1) + text);
        }
        return all;
    }
    void expectLogged(std::initializer_list<const char*> texts) const {
        const auto all = records();
        for (const char* text : texts)
            EXPECT_LT(0U, all.count(text)) << text;
        osalog_set_file("");
        m_directory.write("log", "");
        osalog_set_file(m_directory.file("log"));
    }
    fakecim::Object& addSensor(const fakecim::Object& parent) {
        return addBelow(parent, "ZORM_Device", "ZORM_Sensor", "s",
                        {{"SensorNumber", fakecim::number(CMPI_uint16, "7")}});
    }
};

TEST_F(AddressLogTest, TellsTheWayToAnObject) {
    CLPAddrSVC service(m_server.client());
    expectLogged({"5 CLPAddrSVC Enter", "5 CLPAddrSVC set seq of / to 1", "5 setNextSeq Add seq!",
                  "3 getNextSeq ufip=[/],next=[-1]", "5 CLPAddrSVC Leave"});
    addBelow(addSystem("a"), "ZORM_Part", "ZORM_SP", "sp");
    resolve(service, "system1/sp1");
    expectLogged({"5 refreshCache Refresh parent cache!", "5 refreshCache refresh admin",
                  "5 getUfctFromObject Just one ufct=[sp]"});
    fakecim::Object& gone = addSystem("b");
    resolve(service, "system9/sp1");
    m_server.remove(gone);
    resolve(service, "system9");
    expectLogged({"5 refreshCacheUfct The object is in cache!",
                  "5 refreshCacheUfct [4] is not in cimom",
                  "5 refreshCache Has no parent after refresh!"});
    resolve(service, "sp1");
    resolve(service, "nosuch1");
    service.refreshCache(CLPAddrpath("/", "/admin1/nosuch1"));
    service.getCacheItem(CLPAddrpath("/", "/nosuch1"));
    service.refreshCacheUfct("/admin1", m_admin->path().get(), "zorm_has", "nosuch");
    expectLogged({"1 refreshCache parent=[zorm_computersystem] in schema is not same as p_cimclass",
                  "5 refreshCache Has no cimclass in schema!",
                  "5 getCacheItem ufct is not in schema",
                  "1 refreshCacheUfct With cimclass in schema!"});
    m_server.fail("associatorNames");
    resolve(service, "system9");
    m_server.onCall = nullptr;
    m_server.links.clear();
    resolve(service, "system9");
    expectLogged({"1 refreshCacheUfct status.rc=[1]",
                  "1 refreshCacheUfct Has no instance after associatorNames|enumerate!"});
    service.objectExistInCIMOM(nullptr, nullptr);
    service.getUfisFromCIMObjectPath(m_admin->path().get(), "Missing");
    m_server.fail("getInstance");
    service.getUfisFromCIMObjectPath(m_admin->path().get(), "Missing");
    expectLogged({"5 objectExistInCIMOM Input is NULL!",
                  "1 getUfisFromCIMObjectPath failed to get property!",
                  "1 getUfisFromCIMObjectPath failed to get instance!"});
}

TEST_F(AddressLogTest, TellsTheWayBackToAnAddress) {
    CLPAddrSVC service(m_server.client());
    const fakecim::Object& a = addSystem("a");
    fakecim::Object& sensor = addSensor(a);
    service.getUfip(sensor.path().get());
    expectLogged(
        {"5 getUfipFromCIMOM Parent is root!", "5 getUfipFromCIMOM Get parent ufip from cimom!",
         "3 getUfipFromCIMOM ufip from cache=[/admin1/system1/sensor7]",
         "3 getUfipFromCache ufip in db=[/admin1/system1]", "5 getUfipFromCache same objectpath!",
         "3 getUfctFromObject default ufct=[system]", "5 getUfctFromObject without filter!",
         "1 getUfctFromObject status.rc=[12]"});
    sensor.properties["SensorNumber"] = fakecim::number(CMPI_uint16, "8");
    service.getUfipFromCache(sensor.path().get());
    m_directory.execute("clp.db3", "UPDATE addrsvc_clp SET ufip='/nosuch1' WHERE ufip='/admin1'");
    service.getUfipFromCache(m_admin->path().get());
    service.getUfip(fakecim::Object{"ZORM_Fan", {{"InstanceID", "x"}}, {}}.path().get());
    m_server.fail("associatorNames");
    service.getUfip(fakecim::Object{"ZORM_Fan", {{"InstanceID", "x"}}, {}}.path().get());
    m_server.fail("getInstance");
    service.getUfctFromObject(a.path().get(), "zorm_computersystem");
    expectLogged({"5 getUfipFromCache ufit is not same!", "5 getUfipFromCache fail to get cimcalss",
                  "1 getUfipFromCIMOM Has no instance after associatorNames!",
                  "1 getUfipFromCIMOM status.rc=[1]",
                  "1 getUfctFromObject object has no instance!"});
    m_server.onCall = nullptr;
    service.setUfip(CLPAddrpath("/", "/nosuch1"), sensor.path().get());
    service.setUfip(CLPAddrpath("/", "/admin1/system1/sensor1"), sensor.path().get());
    expectLogged({"1 setUfip ufct is ilegal!", "5 setUfip ufit property=[sensornumber]",
                  "3 setUfip aufip=[/admin1/system1/sensor8]"});
}

TEST_F(AddressLogTest, TellsOfFiltersAndAssociations) {
    CLPAddrSVC service(m_server.client());
    const fakecim::Object& a = addSystem("a");
    addBelow(a, "ZORM_Device", "ZORM_Fan", "f");
    const auto match = [&](const char* name) {
        fakecim::Data two(fakecim::number(CMPI_uint16, "2"));
        service.matchFilter("zorm_computersystem", name, two.get(), "enabled");
    };
    match("State");
    m_server.classes["ZORM_ComputerSystem"] = {
        {{"State", {CMPI_uint16, {{"Values", {"Enabled", "Off"}}, {"ValueMap", {"2", "3"}}}}},
         {"Plain", {CMPI_uint16, {}}},
         {"NoValues", {CMPI_uint16, {{"ValueMap", {"2"}}}}},
         {"NoMap", {CMPI_uint16, {{"Values", {"Enabled"}}}}},
         {"Empty", {CMPI_uint16, {{"Values", {}}, {"ValueMap", {}}}}}}};
    for (const char* name : {"State", "Plain", "NoValues", "NoMap", "Empty"})
        match(name);
    expectLogged({"5 matchFilter Match!", "5 matchFilter Not match!",
                  "5 matchFilter failed to get class!",
                  "5 matchFilter failed to getPropertyQualifierCount!",
                  "5 matchFilter failed to getPropertyQualifier,values!",
                  "5 matchFilter failed to getPropertyQualifier,valuesmap!",
                  "5 matchFilter has no value in values and valuesmap!"});
    const auto tie = [&](const char* one, const char* other) {
        const CimPaths found(service.getCIMObjectPath_Assoc(one, "device", other));
    };
    tie("/admin1/system1", "/admin1/system1/oem_fan1");
    tie("/admin1/system2", "");
    tie("/admin1/system1", "/admin1/system2");
    m_server.fail("getInstance");
    tie("/admin1/system1", "/admin1/system1/oem_fan1");
    expectLogged({"5 getCIMObjectPath_Assoc after referenceNames!",
                  "5 getCIMObjectPath_Assoc Find the assoc instance!",
                  "5 getCIMObjectPath_Assoc ref1 has no instance!",
                  "5 getCIMObjectPath_Assoc ref2 has no instance!",
                  "5 getCIMObjectPath_Assoc Has no assoc this time"});
}

TEST_F(AddressLogTest, TellsWhichOperationTheDatabaseFailed) {
    CLPAddrSVC service(m_server.client());
    dbfaults::failStatement(1, SQLITE_CONSTRAINT, 1000);
    service.getNextSeq("/");
    service.setNextSeq("/", 2, false);
    service.addCacheItem("/admin1", m_admin->path().get(), "root/zorm");
    service.deleteUfip("/admin1");
    service.emptyCacheUfct("/admin1", "system");
    expectLogged({"1 getNextSeq Catch the cdbc_ex=[constraint failed]",
                  "1 setNextSeq Catch the cdbc_ex=[constraint failed]",
                  "1 addCacheItem Catch the cdbc_ex=[constraint failed]",
                  "1 deleteUfip cdbc_ex=[constraint failed]",
                  "1 emptyCacheUfct Catch the cdbc_ex=[constraint failed]"});
}

TEST_F(AddressLogTest, EveryOperationBeginsAndEndsAndItsStatementsFindTheirRowsThroughAnIndex) {
    fakecim::Object& a = addSystem("a");
    const fakecim::Object& sp = addBelow(a, "ZORM_Part", "ZORM_SP", "sp");
    const fakecim::Object& user = addBelow(sp, "ZORM_User", "ZORM_Account", "u");
    const fakecim::Object& log = addBelow(a, "ZORM_Log", "ZORM_RecordLog", "log");
    const fakecim::Object& record = addBelow(log, "ZORM_Record", "ZORM_SELLogEntry", "r");
    {
        CLPAddrSVC service(m_server.client());
        service.hasTarget(CLPAddrpath("/admin1", "system1/sp1/user1"));
        service.getUfip(record.path().get());
        service.selectUfip("/admin1/system");
        service.selectSubTargets("/admin1/");
        service.setUfip(CLPAddrpath("/admin1", "system1/sp1/user*"), user.path().get());
        service.getUfipFromCache(fakecim::Object{"ZORM_Fan", {}, {}}.path().get());
        CimPath(service.createCIMObjectPathFromDB(1, "zorm_any", "root/zorm"));
        service.deleteUfip("/admin1/system1/sp1/user1");
        m_server.remove(a);
        addSystem("b");
        resolve(service, "system9");
        service.emptyCacheUfct("/admin1", "system");
    }
    int statements = 0;
    const auto all = records();
    for (const std::string& one : all) {
        const std::string::size_type sql = one.find("sql statement=[");
        if (sql != std::string::npos && one.find("INSERT") == std::string::npos) {
            ++statements;
            const std::string text = one.substr(sql + 15, one.size() - sql - 16);
            const std::string plan = m_directory.query("clp.db3", "EXPLAIN QUERY PLAN " + text);
            EXPECT_EQ(std::string::npos, plan.find("SCAN addrsvc")) << text << "\n" << plan;
            EXPECT_EQ(std::string::npos, plan.find("SCAN c")) << text << "\n" << plan;
        }
        if (one.size() > 6 && one.substr(one.size() - 6) == " Enter") {
            const std::string leave = one.substr(0, one.size() - 5) + "Leave";
            EXPECT_EQ(all.count(one), all.count(leave)) << one;
        }
    }
    EXPECT_LT(60, statements);
}

TEST_F(AddressLogTest, AnObjectWhoseKeysAllStandInManyOthersIsFoundByItsClass) {
    const fakecim::Object& a = addSystem("a");
    CLPAddrSVC own(m_server.client());
    resolve(own, "system1");
    m_directory.execute(
        "clp.db3",
        "WITH RECURSIVE n(i) AS (SELECT 100 UNION ALL SELECT i+1 FROM n WHERE i<120) INSERT INTO "
        "addrsvc_clp SELECT '/admin1/system1/fan'||i,'ZORM_Fan',i,'root/zorm' FROM n;"
        "INSERT INTO addrsvc_cim SELECT c.id,'System'||k.name,k.value,k.type FROM addrsvc_clp c, "
        "addrsvc_cim k JOIN addrsvc_clp s ON s.id=k.id "
        "WHERE c.cimclass='ZORM_Fan' AND s.ufip='/admin1/system1'");
    EXPECT_EQ("/admin1/system1", own.getUfip(a.path().get()));
    const auto all = records();
    EXPECT_TRUE(std::any_of(all.begin(), all.end(), [](const std::string& one) {
        return one.find("WHERE c.cimclass='ZORM_ComputerSystem'") != std::string::npos;
    }));
}

} // namespace
} // namespace velmora_clp
