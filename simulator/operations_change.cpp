// Operations that change instances, and extrinsic methods.
#include "simulator/operations.h"

#include <algorithm>

namespace velclp_sim {

namespace {

/// A property's value as it was sent, in the type that it is declared with.
Value sentValue(const RawProperty& raw, const Property& property) {
    if (raw.type && *raw.type != property.type) {
        throw CimError(CimStatus::typeMismatch, property.name + " is " + typeName(property.type));
    }
    return typedValue(raw.value, property.type, property.isArray, property.name);
}

} // namespace

void Operations::authorize(const Caller& caller, Change change, const Class& cls) {
    if (!caller.mayWrite && !providers_.opensToReaders(change, cls)) {
        throw CimError(CimStatus::accessDenied, caller.user + " may only read");
    }
}

Value Operations::reference(ObjectPath path, const std::string& nameSpace) const {
    if (path.nameSpace().empty()) {
        path.setNameSpace(nameSpace);
    }
    const bool known = repository_.findClass(path.nameSpace(), path.className()) != nullptr;
    return known ? repository_.canonical(path) : path;
}

Instance Operations::draft(const Class& cls, const RawInstance& raw) const {
    Instance instance(cls);
    for (const RawProperty& sent : raw.properties) {
        const auto index = cls.propertyIndex(sent.name);
        if (!index) {
            throw CimError(CimStatus::invalidParameter, cls.name + " has no property " + sent.name);
        }
        Value value = sentValue(sent, cls.properties[*index]);
        instance.setAt(*index, value.isPath() ? reference(*value.toPath(), cls.nameSpace) : value);
    }
    return instance;
}

void Operations::createInstance(const RequestArguments& in, const Caller& caller,
                                std::string& out) {
    const RawInstance& raw = in.instance("NewInstance");
    const Class& cls = repository_.requireClass(in.nameSpace(), raw.className);
    authorize(caller, Change::create, cls);
    Instance instance = draft(cls, raw);
    for (Provider* provider : providers_.serving(cls)) {
        if (const auto path = provider->createInstance(caller, instance)) {
            CimXmlWriter(out).instanceName(*path);
            return;
        }
    }
    CimXmlWriter(out).instanceName(repository_.add(std::move(instance)));
}

void Operations::applyChanges(const Caller& caller, const ObjectPath& path,
                              const std::vector<PropertyChange>& changes) {
    if (changes.empty()) {
        return;
    }
    const Class& cls = repository_.requireClass(path.nameSpace(), path.className());
    for (Provider* provider : providers_.serving(cls)) {
        if (provider->modifyInstance(caller, path, changes)) {
            return;
        }
    }
    repository_.update(path, [&](Instance& instance) {
        for (const PropertyChange& change : changes) {
            instance.set(change.property->name, change.value);
        }
    });
}

void Operations::modifyInstance(const RequestArguments& in, const Caller& caller,
                                std::string& /*out*/) {
    const RawInstance& raw = in.instance("ModifiedInstance");
    const ObjectPath sentPath = in.path("ModifiedInstance");
    const Class& cls = repository_.requireClass(in.nameSpace(), sentPath.className());
    authorize(caller, Change::modify, cls);
    if (!sameName(raw.className, cls.name)) {
        throw CimError(CimStatus::invalidParameter,
                       "two classes: " + cls.name + ", " + raw.className);
    }
    const InstancePtr current = demandInstance(sentPath);
    const Instance wanted = draft(cls, raw);
    const auto list = in.names("PropertyList");
    const auto holds = [](const auto& names, const Property& property, const auto& nameOf) {
        return std::any_of(names.begin(), names.end(),
                           [&](const auto& each) { return sameName(nameOf(each), property.name); });
    };
    std::vector<PropertyChange> changes;
    for (std::size_t i = 0; i < cls.properties.size(); ++i) {
        const Property& property = cls.properties[i];
        // A property of the list that was not sent is set to the class's default, which `wanted`
        // holds.
        const bool named =
            list ? holds(*list, property, [](const std::string& name) { return name; })
                 : holds(raw.properties, property, [](const RawProperty& p) { return p.name; });
        if (!named || wanted.at(i) == current->at(i)) {
            continue;
        }
        if (property.key && !wanted.at(i).isNull()) {
            throw CimError(CimStatus::notSupported, "key " + property.name + " cannot change");
        }
        if (!property.key) {
            changes.push_back({&property, wanted.at(i)});
        }
    }
    applyChanges(caller, current->path(), changes);
}

void Operations::setProperty(const RequestArguments& in, const Caller& caller,
                             std::string& /*out*/) {
    const ObjectPath sentPath = in.path("InstanceName");
    const Class& cls = repository_.requireClass(in.nameSpace(), sentPath.className());
    authorize(caller, Change::modify, cls);
    const std::string name = in.text("PropertyName");
    const InstancePtr current = demandInstance(sentPath);
    const Property* property = cls.property(name);
    if (!property) {
        throw CimError(CimStatus::noSuchProperty, name);
    }
    if (property->key) {
        throw CimError(CimStatus::notSupported, "key " + property->name + " cannot change");
    }
    const RawParameter* sent = in.find("NewValue");
    Value value;
    if (sent) {
        value = typedValue(sent->value, property->type, property->isArray, property->name);
    }
    if (value != current->get(name)) {
        applyChanges(caller, current->path(), {{property, std::move(value)}});
    }
}

void Operations::deleteInstance(const RequestArguments& in, const Caller& caller,
                                std::string& /*out*/) {
    const ObjectPath sentPath = in.path("InstanceName");
    const Class& cls = repository_.requireClass(in.nameSpace(), sentPath.className());
    authorize(caller, Change::remove, cls);
    const ObjectPath path = demandInstance(sentPath)->path();
    for (Provider* provider : providers_.serving(cls)) {
        if (provider->deleteInstance(caller, path)) {
            return;
        }
    }
    if (!repository_.remove(path)) {
        throw CimError(CimStatus::notFound, path.localText());
    }
}

const Method& Operations::demandMethod(const Request& request) const {
    const Class& cls = repository_.requireClass(request.nameSpace, request.object.className());
    const Method* method = cls.method(request.name);
    if (!method) {
        throw CimError(CimStatus::methodNotFound, cls.name + "." + request.name);
    }
    return *method;
}

Value Operations::fullReferences(const Value& value, const std::string& nameSpace) const {
    if (value.isPath()) {
        return reference(*value.toPath(), nameSpace);
    }
    if (!value.isArray()) {
        return value;
    }
    Value::Array elements;
    for (const Value& element : value.toArray()) {
        elements.push_back(fullReferences(element, nameSpace));
    }
    return elements;
}

Arguments Operations::readMethodArguments(const Request& request, const Method& method) const {
    Arguments arguments;
    for (const RawParameter& sent : request.parameters) {
        const Parameter* parameter = method.parameter(sent.name);
        if (!parameter || !parameter->in || arguments.has(sent.name)) {
            throw CimError(CimStatus::invalidParameter, sent.name);
        }
        if (sent.type && *sent.type != parameter->type) {
            throw CimError(CimStatus::typeMismatch,
                           parameter->name + " is " + typeName(parameter->type));
        }
        const Value value =
            typedValue(sent.value, parameter->type, parameter->isArray, parameter->name);
        arguments.set(parameter->name, fullReferences(value, request.nameSpace));
    }
    return arguments;
}

void Operations::invokeMethod(const Request& request, const Caller& caller, std::string& out) {
    const Class& cls = repository_.requireClass(request.nameSpace, request.object.className());
    const Method& method = demandMethod(request);
    authorize(caller, Change::invoke, cls);
    const Arguments arguments = readMethodArguments(request, method);
    const bool onClass = request.object.keys().empty() && !cls.keys().empty();
    const ObjectPath path =
        onClass ? ObjectPath(cls.nameSpace, cls.name) : demandInstance(request.object)->path();
    for (Provider* provider : providers_.serving(cls)) {
        const auto result = provider->invokeMethod(caller, path, method, arguments);
        if (!result) {
            continue;
        }
        CimXmlWriter writer(out);
        writer.returnValue(coerce(result->returnValue, method.type, false, method.name),
                           method.type);
        for (const auto& [name, value] : result->out.all()) {
            const Parameter* parameter = method.parameter(name);
            if (!parameter || !parameter->out) {
                throw CimError(CimStatus::failed, "the provider returned " + name);
            }
            writer.parameterValue(*parameter,
                                  coerce(value, parameter->type, parameter->isArray, name));
        }
        return;
    }
    throw CimError(CimStatus::methodNotAvailable, cls.name + "." + method.name);
}

std::string Operations::plantedResult(const Request& request,
                                      const std::string& returnValue) const {
    const Method& method = demandMethod(request);
    std::string out;
    CimXmlWriter(out).returnValue(scalarFromText(returnValue, method.type, method.name),
                                  method.type);
    return out;
}

} // namespace velclp_sim
