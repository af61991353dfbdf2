/*
 * Data types, constants and status codes of the CIM client interface. The layout and the values
 * are those of the Common Manageability Programming Interface's client side, so that a program
 * compiled against these headers runs on either client library.
 */
#ifndef _CMCIDT_H_
#define _CMCIDT_H_

#include <stdio.h>

#ifdef __cplusplus
extern "C" {
#endif

#define CMPIVersion051 51
#define CMPIVersion060 60
#define CMPIVersion070 70
#define CMPIVersion080 80
#define CMPIVersion085 85
#define CMPIVersion086 86
#define CMPIVersion087 87
#define CMPIVersion090 90

#ifndef CMPI_VERSION
#define CMPI_VER_86
#define CMPI_VER_85
#define CMPI_VER_80
#define CMPICurrentVersion CMPIVersion086
#else
#define CMPICurrentVersion CMPI_VERSION
#if CMPI_VERSION >= 90
#define CMPI_VER_90
#endif
#if CMPI_VERSION >= 87
#define CMPI_VER_87
#endif
#if CMPI_VERSION >= 86
#define CMPI_VER_86
#endif
#if CMPI_VERSION >= 85
#define CMPI_VER_85
#endif
#define CMPI_VER_80
#endif

/* Objects: each is two pointers, the implementation's own data follow behind. */

struct _CMPIString;
struct _CMPIDateTime;
struct _CMPIArray;
struct _CMPIArgs;
struct _CMPIObjectPath;
struct _CMPIInstance;
struct _CMPIConstClass;
struct _CMPIEnumeration;
struct _CMCIClient;
struct _CMCIConnection;
struct _ClientEnc;

struct _CMPIStringFT;
struct _CMPIDateTimeFT;
struct _CMPIArrayFT;
struct _CMPIArgsFT;
struct _CMPIObjectPathFT;
struct _CMPIInstanceFT;
struct _CMPIConstClassFT;
struct _CMPIEnumerationFT;
struct _CMCIClientFT;

typedef struct _CMPIString CMPIString;
typedef struct _CMPIDateTime CMPIDateTime;
typedef struct _CMPIArray CMPIArray;
typedef struct _CMPIArgs CMPIArgs;
typedef struct _CMPIObjectPath CMPIObjectPath;
typedef struct _CMPIInstance CMPIInstance;
typedef struct _CMPIConstClass CMPIConstClass;
typedef struct _CMPIEnumeration CMPIEnumeration;
typedef struct _CMCIClient CMCIClient;
typedef struct _CMCIConnection CMCIConnection;
typedef struct _ClientEnc ClientEnc;

typedef struct _CMPIStringFT CMPIStringFT;
typedef struct _CMPIDateTimeFT CMPIDateTimeFT;
typedef struct _CMPIArrayFT CMPIArrayFT;
typedef struct _CMPIArgsFT CMPIArgsFT;
typedef struct _CMPIObjectPathFT CMPIObjectPathFT;
typedef struct _CMPIInstanceFT CMPIInstanceFT;
typedef struct _CMPIConstClassFT CMPIConstClassFT;
typedef struct _CMPIEnumerationFT CMPIEnumerationFT;
typedef struct _CMCIClientFT CMCIClientFT;

/* Scalars. The 32-bit integers are `long`: 8 bytes wide on LP64. */

typedef unsigned char CMPIBoolean;
typedef unsigned short CMPIChar16;
typedef unsigned char CMPIUint8;
typedef unsigned short CMPIUint16;
typedef unsigned long CMPIUint32;
#if defined(__cplusplus)
__extension__ typedef unsigned long long CMPIUint64;
#else
typedef unsigned long long CMPIUint64;
#endif
typedef signed char CMPISint8;
typedef short CMPISint16;
typedef long CMPISint32;
#if defined(__cplusplus)
__extension__ typedef long long CMPISint64;
#else
typedef long long CMPISint64;
#endif
typedef float CMPIReal32;
typedef double CMPIReal64;

typedef unsigned int CMPICount;
typedef unsigned int CMPIFlags;
typedef unsigned short CMPIType;
typedef unsigned short CMPIValueState;

typedef struct _CMPIValuePtr {
    void* ptr;
    unsigned int length;
} CMPIValuePtr;

typedef union _CMPIValue {
    CMPIUint64 uint64;
    CMPIUint32 uint32;
    CMPIUint16 uint16;
    CMPIUint8 uint8;
    CMPISint64 sint64;
    CMPISint32 sint32;
    CMPISint16 sint16;
    CMPISint8 sint8;
    CMPIReal64 real64;
    CMPIReal32 real32;
    CMPIBoolean boolean;
    CMPIChar16 char16;

    CMPIConstClass* cls;
    CMPIInstance* inst;
    CMPIObjectPath* ref;
    CMPIArgs* args;
    CMPIEnumeration* Enum;
    CMPIArray* array;
    CMPIString* string;
    char* chars;
    CMPIDateTime* dateTime;
    CMPIValuePtr dataPtr;

    CMPISint8 Byte;
    CMPISint16 Short;
    CMPISint32 Int;
    CMPISint64 Long;
    CMPIReal32 Float;
    CMPIReal64 Double;
} CMPIValue;

typedef struct _CMPIData {
    CMPIType type;
    CMPIValueState state;
    CMPIValue value;
} CMPIData;

#ifdef CMPI_VER_87
typedef CMPIData (*CMPIAccessor)(const char*, void*);
#endif

/* CMPIType. */

#define CMPI_null 0

#define CMPI_SIMPLE 0x0002
#define CMPI_boolean 0x0002
#define CMPI_char16 0x0003

#define CMPI_REAL 0x0008
#define CMPI_real32 0x0008
#define CMPI_real64 0x000c

#define CMPI_UINT 0x0080
#define CMPI_uint8 0x0080
#define CMPI_uint16 0x0090
#define CMPI_uint32 0x00a0
#define CMPI_uint64 0x00b0
#define CMPI_SINT 0x00c0
#define CMPI_sint8 0x00c0
#define CMPI_sint16 0x00d0
#define CMPI_sint32 0x00e0
#define CMPI_sint64 0x00f0
#define CMPI_INTEGER 0x00c0

#define CMPI_ENC 0x1000
#define CMPI_instance 0x1000
#define CMPI_ref 0x1100
#define CMPI_args 0x1200
#define CMPI_class 0x1300
#define CMPI_filter 0x1400
#define CMPI_enumeration 0x1500
#define CMPI_string 0x1600
#define CMPI_chars 0x1700
#define CMPI_dateTime 0x1800
#define CMPI_ptr 0x1900
#define CMPI_charsptr 0x1a00

#define CMPI_ARRAY 0x2000

#define CMPI_SIMPLEA (CMPI_ARRAY | CMPI_SIMPLE)
#define CMPI_booleanA (CMPI_ARRAY | CMPI_boolean)
#define CMPI_char16A (CMPI_ARRAY | CMPI_char16)
#define CMPI_REALA (CMPI_ARRAY | CMPI_REAL)
#define CMPI_real32A (CMPI_ARRAY | CMPI_real32)
#define CMPI_real64A (CMPI_ARRAY | CMPI_real64)
#define CMPI_UINTA (CMPI_ARRAY | CMPI_UINT)
#define CMPI_uint8A (CMPI_ARRAY | CMPI_uint8)
#define CMPI_uint16A (CMPI_ARRAY | CMPI_uint16)
#define CMPI_uint32A (CMPI_ARRAY | CMPI_uint32)
#define CMPI_uint64A (CMPI_ARRAY | CMPI_uint64)
#define CMPI_SINTA (CMPI_ARRAY | CMPI_SINT)
#define CMPI_sint8A (CMPI_ARRAY | CMPI_sint8)
#define CMPI_sint16A (CMPI_ARRAY | CMPI_sint16)
#define CMPI_sint32A (CMPI_ARRAY | CMPI_sint32)
#define CMPI_sint64A (CMPI_ARRAY | CMPI_sint64)
#define CMPI_INTEGERA (CMPI_ARRAY | CMPI_INTEGER)
#define CMPI_ENCA (CMPI_ARRAY | CMPI_ENC)
#define CMPI_instanceA (CMPI_ARRAY | CMPI_instance)
#define CMPI_refA (CMPI_ARRAY | CMPI_ref)
#define CMPI_stringA (CMPI_ARRAY | CMPI_string)
#define CMPI_charsA (CMPI_ARRAY | CMPI_chars)
#define CMPI_dateTimeA (CMPI_ARRAY | CMPI_dateTime)
#define CMPI_ptrA (CMPI_ARRAY | CMPI_ptr)
#define CMPI_charsptrA (CMPI_ARRAY | CMPI_charsptr)

#define CMPI_keyInteger CMPI_sint64
#define CMPI_keyString CMPI_string
#define CMPI_keyBoolean CMPI_boolean
#define CMPI_keyRef CMPI_ref

#define CMPI_charString CMPI_string
#define CMPI_integerString (CMPI_string | CMPI_sint64)
#define CMPI_realString (CMPI_string | CMPI_real64)
#define CMPI_numericString (CMPI_string | CMPI_sint64 | CMPI_real64)
#define CMPI_booleanString (CMPI_string | CMPI_boolean)
#define CMPI_dateTimeString (CMPI_string | CMPI_dateTime)
#define CMPI_classNameString (CMPI_string | CMPI_class)
#define CMPI_nameString (CMPI_string | CMPI_dateTime)

#ifndef CMPI_NO_SYNONYM_SUPPORT
#define CMPI_Byte CMPI_sint8
#define CMPI_Short CMPI_sint16
#define CMPI_Int CMPI_sint32
#define CMPI_Long CMPI_sint64
#define CMPI_Float CMPI_real32
#define CMPI_Double CMPI_real64
#define CMPI_ByteA CMPI_sint8A
#define CMPI_ShortA CMPI_sint16A
#define CMPI_IntA CMPI_sint32A
#define CMPI_LongA CMPI_sint64A
#define CMPI_FloatA CMPI_real32A
#define CMPI_DoubleA CMPI_real64A
#endif

/* CMPIValueState. */

#define CMPI_goodValue 0x0000
#define CMPI_nullValue 0x0100
#define CMPI_keyValue 0x0200
#define CMPI_notFound 0x0400
#define CMPI_badValue 0x8000

/* CMPIFlags. */

#define CMPI_FLAG_LocalOnly 1
#define CMPI_FLAG_DeepInheritance 2
#define CMPI_FLAG_IncludeQualifiers 4
#define CMPI_FLAG_IncludeClassOrigin 8

#define CMPIInvocationFlags "CMPIInvocationFlags"
#define CMPIPrincipal "CMPIPrincipal"

/* Classes of servers; not used by clients. */

#define CMPI_MB_Class_0 1
#define CMPI_MB_Class_1 3
#define CMPI_MB_Class_2 7
#define CMPI_MB_Supports_PropertyMI 0x0100
#define CMPI_MB_Supports_IndicationMI 0x0200
#define CMPI_MB_Supports_IndicationPolling 0x0400
#define CMPI_MB_Supports_QueryNormalization 0x0800
#define CMPI_MB_Supports_Qualifier 0x1000
#define CMPI_MB_Supports_Schema 0x3000

/* Status: the codes of DSP0200, annex A, and a few of the interface's own. */

typedef enum _CMPIrc {
    CMPI_RC_OK = 0,
    CMPI_RC_ERR_FAILED = 1,
    CMPI_RC_ERR_ACCESS_DENIED = 2,
    CMPI_RC_ERR_INVALID_NAMESPACE = 3,
    CMPI_RC_ERR_INVALID_PARAMETER = 4,
    CMPI_RC_ERR_INVALID_CLASS = 5,
    CMPI_RC_ERR_NOT_FOUND = 6,
    CMPI_RC_ERR_NOT_SUPPORTED = 7,
    CMPI_RC_ERR_CLASS_HAS_CHILDREN = 8,
    CMPI_RC_ERR_CLASS_HAS_INSTANCES = 9,
    CMPI_RC_ERR_INVALID_SUPERCLASS = 10,
    CMPI_RC_ERR_ALREADY_EXISTS = 11,
    CMPI_RC_ERR_NO_SUCH_PROPERTY = 12,
    CMPI_RC_ERR_TYPE_MISMATCH = 13,
    CMPI_RC_ERR_QUERY_LANGUAGE_NOT_SUPPORTED = 14,
    CMPI_RC_ERR_INVALID_QUERY = 15,
    CMPI_RC_ERR_METHOD_NOT_AVAILABLE = 16,
    CMPI_RC_ERR_METHOD_NOT_FOUND = 17,
    CMPI_RC_DO_NOT_UNLOAD = 50,
    CMPI_RC_NEVER_UNLOAD = 51,
    CMPI_RC_ERROR_SYSTEM = 100,
    CMPI_RC_ERROR = 200
} CMPIrc;

typedef struct _CMPIStatus {
    CMPIrc rc;
    CMPIString* msg;
} CMPIStatus;

#ifdef __cplusplus
}
#endif

#endif
