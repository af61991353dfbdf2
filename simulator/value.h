// Values of the CIM infrastructure (DSP0004, 5.2): NULL, booleans, integers, reals, texts (string,
// char16 and datetime), references, and arrays of these. A Value knows its kind, not its CIM type:
// the type stands in the declaration that the value is put into, and coerce() checks the two.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

namespace velclp_sim {

class ObjectPath;

enum class CimType : std::uint8_t {
    boolean,
    string,
    char16,
    datetime,
    uint8,
    uint16,
    uint32,
    uint64,
    sint8,
    sint16,
    sint32,
    sint64,
    real32,
    real64,
    reference
};

/// The type's name in CIM-XML and MOF, such as "uint16"; "reference" for references.
const char* typeName(CimType type);
/// The reverse of typeName, without case; nothing when there is no such type.
std::optional<CimType> typeFromName(std::string_view name);
bool isUnsignedType(CimType type);
bool isSignedType(CimType type);
bool isRealType(CimType type);

class Value {
public:
    using Array = std::vector<Value>;

    /// NULL.
    Value() = default;
    Value(bool value) : data_(value) {}
    template<class T, std::enable_if_t<std::is_integral_v<T> && !std::is_same_v<T, bool>, int> = 0>
    Value(T value) {
        if constexpr (std::is_signed_v<T>) {
            data_ = static_cast<std::int64_t>(value);
        } else {
            data_ = static_cast<std::uint64_t>(value);
        }
    }
    Value(double value) : data_(value) {}
    Value(std::string value) : data_(std::make_shared<const std::string>(std::move(value))) {}
    Value(std::string_view value) : Value(std::string(value)) {}
    Value(const char* value) : Value(std::string(value)) {}
    Value(const ObjectPath& path);
    Value(Array elements);

    bool isNull() const { return std::holds_alternative<std::monostate>(data_); }
    bool isBoolean() const { return std::holds_alternative<bool>(data_); }
    bool isInteger() const;
    bool isReal() const { return std::holds_alternative<double>(data_); }
    bool isString() const { return std::holds_alternative<TextPtr>(data_); }
    bool isPath() const { return std::holds_alternative<PathPtr>(data_); }
    bool isArray() const { return std::holds_alternative<ArrayPtr>(data_); }

    // Each of these gives the fallback when the value is NULL or of another kind (integers of
    // either sign are converted when they fit).
    bool toBool(bool otherwise = false) const;
    std::uint64_t toUnsigned(std::uint64_t otherwise = 0) const;
    std::int64_t toSigned(std::int64_t otherwise = 0) const;
    double toReal(double otherwise = 0) const;
    /// The text itself; an empty string when there is none. Borrowed from the value.
    const std::string& toString() const;
    /// The referenced object; null when the value is no reference. Borrowed from the value.
    const ObjectPath* toPath() const;
    /// The elements; an empty array when the value is no array. Borrowed from the value.
    const Array& toArray() const;

    bool operator==(const Value& other) const;
    bool operator!=(const Value& other) const { return !(*this == other); }

private:
    // Texts, paths and arrays are shared between copies: they never change, and copies are many.
    using TextPtr = std::shared_ptr<const std::string>;
    using PathPtr = std::shared_ptr<const ObjectPath>;
    using ArrayPtr = std::shared_ptr<const Array>;
    std::variant<std::monostate, bool, std::uint64_t, std::int64_t, double, TextPtr, PathPtr,
                 ArrayPtr>
        data_;
};

/// The value as the declared type has it: integers in the type's range and sign, reals for real
/// types, well-formed datetimes, one character for char16, arrays for arrays. NULL stays NULL.
/// Throws CIM_ERR_TYPE_MISMATCH with `what` (the element's name) in its text.
Value coerce(Value value, CimType type, bool isArray, std::string_view what);

/// A scalar of the type from its text in CIM-XML or in an object path. Numbers may
/// be decimal or hexadecimal. Throws CIM_ERR_TYPE_MISMATCH. References are not read here.
Value scalarFromText(std::string_view text, CimType type, std::string_view what);

/// A scalar that is not NULL as CIM-XML text, not escaped; the path's text for references.
std::string scalarToText(const Value& value, CimType type);

/// True for the 25 characters of a point in time or an interval (DSP0004, 5.2.4).
bool isDatetime(std::string_view text);

} // namespace velclp_sim
