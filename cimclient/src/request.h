// One request: the two header values that name the operation and its target, and the body. It is
// built by IntrinsicCall, one parameter after the other in the order that goes on the wire, or by
// methodCall.
#ifndef CIMCLIENT_REQUEST_H
#define CIMCLIENT_REQUEST_H

#include "xmlwriter.h"

#include <string>

namespace cimclient {

struct Request {
    std::string method;
    // Empty when the path has no namespace: the header is left out then.
    std::string object;
    std::string body;
};

class IntrinsicCall {
public:
    // The operation's name (DSP0200, 5.4.2), and a path for its namespace.
    IntrinsicCall(const char* name, const ObjectPath& target);

    IntrinsicCall& flag(const char* parameter, bool set);
    // IncludeClassOrigin, IncludeQualifiers and, when it is not null, the list of properties.
    IntrinsicCall& detail(CMPIFlags flags, char** properties);
    // Optional ones: left out for null.
    IntrinsicCall& className(const char* parameter, const char* name);
    IntrinsicCall& text(const char* parameter, const char* text);
    IntrinsicCall& propertyList(char** properties);

    IntrinsicCall& instanceName(const char* parameter, const ObjectPath& path);
    IntrinsicCall& instance(const char* parameter, const ObjectPath& path,
                            const Instance& instance);
    IntrinsicCall& namedInstance(const char* parameter, const ObjectPath& path,
                                 const Instance& instance);
    // Nothing for null.
    IntrinsicCall& value(const char* parameter, const Data& data);

    // Ends the call; it takes no parameter afterwards.
    Request take();

private:
    XmlWriter open(const char* parameter);

    Request m_request;
};

// An extrinsic method of the path's instance, or of its class when it has no keys. The arguments
// may be null.
Request methodCall(const ObjectPath& target, const char* method, const Args* in);

} // namespace cimclient

#endif
