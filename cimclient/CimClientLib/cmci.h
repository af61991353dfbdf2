/*
 * The client: a connection to a CIM server, with one slot for each operation of DSP0200.
 */
#ifndef _CMPIC_H_
#define _CMPIC_H_

#include "cmcidt.h"

#include "cmcift.h"

#include "cmcimacs.h"

#ifdef __cplusplus
extern "C" {
#endif

#define CMCI_VERIFY_NONE 0
#define CMCI_VERIFY_PEER 1

typedef struct _CMCIClientData {
    char* hostName;
    char* port;
    char* user;
    char* pwd;
    char* scheme;
    int status;
} CMCIClientData;

typedef struct _CMCICredentialData {
    int verifyMode;
    char* trustStore;
    char* certFile;
    char* keyFile;
} CMCICredentialData;

/*
 * Operations. `properties` is a null-terminated list of names, or null for no list; arguments stay
 * the caller's. A failure is a null result and a status with a message that the caller releases.
 * The values of invokeMethod and getProperty are the caller's to release. One client is used by one
 * thread at a time.
 */
struct _CMCIClientFT {
    int ftVersion;
    CMPIStatus (*release)(CMCIClient* cl);
    CMCIClient* (*clone)(CMCIClient* cl, CMPIStatus* rc);
    CMPIConstClass* (*getClass)(CMCIClient* cl, CMPIObjectPath* op, CMPIFlags flags,
                                char** properties, CMPIStatus* rc);
    CMPIEnumeration* (*enumClassNames)(CMCIClient* cl, CMPIObjectPath* op, CMPIFlags flags,
                                       CMPIStatus* rc);
    CMPIEnumeration* (*enumClasses)(CMCIClient* cl, CMPIObjectPath* op, CMPIFlags flags,
                                    CMPIStatus* rc);
    CMPIInstance* (*getInstance)(CMCIClient* cl, CMPIObjectPath* op, CMPIFlags flags,
                                 char** properties, CMPIStatus* rc);
    CMPIObjectPath* (*createInstance)(CMCIClient* cl, CMPIObjectPath* op, CMPIInstance* inst,
                                      CMPIStatus* rc);
    CMPIStatus (*setInstance)(CMCIClient* cl, CMPIObjectPath* op, CMPIInstance* inst,
                              CMPIFlags flags, char** properties);
    CMPIStatus (*deleteInstance)(CMCIClient* cl, CMPIObjectPath* op);
    CMPIEnumeration* (*execQuery)(CMCIClient* cl, CMPIObjectPath* op, const char* query,
                                  const char* lang, CMPIStatus* rc);
    CMPIEnumeration* (*enumInstanceNames)(CMCIClient* cl, CMPIObjectPath* op, CMPIStatus* rc);
    CMPIEnumeration* (*enumInstances)(CMCIClient* cl, CMPIObjectPath* op, CMPIFlags flags,
                                      char** properties, CMPIStatus* rc);
    CMPIEnumeration* (*associators)(CMCIClient* cl, CMPIObjectPath* op, const char* assocClass,
                                    const char* resultClass, const char* role,
                                    const char* resultRole, CMPIFlags flags, char** properties,
                                    CMPIStatus* rc);
    CMPIEnumeration* (*associatorNames)(CMCIClient* cl, CMPIObjectPath* op, const char* assocClass,
                                        const char* resultClass, const char* role,
                                        const char* resultRole, CMPIStatus* rc);
    CMPIEnumeration* (*references)(CMCIClient* cl, CMPIObjectPath* op, const char* resultClass,
                                   const char* role, CMPIFlags flags, char** properties,
                                   CMPIStatus* rc);
    CMPIEnumeration* (*referenceNames)(CMCIClient* cl, CMPIObjectPath* op, const char* resultClass,
                                       const char* role, CMPIStatus* rc);
    CMPIData (*invokeMethod)(CMCIClient* cl, CMPIObjectPath* op, const char* method, CMPIArgs* in,
                             CMPIArgs* out, CMPIStatus* rc);
    CMPIStatus (*setProperty)(CMCIClient* cl, CMPIObjectPath* op, const char* name,
                              CMPIValue* value, CMPIType type);
    CMPIData (*getProperty)(CMCIClient* cl, CMPIObjectPath* op, const char* name, CMPIStatus* rc);
};

/*
 * A client for the server at scheme, host and port: null stands for "http", "localhost" and 5988
 * (5989 with "https"). A port that begins with '/' is the path of a Unix socket. The user, when not
 * null, is sent as HTTP basic authentication. Null with a status when nothing answers there.
 * The owner releases the client. Any thread.
 */
CMCIClient* cmciConnect(const char* hn, const char* scheme, const char* port, const char* user,
                        const char* pwd, CMPIStatus* rc);

/*
 * The same with TLS options: CMCI_VERIFY_PEER checks the server's certificate against trustStore,
 * certFile and keyFile are the client's own.
 */
CMCIClient* cmciConnect2(const char* hn, const char* scheme, const char* port, const char* user,
                         const char* pwd, int verifyMode, const char* trustStore,
                         const char* certFile, const char* keyFile, CMPIStatus* rc);

/* A new path without keys; null stands for "not set". The owner releases it. */
CMPIObjectPath* newCMPIObjectPath(const char* nameSpace, const char* classname, CMPIStatus* rc);

#define native_new_CMPIObjectPath newCMPIObjectPath

#ifdef __cplusplus
}
#endif

#endif
