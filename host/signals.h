// Turns signals into calls in normal context. A thread of its own takes them: while a line runs it
// stops the command or serves a request to stop a job; at the prompt it wakes the host's thread,
// which acts on them itself.
#ifndef VELCLP_HOST_SIGNALS_H
#define VELCLP_HOST_SIGNALS_H

#include <csignal>
#include <mutex>
#include <thread>

namespace velmora_clp {
class CLPCore;
}

namespace host {

// A file descriptor that is closed at the end of its owner's life.
class Descriptor {
public:
    explicit Descriptor(int fd) : m_fd(fd) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor();
    int get() const { return m_fd; }

private:
    int m_fd;
};

class Signals {
public:
    // Blocks the signals that are handled here, in this thread and all that it starts. Make it
    // before any other thread.
    Signals();
    Signals(const Signals&) = delete;
    Signals& operator=(const Signals&) = delete;
    ~Signals();

    // Starts taking signals for this engine, which outlives the time until `finish`.
    void begin(velmora_clp::CLPCore& core);
    void finish();

    // While a line runs, on the host's thread.
    class Running {
    public:
        explicit Running(Signals& signals) : m_signals(signals) { m_signals.setRunning(true); }
        Running(const Running&) = delete;
        Running& operator=(const Running&) = delete;
        ~Running() { m_signals.setRunning(false); }

    private:
        Signals& m_signals;
    };

    // What came while nothing ran. Each is told once, but for the end.
    struct Events {
        int end = 0;              // SIGTERM or SIGHUP
        bool interrupted = false; // the line being typed is given up
        bool suspend = false;
        bool resumed = false;
        bool terminateJob = false;
    };
    Events take();
    int endSignal();

    // Becomes readable when there are events.
    int wakeupFd() const { return m_wakeup.get(); }

private:
    void setRunning(bool running);
    void work();
    // These three under the lock.
    void collect();
    void handle(int signal);
    void serveRunningCommand();
    void wakeHost();

    sigset_t m_set;
    Descriptor m_signalFd;
    Descriptor m_stop;
    Descriptor m_wakeup;
    std::mutex m_mutex;
    velmora_clp::CLPCore* m_core = nullptr;
    bool m_running = false;
    bool m_stopCommand = false; // the command is to be stopped and wasn't there yet
    Events m_events;
    std::thread m_thread;
};

} // namespace host

#endif
