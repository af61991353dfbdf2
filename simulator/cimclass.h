// Class declarations and instances. A Class is complete (inherited elements included, in the order
// superclass first) and never changes once the repository holds it, so pointers to it are good for
// as long as the repository lives. An Instance is a plain value that refers to its class.
#pragma once

#include "simulator/names.h"
#include "simulator/objectpath.h"
#include "simulator/value.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace velclp_sim {

struct Qualifier {
    std::string name;
    CimType type = CimType::boolean;
    bool isArray = false;
    Value value;
    bool overridable = true;
    bool toSubclass = true;
    bool translatable = false;
    bool toInstance = false;
    /// True when a superclass's declaration gave it.
    bool propagated = false;
};

/// The declaration of a qualifier; its value is the default. Scopes are words such as "property".
struct QualifierType : Qualifier {
    std::vector<std::string> scopes;
};

using Qualifiers = std::vector<Qualifier>;

/// The qualifier of that name; null when there is none.
const Qualifier* findQualifier(const Qualifiers& qualifiers, std::string_view name);
/// True when the boolean qualifier is there and true.
bool hasFlag(const Qualifiers& qualifiers, std::string_view name);

/// What properties and parameters have in common.
struct TypedElement {
    std::string name;
    CimType type = CimType::string;
    bool isArray = false;
    /// Fixed length of an array; 0 when it has none.
    unsigned arraySize = 0;
    /// The class that a reference is declared for.
    std::string referenceClass;
    Qualifiers qualifiers;
};

struct Property : TypedElement {
    Value defaultValue;
    /// The class that declares it first.
    std::string origin;
    /// False when this class itself declares or overrides it.
    bool propagated = false;
    bool key = false;
};

struct Parameter : TypedElement {
    bool in = true;
    bool out = false;
};

struct Method {
    std::string name;
    CimType type = CimType::uint32;
    std::vector<Parameter> parameters;
    Qualifiers qualifiers;
    std::string origin;
    bool propagated = false;

    /// The parameter of that name; null when there is none.
    const Parameter* parameter(std::string_view parameterName) const;
};

class Class {
public:
    std::string name;
    std::string nameSpace;
    /// The superclass; null for a top-level class.
    const Class* super = nullptr;
    Qualifiers qualifiers;
    std::vector<Property> properties;
    std::vector<Method> methods;

    Class() = default;
    Class(const Class&) = delete;
    Class& operator=(const Class&) = delete;

    /// The index in `properties`; nothing when there is no such property.
    std::optional<std::size_t> propertyIndex(std::string_view propertyName) const;
    /// Null when there is no such property.
    const Property* property(std::string_view propertyName) const;
    /// Null when there is no such method.
    const Method* method(std::string_view methodName) const;
    /// True when this class or one of its superclasses has the name.
    bool isA(std::string_view className) const;
    bool isAssociation() const { return association_; }
    bool isAbstract() const { return abstract_; }
    /// Indexes of the key properties, in declaration order.
    const std::vector<std::size_t>& keys() const { return keys_; }

    /// Makes the look-up tables; the repository calls it once, when the class is complete.
    void seal();

private:
    std::unordered_map<std::string_view, std::size_t, NameHash, NameEqual> index_;
    std::vector<std::size_t> keys_;
    bool association_ = false;
    bool abstract_ = false;
};

class Instance {
public:
    /// Holds the class's default values; the class must outlive the instance.
    explicit Instance(const Class& cls);

    const Class& cls() const { return *class_; }

    /// The property's value; NULL also when the class has no such property. Borrowed.
    const Value& get(std::string_view propertyName) const;
    const Value& at(std::size_t index) const { return values_[index]; }

    /// Stores the value as the property's type has it. Throws CIM_ERR_NO_SUCH_PROPERTY and
    /// CIM_ERR_TYPE_MISMATCH.
    void set(std::string_view propertyName, Value value);
    void setAt(std::size_t index, Value value);

    /// The instance's own path, made from its keys in declaration order. Throws
    /// CIM_ERR_INVALID_PARAMETER when a key is NULL.
    ObjectPath path() const;

private:
    const Class* class_;
    std::vector<Value> values_;
};

} // namespace velclp_sim
