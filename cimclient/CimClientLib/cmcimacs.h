/*
 * Short forms for calls through the function tables of the CIM client interface.
 */
#ifndef _CMCIMACS_H_
#define _CMCIMACS_H_

#include "cmcidt.h"

#include "cmcift.h"

#ifdef __cplusplus
#define CMPI_EXTERN_C extern "C"
#else
#define CMPI_EXTERN_C
#endif

/* Any object. */

#define CMClone(o, rc) ((o)->ft->clone((o), (rc)))
#define CMRelease(o) ((o)->ft->release((o)))
#define CMIsNullObject(o) ((o) == NULL || *((void**)(o)) == NULL)

/* Values. */

#define CMIsNullValue(d) ((d).state & CMPI_nullValue)
#define CMIsKeyValue(d) ((d).state & CMPI_keyValue)
#define CMIsArray(d) ((d).type & CMPI_ARRAY)

/* Status. CMSetStatusWithChars and CMReturnWithChars need native.h. */

#define CMReturn(c)                                                                                \
    {                                                                                              \
        CMPIStatus stat = {(c), NULL};                                                             \
        return stat;                                                                               \
    }

#define CMReturnWithString(c, str)                                                                 \
    {                                                                                              \
        CMPIStatus stat = {(c), (str)};                                                            \
        return stat;                                                                               \
    }

#define CMReturnWithChars(c, text)                                                                 \
    {                                                                                              \
        CMPIStatus stat = {(c), NULL};                                                             \
        stat.msg = newCMPIString((text), NULL);                                                    \
        return stat;                                                                               \
    }

#define CMSetStatus(st, c)                                                                         \
    {                                                                                              \
        if ((st) != NULL) {                                                                        \
            (st)->rc = (c);                                                                        \
            (st)->msg = NULL;                                                                      \
        }                                                                                          \
    }

#define CMSetStatusWithChars(st, c, text)                                                          \
    {                                                                                              \
        if ((st) != NULL) {                                                                        \
            (st)->rc = (c);                                                                        \
            (st)->msg = newCMPIString((text), NULL);                                               \
        }                                                                                          \
    }

/* String. CMGetCharPtr makes no call: a string's hdl is its text. */

#define CMGetCharPtr(s) ((char*)(s)->hdl)
#define CMGetCharsPtr(s, rc) ((s)->ft->getCharPtr((s), (rc)))

/* Instance. */

#define CMGetProperty(i, n, rc) ((i)->ft->getProperty((i), (n), (rc)))
#define CMGetPropertyAt(i, p, n, rc) ((i)->ft->getPropertyAt((i), (p), (n), (rc)))
#define CMGetPropertyCount(i, rc) ((i)->ft->getPropertyCount((i), (rc)))
#define CMSetProperty(i, n, v, t) ((i)->ft->setProperty((i), (n), (CMPIValue*)(v), (t)))
#define CMGetObjectPath(i, rc) ((i)->ft->getObjectPath((i), (rc)))
#define CMSetPropertyFilter(i, pl, k) ((i)->ft->setPropertyFilter((i), (pl), (k)))

/* Object path. */

#define CMSetHostname(p, n) ((p)->ft->setHostname((p), (n)))
#define CMGetHostname(p, rc) ((p)->ft->getHostname((p), (rc)))
#define CMSetNameSpace(p, n) ((p)->ft->setNameSpace((p), (n)))
#define CMGetNameSpace(p, rc) ((p)->ft->getNameSpace((p), (rc)))
#define CMSetClassName(p, n) ((p)->ft->setClassName((p), (n)))
#define CMGetClassName(p, rc) ((p)->ft->getClassName((p), (rc)))
#define CMAddKey(p, n, v, t) ((p)->ft->addKey((p), (n), (CMPIValue*)(v), (t)))
#define CMGetKey(p, n, rc) ((p)->ft->getKey((p), (n), (rc)))
#define CMGetKeyAt(p, i, n, rc) ((p)->ft->getKeyAt((p), (i), (n), (rc)))
#define CMGetKeyCount(p, rc) ((p)->ft->getKeyCount((p), (rc)))
#define CMSetNameSpaceFromObjectPath(p, s) ((p)->ft->setNameSpaceFromObjectPath((p), (s)))
#define CMSetHostAndNameSpaceFromObjectPath(p, s)                                                  \
    ((p)->ft->setHostAndNameSpaceFromObjectPath((p), (s)))
#define CMObjectPathToString(p, rc) ((p)->ft->toString((p), (rc)))

/* Array. */

#define CMGetArrayCount(a, rc) ((a)->ft->getSize((a), (rc)))
#define CMGetArrayType(a, rc) ((a)->ft->getSimpleType((a), (rc)))
#define CMGetArrayElementAt(a, n, rc) ((a)->ft->getElementAt((a), (n), (rc)))
#define CMSetArrayElementAt(a, n, v, t) ((a)->ft->setElementAt((a), (n), (CMPIValue*)(v), (t)))

/* Args. */

#define CMAddArg(a, n, v, t) ((a)->ft->addArg((a), (n), (CMPIValue*)(v), (t)))
#define CMGetArg(a, n, rc) ((a)->ft->getArg((a), (n), (rc)))
#define CMGetArgAt(a, p, n, rc) ((a)->ft->getArgAt((a), (p), (n), (rc)))
#define CMGetArgCount(a, rc) ((a)->ft->getArgCount((a), (rc)))

/* Date-time. */

#define CMGetStringFormat(d, rc) ((d)->ft->getStringFormat((d), (rc)))
#define CMGetBinaryFormat(d, rc) ((d)->ft->getBinaryFormat((d), (rc)))
#define CMIsInterval(d, rc) ((d)->ft->isInterval((d), (rc)))

/* Enumeration. */

#define CMGetNext(n, rc) ((n)->ft->getNext((n), (rc)))
#define CMHasNext(n, rc) ((n)->ft->hasNext((n), (rc)))
#define CMToArray(n, rc) ((n)->ft->toArray((n), (rc)))

#endif
