// What the schema knows of a class or an object that the CIM server names, asked without risk: the
// schema's own getters end the process for a class that the file does not have.
#ifndef VELCLP_OUTPUT_CLASSES_H
#define VELCLP_OUTPUT_CLASSES_H

#include <CimClientLib/cmci.h>

#include <string>

namespace velmora_clp {

class CLPAddrSVC;

// The name under which the schema knows a class: its own in lower case or, for a class of another
// prefix, the one with "cim" in place of the prefix. Empty when it knows neither. Throws
// std::out_of_range for an unknown class without a "_".
std::string schemaClassOf(const std::string& cimclass);

// The same, but an empty text in place of the exception.
std::string knownClassOf(const std::string& cimclass);

// The class tag of such a class that has no filter; empty for a class without tags.
std::string defaultTagOf(const std::string& schemaClass);

// The same, from the class that the server names.
std::string defaultTagOfClass(const std::string& cimclass);

// The address of an object in user form, or in internal form; empty when it has none, as for an
// object of a class that the schema does not know.
std::string addressOf(CLPAddrSVC& addresses, CMPIObjectPath* object, bool normal = true);

// An object whose address, in user form, need not be looked for any more. Borrowed; may be null.
struct Addressed {
    CMPIObjectPath* object;
    const std::string& address;
};

// The address that a reference property refers to, or an empty text.
std::string referredAddress(CLPAddrSVC& addresses, const CMPIData& reference,
                            const Addressed& known);

// Vendor classes and verbs are marked by these letters, in any case.
bool beginsWithOem(const std::string& name);
bool containsOem(const std::string& name);

} // namespace velmora_clp

#endif
