// The slots of the client's table that talk to the server (DSP0200, 5.4): each builds its request,
// waits for the reply and makes objects of it. Their signatures and results are those of
// CMCIClientFT.
#ifndef CIMCLIENT_OPERATIONS_H
#define CIMCLIENT_OPERATIONS_H

#include <CimClientLib/cmci.h>

namespace cimclient {

CMPIConstClass* getClass(CMCIClient* client, CMPIObjectPath* op, CMPIFlags flags, char** properties,
                         CMPIStatus* rc);
CMPIEnumeration* enumClassNames(CMCIClient* client, CMPIObjectPath* op, CMPIFlags flags,
                                CMPIStatus* rc);
CMPIEnumeration* enumClasses(CMCIClient* client, CMPIObjectPath* op, CMPIFlags flags,
                             CMPIStatus* rc);
CMPIInstance* getInstance(CMCIClient* client, CMPIObjectPath* op, CMPIFlags flags,
                          char** properties, CMPIStatus* rc);
CMPIObjectPath* createInstance(CMCIClient* client, CMPIObjectPath* op, CMPIInstance* inst,
                               CMPIStatus* rc);
CMPIStatus setInstance(CMCIClient* client, CMPIObjectPath* op, CMPIInstance* inst, CMPIFlags flags,
                       char** properties);
CMPIStatus deleteInstance(CMCIClient* client, CMPIObjectPath* op);
CMPIEnumeration* execQuery(CMCIClient* client, CMPIObjectPath* op, const char* query,
                           const char* lang, CMPIStatus* rc);
CMPIEnumeration* enumInstanceNames(CMCIClient* client, CMPIObjectPath* op, CMPIStatus* rc);
CMPIEnumeration* enumInstances(CMCIClient* client, CMPIObjectPath* op, CMPIFlags flags,
                               char** properties, CMPIStatus* rc);
CMPIEnumeration* associators(CMCIClient* client, CMPIObjectPath* op, const char* assocClass,
                             const char* resultClass, const char* role, const char* resultRole,
                             CMPIFlags flags, char** properties, CMPIStatus* rc);
CMPIEnumeration* associatorNames(CMCIClient* client, CMPIObjectPath* op, const char* assocClass,
                                 const char* resultClass, const char* role, const char* resultRole,
                                 CMPIStatus* rc);
CMPIEnumeration* references(CMCIClient* client, CMPIObjectPath* op, const char* resultClass,
                            const char* role, CMPIFlags flags, char** properties, CMPIStatus* rc);
CMPIEnumeration* referenceNames(CMCIClient* client, CMPIObjectPath* op, const char* resultClass,
                                const char* role, CMPIStatus* rc);
CMPIData invokeMethod(CMCIClient* client, CMPIObjectPath* op, const char* method, CMPIArgs* in,
                      CMPIArgs* out, CMPIStatus* rc);
CMPIStatus setProperty(CMCIClient* client, CMPIObjectPath* op, const char* name, CMPIValue* value,
                       CMPIType type);
CMPIData getProperty(CMCIClient* client, CMPIObjectPath* op, const char* name, CMPIStatus* rc);

} // namespace cimclient

#endif
