// What the operations of a client share: the client itself, one exchange with the server, and how
// whatever ends an operation becomes its status.
#ifndef CIMCLIENT_CLIENTCALL_H
#define CIMCLIENT_CLIENTCALL_H

#include "connectionpool.h"
#include "objects.h"
#include "replydocument.h"
#include "request.h"
#include "status.h"

#include <CimClientLib/cmci.h>

#include <exception>
#include <string>

namespace cimclient {

struct Client : CMCIClient {
    explicit Client(Endpoint target);
    static Client* from(CMCIClient* client) { return static_cast<Client*>(client); }

    Endpoint endpoint;
    CMCIClientData data;
};

// One call and its reply, whose text lives in the borrowed connection.
class Exchange {
public:
    Exchange(CMCIClient* client, const Request& request)
        : m_connection(ConnectionPool::instance().borrow(Client::from(client)->endpoint)),
          m_document(m_connection->call(request)) {}

    pugi::xml_node returnValue() const { return m_document.returnValue(); }
    pugi::xml_node response(const char* element) const { return m_document.response(element); }

private:
    ConnectionPool::Lease m_connection;
    ReplyDocument m_document;
};

[[noreturn]] inline void throwMissing(const char* what) {
    throw Failure{CMPI_RC_ERR_INVALID_PARAMETER, std::string("No ") + what + " given"};
}

inline ObjectPath& target(CMPIObjectPath* op) {
    if (!op)
        throwMissing("object path");
    return *ObjectPath::from(op);
}

inline ObjectPath& targetWithClass(CMPIObjectPath* op) {
    ObjectPath& path = target(op);
    if (!path.className || path.className->empty())
        throwMissing("class name");
    return path;
}

// For operations on a whole namespace when there is no class.
inline const char* classOrNull(const ObjectPath& path) {
    return path.className && !path.className->empty() ? path.className->c_str() : nullptr;
}

// Runs an operation: whatever ends it becomes its status.
template<typename Result, typename Operation>
Result run(CMPIStatus* rc, Result onFailure, Operation operation) {
    setOk(rc);
    try {
        return operation();
    } catch (const Failure& failure) {
        failure.report(rc);
    } catch (const std::exception& error) {
        Failure{CMPI_RC_ERR_FAILED, error.what()}.report(rc);
    }
    return onFailure;
}

// The same for operations that give an object, null when they failed.
template<typename Object, typename Operation>
Object* runFor(CMPIStatus* rc, Operation operation) {
    return run(rc, static_cast<Object*>(nullptr), [&]() -> Object* { return operation(); });
}

// The same for operations that return their status.
template<typename Operation>
CMPIStatus runStatus(Operation operation) {
    CMPIStatus rc{};
    run(&rc, 0, [&] {
        operation();
        return 0;
    });
    return rc;
}

inline bool has(CMPIFlags flags, CMPIFlags bit) {
    return (flags & bit) != 0;
}

inline CMPIData failedValue() {
    CMPIData data{};
    data.state = CMPI_nullValue | CMPI_notFound;
    return data;
}

} // namespace cimclient

#endif
