#include "tests/engine/address_session.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <set>
#include <sys/wait.h>
#include <unistd.h>

namespace velmora_clp {
namespace {

constexpr int sessions = 20;
constexpr std::size_t targets = 50;

class AddressSessionsTest : public testing::Test {
protected:
    AddressSessionsTest() : m_simulator(ready()) {}

    const RunDirectory& ready() {
        m_directory.use();
        return m_directory;
    }

    // Runs the work in a process of its own for each session; all begin at once.
    void atOnce(const std::function<void(int)>& work) const {
        int gate[2];
        ASSERT_EQ(0, pipe(gate));
        std::vector<pid_t> children;
        for (int i = 0; i < sessions; ++i) {
            const pid_t child = fork();
            if (child == 0) {
                close(gate[1]);
                char unused = 0;
                if (read(gate[0], &unused, 1) == 0)
                    work(i);
                _exit(0);
            }
            children.push_back(child);
        }
        close(gate[0]);
        close(gate[1]);
        for (const pid_t child : children) {
            int status = 0;
            ASSERT_EQ(child, waitpid(child, &status, 0));
            EXPECT_EQ(0, status);
        }
    }

    std::vector<std::string> lines(int session) const {
        return linesOf(m_directory.read("session" + std::to_string(session)));
    }
    void write(int session, const std::string& content) const {
        m_directory.write("session" + std::to_string(session), content);
    }

    RunDirectory m_directory;
    SimulatorProcess m_simulator;
};

TEST_F(AddressSessionsTest, EveryObjectHasOneAddressAndEveryAddressItsObjectWithoutAWalk) {
    AddressSession session(m_simulator);
    const std::map<std::string, std::string> all = session.walk();
    EXPECT_GT(all.size(), 60U);
    for (const char* address :
         {"/admin1/system2/log1", "/admin1/system1/sp1/log1", "/admin1/blade1",
          "/admin1/system1/oemvelmora_fan2", "/admin1/chassis1", "/admin1/system1/sp1/role1",
          "/admin1/system1/sp1/ethport1/ipendpt1/ipsettings1"})
        EXPECT_EQ(1U, all.count(address)) << address;
    m_simulator.post("/sim/stats", "");
    AddressSession other(m_simulator);
    for (const auto& [address, path] : all) {
        EXPECT_EQ(path, other.resolve(address));
        EXPECT_EQ(address, other.addressOf(address));
    }
    const std::string calls = m_simulator.get("/sim/stats");
    for (const char* walk : {"EnumerateInstanceNames", "AssociatorNames", "ReferenceNames"})
        EXPECT_EQ(std::string::npos, calls.find(walk)) << calls;
    expectSoundCache(m_directory);
}

TEST_F(AddressSessionsTest, SessionsThatStartAtOnceOnAnEmptyCacheAgreeOnEveryAddress) {
    // What there is to address, found in a process and a directory of its own.
    const RunDirectory scratch;
    const pid_t child = fork();
    if (child == 0) {
        scratch.use();
        std::string all;
        for (const auto& entry : AddressSession(m_simulator).walk())
            all += entry.first + "\n";
        m_directory.write("targets", all);
        _exit(0);
    }
    int status = 0;
    ASSERT_EQ(child, waitpid(child, &status, 0));
    std::vector<std::string> all = linesOf(m_directory.read("targets"));
    ASSERT_LE(targets, all.size());
    std::shuffle(all.begin(), all.end(), std::mt19937(1));
    all.resize(targets);

    atOnce([&](int session) {
        std::vector<std::string> own = all;
        std::shuffle(own.begin(), own.end(), std::mt19937(static_cast<unsigned>(session)));
        AddressSession client(m_simulator);
        std::string seen;
        for (const std::string& address : own)
            seen +=
                address + " " + client.resolve(address) + " " + client.addressOf(address) + "\n";
        write(session, seen);
    });
    std::set<std::string> agreed;
    for (int i = 0; i < sessions; ++i) {
        const std::vector<std::string> seen = lines(i);
        EXPECT_EQ(targets, seen.size());
        agreed.insert(seen.begin(), seen.end());
    }
    EXPECT_EQ(targets, agreed.size());
    for (const std::string& line : agreed) {
        const std::string address = line.substr(0, line.find(' '));
        EXPECT_EQ(address, line.substr(line.rfind(' ') + 1)) << line;
    }
    expectSoundCache(m_directory);
    // A second run agrees with the first.
    AddressSession later(m_simulator);
    for (const std::string& address : all)
        EXPECT_EQ(1U, agreed.count(address + " " + later.resolve(address) + " " +
                                   later.addressOf(address)))
            << address;
}

TEST_F(AddressSessionsTest, SessionsThatMeetTheSameObjectsFromBelowWhileTheOrderChangesAgreeToo) {
    atOnce([&](int session) {
        AddressSession client(m_simulator);
        std::string seen;
        for (const char* cimclass :
             {"ZORM_Fan", "ZORM_NumericSensor", "ZORM_SELLogEntry", "ZORM_Account", "ZORM_Service",
              "ZORM_DiskDrive", "ZORM_Slot", "ZORM_RecordLog"}) {
            if (session % 4 == 0)
                m_simulator.post(std::string("/sim/model?do=reorder&class=") + cimclass, "reverse");
            CimStatus status;
            const CimPath path(newCMPIObjectPath("root/zorm", cimclass, status.out()));
            const CimEnumeration objects(
                client.client()->ft->enumInstanceNames(client.client(), path.get(), status.out()));
            while (objects && objects->ft->hasNext(objects.get(), status.out()) != 0) {
                CMPIObjectPath* const object =
                    objects->ft->getNext(objects.get(), status.out()).value.ref;
                object->ft->setNameSpace(object, "root/zorm");
                seen += client.service().getUfip(object) + " " + textOf(object) + "\n";
            }
        }
        write(session, seen);
    });
    std::map<std::string, std::string> objectOf;
    std::map<std::string, std::string> addressOf;
    for (int i = 0; i < sessions; ++i) {
        for (const std::string& line : lines(i)) {
            const std::string address = line.substr(0, line.find(' '));
            const std::string object = line.substr(line.find(' ') + 1);
            EXPECT_NE("", address) << object;
            EXPECT_EQ(object, objectOf.emplace(address, object).first->second);
            EXPECT_EQ(address, addressOf.emplace(object, address).first->second);
        }
    }
    EXPECT_LT(20U, objectOf.size());
    expectSoundCache(m_directory);
}

} // namespace
} // namespace velmora_clp
