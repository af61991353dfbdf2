// Many sessions at once, reading and writing, while the controller's objects come, go and change
// places. Short by default; the environment makes it long:
//   VELCLP_SOAK_SESSIONS=50 VELCLP_SOAK_SECONDS=600 sessions_soak_test
#include "tests/engine/address_session.h"
#include "tests/engine/command_session.h"
#include "tests/support/simulator_process.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <deque>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <mutex>
#include <random>
#include <thread>

namespace {

using Clock = std::chrono::steady_clock;

int fromEnvironment(const char* name, int usual) {
    const char* const value = std::getenv(name);
    return value ? std::atoi(value) : usual;
}

// What a process holds of the system, as /proc tells.
struct Holdings {
    explicit Holdings(pid_t pid) {
        const std::string process = "/proc/" + std::to_string(pid);
        std::ifstream status(process + "/status");
        for (std::string word; status >> word;) {
            if (word == "VmRSS:")
                status >> kilobytes;
            else if (word == "Threads:")
                status >> threads;
        }
        const std::filesystem::directory_iterator entries(process + "/fd");
        descriptors = std::distance(begin(entries), end(entries));
    }
    std::string text() const {
        return std::to_string(threads) + " threads, " + std::to_string(descriptors) +
               " descriptors";
    }
    long kilobytes = 0;
    long threads = 0;
    long descriptors = 0;
};

// Which object each address has meant. Identifiers of objects are used once, so that neither an
// address nor an object may ever be seen with another partner.
class Sightings {
public:
    void see(const std::string& address, const std::string& object) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const std::string& known = m_objects.emplace(address, object).first->second;
        const std::string& place = m_addresses.emplace(object, address).first->second;
        if (known != object || place != address)
            m_faults.push_back(address + " was " + known + ", is " + object + " of " + place);
    }
    void complain(const std::string& what) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_faults.push_back(what);
    }
    std::string faults() const {
        std::string all;
        for (const std::string& fault : m_faults)
            all += fault + "\n";
        return all;
    }
    std::size_t count() const { return m_objects.size(); }

private:
    std::mutex m_mutex;
    std::map<std::string, std::string> m_objects;
    std::map<std::string, std::string> m_addresses;
    std::vector<std::string> m_faults;
};

class Soak : public testing::Test {
protected:
    static bool contains(const std::string& text, const std::string& part) {
        return text.find(part) != std::string::npos;
    }

