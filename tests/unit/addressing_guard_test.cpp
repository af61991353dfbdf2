#include "tests/unit/schema_file.h"

#include "velclp/cacheguard.h"

#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/wait.h>
#include <thread>

namespace velmora_clp {
namespace {

// Another process's view of the lock file.
class OtherProcess {
public:
    OtherProcess() : m_fd(open(Locations::get().schemaFile.c_str(), O_RDONLY | O_CLOEXEC)) {}
    ~OtherProcess() { close(m_fd); }
    // An open file of its own counts as another process to flock.
    bool canTake(int operation) const {
        if (flock(m_fd, operation | LOCK_NB) != 0)
            return false;
        flock(m_fd, LOCK_UN);
        return true;
    }
    int fd() const { return m_fd; }

private:
    int m_fd;
};

// The lock file is opened once in the life of a process, so all tests share it.
class CacheGuardTest : public testing::Test {
protected:
    static void SetUpTestSuite() { s_file = std::make_unique<SchemaFile>("text\n"); }
    static void TearDownTestSuite() { s_file.reset(); }
    static std::unique_ptr<SchemaFile> s_file;
};

std::unique_ptr<SchemaFile> CacheGuardTest::s_file;

TEST_F(CacheGuardTest, AnExclusiveGuardKeepsAllOthersOutAndASharedOneOnlyWriters) {
    const OtherProcess other;
    {
        const CacheGuard guard(1);
        EXPECT_FALSE(other.canTake(LOCK_SH));
    }
    {
        const CacheGuard guard(0);
        EXPECT_TRUE(other.canTake(LOCK_SH));
        EXPECT_FALSE(other.canTake(LOCK_EX));
    }
    EXPECT_TRUE(other.canTake(LOCK_EX));
}

TEST_F(CacheGuardTest, AnInnerGuardNeitherBlocksNorStrengthensNorUnlocks) {
    const OtherProcess other;
    const CacheGuard outer(0);
    {
        const CacheGuard inner(1);
        EXPECT_TRUE(other.canTake(LOCK_SH));
    }
    EXPECT_FALSE(other.canTake(LOCK_EX));
}

TEST_F(CacheGuardTest, WaitsUntilTheLockIsFree) {
    const OtherProcess other;
    ASSERT_EQ(0, flock(other.fd(), LOCK_EX));
    const pid_t child = fork();
    if (child == 0) {
        const CacheGuard guard(0);
        _exit(0);
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    int status = 0;
    EXPECT_EQ(0, waitpid(child, &status, WNOHANG));
    flock(other.fd(), LOCK_UN);
    ASSERT_EQ(child, waitpid(child, &status, 0));
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
}

TEST_F(CacheGuardTest, TheLockIsNotHandedToAnOutsideProgram) {
    const CacheGuard guard(1);
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code error;
        if (std::filesystem::read_symlink(entry, error) == Locations::get().schemaFile) {
            EXPECT_NE(0, fcntl(std::stoi(entry.path().filename()), F_GETFD) & FD_CLOEXEC);
        }
    }
}

void takeWithoutFile() {
    Locations locations;
    locations.schemaFile = "/nonexistent/schema.conf";
    Locations::set(locations);
    try {
        const CacheGuard guard(0);
    } catch (const char* text) {
        std::fputs(text, stderr);
        std::exit(3);
    }
}

TEST(CacheGuardDeathTest, SaysThatTheLockFileCannotBeOpened) {
    // In a process of its own, which has no lock file open yet.
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    EXPECT_EXIT(takeWithoutFile(), testing::ExitedWithCode(3), "Open process lock file failed.");
}

} // namespace
} // namespace velmora_clp
