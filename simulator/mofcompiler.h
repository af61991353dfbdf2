// Gives meaning to what MofParser read: qualifier types and classes go into the repository as they
// come, instances at the end, so that an alias may be used before it is declared (DSP0004, 7.10).
#pragma once

#include "simulator/mof.h"
#include "simulator/repository.h"

#include <deque>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

namespace velclp_sim {

class MofCompiler {
public:
    explicit MofCompiler(Repository& repository) : repository_(repository) {}

    // Each throws MofError.
    void declare(const MofQualifierType& source, const std::string& nameSpace);
    void declare(const MofClass& source, const std::string& nameSpace);
    /// Keeps the instance for finish().
    void declare(const MofInstance& source, const std::string& nameSpace);

    /// Adds the instances in their order, all of them or none, and checks the classes that
    /// references are declared for. Throws MofError.
    void finish();

private:
    struct Draft {
        MofInstance source;
        const Class* cls = nullptr;
        std::optional<ObjectPath> path;
        bool visiting = false;
    };
    struct PendingReference {
        MofPlace place;
        std::string nameSpace;
        std::string className;
    };

    Qualifiers qualifiers(const std::vector<MofQualifier>& sources, const std::string& nameSpace,
                          const char* scope, Qualifiers inherited);
    Qualifier qualifier(const MofQualifier& source, const QualifierType& type);
    void addFeature(Class& cls, const MofFeature& source);
    void addProperty(Class& cls, const MofFeature& source);
    void addMethod(Class& cls, const MofFeature& source);
    void describe(TypedElement& element, const MofFeature& source, const std::string& nameSpace);
    Value convert(const MofValue& source, CimType type, bool isArray, const std::string& name);
    Value scalar(const MofValue& source, CimType type, const std::string& name);
    void assign(Instance& instance, const MofAssignment& assignment);
    const ObjectPath& pathOf(Draft& draft);
    const ObjectPath& aliasPath(const MofValue& source);

    Repository& repository_;
    std::deque<Draft> drafts_;
    std::unordered_map<std::string, Draft*, NameHash, NameEqual> aliases_;
    std::vector<PendingReference> references_;
};

/// The qualifier types of DSP0004, clause 5.6.3 and 5.6.4, that hold where a model declares none of
/// that name itself; null for other names.
const QualifierType* standardQualifierType(const std::string& name);

} // namespace velclp_sim
