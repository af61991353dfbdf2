// Holds a POSIX mutex for the length of a scope.
#ifndef VELCLP_THREADGUARD_H
#define VELCLP_THREADGUARD_H

#include <pthread.h>

namespace velmora_clp {

class ThreadGuard {
public:
    // Null is allowed and guards nothing.
    explicit ThreadGuard(pthread_mutex_t* mutex) : m_mutex(mutex) {
        if (m_mutex)
            pthread_mutex_lock(m_mutex);
    }
    ThreadGuard(const ThreadGuard&) = delete;
    ThreadGuard& operator=(const ThreadGuard&) = delete;
    ~ThreadGuard() {
        if (m_mutex)
            pthread_mutex_unlock(m_mutex);
    }

private:
    pthread_mutex_t* m_mutex;
};

} // namespace velmora_clp

#endif
