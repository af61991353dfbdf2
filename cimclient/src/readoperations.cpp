#include "clientcall.h"
#include "operations.h"
#include "replyreader.h"

#include <utility>
#include <vector>

// Operations that change nothing.
namespace cimclient {

namespace {

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

} // namespace

CMPIConstClass* getClass(CMCIClient* client, CMPIObjectPath* op, CMPIFlags flags, char** properties,
                         CMPIStatus* rc) {
    return runFor<CMPIConstClass>(rc, [&] {
        const ObjectPath& path = targetWithClass(op);
        const Exchange exchange(client, IntrinsicCall("GetClass", path)
                                            .flag("LocalOnly", has(flags, CMPI_FLAG_LocalOnly))
                                            .detail(flags, properties)
                                            .className("ClassName", classOrNull(path))
                                            .take());
        return ReplyReader().classDeclaration(firstReturned(exchange)).release();
    });
}

CMPIEnumeration* enumClassNames(CMCIClient* client, CMPIObjectPath* op, CMPIFlags flags,
                                CMPIStatus* rc) {
    return runFor<CMPIEnumeration>(rc, [&] {
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
    return runFor<CMPIEnumeration>(rc, [&] {
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
            return Data::ofClass(ReplyReader().classDeclaration(element).release());
        });
    });
}

CMPIInstance* getInstance(CMCIClient* client, CMPIObjectPath* op, CMPIFlags flags,
                          char** properties, CMPIStatus* rc) {
    return runFor<CMPIInstance>(rc, [&] {
        const ObjectPath& path = targetWithClass(op);
        const Exchange exchange(client, IntrinsicCall("GetInstance", path)
                                            .flag("LocalOnly", has(flags, CMPI_FLAG_LocalOnly))
                                            .detail(flags, properties)
                                            .instanceName("InstanceName", path)
                                            .take());
        Owned<Instance> instance(new Instance(path));
        ReplyReader().instance(firstReturned(exchange), *instance);
        return instance.release();
    });
}

CMPIEnumeration* execQuery(CMCIClient* client, CMPIObjectPath* op, const char* query,
                           const char* lang, CMPIStatus* rc) {
    return runFor<CMPIEnumeration>(rc, [&] {
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
    return runFor<CMPIEnumeration>(rc, [&] {
        const ObjectPath& path = target(op);
        return enumeratePaths({client, IntrinsicCall("EnumerateInstanceNames", path)
                                           .className("ClassName", classOrNull(path))
                                           .take()});
    });
}

CMPIEnumeration* enumInstances(CMCIClient* client, CMPIObjectPath* op, CMPIFlags flags,
                               char** properties, CMPIStatus* rc) {
    return runFor<CMPIEnumeration>(rc, [&] {
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
    return runFor<CMPIEnumeration>(rc, [&] {
        const ObjectPath& path = targetWithClass(op);
        return enumerateInstances({client, IntrinsicCall("Associators", path)
                                               .instanceName("ObjectName", path)
                                               .className("AssocClass", assocClass)
                                               .className("ResultClass", resultClass)
                                               .text("Role", role)
                                               .text("ResultRole", resultRole)
                                               .detail(flags, properties)
                                               .take()},
                                  path);
    });
}

CMPIEnumeration* associatorNames(CMCIClient* client, CMPIObjectPath* op, const char* assocClass,
                                 const char* resultClass, const char* role, const char* resultRole,
                                 CMPIStatus* rc) {
    return runFor<CMPIEnumeration>(rc, [&] {
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
    return runFor<CMPIEnumeration>(rc, [&] {
        const ObjectPath& path = targetWithClass(op);
        return enumerateInstances({client, IntrinsicCall("References", path)
                                               .instanceName("ObjectName", path)
                                               .className("ResultClass", resultClass)
                                               .text("Role", role)
                                               .detail(flags, properties)
                                               .take()},
                                  path);
    });
}

CMPIEnumeration* referenceNames(CMCIClient* client, CMPIObjectPath* op, const char* resultClass,
                                const char* role, CMPIStatus* rc) {
    return runFor<CMPIEnumeration>(rc, [&] {
        const ObjectPath& path = targetWithClass(op);
        return enumeratePaths({client, IntrinsicCall("ReferenceNames", path)
                                           .instanceName("ObjectName", path)
                                           .className("ResultClass", resultClass)
                                           .text("Role", role)
                                           .take()});
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

} // namespace cimclient
