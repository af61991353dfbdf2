// One numbered message of a command's outcome: a number such as "0x00000009", its text, the entity
// that owns the number, and arguments. The table of the numbers this system owns is fixed and
// filled when the library is loaded.
#ifndef VELCLP_MESSAGE_H
#define VELCLP_MESSAGE_H

#include <map>
#include <string>
#include <vector>

namespace velmora_clp {

class CLPMessage {
public:
    // Copies everything it is given.
    CLPMessage(const std::string& id, const std::string& message, const std::string& owningEntity,
               std::vector<std::string>& args);

    // A new message with the table's text for `id`; the caller owns it. An id that is not in the
    // table (the look-up minds case) is a programming error and ends the process.
    static CLPMessage* NEW_MESSAGE(const std::string& id);

    const std::string& getId() const { return m_id; }
    const std::string& getMessage() const { return m_message; }
    const std::string& getOwningEntity() const { return m_owningEntity; }
    const std::vector<std::string>& getArgs() const { return m_args; }

    // Text by number; ids are "0x" and eight upper-case hexadecimal digits.
    static std::map<std::string, std::string> MESSAGE;

private:
    std::string m_id;
    std::string m_message;
    std::string m_owningEntity;
    std::vector<std::string> m_args;
};

// Frees the messages, null ones aside, and empties the list.
void deleteMessages(std::vector<CLPMessage*>& messages);

} // namespace velmora_clp

#endif
