// The name of a CIM object (DSP0004, 8.2): namespace, class, and key bindings for an instance.
// Paths are plain values; Repository::canonical() brings one to the form that the classes declare.
#pragma once

#include "simulator/value.h"

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace velclp_sim {

struct KeyBinding {
    std::string name;
    /// String, integer, real, boolean or reference; never NULL and never an array.
    Value value;

    bool operator==(const KeyBinding& other) const;
};

class ObjectPath {
public:
    ObjectPath() = default;
    /// An instance's path (or a class's, without keys) in the namespace; `nameSpace` may be empty,
    /// which means the namespace of the context.
    ObjectPath(std::string nameSpace, std::string className, std::vector<KeyBinding> keys = {})
        : nameSpace_(std::move(nameSpace)),
          className_(std::move(className)),
          keys_(std::move(keys)) {}

    const std::string& nameSpace() const { return nameSpace_; }
    const std::string& className() const { return className_; }
    const std::vector<KeyBinding>& keys() const { return keys_; }
    void setNameSpace(std::string nameSpace) { nameSpace_ = std::move(nameSpace); }

    /// The key's value, by name without case; NULL when there is no such key. Borrowed.
    const Value& key(std::string_view name) const;

    /// `[namespace:]Class.Key="text",Other=7` (DSP0004, 8.2.2), keys in their own order.
    std::string toText() const;
    /// The same without the namespace.
    std::string localText() const;

    /// Reads toText()'s form, also with a "//host/" in front of the namespace. Strings may hold \"
    /// and
    /// \\; a quoted text that reads as a path stays a string (the class decides, see
    /// Repository::canonical). Throws CIM_ERR_INVALID_PARAMETER.
    static ObjectPath fromText(std::string_view text);

    /// Same namespace and class without case, same keys in the same order, same values.
    bool operator==(const ObjectPath& other) const;
    bool operator!=(const ObjectPath& other) const { return !(*this == other); }

private:
    std::string nameSpace_;
    std::string className_;
    std::vector<KeyBinding> keys_;
};

} // namespace velclp_sim
