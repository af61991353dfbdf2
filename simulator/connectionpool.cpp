#include "simulator/connectionpool.h"

namespace velclp_sim {

namespace {

/// More connections than this wait for one of the others to close.
constexpr std::size_t maxThreads = 1024;

} // namespace

void ConnectionPool::enqueue(std::function<void()> task) {
    const std::lock_guard<std::mutex> lock(mutex_);
    tasks_.push_back(std::move(task));
    if (tasks_.size() > idle_ && threads_.size() < maxThreads) {
        threads_.emplace_back([this] { work(); });
    } else {
        wake_.notify_one();
    }
}

void ConnectionPool::shutdown() {
    {
        const std::lock_guard<std::mutex> lock(mutex_);
        ended_ = true;
    }
    wake_.notify_all();
    // Only the accepting thread adds threads, and it is the one that runs this.
    for (std::thread& thread : threads_) {
        thread.join();
    }
}

void ConnectionPool::work() {
    std::unique_lock<std::mutex> lock(mutex_);
    while (true) {
        ++idle_;
        wake_.wait(lock, [this] { return ended_ || !tasks_.empty(); });
        --idle_;
        if (tasks_.empty()) {
            return;
        }
        const auto task = std::move(tasks_.front());
        tasks_.pop_front();
        lock.unlock();
        task();
        lock.lock();
    }
}

} // namespace velclp_sim
