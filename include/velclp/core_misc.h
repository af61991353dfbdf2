// Reads and writes CIM properties in terms of text: what an operator types on one side, typed CMPI
// values on the other, the qualifiers Values and ValueMap of the class in between. All operations
// are static and hold no state; any thread may call them over a client of its own.
#ifndef VELCLP_CORE_MISC_H
#define VELCLP_CORE_MISC_H

#include <CimClientLib/cmci.h>

#include <map>
#include <string>
#include <vector>

// Non-zero when two object paths name the same object: namespace and class without regard to case,
// and the same keys, whose values count with type, state and case. The host plays no part.
int clp_sameCMPIObjectPath(CMPIObjectPath* a, CMPIObjectPath* b);

namespace velmora_clp {

class CLPMisc {
public:
    // The class with its qualifiers; the caller releases it. Null on failure.
    static CMPIConstClass* getClass(CMCIClient* cc, const std::string& ns,
                                    const std::string& cimclass);

    // The array that a property's qualifier holds, a clone that the caller releases; null without
    // that qualifier.
    static CMPIArray* getPropertyQualify(CMPIConstClass* _class, const std::string& prop,
                                         const std::string& qual);

    // A date-time property of an object that exists, a clone that the caller releases. Null when
    // the property is null. What cannot be read, or is no date-time, ends the process.
    static CMPIDateTime* getProperty_DataTime(CMCIClient* cc, CMPIObjectPath* op,
                                              const std::string& name);

    // The CMPI type of a property that the class has, array flag included; one that it has not
    // ends the process.
    static CMPIType getPropertyType(CMPIConstClass* _class, const std::string& name);

    // A property of an object that exists, as text; what cannot be read ends the process. "NULL"
    // for a null value, "" for an array.
    static std::string getProperty(CMCIClient* cc, CMPIObjectPath* op, const std::string& name);

    // Whether a value is the given text, or the one that values gives for it at its place in
    // valuesmap; both arrays may be null. Of an array the first element counts. Exact.
    static bool equalPropertyValue(const CMPIData& data, const std::string& value,
                                   CMPIArray* values, CMPIArray* valuesmap);

    // Whether a string property of the instance holds exactly this text. A property that the
    // instance has not ends the process.
    static bool checkSelectProperty(CMPIInstance* instance, const std::string& prop,
                                    const std::string& value);

    // Whether the class has the property, whose name is in lower case.
    static bool checkProperty(CMPIConstClass* cl, const std::string& name);

    // Sets ret to the element of to at the place where from holds value; false, and ret as it
    // was, when there is none. Either array may be null.
    static bool MapValue(const std::string& value, std::string& ret, CMPIArray* from,
                         CMPIArray* to);

    // Turns text into a value of the given type, which is no array type; text in values stands
    // for the one at its place in valuesmap. Integers are cut to the width of the type, text that
    // is no number gives 0. False when the text is no value of the type. Strings and date-times
    // in out are the caller's to release. References and char16 end the process.
    static bool normalValue(const std::string& value, CMPIValue& out, const CMPIType& type,
                            CMPIArray* values, CMPIArray* valuesmap);

    // Writes properties of an object by one setInstance call; gives what that gives.
    static CMPIrc writeProperties(CMCIClient* cc, CMPIObjectPath* op,
                                  const std::map<std::string, CMPIData*>& props);
    // The same for an object that may be written: a failure ends the process. Gives CMPI_RC_OK.
    static CMPIrc setProperty(CMCIClient* cc, CMPIObjectPath* op,
                              const std::map<std::string, CMPIData*>& props);

    // Whether the name is, in any case, a pseudo property of the class tag.
    static bool checkPseudoProperty(const std::string& ufct, const std::string& name);

    // Turns text into a property value by the type and the qualifiers that the class has for it.
    // Arrays are written as items separated by ":", each a value and, behind ",", an index where
    // the item's place is not meant. False when the text is no value of the property; data then
    // holds nothing to release. Otherwise the string, date-time or array in it is the caller's.
    static bool normalProperty(CMPIConstClass* _class, const std::string& name,
                               const std::string& value, CMPIData* data);

    // Whether an object has all the properties of a list and the values of a filter; pseudo
    // properties of the class tag count.
    static bool checkFilter(CMCIClient* cc, CMPIObjectPath* op, const std::string& ufct,
                            const std::vector<std::string>& props,
                            const std::map<std::string, std::string>& filters);

    // The names of the properties of the object's class, in the class's order; empty on failure.
    static std::vector<std::string> getPropertyNames(CMCIClient* cc, CMPIObjectPath* op);
};

} // namespace velmora_clp

#endif
