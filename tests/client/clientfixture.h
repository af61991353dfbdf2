// What the client's tests share: handles, values in one line, and a client of a stand-in server.
#pragma once

#include "standin.h"

#include <velclp/cimhandle.h>

#include <CimClientLib/native.h>

#include <gtest/gtest.h>

#include <string>

namespace velmora_clp {

// A status after a call: its code and words.
struct Outcome {
    int code;
    std::string message;
    bool operator==(const Outcome& other) const {
        return code == other.code && message == other.message;
    }
};
std::ostream& operator<<(std::ostream& out, const Outcome& outcome);
Outcome outcome(const CimStatus& status);

// A value with type and state, such as "0090/0000 17" or "1600/0100 null"; arrays element for
// element in brackets. Text stands in quotes.
std::string show(const CMPIData& data);
// All properties of an instance, one a line, "Name=..." as by show().
std::string show(CMPIInstance* instance);
std::string show(CMPIObjectPath* path);
std::string show(CMPIArgs* args);
// Every element, one a line; paths and instances by show().
std::string show(CMPIEnumeration* enumeration);

// Text as a value of the type CMPI_chars.
CMPIValue* chars(const char* text);
CimPath newPath(const char* nameSpace, const char* className);
void addTextKey(CMPIObjectPath* path, const char* name, const char* value);

// root/cimv2:CIM_Thing.Name="x".
CimPath thing();

// A stand-in server and a client that is connected to it.
class WithServer : public ::testing::Test {
protected:
    WithServer();

    // What every call takes.
    CMCIClientFT& table() { return *client->ft; }
    CMCIClient* c() { return client.get(); }
    CMPIObjectPath* op() { return name.get(); }
    CMPIStatus* rc() { return status.out(); }

    // The reply that is prepared next, taken for that of a list or of an instance.
    CimEnumeration names() { return CimEnumeration(table().enumInstanceNames(c(), op(), rc())); }
    CimInstance instance() { return CimInstance(table().getInstance(c(), op(), 0, nullptr, rc())); }

    CimPath name = thing();
    StandIn server;
    CimStatus status;
    CimClient client;
};

// Lets it be seen that an operation failed, and how.
#define EXPECT_FAILS(expression, code, message)                                                    \
    do {                                                                                           \
        EXPECT_FALSE(expression);                                                                  \
        EXPECT_EQ(outcome(status), (Outcome{code, message}));                                      \
    } while (false)

} // namespace velmora_clp
