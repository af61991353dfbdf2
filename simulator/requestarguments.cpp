#include "simulator/requestarguments.h"

#include "simulator/cimerror.h"
#include "simulator/names.h"

#include <algorithm>

namespace velclp_sim {

namespace {

[[noreturn]] void refuse(std::string_view name) {
    throw CimError(CimStatus::invalidParameter, std::string(name));
}

} // namespace

const RawParameter* RequestArguments::find(std::string_view name) const {
    const auto& all = request_.parameters;
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&](const RawParameter& p) { return sameName(p.name, name); });
    return found == all.end() ? nullptr : &*found;
}

const RawParameter& RequestArguments::demand(std::string_view name) const {
    const RawParameter* parameter = find(name);
    if (!parameter) {
        refuse(name);
    }
    return *parameter;
}

bool RequestArguments::boolean(std::string_view name, bool otherwise) const {
    const auto word = optionalText(name);
    if (!word) {
        return otherwise;
    }
    if (!sameName(*word, "true") && !sameName(*word, "false")) {
        refuse(name);
    }
    return sameName(*word, "true");
}

std::optional<std::string> RequestArguments::optionalText(std::string_view name) const {
    const RawParameter* parameter = find(name);
    if (!parameter || parameter->value.isNull()) {
        return std::nullopt;
    }
    if (!parameter->value.isString()) {
        refuse(name);
    }
    return parameter->value.toString();
}

std::string RequestArguments::text(std::string_view name) const {
    const auto value = optionalText(name);
    if (!value) {
        refuse(name);
    }
    return *value;
}

std::optional<std::string> RequestArguments::optionalClassName(std::string_view name) const {
    const RawParameter* parameter = find(name);
    if (!parameter || parameter->value.isNull()) {
        return std::nullopt;
    }
    const ObjectPath* path = parameter->value.toPath();
    if (!path || !path->keys().empty()) {
        refuse(name);
    }
    return path->className();
}

std::string RequestArguments::className(std::string_view name) const {
    const auto value = optionalClassName(name);
    if (!value) {
        refuse(name);
    }
    return *value;
}

ObjectPath RequestArguments::path(std::string_view name) const {
    const ObjectPath* sent = demand(name).value.toPath();
    if (!sent) {
        refuse(name);
    }
    ObjectPath path = *sent;
    path.setNameSpace(request_.nameSpace);
    return path;
}

const RawInstance& RequestArguments::instance(std::string_view name) const {
    const RawParameter& parameter = demand(name);
    if (!parameter.instance) {
        refuse(name);
    }
    return *parameter.instance;
}

std::optional<std::vector<std::string>> RequestArguments::names(std::string_view name) const {
    const RawParameter* parameter = find(name);
    if (!parameter || parameter->value.isNull()) {
        return std::nullopt;
    }
    // An array that is empty on the wire is a list all the same: one that selects nothing.
    std::vector<std::string> result;
    if (parameter->value.isString()) {
        result.push_back(parameter->value.toString());
        return result;
    }
    if (!parameter->value.isArray()) {
        refuse(name);
    }
    for (const Value& element : parameter->value.toArray()) {
        result.push_back(element.toString());
    }
    return result;
}

} // namespace velclp_sim
