// The records of a command's outcome: codes, the texts that responses print for them, messages.
#include "velclp/commandstatus.h"
#include "velclp/joberror.h"
#include "velclp/message.h"
#include "velclp/processingerror.h"

#include <gtest/gtest.h>

#include <memory>

using namespace velmora_clp;

namespace {

// The tags of the codes from first to last, each behind the one before.
template<typename Code, typename Record>
std::string tagsOf(Record& record, int first, int last, void (Record::*set)(Code),
                   const char* (Record::*tag)() const) {
    std::string all;
    for (int code = first; code <= last; ++code) {
        (record.*set)(static_cast<Code>(code));
        all.append(all.empty() ? "" : "|").append((record.*tag)());
    }
    return all;
}

TEST(RecordsOfOutcomes, PrintTheTagsOfTheirCodes) {
    CommandStatus status;
    EXPECT_STREQ(status.getStatusTag(), "COMMAND COMPLETED");
    EXPECT_EQ(tagsOf(status, 0, 3, &CommandStatus::setStatusCode, &CommandStatus::getStatusTag),
              "COMMAND COMPLETED|COMMAND SPAWNED|COMMAND PROCESSING FAILED|"
              "COMMAND EXECUTION FAILED");
    JobError error;
    EXPECT_STREQ(error.getErrorTag(), "Unknown");
    EXPECT_STREQ(error.getCimstatTag(), "CIM_ERR_FAILED");
    EXPECT_STREQ(error.getSeverityTag(), "Unknown");
    EXPECT_EQ(tagsOf(error, 0, 10, &JobError::setErrorCode, &JobError::getErrorTag),
              "Unknown|Other|Communications Error|Quality of Service Error|Software Error|"
              "Hardware Error|Environmental Error|Security Error|Oversubscription Error|"
              "Unavailable Resource Error|Unsupported_Operation_Error");
    EXPECT_EQ(tagsOf(error, 1, 20, &JobError::setCimstatCode, &JobError::getCimstatTag),
              "CIM_ERR_FAILED|CIM_ERR_ACCESS_DENIE|CIM_ERR_INVALID_NAMESPACE|"
              "CIM_ERR_INVALID_PARAMETER|CIM_ERR_INVALID_CLASS|CIM_ERR_NOT_FOUND|"
              "CIM_ERR_NOT_SUPPORTED|CIM_ERR_CLASS_HAS_CHILDREN|CIM_ERR_CLASS_HAS_INSTANCES|"
              "CIM_ERR_INVALID_SUPERCLASS|CIM_ERR_ALREADY_EXISTS|CIM_ERR_NO_SUCH_PROPERTY|"
              "CIM_ERR_TYPE_MISMATCH|CIM_ERR_QUERY_LANGUAGE_NOT_SUPPORTED|CIM_ERR_INVALID_QUERY|"
              "CIM_ERR_METHOD_NOT_AVAILABLE|CIM_ERR_METHOD_NOT_FOUND|CIM_ERR_UNEXPECTED_RESPONSE|"
              "CIM_ERR_INVALID_RESPONSE_DESTINATION|CIM_ERR_NAMESPACE_NOT_EMPTY");
    EXPECT_EQ(tagsOf(error, 0, 5, &JobError::setSeverityCode, &JobError::getSeverityTag),
              "Unknown|Reserved|Low|Medium|High|Fatal");
    ProcessingError processing;
    EXPECT_STREQ(processing.getErrorTag(), "COMMAND ERROR UNSPECIFIED");
    EXPECT_EQ(
        tagsOf(processing, 241, 256, &ProcessingError::setErrorCode, &ProcessingError::getErrorTag),
        "FUNCTION NOT SUPPORTED|MISSING REQUIRED TARGET|UNRECOGNIZED OEMEXTENSION|"
        "QUEUE FULL|REQUIRED OPTION MISSING|INVALID TARGET|OPTION NOT SUPPORTED|"
        "MISSING ARGUMENT|OUTPUT FORMAT NOT SUPPORTED|INVALID ARGUMENT|INVALID OPTION|"
        "COMMAND SYNTAX ERROR|COMMAND NOT RECOGNIZED|COMMAND NOT SUPPORTED|"
        "MISSING REQUIRED CLP PRIVILEGE|COMMAND ERROR UNSPECIFIED");
}

TEST(CodesOutOfRange, EndTheProcessWhenTheyAreSetOrTheirTagIsRead) {
    CommandStatus status;
    EXPECT_DEATH(status.setStatusCode(static_cast<CommandStatus::status>(4)),
                 "s>=COMMAND_COMPLETED&&s<=COMMAND_EXECUTION_FAILED");
    const CommandStatus unread(static_cast<CommandStatus::status>(-1));
    EXPECT_DEATH(unread.getStatusTag(),
                 "_status>=COMMAND_COMPLETED&&_status<=COMMAND_EXECUTION_FAILED");
    JobError error;
    EXPECT_DEATH(error.setErrorCode(static_cast<JobError::error>(11)),
                 "err>=Unknown&&err<=Unsupported_Operation_Error");
    EXPECT_DEATH(error.setCimstatCode(static_cast<JobError::stat>(0)),
                 "err>=CIM_ERR_FAILED&&err<=CIM_ERR_NAMESPACE_NOT_EMPTY");
    EXPECT_DEATH(error.setCimstatCode(static_cast<JobError::stat>(21)),
                 "err>=CIM_ERR_FAILED&&err<=CIM_ERR_NAMESPACE_NOT_EMPTY");
    EXPECT_DEATH(error.setSeverityCode(static_cast<JobError::severity>(6)),
                 "err>=S_Unknown&&err<=S_Fatal");
    ProcessingError processing(static_cast<ProcessingError::error>(240));
    EXPECT_DEATH(processing.getErrorTag(),
                 "err>=FUNCTION_NOT_SUPPORTED&&err<=COMMAND_ERROR_UNSPECIFIED");
    EXPECT_DEATH(processing.setErrorCode(static_cast<ProcessingError::error>(257)),
                 "err>=FUNCTION_NOT_SUPPORTED&&err<=COMMAND_ERROR_UNSPECIFIED");
}

TEST(Messages, AreMadeFromTheTableByTheirExactNumber) {
    const std::unique_ptr<CLPMessage> message(CLPMessage::NEW_MESSAGE("0xF0000001"));
    EXPECT_EQ(message->getId(), "0xF0000001");
    EXPECT_EQ(message->getMessage(), "The cimserver can't be connected.");
    EXPECT_EQ(message->getOwningEntity(), "OEMVelmora");
    EXPECT_TRUE(message->getArgs().empty());
    EXPECT_EQ(CLPMessage::MESSAGE.size(), 19U);
    EXPECT_EQ(CLPMessage::MESSAGE["0x0000000F"],
              "The selected configuration is already active. Use the force option to re-apply it.");
    EXPECT_DEATH(CLPMessage::NEW_MESSAGE("0x0000000a"), "!m.empty\\(\\)");
}

TEST(Messages, BelongToTheRecordThatHoldsThem) {
    // Freed with their record, null entries among them; a leak checker sees what is not.
    CommandStatus status;
    status.messages = {CLPMessage::NEW_MESSAGE("0x00000000"), nullptr};
    JobError error;
    error.messages = {nullptr, CLPMessage::NEW_MESSAGE("0x0000000C")};
    EXPECT_EQ(error.messages[1]->getMessage(), "The target already exists.");
}

} // namespace
