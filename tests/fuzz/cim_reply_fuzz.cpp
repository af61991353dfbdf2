// Any bytes as the body of a CIM server's reply: the client makes objects of it or refuses it, and
// what it made can be read, copied and sent back.
#include "replydocument.h"
#include "replyreader.h"
#include "status.h"
#include "xmlwriter.h"

#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

using namespace cimclient;

void useInstance(CMPIInstance* instance);

void usePath(CMPIObjectPath* path) {
    const Owned<CMPIObjectPath> copy(path->ft->clone(path, nullptr));
    const Owned<CMPIString> text(copy->ft->toString(copy.get(), nullptr));
    std::string xml;
    XmlWriter(xml).instanceName(*ObjectPath::from(copy.get()));
}

void useData(const CMPIData& data) {
    if (data.state & CMPI_nullValue)
        return;
    if (data.type & CMPI_ARRAY) {
        for (CMPICount i = 0; i < data.value.array->ft->getSize(data.value.array, nullptr); ++i)
            useData(data.value.array->ft->getElementAt(data.value.array, i, nullptr));
        return;
    }
    CMPIValue value = data.value;
    std::free(value2Chars(data.type, &value));
    if (data.type == CMPI_instance)
        useInstance(data.value.inst);
    if (data.type == CMPI_ref)
        usePath(data.value.ref);
    if (data.type == CMPI_dateTime && data.value.dateTime)
        data.value.dateTime->ft->getBinaryFormat(data.value.dateTime, nullptr);
}

void useInstance(CMPIInstance* instance) {
    const Owned<CMPIInstance> copy(instance->ft->clone(instance, nullptr));
    for (unsigned i = 0; i < copy->ft->getPropertyCount(copy.get(), nullptr); ++i)
        useData(copy->ft->getPropertyAt(copy.get(), i, nullptr, nullptr));
    const Owned<CMPIObjectPath> path(copy->ft->getObjectPath(copy.get(), nullptr));
    std::string xml;
    XmlWriter(xml).instance("Any", *Instance::from(copy.get()));
}

template<typename Action>
void attempt(Action action) {
    try {
        action();
    } catch (const Failure& failure) {
        if (failure.code == 0 || failure.message.empty())
            std::abort();
    }
}

// As if the element were the answer to each of the operations in turn.
void useElement(pugi::xml_node element) {
    const ReplyReader reader;
    attempt([&] { usePath(reader.path(element).get()); });
    attempt([&] { useInstance(reader.locatedInstance(element, "root").get()); });
    attempt([&] {
        const Owned<Class> cls = reader.classDeclaration(element);
        const Owned<CMPIConstClass> copy(cls->ft->clone(cls.get(), nullptr));
    });
    attempt([&] { useData(reader.typedOrGuessed(element, "PARAMTYPE").get()); });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string text(reinterpret_cast<const char*>(data), size);
    attempt([&] {
        const ReplyDocument document(text);
        attempt([&] { document.response("METHODRESPONSE"); });
        for (pugi::xml_node element = document.root().first_child(); element;) {
            useElement(element);
            // The next one in the order of the document.
            pugi::xml_node next = element.first_child();
            while (!next && element) {
                next = element.next_sibling();
                element = element.parent();
            }
            element = next;
        }
    });
    return 0;
}
