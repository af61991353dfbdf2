#include "simulator/cimclass.h"

#include "simulator/cimerror.h"

#include <algorithm>

namespace velclp_sim {

const Qualifier* findQualifier(const Qualifiers& qualifiers, std::string_view name) {
    const auto found = std::find_if(qualifiers.begin(), qualifiers.end(),
                                    [&](const Qualifier& q) { return sameName(q.name, name); });
    return found == qualifiers.end() ? nullptr : &*found;
}

bool hasFlag(const Qualifiers& qualifiers, std::string_view name) {
    const Qualifier* qualifier = findQualifier(qualifiers, name);
    return qualifier && qualifier->value.toBool();
}

const Parameter* Method::parameter(std::string_view parameterName) const {
    const auto found = std::find_if(parameters.begin(), parameters.end(), [&](const Parameter& p) {
        return sameName(p.name, parameterName);
    });
    return found == parameters.end() ? nullptr : &*found;
}

std::optional<std::size_t> Class::propertyIndex(std::string_view propertyName) const {
    const auto found = index_.find(propertyName);
    return found == index_.end() ? std::nullopt : std::optional<std::size_t>(found->second);
}

const Property* Class::property(std::string_view propertyName) const {
    const auto index = propertyIndex(propertyName);
    return index ? &properties[*index] : nullptr;
}

const Method* Class::method(std::string_view methodName) const {
    const auto found = std::find_if(methods.begin(), methods.end(),
                                    [&](const Method& m) { return sameName(m.name, methodName); });
    return found == methods.end() ? nullptr : &*found;
}

bool Class::isA(std::string_view className) const {
    for (const Class* cls = this; cls; cls = cls->super) {
        if (sameName(cls->name, className)) {
            return true;
        }
    }
    return false;
}

void Class::seal() {
    index_.clear();
    keys_.clear();
    for (std::size_t i = 0; i < properties.size(); ++i) {
        index_.emplace(properties[i].name, i);
        if (properties[i].key) {
            keys_.push_back(i);
        }
    }
    association_ = hasFlag(qualifiers, "Association") || (super && super->association_);
    abstract_ = hasFlag(qualifiers, "Abstract");
}

Instance::Instance(const Class& cls) : class_(&cls) {
    values_.reserve(cls.properties.size());
    for (const Property& property : cls.properties) {
        values_.push_back(property.defaultValue);
    }
}

const Value& Instance::get(std::string_view propertyName) const {
    static const Value none;
    const auto index = class_->propertyIndex(propertyName);
    return index ? values_[*index] : none;
}

void Instance::set(std::string_view propertyName, Value value) {
    const auto index = class_->propertyIndex(propertyName);
    if (!index) {
        throw CimError(CimStatus::noSuchProperty, class_->name + "." + std::string(propertyName));
    }
    setAt(*index, std::move(value));
}

void Instance::setAt(std::size_t index, Value value) {
    const Property& property = class_->properties[index];
    values_[index] = coerce(std::move(value), property.type, property.isArray, property.name);
}

ObjectPath Instance::path() const {
    std::vector<KeyBinding> keys;
    keys.reserve(class_->keys().size());
    for (const std::size_t index : class_->keys()) {
        const std::string& name = class_->properties[index].name;
        if (values_[index].isNull()) {
            throw CimError(CimStatus::invalidParameter, "key " + name + " has no value");
        }
        keys.push_back({name, values_[index]});
    }
    return {class_->nameSpace, class_->name, std::move(keys)};
}

} // namespace velclp_sim
