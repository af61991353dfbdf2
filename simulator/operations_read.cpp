// Operations that read classes and instances.
#include "simulator/operations.h"

namespace velclp_sim {

void Operations::getClass(const RequestArguments& in, const Caller& /*caller*/, std::string& out) {
    const std::string name = in.className("ClassName");
    const Class* cls = repository_.findClass(in.nameSpace(), name);
    if (!cls) {
        throw CimError(CimStatus::notFound, name);
    }
    Selection selection(in, true);
    CimXmlWriter(out).cls(*cls, selection.of(*cls), in.boolean("LocalOnly", true));
}

std::vector<const Class*> Operations::enumeratedClasses(const RequestArguments& in) const {
    return repository_.subclasses(in.nameSpace(), in.optionalClassName("ClassName").value_or(""),
                                  in.boolean("DeepInheritance", false));
}

void Operations::enumerateClassNames(const RequestArguments& in, const Caller& /*caller*/,
                                     std::string& out) {
    for (const Class* cls : enumeratedClasses(in)) {
        CimXmlWriter(out).className(cls->name);
    }
}

void Operations::enumerateClasses(const RequestArguments& in, const Caller& /*caller*/,
                                  std::string& out) {
    Selection selection(in, true);
    const bool localOnly = in.boolean("LocalOnly", true);
    for (const Class* cls : enumeratedClasses(in)) {
        CimXmlWriter(out).cls(*cls, selection.of(*cls), localOnly);
    }
}

InstancePtr Operations::demandInstance(const ObjectPath& path) {
    providers_.refresh(repository_.requireClass(path.nameSpace(), path.className()));
    InstancePtr instance = repository_.find(path);
    if (!instance) {
        throw CimError(CimStatus::notFound, path.localText());
    }
    return instance;
}

void Operations::getInstance(const RequestArguments& in, const Caller& /*caller*/,
                             std::string& out) {
    const InstancePtr instance = demandInstance(in.path("InstanceName"));
    Selection selection(in, false, nullptr, in.boolean("LocalOnly", false));
    CimXmlWriter(out).instance(*instance, selection.of(instance->cls()));
}

void Operations::enumerateInstanceNames(const RequestArguments& in, const Caller& /*caller*/,
                                        std::string& out) {
    const Class& cls = repository_.requireClass(in.nameSpace(), in.className("ClassName"));
    providers_.refresh(cls);
    for (const InstancePtr& instance : repository_.instances(in.nameSpace(), cls.name)) {
        CimXmlWriter(out).instanceName(instance->path());
    }
}

void Operations::enumerateInstances(const RequestArguments& in, const Caller& /*caller*/,
                                    std::string& out) {
    const Class& cls = repository_.requireClass(in.nameSpace(), in.className("ClassName"));
    providers_.refresh(cls);
    Selection selection(in, false, &cls, in.boolean("LocalOnly", false),
                        in.boolean("DeepInheritance", true));
    CimXmlWriter writer(out);
    for (const InstancePtr& instance : repository_.instances(in.nameSpace(), cls.name)) {
        writer.open("VALUE.NAMEDINSTANCE");
        writer.openEnd();
        writer.instanceName(instance->path());
        writer.instance(*instance, selection.of(instance->cls()));
        writer.close("VALUE.NAMEDINSTANCE");
    }
}

void Operations::getProperty(const RequestArguments& in, const Caller& /*caller*/,
                             std::string& out) {
    const InstancePtr instance = demandInstance(in.path("InstanceName"));
    const std::string name = in.text("PropertyName");
    const Property* property = instance->cls().property(name);
    if (!property) {
        throw CimError(CimStatus::noSuchProperty, name);
    }
    CimXmlWriter(out).value(instance->get(name), property->type, in.nameSpace());
}

} // namespace velclp_sim
