#include "objects.h"
#include "status.h"

#include <utility>

namespace cimclient {

namespace {

CMPIArray* clone(CMPIArray* array, CMPIStatus* rc) {
    if (!array)
        return noObject(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    auto copy = std::make_unique<Array>(*Array::from(array));
    copy->grows = copy->grows && copy->elements.empty();
    setOk(rc);
    return copy.release();
}

CMPICount getSize(CMPIArray* array, CMPIStatus* rc) {
    setStatus(rc, array ? CMPI_RC_OK : CMPI_RC_ERR_INVALID_PARAMETER);
    return array ? static_cast<CMPICount>(Array::from(array)->elements.size()) : 0;
}

CMPIType getSimpleType(CMPIArray* array, CMPIStatus* rc) {
    setStatus(rc, array ? CMPI_RC_OK : CMPI_RC_ERR_INVALID_PARAMETER);
    return array ? Array::from(array)->elementType : CMPI_null;
}

CMPIData getElementAt(CMPIArray* array, CMPICount index, CMPIStatus* rc) {
    if (!array)
        return noData(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    setOk(rc);
    const Array& self = *Array::from(array);
    if (index < self.elements.size())
        return self.elements[index].get();
    CMPIData outside{};
    outside.type = self.elementType;
    outside.state = CMPI_badValue;
    return outside;
}

// The new element, or nothing when the value is not of the array's type.
std::optional<Data> element(const Array& array, const CMPIValue* value, CMPIType type) {
    if (type == CMPI_null)
        return Data(array.elementType);
    if (type == CMPI_chars && array.elementType == CMPI_string)
        return value && value->chars ? Data::ofText(value->chars) : Data(CMPI_string);
    if (type != array.elementType)
        return std::nullopt;
    return value ? Data::copyOf({type, CMPI_goodValue, *value}) : Data(type);
}

CMPIStatus setElementAt(CMPIArray* array, CMPICount index, CMPIValue* value, CMPIType type) {
    if (!array)
        return status(CMPI_RC_ERR_INVALID_PARAMETER);
    Array& self = *Array::from(array);
    const std::size_t size = self.elements.size();
    if (index > size || (index == size && !self.grows))
        return status(CMPI_RC_ERR_FAILED);
    if (!value && isObjectType(type))
        return status(CMPI_RC_ERR_INVALID_PARAMETER);
    auto made = element(self, value, type);
    if (!made)
        return status(CMPI_RC_ERR_FAILED);
    if (index == size)
        self.elements.push_back(std::move(*made));
    else
        self.elements[index] = std::move(*made);
    return status(CMPI_RC_OK);
}

CMPIArrayFT table = {NATIVE_FT_VERSION, releaseSlot<Array>, clone,       getSize,
                     getSimpleType,     getElementAt,       setElementAt};

CMPIType withoutArrayBit(CMPIType type) {
    const auto element = static_cast<CMPIType>(type & ~CMPI_ARRAY);
    return element == CMPI_chars ? CMPI_string : element;
}

} // namespace

Array::Array(CMPIType type, std::size_t size)
    : CMPIArray{const_cast<char*>("CMPIArray"), &table}, elementType(withoutArrayBit(type)) {
    elements.reserve(size);
    for (std::size_t i = 0; i < size; ++i)
        elements.emplace_back(elementType);
}

} // namespace cimclient

CIMCLIENT_EXPORT CMPIArray* native_new_CMPIArray(CMPICount size, CMPIType type, CMPIStatus* rc) {
    cimclient::setOk(rc);
    auto* array = new cimclient::Array(type, size);
    array->grows = size == 0;
    return array;
}
