#include "velclp/commandstatus.h"

#include "velclp/assertion.h"
#include "velclp/message.h"

namespace velmora_clp {

const char* const CommandStatus::status_tag[] = {
    "COMMAND COMPLETED",
    "COMMAND SPAWNED",
    "COMMAND PROCESSING FAILED",
    "COMMAND EXECUTION FAILED",
};

CommandStatus::CommandStatus() : _status(COMMAND_COMPLETED) {}

CommandStatus::CommandStatus(status s) : _status(s) {}

CommandStatus::~CommandStatus() {
    deleteMessages(messages);
}

CommandStatus::status CommandStatus::getStatusCode() const {
    return _status;
}

void CommandStatus::setStatusCode(status s) {
    VELCLP_ASSERT(s >= COMMAND_COMPLETED && s <= COMMAND_EXECUTION_FAILED,
                  "s>=COMMAND_COMPLETED&&s<=COMMAND_EXECUTION_FAILED");
    _status = s;
}

const char* CommandStatus::getStatusTag() const {
    const status current = _status;
    VELCLP_ASSERT(current >= COMMAND_COMPLETED && current <= COMMAND_EXECUTION_FAILED,
                  "_status>=COMMAND_COMPLETED&&_status<=COMMAND_EXECUTION_FAILED");
    return status_tag[current];
}

} // namespace velmora_clp
