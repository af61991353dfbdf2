#include "velclp/message.h"

#include "velclp/assertion.h"

#include <utility>

namespace velmora_clp {

namespace {
const char* const OWNING_ENTITY = "OEMVelmora";
}

std::map<std::string, std::string> CLPMessage::MESSAGE = {
    {"0x00000000", "Request completed successfully."},
    {"0x00000001", "Operation is not supported."},
    {"0x00000002", "Failed. No further information is available."},
    {"0x00000003", "Operation cannot complete within specified timeout period."},
    {"0x00000004", "One or more parameters specified are invalid."},
    {"0x00000005", "Requested access is not supported."},
    {"0x00000006", "Use of timeout parameter is not supported."},
    {"0x00000007", "The target device is busy and cannot be re-assigned."},
    {"0x00000008", "Timeout expired prior to completion of operation."},
    {"0x00000009", "An internal software error has occurred."},
    {"0x0000000A", "The target is busy and its state cannot be changed."},
    {"0x0000000B", "The target cannot transition to the requested state from its current state."},
    {"0x0000000C", "The target already exists."},
    {"0x0000000D", "The switch is in use, and the port mappings cannot be changed."},
    {"0x0000000E", "The specified ports are not mapped and cannot be unmapped."},
    {"0x0000000F",
     "The selected configuration is already active. Use the force option to re-apply it."},
    {"0x00000010", "The target association cannot be created between the specified targets."},
    {"0xF0000000", "The parent is invalid."},
    {"0xF0000001", "The cimserver can't be connected."},
};

CLPMessage::CLPMessage(const std::string& id, const std::string& message,
                       const std::string& owningEntity, std::vector<std::string>& args)
    : m_id(id), m_message(message), m_owningEntity(owningEntity), m_args(args) {}

CLPMessage* CLPMessage::NEW_MESSAGE(const std::string& id) {
    const std::string m = MESSAGE[id];
    VELCLP_ASSERT(!m.empty(), "!m.empty()");
    std::vector<std::string> args;
    return new CLPMessage(id, m, OWNING_ENTITY, args);
}

void deleteMessages(std::vector<CLPMessage*>& messages) {
    for (CLPMessage* message : messages)
        delete message;
    messages.clear();
}

} // namespace velmora_clp
