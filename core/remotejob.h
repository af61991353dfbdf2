// The job of a command that runs against another host: an instance on that host's CIM server.
#ifndef VELCLP_CORE_REMOTEJOB_H
#define VELCLP_CORE_REMOTEJOB_H

#include "velclp/cimhandle.h"

#include <string>

class Transport;

namespace velmora_clp {

// Creates the job's instance and gives its number; `path` takes the instance's path. Throws a
// JobError* when the server refuses.
int createRemoteJob(CMCIClient* client, Transport* transport, int keepSeconds, CimPath& path);

// Writes the job's state under the system's own login, whatever the operator may do. A server that
// cannot be reached is passed over; one that refuses is logged.
void writeRemoteJobState(const std::string& host, const std::string& port, CMPIObjectPath* path,
                         unsigned short state);

} // namespace velmora_clp

#endif
