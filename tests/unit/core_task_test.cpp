// A piece of work on its own thread: its end, its waiter, and the ways out of it.
#include "tests/support/eventually.h"
#include "velclp/task.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <functional>
#include <stdexcept>
#include <thread>
#include <vector>

using namespace velmora_clp;

namespace {

std::atomic<int> s_alive{0};
std::atomic<int> s_failures{0};

class Work : public CLPTask {
public:
    explicit Work(std::function<void()> body) : m_body(std::move(body)) {
        ++s_alive;
        setFailureHandler([](CLPTask&) { ++s_failures; });
    }
    ~Work() override { --s_alive; }
    void svc() override { m_body(); }
    void setCommandStatus(CommandStatus::status s) override { statuses.push_back(s); }

    std::vector<CommandStatus::status> statuses;

private:
    std::function<void()> m_body;
};

void sleepFor(int msec) {
    std::this_thread::sleep_for(std::chrono::milliseconds(msec));
}

TEST(Task, ThatIsShorterThanTheWayToItsWaitIsNeitherMissedNorTakenForSpawned) {
    for (int i = 0; i < 20000; ++i) {
        Work work([] {});
        work.start();
        ASSERT_EQ(work.wait(-1), 0);
        ASSERT_TRUE(work.statuses.empty());
    }
}

TEST(Task, ThatEndedLongBeforeTheWaitIsStillTheWaiters) {
    Work work([] {});
    work.start();
    sleepFor(50);
    EXPECT_EQ(work.wait(1000), 0);
}

TEST(Task, ThatWasNeverStartedOrWasWaitedForIsNobodysToWaitFor) {
    Work work([] {});
    EXPECT_EQ(work.wait(-1), 1);
    work.start();
    EXPECT_EQ(work.wait(-1), 0);
    EXPECT_EQ(work.wait(-1), 1);
    EXPECT_TRUE(work.statuses.empty());
}

TEST(Task, ThatOutlastsItsWaitIsSpawnedAndFreesItself) {
    std::atomic<bool> release{false};
    auto* work = new Work([&] {
        while (!release)
            sleepFor(1);
    });
    work->start();
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(work->wait(1200), 1);
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(5));
    EXPECT_EQ(work->statuses, std::vector<CommandStatus::status>{CommandStatus::COMMAND_SPAWNED});
    EXPECT_EQ(s_alive, 1);
    release = true;
    EXPECT_TRUE(eventually([] { return s_alive == 0; }));
}

TEST(Task, MayLeaveByThreadExitThroughFramesThatAreUnwound) {
    std::atomic<bool> unwound{false};
    struct Frame {
        std::atomic<bool>& mark;
        ~Frame() { mark = true; }
    };
    Work work([&] {
        const Frame frame{unwound};
        pthread_exit(nullptr);
    });
    work.start();
    EXPECT_EQ(work.wait(-1), 0);
    EXPECT_TRUE(unwound);
    EXPECT_EQ(s_failures, 0);
}

TEST(Task, ThatLeavesByAnExceptionIsToldAndEnds) {
    const std::function<void()> bodies[] = {
        [] { throw std::runtime_error("broken"); },
        [] { throw "broken"; },
        [] { throw std::string("broken"); },
        [] { throw 7; },
    };
    int failures = 0;
    for (const auto& body : bodies) {
        Work work(body);
        work.start();
        EXPECT_EQ(work.wait(-1), 0);
        EXPECT_EQ(s_failures, ++failures);
    }
}

TEST(Task, RunsWithAllSignalsBlockedOnItsThread) {
    sigset_t blocked;
    sigemptyset(&blocked);
    Work work([&] { pthread_sigmask(SIG_SETMASK, nullptr, &blocked); });
    work.start();
    EXPECT_EQ(work.wait(-1), 0);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGUSR1, SIGALRM, SIGCHLD})
        EXPECT_EQ(sigismember(&blocked, signal), 1) << signal;
    EXPECT_NE(work.handle(), nullptr);
}

} // namespace
