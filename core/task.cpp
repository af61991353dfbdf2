#include "velclp/task.h"

#include "database/cdbc.h"
#include "velclp/assertion.h"
#include "velclp/log.h"
#include "velclp/threadguard.h"

#include <cxxabi.h>

#include <cerrno>
#include <csignal>
#include <ctime>
#include <exception>
#include <string>

namespace velmora_clp {

namespace {
const int DEFAULT_WAIT_MSEC = 300000;

timespec deadline(int msec) {
    timespec until{};
    until.tv_sec = std::time(nullptr) + msec / 1000;
    until.tv_nsec = static_cast<long>(msec % 1000) * 1000000;
    return until;
}
} // namespace

CLPTask::CLPTask()
    : m_attr(),
      m_thread(),
      m_self(nullptr),
      m_state(IDLE),
      m_mutex(),
      m_cond(),
      m_done(false),
      m_failureHandler(nullptr) {
    pthread_attr_init(&m_attr);
    pthread_mutex_init(&m_mutex, nullptr);
    pthread_cond_init(&m_cond, nullptr);
}

CLPTask::~CLPTask() {
    pthread_cond_destroy(&m_cond);
    pthread_mutex_destroy(&m_mutex);
    pthread_attr_destroy(&m_attr);
}

pthread_t* CLPTask::handle() {
    return &m_thread;
}

void CLPTask::start() {
    const char* const function = "CLP.CLPTask.start";
    VELCLP_TRACE(function);
    m_self = this;
    m_state = WAITED_FOR;
    m_done = false;
    pthread_attr_setdetachstate(&m_attr, PTHREAD_CREATE_DETACHED);
    const int rc = pthread_create(&m_thread, &m_attr, _work, &m_self);
    if (rc != 0) {
        // Nobody will signal the end, so the waiter must find the work done.
        VELCLP_LOG_FAILURE(function, "pthread_create failed=[%d]", rc);
        ThreadGuard guard(&m_mutex);
        m_done = true;
    }
}

void CLPTask::stop() {}

int CLPTask::wait(int msec) {
    const char* const function = "CLP.CLPTask.wait";
    VELCLP_LOG_BRANCH(function, "Enter");
    if (msec == 0)
        msec = DEFAULT_WAIT_MSEC;
    const timespec until = deadline(msec);
    int result = EINTR;
    {
        ThreadGuard guard(&m_mutex);
        // Only the mark that the thread itself leaves counts: a wake-up without one says nothing,
        // and an end that came before the wait began has no signal left to give.
        while (m_state != IDLE && !m_done && result != ETIMEDOUT)
            result = msec > 0 ? pthread_cond_timedwait(&m_cond, &m_mutex, &until)
                              : pthread_cond_wait(&m_cond, &m_mutex);
        if (m_state != IDLE && m_done)
            result = 0;
        else if (m_state == IDLE)
            result = EINTR;
        if (result == ETIMEDOUT) {
            m_state = ALONE;
            setCommandStatus(CommandStatus::COMMAND_SPAWNED);
        } else {
            m_state = IDLE;
        }
    }
    VELCLP_LEAVE_VALUE(function, result);
    return result == 0 ? 0 : 1;
}

void* CLPTask::_work(void* arg) {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_BLOCK, &all, nullptr);
    pthread_cleanup_push(_cleanup, arg);
    CLPTask* t = *static_cast<CLPTask**>(arg);
    VELCLP_ASSERT(t != nullptr, "t!=__null");
    t->runGuarded();
    pthread_cleanup_pop(1);
    return nullptr;
}

void CLPTask::runGuarded() {
    const char* const function = "CLP.CLPTask._work";
    std::string reason;
    try {
        svc();
        return;
    } catch (const abi::__forced_unwind&) {
        throw; // the thread ends in pthread_exit
    } catch (const std::exception& failure) {
        reason = failure.what();
    } catch (const CDBC_Exception& failure) {
        reason = failure.text();
    } catch (const char* failure) {
        reason = failure != nullptr ? failure : "";
    } catch (const std::string& failure) {
        reason = failure;
    } catch (...) {
        reason = "unknown exception";
    }
    VELCLP_LOG_FAILURE(function, "catch exception=[%s]", reason.c_str());
    if (m_failureHandler != nullptr)
        m_failureHandler(*this);
}

void CLPTask::_cleanup(void* arg) {
    VELCLP_ASSERT(arg != nullptr, "arg");
    CLPTask* t = *static_cast<CLPTask**>(arg);
    VELCLP_ASSERT(t != nullptr, "t!=__null");
    pthread_mutex_lock(&t->m_mutex);
    t->m_done = true;
    if (t->m_state == ALONE) {
        t->m_state = IDLE;
        pthread_mutex_unlock(&t->m_mutex);
        // The mutex dies with the object, and nothing of it may be touched from here on.
        delete t;
        return;
    }
    // The waiter frees the object as soon as it has the mutex, so signal before letting it go.
    pthread_cond_signal(&t->m_cond);
    pthread_mutex_unlock(&t->m_mutex);
}

} // namespace velmora_clp
