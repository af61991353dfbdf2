// velclp-sim: reads the command line, runs the simulator, and ends it on SIGTERM and SIGINT.
#include "simulator/simulator.h"

#include <pthread.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>
#include <exception>
#include <iostream>
#include <stdexcept>
#include <thread>

namespace {

using namespace velclp_sim;

/// Signals that end the server; blocked in every thread, so that sigwait() alone takes them.
sigset_t endingSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGHUP);
    return signals;
}

void followParent() {
    const pid_t parent = getppid();
    prctl(PR_SET_PDEATHSIG, SIGTERM);
    if (getppid() != parent) {
        throw std::runtime_error("the starting process has ended");
    }
}

void run(const Options& options) {
    const sigset_t signals = endingSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    std::signal(SIGPIPE, SIG_IGN);
    if (options.dieWithParent) {
        followParent();
    }
    Simulator simulator(options);
    const int port = simulator.bind();
    std::thread server([&] { simulator.serve(); });
    std::cout << "listening on " << options.host << ':' << port << std::endl;
    int received = 0;
    sigwait(&signals, &received);
    simulator.stop();
    server.join();
}

} // namespace

int main(int argc, char* argv[]) {
    try {
        const Options options = readOptions(argc, argv);
        if (options.help) {
            std::cout << usage();
        } else if (options.version) {
            std::cout << "velclp-sim " << VELCLP_SIM_VERSION << '\n';
        } else {
            run(options);
        }
        return 0;
    } catch (const std::invalid_argument& error) {
        std::cerr << "velclp-sim: " << error.what() << '\n';
        return 2;
    } catch (const std::exception& error) {
        std::cerr << "velclp-sim: " << error.what() << '\n';
        return 1;
    }
}
