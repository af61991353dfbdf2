#include "objects.h"
#include "status.h"

#include <algorithm>
#include <new>

namespace cimclient {

namespace {

CMPIStatus release(CMPIString* string) {
    if (!string)
        return status(CMPI_RC_ERR_FAILED);
    ::operator delete(string);
    return status(CMPI_RC_OK);
}

CMPIString* clone(CMPIString* string, CMPIStatus* rc) {
    if (!string)
        return noObject(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    setOk(rc);
    return newString(static_cast<const char*>(string->hdl));
}

char* getCharPtr(CMPIString* string, CMPIStatus* rc) {
    if (!string)
        return noObject(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    setOk(rc);
    return static_cast<char*>(string->hdl);
}

CMPIStringFT table = {NATIVE_FT_VERSION, release, clone, getCharPtr};

// The text, if there is one, stands right behind the object: one allocation a string.
CMPIString* allocate(std::size_t textBytes) {
    return new (::operator new(sizeof(CMPIString) + textBytes)) CMPIString{nullptr, &table};
}

} // namespace

CMPIString* newString(std::string_view text) {
    CMPIString* string = allocate(text.size() + 1);
    auto* copy = reinterpret_cast<char*>(string + 1);
    *std::copy(text.begin(), text.end(), copy) = '\0';
    string->hdl = copy;
    return string;
}

CMPIString* newString(const char* text) {
    return text ? newString(std::string_view(text)) : allocate(0);
}

} // namespace cimclient

CIMCLIENT_EXPORT CMPIString* native_new_CMPIString(const char* text, CMPIStatus* rc) {
    cimclient::setOk(rc);
    return cimclient::newString(text);
}
