// Which operations there are, and what they have in common.
#include "simulator/operations.h"

#include <algorithm>

namespace velclp_sim {

/// One intrinsic operation: its name, what runs it, and the parameters that it knows.
struct Operations::Entry {
    const char* name;
    void (Operations::*run)(const RequestArguments&, const Caller&, std::string&);
    std::vector<const char*> parameters;
};

const std::unordered_map<std::string_view, Operations::Entry, NameHash, NameEqual>&
Operations::table() {
    using O = Operations;
    static const auto* const entries = [] {
        const std::vector<Entry> all = {
            {"GetClass",
             &O::getClass,
             {"ClassName", "LocalOnly", "IncludeQualifiers", "IncludeClassOrigin", "PropertyList"}},
            {"EnumerateClassNames", &O::enumerateClassNames, {"ClassName", "DeepInheritance"}},
            {"EnumerateClasses",
             &O::enumerateClasses,
             {"ClassName", "DeepInheritance", "LocalOnly", "IncludeQualifiers",
              "IncludeClassOrigin"}},
            {"GetInstance",
             &O::getInstance,
             {"InstanceName", "LocalOnly", "IncludeQualifiers", "IncludeClassOrigin",
              "PropertyList"}},
            {"EnumerateInstanceNames", &O::enumerateInstanceNames, {"ClassName"}},
            {"EnumerateInstances",
             &O::enumerateInstances,
             {"ClassName", "LocalOnly", "DeepInheritance", "IncludeQualifiers",
              "IncludeClassOrigin", "PropertyList"}},
            {"GetProperty", &O::getProperty, {"InstanceName", "PropertyName"}},
            {"CreateInstance", &O::createInstance, {"NewInstance"}},
            {"ModifyInstance",
             &O::modifyInstance,
             {"ModifiedInstance", "IncludeQualifiers", "PropertyList"}},
            {"DeleteInstance", &O::deleteInstance, {"InstanceName"}},
            {"SetProperty", &O::setProperty, {"InstanceName", "PropertyName", "NewValue"}},
            {"Associators",
             &O::associators,
             {"ObjectName", "AssocClass", "ResultClass", "Role", "ResultRole", "IncludeQualifiers",
              "IncludeClassOrigin", "PropertyList"}},
            {"AssociatorNames",
             &O::associatorNames,
             {"ObjectName", "AssocClass", "ResultClass", "Role", "ResultRole"}},
            {"References",
             &O::references,
             {"ObjectName", "ResultClass", "Role", "IncludeQualifiers", "IncludeClassOrigin",
              "PropertyList"}},
            {"ReferenceNames", &O::referenceNames, {"ObjectName", "ResultClass", "Role"}},
            {"ExecQuery", &O::execQuery, {"QueryLanguage", "Query"}},
        };
        auto* map = new std::unordered_map<std::string_view, Entry, NameHash, NameEqual>;
        for (const Entry& entry : all) {
            map->emplace(entry.name, entry);
        }
        return map;
    }();
    return *entries;
}

Operations::Operations(Repository& repository, ProviderSet& providers, std::string hostName)
    : repository_(repository), providers_(providers), hostName_(std::move(hostName)) {}

std::string Operations::knownOperation(std::string_view name) {
    const auto found = table().find(name);
    return found == table().end() ? std::string() : found->second.name;
}

std::string Operations::subject(const Request& request) const {
    std::string name = request.object.className();
    for (const char* parameter :
         {"ClassName", "InstanceName", "ObjectName", "NewInstance", "ModifiedInstance"}) {
        const RawParameter* found = RequestArguments(request).find(parameter);
        if (found && found->value.isPath()) {
            name = found->value.toPath()->className();
        } else if (found && found->instance) {
            name = found->instance->className;
        }
    }
    const Class* cls = repository_.findClass(request.nameSpace, name);
    return cls ? cls->name : std::string();
}

std::string Operations::run(const Request& request, const Caller& caller) {
    if (!caller.mayRead) {
        throw CimError(CimStatus::accessDenied, caller.user);
    }
    std::string out;
    if (!repository_.hasNamespace(request.nameSpace)) {
        throw CimError(CimStatus::invalidNamespace, request.nameSpace);
    }
    if (!request.intrinsic) {
        invokeMethod(request, caller, out);
        return out;
    }
    const auto found = table().find(request.name);
    if (found == table().end()) {
        throw CimError(CimStatus::notSupported, request.name);
    }
    const Entry& entry = found->second;
    for (const RawParameter& given : request.parameters) {
        const bool known =
            std::any_of(entry.parameters.begin(), entry.parameters.end(),
                        [&](const char* name) { return sameName(name, given.name); });
        if (!known) {
            throw CimError(CimStatus::invalidParameter, given.name);
        }
    }
    (this->*entry.run)(RequestArguments(request), caller, out);
    return out;
}

void Operations::execQuery(const RequestArguments& in, const Caller& /*caller*/,
                           std::string& /*out*/) {
    const std::string language = in.text("QueryLanguage");
    const bool known =
        sameName(language, "WQL") || sameName(language, "CQL") || sameName(language, "DMTF:CQL");
    throw CimError(known ? CimStatus::notSupported : CimStatus::queryLanguageNotSupported,
                   known ? "" : language);
}

Operations::Selection::Selection(const RequestArguments& arguments, bool qualifiersByDefault,
                                 const Class* limit, bool localOnly, bool deep)
    : names_(arguments.names("PropertyList")),
      limit_(limit),
      localOnly_(localOnly),
      deep_(deep),
      qualifiers_(arguments.boolean("IncludeQualifiers", qualifiersByDefault)),
      classOrigin_(arguments.boolean("IncludeClassOrigin", false)) {}

bool Operations::Selection::selects(const Class& cls, const Property& property) const {
    const auto named = [&](const std::string& name) { return sameName(name, property.name); };
    if (names_ && std::none_of(names_->begin(), names_->end(), named)) {
        return false;
    }
    const Property* base = (limit_ ? *limit_ : cls).property(property.name);
    return !(localOnly_ && base && base->propagated) && (deep_ || base);
}

const Shown& Operations::Selection::of(const Class& cls) {
    const auto [slot, added] = shown_.try_emplace(&cls);
    if (added) {
        slot->second.qualifiers = qualifiers_;
        slot->second.classOrigin = classOrigin_;
        if (names_ || localOnly_ || !deep_) {
            std::transform(cls.properties.begin(), cls.properties.end(),
                           std::back_inserter(slot->second.properties),
                           [&](const Property& p) { return selects(cls, p) ? 1 : 0; });
        }
    }
    return slot->second;
}

} // namespace velclp_sim
