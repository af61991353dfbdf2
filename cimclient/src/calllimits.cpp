#include "calllimits.h"

#include <mutex>

namespace cimclient {

namespace {

std::mutex mutex;
Limits current;

} // namespace

Limits limits() {
    const std::lock_guard<std::mutex> lock(mutex);
    return current;
}

void setLimits(const Limits& limits) {
    const std::lock_guard<std::mutex> lock(mutex);
    current = limits;
}

} // namespace cimclient
