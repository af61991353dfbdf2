// Text to CMPI values, and writing them.
#include "mapping/cimvalue.h"
#include "velclp/assertion.h"
#include "velclp/clpstring.h"
#include "velclp/core_misc.h"
#include "velclp/log.h"

#include <CimClientLib/native.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <limits>

namespace velmora_clp {

namespace {

// An array longer than this is a slip of the keyboard.
constexpr long mostElements = 65535;

// As strtol does where long has 32 bits.
int textToInt(const std::string& text) {
    const long number = std::strtol(text.c_str(), nullptr, 10);
    return static_cast<int>(
        std::clamp<long>(number, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

bool normalEncoded(const std::string& value, const std::string& ret, CMPIType type,
                   CMPIValue& out) {
    VELCLP_LOG_BRANCH("CLP.CLPMisc.normalValue", "Type is CMPI_ENC");
    CimStatus status;
    switch (type) {
    case CMPI_string:
    case CMPI_chars:
    case CMPI_booleanString:
    case CMPI_numericString:
    case CMPI_dateTimeString:
        out.string = native_new_CMPIString(ret.c_str(), status.out());
        return true;
    case CMPI_dateTime:
        out.dateTime = native_new_CMPIDateTime_fromChars(value.c_str(), status.out());
        return out.dateTime != nullptr;
    default:
        VELCLP_ASSERT(type != CMPI_ref && type != CMPI_args && type != CMPI_instance &&
                          type != CMPI_filter,
                      "false");
        return true;
    }
}

bool normalSimple(const std::string& ret, CMPIType type, CMPIValue& out) {
    VELCLP_LOG_BRANCH("CLP.CLPMisc.normalValue", "Type is CMPI_SIMPLE");
    VELCLP_ASSERT(type != CMPI_char16, "false");
    out.boolean = ret == "true" ? 1 : 0;
    return ret == "true" || ret == "false";
}

bool normalReal(const std::string& ret, CMPIType type, CMPIValue& out) {
    VELCLP_LOG_BRANCH("CLP.CLPMisc.normalValue", "Type is CMPI_REAL");
    const double number = std::strtod(ret.c_str(), nullptr);
    if (type == CMPI_real32)
        out.real32 = static_cast<CMPIReal32>(number);
    else
        out.real64 = number;
    return true;
}

// One item of an array's text: a value, and where it goes.
struct Item {
    std::string value;
    long index;
};

// The index of an item: behind its "," or the item's place; false for one that is out of bounds.
bool readIndex(const std::vector<std::string>& pieces, std::size_t place, long& index) {
    index =
        pieces.size() == 2 ? std::strtol(pieces[1].c_str(), nullptr, 10) : static_cast<long>(place);
    return index >= 0 && index <= mostElements;
}

// The items of an array's text, those of three and more pieces left out; false when one lies out
// of bounds.
bool readItems(const std::string& text, std::vector<Item>& items, long& highest) {
    const std::vector<std::string> parts = splitString(text, ":", true);
    highest = static_cast<long>(parts.size());
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const std::vector<std::string> pieces = splitString(parts[i], ",", true);
        if (pieces.size() > 2)
            continue;
        Item item{pieces.empty() ? "" : pieces.front(), 0};
        if (!readIndex(pieces, i, item.index))
            return false;
        highest = std::max(highest, item.index);
        items.push_back(std::move(item));
    }
    return highest <= mostElements;
}

void releaseElement(CMPIType type, CMPIValue& value) {
    if (type == CMPI_dateTime)
        CimDateTime(value.dateTime).reset();
    else if ((type & CMPI_ENC) != 0)
        CimString(value.string).reset();
}

bool normalArray(const std::string& text, CMPIType type, CMPIArray* values, CMPIArray* valuesmap,
                 CimArray& array) {
    std::vector<Item> items;
    long highest = 0;
    if (!readItems(text, items, highest))
        return false;
    CimStatus status;
    array.reset(native_new_CMPIArray(static_cast<CMPICount>(highest + 1), type, status.out()));
    VELCLP_ASSERT(status.ok(), "!status.rc");
    for (const Item& item : items) {
        CMPIValue value = {};
        if (!CLPMisc::normalValue(item.value, value, type, values, valuesmap))
            return false;
        VELCLP_LOG_VALUE("CLP.CLPMisc.normalProperty", "index=[%ld]", item.index);
        status =
            array->ft->setElementAt(array.get(), static_cast<CMPICount>(item.index), &value, type);
        releaseElement(type, value);
    }
    return true;
}

} // namespace

bool CLPMisc::normalValue(const std::string& value, CMPIValue& out, const CMPIType& type,
                          CMPIArray* values, CMPIArray* valuesmap) {
    VELCLP_TRACE("CLP.CLPMisc.normalValue");
    VELCLP_ASSERT(elementType(type) != 0, "type&~((1)<<13)");
    out = {};
    std::string ret = value;
    MapValue(value, ret, values, valuesmap);
    if ((type & CMPI_ENC) != 0)
        return normalEncoded(value, ret, type, out);
    if ((type & CMPI_SIMPLE) != 0)
        return normalSimple(ret, type, out);
    if ((type & CMPI_INTEGER) != 0) {
        VELCLP_LOG_BRANCH("CLP.CLPMisc.normalValue", "Type is CMPI_SIMPLE");
        setInteger(out, type, static_cast<CMPIUint64>(static_cast<CMPISint64>(textToInt(ret))));
        return true;
    }
    return (type & CMPI_REAL) == 0 || normalReal(ret, type, out);
}

bool CLPMisc::normalProperty(CMPIConstClass* _class, const std::string& name,
                             const std::string& value, CMPIData* data) {
    VELCLP_TRACE("CLP.CLPMisc.normalProperty");
    data->state = CMPI_goodValue;
    data->value = {};
    VELCLP_ASSERT(_class, "_class");
    data->type = getPropertyType(_class, name);
    const CimArray values(getPropertyQualify(_class, name, "Values"));
    const CimArray valuesmap(values ? getPropertyQualify(_class, name, "ValueMap") : nullptr);
    bool normal = false;
    if (isArray(data->type)) {
        CimArray array;
        normal = normalArray(value, elementType(data->type), values.get(), valuesmap.get(), array);
        if (normal)
            data->value.array = array.release();
    } else {
        normal = normalValue(value, data->value, data->type, values.get(), valuesmap.get());
    }
    if (!normal)
        data->state = CMPI_nullValue;
    return normal;
}

CMPIrc CLPMisc::setProperty(CMCIClient* cc, CMPIObjectPath* op,
                            const std::map<std::string, CMPIData*>& props) {
    VELCLP_TRACE("CLP.CLPMisc.setProperty");
    const CMPIrc rc = writeProperties(cc, op, props);
    VELCLP_ASSERT(rc == CMPI_RC_OK, "status.rc==0");
    return rc;
}

CMPIrc CLPMisc::writeProperties(CMCIClient* cc, CMPIObjectPath* op,
                                const std::map<std::string, CMPIData*>& props) {
    const char* const function = "CLP.CLPMisc.writeProperties";
    VELCLP_ASSERT(op != nullptr && cc != nullptr, "op!=__null&&cc!=__null");
    VELCLP_ASSERT(!props.empty(), "props.empty()==false");
    CimStatus status;
    const CimInstance ins(native_new_CMPIInstance(op, status.out()));
    VELCLP_ASSERT(ins, "ins");
    for (const auto& [name, data] : props) {
        VELCLP_ASSERT(data, "p->second");
        VELCLP_LOG_VALUE(function, "name=[%s],value=[%s]", name.c_str(), dataText(*data).c_str());
        velmora_clp::setProperty(ins.get(), name, *data);
    }
    status = cc->ft->setInstance(cc, op, ins.get(), 0, nullptr);
    return status.rc();
}

} // namespace velmora_clp
