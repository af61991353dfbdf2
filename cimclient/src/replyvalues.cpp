#include "replydocument.h"
#include "replyreader.h"
#include "status.h"
#include "text.h"
#include "typenames.h"
#include "utf8.h"

#include <algorithm>
#include <type_traits>
#include <utility>

// Values: VALUE, VALUE.ARRAY, VALUE.REFERENCE and what stands around them.
namespace cimclient {

namespace {

constexpr unsigned maxEmbedding = 8;

// All of an element's text. It is copied only where it comes in pieces.
std::string_view textOf(pugi::xml_node element, std::string& scratch) {
    const pugi::xml_node first = element.first_child();
    if (!first.next_sibling())
        return first.value();
    for (const pugi::xml_node piece : element.children())
        if (piece.type() == pugi::node_pcdata || piece.type() == pugi::node_cdata)
            scratch += piece.value();
    return scratch;
}

// Reals, and integers in decimal or hexadecimal form.
template<typename Number>
Number numberOrZero(std::string_view text) {
    if constexpr (std::is_integral_v<Number>)
        if (text.size() > 2 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X'))
            return numberFrom<Number>(text.substr(2), 16).value_or(0);
    return numberFrom<Number>(text).value_or(Number{});
}

// The members of the 32-bit integers are wider than the numbers in them.
template<typename Number, typename Member>
CMPIValue numeric(Member CMPIValue::*member, std::string_view text) {
    CMPIValue value{};
    value.*member = numberOrZero<Number>(text);
    return value;
}

CMPIValue booleanValue(std::string_view text) {
    CMPIValue value{};
    value.boolean = equalNoCase(text, "false") ? 0 : 1;
    return value;
}

CMPIValue char16Value(std::string_view text) {
    CMPIValue value{};
    const Character c = firstCharacter(text);
    const auto byte = static_cast<unsigned char>(text.front());
    value.char16 = c.length > 0 && c.code <= 0xffff ? static_cast<CMPIChar16>(c.code) : byte;
    return value;
}

CMPIValue numberValue(CMPIType type, std::string_view text) {
    switch (type) {
    case CMPI_uint8:
        return numeric<CMPIUint8>(&CMPIValue::uint8, text);
    case CMPI_uint16:
        return numeric<CMPIUint16>(&CMPIValue::uint16, text);
    case CMPI_uint32:
        return numeric<unsigned int>(&CMPIValue::uint32, text);
    case CMPI_uint64:
        return numeric<CMPIUint64>(&CMPIValue::uint64, text);
    case CMPI_sint8:
        return numeric<CMPISint8>(&CMPIValue::sint8, text);
    case CMPI_sint16:
        return numeric<CMPISint16>(&CMPIValue::sint16, text);
    case CMPI_sint32:
        return numeric<int>(&CMPIValue::sint32, text);
    case CMPI_sint64:
        return numeric<CMPISint64>(&CMPIValue::sint64, text);
    case CMPI_real32:
        return numeric<float>(&CMPIValue::real32, text);
    default:
        return numeric<double>(&CMPIValue::real64, text);
    }
}

bool isDigits(std::string_view text) {
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool isSign(char c) {
    return c == '+' || c == '-';
}

CMPIType guessFromText(std::string_view text) {
    if (isDigits(text))
        return CMPI_uint64;
    if (!text.empty() && isSign(text.front()) && isDigits(text.substr(1)))
        return CMPI_sint64;
    return equalNoCase(text, "true") || equalNoCase(text, "false") ? CMPI_boolean : CMPI_string;
}

// The type that both could be.
CMPIType commonGuess(CMPIType a, CMPIType b) {
    if (a == CMPI_null || a == b)
        return b;
    const auto isInteger = [](CMPIType type) { return type == CMPI_uint64 || type == CMPI_sint64; };
    return isInteger(a) && isInteger(b) ? CMPI_sint64 : CMPI_string;
}

// Instances among strings make an array of instances; anything else in it is null then.
void harmonise(Array& array) {
    const auto isInstance = [](const Data& data) { return data.type() == CMPI_instance; };
    if (std::none_of(array.elements.begin(), array.elements.end(), isInstance))
        return;
    array.elementType = CMPI_instance;
    for (Data& element : array.elements)
        if (!isInstance(element))
            element = Data(CMPI_instance);
}

} // namespace

Data ReplyReader::valueOfText(CMPIType type, std::string_view text) const {
    if (type == CMPI_string)
        return Data::ofString(newString(text));
    if (!typeName(type))
        return {};
    if (type == CMPI_ref)
        return Data(type);
    const std::string_view plain = type == CMPI_char16 ? text : trimmed(text);
    if (plain.empty())
        return Data(type);
    if (type == CMPI_boolean)
        return {type, booleanValue(plain)};
    if (type == CMPI_char16)
        return {type, char16Value(plain)};
    if (type == CMPI_dateTime)
        return Data::ofDateTime(DateTime::accepts(plain) ? new DateTime(std::string(plain))
                                                         : nullptr);
    return {type, numberValue(type, plain)};
}

Data ReplyReader::value(CMPIType type, pugi::xml_node element) const {
    if (!is(element, "VALUE"))
        return Data(type);
    if (type == CMPI_string)
        if (auto instance = embeddedInstance(element))
            return Data::ofInstance(instance.release());
    std::string scratch;
    return valueOfText(type, textOf(element, scratch));
}

Owned<Instance> ReplyReader::embeddedInstance(pugi::xml_node value) const {
    if (value.first_child().type() != pugi::node_cdata || m_level >= maxEmbedding)
        return nullptr;
    std::string scratch;
    std::string text(textOf(value, scratch));
    if (trimmed(text).substr(0, 9) != "<INSTANCE" && trimmed(text).substr(0, 5) != "<?xml")
        return nullptr;
    try {
        const ReplyDocument document(text);
        const pugi::xml_node element = document.root().child("INSTANCE");
        if (!element)
            return nullptr;
        Owned<Instance> instance(new Instance());
        instance->className = element.attribute("CLASSNAME").value();
        ReplyReader(m_level + 1).instance(element, *instance);
        return instance;
    } catch (const Failure&) {
        return nullptr;
    }
}

Data ReplyReader::valueArray(CMPIType type, pugi::xml_node element) const {
    auto array = Owned<Array>(new Array(type, 0));
    for (auto child = firstElement(element); child; child = nextElement(child))
        array->elements.push_back(value(type, child));
    if (array->elements.empty() || type == CMPI_null)
        return type == CMPI_null ? Data() : Data(static_cast<CMPIType>(CMPI_ARRAY | type));
    harmonise(*array);
    return Data::ofArray(array.release());
}

Data ReplyReader::referenceArray(pugi::xml_node element) const {
    auto array = Owned<Array>(new Array(CMPI_ref, 0));
    for (auto child = firstElement(element); child; child = nextElement(child))
        array->elements.push_back(is(child, "VALUE.REFERENCE") ? reference(child) : Data(CMPI_ref));
    return array->elements.empty() ? Data(CMPI_refA) : Data::ofArray(array.release());
}

Data ReplyReader::reference(pugi::xml_node element) const {
    auto target = path(firstElement(element));
    if (!target->nameSpace)
        target->nameSpace = "";
    return Data::ofReference(target.release());
}

Data ReplyReader::content(pugi::xml_node element, CMPIType type, bool isArray) const {
    for (auto child = firstElement(element); child; child = nextElement(child)) {
        if (is(child, "VALUE.ARRAY"))
            return valueArray(type, child);
        if (is(child, "VALUE"))
            return isArray ? Data(static_cast<CMPIType>(CMPI_ARRAY | type)) : value(type, child);
        if (is(child, "VALUE.REFERENCE"))
            return reference(child);
        if (is(child, "VALUE.REFARRAY"))
            return referenceArray(child);
    }
    return isArray && type != CMPI_null ? Data(static_cast<CMPIType>(CMPI_ARRAY | type))
                                        : Data(type);
}

CMPIType ReplyReader::guessedType(pugi::xml_node element) const {
    std::string scratch;
    if (const pugi::xml_node single = element.child("VALUE"))
        return guessFromText(textOf(single, scratch));
    CMPIType type = CMPI_null;
    for (const pugi::xml_node child : element.child("VALUE.ARRAY").children("VALUE")) {
        scratch.clear();
        type = commonGuess(type, guessFromText(textOf(child, scratch)));
    }
    return type;
}

Data ReplyReader::typedOrGuessed(pugi::xml_node element, const char* typeAttribute) const {
    const pugi::xml_attribute name = element.attribute(typeAttribute);
    if (!name)
        return content(element, guessedType(element), false);
    return content(element, typeFromName(name.value()).value_or(CMPI_null), false);
}

Data ReplyReader::keyValue(pugi::xml_node element) const {
    std::string scratch;
    const std::string_view text = textOf(element, scratch);
    const std::string_view type = element.attribute("VALUETYPE").value();
    if (equalNoCase(type, "boolean"))
        return {CMPI_boolean, booleanValue(trimmed(text))};
    if (!equalNoCase(type, "numeric"))
        return is(element, absentKeyValue) ? Data::ofText(nullptr)
                                           : Data::ofString(newString(text));
    // As many digits as there are; a sign makes it signed.
    std::string_view digits = trimmed(text);
    const bool isSigned = !digits.empty() && isSign(digits.front());
    const auto end = std::find_if_not(digits.begin() + (isSigned ? 1 : 0), digits.end(),
                                      [](char c) { return c >= '0' && c <= '9'; });
    digits = digits.substr(0, static_cast<std::size_t>(end - digits.begin()));
    return isSigned ? Data(CMPI_sint64, numeric<CMPISint64>(&CMPIValue::sint64, digits))
                    : Data(CMPI_uint64, numeric<CMPIUint64>(&CMPIValue::uint64, digits));
}

} // namespace cimclient