    void driveComes() {
        const std::string id = "bay" + std::to_string(++m_lastBay);
        m_simulator.post("/sim/model?do=add",
                         "instance of ZORM_DiskDrive as $D { SystemName = \"sysA\"; "
                         "SystemCreationClassName = \"ZORM_ComputerSystem\"; "
                         "CreationClassName = \"ZORM_DiskDrive\"; DeviceID = \"" +
                             id + "\"; };\ninstance of ZORM_SystemDevice { GroupComponent = \"" +
                             m_system + "\"; PartComponent = $D; };\n");
        m_bays.push_back(id);
    }
    void driveGoes() {
        m_simulator.post(
            "/sim/model?do=remove",
            "ZORM_DiskDrive.SystemCreationClassName=\"ZORM_ComputerSystem\",SystemName="
            "\"sysA\",CreationClassName=\"ZORM_DiskDrive\",DeviceID=\"" +
                m_bays.front() + "\"\n");
        m_bays.pop_front();
    }
    void changeTheModel() {
        for (int i = 0; Clock::now() < m_end; ++i) {
            driveComes();
            if (m_bays.size() > 6)
                driveGoes();
            for (const char* name : {"ZORM_DiskDrive", "ZORM_Fan", "ZORM_NumericSensor"})
                m_simulator.post("/sim/model?do=reorder&class=" + std::string(name),
                                 i % 2 == 0 ? "reverse" : "rotate");
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
    }

    // One line of an operator's day, and whether its answer is what it must be.
    void line(CommandSession& session, int number, std::mt19937& random) {
        const std::string drives = "/admin1/system1/drive";
        switch (random() % 6) {
        case 0: {
            // The drives that are there now, whatever their numbers are.
            const std::string targets = session.answer("show -display targets /admin1/system1");
            for (std::size_t at = targets.find("drive"); at != std::string::npos;
                 at = targets.find("drive", at + 1))
                readDrive(session, drives + std::to_string(std::atoi(&targets[at + 5])));
            break;
        }
        case 1:
            readDrive(session, drives + std::to_string(1 + random() % (m_lastBay + 1U)));
            break;
        case 2:
            expect(session, "show -display properties=deviceid /admin1/system1/oemvelmora_fan1",
                   "DeviceID = fan");
            break;
        case 3: {
            const std::string name = "name" + std::to_string(number);
            expect(session, "set -o format=keyword /admin1/system1/sp1 elementname=" + name,
                   "status=0\r\n");
            break;
        }
        case 4:
            // Not the service processor's: it holds the jobs, one for every line of every session.
            expect(session, "show -level 2 -o format=clpxml /admin1/chassis1", "</response>");
            break;
        default:
            expect(session, "cd /admin1/system1", "/admin1/system1\r\n");
        }
        ++m_lines;
    }
    void expect(CommandSession& session, const std::string& command, const std::string& part) {
        const std::string answer = session.answer(command);
        if (!contains(answer, part))
            m_sightings.complain(command + " -> " + answer);
    }
    void readDrive(CommandSession& session, const std::string& address) {
        const std::string answer = session.answer("show -display properties=deviceid " + address);
        const std::size_t at = answer.find("DeviceID = ");
        // An address may outlive its drive until its class is looked up again.
        if (contains(answer, "DeviceID = NULL"))
            return;
        if (at != std::string::npos)
            m_sightings.see(address, answer.substr(at + 11, answer.find('\r', at) - at - 11));
        else if (!contains(answer, "CIM_ERR_NOT_FOUND"))
            m_sightings.complain(address + " -> " + answer);
    }

    void operate(int number) {
        std::mt19937 random(static_cast<unsigned>(number));
        try {
            CommandSession session(m_directory, m_simulator.port());
            const auto settled = Clock::now() + (m_end - Clock::now()) / 4;
            int lines = 0;
            for (; Clock::now() < settled; ++lines)
                line(session, number, random);
            const Holdings early(session.process().pid());
            while (Clock::now() < m_end)
                line(session, number, random);
            // A command's thread ends a little behind its answer.
            std::this_thread::sleep_for(std::chrono::seconds(1));
            const Holdings late(session.process().pid());
            // The first lines open what the session keeps open; a rare one may need one more
            // connection, of two files, to each database.
            if (lines > 20 &&
                (late.threads > early.threads || late.descriptors > early.descriptors + 4))
                m_sightings.complain("a session had " + early.text() + ", has " + late.text());
            const long growth = late.kilobytes - early.kilobytes;
            for (long most = m_growth;
                 growth > most && !m_growth.compare_exchange_weak(most, growth);)
                ;
        } catch (const std::exception& failure) {
            m_sightings.complain(failure.what());
        }
    }

    const int m_sessions = fromEnvironment("VELCLP_SOAK_SESSIONS", 8);
    const Clock::time_point m_end =
        Clock::now() + std::chrono::seconds(fromEnvironment("VELCLP_SOAK_SECONDS", 5));
    RunDirectory m_directory;
    SimulatorProcess m_simulator{m_directory};
    std::string m_system;
    std::atomic<unsigned> m_lastBay{100};
    std::deque<std::string> m_bays;
    Sightings m_sightings;
    std::atomic<long> m_lines{0};
    std::atomic<long> m_growth{0};
};

TEST_F(Soak, ManySessionsAgreeWhileObjectsComeAndGo) {
    const std::string systems = m_simulator.get("/sim/model?class=ZORM_ComputerSystem");
    const std::size_t end = systems.find("sysA\"");
    ASSERT_NE(std::string::npos, end) << systems;
    const std::size_t begin = systems.rfind('\n', end) + 1;
    for (const char c : systems.substr(begin, systems.find('\n', end) - begin))
        m_system += std::string(c == '"' || c == '\\' ? "\\" : "") + c;

    std::vector<std::thread> operators;
    for (int i = 0; i < m_sessions; ++i)
        operators.emplace_back([this, i] { operate(i); });
    changeTheModel();
    for (std::thread& one : operators)
        one.join();

    EXPECT_EQ("", m_sightings.faults());
    EXPECT_LT(0U, m_sightings.count());
    std::cout << m_lines << " lines of " << m_sessions << " sessions, " << m_sightings.count()
              << " addresses of drives, growth of a session at most " << m_growth << " KiB\n";
    velmora_clp::expectSoundCache(m_directory);
    EXPECT_EQ("0\n", m_directory.query("clpsvc.db3", "SELECT count(*) FROM CLPCmdJob WHERE "
                                                     "JobState=4"));
}

} // namespace
