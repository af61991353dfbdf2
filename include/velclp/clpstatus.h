// What a verb's `display` hands to the renderer: borrowed pointers to the command's records and
// the number of its job. Built on the stack for one call.
#ifndef VELCLP_CLPSTATUS_H
#define VELCLP_CLPSTATUS_H

namespace velmora_clp {

class CommandStatus;
class JobError;

struct _CLPStatus {
    CommandStatus* status;
    JobError* error; // null when nothing failed
    int job_id;
};

} // namespace velmora_clp

#endif
