// A CIM server in the test's own process, behind the client's function table: objects, classes,
// associations and methods that a test lays out, every call noted, and failures where it wants
// them.
#ifndef VELCLP_TESTS_UNIT_FAKE_CIM_H
#define VELCLP_TESTS_UNIT_FAKE_CIM_H

#include "velclp/cimhandle.h"
#include "velclp/core_misc.h"

#include <CimClientLib/native.h>

#include <algorithm>
#include <deque>
#include <functional>
#include <list>
#include <map>
#include <string>
#include <strings.h>
#include <utility>
#include <vector>

namespace fakecim {

using namespace velmora_clp;

// A value as text, with its type; of arrays one text an element.
struct Value {
    CMPIType type = CMPI_string;
    std::vector<std::string> texts;
    bool null = false;
};

inline Value text(const std::string& value) {
    return {CMPI_string, {value}, false};
}
inline Value texts(std::vector<std::string> values) {
    return {CMPI_stringA, std::move(values), false};
}
inline Value number(CMPIType type, const std::string& value) {
    return {type, {value}, false};
}
inline Value null(CMPIType type) {
    return {type, {}, true};
}

// Owns what the value points to until it goes.
class Data {
public:
    explicit Data(const Value& value) {
        m_data.type = value.type;
        if (value.null) {
            m_data.state = CMPI_nullValue;
        } else if ((value.type & CMPI_ARRAY) != 0) {
            const CMPIType element = value.type & ~CMPI_ARRAY;
            m_array.reset(
                native_new_CMPIArray(static_cast<CMPICount>(value.texts.size()), element, nullptr));
            for (std::size_t i = 0; i < value.texts.size(); ++i) {
                Data item({element, {value.texts[i]}, false});
                m_array->ft->setElementAt(m_array.get(), static_cast<CMPICount>(i),
                                          &item.get().value, element);
            }
            m_data.value.array = m_array.get();
        } else {
            CLPMisc::normalValue(value.texts.front(), m_data.value, value.type, nullptr, nullptr);
            if (value.type == CMPI_string)
                m_string.reset(m_data.value.string);
            if (value.type == CMPI_dateTime)
                m_dateTime.reset(m_data.value.dateTime);
        }
    }
    CMPIData& get() { return m_data; }

private:
    CMPIData m_data = {};
    CimString m_string;
    CimDateTime m_dateTime;
    CimArray m_array;
};

inline CimArray arrayOfTexts(const std::vector<std::string>& values) {
    Data data(texts(values));
    return cimClone(data.get().value.array);
}

inline bool same(const std::string& a, const std::string& b) {
    return strcasecmp(a.c_str(), b.c_str()) == 0;
}

// ---- Objects of the client that have no public constructor ----

struct Enumeration : CMPIEnumeration {
    CimPaths paths;
    std::size_t next = 0;
    CimArray array;

    static CMPIEnumeration* make(CimPaths paths) {
        static CMPIEnumerationFT table = {1, release, clone, getNext, hasNext, toArray};
        auto* made = new Enumeration;
        made->hdl = made;
        made->ft = &table;
        made->paths = std::move(paths);
        return made;
    }
    static Enumeration* self(CMPIEnumeration* e) { return static_cast<Enumeration*>(e); }
    static CMPIStatus release(CMPIEnumeration* e) {
        delete self(e);
        return {CMPI_RC_OK, nullptr};
    }
    static CMPIEnumeration* clone(CMPIEnumeration* e, CMPIStatus*) {
        CimPaths copies;
        for (CMPIObjectPath* path : self(e)->paths)
            copies.push_back(cimClone(path));
        return make(std::move(copies));
    }
    static CMPIData getNext(CMPIEnumeration* e, CMPIStatus*) {
        CMPIData data = {};
        data.type = CMPI_ref;
        data.value.ref = self(e)->paths[self(e)->next++];
        return data;
    }
    static CMPIBoolean hasNext(CMPIEnumeration* e, CMPIStatus*) {
        return self(e)->next < self(e)->paths.size() ? 1 : 0;
    }
    static CMPIArray* toArray(CMPIEnumeration* e, CMPIStatus*) {
        Enumeration& all = *self(e);
        all.array.reset(
            native_new_CMPIArray(static_cast<CMPICount>(all.paths.size()), CMPI_ref, nullptr));
        for (std::size_t i = 0; i < all.paths.size(); ++i) {
            CMPIValue value = {};
            value.ref = all.paths[i];
            all.array->ft->setElementAt(all.array.get(), static_cast<CMPICount>(i), &value,
                                        CMPI_ref);
        }
        return all.array.get();
    }
};

struct Property {
    CMPIType type = CMPI_string;
    std::map<std::string, std::vector<std::string>> qualifiers;
};

// A class with its properties in order.
struct ClassModel {
    std::vector<std::pair<std::string, Property>> properties;
};

struct Class : CMPIConstClass {
    ClassModel model;
    std::deque<Data> kept;

