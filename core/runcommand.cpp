#include "velclp/clpstring.h"
#include "velclp/core.h"
#include "velclp/log.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <iostream>

namespace velmora_clp {

namespace {

const int NOT_RUN = 127;
const unsigned FIRST_PRIVATE_FD = 3;

// In the child: nothing of this process is handed on but the standard descriptors, and signals are
// as a fresh program expects them. Only what may be called behind fork() in a process of many
// threads.
[[noreturn]] void becomeProgram(char** argv) {
    close_range(FIRST_PRIVATE_FD, ~0U, 0);
    for (int signal = 1; signal < NSIG; ++signal)
        std::signal(signal, SIG_DFL);
    // Nobody here would ever continue a program that the suspend key had stopped.
    std::signal(SIGTSTP, SIG_IGN);
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    execv(argv[0], argv);
    // Not exit(): this is a copy of the session, whose end would run twice.
    _exit(NOT_RUN);
}

} // namespace

int run_command(const char* line) {
    const char* const function = "CLP.run_command";
    VELCLP_TRACE(function);
    char** const argv = get_argv(line);
    if (argv == nullptr) {
        std::cerr << "Syntax error: Unterminated quoted string.\n";
        return 0;
    }
    // What stands in the buffer would be written twice, or behind the program's own output.
    std::cout.flush();
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0)
        becomeProgram(argv);
    if (child < 0)
        VELCLP_LOG_FAILURE(function, "fork failed=[%d]", errno);
    while (child > 0 && waitpid(child, nullptr, 0) < 0 && errno == EINTR)
        continue;
    del_argv(argv);
    return 0;
}

} // namespace velmora_clp
