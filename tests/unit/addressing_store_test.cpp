#include "tests/support/lock_file.h"
#include "tests/unit/address_fixture.h"

#include "database/faults.h"

#include <atomic>
#include <chrono>
#include <functional>
#include <sqlite3.h>
#include <thread>
#include <unistd.h>

namespace velmora_clp {
namespace {

using Lines = std::vector<std::string>;

class AddressStoreTest : public AddressFixture {
protected:
    AddressStoreTest() : m_service(m_server.client()) {}

    // Caches an object that is known by one key.
    void cache(const std::string& ufip, const std::string& cimclass, const std::string& id) {
        const fakecim::Object object = {cimclass, {{"InstanceID", id}}, {}};
        m_service.addCacheItem(ufip, object.path().get(), "root/zorm");
    }
    void cacheTree() {
        int id = 0;
        for (const char* ufip :
             {"/admin1", "/admin1/system1", "/admin1/system1/sp1", "/admin1/system1/sp1/splog1",
              "/admin1/system2", "/admin1/system10", "/admin1/system_x1", "/admin1/systemA1",
              "/admin1/systemlog1", "/admin1/system1a2", "/adminx/system3"})
            cache(ufip, "ZORM_Any", std::to_string(++id));
    }

    CLPAddrSVC m_service;
};

using AddressServiceTest = AddressFixture;

TEST_F(AddressServiceTest, TheFirstServiceOnAnEmptyDatabaseMakesTheRowCounter) {
    EXPECT_EQ("", counter("/"));
    CLPAddrSVC service(m_server.client());
    EXPECT_EQ(1, service.getNextSeq("/"));
    CLPAddrSVC second(m_server.client());
    EXPECT_EQ("/|1\n", m_directory.query("clp.db3", "SELECT * FROM addrsvc_seq"));
}

TEST_F(AddressStoreTest, CountersAreAddedOnceAndThenMoved) {
    EXPECT_EQ(-1, m_service.getNextSeq("/admin1/system"));
    EXPECT_TRUE(m_service.setNextSeq("/admin1/system", 4, true));
    EXPECT_FALSE(m_service.setNextSeq("/admin1/system", 9, true));
    EXPECT_EQ(4, m_service.getNextSeq("/admin1/system"));
    EXPECT_TRUE(m_service.setNextSeq("/admin1/system", 5, false));
    EXPECT_EQ(5, m_service.getNextSeq("/admin1/system"));
    EXPECT_TRUE(m_service.setNextSeq("/admin1/user", 5, false));
    EXPECT_EQ(-1, m_service.getNextSeq("/admin1/user"));
    EXPECT_DEATH(m_service.setNextSeq("/admin1/system", 0, false), "id>0");
}

TEST_F(AddressStoreTest, AnObjectIsWrittenWithItsKeysInOrderAndTakesTheNextRowNumber) {
    const fakecim::Object object = {
        "ZORM_Fan", {{"SystemName", "node's \"a\""}, {"Name", "x|y"}, {"Tag", ""}}, {}};
    EXPECT_EQ(0, m_service.addCacheItem("/admin1/oem_fan1", object.path().get(), "root/other"));
    cache("/admin1/oem_fan2", "ZORM_Fan", "2");
    EXPECT_EQ("/admin1/oem_fan1|ZORM_Fan|1|root/other\n/admin1/oem_fan2|ZORM_Fan|2|root/zorm\n",
              m_directory.query("clp.db3", "SELECT ufip,cimclass,id,ns FROM addrsvc_clp"));
    EXPECT_EQ("1|SystemName|node's \"a\"|5632\n1|Name|x|y|5632\n1|Tag||5632\n"
              "2|InstanceID|2|5632\n",
              m_directory.query("clp.db3", "SELECT id,name,value,type FROM addrsvc_cim"));
    EXPECT_EQ("3\n", counter("/"));
    const CimPath rebuilt(m_service.createCIMObjectPathFromDB(1, "ZORM_Fan", "root/other"));
    fakecim::Object inOther = object;
    inOther.ns = "root/other";
    EXPECT_NE(0, clp_sameCMPIObjectPath(rebuilt.get(), inOther.path().get()));
    EXPECT_DEATH(m_service.addCacheItem("", object.path().get(), ""),
                 "!ufip.empty\\(\\)&&objectpath");
}

TEST_F(AddressStoreTest, KeysOfEveryPlainTypeComeBackAsTheyWere) {
    CimPath path(newCMPIObjectPath("root/zorm", "ZORM_Fan", nullptr));
    const struct {
        const char* name;
        CMPIType type;
        const char* value;
    } keys[] = {{"U8", CMPI_uint8, "200"},          {"U16", CMPI_uint16, "65535"},
                {"S16", CMPI_sint16, "-5"},         {"S32", CMPI_sint32, "-2147483648"},
                {"U64", CMPI_uint64, "1999999999"}, {"S64", CMPI_sint64, "-7"},
                {"B", CMPI_boolean, "true"},        {"S", CMPI_string, "5"}};
    for (const auto& key : keys) {
        fakecim::Data data(fakecim::number(key.type, key.value));
        path->ft->addKey(path.get(), key.name, &data.get().value, key.type);
    }
    CMPIValue large = {};
    large.uint32 = 4294967295UL;
    path->ft->addKey(path.get(), "U32", &large, CMPI_uint32);
    m_service.addCacheItem("/admin1/oem_fan1", path.get(), "root/zorm");
    const CimPath rebuilt(m_service.createCIMObjectPathFromDB(1, "ZORM_Fan", "root/zorm"));
    EXPECT_NE(0, clp_sameCMPIObjectPath(path.get(), rebuilt.get()));
    EXPECT_EQ("/admin1/oem_fan1", m_service.getUfipFromCache(path.get()));
}

TEST_F(AddressStoreTest, AKeyThatIsAReferenceCostsNothingButTheObject) {
    CimPath path(newCMPIObjectPath("root/zorm", "ZORM_Fan", nullptr));
    const CimPath other = m_admin->path();
    CMPIValue value = {};
    value.ref = other.get();
    path->ft->addKey(path.get(), "Element", &value, CMPI_ref);
    m_service.addCacheItem("/admin1/oem_fan1", path.get(), "root/zorm");
    const CimPath rebuilt(m_service.createCIMObjectPathFromDB(1, "ZORM_Fan", "root/zorm"));
    const CMPIData key = rebuilt->ft->getKeyAt(rebuilt.get(), 0, nullptr, nullptr);
    EXPECT_EQ(CMPI_string, key.type);
    EXPECT_EQ("root/zorm:ZORM_AdminDomain.Name=\"root\"", cimValueText(key.type, key.value));
}

TEST_F(AddressStoreTest, AFailedStatementLeavesNothingOfAnObject) {
    // The transaction, the counter and the row pass; the key fails.
    for (int statement = 1; statement <= 6; ++statement) {
        dbfaults::failStatement(statement, SQLITE_IOERR);
        cache("/admin1/oem_fan1", "ZORM_Fan", "x");
        dbfaults::clear();
        EXPECT_EQ("0|0|1\n",
                  m_directory.query("clp.db3", "SELECT (SELECT count(*) FROM addrsvc_clp),"
                                               "(SELECT count(*) FROM addrsvc_cim),next "
                                               "FROM addrsvc_seq"))
            << statement;
    }
    cache("/admin1/oem_fan1", "ZORM_Fan", "x");
    EXPECT_EQ("/admin1/oem_fan1\n", addresses());
}

TEST_F(AddressStoreTest, ACounterAtItsEndGivesOutNothingMore) {
    for (const char* counter : {"/", "/admin1/system"})
        m_service.setNextSeq(counter, 2147483647, counter[1] != 0);
    cache("/admin1/oem_fan1", "ZORM_Fan", "x");
    addSystem("a");
    EXPECT_EQ("", resolve(m_service, "system2147483647"));
    EXPECT_EQ("", addresses());
    m_service.setNextSeq("/", 1, false);
    EXPECT_EQ("", resolve(m_service, "system1"));
    const fakecim::Object other = {"ZORM_ComputerSystem", {{"Name", "b"}}, {}};
    EXPECT_TRUE(m_service.setUfip(CLPAddrpath("/admin1", "system*"), other.path().get()));
    EXPECT_EQ("/admin1\n", addresses());
    EXPECT_TRUE(m_service.setUfip(CLPAddrpath("/admin1", "system5"), other.path().get()));
    EXPECT_EQ("/admin1\n/admin1/system5\n", addresses());
    EXPECT_EQ("2147483647\n", counter("/admin1/system"));
    // A damaged one starts again.
    m_directory.execute("clp.db3", "UPDATE addrsvc_seq SET next=-7 WHERE ufip='/admin1/system'");
    EXPECT_EQ("a", resolve(m_service, "system1"));
}

TEST_F(AddressStoreTest, ASecondObjectUnderTheSameAddressIsRefused) {
    cache("/admin1/oem_fan1", "ZORM_Fan", "x");
    cache("/admin1/oem_fan1", "ZORM_Fan", "y");
    EXPECT_EQ("1|InstanceID|x\n",
              m_directory.query("clp.db3", "SELECT id,name,value FROM addrsvc_cim"));
    EXPECT_EQ("2\n", counter("/"));
}

TEST_F(AddressStoreTest, AClassAddressTakesItsInstancesInTheOrderOfTheirRowsAndNothingElse) {
    cacheTree();
    const auto cached = [&](const char* address) {
        return names(m_service.getCacheItem(CLPAddrpath("/", address)));
    };
    EXPECT_EQ("2 5 6", cached("/admin1/system*"));
    EXPECT_EQ("1", cached("/admin*"));
    EXPECT_EQ("3", cached("/admin1/system1/sp*"));
    EXPECT_EQ("6", cached("/admin1/system10"));
    EXPECT_EQ("", cached("/admin1/system3"));
    EXPECT_EQ("", cached("/admin1/nosuch1"));
    EXPECT_EQ("", cached("/"));
    EXPECT_EQ(0U, m_server.calls.size());
}

TEST_F(AddressStoreTest, AnAddressWithAQuoteIsLookedUpAsItStands) {
    cacheTree();
    CLPAddrpath path("/", "/");
    ASSERT_TRUE(path.setPath("/", "/x'OR'1/system1"));
    EXPECT_TRUE(m_service.getCacheItem(path).empty());
}

TEST_F(AddressStoreTest, DeletingAnAddressTakesItsRowAndKeysAlone) {
    cacheTree();
    m_service.deleteUfip("/admin1/system9");
    m_service.deleteUfip("");
    m_service.deleteUfip("no address");
    EXPECT_EQ("11\n", m_directory.query("clp.db3", "SELECT count(*) FROM addrsvc_clp"));
    m_service.deleteUfip("/system1");
    m_service.deleteUfip("/admin1/system1/sp1/log1");
    EXPECT_EQ("/admin1\n/admin1/system1/sp1\n/admin1/system2\n/admin1/system10\n"
              "/admin1/system_x1\n/admin1/systemA1\n/admin1/systemlog1\n/admin1/system1a2\n"
              "/adminx/system3\n",
              addresses());
    EXPECT_EQ("9\n", m_directory.query("clp.db3", "SELECT count(*) FROM addrsvc_cim"));
}

TEST_F(AddressStoreTest, EmptyingAClassTakesItsInstancesWithAllBelowAndNoOtherClass) {
    cacheTree();
    m_service.setNextSeq("/admin1/system1/sp", 2, true);
    m_service.emptyCacheUfct("", "");
    m_service.emptyCacheUfct("/admin1", "system");
    EXPECT_EQ("/admin1\n/admin1/system_x1\n/admin1/systemA1\n/admin1/systemlog1\n"
              "/admin1/system1a2\n/adminx/system3\n",
              addresses());
    EXPECT_EQ("6\n", m_directory.query("clp.db3", "SELECT count(*) FROM addrsvc_cim"));
    EXPECT_EQ("2\n", counter("/admin1/system1/sp"));
}

TEST_F(AddressStoreTest, ListsOfWhatIsCachedAreInUserFormAndMakeNoCall) {
    cacheTree();
    EXPECT_EQ((Lines{"/admin1/system1", "/admin1/system2", "/admin1/system10"}),
              m_service.selectUfip("/admin1/system"));
    EXPECT_EQ((Lines{"/admin1/system1/sp1/log1"}),
              m_service.selectUfip("/admin1/system1/sp1/splog"));
    EXPECT_EQ((Lines{"system1", "system2", "system10", "system_x1", "systemA1", "systemlog1",
                     "system1a2"}),
              m_service.selectSubTargets("/admin1/"));
    EXPECT_EQ((Lines{"system_x1"}), m_service.selectSubTargets("/admin1/system_"));
    EXPECT_EQ((Lines{"system1", "system10", "system1a2"}),
              m_service.selectSubTargets("/admin1/system1"));
    EXPECT_EQ((Lines{"log1"}), m_service.selectSubTargets("/admin1/system1/sp1/s"));
    EXPECT_EQ((Lines{"admin1"}), m_service.selectSubTargets("/"));
    EXPECT_EQ(Lines{}, m_service.selectSubTargets("/admin1/%"));
    EXPECT_EQ(0U, m_server.calls.size());
}

TEST_F(AddressStoreTest, AFailedQueryGivesTheNeutralAnswer) {
    cacheTree();
    dbfaults::failStatement(1, SQLITE_IOERR, 100);
    EXPECT_EQ(-1, m_service.getNextSeq("/"));
    EXPECT_FALSE(m_service.setNextSeq("/", 2, false));
    EXPECT_TRUE(m_service.getCacheItem(CLPAddrpath("/", "/admin1")).empty());
    EXPECT_EQ(nullptr, m_service.createCIMObjectPathFromDB(1, "ZORM_Any", "root/zorm"));
    EXPECT_TRUE(m_service.selectUfip("/admin1/system").empty());
    EXPECT_EQ("", m_service.getUfipFromCache(m_admin->path().get()));
    m_service.deleteUfip("/admin1/system1");
    m_service.emptyCacheUfct("/admin1", "system");
    dbfaults::clear();
    EXPECT_EQ("11\n", m_directory.query("clp.db3", "SELECT count(*) FROM addrsvc_clp"));
}

TEST_F(AddressStoreTest, TheLockIsSharedForReadingADynamicClassAndNotTakenForAStaticOne) {
    // What the work waits for: 0 for no lock of another process, 1 for that of a writer, 2 for
    // that of a reader too.
    const auto waitsFor = [&](const std::function<void()>& work) {
        int waits = 0;
        for (const int operation : {LOCK_EX, LOCK_SH}) {
            ForeignLock lock(operation);
            std::atomic<bool> done{false};
            std::thread worker([&] {
                work();
                done = true;
            });
            for (int i = 0; i < 30 && !done; ++i)
                std::this_thread::sleep_for(std::chrono::milliseconds(2));
            waits += done ? 0 : 1;
            lock.release();
            worker.join();
        }
        return waits;
    };
    const auto cached = [&](const char* address) {
        CimPaths(m_service.getCacheItem(CLPAddrpath("/", address)));
    };
    const auto object = [](const char* cimclass) {
        return fakecim::Object{cimclass, {{"InstanceID", "x"}}, {}}.path();
    };
    EXPECT_EQ(0, waitsFor([&] { m_service.getNextSeq("/admin1/system"); }));
    EXPECT_EQ(1, waitsFor([&] { m_service.getNextSeq("/admin1/system1/sp1/user"); }));
    EXPECT_EQ(0, waitsFor([&] { m_service.selectUfip("/admin1/system"); }));
    EXPECT_EQ(1, waitsFor([&] { m_service.selectUfip("/admin1/system1/sp1/user"); }));
    EXPECT_EQ(1, waitsFor([&] { m_service.selectSubTargets("/admin1/"); }));
    EXPECT_EQ(0, waitsFor([&] { cached("/admin1/system*"); }));
    EXPECT_EQ(1, waitsFor([&] { cached("/admin1/system1/sp1/user1"); }));
    EXPECT_EQ(0, waitsFor([&] { CimPath(m_service.createCIMObjectPathFromDB(9, "zorm_sp", "")); }));
    EXPECT_EQ(0, waitsFor([&] { m_service.getUfipFromCache(object("ZORM_SP").get()); }));
    EXPECT_EQ(0, waitsFor([&] { m_service.getUfipFromCache(object("ACME_Any").get()); }));
    EXPECT_EQ(1, waitsFor([&] { m_service.getUfipFromCache(object("ZORM_Account").get()); }));
    EXPECT_EQ(1, waitsFor([&] { m_service.getUfipFromCacheForSEL(object("ZORM_SP").get()); }));
    // A refresh that finds nothing to write.
    const fakecim::Object& sp = addBelow(addSystem("a"), "ZORM_Part", "ZORM_SP", "sp");
    addBelow(sp, "ZORM_User", "ZORM_Account", "u");
    resolve(m_service, "system1/sp1/user1");
    const auto refresh = [&](const char* ufip, const fakecim::Object& parent,
                             const char* association, const char* tag) {
        m_service.refreshCacheUfct(ufip, parent.path().get(), association, tag);
    };
    EXPECT_EQ(0, waitsFor([&] { refresh("/admin1", *m_admin, "zorm_has", "system"); }));
    EXPECT_EQ(2, waitsFor([&] { refresh("/admin1/system1/sp1", sp, "zorm_user", "user"); }));
    EXPECT_EQ(2, waitsFor([&] { m_service.setNextSeq("/admin1/system", 2, false); }));
    EXPECT_EQ(2, waitsFor([&] { cache("/admin1/system1", "ZORM_Any", "1"); }));
    EXPECT_EQ(2, waitsFor([&] { m_service.deleteUfip("/admin1/system1"); }));
    EXPECT_EQ(2, waitsFor([&] { m_service.emptyCacheUfct("/admin1", "system"); }));
}

void loseTheLockFile() {
    const RunDirectory directory;
    directory.write("schema.conf", addressSchema);
    directory.use();
    directory.execute("clp.db3", "INSERT INTO addrsvc_seq VALUES('/',1)");
    fakecim::Server server;
    CLPAddrSVC service(server.client());
    unlink(directory.file("schema.conf").c_str());
    service.emptyCacheUfct("/admin1", "system");
    try {
        service.setNextSeq("/", 2, false);
    } catch (const char* text) {
        std::fputs(text, stderr);
        std::exit(3);
    }
}

TEST(AddressStoreDeathTest, ALockFileThatIsGoneFailsAWriteButNotTheEmptyingOfAClass) {
    // In a process of its own, which has no lock file open yet.
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(loseTheLockFile(), testing::ExitedWithCode(3), "Open process lock file failed.");
}

// The service's layout is part of its interface: the client and the connection alone.
static_assert(sizeof(CLPAddrSVC) == 3 * sizeof(void*) &&
              std::has_virtual_destructor<CLPAddrSVC>::value);

TEST(AddressStoreDeathTest, AServiceNeedsAClientAndASchemaARoot) {
    RunDirectory directory;
    directory.use();
    EXPECT_DEATH(CLPAddrSVC(nullptr), "cc!=__null");
    directory.write("schema.conf", "[zorm_fan]\n(fan_1)\n(end)\n[end]\n");
    fakecim::Server server;
    EXPECT_DEATH(CLPAddrSVC(server.client()), "p!=m_classTree.end\\(\\)");
}

} // namespace
} // namespace velmora_clp
