#include "simulator/value.h"

#include "simulator/cimerror.h"
#include "simulator/names.h"
#include "simulator/objectpath.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>

namespace velclp_sim {

namespace {

constexpr std::array<const char*, 15> typeNames = {
    "boolean", "string", "char16", "datetime", "uint8",  "uint16", "uint32",   "uint64",
    "sint8",   "sint16", "sint32", "sint64",   "real32", "real64", "reference"};

[[noreturn]] void mismatch(std::string_view what, CimType type) {
    throw CimError(CimStatus::typeMismatch, std::string(what) + " is " + typeName(type));
}

/// The width of an integer type, whose enumerators stand in the order 8, 16, 32, 64.
unsigned bitsOf(CimType type) {
    const CimType narrowest = isUnsignedType(type) ? CimType::uint8 : CimType::sint8;
    return 8U << (static_cast<unsigned>(type) - static_cast<unsigned>(narrowest));
}

std::uint64_t unsignedLimit(CimType type) {
    return std::numeric_limits<std::uint64_t>::max() >> (64 - bitsOf(type));
}

std::int64_t signedLimit(CimType type) {
    return std::numeric_limits<std::int64_t>::max() >> (64 - bitsOf(type));
}

/// True for one character of the Basic Multilingual Plane in UTF-8.
bool isOneCharacter(const std::string& text) {
    if (text.empty()) {
        return false;
    }
    const auto lead = static_cast<unsigned char>(text[0]);
    const std::size_t length = lead < 0x80 ? 1 : (lead >> 5) == 6 ? 2 : (lead >> 4) == 14 ? 3 : 0;
    return text.size() == length;
}

Value coerceInteger(const Value& value, CimType type, std::string_view what) {
    if (!value.isInteger()) {
        mismatch(what, type);
    }
    if (isUnsignedType(type)) {
        // Two fallbacks tell a value that does not fit from one that equals a fallback.
        const auto number = value.toUnsigned(0);
        if (number != value.toUnsigned(1) || number > unsignedLimit(type)) {
            mismatch(what, type);
        }
        return number;
    }
    const auto number = value.toSigned(0);
    if (number != value.toSigned(1) || number > signedLimit(type) ||
        number < -signedLimit(type) - 1) {
        mismatch(what, type);
    }
    return number;
}

Value coerceScalar(Value value, CimType type, std::string_view what) {
    if (value.isNull()) {
        return value;
    }
    bool fits = false;
    switch (type) {
    case CimType::boolean:
        fits = value.isBoolean();
        break;
    case CimType::string:
        fits = value.isString();
        break;
    case CimType::char16:
        fits = value.isString() && isOneCharacter(value.toString());
        break;
    case CimType::datetime:
        fits = value.isString() && isDatetime(value.toString());
        break;
    case CimType::reference:
        fits = value.isPath();
        break;
    case CimType::real32:
    case CimType::real64:
        if (value.isInteger()) {
            return value.toReal();
        }
        fits = value.isReal();
        break;
    default:
        return coerceInteger(value, type, what);
    }
    if (!fits) {
        mismatch(what, type);
    }
    return value;
}

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(" \t\r\n");
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(" \t\r\n") - first + 1);
}

Value integerFromText(std::string_view text, CimType type, std::string_view what) {
    std::string_view digits = trimmed(text);
    const bool negative = !digits.empty() && digits.front() == '-';
    if (!digits.empty() && (negative || digits.front() == '+')) {
        digits.remove_prefix(1);
    }
    int base = 10;
    if (digits.size() > 2 && digits[0] == '0' && foldCase(digits[1]) == 'x') {
        base = 16;
        digits.remove_prefix(2);
    }
    std::uint64_t magnitude = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, magnitude, base);
    constexpr std::uint64_t lowest = std::uint64_t{1} << 63U;
    if (digits.empty() || stop != end || error != std::errc() || (negative && magnitude > lowest)) {
        mismatch(what, type);
    }
    const Value value = negative ? Value(static_cast<std::int64_t>(-magnitude)) : Value(magnitude);
    return coerceInteger(value, type, what);
}

Value realFromText(std::string_view text, CimType type, std::string_view what) {
    std::string_view digits = trimmed(text);
    if (!digits.empty() && digits.front() == '+') {
        digits.remove_prefix(1);
    }
    double number = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, number);
    if (digits.empty() || stop != end || error != std::errc()) {
        mismatch(what, type);
    }
    return number;
}

std::string realToText(double number, CimType type) {
    if (std::isnan(number)) {
        return "NaN";
    }
    if (std::isinf(number)) {
        return number < 0 ? "-INF" : "INF";
    }
    std::array<char, 40> text{};
    // Behind the point: with the one before it, enough for the same number to be read again.
    const int digits = type == CimType::real32 ? 8 : 16;
    const int length = std::snprintf(text.data(), text.size(), "%.*e", digits, number);
    return {text.data(), static_cast<std::size_t>(length)};
}

} // namespace

const char* typeName(CimType type) {
    return typeNames.at(static_cast<std::size_t>(type));
}

std::optional<CimType> typeFromName(std::string_view name) {
    const auto found = std::find_if(typeNames.begin(), typeNames.end(),
                                    [&](const char* known) { return sameName(known, name); });
    if (found == typeNames.end()) {
        return std::nullopt;
    }
    return static_cast<CimType>(found - typeNames.begin());
}

