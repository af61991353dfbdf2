#include "connectionpool.h"
#include "objects.h"
#include "replydocument.h"
#include "replyreader.h"
#include "request.h"
#include "status.h"
#include "text.h"

#include <CimClientLib/cmci.h>

#include <exception>
#include <utility>

namespace cimclient {

namespace {

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

[[noreturn]] void throwMissing(const char* what) {
    throw Failure{CMPI_RC_ERR_INVALID_PARAMETER, std::string("No ") + what + " given"};
}

ObjectPath& target(CMPIObjectPath* op) {
    if (!op)
        throwMissing("object path");
    return *ObjectPath::from(op);
}

ObjectPath& targetWithClass(CMPIObjectPath* op) {
    ObjectPath& path = target(op);
    if (!path.className || path.className->empty())
        throwMissing("class name");
    return path;
}

// For operations on a whole namespace when there is no class.
const char* classOrNull(const ObjectPath& path) {
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

pugi::xml_node firstReturned(const Exchange& exchange) {
    const pugi::xml_node element = firstElement(exchange.returnValue());
    if (!element)
        throw Failure{CMPI_RC_ERR_FAILED, "The reply holds no object"};
    return element;
}

// Every element that was returned, each made into an object by `read`.
template<typename Read>
CMPIEnumeration* enumerate(const Exchange& exchange, CMPIType type, Read read) {
    std::vector<Data> elements;
    const pugi::xml_node list = exchange.returnValue();
    for (auto element = firstElement(list); element; element = nextElement(element))
        elements.push_back(read(element));
    return newEnumeration(type, std::move(elements));
}

CMPIEnumeration* enumeratePaths(const Exchange& exchange) {
    return enumerate(exchange, CMPI_ref, [](pugi::xml_node element) {
        return Data::ofReference(ReplyReader().path(element).release());
    });
}

CMPIEnumeration* enumerateInstances(const Exchange& exchange, const ObjectPath& path) {
    return enumerate(exchange, CMPI_instance, [&path](pugi::xml_node element) {
        return Data::ofInstance(ReplyReader().locatedInstance(element, path.nameSpace).release());
    });
}

CMPIStatus release(CMCIClient* client) {
    if (!client)
        return status(CMPI_RC_ERR_FAILED);
    delete Client::from(client);
    return status(CMPI_RC_OK);
}

CMCIClient* clone(CMCIClient*, CMPIStatus* rc) {
    return noObject(rc, CMPI_RC_ERR_NOT_SUPPORTED);
}

bool has(CMPIFlags flags, CMPIFlags bit) {
    return (flags & bit) != 0;
}

CMPIConstClass* getClass(CMCIClient* client, CMPIObjectPath* op, CMPIFlags flags, char** properties,
                         CMPIStatus* rc) {
    return run(rc, static_cast<CMPIConstClass*>(nullptr), [&]() -> CMPIConstClass* {
        const ObjectPath& path = targetWithClass(op);
        const Exchange exchange(
            client, IntrinsicCall("GetClass", path)
                        .flag("LocalOnly", has(flags, CMPI_FLAG_LocalOnly))
                        .flag("IncludeClassOrigin", has(flags, CMPI_FLAG_IncludeClassOrigin))
                        .flag("IncludeQualifiers", has(flags, CMPI_FLAG_IncludeQualifiers))
                        .propertyList(properties)
                        .className("ClassName", classOrNull(path))
                        .take());
        return ReplyReader().classDeclaration(firstReturned(exchange)).release();
    });
}

CMPIEnumeration* enumClassNames(CMCIClient* client, CMPIObjectPath* op, CMPIFlags flags,
                                CMPIStatus* rc) {
    return run(rc, static_cast<CMPIEnumeration*>(nullptr), [&] {
        const ObjectPath& path = target(op);
        return enumeratePaths(
            {client, IntrinsicCall("EnumerateClassNames", path)
                         .className("ClassName", classOrNull(path))
                         .flag("DeepInheritance", has(flags, CMPI_FLAG_DeepInheritance))
                         .take()});
    });
}

CMPIEnumeration* enumClasses(CMCIClient* client, CMPIObjectPath* op, CMPIFlags flags,
                             CMPIStatus* rc) {
    return run(rc, static_cast<CMPIEnumeration*>(nullptr), [&] {
        const ObjectPath& path = target(op);
        const Exchange exchange(
            client, IntrinsicCall("EnumerateClasses", path)
                        .className("ClassName", classOrNull(path))
                        .flag("DeepInheritance", has(flags, CMPI_FLAG_DeepInheritance))
                        .flag("LocalOnly", has(flags, CMPI_FLAG_LocalOnly))
                        .flag("IncludeQualifiers", has(flags, CMPI_FLAG_IncludeQualifiers))
                        .flag("IncludeClassOrigin", has(flags, CMPI_FLAG_IncludeClassOrigin))
                        .take());
        return enumerate(exchange, CMPI_class, [](pugi::xml_node element) {
            CMPIValue value{};
            value.cls = ReplyReader().classDeclaration(element).release();
            return Data(CMPI_class, value);
        });
    });
}

CMPIInstance* getInstance(CMCIClient* client, CMPIObjectPath* op, CMPIFlags flags,
                          char** properties, CMPIStatus* rc) {
    return run(rc, static_cast<CMPIInstance*>(nullptr), [&]() -> CMPIInstance* {
        const ObjectPath& path = targetWithClass(op);
        const Exchange exchange(
            client, IntrinsicCall("GetInstance", path)
                        .flag("LocalOnly", has(flags, CMPI_FLAG_LocalOnly))
                        .flag("IncludeClassOrigin", has(flags, CMPI_FLAG_IncludeClassOrigin))
                        .flag("IncludeQualifiers", has(flags, CMPI_FLAG_IncludeQualifiers))
                        .propertyList(properties)
                        .instanceName("InstanceName", path)
                        .take());
        Owned<Instance> instance(new Instance(path));
        ReplyReader().instance(firstReturned(exchange), *instance);
        return instance.release();
    });
}

CMPIObjectPath* createInstance(CMCIClient* client, CMPIObjectPath* op, CMPIInstance* inst,
                               CMPIStatus* rc) {
    return run(rc, static_cast<CMPIObjectPath*>(nullptr), [&]() -> CMPIObjectPath* {
        const ObjectPath& path = targetWithClass(op);
        if (!inst)
            throwMissing("instance");
        const Exchange exchange(client, IntrinsicCall("CreateInstance", path)
                                            .instance("NewInstance", path, *Instance::from(inst))
                                            .take());
        const pugi::xml_node name = firstElement(exchange.returnValue());
        return name ? ReplyReader().path(name).release() : nullptr;
    });
}

CMPIStatus setInstance(CMCIClient* client, CMPIObjectPath* op, CMPIInstance* inst, CMPIFlags flags,
                       char** properties) {
    return runStatus([&] {
        const ObjectPath& path = targetWithClass(op);
        if (!inst)
            throwMissing("instance");
        Exchange(client, IntrinsicCall("ModifyInstance", path)
                             .flag("IncludeQualifiers", has(flags, CMPI_FLAG_IncludeQualifiers))
                             .propertyList(properties)
                             .namedInstance("ModifiedInstance", path, *Instance::from(inst))
                             .take())
            .returnValue();
    });
}

CMPIStatus deleteInstance(CMCIClient* client, CMPIObjectPath* op) {
    return runStatus([&] {
        const ObjectPath& path = targetWithClass(op);
        Exchange(client,
                 IntrinsicCall("DeleteInstance", path).instanceName("InstanceName", path).take())
            .returnValue();
    });
}

CMPIEnumeration* execQuery(CMCIClient* client, CMPIObjectPath* op, const char* query,
                           const char* lang, CMPIStatus* rc) {
    return run(rc, static_cast<CMPIEnumeration*>(nullptr), [&] {
        const ObjectPath& path = target(op);
        if (!query || !lang)
            throwMissing("query");
        return enumerateInstances({client, IntrinsicCall("ExecQuery", path)
                                               .text("QueryLanguage", lang)
                                               .text("Query", query)
                                               .take()},
                                  path);
    });
}

CMPIEnumeration* enumInstanceNames(CMCIClient* client, CMPIObjectPath* op, CMPIStatus* rc) {
    return run(rc, static_cast<CMPIEnumeration*>(nullptr), [&] {
        const ObjectPath& path = target(op);
        return enumeratePaths({client, IntrinsicCall("EnumerateInstanceNames", path)
                                           .className("ClassName", classOrNull(path))
                                           .take()});
    });
}

CMPIEnumeration* enumInstances(CMCIClient* client, CMPIObjectPath* op, CMPIFlags flags,
                               char** properties, CMPIStatus* rc) {
    return run(rc, static_cast<CMPIEnumeration*>(nullptr), [&] {
        const ObjectPath& path = target(op);
        return enumerateInstances(
            {client, IntrinsicCall("EnumerateInstances", path)
                         .className("ClassName", classOrNull(path))
                         .flag("DeepInheritance", has(flags, CMPI_FLAG_DeepInheritance))
                         .flag("LocalOnly", has(flags, CMPI_FLAG_LocalOnly))
                         .flag("IncludeQualifiers", has(flags, CMPI_FLAG_IncludeQualifiers))
                         .flag("IncludeClassOrigin", has(flags, CMPI_FLAG_IncludeClassOrigin))
                         .propertyList(properties)
                         .take()},
            path);
    });
}

CMPIEnumeration* associators(CMCIClient* client, CMPIObjectPath* op, const char* assocClass,
                             const char* resultClass, const char* role, const char* resultRole,
                             CMPIFlags flags, char** properties, CMPIStatus* rc) {
    return run(rc, static_cast<CMPIEnumeration*>(nullptr), [&] {
        const ObjectPath& path = targetWithClass(op);
        return enumerateInstances(
            {client, IntrinsicCall("Associators", path)
                         .instanceName("ObjectName", path)
                         .className("AssocClass", assocClass)
                         .className("ResultClass", resultClass)
                         .text("Role", role)
                         .text("ResultRole", resultRole)
                         .flag("IncludeClassOrigin", has(flags, CMPI_FLAG_IncludeClassOrigin))
                         .flag("IncludeQualifiers", has(flags, CMPI_FLAG_IncludeQualifiers))
                         .propertyList(properties)
                         .take()},
            path);
    });
}

CMPIEnumeration* associatorNames(CMCIClient* client, CMPIObjectPath* op, const char* assocClass,
                                 const char* resultClass, const char* role, const char* resultRole,
                                 CMPIStatus* rc) {
    return run(rc, static_cast<CMPIEnumeration*>(nullptr), [&] {
        const ObjectPath& path = targetWithClass(op);
        return enumeratePaths({client, IntrinsicCall("AssociatorNames", path)
                                           .instanceName("ObjectName", path)
                                           .className("AssocClass", assocClass)
                                           .className("ResultClass", resultClass)
                                           .text("Role", role)
                                           .text("ResultRole", resultRole)
                                           .take()});
    });
}

CMPIEnumeration* references(CMCIClient* client, CMPIObjectPath* op, const char* resultClass,
                            const char* role, CMPIFlags flags, char** properties, CMPIStatus* rc) {
    return run(rc, static_cast<CMPIEnumeration*>(nullptr), [&] {
        const ObjectPath& path = targetWithClass(op);
        return enumerateInstances(
            {client, IntrinsicCall("References", path)
                         .instanceName("ObjectName", path)
                         .className("ResultClass", resultClass)
                         .text("Role", role)
                         .flag("IncludeClassOrigin", has(flags, CMPI_FLAG_IncludeClassOrigin))
                         .flag("IncludeQualifiers", has(flags, CMPI_FLAG_IncludeQualifiers))
                         .propertyList(properties)
                         .take()},
            path);
    });
}

CMPIEnumeration* referenceNames(CMCIClient* client, CMPIObjectPath* op, const char* resultClass,
                                const char* role, CMPIStatus* rc) {
    return run(rc, static_cast<CMPIEnumeration*>(nullptr), [&] {
        const ObjectPath& path = targetWithClass(op);
        return enumeratePaths({client, IntrinsicCall("ReferenceNames", path)
                                           .instanceName("ObjectName", path)
                                           .className("ResultClass", resultClass)
                                           .text("Role", role)
                                           .take()});
    });
}

CMPIData failedValue() {
    CMPIData data{};
    data.state = CMPI_nullValue | CMPI_notFound;
    return data;
}

// An argument that is there already stays as it is.
void takeOutput(pugi::xml_node response, CMPIArgs* out) {
    if (!out)
        return;
    for (const pugi::xml_node parameter : response.children("PARAMVALUE"))
        Args::from(out)->values.add(parameter.attribute("NAME").value(),
                                    ReplyReader().typedOrGuessed(parameter, "PARAMTYPE"));
}

CMPIData invokeMethod(CMCIClient* client, CMPIObjectPath* op, const char* method, CMPIArgs* in,
                      CMPIArgs* out, CMPIStatus* rc) {
    return run(rc, failedValue(), [&] {
        const ObjectPath& path = targetWithClass(op);
        if (!method || !*method)
            throwMissing("method name");
        const Exchange exchange(client, methodCall(path, method, Args::from(in)));
        const pugi::xml_node response = exchange.response("METHODRESPONSE");
        takeOutput(response, out);
        if (const pugi::xml_node value = response.child("RETURNVALUE"))
            return ReplyReader().typedOrGuessed(value, "PARAMTYPE").release();
        CMPIData none{};
        none.state = CMPI_badValue;
        return none;
    });
}

CMPIStatus setProperty(CMCIClient* client, CMPIObjectPath* op, const char* name, CMPIValue* value,
                       CMPIType type) {
    return runStatus([&] {
        const ObjectPath& path = targetWithClass(op);
        if (!name)
            throwMissing("property name");
        Data data(type);
        if (value)
            Data::fromCaller(value, type, data);
        Exchange(client, IntrinsicCall("SetProperty", path)
                             .text("PropertyName", name)
                             .value("NewValue", data)
                             .instanceName("InstanceName", path)
                             .take())
            .returnValue();
    });
}

CMPIData getProperty(CMCIClient* client, CMPIObjectPath* op, const char* name, CMPIStatus* rc) {
    return run(rc, failedValue(), [&] {
        const ObjectPath& path = targetWithClass(op);
        if (!name)
            throwMissing("property name");
        const Exchange exchange(client, IntrinsicCall("GetProperty", path)
                                            .text("PropertyName", name)
                                            .instanceName("InstanceName", path)
                                            .take());
        return ReplyReader().typedOrGuessed(exchange.returnValue(), "PARAMTYPE").release();
    });
}

CMCIClientFT table = {NATIVE_FT_VERSION, release,        clone,           getClass,
                      enumClassNames,    enumClasses,    getInstance,     createInstance,
                      setInstance,       deleteInstance, execQuery,       enumInstanceNames,
                      enumInstances,     associators,    associatorNames, references,
                      referenceNames,    invokeMethod,   setProperty,     getProperty};

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
    return run(rc, static_cast<CMCIClient*>(nullptr),
               [&] { return connect(Endpoint(hn, scheme, port, user, pwd)); });
}

CIMCLIENT_EXPORT CMCIClient* cmciConnect2(const char* hn, const char* scheme, const char* port,
                                          const char* user, const char* pwd, int verifyMode,
                                          const char* trustStore, const char* certFile,
                                          const char* keyFile, CMPIStatus* rc) {
    return run(rc, static_cast<CMCIClient*>(nullptr), [&] {
        Endpoint endpoint(hn, scheme, port, user, pwd);
        endpoint.verifyPeer = verifyMode == CMCI_VERIFY_PEER;
        endpoint.trustStore = optionalText(trustStore);
        endpoint.certFile = optionalText(certFile);
        endpoint.keyFile = optionalText(keyFile);
        return connect(std::move(endpoint));
    });
}
