// The assignments of one line of the verb set, each routed by the schema's option map: a name that
// stands for a pseudo, a special or a CIM method runs at once; plain properties are gathered and
// written by one call at the end.
#ifndef VELCLP_VERBS_ASSIGNMENTS_H
#define VELCLP_VERBS_ASSIGNMENTS_H

#include "velclp/mapping.h"
#include "velclp/showrecords.h"

#include <memory>
#include <string>
#include <vector>

namespace velmora_clp {

class CLPAddrSVC;

class Assignments {
public:
    // Everything is borrowed: the object that is written, its class, and its class tag.
    Assignments(CLPAddrSVC& addresses, CLPMapping& mapping, CMPIObjectPath* object,
                CMPIConstClass* definition, const std::string& ufct);
    ~Assignments();

    // Takes the next assignment. False when it failed: the name is no property, the value is none
    // for it, or its method failed. Nothing may follow then.
    bool add(const std::string& name, const std::string& value);
    // What failed, the caller's.
    JobError* takeError();

    // Writes the plain properties, if there are any. The error is the caller's; null is success.
    JobError* write();

private:
    struct Route {
        std::string cimclass;
        std::string type;
        std::string method;
    };
    Route routeOf(const std::string& name) const;
    bool runMethod(const Route& route, const std::string& name, const std::string& value);
    bool addTyped(const Route& route, const std::string& name, const std::string& value);
    bool succeeded(JobError* error);

    CLPAddrSVC& m_addresses;
    CLPMapping& m_mapping;
    CMPIObjectPath* m_object;
    CMPIConstClass* m_class;
    std::string m_ufct;
    CLPMapping::PropertyMap m_plain; // borrowed from the values
    std::vector<OwnedPropValue> m_values;
    std::unique_ptr<JobError> m_error;
};

} // namespace velmora_clp

#endif
