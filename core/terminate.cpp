// The ends of a session: its commands, and single jobs at a request from outside the process.
#include "velclp/core.h"

#include "velclp/clpsession.h"
#include "velclp/dbstatement.h"
#include "velclp/locations.h"
#include "velclp/log.h"
#include "velclp/transport.h"

#include <unistd.h>

namespace velmora_clp {

namespace {
const int TRIES = 2;

bool waitForCommands(Transport& transport) {
    for (int i = 0; i < TRIES; ++i) {
        if (CLPSession::getInstance()->allCommandDone())
            return true;
        transport << ".";
        transport.flush();
        sleep(1);
    }
    return false;
}
} // namespace

void CLPCore::terminateSession() {
    const char* const function = "CLP.CLPCore.terminateSession";
    VELCLP_TRACE(function);
    if (!CLPSession::getInstance()->allCommandDone()) {
        *m_transport << "Killing commands running in backgrounds.";
        m_transport->flush();
        CLPSession::getInstance()->killallCommand();
        *m_transport << (waitForCommands(*m_transport) ? "done\n" : "failed\n");
    }
    *m_transport << "CLP Session terminated\n";
}

void CLPCore::terminateJob() {
    const char* const function = "CLP.CLPCore.terminateJob";
    VELCLP_TRACE(function);
    databaseWork(function, [&] {
        const std::string pid = std::to_string(getpid());
        DbStatement statement(function, Locations::get().addressDatabase);
        DBResultSet& row = statement.query("SELECT * from job_terminate where pid='" + pid + "'");
        if (!row.next())
            return;
        const int jobid = row.getInt("jobid");
        const int killed = row.getInt("killed");
        VELCLP_LOG_VALUE(function, "job=[%d],killed=[%d]", jobid, killed);
        CLPSession::getInstance()->stopCommand(jobid, killed != 0 ? CLPCommand::KILLED
                                                                  : CLPCommand::TERMINATE);
        statement.update("DELETE FROM job_terminate where pid='" + pid + "' and " + "jobid='" +
                         std::to_string(jobid) + "'");
    });
}

} // namespace velmora_clp
