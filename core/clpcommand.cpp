#include "velclp/clpcommand.h"

#include "core/cimconnect.h"
#include "core/defaulttarget.h"
#include "core/remotejob.h"
#include "velclp/assertion.h"
#include "velclp/clpcmdjob.h"
#include "velclp/clpsession.h"
#include "velclp/clpstring.h"
#include "velclp/coutputer.h"
#include "velclp/log.h"
#include "velclp/message.h"
#include "velclp/showrecords.h"
#include "velclp/token.h"
#include "velclp/transport.h"

#include <cxxabi.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstdlib>
#include <memory>

namespace velmora_clp {

namespace {

const int DEFAULT_KEEP_SECONDS = 300;

// States of a CIM concrete job.
enum JobState : unsigned short {
    JOB_RUNNING = 4,
    JOB_COMPLETED = 7,
    JOB_TERMINATED = 8,
    JOB_KILLED = 9,
    JOB_EXCEPTION = 10
};

unsigned short jobState(CommandStatus::status s) {
    if (s == CommandStatus::COMMAND_COMPLETED)
        return JOB_COMPLETED;
    return s == CommandStatus::COMMAND_SPAWNED ? JOB_RUNNING : JOB_EXCEPTION;
}

int clampToInt(std::int64_t value) {
    return static_cast<int>(std::clamp<std::int64_t>(value, INT_MIN, INT_MAX));
}

std::int64_t toNumber(const std::string& text) {
    return clampToInt(std::strtol(text.c_str(), nullptr, 10));
}

// "2.30" is two minutes and thirty seconds.
int keepSeconds(const std::string& text) {
    const std::vector<std::string> parts = splitString(text, ".");
    if (parts.empty())
        return 0;
    const std::int64_t seconds = parts.size() == 2 ? toNumber(parts[1]) : 0;
    return clampToInt(toNumber(parts[0]) * 60 + seconds);
}

CommandStatus* connectFailure() {
    auto status = std::make_unique<CommandStatus>(CommandStatus::COMMAND_PROCESSING_FAILED);
    status->messages.push_back(CLPMessage::NEW_MESSAGE("0xF0000001"));
    return status.release();
}

} // namespace

CLPCommand::CLPCommand(const std::string& host, const std::string& port, const std::string& token,
                       Transport& transport, boost::shared_ptr<CLPToken> cmd)
    : m_token(cmd),
      m_client(nullptr),
      m_host(host),
      m_port(port),
      m_transport(&transport),
      m_job(nullptr),
      m_local(host == LOCAL_HOST),
      m_jobPath(nullptr),
      m_jobId(0),
      m_status(CommandStatus::COMMAND_COMPLETED),
      m_error(nullptr),
      m_response(nullptr),
      m_output(nullptr),
      m_stop(NO_STOP),
      m_silent(nullptr) {
    const char* const function = "CLP.CLPCommand.CLPCommand";
    VELCLP_TRACE(function);
    setFailureHandler(answerFailure);
    // What is made here belongs to these until nothing can throw any more: the destructor does
    // not run for a command that was never built.
    CimClient client = connectCim(host, port, token);
    if (!client) {
        VELCLP_LOG_FAILURE(function, "Failed to connect cimserver");
        throw connectFailure();
    }
    auto output = std::make_unique<COutputer>(client.get(), &transport);
    const int keep = keepTime();
    m_cdt = currentDefaultTarget();
    m_client = client.get();
    makeJob(keep);
    static_cast<void>(client.release());
    m_output = output.release();
    CLPSession::getInstance()->insertCommand(this);
}

int CLPCommand::keepTime() const {
    std::string text;
    int seconds = 0;
    if (m_token->hasOption("-keep")) {
        const bool flag = m_token->getOption("-keep", text);
        VELCLP_ASSERT(flag, "flag");
        seconds = keepSeconds(text);
    } else {
        seconds = CLPSession::getInstance()->getKeepTime();
    }
    return seconds < 1 ? DEFAULT_KEEP_SECONDS : seconds;
}

void CLPCommand::makeJob(int seconds) {
    if (m_local) {
        m_job = new CLPCmdJob(clampToInt(static_cast<std::int64_t>(seconds) * 1000000));
        m_jobId = m_job->getJobId();
        return;
    }
    CimPath path;
    m_jobId = createRemoteJob(m_client, m_transport, seconds, path);
    m_jobPath = path.release();
}

CLPCommand::~CLPCommand() {
    const char* const function = "CLP.CLPCommand.~CLPCommand";
    VELCLP_TRACE(function);
    CLPSession::getInstance()->removeCommand(this);
    if (stopRequested()) {
        *m_transport << "Job " << m_jobId << " is killed" << Transport::endl;
        if (m_job != nullptr)
            m_job->RequestStateChange(m_stop == KILLED ? JOB_KILLED : JOB_TERMINATED);
    }
    const CimPath jobPath(m_jobPath);
    delete m_error;
    clearresponse(m_response);
    delete m_response;
    const CimClient client(m_client);
    delete m_job;
    delete m_output;
    delete m_silent;
}

void CLPCommand::silence() {
    if (m_silent == nullptr)
        m_silent = new Transport("nul", -1);
    m_transport = m_silent;
    m_output->setTransport(m_silent);
}

void CLPCommand::setCommandStatus(CommandStatus::status s) {
    const char* const function = "CLP.CLPCommand.setCommandStatus";
    VELCLP_TRACE(function);
    if (s == CommandStatus::COMMAND_SPAWNED)
        silence();
    const unsigned short state = jobState(s);
    VELCLP_LOG_VALUE(function, "job=[%d],status=[%d],state=[%d]", m_jobId, static_cast<int>(s),
                     static_cast<int>(state));
    if (m_local)
        m_job->RequestStateChange(state);
    else
        writeRemoteJobState(m_host, m_port, m_jobPath, state);
    m_status.setStatusCode(s);
}

void CLPCommand::setJobError(JobError::error error, JobError::stat cimStatus,
                             JobError::severity severity) {
    if (m_error == nullptr)
        m_error = new JobError;
    m_error->setCode(error, cimStatus, severity);
}

void CLPCommand::answerFailure(CLPTask& task) {
    const char* const function = "CLP.CLPCommand.answerFailure";
    VELCLP_TRACE(function);
    CLPCommand& command = static_cast<CLPCommand&>(task);
    try {
        if (command.m_error == nullptr)
            command.setJobError(JobError::Software_Error, JobError::CIM_ERR_FAILED,
                                JobError::S_Unknown);
        command.setCommandStatus(CommandStatus::COMMAND_EXECUTION_FAILED);
        command.display();
    } catch (const abi::__forced_unwind&) {
        throw;
    } catch (const std::exception& failure) {
        VELCLP_LOG_FAILURE(function, "catch exception=[%s]", failure.what());
    } catch (...) {
        VELCLP_LOG_FAILURE(function, "catch an unknown error!");
    }
}

void CLPCommand::stop(SIG sig) {
    const char* const function = "CLP.CLPCommand.stop";
    VELCLP_TRACE(function);
    VELCLP_LOG_VALUE(function, "job=[%d],sig=[%d]", m_jobId, static_cast<int>(sig));
    VELCLP_ASSERT(sig == TERMINATE || sig == KILLED, "sig==TERMINATE||sig==KILLED");
    m_stop = sig;
}

int CLPCommand::getJobID() {
    return m_jobId;
}

void CLPCommand::checkpoint() {
    if (!stopRequested())
        return;
    VELCLP_LOG_BRANCH("CLP.CLPCommand.checkpoint", "job=[%d] ends here", m_jobId);
    pthread_exit(nullptr);
}

bool CLPCommand::bBackGround() const {
    return m_status.getStatusCode() == CommandStatus::COMMAND_SPAWNED;
}

void CLPCommand::clearresponse(OperationResult* list) {
    if (list == nullptr)
        return;
    for (const TargetGroup* group : *list)
        VELCLP_ASSERT(group != nullptr, "group");
    freeTargetGroups(*list);
}

} // namespace velmora_clp
