#include "clientfixture.h"

#include <cstdio>
#include <ostream>

namespace velmora_clp {

namespace {

template<typename Object, typename Count, typename At>
std::string showAll(Object* object, Count count, At at) {
    std::string out;
    for (unsigned i = 0; i < count(object, nullptr); ++i) {
        CMPIString* name = nullptr;
        const CMPIData data = at(object, i, &name, nullptr);
        out += cimText(CimString(name).get()) + "=" + show(data) + "\n";
    }
    return out;
}

std::string showArray(CMPIArray* array) {
    std::string out = "[";
    for (CMPICount i = 0; i < array->ft->getSize(array, nullptr); ++i)
        out.append(i == 0 ? "" : ", ").append(show(array->ft->getElementAt(array, i, nullptr)));
    return out + "]";
}

std::string showValue(const CMPIData& data) {
    if (data.state & (CMPI_nullValue | CMPI_badValue))
        return "null";
    if (data.type & CMPI_ARRAY)
        return showArray(data.value.array);
    if (data.type == CMPI_instance)
        return "{" + show(data.value.inst) + "}";
    if (data.type == CMPI_string)
        return data.value.string && data.value.string->hdl ? "'" + cimText(data.value.string) + "'"
                                                           : "no text";
    if (data.type == CMPI_char16)
        return std::to_string(data.value.char16);
    return cimValueText(data.type, data.value);
}

} // namespace

std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
    return out << outcome.code << " \"" << outcome.message << '"';
}

Outcome outcome(const CimStatus& status) {
    return {status.rc(), status.message()};
}

std::string show(const CMPIData& data) {
    char head[16];
    std::snprintf(head, sizeof head, "%04x/%04x ", data.type, data.state);
    return head + showValue(data);
}

std::string show(CMPIInstance* instance) {
    return showAll(instance, instance->ft->getPropertyCount, instance->ft->getPropertyAt);
}

std::string show(CMPIObjectPath* path) {
    return path ? cimText(CimString(path->ft->toString(path, nullptr)).get()) : "no path";
}

std::string show(CMPIArgs* args) {
    return showAll(args, args->ft->getArgCount, args->ft->getArgAt);
}

std::string show(CMPIEnumeration* enumeration) {
    if (!enumeration)
        return "no enumeration";
    std::string out;
    while (enumeration->ft->hasNext(enumeration, nullptr)) {
        const CMPIData data = enumeration->ft->getNext(enumeration, nullptr);
        out += (data.type == CMPI_ref ? show(data.value.ref) : show(data)) + "\n";
    }
    return out;
}

CimPath newPath(const char* nameSpace, const char* className) {
    return CimPath(newCMPIObjectPath(nameSpace, className, nullptr));
}

CMPIValue* chars(const char* text) {
    return reinterpret_cast<CMPIValue*>(const_cast<char*>(text));
}

void addTextKey(CMPIObjectPath* path, const char* name, const char* value) {
    path->ft->addKey(path, name, chars(value), CMPI_chars);
}

CimPath thing() {
    CimPath path = newPath("root/cimv2", "CIM_Thing");
    addTextKey(path.get(), "Name", "x");
    return path;
}

WithServer::WithServer()
    : client(cmciConnect("127.0.0.1", "http", server.port().c_str(), nullptr, nullptr,
                         status.out())) {}

} // namespace velmora_clp
