// The n-th statement of an operation of the address service fails, for every n: what is in the
// database stays sound, and the next try brings every object to the number that it would have had.
#include "tests/unit/address_fixture.h"

#include "database/cdbc.h"
#include "database/faults.h"

#include <functional>
#include <sqlite3.h>

namespace velmora_clp {
namespace {

class AddressStatementsTest : public AddressFixture {
protected:
    using Work = std::function<void(CLPAddrSVC&)>;

    ~AddressStatementsTest() override { dbfaults::clear(); }

    // All that the cache holds, but for the numbers of its rows.
    std::string cache() const {
        return m_directory.query(
            "clp.db3", "SELECT c.ufip,k.name,k.value FROM addrsvc_clp c LEFT JOIN addrsvc_cim k ON "
                       "k.id=c.id UNION ALL SELECT 'counter '||ufip,next,'' FROM addrsvc_seq WHERE "
                       "ufip<>'/' ORDER BY 1,2");
    }
    // An object without keys, keys without an object, one under two addresses.
    std::string unsound() const {
        return m_directory.query(
            "clp.db3", "SELECT 'bare',id FROM addrsvc_clp WHERE id NOT IN "
                       "(SELECT id FROM addrsvc_cim) UNION ALL SELECT 'lost',id FROM addrsvc_cim "
                       "WHERE id NOT IN (SELECT id FROM addrsvc_clp) UNION ALL "
                       "SELECT 'double',value FROM addrsvc_cim WHERE name<>'CreationClassName' "
                       "GROUP BY value HAVING count(*)>1");
    }

    // As a command does it: on a service of its own, whose failure is the command's.
    void run(const Work& work) {
        try {
            CLPAddrSVC own(m_server.client());
            work(own);
        } catch (const CDBC_Exception&) {
        }
    }
    // Prepares the cache anew; runs the work with a failure at the n-th statement and as many
    // behind it as count says, and then without. Whether the failure came up.
    bool failAt(int n, int count, const Work& prepare, const Work& work) {
        m_directory.execute("clp.db3", "PRAGMA synchronous=OFF; BEGIN; DELETE FROM addrsvc_clp; "
                                       "DELETE FROM addrsvc_cim; DELETE FROM addrsvc_seq; COMMIT");
        run(prepare);
        dbfaults::failStatement(n, n % 2 == 0 ? SQLITE_FULL : SQLITE_BUSY, count);
        run(work);
        const bool came = dbfaults::happened() > 0;
        dbfaults::clear();
        EXPECT_EQ("", unsound());
        run(work);
        EXPECT_EQ("", unsound());
        return came;
    }
    void failEveryStatement(const Work& prepare, const Work& work) {
        failAt(1000000, 1, prepare, work);
        const std::string expected = cache();
        for (const int count : {1, 1000000}) {
            int n = 1;
            for (; failAt(n, count, prepare, work); ++n) {
                SCOPED_TRACE(std::to_string(count) + " from statement " + std::to_string(n) +
                             " on");
                ASSERT_EQ(expected, cache());
            }
            EXPECT_LT(3, n);
        }
    }
};

TEST_F(AddressStatementsTest, AWalkToATargetIsMadeUpForByTheNext) {
    const fakecim::Object& a = addSystem("a");
    addSystem("b");
    const fakecim::Object& sp = addBelow(a, "ZORM_Part", "ZORM_SP", "sp");
    addBelow(sp, "ZORM_User", "ZORM_Account", "u1");
    addBelow(sp, "ZORM_User", "ZORM_Account", "u2");
    failEveryStatement([](CLPAddrSVC&) {}, [&](CLPAddrSVC& s) { resolve(s, "system1/sp1/user2"); });
    EXPECT_NE(std::string::npos, cache().find("/admin1/system1/sp1/user2|InstanceID|u2"));
}

TEST_F(AddressStatementsTest, AnObjectThatIsMetFromBelowIsNumberedAsItWouldHaveBeen) {
    const fakecim::Object& a = addSystem("a");
    addBelow(a, "ZORM_Device", "ZORM_Sensor", "s7",
             {{"SensorNumber", fakecim::number(CMPI_uint16, "7")}});
    const CimPath sensor = addBelow(a, "ZORM_Device", "ZORM_Sensor", "s12",
                                    {{"SensorNumber", fakecim::number(CMPI_uint16, "12")}})
                               .path();
    failEveryStatement([](CLPAddrSVC&) {}, [&](CLPAddrSVC& s) { s.getUfip(sensor.get()); });
    EXPECT_NE(std::string::npos, cache().find("/admin1/system1/sensor12|InstanceID|s12"));
}

TEST_F(AddressStatementsTest, AVanishedObjectGoesWholeAndItsNumberIsNotGivenOutAgain) {
    fakecim::Object& a = addSystem("a");
    const fakecim::Object& sp = addBelow(a, "ZORM_Part", "ZORM_SP", "sp");
    addBelow(sp, "ZORM_User", "ZORM_Account", "u1");
    addSystem("b");
    const std::list<fakecim::Object> before = m_server.objects;
    const auto links = m_server.links;
    m_server.remove(a);
    addSystem("c");
    std::list<fakecim::Object> after = m_server.objects;
    failEveryStatement(
        [&](CLPAddrSVC& s) {
            m_server.objects = before;
            m_server.links = links;
            EXPECT_EQ("u1", resolve(s, "system1/sp1/user1"));
        },
        [&](CLPAddrSVC& s) {
            m_server.objects = after;
            m_server.links.clear();
            for (const fakecim::Object& system : after)
                if (system.cimclass == "ZORM_ComputerSystem")
                    m_server.link("ZORM_Has", after.front(), system);
            resolve(s, "system9");
        });
    EXPECT_EQ("/admin1\n/admin1/system2\n/admin1/system3\n", addresses());
    EXPECT_EQ("4\n", counter("/admin1/system"));
}

TEST_F(AddressStatementsTest, ACreatedAndADeletedObjectLeaveAllOrNothing) {
    const fakecim::Object& sp = addBelow(addSystem("a"), "ZORM_Part", "ZORM_SP", "sp");
    addBelow(sp, "ZORM_User", "ZORM_Account", "u1");
    const CimPath created = addBelow(sp, "ZORM_User", "ZORM_Account", "u2").path();
    const auto prepare = [&](CLPAddrSVC& s) { resolve(s, "system1/sp1/user2"); };
    failEveryStatement([](CLPAddrSVC&) {},
                       [&](CLPAddrSVC& s) {
                           s.setUfip(CLPAddrpath("/admin1", "system1/sp1/user7"), created.get());
                       });
    EXPECT_EQ("/admin1/system1/sp1/user7\n", addresses());
    failEveryStatement(prepare, [&](CLPAddrSVC& s) { s.deleteUfip("/admin1/system1/sp1/user2"); });
    EXPECT_EQ("/admin1\n/admin1/system1\n/admin1/system1/sp1\n/admin1/system1/sp1/user1\n",
              addresses());
    failEveryStatement(prepare, [](CLPAddrSVC& s) { s.emptyCacheUfct("/admin1", "system"); });
    EXPECT_EQ("/admin1\n", addresses());
}

} // namespace
} // namespace velmora_clp
