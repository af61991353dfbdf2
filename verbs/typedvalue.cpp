#include "verbs/typedvalue.h"

#include "velclp/core_misc.h"

#include <boost/lexical_cast.hpp>

namespace velmora_clp {

OwnedPropValue typedValue(CMPIConstClass* cimclass, const std::string& name,
                          const std::string& text) {
    OwnedPropValue value(new PropValue);
    value->data = new CMPIData{CMPI_null, CMPI_nullValue, {}};
    CMPIData data = {CMPI_null, CMPI_goodValue, {}};
    if (!CLPMisc::normalProperty(cimclass, name, text, &data))
        return nullptr;
    *value->data = data;
    return value;
}

OwnedPropValue integerValue(const std::string& text) {
    const int number = boost::lexical_cast<int>(text);
    OwnedPropValue value(new PropValue);
    value->data = new CMPIData{CMPI_uint32, CMPI_goodValue, {}};
    value->data->value.uint32 = static_cast<CMPIUint32>(static_cast<unsigned int>(number));
    return value;
}

} // namespace velmora_clp
