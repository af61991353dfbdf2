#include "output/joins.h"

#include "output/propvalue.h"
#include "velclp/cimhandle.h"
#include "velclp/core_misc.h"

namespace velmora_clp {

namespace {

bool isSame(const CimPath& end, CMPIObjectPath* object) {
    end->ft->setNameSpaceFromObjectPath(end.get(), object);
    return clp_sameCMPIObjectPath(end.get(), object) != 0;
}

} // namespace

void Joins::look(const CMPIData& data) {
    if (data.type != CMPI_ref || isNullValue(data))
        return;
    const CimPath end = cimClone(data.value.ref);
    if (!end)
        return;
    if (!m_foundObject && isSame(end, m_object))
        m_foundObject = true;
    else if (isSame(end, m_reference))
        m_foundReference = true;
}

} // namespace velmora_clp
