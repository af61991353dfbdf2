// Where a client connects to, and as whom.
#ifndef CIMCLIENT_ENDPOINT_H
#define CIMCLIENT_ENDPOINT_H

#include <optional>
#include <string>

namespace cimclient {

struct Endpoint {
    // What cmciConnect takes: null stands for the defaults. A Failure when no address can be made
    // of it.
    Endpoint(const char* hostName, const char* schemeName, const char* portOrPath,
             const char* userName, const char* userPassword);

    // Connections of the same key may take each other's place.
    std::string key() const;
    // What a key begins with: the server's address alone.
    std::string serverKey() const;

    std::string scheme;
    std::string host;
    std::string port;
    // Of the server's CIM operations.
    std::string url;
    // Empty for TCP.
    std::string unixSocket;
    std::optional<std::string> user;
    std::string password;

    bool verifyPeer = false;
    std::optional<std::string> trustStore;
    std::optional<std::string> certFile;
    std::optional<std::string> keyFile;
};

} // namespace cimclient

#endif
