// What every verb has in common: its parsed line, a CIM connection under the login's token, a job
// record, the outcome, the renderer, and a request to stop. A verb derives from it and supplies
// `svc`, which does the work and ends by setCommandStatus and display, and `display`.
#ifndef VELCLP_CLPCOMMAND_H
#define VELCLP_CLPCOMMAND_H

#include "velclp/commandstatus.h"
#include "velclp/joberror.h"
#include "velclp/task.h"

#include <boost/shared_ptr.hpp>

#include <atomic>
#include <list>
#include <string>

class CLPToken;
class Transport;
typedef struct _CMCIClient CMCIClient;
typedef struct _CMPIObjectPath CMPIObjectPath;

namespace velmora_clp {

class CLPCmdJob;
class COutputer;
struct TargetGroup;

// The records a walk hands to the renderer; the list owns them.
typedef std::list<TargetGroup*> OperationResult;

class CLPCommand : public CLPTask {
public:
    // Why a command is to stop; NO_STOP while nobody asked for it.
    enum SIG : int { TERMINATE = 0, KILLED = 1, NO_STOP = 2 };

    // Connects to the CIM server as `token`, makes the job record and enters the session's table
    // of commands. Throws a CommandStatus* when the server cannot be reached and a JobError* when
    // the job cannot be made; the catcher deletes them. The transport outlives the command.
    CLPCommand(const std::string& host, const std::string& port, const std::string& token,
               Transport& transport, boost::shared_ptr<CLPToken> cmd);
    ~CLPCommand() override;

    // Moves the job to the state that goes with `s` and keeps `s`. COMMAND_SPAWNED silences the
    // command from here on.
    void setCommandStatus(CommandStatus::status s) override;

    void svc() override = 0;

    using CLPTask::stop;

    // Asks the command to end at its next checkpoint. From any thread; TERMINATE or KILLED only.
    virtual void stop(SIG sig);

    virtual int getJobID();

    // A place where the command may be ended: leaves the thread when a stop was requested. Only on
    // the command's own thread, never in a destructor, a noexcept function or inside a
    // `catch (...)` that does not rethrow abi::__forced_unwind.
    virtual void checkpoint();

    // Renders the outcome.
    virtual void display() = 0;

    // Whether the command runs on alone, its foreground gone.
    bool bBackGround() const;

    // Releases all that a result holds and empties it; null is allowed.
    static void clearresponse(OperationResult* list);

protected:
    bool stopRequested() const { return m_stop != NO_STOP; }
    // Makes the JobError when there is none yet, and sets its three codes.
    void setJobError(JobError::error error, JobError::stat cimStatus, JobError::severity severity);

    boost::shared_ptr<CLPToken> m_token;
    CMCIClient* m_client; // owned
    std::string m_host;
    std::string m_port;
    Transport* m_transport; // borrowed, but the silent one of a spawned command
    CLPCmdJob* m_job;       // owned; null when the job lives in the CIM server
    bool m_local;
    CMPIObjectPath* m_jobPath; // owned; null when the job is local
    int m_jobId;
    std::string m_cdt; // the current default target when the command was made
    CommandStatus m_status;
    JobError* m_error;           // owned; null until something fails
    OperationResult* m_response; // owned; null until there are results
    COutputer* m_output;         // owned
    std::atomic<SIG> m_stop;

private:
    static void answerFailure(CLPTask& task);
    int keepTime() const;
    void makeJob(int keepSeconds);
    void silence();

    Transport* m_silent; // owned; the transport of a spawned command
};

} // namespace velmora_clp

#endif
