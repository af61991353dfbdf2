// Tells whether an association joins two objects, from its references looked at one by one.
#ifndef VELCLP_OUTPUT_JOINS_H
#define VELCLP_OUTPUT_JOINS_H

#include <CimClientLib/cmci.h>

namespace velmora_clp {

class Joins {
public:
    // Both are borrowed and must not be null.
    Joins(CMPIObjectPath* object, CMPIObjectPath* reference)
        : m_object(object), m_reference(reference) {}

    // Looks at one key or property; what is no reference is passed over. A reference counts in the
    // namespace of the object with which it is compared.
    void look(const CMPIData& data);
    bool both() const { return m_foundObject && m_foundReference; }

private:
    CMPIObjectPath* m_object;
    CMPIObjectPath* m_reference;
    bool m_foundObject = false;
    bool m_foundReference = false;
};

} // namespace velmora_clp

#endif
