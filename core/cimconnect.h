// Connections to the CIM server, and text as the CIM client takes it.
#ifndef VELCLP_CORE_CIMCONNECT_H
#define VELCLP_CORE_CIMCONNECT_H

#include "velclp/cimhandle.h"

#include <string>

// Not every release of the client library has it.
#ifndef SFCC_SCHEMA
#define SFCC_SCHEMA "http"
#endif

namespace velmora_clp {

const char* const LOCAL_HOST = "localhost";

// A client that sends `user` and no password; null when nothing answers.
inline CimClient connectCim(const std::string& host, const std::string& port,
                            const std::string& user) {
    return CimClient(
        cmciConnect(host.c_str(), SFCC_SCHEMA, port.c_str(), user.c_str(), nullptr, nullptr));
}

inline void setCimText(CMPIInstance* instance, const char* name, const std::string& text) {
    // The client takes a text by its own address, not by that of a CMPIValue, and copies it.
    instance->ft->setProperty(
        instance, name, reinterpret_cast<CMPIValue*>(const_cast<char*>(text.c_str())), CMPI_chars);
}

} // namespace velmora_clp

#endif
