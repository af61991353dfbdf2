// What the operations of CLPMapping share. Internal to the mapping.
#ifndef VELCLP_MAPPING_OPERATION_H
#define VELCLP_MAPPING_OPERATION_H

#include "velclp/cimhandle.h"
#include "velclp/joberror.h"

#include <string>

namespace velmora_clp {

JobError* newJobError(int error, int cimStatus, int severity);

// Logs an error, if there is one, and gives it back.
JobError* logFailure(const char* function, JobError* error);

// The class of a tag's objects.
std::string classOfTag(const std::string& ufct);

// The objects at the other end of an association; null when that failed and when there are none.
CimEnumeration associators(CMCIClient* cc, CMPIObjectPath* path, const char* association,
                           const char* resultClass);

// The first of some object paths, null for null; an entry that is none ends the process with the
// text.
CimPath first(const CimEnumeration& objects,
              const char* assertion = "data.type==((16+1)<<8)&&data.value.ref");

// A copy of a reference, in the namespace of the path that holds it where it names none.
CimPath inNamespaceOf(CMPIObjectPath* reference, CMPIObjectPath* holder);

// Values for arguments; text and object stay the caller's.
inline CMPIData uint16Data(int number) {
    CMPIData data = {};
    data.type = CMPI_uint16;
    data.value.uint16 = static_cast<CMPIUint16>(number);
    return data;
}

inline CMPIData trueData() {
    CMPIData data = {};
    data.type = CMPI_boolean;
    data.value.boolean = 1;
    return data;
}

inline CMPIData stringData(CMPIString* text) {
    CMPIData data = {};
    data.type = CMPI_string;
    data.value.string = text;
    return data;
}

inline CMPIData refData(CMPIObjectPath* path) {
    CMPIData data = {};
    data.type = CMPI_ref;
    data.value.ref = path;
    return data;
}

} // namespace velmora_clp

#endif