bool isUnsignedType(CimType type) {
    return type >= CimType::uint8 && type <= CimType::uint64;
}
bool isSignedType(CimType type) {
    return type >= CimType::sint8 && type <= CimType::sint64;
}
bool isRealType(CimType type) {
    return type == CimType::real32 || type == CimType::real64;
}

Value::Value(const ObjectPath& path) : data_(std::make_shared<const ObjectPath>(path)) {}

Value::Value(Array elements) : data_(std::make_shared<const Array>(std::move(elements))) {}

bool Value::isInteger() const {
    return std::holds_alternative<std::uint64_t>(data_) ||
           std::holds_alternative<std::int64_t>(data_);
}

bool Value::toBool(bool otherwise) const {
    const auto* flag = std::get_if<bool>(&data_);
    return flag ? *flag : otherwise;
}

std::uint64_t Value::toUnsigned(std::uint64_t otherwise) const {
    if (const auto* number = std::get_if<std::uint64_t>(&data_)) {
        return *number;
    }
    const auto* number = std::get_if<std::int64_t>(&data_);
    return number && *number >= 0 ? static_cast<std::uint64_t>(*number) : otherwise;
}

std::int64_t Value::toSigned(std::int64_t otherwise) const {
    if (const auto* number = std::get_if<std::int64_t>(&data_)) {
        return *number;
    }
    const auto* number = std::get_if<std::uint64_t>(&data_);
    constexpr auto limit = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    return number && *number <= limit ? static_cast<std::int64_t>(*number) : otherwise;
}

double Value::toReal(double otherwise) const {
    if (const auto* number = std::get_if<double>(&data_)) {
        return *number;
    }
    if (const auto* number = std::get_if<std::uint64_t>(&data_)) {
        return static_cast<double>(*number);
    }
    const auto* number = std::get_if<std::int64_t>(&data_);
    return number ? static_cast<double>(*number) : otherwise;
}

const std::string& Value::toString() const {
    static const std::string none;
    const auto* text = std::get_if<TextPtr>(&data_);
    return text ? **text : none;
}

const ObjectPath* Value::toPath() const {
    const auto* path = std::get_if<PathPtr>(&data_);
    return path ? path->get() : nullptr;
}

const Value::Array& Value::toArray() const {
    static const Array none;
    const auto* elements = std::get_if<ArrayPtr>(&data_);
    return elements ? **elements : none;
}

bool Value::operator==(const Value& other) const {
    if (isInteger() && other.isInteger()) {
        return toUnsigned() == other.toUnsigned() && toSigned() == other.toSigned();
    }
    if (isString() && other.isString()) {
        return toString() == other.toString();
    }
    if (isPath() && other.isPath()) {
        return *toPath() == *other.toPath();
    }
    if (isArray() && other.isArray()) {
        return toArray() == other.toArray();
    }
    return data_ == other.data_;
}

Value coerce(Value value, CimType type, bool isArray, std::string_view what) {
    if (!isArray) {
        return coerceScalar(std::move(value), type, what);
    }
    if (value.isNull()) {
        return value;
    }
    if (!value.isArray()) {
        throw CimError(CimStatus::typeMismatch, std::string(what) + " is an array");
    }
    Value::Array elements;
    elements.reserve(value.toArray().size());
    for (const Value& element : value.toArray()) {
        elements.push_back(coerceScalar(element, type, what));
    }
    return elements;
}

Value scalarFromText(std::string_view text, CimType type, std::string_view what) {
    switch (type) {
    case CimType::boolean: {
        const auto word = trimmed(text);
        if (sameName(word, "true")) {
            return true;
        }
        if (!sameName(word, "false")) {
            mismatch(what, type);
        }
        return false;
    }
    case CimType::string:
    case CimType::char16:
    case CimType::datetime:
        return coerceScalar(text, type, what);
    case CimType::real32:
    case CimType::real64:
        return realFromText(text, type, what);
    case CimType::reference:
        mismatch(what, type);
    default:
        return integerFromText(text, type, what);
    }
}

std::string scalarToText(const Value& value, CimType type) {
    if (value.isBoolean()) {
        return value.toBool() ? "TRUE" : "FALSE";
    }
    if (value.isInteger()) {
        return value.toSigned() < 0 ? std::to_string(value.toSigned())
                                    : std::to_string(value.toUnsigned());
    }
    if (value.isReal()) {
        return realToText(value.toReal(), type);
    }
    return value.isPath() ? value.toPath()->toText() : value.toString();
}

bool isDatetime(std::string_view text) {
    if (text.size() != 25 || text[14] != '.') {
        return false;
    }
    const char sign = text[21];
    if (sign != '+' && sign != '-' && sign != ':') {
        return false;
    }
    for (std::size_t i = 0; i < text.size(); ++i) {
        // An asterisk stands for a digit that is not known; the offset has none.
        const bool digit = text[i] >= '0' && text[i] <= '9';
        if (i != 14 && i != 21 && !digit && !(text[i] == '*' && i < 21)) {
            return false;
        }
    }
    return sign != ':' || text.substr(22) == "000";
}

} // namespace velclp_sim
