#include "output/propvalue.h"

#include "velclp/cimhandle.h"
#include "velclp/coutputer.h"

#include <cstring>

namespace velmora_clp {

namespace {

// Clones the object that the member holds, where it holds one.
template<typename T>
void cloneMember(T*& member) {
    member = cimClone(member).release();
}

template<typename T>
void releaseMember(T* member) {
    if (member)
        member->ft->release(member);
}

void cloneContent(CMPIData& data) {
    if (data.type & CMPI_ARRAY)
        return cloneMember(data.value.array);
    switch (data.type & 0xff00) {
    case CMPI_instance:
        return cloneMember(data.value.inst);
    case CMPI_ref:
        return cloneMember(data.value.ref);
    case CMPI_args:
        return cloneMember(data.value.args);
    case CMPI_class:
        return cloneMember(data.value.cls);
    case CMPI_enumeration:
        return cloneMember(data.value.Enum);
    case CMPI_string:
    case CMPI_dateTimeString & 0xff00:
        return cloneMember(data.value.string);
    case CMPI_dateTime:
        return cloneMember(data.value.dateTime);
    case CMPI_chars:
        data.value.chars = data.value.chars ? ::strdup(data.value.chars) : nullptr;
        return;
    default:
        return;
    }
}

void releaseContent(const CMPIData& data) {
    if (data.type & CMPI_ARRAY)
        return releaseMember(data.value.array);
    switch (data.type & 0xff00) {
    case CMPI_instance:
        return releaseMember(data.value.inst);
    case CMPI_ref:
        return releaseMember(data.value.ref);
    case CMPI_args:
        return releaseMember(data.value.args);
    case CMPI_class:
        return releaseMember(data.value.cls);
    case CMPI_enumeration:
        return releaseMember(data.value.Enum);
    case CMPI_string:
    case CMPI_dateTimeString & 0xff00:
        return releaseMember(data.value.string);
    case CMPI_dateTime:
        return releaseMember(data.value.dateTime);
    case CMPI_chars:
        return std::free(data.value.chars);
    default:
        return;
    }
}

CMPIArray* qualifierArray(CMPIConstClass* cimclass, const std::string& name,
                          const char* qualifier) {
    CimStatus status;
    const CMPIData data =
        cimclass->ft->getPropertyQualifier(cimclass, name.c_str(), qualifier, status.out());
    if (!status.ok() || !(data.type & CMPI_ARRAY) || isNullValue(data))
        return nullptr;
    return cimClone(data.value.array).release();
}

CMPIData elementOf(CMPIArray* array, CMPICount index) {
    CimStatus status;
    CMPIData element = array->ft->getElementAt(array, index, status.out());
    if (!status.ok())
        element.state = CMPI_badValue;
    return element;
}

// Most maps hold strings, which need no copy to be compared.
bool isText(const CMPIData& element, const std::string& text) {
    if (isNullValue(element))
        return false;
    if (element.type != CMPI_string)
        return cimValueText(element.type, element.value) == text;
    const CMPIString* string = element.value.string;
    return string && string->hdl && text == static_cast<const char*>(string->hdl);
}

CMPICount sizeOf(CMPIArray* array) {
    CimStatus status;
    const CMPICount size = array->ft->getSize(array, status.out());
    return status.ok() ? size : 0;
}

// The element of values at the place where valuemap holds the text.
std::optional<std::string> mappedName(const std::string& text, CMPIArray* values,
                                      CMPIArray* valuemap) {
    const CMPICount size = sizeOf(valuemap);
    for (CMPICount i = 0; i < size; ++i) {
        if (!isText(elementOf(valuemap, i), text))
            continue;
        const CMPIData name = elementOf(values, i);
        if (isNullValue(name))
            return std::nullopt;
        return cimValueText(name.type, name.value);
    }
    return std::nullopt;
}

char* heapText(const std::string& text) {
    return ::strdup(text.c_str());
}

} // namespace

bool isNullValue(const CMPIData& data) {
    return (data.state & (CMPI_nullValue | CMPI_notFound | CMPI_badValue)) != 0;
}

OwnedPropValue copyValue(const CMPIData& data) {
    OwnedPropValue copy(new PropValue);
    copy->data = new CMPIData(data);
    if (isNullValue(data))
        std::memset(&copy->data->value, 0, sizeof copy->data->value);
    else
        cloneContent(*copy->data);
    return copy;
}

OwnedPropValue copyValue(const CMPIData& data, CMPIConstClass* cimclass, const std::string& name) {
    OwnedPropValue copy = copyValue(data);
    if (cimclass)
        copy->values = qualifierArray(cimclass, name, "Values");
    if (copy->values)
        copy->valuemap = qualifierArray(cimclass, name, "ValueMap");
    return copy;
}

void freePropValue(PropValue* value) {
    if (!value)
        return;
    if (value->data && !isNullValue(*value->data))
        releaseContent(*value->data);
    delete value->data;
    releaseMember(value->values);
    releaseMember(value->valuemap);
    delete value;
}

std::string harmless(std::string text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const unsigned char byte = static_cast<unsigned char>(text[i]);
        const unsigned char next =
            i + 1 < text.size() ? static_cast<unsigned char>(text[i + 1]) : '\0';
        if (byte == 0xc2 && next >= 0x80 && next < 0xa0) {
            text.replace(i, 2, "?");
        } else if (byte == '\r') {
            if (next != '\n')
                text[i] = '?';
        } else if ((byte < 0x20 && byte != '\t' && byte != '\n') || byte == 0x7f) {
            text[i] = '?';
        }
    }
    return text;
}

ShownText shownText(const CMPIData& data, CMPIArray* values, CMPIArray* valuemap) {
    if (isNullValue(data))
        return {"NULL", std::nullopt};
    const std::string text =
        cimValueText(static_cast<CMPIType>(data.type & ~CMPI_ARRAY), data.value);
    std::optional<std::string> name;
    if (values && valuemap)
        name = mappedName(text, values, valuemap);
    if (name)
        name = harmless(*name);
    return {harmless(text), name};
}

bool isArray(const PropValue& value) {
    return value.data && (value.data->type & CMPI_ARRAY);
}

bool isNullArray(const PropValue& value) {
    return isArray(value) && (isNullValue(*value.data) || !value.data->value.array);
}

std::vector<ShownText> shownElements(const PropValue& value) {
    std::vector<ShownText> elements;
    if (!isArray(value) || isNullArray(value))
        return elements;
    CMPIArray* array = value.data->value.array;
    const CMPICount size = sizeOf(array);
    elements.reserve(size);
    for (CMPICount i = 0; i < size; ++i)
        elements.push_back(shownText(elementOf(array, i), value.values, value.valuemap));
    return elements;
}

void COutputer::SET_VALUE_VALUEMAP_STR(CMPIData* data, CMPIArray* values, CMPIArray* valuemap,
                                       char** value, char** value_string) {
    const CMPIData null = {CMPI_null, CMPI_nullValue, {}};
    const ShownText text = shownText(data ? *data : null, values, valuemap);
    *value = heapText(text.value);
    *value_string = text.name ? heapText(*text.name) : nullptr;
}

} // namespace velmora_clp
