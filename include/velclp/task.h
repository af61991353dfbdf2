// A piece of work on a detached thread of its own, with a foreground wait. Whoever starts it may
// wait for its end; when that wait runs out, the work goes on alone and the object deletes itself
// at its end. All signals are blocked on the thread.
#ifndef VELCLP_TASK_H
#define VELCLP_TASK_H

#include "velclp/commandstatus.h"

#include <pthread.h>

namespace velmora_clp {

class CLPTask {
public:
    CLPTask();
    CLPTask(const CLPTask&) = delete;
    CLPTask& operator=(const CLPTask&) = delete;
    virtual ~CLPTask();

    // The address of the thread id; null never.
    virtual pthread_t* handle();

    // Runs `svc` on a new thread. Call it once, then `wait`.
    virtual void start();

    // Waits for the end of `svc`: for ever when `msec` is negative, five minutes when it is 0.
    // Gives 0 when the work has ended: the caller owns the object. Gives 1 when the time ran out,
    // and then the object belongs to its thread; also when the task was never started.
    virtual int wait(int msec);

    // Does nothing.
    virtual void stop();

    // Records how far the work has come. `wait` calls it with COMMAND_SPAWNED, the task's lock
    // held, when its time runs out.
    virtual void setCommandStatus(CommandStatus::status s) = 0;

    // The work itself, on the task's thread. It may leave by an exception or pthread_exit.
    virtual void svc() = 0;

protected:
    // Called on the task's thread when `svc` leaves by an exception, before the task ends.
    typedef void (*FailureHandler)(CLPTask& task);
    void setFailureHandler(FailureHandler handler) { m_failureHandler = handler; }

private:
    enum State : int { IDLE = 0, WAITED_FOR = 1, ALONE = 2 };

    static void* _work(void* arg);
    static void _cleanup(void* arg);
    void runGuarded();

    pthread_attr_t m_attr;
    pthread_t m_thread;
    CLPTask* m_self;
    int m_state;
    pthread_mutex_t m_mutex;
    pthread_cond_t m_cond;
    bool m_done; // set by the thread's end, under the mutex
    FailureHandler m_failureHandler;
};

} // namespace velmora_clp

#endif