    static CMPIConstClass* make(const ClassModel& model) {
        static CMPIConstClassFT table = {};
        table.release = release;
        table.clone = clone;
        table.getProperty = getProperty;
        table.getPropertyAt = getPropertyAt;
        table.getPropertyCount = getPropertyCount;
        table.getPropertyQualifier = getPropertyQualifier;
        table.getPropertyQualifierCount = getPropertyQualifierCount;
        auto* made = new Class;
        made->hdl = made;
        made->ft = &table;
        made->model = model;
        return made;
    }
    static Class* self(CMPIConstClass* c) { return static_cast<Class*>(c); }
    static CMPIStatus release(CMPIConstClass* c) {
        delete self(c);
        return {CMPI_RC_OK, nullptr};
    }
    static CMPIConstClass* clone(CMPIConstClass* c, CMPIStatus*) { return make(self(c)->model); }
    static CMPIData none(CMPIStatus* rc, CMPIrc code) {
        rc->rc = code;
        CMPIData data = {};
        data.state = CMPI_nullValue;
        return data;
    }
    static CMPIData typed(const Property& property) {
        CMPIData data = {};
        data.type = property.type;
        data.state = CMPI_nullValue;
        return data;
    }
    static const Property* find(CMPIConstClass* c, const char* name) {
        for (const auto& [own, property] : self(c)->model.properties)
            if (same(own, name))
                return &property;
        return nullptr;
    }
    static CMPIData getProperty(CMPIConstClass* c, const char* name, CMPIStatus* rc) {
        const Property* const property = find(c, name);
        return property ? typed(*property) : none(rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
    }
    static CMPIData getPropertyAt(CMPIConstClass* c, CMPICount i, CMPIString** name, CMPIStatus*) {
        const auto& entry = self(c)->model.properties.at(i);
        *name = native_new_CMPIString(entry.first.c_str(), nullptr);
        return typed(entry.second);
    }
    static CMPICount getPropertyCount(CMPIConstClass* c, CMPIStatus*) {
        return static_cast<CMPICount>(self(c)->model.properties.size());
    }
    static CMPIData getPropertyQualifier(CMPIConstClass* c, const char* name, const char* qualifier,
                                         CMPIStatus* rc) {
        if (const Property* const property = find(c, name))
            for (const auto& [own, values] : property->qualifiers)
                if (same(own, qualifier))
                    return self(c)->kept.emplace_back(texts(values)).get();
        return none(rc, CMPI_RC_ERR_FAILED);
    }
    static CMPICount getPropertyQualifierCount(CMPIConstClass* c, const char* name, CMPIStatus*) {
        const Property* const property = find(c, name);
        return property ? static_cast<CMPICount>(property->qualifiers.size()) : 0;
    }
};

// ---- The server ----

struct Object {
    std::string cimclass;
    std::vector<std::pair<std::string, std::string>> keys; // strings
    std::map<std::string, Value> properties;
    std::string ns = "root/zorm";

    CimPath path() const {
        CimPath made(newCMPIObjectPath(ns.c_str(), cimclass.c_str(), nullptr));
        for (const auto& [name, value] : keys) {
            Data data(text(value));
            made->ft->addKey(made.get(), name.c_str(), &data.get().value, CMPI_string);
        }
        return made;
    }
};

struct Call {
    std::string operation;
    std::string cimclass;
    std::string detail;
};

class Server : CMCIClient {
public:
    Server() {
        static CMCIClientFT table = {};
        table.release = release;
        table.getClass = getClass;
        table.getInstance = getInstance;
        table.createInstance = createInstance;
        table.setInstance = setInstance;
        table.deleteInstance = deleteInstance;
        table.enumInstanceNames = enumInstanceNames;
        table.associatorNames = associatorNames;
        table.referenceNames = referenceNames;
        table.invokeMethod = invokeMethod;
        hdl = nullptr;
        ft = &table;
    }

    CMCIClient* client() { return this; }

    // Where the objects stand; a list keeps their addresses.
    std::list<Object> objects;
    std::map<std::string, ClassModel> classes;
    std::vector<Call> calls;
    // Called on every call before it is answered; a code other than 0 fails it.
    std::function<int(const Call&)> onCall;
    void fail(const std::string& operation, int code = CMPI_RC_ERR_FAILED) {
        onCall = [operation, code](const Call& call) {
            return call.operation == operation ? code : CMPI_RC_OK;
        };
    }
    // What methods return, by name; 0 as a uint32 without an entry. May fill the output.
    std::map<std::string, std::function<Value(CMPIArgs*)>> methods;
    // What createInstance gives; null for nothing.
    const Object* created = nullptr;

