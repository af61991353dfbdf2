// Owning handles for the objects of the CIM client library, and the few readings of them that
// everybody needs. A handle releases its object through the object's own table, however the scope
// ends; raw pointers are borrowed, or stand where an interface is fixed so.
#ifndef VELCLP_CIMHANDLE_H
#define VELCLP_CIMHANDLE_H

#include <CimClientLib/cmci.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <utility>
#include <vector>

// Exported by the library, declared in none of its older headers. The caller frees the text.
extern "C" char* value2Chars(CMPIType type, CMPIValue* value);

namespace velmora_clp {

template<typename T>
struct CimRelease {
    void operator()(T* object) const { object->ft->release(object); }
};
template<typename T>
using CimHandle = std::unique_ptr<T, CimRelease<T>>;

using CimClient = CimHandle<CMCIClient>;
using CimPath = CimHandle<CMPIObjectPath>;
using CimInstance = CimHandle<CMPIInstance>;
using CimClass = CimHandle<CMPIConstClass>;
using CimEnumeration = CimHandle<CMPIEnumeration>;
using CimArgs = CimHandle<CMPIArgs>;
using CimArray = CimHandle<CMPIArray>;
using CimString = CimHandle<CMPIString>;
using CimDateTime = CimHandle<CMPIDateTime>;

// A deep copy; null when there is nothing to copy or it failed.
template<typename T>
CimHandle<T> cimClone(const T* object) {
    if (!object)
        return nullptr;
    CMPIStatus status = {CMPI_RC_OK, nullptr};
    return CimHandle<T>(object->ft->clone(const_cast<T*>(object), &status));
}

// The status of one call after another: give it to the call as its out-argument. Releases the
// message of the call before, and the last one at its end.
class CimStatus {
public:
    CimStatus() = default;
    // Takes over a status that a call returned.
    explicit CimStatus(CMPIStatus status) : m_status(status) {}
    CimStatus(const CimStatus&) = delete;
    CimStatus& operator=(const CimStatus&) = delete;
    ~CimStatus() { clear(); }

    // For the next call: cleared.
    CMPIStatus* out() {
        clear();
        return &m_status;
    }
    CimStatus& operator=(CMPIStatus status) {
        clear();
        m_status = status;
        return *this;
    }
    bool ok() const { return m_status.rc == CMPI_RC_OK; }
    CMPIrc rc() const { return m_status.rc; }
    // The server's or the client's words; empty when there are none.
    std::string message() const {
        const char* text = m_status.msg ? CMGetCharPtr(m_status.msg) : nullptr;
        return text ? std::string(text) : std::string();
    }
    const CMPIStatus* get() const { return &m_status; }

private:
    void clear() {
        if (m_status.msg)
            m_status.msg->ft->release(m_status.msg);
        m_status = {CMPI_RC_OK, nullptr};
    }

    CMPIStatus m_status = {CMPI_RC_OK, nullptr};
};

// The text of a string object, borrowed; "" for a null object and for one without text.
inline std::string cimText(const CMPIString* text) {
    return text && text->hdl ? std::string(static_cast<const char*>(text->hdl)) : std::string();
}

// The class name of a path; "" when it has none.
inline std::string cimClassName(CMPIObjectPath* path) {
    CimStatus status;
    return path ? cimText(CimString(path->ft->getClassName(path, status.out())).get()) : "";
}

// The namespace of a path; "" when it has none.
inline std::string cimNameSpace(CMPIObjectPath* path) {
    CimStatus status;
    return path ? cimText(CimString(path->ft->getNameSpace(path, status.out())).get()) : "";
}

// What value2Chars makes of a value, whose state is not looked at; "" for any array.
inline std::string cimValueText(CMPIType type, CMPIValue value) {
    if (type & CMPI_ARRAY)
        return "";
    const std::unique_ptr<char, decltype(&std::free)> text(value2Chars(type, &value), &std::free);
    return text ? std::string(text.get()) : std::string();
}

// A value that is the caller's to release: what invokeMethod and getProperty of the client return.
// Data that a getter of an object returns is borrowed and never goes in here.
class CimData {
public:
    explicit CimData(CMPIData data) : m_data(data) {}
    CimData(const CimData&) = delete;
    CimData& operator=(const CimData&) = delete;
    ~CimData() {
        if (!hasValue())
            return;
        if (m_data.type & CMPI_ARRAY)
            release(m_data.value.array);
        else if (m_data.type == CMPI_string)
            release(m_data.value.string);
        else if (m_data.type == CMPI_ref)
            release(m_data.value.ref);
        else if (m_data.type == CMPI_dateTime)
            release(m_data.value.dateTime);
        else if (m_data.type == CMPI_instance)
            release(m_data.value.inst);
    }

    const CMPIData& get() const { return m_data; }
    // False for null, not found and bad values alike.
    bool hasValue() const {
        return !(m_data.state & (CMPI_nullValue | CMPI_notFound | CMPI_badValue));
    }

private:
    template<typename T>
    static void release(T* object) {
        if (object)
            object->ft->release(object);
    }

    CMPIData m_data;
};

// Owns the object paths that an operation gave in a vector.
class CimPaths {
public:
    CimPaths() = default;
    explicit CimPaths(std::vector<CMPIObjectPath*> paths) : m_paths(std::move(paths)) {}
    CimPaths(CimPaths&& other) noexcept : m_paths(std::move(other.m_paths)) {
        other.m_paths.clear();
    }
    CimPaths& operator=(CimPaths&& other) noexcept {
        m_paths.swap(other.m_paths);
        return *this;
    }
    ~CimPaths() {
        for (CMPIObjectPath* path : m_paths)
            if (path)
                path->ft->release(path);
    }

    bool empty() const { return m_paths.empty(); }
    std::size_t size() const { return m_paths.size(); }
    CMPIObjectPath* front() const { return m_paths.front(); }
    CMPIObjectPath* operator[](std::size_t i) const { return m_paths[i]; }
    auto begin() const { return m_paths.begin(); }
    auto end() const { return m_paths.end(); }

    void push_back(CimPath path) {
        m_paths.push_back(path.get());
        static_cast<void>(path.release());
    }
    // The vector itself, still owned here: for operations that read or append.
    std::vector<CMPIObjectPath*>& vector() { return m_paths; }
    // Hands all over to the caller.
    std::vector<CMPIObjectPath*> release() { return std::exchange(m_paths, {}); }

private:
    std::vector<CMPIObjectPath*> m_paths;
};

} // namespace velmora_clp

#endif
