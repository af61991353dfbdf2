// A firmware update, which is a method of another object than its target and waits for a job.
#include "tests/unit/mapping_fixture.h"

#include "velclp/transport.h"

#include <pthread.h>

#include <ctime>

namespace {
unsigned int sleptSeconds = 0;
} // namespace

// Takes the place of the C library's, which the update's polling waits in.
extern "C" int nanosleep(const timespec* time, timespec*) {
    sleptSeconds += static_cast<unsigned int>(time->tv_sec);
    return 0;
}

namespace velmora_clp {
namespace {

using fakecim::number;

class UpdateTest : public MappingTest {
protected:
    // Runs an update whose job goes through the states, the last one staying; what is printed.
    std::string update(std::deque<std::string> states) {
        addAssociate("ZORM_SISServiceAffectsElement", "ZORM_SoftwareInstallationService");
        fakecim::Object& job = m_server.add({"ZORM_Job", {{"Name", std::to_string(++m_jobs)}}, {}});
        m_server.methods["InstallFromURI"] = [&job](CMPIArgs* out) {
            const CimPath path = job.path();
            CMPIValue value = {};
            value.ref = path.get();
            out->ft->addArg(out, "Job", &value, CMPI_ref);
            return number(CMPI_uint32, "4096");
        };
        m_server.onCall = [&, states](const fakecim::Call& call) mutable {
            if (call.operation != "getInstance")
                return 0;
            if (states.empty())
                return 6;
            job.properties["JobState"] = number(CMPI_uint16, states.front());
            states.pop_front();
            return 0;
        };
        testing::internal::CaptureStdout();
        {
            Transport transport("std", 0);
            CLPMapping mapping(m_server.client(), &transport);
            const Pairs params = {{"", "/admin1/system1/sp1"}, {"", "tftp://h/i"}};
            EXPECT_EQ("ok", codes(mapping.smSpecialMethod("ZORM_SPComputerSystem", "installfromuri",
                                                          &params, nullptr, m_path.get())));
        }
        return testing::internal::GetCapturedStdout();
    }

    int m_jobs = 0;
};

TEST_F(UpdateTest, ShowsAMarkAPollAndHowItEnded) {
    sleptSeconds = 0;
    EXPECT_EQ("Updating started.\r\n##\nUpdating FW Done.\r\n", update({"4", "4", "7"}));
    EXPECT_EQ(10U, sleptSeconds);
    int cancelling = PTHREAD_CANCEL_ENABLE;
    pthread_setcancelstate(PTHREAD_CANCEL_ENABLE, &cancelling);
    EXPECT_EQ(PTHREAD_CANCEL_DISABLE, cancelling);
    const auto install =
        std::find_if(m_server.calls.begin(), m_server.calls.end(),
                     [](const auto& call) { return call.operation == "invokeMethod"; });
    EXPECT_EQ("ZORM_SoftwareInstallationService", install->cimclass);
    EXPECT_EQ("InstallFromURI(URI:1600=tftp://h/i;Target:1100=root/zorm:ZORM_Thing.Name=\"a\";)",
              install->detail);
}

TEST_F(UpdateTest, BreaksTheLineOfMarksAfterSixteen) {
    std::deque<std::string> states(34, "4");
    states.emplace_back("7");
    EXPECT_EQ("Updating started.\r\n" + std::string(16, '#') + "\r\n" + std::string(15, '#') +
                  "\r\n#\nUpdating FW Done.\r\n",
              update(states));
}

TEST_F(MappingTest, ASpecialMethodThatCannotBeCalledIsRefused) {
    const Pairs uri = {{"", "x"}, {"", "tftp://h/i"}};
    const Pairs one = {{"", "x"}};
    const auto special = [&](const char* method, const Pairs* params, CMPIObjectPath* path) {
        return codes(
            m_mapping.smSpecialMethod("zorm_spcomputersystem", method, params, nullptr, path));
    };
    EXPECT_EQ("1,2,0", special("createimage", &uri, m_path.get()));
    EXPECT_EQ("1,2,0", special("installfromuri", &uri, nullptr));
    EXPECT_EQ("1,2,0", special("installfromuri", &one, m_path.get()));
    EXPECT_EQ("1,2,0", special("installfromuri", nullptr, m_path.get()));
    EXPECT_TRUE(m_server.calls.empty());
    EXPECT_EQ("1,2,0", special("installfromuri", &uri, m_path.get()));
    addAssociate("ZORM_SISServiceAffectsElement", "ZORM_SoftwareInstallationService");
    EXPECT_EQ("ok", special("installfromuri", &uri, m_path.get()));
    m_server.methods["InstallFromURI"] = [](CMPIArgs*) { return number(CMPI_uint32, "5"); };
    EXPECT_EQ("1,4,2", special("installfromuri", &uri, m_path.get()));
    m_server.fail("invokeMethod", 7);
    EXPECT_EQ("1,7,0", special("installfromuri", &uri, m_path.get()));
    EXPECT_EQ("ok", codes(m_mapping.smSpecialMethod("ZORM_Other", "installfromuri", &uri, nullptr,
                                                    nullptr)));
}

} // namespace
} // namespace velmora_clp
