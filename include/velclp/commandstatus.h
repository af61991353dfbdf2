// The `status` of a command as DSP0214 defines it (clause on command status): how far it came,
// with the messages that go with it. A command's constructor throws one by pointer.
#ifndef VELCLP_COMMANDSTATUS_H
#define VELCLP_COMMANDSTATUS_H

#include <atomic>
#include <vector>

namespace velmora_clp {

class CLPMessage;

class CommandStatus {
public:
    enum status : int {
        COMMAND_COMPLETED = 0,
        COMMAND_SPAWNED = 1,
        COMMAND_PROCESSING_FAILED = 2,
        COMMAND_EXECUTION_FAILED = 3
    };

    // The code is stored as it is; it is tested when it is set again or its tag is read.
    CommandStatus();
    explicit CommandStatus(status s);
    CommandStatus(const CommandStatus&) = delete;
    CommandStatus& operator=(const CommandStatus&) = delete;
    virtual ~CommandStatus();

    status getStatusCode() const;
    // A code outside the enumeration ends the process.
    void setStatusCode(status s);
    // Static text such as "COMMAND COMPLETED".
    const char* getStatusTag() const;

    // Owned; null entries are allowed.
    std::vector<CLPMessage*> messages;

private:
    std::atomic<status> _status; // the session looks at it from other threads
    static const char* const status_tag[];
};

} // namespace velmora_clp

#endif
