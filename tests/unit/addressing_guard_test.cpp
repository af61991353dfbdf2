#include "tests/unit/schema_file.h"

#include "velclp/cacheguard.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <sys/file.h>
#include <unistd.h>

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

TEST_F(CacheGuardTest, TheLockIsNotHandedToAnOutsideProgram) {
    const CacheGuard guard(1);
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code error;
        if (std::filesystem::read_symlink(entry, error) == Locations::get().schemaFile) {
            EXPECT_NE(0, fcntl(std::stoi(entry.path().filename()), F_GETFD) & FD_CLOEXEC);
        }
    }
}

} // namespace
} // namespace velmora_clp