    Object& add(Object object) { return objects.emplace_back(std::move(object)); }
    void remove(const Object& gone) {
        objects.erase(std::find_if(objects.begin(), objects.end(),
                                   [&](const Object& object) { return &object == &gone; }));
    }
    // Ties two objects; they are found again by their keys.
    void link(const std::string& association, const Object& a, const Object& b,
              std::map<std::string, Value> properties = {}) {
        links.push_back({association, a, b, std::move(properties)});
    }
    // The number of calls of an operation, of one class if given.
    long count(const std::string& operation, const std::string& cimclass = "") const {
        return std::count_if(calls.begin(), calls.end(), [&](const Call& call) {
            return call.operation == operation && (cimclass.empty() || call.cimclass == cimclass);
        });
    }

    struct Link {
        std::string association;
        Object a;
        Object b;
        std::map<std::string, Value> properties;
    };
    std::vector<Link> links;

private:
    static Server* self(CMCIClient* c) { return static_cast<Server*>(c); }

    // The server outlives its clients.
    static CMPIStatus release(CMCIClient* c) {
        CMPIStatus status = {CMPI_RC_OK, nullptr};
        noted(c, {"release", "", ""}, &status);
        return status;
    }

    static bool noted(CMCIClient* c, Call call, CMPIStatus* rc) {
        Server& server = *self(c);
        server.calls.push_back(call);
        rc->rc = static_cast<CMPIrc>(server.onCall ? server.onCall(call) : 0);
        return rc->rc == CMPI_RC_OK;
    }

    const Object* find(CMPIObjectPath* path) const {
        for (const Object& object : objects)
            if (clp_sameCMPIObjectPath(object.path().get(), path) != 0)
                return &object;
        return nullptr;
    }

    // Whether the object is still there.
    bool lives(const Object& object) const { return find(object.path().get()) != nullptr; }

    static void fill(CMPIInstance* instance, const std::map<std::string, Value>& properties) {
        for (const auto& [name, value] : properties) {
            Data data(value);
            instance->ft->setProperty(instance, name.c_str(),
                                      value.null ? nullptr : &data.get().value, value.type);
        }
    }

    static CMPIConstClass* getClass(CMCIClient* c, CMPIObjectPath* path, CMPIFlags flags, char**,
                                    CMPIStatus* rc) {
        const std::string name = cimClassName(path);
        if (!noted(c, {"getClass", name, std::to_string(flags)}, rc))
            return nullptr;
        for (const auto& [own, model] : self(c)->classes)
            if (same(own, name))
                return Class::make(model);
        rc->rc = CMPI_RC_ERR_NOT_FOUND;
        return nullptr;
    }

    static CMPIInstance* getInstance(CMCIClient* c, CMPIObjectPath* path, CMPIFlags, char**,
                                     CMPIStatus* rc) {
        if (!noted(c, {"getInstance", cimClassName(path), ""}, rc))
            return nullptr;
        const Object* const object = self(c)->find(path);
        CimInstance instance(native_new_CMPIInstance(path, nullptr));
        if (object) {
            fill(instance.get(), object->properties);
            return instance.release();
        }
        for (const Link& link : self(c)->links)
            if (clp_sameCMPIObjectPath(linkPath(link).get(), path) != 0) {
                fill(instance.get(), link.properties);
                return instance.release();
            }
        rc->rc = CMPI_RC_ERR_NOT_FOUND;
        return nullptr;
    }

    static CMPIObjectPath* createInstance(CMCIClient* c, CMPIObjectPath*, CMPIInstance* instance,
                                          CMPIStatus* rc) {
        if (!noted(c, {"createInstance", "", propertiesOf(instance)}, rc) || !self(c)->created)
            return nullptr;
        CimPath path = self(c)->created->path();
        path->ft->setNameSpace(path.get(), nullptr);
        return path.release();
    }

    static CMPIStatus setInstance(CMCIClient* c, CMPIObjectPath* path, CMPIInstance* instance,
                                  CMPIFlags, char**) {
        CMPIStatus status = {CMPI_RC_OK, nullptr};
        noted(c, {"setInstance", cimClassName(path), propertiesOf(instance)}, &status);
        return status;
    }

    static CMPIStatus deleteInstance(CMCIClient* c, CMPIObjectPath* path) {
        CMPIStatus status = {CMPI_RC_OK, nullptr};
        noted(c, {"deleteInstance", cimClassName(path), ""}, &status);
        return status;
    }

