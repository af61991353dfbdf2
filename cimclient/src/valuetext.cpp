#include "valuetext.h"

#include "objects.h"
#include "status.h"
#include "text.h"

#include <cmath>
#include <cstdio>
#include <cstring>
#include <new>

namespace cimclient {

namespace {

bool isText(CMPIType type) {
    return type == CMPI_string || type == CMPI_numericString || type == CMPI_booleanString ||
           type == CMPI_dateTimeString;
}

const char* textOf(CMPIType type, const CMPIValue& value) {
    if (type == CMPI_chars)
        return value.chars;
    if (type == CMPI_dateTime)
        return value.dateTime ? DateTime::from(value.dateTime)->text.c_str() : nullptr;
    return value.string ? static_cast<const char*>(value.string->hdl) : nullptr;
}

// False for a type that is no integer.
bool appendIfInteger(std::string& out, const CMPIData& data) {
    switch (data.type) {
    case CMPI_uint8:
        return appendInteger(out, unsigned{data.value.uint8}), true;
    case CMPI_uint16:
        return appendInteger(out, data.value.uint16), true;
    case CMPI_uint32:
        return appendInteger(out, data.value.uint32), true;
    case CMPI_uint64:
        return appendInteger(out, data.value.uint64), true;
    case CMPI_sint8:
        return appendInteger(out, int{data.value.sint8}), true;
    case CMPI_sint16:
        return appendInteger(out, data.value.sint16), true;
    case CMPI_sint32:
        return appendInteger(out, data.value.sint32), true;
    case CMPI_sint64:
        return appendInteger(out, data.value.sint64), true;
    default:
        return false;
    }
}

void appendShortReal(std::string& out, double value) {
    char buffer[40];
    const auto end =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 6).ptr;
    out.append(buffer, end);
}

template<typename Real>
void appendExactReal(std::string& out, Real value) {
    if (std::isnan(value)) {
        out += "NaN";
    } else if (std::isinf(value)) {
        out += value < 0 ? "-INF" : "INF";
    } else {
        char buffer[40];
        out.append(buffer, std::to_chars(buffer, buffer + sizeof buffer, value).ptr);
    }
}

void appendUtf8(std::string& out, CMPIChar16 c) {
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xc0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3f));
    } else {
        out += static_cast<char>(0xe0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3f));
        out += static_cast<char>(0x80 | (c & 0x3f));
    }
}

void appendBoolean(std::string& out, CMPIBoolean value) {
    out += value ? "true" : "false";
}

} // namespace

bool isNumber(CMPIType type) {
    return (type & (CMPI_UINT | CMPI_REAL)) != 0 && (type & ~0xff) == 0;
}

std::string valueText(const CMPIData& data) {
    std::string out;
    if (appendIfInteger(out, data))
        return out;
    if (isText(data.type) || data.type == CMPI_chars || data.type == CMPI_dateTime) {
        const char* text = textOf(data.type, data.value);
        out = text ? text : "NULL";
    } else if (data.type == CMPI_boolean) {
        appendBoolean(out, data.value.boolean);
    } else if (data.type == CMPI_real32) {
        appendShortReal(out, data.value.real32);
    } else if (data.type == CMPI_real64) {
        appendShortReal(out, data.value.real64);
    } else if (data.type == CMPI_ref) {
        out = data.value.ref ? ObjectPath::from(data.value.ref)->text() : "NULL";
    }
    return out;
}

void appendWireText(std::string& out, const CMPIData& data) {
    if (appendIfInteger(out, data))
        return;
    if (isText(data.type) || data.type == CMPI_dateTime) {
        if (const char* text = textOf(data.type, data.value))
            out += text;
    } else if (data.type == CMPI_boolean) {
        appendBoolean(out, data.value.boolean);
    } else if (data.type == CMPI_char16) {
        appendUtf8(out, data.value.char16);
    } else if (data.type == CMPI_real32) {
        appendExactReal(out, data.value.real32);
    } else if (data.type == CMPI_real64) {
        appendExactReal(out, data.value.real64);
    }
}

} // namespace cimclient

CIMCLIENT_EXPORT char* value2Chars(CMPIType type, CMPIValue* value) {
    if (type & CMPI_ARRAY)
        std::fputs("value2Chars: an array has no text\n", stderr);
    const CMPIValue none{};
    const std::string text = cimclient::valueText({type, CMPI_goodValue, value ? *value : none});
    auto* copy = static_cast<char*>(std::malloc(text.size() + 1));
    if (!copy)
        throw std::bad_alloc();
    std::memcpy(copy, text.c_str(), text.size() + 1);
    return copy;
}
