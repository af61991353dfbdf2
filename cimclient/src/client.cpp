#include "clientcall.h"
#include "operations.h"
#include "text.h"

#include <utility>

namespace cimclient {

namespace {

CMPIStatus release(CMCIClient* client) {
    if (!client)
        return status(CMPI_RC_ERR_FAILED);
    delete Client::from(client);
    return status(CMPI_RC_OK);
}

CMCIClient* clone(CMCIClient*, CMPIStatus* rc) {
    return noObject(rc, CMPI_RC_ERR_NOT_SUPPORTED);
}

CMCIClientFT table = {NATIVE_FT_VERSION, release,        clone,           getClass,
                      enumClassNames,    enumClasses,    getInstance,     createInstance,
                      setInstance,       deleteInstance, execQuery,       enumInstanceNames,
                      enumInstances,     associators,    associatorNames, references,
                      referenceNames,    invokeMethod,   setProperty,     getProperty};

} // namespace

Client::Client(Endpoint targetEndpoint)
    : CMCIClient{nullptr, &table},
      endpoint(std::move(targetEndpoint)),
      data{endpoint.host.data(),
           endpoint.port.data(),
           endpoint.user ? endpoint.user->data() : nullptr,
           endpoint.user ? endpoint.password.data() : nullptr,
           endpoint.scheme.data(),
           0} {
    hdl = &data;
}

namespace {

// A client for an address where something answers.
CMCIClient* connect(Endpoint endpoint) {
    if (!ConnectionPool::instance().hasOpen(endpoint))
        Connection::probe(endpoint);
    return new Client(std::move(endpoint));
}

} // namespace

} // namespace cimclient

using namespace cimclient;

CIMCLIENT_EXPORT CMCIClient* cmciConnect(const char* hn, const char* scheme, const char* port,
                                         const char* user, const char* pwd, CMPIStatus* rc) {
    return runFor<CMCIClient>(rc, [&] { return connect(Endpoint(hn, scheme, port, user, pwd)); });
}

CIMCLIENT_EXPORT CMCIClient* cmciConnect2(const char* hn, const char* scheme, const char* port,
                                          const char* user, const char* pwd, int verifyMode,
                                          const char* trustStore, const char* certFile,
                                          const char* keyFile, CMPIStatus* rc) {
    return runFor<CMCIClient>(rc, [&] {
        Endpoint endpoint(hn, scheme, port, user, pwd);
        endpoint.verifyPeer = verifyMode == CMCI_VERIFY_PEER;
        endpoint.trustStore = optionalText(trustStore);
        endpoint.certFile = optionalText(certFile);
        endpoint.keyFile = optionalText(keyFile);
        return connect(std::move(endpoint));
    });
}
