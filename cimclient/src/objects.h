// What stands behind the two public words of each object, and what the wire side needs of them.
// Objects know nothing of a client; each is used by one thread at a time.
#ifndef CIMCLIENT_OBJECTS_H
#define CIMCLIENT_OBJECTS_H

#include "data.h"
#include "namedvalues.h"

#include <CimClientLib/native.h>

#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace cimclient {

// Gives an object back through its table.
struct Release {
    template<typename Object>
    void operator()(Object* object) const {
        object->ft->release(object);
    }
};
template<typename Object>
using Owned = std::unique_ptr<Object, Release>;

// The release and clone slots of the objects that are copied as a whole.

template<typename Object, typename Public>
CMPIStatus releaseSlot(Public* object) {
    if (!object)
        return {CMPI_RC_ERR_FAILED, nullptr};
    delete Object::from(object);
    return {CMPI_RC_OK, nullptr};
}

template<typename Object, typename Public>
Public* cloneSlot(Public* object, CMPIStatus* rc) {
    if (rc)
        *rc = {object ? CMPI_RC_OK : CMPI_RC_ERR_INVALID_PARAMETER, nullptr};
    return object ? new Object(*Object::from(object)) : nullptr;
}

// A copy of the text; null gives a string whose text is null.
CMPIString* newString(const char* text);
CMPIString* newString(std::string_view text);

struct ObjectPath : CMPIObjectPath {
    ObjectPath();
    static ObjectPath* from(CMPIObjectPath* path) { return static_cast<ObjectPath*>(path); }

    // "namespace:Class.key=value,...", nothing quoted inside the values.
    std::string text() const;

    std::optional<std::string> nameSpace;
    std::optional<std::string> className;
    NamedValues keys;
};

struct Instance : CMPIInstance {
    Instance();
    // Class, namespace and, in reverse, the keys of the path.
    explicit Instance(const ObjectPath& path);
    static Instance* from(CMPIInstance* instance) { return static_cast<Instance*>(instance); }

    // Replaces the property of that name, which stays a key if it is one, or appends it.
    NamedValue& set(std::string_view name, Data data);

    // Names that setProperty still takes.
    struct Filter {
        std::vector<std::string> names;
    };

    std::optional<std::string> nameSpace;
    std::optional<std::string> className;
    NamedValues properties;
    NamedValues qualifiers;
    std::optional<Filter> filter;
};

struct Args : CMPIArgs {
    Args();
    static Args* from(CMPIArgs* args) { return static_cast<Args*>(args); }

    NamedValues values;
};

struct Array : CMPIArray {
    // The array bit is dropped, and chars become strings.
    Array(CMPIType type, std::size_t size);
    static Array* from(CMPIArray* array) { return static_cast<Array*>(array); }

    CMPIType elementType;
    bool grows = false;
    std::vector<Data> elements;
};

struct DateTime : CMPIDateTime {
    explicit DateTime(std::string format);
    static DateTime* from(CMPIDateTime* dateTime) { return static_cast<DateTime*>(dateTime); }

    // Whether the text has the form of DSP0004, 5.2.4; the digits themselves are not looked at.
    static bool accepts(std::string_view text);

    std::string text;
};

struct Class : CMPIConstClass {
    Class();
    static Class* from(CMPIConstClass* cls) { return static_cast<Class*>(cls); }

    std::string name;
    NamedValues properties;
    NamedValues qualifiers;
    NamedValues methods;
};

// Takes the elements over; the type is null for an empty list, whatever was asked for.
CMPIEnumeration* newEnumeration(CMPIType type, std::vector<Data> elements);

} // namespace cimclient

#endif
