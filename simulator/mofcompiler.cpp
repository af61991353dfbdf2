#include "simulator/mofcompiler.h"

#include <algorithm>

namespace velclp_sim {

namespace {

/// Runs the action; a CIM error in it becomes a MofError at the place.
template<class Action>
auto at(const MofPlace& place, const Action& action) {
    try {
        return action();
    } catch (const CimError& error) {
        throw MofError(place, error.what());
    }
}

void applyFlavor(Qualifier& qualifier, const std::string& flavor, const MofPlace& place) {
    if (sameName(flavor, "EnableOverride") || sameName(flavor, "DisableOverride")) {
        qualifier.overridable = sameName(flavor, "EnableOverride");
    } else if (sameName(flavor, "ToSubclass") || sameName(flavor, "Restricted")) {
        qualifier.toSubclass = sameName(flavor, "ToSubclass");
    } else if (sameName(flavor, "Translatable")) {
        qualifier.translatable = true;
    } else if (sameName(flavor, "ToInstance")) {
        qualifier.toInstance = true;
    } else {
        throw MofError(place, "unknown flavor " + flavor);
    }
}

bool inScope(const QualifierType& type, const char* scope) {
    return std::any_of(type.scopes.begin(), type.scopes.end(), [scope](const std::string& word) {
        return sameName(word, "any") || sameName(word, scope) ||
               (sameName(word, "class") && sameName(scope, "association"));
    });
}

Qualifiers inheritedQualifiers(const Qualifiers& of) {
    Qualifiers result;
    for (const Qualifier& qualifier : of) {
        if (qualifier.toSubclass) {
            result.push_back(qualifier);
            result.back().propagated = true;
        }
    }
    return result;
}

template<class Element>
std::vector<Element> inheritedElements(const std::vector<Element>& of) {
    std::vector<Element> result = of;
    for (Element& element : result) {
        element.qualifiers = inheritedQualifiers(element.qualifiers);
        element.propagated = true;
    }
    return result;
}

/// The inherited element of that name, or a new one at the end.
template<class Element>
Element& overridden(std::vector<Element>& elements, const std::string& name) {
    const auto found = std::find_if(elements.begin(), elements.end(),
                                    [&](const Element& e) { return sameName(e.name, name); });
    if (found != elements.end()) {
        return *found;
    }
    elements.emplace_back();
    return elements.back();
}

} // namespace

void MofCompiler::declare(const MofQualifierType& source, const std::string& nameSpace) {
    QualifierType type;
    type.name = source.name;
    type.type = source.type;
    type.isArray = source.isArray;
    type.scopes = source.scopes;
    if (source.value) {
        type.value = convert(*source.value, source.type, source.isArray, source.name);
    }
    for (const std::string& flavor : source.flavors) {
        applyFlavor(type, flavor, source.place);
    }
    repository_.addQualifierType(nameSpace, std::move(type));
}

void MofCompiler::declare(const MofClass& source, const std::string& nameSpace) {
    auto cls = std::make_unique<Class>();
    cls->name = source.name;
    cls->nameSpace = nameSpace;
    Qualifiers inherited;
    if (!source.superName.empty()) {
        cls->super = repository_.findClass(nameSpace, source.superName);
        if (!cls->super) {
            throw MofError(source.place, "unknown superclass " + source.superName);
        }
        inherited = inheritedQualifiers(cls->super->qualifiers);
        cls->properties = inheritedElements(cls->super->properties);
        cls->methods = inheritedElements(cls->super->methods);
    }
    const bool association =
        std::any_of(source.qualifiers.begin(), source.qualifiers.end(),
                    [](const auto& q) { return sameName(q.name, "Association"); });
    cls->qualifiers = qualifiers(source.qualifiers, nameSpace,
                                 association ? "association" : "class", std::move(inherited));
    for (const MofFeature& feature : source.features) {
        addFeature(*cls, feature);
    }
    at(source.place, [&] { repository_.addClass(std::move(cls)); });
}

void MofCompiler::declare(const MofInstance& source, const std::string& nameSpace) {
    Draft draft;
    draft.source = source;
    draft.cls = repository_.findClass(nameSpace, source.className);
    if (!draft.cls) {
        throw MofError(source.place, "unknown class " + source.className + " in " + nameSpace);
    }
    drafts_.push_back(std::move(draft));
    if (!source.alias.empty() && !aliases_.emplace(source.alias, &drafts_.back()).second) {
        throw MofError(source.place, "alias $" + source.alias + " is taken");
    }
}

Qualifiers MofCompiler::qualifiers(const std::vector<MofQualifier>& sources,
                                   const std::string& nameSpace, const char* scope,
                                   Qualifiers inherited) {
    Qualifiers result = std::move(inherited);
    for (const MofQualifier& source : sources) {
        const QualifierType* type = repository_.findQualifierType(nameSpace, source.name);
        type = type ? type : standardQualifierType(source.name);
        if (!type) {
            throw MofError(source.place, "unknown qualifier " + source.name);
        }
        if (!inScope(*type, scope)) {
            throw MofError(source.place,
                           "qualifier " + source.name + " is not meant for a " + scope);
        }
        Qualifier made = qualifier(source, *type);
        const auto known = std::find_if(result.begin(), result.end(), [&](const Qualifier& q) {
            return sameName(q.name, made.name);
        });
        if (known == result.end()) {
            result.push_back(std::move(made));
        } else if (!known->propagated) {
            throw MofError(source.place, "qualifier " + source.name + " stands here twice");
        } else if (!known->overridable && known->value != made.value) {
            throw MofError(source.place, "qualifier " + source.name + " cannot be overridden");
        } else {
            *known = std::move(made);
        }
    }
    return result;
}

Qualifier MofCompiler::qualifier(const MofQualifier& source, const QualifierType& type) {
    Qualifier result = type;
    if (source.value) {
        result.value = convert(*source.value, type.type, type.isArray, type.name);
    } else if (type.type == CimType::boolean && !type.isArray) {
        result.value = true;
    }
    for (const std::string& flavor : source.flavors) {
        applyFlavor(result, flavor, source.place);
    }
    return result;
}

void MofCompiler::addFeature(Class& cls, const MofFeature& source) {
    if (source.isMethod) {
        addMethod(cls, source);
    } else {
        addProperty(cls, source);
    }
}

void MofCompiler::describe(TypedElement& element, const MofFeature& source,
                           const std::string& nameSpace) {
    element.type = source.type;
    element.isArray = source.isArray;
    element.arraySize = source.arraySize;
    element.referenceClass = source.referenceClass;
    if (!source.referenceClass.empty()) {
        references_.push_back({source.place, nameSpace, source.referenceClass});
    }
}

void MofCompiler::addProperty(Class& cls, const MofFeature& source) {
    Property& property = overridden(cls.properties, source.name);
    if (property.name.empty()) {
        property.name = source.name;
        property.origin = cls.name;
    } else if (!property.propagated) {
        throw MofError(source.place, "property " + source.name + " stands here twice");
    } else if (property.type != source.type || property.isArray != source.isArray) {
        throw MofError(source.place,
                       "property " + source.name + " has another type in a superclass");
    }
    if (source.isArray && source.type == CimType::reference) {
        throw MofError(source.place, "only parameters may be arrays of references");
    }
    property.propagated = false;
    describe(property, source, cls.nameSpace);
    property.qualifiers = qualifiers(source.qualifiers, cls.nameSpace,
                                     source.type == CimType::reference ? "reference" : "property",
                                     std::move(property.qualifiers));
    property.key = hasFlag(property.qualifiers, "Key");
    if (source.value) {
        property.defaultValue = convert(*source.value, source.type, source.isArray, source.name);
    }
}

void MofCompiler::addMethod(Class& cls, const MofFeature& source) {
    Method& method = overridden(cls.methods, source.name);
    if (method.name.empty()) {
        method.name = source.name;
        method.origin = cls.name;
    } else if (!method.propagated) {
        throw MofError(source.place, "method " + source.name + " stands here twice");
    }
    method.propagated = false;
    method.type = source.type;
    method.qualifiers =
        qualifiers(source.qualifiers, cls.nameSpace, "method", std::move(method.qualifiers));
    method.parameters.clear();
    for (const MofFeature& from : source.parameters) {
        Parameter parameter;
        parameter.name = from.name;
        describe(parameter, from, cls.nameSpace);
        parameter.qualifiers = qualifiers(from.qualifiers, cls.nameSpace, "parameter", {});
        const Qualifier* in = findQualifier(parameter.qualifiers, "In");
        parameter.in = !in || in->value.toBool(true);
        parameter.out = hasFlag(parameter.qualifiers, "Out");
        method.parameters.push_back(std::move(parameter));
    }
}

Value MofCompiler::convert(const MofValue& source, CimType type, bool isArray,
                           const std::string& name) {
    if (source.isArray != isArray) {
        if (!source.isArray && source.literal.isNull() && source.alias.empty()) {
            return {};
        }
        throw MofError(source.place, name + (isArray ? " is an array" : " is no array"));
    }
    if (!isArray) {
        return scalar(source, type, name);
    }
    Value::Array elements;
    for (const MofValue& element : source.elements) {
        elements.push_back(scalar(element, type, name));
    }
    return elements;
}

Value MofCompiler::scalar(const MofValue& source, CimType type, const std::string& name) {
    if (!source.alias.empty()) {
        return at(source.place, [&] { return coerce(aliasPath(source), type, false, name); });
    }
    if (source.character && type != CimType::char16) {
        throw MofError(source.place, name + " is no char16");
    }
    return at(source.place, [&] {
        const bool pathText = type == CimType::reference && source.literal.isString();
        return coerce(pathText ? Value(ObjectPath::fromText(source.literal.toString()))
                               : source.literal,
                      type, false, name);
    });
}

void MofCompiler::assign(Instance& instance, const MofAssignment& assignment) {
    const auto index = instance.cls().propertyIndex(assignment.name);
    if (!index) {
        throw MofError(assignment.place,
                       instance.cls().name + " has no property " + assignment.name);
    }
    const Property& property = instance.cls().properties[*index];
    instance.setAt(*index,
                   convert(assignment.value, property.type, property.isArray, property.name));
}

const ObjectPath& MofCompiler::aliasPath(const MofValue& source) {
    const auto found = aliases_.find(source.alias);
    if (found == aliases_.end()) {
        throw MofError(source.place, "unknown alias $" + source.alias);
    }
    if (found->second->visiting) {
        throw MofError(source.place, "keys refer to each other in a circle");
    }
    return pathOf(*found->second);
}

const ObjectPath& MofCompiler::pathOf(Draft& draft) {
    if (!draft.path) {
        draft.visiting = true;
        Instance keys(*draft.cls);
        for (const MofAssignment& assignment : draft.source.assignments) {
            const Property* property = draft.cls->property(assignment.name);
            if (property && property->key) {
                assign(keys, assignment);
            }
        }
        draft.path = at(draft.source.place, [&] { return keys.path(); });
        draft.visiting = false;
    }
    return *draft.path;
}

void MofCompiler::finish() {
    for (const PendingReference& reference : references_) {
        if (!repository_.findClass(reference.nameSpace, reference.className)) {
            throw MofError(reference.place, "reference to unknown class " + reference.className);
        }
    }
    std::vector<ObjectPath> added;
    try {
        for (Draft& draft : drafts_) {
            Instance instance(*draft.cls);
            for (const MofAssignment& assignment : draft.source.assignments) {
                assign(instance, assignment);
            }
            added.push_back(
                at(draft.source.place, [&] { return repository_.add(std::move(instance)); }));
        }
    } catch (const MofError&) {
        for (const ObjectPath& path : added) {
            repository_.remove(path);
        }
        throw;
    }
    drafts_.clear();
    aliases_.clear();
    references_.clear();
}

} // namespace velclp_sim
