/*
 * Objects of the CIM client interface and their function tables. Slot 0 of each table is the
 * version, slots 1 and 2 are `release` and `clone`. Data that a getter returns is borrowed from
 * its container; names, strings and paths that a call makes new are the caller's to release.
 */
#ifndef _CMCIFT_H_
#define _CMCIFT_H_

#include "cmcidt.h"
#include "cmcimacs.h"

#ifdef __cplusplus
extern "C" {
#endif

struct _CMPIString {
    void* hdl; /* the text itself, or null */
    CMPIStringFT* ft;
};

struct _CMPIDateTime {
    void* hdl;
    CMPIDateTimeFT* ft;
};

struct _CMPIArray {
    void* hdl;
    CMPIArrayFT* ft;
};

struct _CMPIArgs {
    void* hdl;
    CMPIArgsFT* ft;
};

struct _CMPIObjectPath {
    void* hdl;
    CMPIObjectPathFT* ft;
};

struct _CMPIInstance {
    void* hdl;
    CMPIInstanceFT* ft;
};

struct _CMPIConstClass {
    void* hdl;
    CMPIConstClassFT* ft;
};

struct _CMPIEnumeration {
    void* hdl;
    CMPIEnumerationFT* ft;
};

struct _CMCIClient {
    void* hdl; /* CMCIClientData */
    CMCIClientFT* ft;
};

struct _CMPIStringFT {
    int ftVersion;
    CMPIStatus (*release)(CMPIString* st);
    CMPIString* (*clone)(CMPIString* st, CMPIStatus* rc);
    char* (*getCharPtr)(CMPIString* st, CMPIStatus* rc);
};

struct _CMPIDateTimeFT {
    int ftVersion;
    CMPIStatus (*release)(CMPIDateTime* dt);
    CMPIDateTime* (*clone)(CMPIDateTime* dt, CMPIStatus* rc);
    CMPIUint64 (*getBinaryFormat)(CMPIDateTime* dt, CMPIStatus* rc);
    CMPIString* (*getStringFormat)(CMPIDateTime* dt, CMPIStatus* rc);
    CMPIBoolean (*isInterval)(CMPIDateTime* dt, CMPIStatus* rc);
};

struct _CMPIArrayFT {
    int ftVersion;
    CMPIStatus (*release)(CMPIArray* ar);
    CMPIArray* (*clone)(CMPIArray* ar, CMPIStatus* rc);
    CMPICount (*getSize)(CMPIArray* ar, CMPIStatus* rc);
    CMPIType (*getSimpleType)(CMPIArray* ar, CMPIStatus* rc);
    CMPIData (*getElementAt)(CMPIArray* ar, CMPICount index, CMPIStatus* rc);
    CMPIStatus (*setElementAt)(CMPIArray* ar, CMPICount index, CMPIValue* value, CMPIType type);
};

struct _CMPIArgsFT {
    int ftVersion;
    CMPIStatus (*release)(CMPIArgs* as);
    CMPIArgs* (*clone)(CMPIArgs* as, CMPIStatus* rc);
    CMPIStatus (*addArg)(CMPIArgs* as, const char* name, CMPIValue* value, CMPIType type);
    CMPIData (*getArg)(CMPIArgs* as, const char* name, CMPIStatus* rc);
    CMPIData (*getArgAt)(CMPIArgs* as, unsigned int index, CMPIString** name, CMPIStatus* rc);
    unsigned int (*getArgCount)(CMPIArgs* as, CMPIStatus* rc);
};

struct _CMPIObjectPathFT {
    int ftVersion;
    CMPIStatus (*release)(CMPIObjectPath* op);
    CMPIObjectPath* (*clone)(CMPIObjectPath* op, CMPIStatus* rc);
    CMPIStatus (*setNameSpace)(CMPIObjectPath* op, const char* ns);
    CMPIString* (*getNameSpace)(CMPIObjectPath* op, CMPIStatus* rc);
    CMPIStatus (*setHostname)(CMPIObjectPath* op, const char* hn);
    CMPIString* (*getHostname)(CMPIObjectPath* op, CMPIStatus* rc);
    CMPIStatus (*setClassName)(CMPIObjectPath* op, const char* cn);
    CMPIString* (*getClassName)(CMPIObjectPath* op, CMPIStatus* rc);
    CMPIStatus (*addKey)(CMPIObjectPath* op, const char* name, CMPIValue* value, CMPIType type);
    CMPIData (*getKey)(CMPIObjectPath* op, const char* name, CMPIStatus* rc);
    CMPIData (*getKeyAt)(CMPIObjectPath* op, unsigned int index, CMPIString** name, CMPIStatus* rc);
    unsigned int (*getKeyCount)(CMPIObjectPath* op, CMPIStatus* rc);
    CMPIStatus (*setNameSpaceFromObjectPath)(CMPIObjectPath* op, CMPIObjectPath* src);
    CMPIStatus (*setHostAndNameSpaceFromObjectPath)(CMPIObjectPath* op, CMPIObjectPath* src);
    CMPIData (*getClassQualifier)(CMPIObjectPath* op, const char* qName, CMPIStatus* rc);
    CMPIData (*getPropertyQualifier)(CMPIObjectPath* op, const char* pName, const char* qName,
                                     CMPIStatus* rc);
    CMPIData (*getMethodQualifier)(CMPIObjectPath* op, const char* mName, const char* qName,
                                   CMPIStatus* rc);
    CMPIData (*getParameterQualifier)(CMPIObjectPath* op, const char* mName, const char* pName,
                                      const char* qName, CMPIStatus* rc);
    CMPIString* (*toString)(CMPIObjectPath* op, CMPIStatus* rc);
};

struct _CMPIInstanceFT {
    int ftVersion;
    CMPIStatus (*release)(CMPIInstance* inst);
    CMPIInstance* (*clone)(CMPIInstance* inst, CMPIStatus* rc);
    CMPIData (*getProperty)(CMPIInstance* inst, const char* name, CMPIStatus* rc);
    CMPIData (*getPropertyAt)(CMPIInstance* inst, unsigned int index, CMPIString** name,
                              CMPIStatus* rc);
    unsigned int (*getPropertyCount)(CMPIInstance* inst, CMPIStatus* rc);
    CMPIStatus (*setProperty)(CMPIInstance* inst, const char* name, CMPIValue* value,
                              CMPIType type);
    CMPIObjectPath* (*getObjectPath)(CMPIInstance* inst, CMPIStatus* rc);
    CMPIStatus (*setPropertyFilter)(CMPIInstance* inst, char** propertyList, char** keys);
    CMPIData (*getQualifier)(CMPIInstance* inst, const char* name, CMPIStatus* rc);
    CMPIData (*getQualifierAt)(CMPIInstance* inst, unsigned int index, CMPIString** name,
                               CMPIStatus* rc);
    unsigned int (*getQualifierCount)(CMPIInstance* inst, CMPIStatus* rc);
    CMPIData (*getPropertyQualifier)(CMPIInstance* inst, const char* pname, const char* qname,
                                     CMPIStatus* rc);
    CMPIData (*getPropertyQualifierAt)(CMPIInstance* inst, const char* pname, unsigned int index,
                                       CMPIString** name, CMPIStatus* rc);
    unsigned int (*getPropertyQualifierCount)(CMPIInstance* inst, const char* pname,
                                              CMPIStatus* rc);
};

struct _CMPIConstClassFT {
    int ftVersion;
    CMPIStatus (*release)(CMPIConstClass* ccls);
    CMPIConstClass* (*clone)(CMPIConstClass* ccls, CMPIStatus* rc);
    CMPIString* (*getClassName)(CMPIConstClass* ccls, CMPIStatus* rc);
    CMPIData (*getProperty)(CMPIConstClass* ccls, const char* name, CMPIStatus* rc);
    CMPIData (*getPropertyAt)(CMPIConstClass* ccls, unsigned int index, CMPIString** name,
                              CMPIStatus* rc);
    unsigned int (*getPropertyCount)(CMPIConstClass* ccls, CMPIStatus* rc);
    CMPIData (*getQualifier)(CMPIConstClass* ccls, const char* name, CMPIStatus* rc);
    CMPIData (*getQualifierAt)(CMPIConstClass* ccls, unsigned int index, CMPIString** name,
                               CMPIStatus* rc);
    unsigned int (*getQualifierCount)(CMPIConstClass* ccls, CMPIStatus* rc);
    CMPIData (*getPropertyQualifier)(CMPIConstClass* ccls, const char* pname, const char* qname,
                                     CMPIStatus* rc);
    CMPIData (*getPropertyQualifierAt)(CMPIConstClass* ccls, const char* pname, unsigned int index,
                                       CMPIString** name, CMPIStatus* rc);
    unsigned int (*getPropertyQualifierCount)(CMPIConstClass* ccls, const char* pname,
                                              CMPIStatus* rc);
    CMPIData (*getMethod)(CMPIConstClass* ccls, const char* name, CMPIStatus* rc);
    CMPIData (*getMethodAt)(CMPIConstClass* ccls, unsigned int index, CMPIString** name,
                            CMPIStatus* rc);
    unsigned int (*getMethodCount)(CMPIConstClass* ccls, CMPIStatus* rc);
    CMPIData (*getMethodParameter)(CMPIConstClass* ccls, const char* mname, const char* pname,
                                   CMPIStatus* rc);
    CMPIData (*getMethodParameterAt)(CMPIConstClass* ccls, const char* mname, unsigned int index,
                                     CMPIString** name, CMPIStatus* rc);
    unsigned int (*getMethodParameterCount)(CMPIConstClass* ccls, const char* mname,
                                            CMPIStatus* rc);
    CMPIData (*getMethodQualifier)(CMPIConstClass* ccls, const char* mname, const char* qname,
                                   CMPIStatus* rc);
    CMPIData (*getMethodQualifierAt)(CMPIConstClass* ccls, const char* mname, unsigned int index,
                                     CMPIString** name, CMPIStatus* rc);
    unsigned int (*getMethodQualifierCount)(CMPIConstClass* ccls, const char* mname,
                                            CMPIStatus* rc);
};

struct _CMPIEnumerationFT {
    int ftVersion;
    CMPIStatus (*release)(CMPIEnumeration* en);
    CMPIEnumeration* (*clone)(CMPIEnumeration* en, CMPIStatus* rc);
    CMPIData (*getNext)(CMPIEnumeration* en, CMPIStatus* rc);
    CMPIBoolean (*hasNext)(CMPIEnumeration* en, CMPIStatus* rc);
    CMPIArray* (*toArray)(CMPIEnumeration* en, CMPIStatus* rc);
};

#ifdef __cplusplus
}
#endif

#endif
