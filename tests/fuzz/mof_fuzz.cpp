// Any text as a model: the simulator refuses it with the place of the fault and holds no instance,
// or takes it, and then everything in it is found again by its path and can be sent.
#include "simulator/cimxmlwriter.h"
#include "simulator/modelcontrol.h"
#include "simulator/mof.h"
#include "tests/fuzz/require.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace {

using namespace velclp_sim;

Shown everything() {
    Shown shown;
    shown.qualifiers = true;
    shown.classOrigin = true;
    return shown;
}

void useInstances(const Repository& repository, const Class& cls) {
    std::string xml;
    CimXmlWriter writer(xml);
    for (const InstancePtr& instance : repository.instances(cls.nameSpace, cls.name)) {
        require(instance->cls().isA(cls.name) && !instance->cls().isAbstract());
        const ObjectPath path = instance->path();
        require(repository.find(path) == instance);
        writer.objectPath(path, "host");
        writer.instance(*instance, everything());
    }
}

void useClasses(const Repository& repository, const std::string& nameSpace) {
    std::string xml;
    for (const Class* cls : repository.subclasses(nameSpace, "", true)) {
        require(repository.findClass(nameSpace, cls->name) == cls);
        require(!cls->super || cls->isA(cls->super->name));
        CimXmlWriter(xml).cls(*cls, everything(), false);
        CimXmlWriter(xml).cls(*cls, everything(), true);
        useInstances(repository, *cls);
    }
}

bool isPlaced(std::string_view message) {
    const std::size_t colon = message.find(':');
    return colon != std::string_view::npos && colon + 1 < message.size() &&
           message[colon + 1] >= '0' && message[colon + 1] <= '9';
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    Repository repository;
    bool taken = true;
    try {
        addToModel(repository, "root/zorm", text);
    } catch (const MofError& error) {
        taken = false;
        require(isPlaced(error.what()));
    }
    for (const std::string& nameSpace : repository.namespaces()) {
        if (taken)
            useClasses(repository, nameSpace);
        else
            require(listModel(repository, nameSpace, "").empty());
    }
    return 0;
}
