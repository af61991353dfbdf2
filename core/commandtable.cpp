// The session's table of living commands.
#include "velclp/clpsession.h"

#include "velclp/clpcommand.h"
#include "velclp/log.h"
#include "velclp/threadguard.h"

#include <algorithm>

namespace velmora_clp {

namespace {
// The table may hold a command whose verb is being destroyed already: only the base is sure.
void stopOne(CLPCommand* command, CLPCommand::SIG sig) {
    command->CLPCommand::stop(sig);
}
} // namespace

void CLPSession::insertCommand(CLPCommand* command) {
    VELCLP_TRACE("CLP.CLPSession.insertCommand");
    if (command == nullptr)
        return;
    ThreadGuard guard(&m_commandLock);
    m_commands[command->getJobID()] = command;
}

void CLPSession::removeCommand(CLPCommand* command) {
    VELCLP_TRACE("CLP.CLPSession.removeCommand");
    if (command == nullptr)
        return;
    // Called from the destructor of the command's base, where this is the base's operation.
    const int jobid = command->getJobID();
    ThreadGuard guard(&m_commandLock);
    m_commands.erase(jobid);
}

CLPCommand* CLPSession::findCommand(int jobid) {
    VELCLP_TRACE("CLP.CLPSession.findCommand");
    ThreadGuard guard(&m_commandLock);
    const auto found = m_commands.find(jobid);
    return found != m_commands.end() ? found->second : nullptr;
}

bool CLPSession::stopCommand(int jobid, CLPCommand::SIG sig) {
    VELCLP_TRACE("CLP.CLPSession.stopCommand");
    ThreadGuard guard(&m_commandLock);
    const auto found = m_commands.find(jobid);
    if (found == m_commands.end())
        return false;
    stopOne(found->second, sig);
    return true;
}

int CLPSession::stopFGCommand() {
    const char* const function = "CLP.CLPSession.stopFGCommand";
    VELCLP_TRACE(function);
    ThreadGuard guard(&m_commandLock);
    const auto found = std::find_if(m_commands.begin(), m_commands.end(),
                                    [](const auto& entry) { return !entry.second->bBackGround(); });
    if (found == m_commands.end())
        return -1;
    stopOne(found->second, CLPCommand::KILLED);
    VELCLP_LOG_VALUE(function, "job=[%d]", found->first);
    return found->first;
}

void CLPSession::stopAll(CLPCommand::SIG sig) {
    ThreadGuard guard(&m_commandLock);
    for (const auto& entry : m_commands)
        stopOne(entry.second, sig);
}

void CLPSession::killallCommand() {
    VELCLP_TRACE("CLP.CLPSession.killallCommand");
    stopAll(CLPCommand::KILLED);
}

void CLPSession::stopallCommand() {
    VELCLP_TRACE("CLP.CLPSession.stopallCommand");
    stopAll(CLPCommand::TERMINATE);
}

bool CLPSession::allCommandDone() {
    VELCLP_TRACE("CLP.CLPSession.allCommandDone");
    ThreadGuard guard(&m_commandLock);
    return m_commands.empty();
}

} // namespace velmora_clp
