// The CIM namespace of the model and of each of its classes.
#ifndef VELCLP_SCHEMA_CIMNAMESPACE_H
#define VELCLP_SCHEMA_CIMNAMESPACE_H

#include "velclp/schema.h"

#include <string>

namespace velmora_clp {

const char* const DEFAULT_NAMESPACE = "root/zorm";

// The namespace of a class: the schema's, the default where the file leaves it empty.
inline std::string namespaceOf(const std::string& cimclass) {
    const std::string& ns = CLPSchema::getInstance()->getNS(cimclass);
    return ns.empty() ? DEFAULT_NAMESPACE : ns;
}

} // namespace velmora_clp

#endif
