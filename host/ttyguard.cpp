#include "host/ttyguard.h"

#include <termios.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <initializer_list>

namespace host {

namespace {

const int INPUT = 0;
termios s_saved;

// Only what may be called in a signal handler.
void restore() {
    tcsetattr(INPUT, TCSANOW, &s_saved);
}

void restoreAndDie(int signal) {
    restore();
    // The default action is in force again: the process ends as it would have.
    raise(signal);
}

} // namespace

void guardTerminal() {
    if (isatty(INPUT) == 0 || tcgetattr(INPUT, &s_saved) != 0)
        return;
    std::atexit(restore);
    struct sigaction action {};
    action.sa_handler = restoreAndDie;
    action.sa_flags = SA_RESETHAND | SA_NODEFER;
    for (const int signal : {SIGABRT, SIGSEGV, SIGBUS, SIGFPE, SIGILL})
        sigaction(signal, &action, nullptr);
}

} // namespace host
