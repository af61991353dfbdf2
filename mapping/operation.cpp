#include "mapping/operation.h"

#include "mapping/cimvalue.h"
#include "velclp/assertion.h"
#include "velclp/log.h"
#include "velclp/schema.h"

#include <memory>

namespace velmora_clp {

JobError* newJobError(int error, int cimStatus, int severity) {
    auto jobError = std::make_unique<JobError>();
    jobError->setCode(static_cast<JobError::error>(error), static_cast<JobError::stat>(cimStatus),
                      static_cast<JobError::severity>(severity));
    return jobError.release();
}

JobError* logFailure(const char* function, JobError* error) {
    if (error)
        VELCLP_LOG_FAILURE(function, "failed status=[%s]", error->getErrorTag());
    return error;
}

std::string classOfTag(const std::string& ufct) {
    const CLPSchema& schema = *CLPSchema::getInstance();
    const std::string& own = schema.getCIMClass_Ufct(ufct);
    return own.empty() ? schema.getCIMClass(ufct) : own;
}

CimEnumeration associators(CMCIClient* cc, CMPIObjectPath* path, const char* association,
                           const char* resultClass) {
    CimStatus status;
    CimEnumeration objects(cc->ft->associatorNames(cc, path, association, resultClass, nullptr,
                                                   nullptr, status.out()));
    const bool some =
        status.ok() && objects && objects->ft->hasNext(objects.get(), CimStatus().out()) != 0;
    return some ? std::move(objects) : nullptr;
}

CimPath first(const CimEnumeration& objects, const char* assertion) {
    if (!objects)
        return nullptr;
    CimStatus status;
    const CMPIData data = objects->ft->getNext(objects.get(), status.out());
    VELCLP_ASSERT(isReference(data), assertion);
    return cimClone(data.value.ref);
}

CimPath inNamespaceOf(CMPIObjectPath* reference, CMPIObjectPath* holder) {
    CimPath copy = cimClone(reference);
    if (cimNameSpace(copy.get()).empty())
        copy->ft->setNameSpace(copy.get(), cimNameSpace(holder).c_str());
    return copy;
}

} // namespace velmora_clp
