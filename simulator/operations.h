// The CIM operations of DSP0200, clause 5.3: each takes a request's parameters and writes the
// content of its reply, or throws CimError. No lock is held here; the repository and the providers
// look after themselves.
#pragma once

#include "simulator/cimxmlwriter.h"
#include "simulator/providerset.h"
#include "simulator/requestarguments.h"

#include <string>
#include <unordered_map>
#include <vector>

namespace velclp_sim {

class Operations {
public:
    Operations(Repository& repository, ProviderSet& providers, std::string hostName);

    /// The canonical name of an intrinsic operation that is known here; empty otherwise.
    static std::string knownOperation(std::string_view name);

    /// The class that a request is about, canonical; empty when it names none that exists.
    std::string subject(const Request& request) const;

    /// Runs the request; what it returns is the content of IRETURNVALUE, or of METHODRESPONSE for
    /// an extrinsic method.
    std::string run(const Request& request, const Caller& caller);

    /// The content of METHODRESPONSE for a method that shall return the number without being run;
    /// nothing of the object is looked at but its class. Throws as invoking does.
    std::string plantedResult(const Request& request, const std::string& returnValue) const;

private:
    struct Entry;
    static const std::unordered_map<std::string_view, Entry, NameHash, NameEqual>& table();

    /// Remembers, for each class met in one reply, which properties are to be shown.
    class Selection {
    public:
        /// `limit` is the class that LocalOnly and a shallow DeepInheritance look at; may be null.
        Selection(const RequestArguments& arguments, bool qualifiersByDefault,
                  const Class* limit = nullptr, bool localOnly = false, bool deep = true);
        const Shown& of(const Class& cls);

    private:
        bool selects(const Class& cls, const Property& property) const;

        std::optional<std::vector<std::string>> names_;
        const Class* limit_;
        bool localOnly_;
        bool deep_;
        bool qualifiers_;
        bool classOrigin_;
        std::unordered_map<const Class*, Shown> shown_;
    };

    // What an association operation asks for.
    struct Walk {
        ObjectPath object;
        std::string associationClass;
        std::string resultClass;
        std::string role;
        std::string resultRole;
    };

    // Classes.
    void getClass(const RequestArguments& in, const Caller& caller, std::string& out);
    void enumerateClassNames(const RequestArguments& in, const Caller& caller, std::string& out);
    void enumerateClasses(const RequestArguments& in, const Caller& caller, std::string& out);
    // Reading instances.
    void getInstance(const RequestArguments& in, const Caller& caller, std::string& out);
    void enumerateInstanceNames(const RequestArguments& in, const Caller& caller, std::string& out);
    void enumerateInstances(const RequestArguments& in, const Caller& caller, std::string& out);
    void getProperty(const RequestArguments& in, const Caller& caller, std::string& out);
    // Changes.
    void createInstance(const RequestArguments& in, const Caller& caller, std::string& out);
    void modifyInstance(const RequestArguments& in, const Caller& caller, std::string& out);
    void deleteInstance(const RequestArguments& in, const Caller& caller, std::string& out);
    void setProperty(const RequestArguments& in, const Caller& caller, std::string& out);
    // Associations.
    void associators(const RequestArguments& in, const Caller& caller, std::string& out);
    void associatorNames(const RequestArguments& in, const Caller& caller, std::string& out);
    void references(const RequestArguments& in, const Caller& caller, std::string& out);
    void referenceNames(const RequestArguments& in, const Caller& caller, std::string& out);
    // Queries.
    void execQuery(const RequestArguments& in, const Caller& caller, std::string& out);
    // Extrinsic methods.
    void invokeMethod(const Request& request, const Caller& caller, std::string& out);

    std::vector<const Class*> enumeratedClasses(const RequestArguments& in) const;
    InstancePtr demandInstance(const ObjectPath& path);
    void authorize(const Caller& caller, Change change, const Class& cls);
    void applyChanges(const Caller& caller, const ObjectPath& path,
                      const std::vector<PropertyChange>& changes);
    /// The path with its namespace, canonical when its class is known here.
    Value reference(ObjectPath path, const std::string& nameSpace) const;
    Value fullReferences(const Value& value, const std::string& nameSpace) const;
    Instance draft(const Class& cls, const RawInstance& raw) const;
    const Method& demandMethod(const Request& request) const;
    Arguments readMethodArguments(const Request& request, const Method& method) const;

    Walk walk(const RequestArguments& in, bool references) const;
    void checkClassFilter(const std::string& name) const;
    bool isSubclassOf(const ObjectPath& object, const std::string& className) const;
    std::vector<Link> walkLinks(const Walk& walk);
    std::vector<ObjectPath> walkEnds(const Walk& walk);
    std::vector<const Class*> classLinks(const Walk& walk) const;
    std::vector<const Class*> classEnds(const Walk& walk) const;
    void writePaths(const std::vector<ObjectPath>& paths, std::string& out) const;
    void writeObject(const Instance& instance, Selection& selection, std::string& out) const;
    void writeClasses(const std::vector<const Class*>& classes, Selection& selection,
                      std::string& out) const;

    Repository& repository_;
    ProviderSet& providers_;
    std::string hostName_;
};

} // namespace velclp_sim
