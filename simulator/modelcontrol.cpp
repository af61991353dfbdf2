#include "simulator/modelcontrol.h"

#include "simulator/mofloader.h"
#include "simulator/words.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <unordered_map>

namespace velclp_sim {

namespace {

std::vector<ObjectPath> readPaths(std::string_view text, const std::string& nameSpace) {
    std::vector<ObjectPath> paths;
    while (!text.empty()) {
        const std::string_view line = takeLine(text);
        if (line.empty()) {
            continue;
        }
        ObjectPath path = ObjectPath::fromText(line);
        if (path.nameSpace().empty()) {
            path.setNameSpace(nameSpace);
        }
        paths.push_back(std::move(path));
    }
    return paths;
}

/// The instances of exactly this class.
std::vector<InstancePtr> ownInstances(const Repository& repository, const std::string& nameSpace,
                                      const std::string& className) {
    const Class& cls = repository.requireClass(nameSpace, className);
    std::vector<InstancePtr> all = repository.instances(nameSpace, className);
    all.erase(std::remove_if(all.begin(), all.end(),
                             [&](const InstancePtr& each) { return &each->cls() != &cls; }),
              all.end());
    return all;
}

/// Makes copies of one class's instances that differ in what must be unique.
class Copier {
public:
    Copier(Repository& repository, const Class& cls, const Scale& scale)
        : repository_(repository), key_(ownKey(cls)) {
        for (const std::string& name : scale.numbered) {
            const auto index = cls.propertyIndex(name);
            if (!index) {
                throw CimError(CimStatus::noSuchProperty, cls.name + "." + name);
            }
            highest_[*index] = 0;
        }
    }

    void note(const Instance& instance) {
        for (auto& [index, highest] : highest_) {
            highest = std::max(highest, instance.at(index).toUnsigned());
        }
    }

    void copy(const Instance& original, std::uint64_t number) {
        Instance copy = original;
        for (auto& [index, highest] : highest_) {
            copy.setAt(index, ++highest);
        }
        rename(copy, key_, number);
        const ObjectPath from = original.path();
        const ObjectPath to = repository_.add(std::move(copy));
        for (const Link& link : repository_.links(from)) {
            copyLink(link, to, number);
        }
    }

private:
    /// The last key that does not name a class or the system around the object.
    static std::size_t ownKey(const Class& cls) {
        const auto own = [&](std::size_t index) {
            const Property& key = cls.properties[index];
            return key.type != CimType::reference && !sameName(key.name, "CreationClassName") &&
                   !sameName(key.name.substr(0, 6), "System");
        };
        const auto found = std::find_if(cls.keys().rbegin(), cls.keys().rend(), own);
        if (found == cls.keys().rend()) {
            throw CimError(CimStatus::invalidClass, cls.name + " has no key to tell copies by");
        }
        return *found;
    }

    static void rename(Instance& copy, std::size_t key, std::uint64_t number) {
        const Value& value = copy.at(key);
        if (value.isString()) {
            copy.setAt(key, value.toString() + "-" + std::to_string(number));
        } else {
            copy.setAt(key, value.toUnsigned() + number);
        }
    }

    static bool isParentRole(const std::string& role) {
        static constexpr std::array<const char*, 4> roles = {"GroupComponent", "Antecedent",
                                                             "Collection", "OwningElement"};
        return std::any_of(roles.begin(), roles.end(),
                           [&](const char* parent) { return sameName(parent, role); });
    }

    void copyLink(const Link& link, const ObjectPath& to, std::uint64_t number) {
        const Class& cls = link.association->cls();
        if (isParentRole(cls.properties[link.role].name)) {
            return;
        }
        Instance copy = *link.association;
        copy.setAt(link.role, to);
        for (const std::size_t key : cls.keys()) {
            if (cls.properties[key].type != CimType::reference) {
                rename(copy, key, number);
            }
        }
        repository_.add(std::move(copy));
    }

    Repository& repository_;
    std::size_t key_;
    std::unordered_map<std::size_t, std::uint64_t> highest_;
};

} // namespace

std::string listModel(const Repository& repository, const std::string& nameSpace,
                      const std::string& className) {
    std::vector<std::string> names{className};
    if (className.empty()) {
        names.clear();
        for (const Class* cls : repository.subclasses(nameSpace, "", false)) {
            names.push_back(cls->name);
        }
    }
    std::string text;
    for (const std::string& name : names) {
        for (const InstancePtr& instance : repository.instances(nameSpace, name)) {
            text += instance->path().toText() + "\n";
        }
    }
    return text;
}

void addToModel(Repository& repository, const std::string& nameSpace, std::string_view mof) {
    MofLoader loader(repository, nameSpace);
    loader.addText(mof, "text");
    loader.load();
}

void removeFromModel(Repository& repository, const std::string& nameSpace, std::string_view paths) {
    for (const ObjectPath& path : readPaths(paths, nameSpace)) {
        if (!repository.remove(path)) {
            throw CimError(CimStatus::notFound, path.localText());
        }
    }
}

void reorderModel(Repository& repository, const std::string& nameSpace,
                  const std::string& className, std::string_view how) {
    std::string_view rest = how;
    const std::string_view word = takeLine(rest);
    if (word != "reverse" && word != "rotate") {
        repository.reorder(nameSpace, className, readPaths(how, nameSpace));
        return;
    }
    std::vector<ObjectPath> order;
    for (const InstancePtr& instance : ownInstances(repository, nameSpace, className)) {
        order.push_back(instance->path());
    }
    if (word == "reverse") {
        std::reverse(order.begin(), order.end());
    } else if (!order.empty()) {
        std::rotate(order.begin(), order.begin() + 1, order.end());
    }
    repository.reorder(nameSpace, className, order);
}

Scale readScale(std::string_view text) {
    const auto equals = text.find('=');
    if (equals == std::string_view::npos || equals == 0) {
        throw std::invalid_argument("CLASS=N is needed");
    }
    Scale scale;
    scale.className = text.substr(0, equals);
    std::string_view rest = text.substr(equals + 1);
    const auto colon = std::min(rest.find(':'), rest.size());
    scale.count = parseNumber(rest.substr(0, colon), scale.className);
    rest.remove_prefix(std::min(colon + 1, rest.size()));
    while (!rest.empty()) {
        const auto comma = std::min(rest.find(','), rest.size());
        scale.numbered.emplace_back(rest.substr(0, comma));
        rest.remove_prefix(std::min(comma + 1, rest.size()));
    }
    return scale;
}

void scaleModel(Repository& repository, const std::string& nameSpace, const Scale& scale) {
    const Class& cls = repository.requireClass(nameSpace, scale.className);
    const std::vector<InstancePtr> originals = ownInstances(repository, nameSpace, cls.name);
    if (originals.empty()) {
        throw CimError(CimStatus::notFound, "no instance of " + cls.name + " to copy");
    }
    Copier copier(repository, cls, scale);
    for (const InstancePtr& original : originals) {
        copier.note(*original);
    }
    for (std::uint64_t number = originals.size(); number < scale.count; ++number) {
        copier.copy(*originals[number % originals.size()], number);
    }
}

} // namespace velclp_sim
