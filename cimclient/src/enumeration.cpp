#include "freememory.h"
#include "objects.h"
#include "status.h"

#include <utility>

namespace cimclient {

namespace {

constexpr std::size_t manyElements = 4096;

struct Enumeration : CMPIEnumeration {
    explicit Enumeration(CMPIArray* elements);
    static Enumeration* from(CMPIEnumeration* en) { return static_cast<Enumeration*>(en); }

    Owned<CMPIArray> array;
    CMPICount position = 0;
};

CMPIStatus release(CMPIEnumeration* enumeration) {
    if (!enumeration)
        return status(CMPI_RC_ERR_FAILED);
    const bool isLarge =
        Array::from(Enumeration::from(enumeration)->array.get())->elements.size() > manyElements;
    delete Enumeration::from(enumeration);
    if (isLarge)
        returnFreeMemory();
    return status(CMPI_RC_OK);
}

CMPIEnumeration* clone(CMPIEnumeration* enumeration, CMPIStatus* rc) {
    if (!enumeration)
        return noObject(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    CMPIArray* array = Enumeration::from(enumeration)->array.get();
    return new Enumeration(array->ft->clone(array, rc));
}

CMPIData getNext(CMPIEnumeration* enumeration, CMPIStatus* rc) {
    if (!enumeration)
        return noData(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    Enumeration& self = *Enumeration::from(enumeration);
    const CMPIData data = self.array->ft->getElementAt(self.array.get(), self.position, rc);
    if (self.position < self.array->ft->getSize(self.array.get(), nullptr))
        ++self.position;
    return data;
}

CMPIBoolean hasNext(CMPIEnumeration* enumeration, CMPIStatus* rc) {
    setStatus(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    if (!enumeration)
        return 0;
    const Enumeration& self = *Enumeration::from(enumeration);
    return self.position < self.array->ft->getSize(self.array.get(), rc);
}

CMPIArray* toArray(CMPIEnumeration* enumeration, CMPIStatus* rc) {
    if (!enumeration)
        return noObject(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    setOk(rc);
    return Enumeration::from(enumeration)->array.get();
}

CMPIEnumerationFT table = {NATIVE_FT_VERSION, release, clone, getNext, hasNext, toArray};

Enumeration::Enumeration(CMPIArray* elements)
    : CMPIEnumeration{const_cast<char*>("CMPIEnumeration"), &table}, array(elements) {}

} // namespace

CMPIEnumeration* newEnumeration(CMPIType type, std::vector<Data> elements) {
    auto array = std::make_unique<Array>(elements.empty() ? CMPIType(CMPI_null) : type, 0);
    array->elements = std::move(elements);
    return new Enumeration(array.release());
}

} // namespace cimclient

CMPIEnumeration* native_new_CMPIEnumeration(CMPIArray* array, CMPIStatus* rc) {
    if (!array)
        return cimclient::noObject(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    cimclient::setOk(rc);
    return new cimclient::Enumeration(array);
}
