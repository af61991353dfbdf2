#include "host/session.h"

#include "host/linesource.h"
#include "host/signals.h"
#include "host/ttyguard.h"
#include "velclp/clpman.h"
#include "velclp/core.h"
#include "velclp/locations.h"
#include "velclp/parser.h"
#include "velclp/stdstream.h"
#include "velclp/transport.h"

#include <malloc.h>
#include <unistd.h>

#include <chrono>
#include <csignal>
#include <iostream>
#include <memory>

// The library's way back to its host.
Transport* trans = nullptr;

namespace {
velmora_clp::CLPCore* s_core = nullptr;
host::Signals* s_signals = nullptr;
bool s_givenUp = false;
} // namespace

std::vector<std::string> parser_help(const std::vector<std::string>& terms,
                                     const std::string& word) {
    return s_core != nullptr ? s_core->parser_help(terms, word) : std::vector<std::string>();
}

namespace host {

namespace {

const int CANNOT_START = 1;
const int ENDED_BY_SIGNAL = 128;
const int GIVE_UP_LINE = -1;

std::vector<std::string> complete(const std::string& line) {
    return velmora_clp::CLPParser().tabContinue(line);
}

// Stops the process as the suspend key means it. The system does not stop a process that nobody
// could continue, such as a login shell.
void suspend() {
    trans->RestoreTTY();
    sigset_t stop;
    sigemptyset(&stop);
    sigaddset(&stop, SIGTSTP);
    pthread_sigmask(SIG_UNBLOCK, &stop, nullptr);
    raise(SIGTSTP);
    pthread_sigmask(SIG_BLOCK, &stop, nullptr);
    trans->RawTTY();
}

// Called while a read waits, on the host's thread.
int onEvents() {
    const Signals::Events events = s_signals->take();
    if (events.terminateJob)
        s_core->terminateJob();
    if (events.resumed)
        trans->RawTTY();
    if (events.suspend)
        suspend();
    if (events.end != 0)
        return stdStream::CLOSED;
    // Only what is being typed can be given up; from elsewhere the session just goes on.
    if ((!events.suspend && !events.interrupted) || isatty(STDIN_FILENO) == 0)
        return 0;
    s_givenUp = true;
    return GIVE_UP_LINE;
}

bool givenUp() {
    const bool result = s_givenUp;
    s_givenUp = false;
    return result;
}

std::unique_ptr<LineSource> lineSource(const Options& options, Transport& transport) {
    if (options.hasLines)
        return std::make_unique<GivenLines>(options.lines);
    if (isatty(STDIN_FILENO) == 0)
        return std::make_unique<PipedLines>(transport);
    transport.CreateHistoryBuf();
    Transport::setHelpFunc(complete);
    // The quit key would leave an operator without a session.
    std::signal(SIGQUIT, SIG_IGN);
    return std::make_unique<TerminalLines>(transport, givenUp);
}

// Runs a line. What a long answer needed lies between what is still held when it is freed, so the
// heap keeps it until it is told otherwise; behind a long line that costs no time that counts.
int runLine(velmora_clp::CLPCore& core, const std::string& line) {
    using std::chrono::steady_clock;
    const steady_clock::time_point begin = steady_clock::now();
    const int result = core.run(line);
    if (steady_clock::now() - begin > std::chrono::milliseconds(20))
        malloc_trim(0);
    return result;
}

void runLines(LineSource& source, velmora_clp::CLPCore& core, Signals& signals) {
    const bool operatorWaits = isatty(STDIN_FILENO) != 0;
    std::string line;
    while (signals.endSignal() == 0) {
        if (operatorWaits)
            core.terminateJob();
        const LineSource::Result result = source.next(line);
        if (result == LineSource::END)
            return;
        if (result == LineSource::NO_LINE)
            continue;
        const Signals::Running running(signals);
        if (runLine(core, line) < 0)
            return;
    }
}

// The engine lives in here, and ends before the transport does.
int runEngine(const Options& options, Transport& transport, Signals& signals) {
    const std::unique_ptr<LineSource> source = lineSource(options, transport);
    velmora_clp::CLPCore core(options.host, options.port, transport);
    s_core = &core;
    s_signals = &signals;
    signals.begin(core);
    stdStream::setWakeup(signals.wakeupFd(), onEvents);
    runLines(*source, core, signals);
    core.terminateSession();
    core.terminateJob();
    transport.flush();
    stdStream::setWakeup(-1, nullptr);
    signals.finish();
    s_core = nullptr;
    s_signals = nullptr;
    const int signal = signals.endSignal();
    return signal != 0 ? ENDED_BY_SIGNAL + signal : 0;
}

std::string helpFile(const Options& options) {
    if (!options.helpFile.empty())
        return options.helpFile;
    return options.prefix.empty() ? VELCLP_HELP_FILE : options.prefix + "/help.txt";
}

} // namespace

int runSession(const Options& options) {
    guardTerminal();
    Signals signals;
    if (initForSerial() == -1)
        return CANNOT_START;
    CLP_Man_Init(helpFile(options));
    int status = CANNOT_START;
    std::string reason;
    {
        Transport transport("std", options.timeout);
        trans = &transport;
        try {
            status = runEngine(options, transport, signals);
        } catch (const std::string& failure) {
            reason = failure;
        } catch (const std::exception& failure) {
            reason = failure.what();
        }
        trans = nullptr;
    }
    CLP_Man_Fini();
    if (!reason.empty())
        std::cerr << "velclp: " << reason << std::endl;
    return status;
}

} // namespace host
