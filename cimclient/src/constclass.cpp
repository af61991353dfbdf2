#include "objects.h"
#include "status.h"

namespace cimclient {

namespace {

using List = NamedValues Class::*;
using MemberList = NamedValues Members::*;

// What a getter answers when the name, the index or the member that it looks in is not there.
constexpr CMPIrc noProperty = CMPI_RC_ERR_NO_SUCH_PROPERTY;
constexpr CMPIrc noMethod = CMPI_RC_ERR_METHOD_NOT_FOUND;

CMPIString* getClassName(CMPIConstClass* cls, CMPIStatus* rc) {
    if (!cls)
        return noObject(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    setOk(rc);
    return newString(Class::from(cls)->name);
}

// The three getters of each list of the class; the code is for what is not there.

template<List list, CMPIrc missing>
CMPIData getNamed(CMPIConstClass* cls, const char* name, CMPIStatus* rc) {
    if (!cls || !name)
        return noData(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    return (Class::from(cls)->*list).get(name, missing, rc);
}

template<List list, CMPIrc missing>
CMPIData getAt(CMPIConstClass* cls, unsigned int index, CMPIString** name, CMPIStatus* rc) {
    if (!cls)
        return noData(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    return (Class::from(cls)->*list).getAt(index, name, missing, rc);
}

template<List list>
unsigned int getCount(CMPIConstClass* cls, CMPIStatus* rc) {
    setStatus(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    return cls ? (Class::from(cls)->*list).count(rc) : 0;
}

// The same for the lists of one property or method.

template<List list, MemberList members, CMPIrc owner, CMPIrc missing>
CMPIData getMember(CMPIConstClass* cls, const char* ownerName, const char* name, CMPIStatus* rc) {
    if (!cls || !ownerName || !name)
        return noData(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    const NamedValues* found = (Class::from(cls)->*list).membersOf(ownerName, members);
    return found ? found->get(name, missing, rc) : noData(rc, owner);
}

template<List list, MemberList members, CMPIrc owner, CMPIrc missing>
CMPIData getMemberAt(CMPIConstClass* cls, const char* ownerName, unsigned int index,
                     CMPIString** name, CMPIStatus* rc) {
    if (!cls || !ownerName)
        return noData(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    const NamedValues* found = (Class::from(cls)->*list).membersOf(ownerName, members);
    return found ? found->getAt(index, name, missing, rc) : noData(rc, owner);
}

template<List list, MemberList members, CMPIrc owner>
unsigned int getMemberCount(CMPIConstClass* cls, const char* ownerName, CMPIStatus* rc) {
    setStatus(rc, CMPI_RC_ERR_INVALID_PARAMETER);
    if (!cls || !ownerName)
        return 0;
    setStatus(rc, owner);
    const NamedValues* found = (Class::from(cls)->*list).membersOf(ownerName, members);
    return found ? found->count(rc) : 0;
}

constexpr List properties = &Class::properties;
constexpr List qualifiers = &Class::qualifiers;
constexpr List methods = &Class::methods;
constexpr MemberList ownQualifiers = &Members::qualifiers;
constexpr MemberList parameters = &Members::parameters;

CMPIConstClassFT table = {
    NATIVE_FT_VERSION,
    releaseSlot<Class>,
    cloneSlot<Class>,
    getClassName,
    getNamed<properties, noProperty>,
    getAt<properties, noProperty>,
    getCount<properties>,
    getNamed<qualifiers, CMPI_RC_ERR_FAILED>,
    getAt<qualifiers, noProperty>,
    getCount<qualifiers>,
    getMember<properties, ownQualifiers, noProperty, CMPI_RC_ERR_FAILED>,
    getMemberAt<properties, ownQualifiers, noProperty, noProperty>,
    getMemberCount<properties, ownQualifiers, noProperty>,
    getNamed<methods, CMPI_RC_ERR_FAILED>,
    getAt<methods, noMethod>,
    getCount<methods>,
    getMember<methods, parameters, noMethod, CMPI_RC_ERR_FAILED>,
    getMemberAt<methods, parameters, noMethod, CMPI_RC_ERR_NOT_FOUND>,
    getMemberCount<methods, parameters, noMethod>,
    getMember<methods, ownQualifiers, noMethod, CMPI_RC_ERR_FAILED>,
    getMemberAt<methods, ownQualifiers, noMethod, noProperty>,
    getMemberCount<methods, ownQualifiers, noMethod>,
};

} // namespace

Class::Class() : CMPIConstClass{const_cast<char*>("CMPIConstClass"), &table} {}

} // namespace cimclient
