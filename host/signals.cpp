#include "host/signals.h"

#include "velclp/clpsession.h"
#include "velclp/core.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdint>
#include <initializer_list>
#include <iterator>

namespace host {

namespace {

// How often a running command is looked after for requests that came without a signal, and for one
// that had not started yet when it was to be stopped.
const int PATIENCE_MSEC = 1000;
const int RETRY_MSEC = 20;

sigset_t handledSignals() {
    sigset_t set;
    sigemptyset(&set);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGUSR1, SIGTSTP, SIGCONT})
        sigaddset(&set, signal);
    pthread_sigmask(SIG_BLOCK, &set, nullptr);
    return set;
}

void post(int fd) {
    const std::uint64_t one = 1;
    while (write(fd, &one, sizeof one) < 0 && errno == EINTR)
        continue;
}

void drain(int fd) {
    std::uint64_t count = 0;
    while (read(fd, &count, sizeof count) < 0 && errno == EINTR)
        continue;
}

} // namespace

Descriptor::~Descriptor() {
    if (m_fd >= 0)
        close(m_fd);
}

Signals::Signals()
    : m_set(handledSignals()),
      m_signalFd(signalfd(-1, &m_set, SFD_CLOEXEC | SFD_NONBLOCK)),
      m_stop(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      m_wakeup(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {
    // A reader that went away shows in the result of a write.
    std::signal(SIGPIPE, SIG_IGN);
}

Signals::~Signals() {
    finish();
}

void Signals::begin(velmora_clp::CLPCore& core) {
    m_core = &core;
    m_thread = std::thread([this] { work(); });
}

void Signals::finish() {
    if (!m_thread.joinable())
        return;
    post(m_stop.get());
    m_thread.join();
}

void Signals::setRunning(bool running) {
    const std::lock_guard<std::mutex> guard(m_mutex);
    collect();
    m_running = running;
    // What came behind the line's end and before its command is meant for the command.
    m_stopCommand = running && (m_events.end != 0 || m_events.interrupted);
    if (running)
        m_events.interrupted = false;
}

Signals::Events Signals::take() {
    drain(m_wakeup.get());
    const std::lock_guard<std::mutex> guard(m_mutex);
    collect();
    Events events = m_events;
    m_events = Events();
    m_events.end = events.end;
    return events;
}

int Signals::endSignal() {
    const std::lock_guard<std::mutex> guard(m_mutex);
    collect();
    return m_events.end;
}

void Signals::wakeHost() {
    post(m_wakeup.get());
}

void Signals::work() {
    for (;;) {
        pollfd ready[] = {{m_signalFd.get(), POLLIN, 0}, {m_stop.get(), POLLIN, 0}};
        int patience = 0;
        {
            const std::lock_guard<std::mutex> guard(m_mutex);
            patience = m_stopCommand ? RETRY_MSEC : PATIENCE_MSEC;
        }
        poll(ready, std::size(ready), patience);
        if (ready[1].revents != 0)
            return;
        const std::lock_guard<std::mutex> guard(m_mutex);
        collect();
        serveRunningCommand();
    }
}

// Under the lock, so that whoever asks for events has all that came until then.
void Signals::collect() {
    signalfd_siginfo info{};
    while (read(m_signalFd.get(), &info, sizeof info) == sizeof info)
        handle(static_cast<int>(info.ssi_signo));
}

void Signals::handle(int signal) {
    switch (signal) {
    case SIGTERM:
    case SIGHUP:
        m_events.end = signal;
        m_stopCommand = m_running;
        break;
    case SIGINT:
        m_stopCommand = m_running;
        m_events.interrupted = !m_running;
        break;
    case SIGUSR1:
        m_events.terminateJob = !m_running;
        break;
    case SIGTSTP:
        m_events.suspend = !m_running;
        break;
    default:
        m_events.resumed = !m_running;
        break;
    }
    if (!m_running)
        wakeHost();
}

void Signals::serveRunningCommand() {
    if (!m_running)
        return;
    if (m_stopCommand && velmora_clp::CLPSession::getInstance()->stopFGCommand() >= 0)
        m_stopCommand = false;
    m_core->terminateJob();
}

} // namespace host
