// Namespaces, qualifier types and classes, and the canonical form of paths.
#include "simulator/repository.h"

#include "simulator/repository_space.h"

#include <algorithm>
#include <mutex>

namespace velclp_sim {

namespace {

/// References within keys of references within keys: no model needs more.
constexpr int maxPathDepth = 4;

void appendId(std::string& id, const Value& value) {
    const std::string text =
        value.isPath() ? pathId(*value.toPath()) : scalarToText(value, CimType::real64);
    const char kind = value.isPath() ? 'p' : value.isString() ? 's' : 'n';
    id.append(1, kind).append(std::to_string(text.size())).append(1, ':').append(text);
}

Value keyValue(const Value& given, const Property& property) {
    if (given.isString() && property.type == CimType::reference) {
        return ObjectPath::fromText(given.toString());
    }
    const bool textual = property.type == CimType::string || property.type == CimType::datetime ||
                         property.type == CimType::char16;
    if (given.isString() && !textual) {
        return scalarFromText(given.toString(), property.type, property.name);
    }
    if (!given.isString() && textual && !given.isPath()) {
        return scalarToText(given, CimType::real64);
    }
    return coerce(given, property.type, false, property.name);
}

} // namespace

std::string pathId(const ObjectPath& path) {
    std::string id;
    id.reserve(96);
    id.append(lowerName(path.nameSpace())).append(1, '\n').append(lowerName(path.className()));
    for (const KeyBinding& binding : path.keys()) {
        appendId(id, binding.value);
    }
    return id;
}

Repository::Repository() = default;
Repository::~Repository() = default;

void Repository::addNamespace(std::string_view nameSpace) {
    const std::unique_lock<std::shared_mutex> lock(mutex_);
    const std::string name(trimNamespace(nameSpace));
    auto& space = spaces_[name];
    if (!space) {
        space = std::make_unique<Space>();
        space->name = name;
        spaceNames_.push_back(name);
    }
}

bool Repository::hasNamespace(std::string_view nameSpace) const {
    const std::shared_lock<std::shared_mutex> lock(mutex_);
    return findSpace(nameSpace) != nullptr;
}

std::vector<std::string> Repository::namespaces() const {
    const std::shared_lock<std::shared_mutex> lock(mutex_);
    return spaceNames_;
}

const Repository::Space* Repository::findSpace(std::string_view nameSpace) const {
    const auto found = spaces_.find(std::string(trimNamespace(nameSpace)));
    return found == spaces_.end() ? nullptr : found->second.get();
}

void Repository::addQualifierType(std::string_view nameSpace, QualifierType type) {
    addNamespace(nameSpace);
    const std::unique_lock<std::shared_mutex> lock(mutex_);
    auto& slot = spaces_.at(std::string(trimNamespace(nameSpace)))->qualifierTypes[type.name];
    slot = std::make_unique<QualifierType>(std::move(type));
}

const QualifierType* Repository::findQualifierType(std::string_view nameSpace,
                                                   std::string_view name) const {
    const std::shared_lock<std::shared_mutex> lock(mutex_);
    const Space* space = findSpace(nameSpace);
    if (!space) {
        return nullptr;
    }
    const auto found = space->qualifierTypes.find(std::string(name));
    return found == space->qualifierTypes.end() ? nullptr : found->second.get();
}

const Class& Repository::addClass(std::unique_ptr<Class> cls) {
    addNamespace(cls->nameSpace);
    const std::unique_lock<std::shared_mutex> lock(mutex_);
    Space& space = *spaces_.at(std::string(trimNamespace(cls->nameSpace)));
    cls->nameSpace = space.name;
    if (space.byName.count(cls->name) != 0) {
        throw CimError(CimStatus::alreadyExists, cls->name);
    }
    cls->seal();
    space.classes.push_back(std::move(cls));
    const Class& added = *space.classes.back();
    space.byName.emplace(added.name, &added);
    space.children[added.super].push_back(&added);
    return added;
}

const Class* Repository::lookUp(std::string_view nameSpace, std::string_view name) const {
    const Space* space = findSpace(nameSpace);
    if (!space) {
        return nullptr;
    }
    const auto found = space->byName.find(name);
    return found == space->byName.end() ? nullptr : found->second;
}

const Class& Repository::demand(std::string_view nameSpace, std::string_view name) const {
    if (!findSpace(nameSpace)) {
        throw CimError(CimStatus::invalidNamespace, std::string(nameSpace));
    }
    const Class* cls = lookUp(nameSpace, name);
    if (!cls) {
        throw CimError(CimStatus::invalidClass, std::string(name));
    }
    return *cls;
}

const Class* Repository::findClass(std::string_view nameSpace, std::string_view name) const {
    const std::shared_lock<std::shared_mutex> lock(mutex_);
    return lookUp(nameSpace, name);
}

const Class& Repository::requireClass(std::string_view nameSpace, std::string_view name) const {
    const std::shared_lock<std::shared_mutex> lock(mutex_);
    return demand(nameSpace, name);
}

std::vector<const Class*> Repository::subclasses(std::string_view nameSpace, std::string_view name,
                                                 bool deep) const {
    const std::shared_lock<std::shared_mutex> lock(mutex_);
    const Space* space = findSpace(nameSpace);
    if (!space) {
        throw CimError(CimStatus::invalidNamespace, std::string(nameSpace));
    }
    const Class* top = name.empty() ? nullptr : &demand(nameSpace, name);
    std::vector<const Class*> result;
    if (deep) {
        for (const auto& cls : space->classes) {
            if (cls.get() != top && (!top || cls->isA(top->name))) {
                result.push_back(cls.get());
            }
        }
    } else if (const auto found = space->children.find(top); found != space->children.end()) {
        result = found->second;
    }
    return result;
}

ObjectPath Repository::canonical(const ObjectPath& path) const {
    const std::shared_lock<std::shared_mutex> lock(mutex_);
    return canonicalPath(path, 0);
}

ObjectPath Repository::canonicalPath(const ObjectPath& path, int depth) const {
    const Class& cls = demand(path.nameSpace(), path.className());
    if (path.keys().size() != cls.keys().size() || depth > maxPathDepth) {
        throw CimError(CimStatus::invalidParameter, "wrong number of keys: " + path.localText());
    }
    std::vector<KeyBinding> keys;
    keys.reserve(path.keys().size());
    for (const std::size_t index : cls.keys()) {
        const Property& property = cls.properties[index];
        // A class with one key may leave its name out (DSP0201, KEYVALUE in INSTANCENAME).
        const bool unnamed = path.keys().size() == 1 && path.keys()[0].name.empty();
        const Value& given = unnamed ? path.keys()[0].value : path.key(property.name);
        if (given.isNull()) {
            throw CimError(CimStatus::invalidParameter,
                           "key " + property.name + " is missing: " + path.localText());
        }
        keys.push_back({property.name,
                        canonicalReference(keyValue(given, property), cls.nameSpace, depth + 1)});
    }
    return {cls.nameSpace, cls.name, std::move(keys)};
}

Value Repository::canonicalReference(const Value& value, const std::string& nameSpace,
                                     int depth) const {
    if (!value.isPath()) {
        return value;
    }
    ObjectPath path = *value.toPath();
    path.setNameSpace(path.nameSpace().empty() ? nameSpace
                                               : std::string(trimNamespace(path.nameSpace())));
    if (!lookUp(path.nameSpace(), path.className())) {
        return path; // an object of another server's model: kept as it was written
    }
    return canonicalPath(path, depth);
}

void Repository::canonicalReferences(Instance& instance) const {
    const Class& cls = instance.cls();
    for (std::size_t i = 0; i < cls.properties.size(); ++i) {
        if (cls.properties[i].type != CimType::reference || instance.at(i).isNull()) {
            continue;
        }
        if (!cls.properties[i].isArray) {
            instance.setAt(i, canonicalReference(instance.at(i), cls.nameSpace, 0));
            continue;
        }
        Value::Array elements;
        for (const Value& element : instance.at(i).toArray()) {
            elements.push_back(canonicalReference(element, cls.nameSpace, 0));
        }
        instance.setAt(i, std::move(elements));
    }
}

} // namespace velclp_sim
