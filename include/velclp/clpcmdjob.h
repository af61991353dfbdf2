// The row of a command that runs on the controller itself, in the table CLPCmdJob of the session
// database; its columns are the properties of a CIM concrete job. A database that fails costs the
// row and a line in the log, never the command.
#ifndef VELCLP_CLPCMDJOB_H
#define VELCLP_CLPCMDJOB_H

#include <string>

namespace velmora_clp {

class CLPCmdJob {
public:
    // Makes the row, in state 4 (Running). `timeBeforeRemoval` is in microseconds.
    explicit CLPCmdJob(int timeBeforeRemoval);
    CLPCmdJob(const CLPCmdJob&) = delete;
    CLPCmdJob& operator=(const CLPCmdJob&) = delete;
    virtual ~CLPCmdJob();

    // The row's id; 0 when there is no row.
    int getJobId() const { return m_id; }

    // As getElementValueFromDB and setElementValueToDB for this row.
    void* getElementValue(std::string name, int type);
    void setElementValue(std::string name, std::string value, int type);

    // Moves the job to a CIM job state (7 Completed, 8 Terminated, 9 Killed, 10 Exception, ...);
    // an ended job, a state above 6, gets its time of removal.
    void RequestStateChange(unsigned short state);

private:
    int m_id;
    int m_timeBeforeRemoval;
};

// A new value of the column, or null when there is no row: for type 0 an int, for type 2 an
// unsigned 64-bit number (both by `new`), otherwise a text (by `new[]`). The caller frees it.
void* getElementValueFromDB(int id, std::string& name, int type);

// Writes the column. The value goes into the statement as it is, unquoted.
void setElementValueToDB(int id, std::string& name, std::string& value, int type);

} // namespace velmora_clp

#endif
