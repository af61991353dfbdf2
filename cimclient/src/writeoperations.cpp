#include "clientcall.h"
#include "operations.h"
#include "replyreader.h"

// Operations that change something, and methods.
namespace cimclient {

CMPIObjectPath* createInstance(CMCIClient* client, CMPIObjectPath* op, CMPIInstance* inst,
                               CMPIStatus* rc) {
    return runFor<CMPIObjectPath>(rc, [&] {
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

namespace {

// An argument that is there already stays as it is.
void takeOutput(pugi::xml_node response, CMPIArgs* out) {
    if (!out)
        return;
    for (const pugi::xml_node parameter : response.children("PARAMVALUE"))
        Args::from(out)->values.add(parameter.attribute("NAME").value(),
                                    ReplyReader().typedOrGuessed(parameter, "PARAMTYPE"));
}

} // namespace

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

} // namespace cimclient