    static CMPIEnumeration* enumInstanceNames(CMCIClient* c, CMPIObjectPath* path, CMPIStatus* rc) {
        const std::string name = cimClassName(path);
        if (!noted(c, {"enumInstanceNames", name, ""}, rc))
            return nullptr;
        CimPaths found;
        for (const Object& object : self(c)->objects)
            if (same(object.cimclass, name)) {
                CimPath made = object.path();
                made->ft->setNameSpace(made.get(), nullptr);
                found.push_back(std::move(made));
            }
        return Enumeration::make(std::move(found));
    }

    static CMPIEnumeration* associatorNames(CMCIClient* c, CMPIObjectPath* path,
                                            const char* association, const char* result,
                                            const char*, const char*, CMPIStatus* rc) {
        if (!noted(c,
                   {"associatorNames", cimClassName(path),
                    std::string(association) + ">" + (result ? result : "")},
                   rc))
            return nullptr;
        CimPaths found;
        for (const Link& link : self(c)->links) {
            if (!same(link.association, association))
                continue;
            for (const auto& [from, to] : {std::pair(&link.a, &link.b), {&link.b, &link.a}})
                if (clp_sameCMPIObjectPath(from->path().get(), path) != 0 && self(c)->lives(*to) &&
                    isA(*to, result))
                    found.push_back(to->path());
        }
        return Enumeration::make(std::move(found));
    }

    // Classes of vendors count as subclasses of the class with the same rest of the name.
    static bool isA(const Object& object, const char* result) {
        const auto rest = [](const std::string& name) { return name.substr(name.find('_') + 1); };
        return !result || same(rest(object.cimclass), rest(result));
    }

    static CimPath linkPath(const Link& link) {
        CimPath path(newCMPIObjectPath("root/zorm", link.association.c_str(), nullptr));
        for (const auto& [name, end] : {std::pair("Antecedent", &link.a), {"Dependent", &link.b}}) {
            const CimPath reference = end->path();
            CMPIValue value = {};
            value.ref = reference.get();
            path->ft->addKey(path.get(), name, &value, CMPI_ref);
        }
        return path;
    }

    static CMPIEnumeration* referenceNames(CMCIClient* c, CMPIObjectPath* path,
                                           const char* association, const char*, CMPIStatus* rc) {
        if (!noted(c, {"referenceNames", cimClassName(path), association ? association : ""}, rc))
            return nullptr;
        CimPaths found;
        for (const Link& link : self(c)->links)
            if ((!association || same(link.association, association)) &&
                (clp_sameCMPIObjectPath(link.a.path().get(), path) != 0 ||
                 clp_sameCMPIObjectPath(link.b.path().get(), path) != 0))
                found.push_back(linkPath(link));
        return Enumeration::make(std::move(found));
    }

    static std::string shown(const char* name, const CMPIData& data) {
        std::string all;
        if ((data.type & CMPI_ARRAY) != 0 && (data.state & CMPI_nullValue) == 0) {
            CMPIArray* const array = data.value.array;
            for (CMPICount i = 0; i < array->ft->getSize(array, nullptr); ++i) {
                const CMPIData item = array->ft->getElementAt(array, i, nullptr);
                all += (i ? "," : "[") + ((item.state & CMPI_nullValue) != 0
                                              ? "null"
                                              : cimValueText(item.type, item.value));
            }
            all += "]";
        } else {
            all = (data.state & CMPI_nullValue) != 0 ? "null" : cimValueText(data.type, data.value);
        }
        char type[8];
        std::snprintf(type, sizeof type, "%04x", data.type);
        return std::string(name) + ":" + type + "=" + all + ";";
    }

    static std::string propertiesOf(CMPIInstance* instance) {
        std::string all;
        for (unsigned int i = 0; i < instance->ft->getPropertyCount(instance, nullptr); ++i) {
            CMPIString* name = nullptr;
            const CMPIData data = instance->ft->getPropertyAt(instance, i, &name, nullptr);
            all += shown(cimText(CimString(name).get()).c_str(), data);
        }
        return all;
    }

    static CMPIData invokeMethod(CMCIClient* c, CMPIObjectPath* path, const char* method,
                                 CMPIArgs* in, CMPIArgs* out, CMPIStatus* rc) {
        std::string detail = std::string(method) + "(";
        for (unsigned int i = 0; in && i < in->ft->getArgCount(in, nullptr); ++i) {
            CMPIString* name = nullptr;
            const CMPIData data = in->ft->getArgAt(in, i, &name, nullptr);
            detail += shown(cimText(CimString(name).get()).c_str(), data);
        }
        CMPIData data = {};
        data.state = CMPI_nullValue | CMPI_notFound;
        if (!noted(c, {"invokeMethod", cimClassName(path), detail + ")"}, rc))
            return data;
        const auto entry = self(c)->methods.find(method);
        const Value result =
            entry != self(c)->methods.end() ? entry->second(out) : number(CMPI_uint32, "0");
        return Data(result).get();
    }
};

} // namespace fakecim

#endif
