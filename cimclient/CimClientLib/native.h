/*
 * Constructors of the interface's local objects. Each result is the caller's to release; none
 * needs a client. `rc` may be null.
 */
#ifndef _REMOTE_CMPI_NATIVE_DATA_H
#define _REMOTE_CMPI_NATIVE_DATA_H

#include "cmci.h"

#define NATIVE_FT_VERSION 1

#define newCMPIString native_new_CMPIString
#define newCMPIInstance native_new_CMPIInstance
#define newCMPIArray native_new_CMPIArray
#define newCMPIArgs native_new_CMPIArgs
#define newCMPIEnumeration native_new_CMPIEnumeration

#ifdef __cplusplus
extern "C" {
#endif

/* A copy of the text; null gives a string whose text is null. */
CMPIString* native_new_CMPIString(const char* text, CMPIStatus* rc);

/* Class, namespace and keys of the path; null gives an empty instance. */
CMPIInstance* native_new_CMPIInstance(CMPIObjectPath* op, CMPIStatus* rc);

CMPIArgs* native_new_CMPIArgs(CMPIStatus* rc);

/* All elements null; size 0 gives an array that grows by one as index == size is set. */
CMPIArray* native_new_CMPIArray(CMPICount size, CMPIType type, CMPIStatus* rc);

/* Takes the array over. */
CMPIEnumeration* native_new_CMPIEnumeration(CMPIArray* array, CMPIStatus* rc);

/* Now, in local time. */
CMPIDateTime* native_new_CMPIDateTime(CMPIStatus* rc);

/* Microseconds: of an interval, or since 1970-01-01 00:00 UTC. */
CMPIDateTime* native_new_CMPIDateTime_fromBinary(CMPIUint64 usec, CMPIBoolean interval,
                                                 CMPIStatus* rc);

/* The 25 characters of DSP0004, 5.2.4; null with CMPI_RC_ERR_INVALID_PARAMETER for other text. */
CMPIDateTime* native_new_CMPIDateTime_fromChars(const char* text, CMPIStatus* rc);

/*
 * The value as text, never null; the caller frees it with free(). It looks at the type alone: a
 * null state is for the caller to check. Arrays give empty text and a line on standard error.
 */
char* value2Chars(CMPIType type, CMPIValue* value);

#ifdef __cplusplus
}
#endif

#endif
