// Waiting for what another thread or process does.
#ifndef VELCLP_TESTS_SUPPORT_EVENTUALLY_H
#define VELCLP_TESTS_SUPPORT_EVENTUALLY_H

#include <chrono>
#include <thread>

// Asks until it holds; false when it has not come to that after half a minute.
template<typename Holds>
bool eventually(const Holds& holds) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!holds()) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

#endif
