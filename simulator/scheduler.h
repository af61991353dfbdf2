// Time in the simulated controller: state changes that happen later, and calls that take their
// time. All durations are nominal; the simulator's --speed divides them.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <thread>

namespace velclp_sim {

class Scheduler {
public:
    using Duration = std::chrono::milliseconds;

    /// Speed 10 lets everything happen ten times as fast; it must be above 0.
    explicit Scheduler(double speed = 1.0);
    /// Stops, and waits for a task that is running.
    ~Scheduler();

    /// Runs the task once, after the nominal time, on the scheduler's own thread; tasks run one at
    /// a time, in the order of their times. A task that throws is dropped.
    void after(Duration nominal, std::function<void()> task);

    /// Sleeps for the nominal time on the caller's thread; false when stop() cut it short.
    bool pause(Duration nominal);
    /// As pause(), in real time whatever the speed.
    bool pauseExactly(Duration real);

    /// Drops what is still waiting and wakes every pause. May be called from any thread.
    void stop();

private:
    using Clock = std::chrono::steady_clock;
    Clock::duration scaled(Duration nominal) const;
    void run();

    const double speed_;
    std::mutex mutex_;
    std::condition_variable wake_;
    std::multimap<Clock::time_point, std::function<void()>> tasks_;
    bool stopped_ = false;
    std::thread thread_;
};

} // namespace velclp_sim
