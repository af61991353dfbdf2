// Threads for connections: one is made whenever a connection comes and none is idle, and all are
// kept until the end. Kept connections of many clients so never wait for each other.
#pragma once

#include <httplib.h>

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace velclp_sim {

class ConnectionPool : public httplib::TaskQueue {
public:
    ConnectionPool() = default;
    ~ConnectionPool() override = default;

    void enqueue(std::function<void()> task) override;
    /// Waits for every task; there are no new ones afterwards.
    void shutdown() override;

private:
    void work();

    std::mutex mutex_;
    std::condition_variable wake_;
    std::deque<std::function<void()>> tasks_;
    std::vector<std::thread> threads_;
    std::size_t idle_ = 0;
    bool ended_ = false;
};

} // namespace velclp_sim
