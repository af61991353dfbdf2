#include "simulator/scheduler.h"

#include <exception>
#include <iostream>

namespace velclp_sim {

Scheduler::Scheduler(double speed) : speed_(speed), thread_([this] { run(); }) {}

Scheduler::~Scheduler() {
    stop();
    thread_.join();
}

Scheduler::Clock::duration Scheduler::scaled(Duration nominal) const {
    const std::chrono::duration<double, std::milli> real(static_cast<double>(nominal.count()) /
                                                         speed_);
    return std::chrono::duration_cast<Clock::duration>(real);
}

void Scheduler::after(Duration nominal, std::function<void()> task) {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        tasks_.emplace(Clock::now() + scaled(nominal), std::move(task));
    }
    wake_.notify_all();
}

bool Scheduler::pause(Duration nominal) {
    return pauseExactly(std::chrono::duration_cast<Duration>(scaled(nominal)));
}

bool Scheduler::pauseExactly(Duration real) {
    std::unique_lock<std::mutex> lock(mutex_);
    return !wake_.wait_for(lock, real, [this] { return stopped_; });
}

void Scheduler::stop() {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        stopped_ = true;
        tasks_.clear();
    }
    wake_.notify_all();
}

void Scheduler::run() {
    std::unique_lock<std::mutex> lock(mutex_);
    while (!stopped_) {
        if (tasks_.empty()) {
            wake_.wait(lock);
            continue;
        }
        const auto due = tasks_.begin()->first;
        if (due > Clock::now()) {
            wake_.wait_until(lock, due);
            continue;
        }
        const auto task = std::move(tasks_.begin()->second);
        tasks_.erase(tasks_.begin());
        lock.unlock();
        try {
            task();
        } catch (const std::exception& error) {
            std::cerr << "velclp-sim: a planned change failed: " << error.what() << '\n';
        }
        lock.lock();
    }
}

} // namespace velclp_sim
