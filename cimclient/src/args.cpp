#include "objects.h"
#include "status.h"

#include <utility>

namespace cimclient {

namespace {

CMPIStatus addArg(CMPIArgs* args, const char* name, CMPIValue* value, CMPIType type) {
    if (!args || !name)
        return status(CMPI_RC_ERR_INVALID_PARAMETER);
    NamedValues& values = Args::from(args)->values;
    if (values.find(name))
        return status(CMPI_RC_ERR_ALREADY_EXISTS);
    Data data;
    const CMPIrc code = Data::fromCaller(value, type, data);
    return status(code == CMPI_RC_OK ? values.add(name, std::move(data)) : code);
}

CMPIData getArg(CMPIArgs* args, const char* name, CMPIStatus* rc) {
    if (!args || !name)
        return noData(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    return Args::from(args)->values.get(name, CMPI_RC_ERR_NO_SUCH_PROPERTY, rc);
}

CMPIData getArgAt(CMPIArgs* args, unsigned int index, CMPIString** name, CMPIStatus* rc) {
    if (!args)
        return noData(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    return Args::from(args)->values.getAt(index, name, CMPI_RC_ERR_NO_SUCH_PROPERTY, rc);
}

unsigned int getArgCount(CMPIArgs* args, CMPIStatus* rc) {
    setStatus(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    return args ? Args::from(args)->values.count(rc) : 0;
}

CMPIArgsFT table = {NATIVE_FT_VERSION, releaseSlot<Args>, cloneSlot<Args>, addArg, getArg,
                    getArgAt,          getArgCount};

} // namespace

Args::Args() : CMPIArgs{const_cast<char*>("CMPIArgs"), &table} {}

} // namespace cimclient

CIMCLIENT_EXPORT CMPIArgs* native_new_CMPIArgs(CMPIStatus* rc) {
    cimclient::setOk(rc);
    return new cimclient::Args();
}
