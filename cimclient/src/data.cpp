#include "data.h"

#include "objects.h"

#include <utility>

namespace cimclient {

namespace {

template<typename Object>
void releaseObject(Object* object) {
    if (object)
        object->ft->release(object);
}

template<typename Object>
Object* cloneObject(Object* object) {
    CMPIStatus rc{};
    return object ? object->ft->clone(object, &rc) : nullptr;
}

// Calls `action` with the pointer member that belongs to the type; false for types without one.
template<typename Value, typename Action>
bool withObject(CMPIType type, Value& value, Action action) {
    if (type & CMPI_ARRAY)
        return action(value.array), true;
    switch (type) {
    case CMPI_instance:
        return action(value.inst), true;
    case CMPI_ref:
        return action(value.ref), true;
    case CMPI_args:
        return action(value.args), true;
    case CMPI_class:
        return action(value.cls), true;
    case CMPI_enumeration:
        return action(value.Enum), true;
    case CMPI_string:
    case CMPI_numericString:
    case CMPI_booleanString:
    case CMPI_dateTimeString:
        return action(value.string), true;
    case CMPI_dateTime:
        return action(value.dateTime), true;
    default:
        return false;
    }
}

} // namespace

bool isObjectType(CMPIType type) {
    const CMPIValue value{};
    return withObject(type, value, [](auto*) {});
}

Data::Data(CMPIType type, CMPIValue value, CMPIValueState state) : m_data{type, state, value} {}

Data::Data(Data&& other) noexcept : m_data(other.release()) {}

Data& Data::operator=(Data&& other) noexcept {
    if (this != &other) {
        Data old(std::move(*this));
        m_data = other.release();
    }
    return *this;
}

Data::~Data() {
    withObject(m_data.type, m_data.value, [](auto* object) { releaseObject(object); });
}

namespace {

template<typename Object>
Data owner(CMPIType type, Object* CMPIValue::*member, Object* object) {
    CMPIValue value{};
    value.*member = object;
    return {type, value};
}

} // namespace

Data Data::ofString(CMPIString* string) {
    return owner(CMPI_string, &CMPIValue::string, string);
}

Data Data::ofText(const char* text) {
    return ofString(newString(text));
}

Data Data::ofReference(CMPIObjectPath* path) {
    return owner(CMPI_ref, &CMPIValue::ref, path);
}

Data Data::ofInstance(CMPIInstance* instance) {
    return owner(CMPI_instance, &CMPIValue::inst, instance);
}

Data Data::ofDateTime(CMPIDateTime* dateTime) {
    return owner(CMPI_dateTime, &CMPIValue::dateTime, dateTime);
}

Data Data::ofClass(CMPIConstClass* cls) {
    return owner(CMPI_class, &CMPIValue::cls, cls);
}

Data Data::ofArray(CMPIArray* array) {
    const CMPIType element = array->ft->getSimpleType(array, nullptr);
    return owner(static_cast<CMPIType>(CMPI_ARRAY | element), &CMPIValue::array, array);
}

CMPIrc Data::fromCaller(const CMPIValue* value, CMPIType type, Data& result) {
    if (type == CMPI_null)
        result = Data();
    else if (type == CMPI_chars)
        result = ofText(reinterpret_cast<const char*>(value));
    else if (value)
        result = copyOf({type, CMPI_goodValue, *value});
    else if (isObjectType(type))
        return CMPI_RC_ERR_INVALID_PARAMETER;
    else
        result = Data(type, CMPIValue{});
    return CMPI_RC_OK;
}

Data Data::copyOf(const CMPIData& data) {
    Data copy(data.type, data.value, data.state);
    // Should there be no memory for it, the object stays its owner's alone.
    withObject(copy.m_data.type, copy.m_data.value,
               [](auto*& object) { object = cloneObject(std::exchange(object, nullptr)); });
    // The array knows best what its elements are; an empty result of a server is of no type.
    if ((data.type & CMPI_ARRAY) && copy.m_data.value.array) {
        CMPIArray* array = copy.m_data.value.array;
        if (const CMPIType element = array->ft->getSimpleType(array, nullptr))
            copy.m_data.type = static_cast<CMPIType>(CMPI_ARRAY | element);
    }
    return copy;
}

bool Data::isNull() const {
    if (m_data.state & CMPI_nullValue)
        return true;
    bool missing = false;
    withObject(m_data.type, m_data.value, [&](auto* object) { missing = object == nullptr; });
    return missing;
}

CMPIData Data::release() {
    CMPIData none{};
    none.state = CMPI_nullValue;
    return std::exchange(m_data, none);
}

} // namespace cimclient
