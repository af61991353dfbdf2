#include "mapping/cimvalue.h"

namespace velmora_clp {

CMPIArray* arrayOf(const CMPIData& data) {
    return isArray(data.type) && hasValue(data) ? data.value.array : nullptr;
}

unsigned int arraySize(CMPIArray* array) {
    CimStatus status;
    return array ? array->ft->getSize(array, status.out()) : 0;
}

bool hasElements(const CMPIData& data) {
    return arraySize(arrayOf(data)) > 0;
}

std::string dataText(const CMPIData& data) {
    return hasValue(data) ? cimValueText(data.type, data.value) : "NULL";
}

std::string elementText(CMPIArray* array, unsigned int index) {
    CimStatus status;
    return dataText(array->ft->getElementAt(array, index, status.out()));
}

namespace {

const CMPIValue* setterValue(const CMPIData& data) {
    if (data.type != CMPI_chars)
        return &data.value;
    return data.value.string ? static_cast<const CMPIValue*>(data.value.string->hdl) : nullptr;
}

} // namespace

void setProperty(CMPIInstance* instance, const std::string& name, const CMPIData& data) {
    instance->ft->setProperty(instance, name.c_str(), const_cast<CMPIValue*>(setterValue(data)),
                              data.type);
}

void addArg(CMPIArgs* args, const std::string& name, const CMPIData& data) {
    args->ft->addArg(args, name.c_str(), const_cast<CMPIValue*>(setterValue(data)), data.type);
}

void setInteger(CMPIValue& value, CMPIType type, CMPIUint64 bits) {
    switch (type) {
    case CMPI_uint8:
        value.uint8 = static_cast<CMPIUint8>(bits);
        break;
    case CMPI_uint16:
        value.uint16 = static_cast<CMPIUint16>(bits);
        break;
    case CMPI_uint32:
        // The member is wider than the type.
        value.uint32 = static_cast<CMPIUint32>(bits & 0xffffffffU);
        break;
    case CMPI_uint64:
        value.uint64 = bits;
        break;
    case CMPI_sint8:
        value.sint8 = static_cast<CMPISint8>(bits);
        break;
    case CMPI_sint16:
        value.sint16 = static_cast<CMPISint16>(bits);
        break;
    case CMPI_sint32:
        value.sint32 = static_cast<int>(static_cast<unsigned int>(bits));
        break;
    case CMPI_sint64:
        value.sint64 = static_cast<CMPISint64>(bits);
        break;
    default:
        break;
    }
}

} // namespace velmora_clp
