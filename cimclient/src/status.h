// How slots of the function tables report: a status written through an out-parameter that may be
// null, or a status returned. A message is made only where it says more than the code.
#ifndef CIMCLIENT_STATUS_H
#define CIMCLIENT_STATUS_H

#include <CimClientLib/native.h>

#include <cstddef>
#include <new>
#include <string>

// For the functions that the interface names; everything else stays inside the library.
#define CIMCLIENT_EXPORT __attribute__((visibility("default")))

namespace cimclient {

inline void setStatus(CMPIStatus* rc, CMPIrc code) {
    if (rc)
        *rc = {code, nullptr};
}

inline void setOk(CMPIStatus* rc) {
    setStatus(rc, CMPI_RC_OK);
}

inline CMPIStatus status(CMPIrc code) {
    return {code, nullptr};
}

// A null pointer of any kind, with the reason.
inline std::nullptr_t noObject(CMPIStatus* rc, CMPIrc code) {
    setStatus(rc, code);
    return nullptr;
}

// The data of a getter that has nothing to give, with the reason.
inline CMPIData noData(CMPIStatus* rc, CMPIrc code) {
    setStatus(rc, code);
    CMPIData data{};
    data.state = CMPI_nullValue;
    return data;
}

// A failure on its way to the caller: a code (a server's stands as it came) and its words.
struct Failure {
    int code;
    std::string message;

    // With a message that the caller releases; nothing is made for a null status.
    void report(CMPIStatus* rc) const {
        if (rc)
            *rc = asStatus();
    }
    // Where there is no memory for the words, the code alone.
    CMPIStatus asStatus() const {
        CMPIStatus rc = status(static_cast<CMPIrc>(code));
        try {
            rc.msg = native_new_CMPIString(message.c_str(), nullptr);
        } catch (const std::bad_alloc&) {
            rc.msg = nullptr;
        }
        return rc;
    }
};

} // namespace cimclient

#endif
