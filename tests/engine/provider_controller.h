// The sample controller in the test's own process: model and providers without HTTP in between, and
// the session database of a run directory. Calls take the road that a request takes: the nearest
// provider of the class first, the repository last.
#ifndef VELCLP_TESTS_ENGINE_PROVIDER_CONTROLLER_H
#define VELCLP_TESTS_ENGINE_PROVIDER_CONTROLLER_H

#include "simulator/mofloader.h"
#include "simulator/providerset.h"
#include "tests/support/eventually.h"
#include "tests/support/run_directory.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>
#include <utility>
#include <vector>

class Controller {
public:
    using Value = velclp_sim::Value;
    using ObjectPath = velclp_sim::ObjectPath;
    using Named = std::vector<std::pair<std::string, Value>>;

    // With a speed of 1 nothing that takes its time ends within a test; with 1000 it has soon
    // ended.
    explicit Controller(double speed = 1)
        : scheduler_(speed),
          services_{repository, scheduler_, directory.file("clpsvc.db3")},
          providers_(load(), velclp_sim::makeProviders(services_)) {
        providers_.start();
    }

    // The instance of the class whose property has the value; without a value the first one.
    ObjectPath find(const std::string& className, const std::string& property = "",
                    const Value& value = {}) {
        for (const std::string& space : repository.namespaces()) {
            const auto* cls = repository.findClass(space, className);
            if (!cls) {
                continue;
            }
            providers_.refresh(*cls);
            for (const auto& instance : repository.instances(space, className)) {
                if (property.empty() || instance->get(property) == value) {
                    return repository.canonical(instance->path());
                }
            }
        }
        throw std::runtime_error("no " + className + " with that " + property);
    }

    std::size_t count(const std::string& className) {
        providers_.refresh(*repository.findClass("root/zorm", className));
        return repository.instances("root/zorm", className).size();
    }

    bool exists(const ObjectPath& path) { return repository.find(path) != nullptr; }

    Value get(const ObjectPath& path, const std::string& property) {
        providers_.refresh(classOf(path));
        const auto instance = repository.find(path);
        return instance ? instance->get(property) : Value("gone");
    }

    // The properties read as given; of numbers the sign's type does not matter.
    void expect(const ObjectPath& path, const Named& properties) {
        for (const auto& [name, expected] : properties) {
            const Value value = get(path, name);
            const bool same = expected.isInteger() ? value.toSigned(-99) == expected.toSigned()
                                                   : value == expected;
            EXPECT_TRUE(same) << path.toText() << " " << name << " is " << value.toSigned(-99)
                              << value.toString();
        }
    }

    velclp_sim::MethodResult invoke(const ObjectPath& path, const std::string& method,
                                    const Named& arguments = {}) {
        const auto* declared = classOf(path).method(method);
        velclp_sim::Arguments in;
        for (const auto& [name, value] : arguments) {
            in.set(name, value);
        }
        for (auto* provider : providers_.serving(classOf(path))) {
            if (auto result = provider->invokeMethod({}, path, *declared, in)) {
                return *result;
            }
        }
        throw velclp_sim::CimError(velclp_sim::CimStatus::methodNotAvailable, method);
    }

    std::uint64_t call(const ObjectPath& path, const std::string& method,
                       const Named& arguments = {}) {
        return invoke(path, method, arguments).returnValue.toUnsigned(99);
    }
    // Of the first instance of the class.
    std::uint64_t call(const std::string& className, const std::string& method,
                       const Named& arguments = {}) {
        return call(find(className), method, arguments);
    }

    ObjectPath create(const std::string& className, const Named& properties) {
        const auto& cls = repository.requireClass("root/zorm", className);
        velclp_sim::Instance draft(cls);
        for (const auto& [name, value] : properties) {
            draft.set(name, value);
        }
        for (auto* provider : providers_.serving(cls)) {
            if (const auto path = provider->createInstance({}, draft)) {
                return *path;
            }
        }
        return repository.add(draft);
    }

    void modify(const ObjectPath& path, const std::string& property, const Value& value) {
        const auto& cls = classOf(path);
        const std::vector<velclp_sim::PropertyChange> changes{{cls.property(property), value}};
        for (auto* provider : providers_.serving(cls)) {
            if (provider->modifyInstance({}, path, changes)) {
                return;
            }
        }
        repository.update(path, [&](auto& instance) { instance.set(property, value); });
    }

    void remove(const ObjectPath& path) {
        for (auto* provider : providers_.serving(classOf(path))) {
            if (provider->deleteInstance({}, path)) {
                return;
            }
        }
        repository.remove(path);
    }

    // The other ends of the object's associations of the class.
    std::vector<ObjectPath> partners(const ObjectPath& path, const std::string& association) {
        providers_.refreshAll();
        std::vector<ObjectPath> ends;
        const auto links =
            repository.links(path, [&](const auto& cls) { return cls.isA(association); });
        for (const auto& link : links) {
            for (std::size_t i = 0; i < link.association->cls().properties.size(); ++i) {
                const ObjectPath* end = link.association->at(i).toPath();
                if (end && i != link.role) {
                    ends.push_back(*end);
                }
            }
        }
        return ends;
    }

    RunDirectory directory;
    velclp_sim::Repository repository;

private:
    const velclp_sim::Class& classOf(const ObjectPath& path) const {
        return repository.requireClass(path.nameSpace(), path.className());
    }

    const velclp_sim::Repository& load() {
        velclp_sim::MofLoader loader(repository, "root/zorm");
        loader.addPath(VELCLP_MODEL_DIRECTORY);
        loader.load();
        return repository;
    }

    velclp_sim::Scheduler scheduler_;
    velclp_sim::Services services_;
    velclp_sim::ProviderSet providers_;
};

// The code of the CIM error that the work ends in; 0 when it ends well.
inline int errorOf(const std::function<void()>& work) {
    try {
        work();
    } catch (const velclp_sim::CimError& error) {
        return error.code();
    }
    return 0;
}

#endif
