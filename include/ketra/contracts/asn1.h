/** @file
 * The ASN.1 runtime, its memory pool, check utilities and memory utilities: exactly the operations that libketra calls.
 */

/** @defgroup runtime Runtime, C interface
 * What libketra stands on (contracts/) and what the runtime offers besides (ketra_runtime.h).
 *
 * House rules, which the declarations do not repeat:
 * - Every operation returns 0 on success and non-zero on failure, with a code from the lists of @ref errors in
 * `err->code` and one trace entry appended. `err` may be null: then nothing is recorded. Operations only append to the
 * block.
 * - A null handle, structure or out-parameter is an ordinary error (`..._NullParameter`), never a crash. Out-parameters
 *   are written on success only, unless said otherwise.
 * - Lengths are octets, bit string lengths bits; both are unsigned 32-bit.
 * - One object (work object, pool, name, ...) is used by one thread at a time, for reading too. Distinct objects need
 *   no locks: they share constant data only.
 *
 * @par Element paths
 * They are NUL-terminated strings. Component names and CHOICE alternatives stand by name, members of a
 * SEQUENCE OF or SET OF by their decimal number from 1, separated by "/". The paths "/" and "" and a null path name the
 * value or element that is passed; a leading "/" starts at it. An element may stand wherever a value stands. An unknown
 * name is an error; a member number outside 1 to count names an absent element. */
#ifndef KETRA_CONTRACTS_ASN1_H
#define KETRA_CONTRACTS_ASN1_H

#include <stdint.h>

#if defined(_WIN32) && !defined(KETRA_STATIC)
#ifdef KETRA_RUNTIME_BUILD
#define KETRA_RUNTIME_API /* by the module definition file: compilers would export parts of functions too */
#else
#define KETRA_RUNTIME_API __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define KETRA_RUNTIME_API __attribute__((visibility("default")))
#else
#define KETRA_RUNTIME_API /**< marks what the runtime exports */
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** @addtogroup runtime
 * @{ */

/** @defgroup values Handles and value shapes
 * @{ */

typedef struct AsnObjectRecord *AsnObject;       /**< work object: owns every value opened in it */
typedef struct AsnValueRecord *AsnValue;         /**< work value, or an element of one */
typedef struct AsnMemObjectRecord *AsnMemObject; /**< memory pool */

/** Object identifier (X.660). */
typedef struct Objid {
  const uint32_t *arcs; /**< each has 32 bits at most */
  uint32_t count;       /**< of arcs, 2 or more */
} Objid;

/** Octet string, and any character string. */
typedef struct AsnOct {
  const uint8_t *octets; /**< may be null when there are none */
  uint32_t length;       /**< in octets */
} AsnOct;

/** One complete BER or DER encoding: identifier, length and content octets (X.690 8.1.1). */
typedef struct AsnEncodedData {
  const uint8_t *octets; /**< first identifier octet */
  uint32_t length;       /**< in octets */
} AsnEncodedData;

/** The caller's own memory, to be filled. */
typedef struct AsnBuffer {
  uint8_t *octets; /**< where to write */
  uint32_t length; /**< set to the octets written; what there is room for is not looked at */
} AsnBuffer;

/** Bit string. Bit 0 is the most significant bit of the first octet. */
typedef struct AsnBit {
  const uint8_t *octets; /**< as many as the bits need */
  uint32_t bits;         /**< length in bits */
} AsnBit;

/** GeneralizedTime (X.690 11.7): 64-bit count of microseconds since 0000-01-01T00:00:00Z, a plain value. */
typedef struct Gtime {
  int32_t high; /**< most significant 32 bits */
  uint32_t low; /**< least significant 32 bits */
} Gtime;

/** A boolean that may be absent. The checks of optional forms refuse flags other than 0 and 1 (AsnCheckError_Option).
 */
typedef struct AsnBoolOpt {
  int32_t value;  /**< 0 FALSE, 1 TRUE */
  int32_t option; /**< 1 present, 0 absent */
} AsnBoolOpt;

/** A whole number that may be absent. */
typedef struct AsnIntOpt {
  int32_t value;  /**< the number */
  int32_t option; /**< 1 present, 0 absent */
} AsnIntOpt;

/** Octets that may be absent. */
typedef struct AsnOctOpt {
  AsnOct value;   /**< the octets */
  int32_t option; /**< 1 present, 0 absent */
} AsnOctOpt;

/** Bits that may be absent. */
typedef struct AsnBitOpt {
  AsnBit value;   /**< the bits */
  int32_t option; /**< 1 present, 0 absent */
} AsnBitOpt;

/** An encoding that may be absent. */
typedef struct AsnEncodedDataOpt {
  AsnEncodedData value; /**< the encoding */
  int32_t option;       /**< 1 present, 0 absent */
} AsnEncodedDataOpt;

/** A time that may be absent. */
typedef struct GtimeOpt {
  Gtime value;    /**< the time */
  int32_t option; /**< 1 present, 0 absent */
} GtimeOpt;

#define ASN_ABSENT_LENGTH 0xFFFFFFFFu /**< what the `AsnCal...ValFld` operations report for an absent element */

/** One record of a compiled ASN.1 module. `ketra/contracts/asn1_schema.hpp` makes arrays of them at compile time. */
typedef struct AsnType {
  uint32_t descriptor; /**< from the most significant octet: tag octet, 1, class, kind */
  uint32_t flags;      /**< `ASN_FLAG_...` */
  uint32_t count;      /**< component records that follow; 1 for SEQUENCE OF and SET OF */
  int32_t link;        /**< 0, or the distance in records to the record that defines the type */
  const char *name;    /**< null for the element of a SEQUENCE OF or SET OF */
} AsnType;

#define ASN_FLAG_OWN_TAG 0x01000000u  /**< the tag octet replaces the type's own */
#define ASN_FLAG_EXPLICIT 0x02000000u /**< that tag wraps the type's own encoding */
#define ASN_FLAG_OPTIONAL 0x04000000u /**< the component may be left out */

/** @} */

/** @defgroup errors Errors
 * The caller owns the error block; operations add to it and never empty it (AsnErrorReset does). The codes by number
 * stand in docs/error-codes.md.
 * @{ */

/** Sizes of an error block. */
enum {
  ASN_TRACE_ENTRIES = 24,  /**< entries that a trace holds */
  ASN_TRACE_MESSAGE = 128, /**< octets of a message, NUL included */
  ASN_TRACE_VALUE = 24     /**< octets of a value that are copied */
};

/** What an offending value is. */
enum {
  ASN_VALUE_STRUCTURE = 0, /**< a structure, which may hold pointers, or none at all */
  ASN_VALUE_NUMBER = 1,    /**< 32 bits in the machine's own order; the entry does not tell whether they have a sign */
  ASN_VALUE_OCTETS = 2     /**< octets of a string or an encoding */
};

/** One failure of a trace. */
typedef struct AsnTraceEntry {
  const char *module;                   /**< the recording component; a string literal */
  const char *function;                 /**< the operation that failed; a string literal */
  char message[ASN_TRACE_MESSAGE];      /**< NUL-terminated copy, shortened to fit */
  const void *value;                    /**< the offending value as given, or null; never dereferenced later */
  uint32_t valueLength;                 /**< its length in octets */
  uint8_t valueOctets[ASN_TRACE_VALUE]; /**< copy of its first octets */
  uint32_t valueKind;                   /**< `ASN_VALUE_...` */
} AsnTraceEntry;

/** Code and trace of a failure. About 4 KB: do not value-initialise one, call AsnErrorReset (ketra_runtime.h), which is
 * cheap. */
typedef struct AsnErrorBlock {
  uint32_t code;                            /**< of the last component that set one; 0 after a reset */
  uint32_t count;                           /**< entries in use, innermost failure first */
  uint32_t dropped;                         /**< entries that found no room */
  AsnTraceEntry entries[ASN_TRACE_ENTRIES]; /**< the trace */
} AsnErrorBlock;

/** The codes of the decoder, the encoder and the operations on elements: X(name, code, meaning). */
#define ASN_RUNTIME_ERROR_LIST(X)                                                                    \
  X(AsnError_NullParameter, 0x02100002, "a required handle, structure or out-parameter is null")     \
  X(AsnError_OutOfMemory, 0x02100001, "the system could not supply memory for a work object")        \
  X(AsnError_Path, 0x02100010, "an element path is malformed or names no component of its type")     \
  X(AsnError_Kind, 0x02100011, "the operation does not fit the type of the element")                 \
  X(AsnError_State, 0x02100012,                                                                      \
    "the value is closed, not decoded yet, not an opened one, or decoded and not to be changed")     \
  X(AsnError_Absent, 0x02100013, "a required element is absent")                                     \
  X(AsnError_Value, 0x02100014, "a value that cannot be encoded")                                    \
  X(AsnError_Incomplete, 0x02100015, "a value lacks a mandatory component or an alternative")        \
  X(AsnError_TooLong, 0x02100016, "an encoding longer than its limit, 4294967295 octets at most")    \
  X(AsnError_Range, 0x02100017, "well formed, but beyond what the interface can carry")              \
  X(AsnError_NotDer, 0x02100018, "BER where DER lengths are required")                               \
  X(AsnError_Truncated, 0x02100020, "the encoding ends early or a length reaches beyond its bounds") \
  X(AsnError_Length, 0x02100021, "malformed length octets")                                          \
  X(AsnError_Tag, 0x02100022, "malformed identifier octets")                                         \
  X(AsnError_EndOfContents, 0x02100023, "end-of-contents octets missing or misplaced")               \
  X(AsnError_Trailing, 0x02100024, "octets after the end of the value")                              \
  X(AsnError_Component, 0x02100025, "a component is unknown, repeated, missing or out of order")     \
  X(AsnError_Nesting, 0x02100026, "nested deeper than ASN_MAX_NESTING")                              \
  X(AsnError_Segment, 0x02100027, "malformed segment of a constructed string")                       \
  X(AsnError_Boolean, 0x02100028, "malformed BOOLEAN")                                               \
  X(AsnError_Integer, 0x02100029, "malformed INTEGER or ENUMERATED")                                 \
  X(AsnError_Objid, 0x0210002A, "malformed OBJECT IDENTIFIER")                                       \
  X(AsnError_BitString, 0x0210002B, "malformed BIT STRING")                                          \
  X(AsnError_Time, 0x0210002C, "malformed GeneralizedTime")

/** The codes of memory pools. */
#define ASN_POOL_ERROR_LIST(X)                                                            \
  X(AsnMemError_OutOfMemory, 0x02200001, "the system could not supply memory for a pool") \
  X(AsnMemError_NullParameter, 0x02200002, "a required pool or pointer is null")          \
  X(AsnMemError_Limit, 0x02200003, "the pool's limit is reached")                         \
  X(AsnMemError_NotOwned, 0x02200004, "the pointer is no live allocation of the pool")

/** The codes of the check utilities. */
#define ASN_CHECK_ERROR_LIST(X)                                                     \
  X(AsnCheckError_NullParameter, 0x02300002, "the structure to check is null")      \
  X(AsnCheckError_Pointer, 0x02300003, "a null pointer with a length other than 0") \
  X(AsnCheckError_Option, 0x02300004, "a presence flag other than 0 and 1")         \
  X(AsnCheckError_Boolean, 0x02300005, "a boolean other than 0 and 1")              \
  X(AsnCheckError_Objid, 0x02300006, "arcs that no object identifier has")          \
  X(AsnCheckError_Time, 0x02300007, "a time outside the years 0000 to 9999")

/** The codes of the memory utilities. */
#define ASN_MUTIL_ERROR_LIST(X)                                              \
  X(AsnMUtilError_NullParameter, 0x02400002, "a required parameter is null") \
  X(AsnMUtilError_Pointer, 0x02400003, "a null pointer where octets are needed")

/** One row of such a list as a constant. */
#define ASN_ERROR_CONSTANT(name, code, meaning) name = code,
/** The codes of the lists above. */
enum {
  ASN_RUNTIME_ERROR_LIST(ASN_ERROR_CONSTANT) ASN_POOL_ERROR_LIST(ASN_ERROR_CONSTANT)
      ASN_CHECK_ERROR_LIST(ASN_ERROR_CONSTANT) ASN_MUTIL_ERROR_LIST(ASN_ERROR_CONSTANT)
};

/** Bound on depth. */
enum { ASN_MAX_NESTING = 64 /**< constructed levels below one value that are read, checked or rewritten */ };

/** Appends one entry to the trace; counts it as dropped when the block is full. `module` and `function` must be string
 * literals; `message` (null reads as "") and the first octets of `value` are copied. A value of four octets is taken
 * for a number, any other for a structure. Always returns 0. */
KETRA_RUNTIME_API int32_t AsnErrorInfo(const char *module, const char *function, const char *message,
                                       AsnErrorBlock *err, const void *value, uint32_t valueLength);

/** @} */

/** @defgroup work Work objects and values
 * A work object owns values that are built and encoded, or decoded and read.
 * @{ */

/** Makes a work object. The caller ends it with AsnObjectDestroy or AsnMUtilErrorFinishAsn. */
KETRA_RUNTIME_API int32_t AsnObjectCreate(AsnObject *object, AsnErrorBlock *err);
/** Releases the work object, every value in it and every element handle. */
KETRA_RUNTIME_API int32_t AsnObjectDestroy(AsnObject object, AsnErrorBlock *err);
/** Opens a new, empty value of `type`: an empty SEQUENCE or list, a CHOICE without alternative, an unset scalar. */
KETRA_RUNTIME_API int32_t AsnOpenNew(AsnObject object, const AsnType *type, AsnValue *value, AsnErrorBlock *err);
/** Opens a value bound to an encoding, which is not copied: its octets must outlive the value, not the structure that
 * `encoding` points to. AsnDecode reads it. */
KETRA_RUNTIME_API int32_t AsnOpenFromMem(AsnObject object, const AsnType *type, const AsnEncodedData *encoding,
                                         AsnValue *value, AsnErrorBlock *err);
/** Decodes the bound BER encoding (X.690 clause 8) against the type, in one pass and in time proportional to its
 * length. What is malformed is refused here, with offset and path; what is well formed but does not fit the interface
 * (an integer beyond 32 bits) fails in its getter. For the types of libketra, work memory stays below 90 octets per
 * octet of input (32-bit: 65); lists of empty members come near. `reserved` is 0; `scratch` is not used. Octets behind
 * the value are AsnError_Trailing. */
KETRA_RUNTIME_API int32_t AsnDecode(AsnObject object, AsnValue value, int32_t reserved, uint32_t *scratch,
                                    AsnErrorBlock *err);
/** Closes a value; its elements are dead from here on. */
KETRA_RUNTIME_API int32_t AsnClose(AsnObject object, AsnValue value, AsnErrorBlock *err);

/** @} */

/** @defgroup elements Elements
 * @{ */

/** Makes the element at the path and what is missing on the way; an existing element is returned as it is. Of list
 * members only number count + 1 can be made, of elements ASN_MAX_NESTING in one call (AsnError_Nesting). Another
 * alternative replaces the one a CHOICE holds. Values that were decoded cannot be changed, and nothing is made in them
 * (AsnError_State). */
KETRA_RUNTIME_API int32_t AsnMakeElement(AsnObject object, AsnValue value, const char *path, AsnValue *element,
                                         AsnErrorBlock *err);
/** Finds an element; an absent one is success with a null element. */
KETRA_RUNTIME_API int32_t AsnGetElement(AsnObject object, AsnValue value, const char *path, AsnValue *element,
                                        AsnErrorBlock *err);
/** Number of members of the SEQUENCE OF or SET OF at the path; an absent one is AsnError_Absent. */
KETRA_RUNTIME_API int32_t AsnCalCountOfSequence(AsnObject object, AsnValue value, const char *path, uint32_t *count,
                                                AsnErrorBlock *err);
/** The alternative that the CHOICE at the path holds, numbered from 1 in the order of its definition. */
KETRA_RUNTIME_API int32_t AsnCalNumberOfChoice(AsnObject object, AsnValue value, const char *path, uint32_t *number,
                                               AsnErrorBlock *err);
/** Address and length, inside the bound encoding, of the content octets of the element at the path; of an open type,
 * of the complete encoding that it holds. An absent element gives null and ASN_ABSENT_LENGTH with success. A string in
 * segments has no such place and fails (AsnError_Kind). */
KETRA_RUNTIME_API int32_t AsnCalAddressOfValFld(AsnObject object, AsnValue value, const char *path,
                                                const uint8_t **address, uint32_t *length, AsnErrorBlock *err);
/** The length that AsnGetEncodedDataDER and ...BER need at most for the element, or ASN_ABSENT_LENGTH. */
KETRA_RUNTIME_API int32_t AsnCalLengthOfValFld(AsnObject object, AsnValue value, const char *path, uint32_t *length,
                                               AsnErrorBlock *err);

/** @} */

/** @defgroup setters Typed setters
 * They make the element at the path and give it a copy of the value. What cannot be encoded is AsnError_Value, an
 * element of another type AsnError_Kind.
 * @{ */

/** BOOLEAN: 0 or 1. */
KETRA_RUNTIME_API int32_t AsnSetBoolDER(AsnObject object, AsnValue value, const char *path, int32_t boolean,
                                        AsnErrorBlock *err);
/** INTEGER or ENUMERATED. */
KETRA_RUNTIME_API int32_t AsnSetIntDER(AsnObject object, AsnValue value, const char *path, int32_t integer,
                                       AsnErrorBlock *err);
/** OBJECT IDENTIFIER; both forms do the same.
 * @{ */
KETRA_RUNTIME_API int32_t AsnSetObjidDER(AsnObject object, AsnValue value, const char *path, const Objid *objid,
                                         AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t AsnSetObjidBER(AsnObject object, AsnValue value, const char *path, const Objid *objid,
                                         AsnErrorBlock *err);
/** @} */
/** OCTET STRING or character string; for an INTEGER handled as octets, its content octets (X.690 8.3). Both forms do
 * the same.
 * @{ */
KETRA_RUNTIME_API int32_t AsnSetOctDER(AsnObject object, AsnValue value, const char *path, const AsnOct *octets,
                                       AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t AsnSetOctBER(AsnObject object, AsnValue value, const char *path, const AsnOct *octets,
                                       AsnErrorBlock *err);
/** @} */
/** Named bits: trailing zero bits are left out (X.690 11.2.2). A plain bit string goes in as encoded data. Both forms
 * do the same.
 * @{ */
KETRA_RUNTIME_API int32_t AsnSetBitDER(AsnObject object, AsnValue value, const char *path, const AsnBit *bits,
                                       AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t AsnSetConstBitDER(AsnObject object, AsnValue value, const char *path, const AsnBit *bits,
                                            AsnErrorBlock *err);
/** @} */
/** GeneralizedTime, in UTC, with as many digits of fraction as it takes (X.690 11.7). */
KETRA_RUNTIME_API int32_t AsnSetGtimeDER(AsnObject object, AsnValue value, const char *path, const Gtime *time,
                                         AsnErrorBlock *err);
/** Open types only. Takes exactly one complete encoding. The BER form keeps its octets; the DER form keeps octets whose
 * lengths are DER and rewrites other lengths to the definite minimal form (X.690 10.1).
 * @{ */
KETRA_RUNTIME_API int32_t AsnSetEncodedDataDER(AsnObject object, AsnValue value, const char *path,
                                               const AsnEncodedData *encoding, AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t AsnSetEncodedDataBER(AsnObject object, AsnValue value, const char *path,
                                               const AsnEncodedData *encoding, AsnErrorBlock *err);
/** @} */

/** @} */

/** @defgroup getters Typed getters
 * An element of another type is AsnError_Kind, an absent one AsnError_Absent unless said otherwise, and a value beyond
 * 32 bits AsnError_Range.
 * @{ */

/** INTEGER or ENUMERATED. */
KETRA_RUNTIME_API int32_t AsnGetIntBER(AsnObject object, AsnValue value, const char *path, int32_t *integer,
                                       AsnErrorBlock *err);
/** An absent element gives {0, 0}.
 * @{ */
KETRA_RUNTIME_API int32_t AsnGetOptBoolBER(AsnObject object, AsnValue value, const char *path, AsnBoolOpt *boolean,
                                           AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t AsnGetOptIntBER(AsnObject object, AsnValue value, const char *path, AsnIntOpt *integer,
                                          AsnErrorBlock *err);
/** @} */
/** The arcs lie in a buffer of the calling thread (128 arcs; more is AsnError_Range) until its next call of this. */
KETRA_RUNTIME_API int32_t AsnGetObjidBER(AsnObject object, AsnValue value, const char *path, Objid *objid,
                                         AsnErrorBlock *err);
/** Copies the complete encoding of the element (of an EXPLICIT component, of the value that its tag wraps) into
 * `buffer->octets`, which must hold what AsnCalLengthOfValFld tells, and sets `buffer->length`. The DER form refuses
 * lengths that are not DER.
 * @{ */
KETRA_RUNTIME_API int32_t AsnGetEncodedDataDER(AsnObject object, AsnValue value, const char *path, AsnBuffer *buffer,
                                               AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t AsnGetEncodedDataBER(AsnObject object, AsnValue value, const char *path, AsnBuffer *buffer,
                                               AsnErrorBlock *err);
/** @} */

/** @} */

/** @defgroup pool Memory pool
 * What an object holds, and what operations return, lives in a pool; all of it ends with the pool.
 * @{ */

/** Makes a pool without limit; the caller destroys it. */
KETRA_RUNTIME_API int32_t AsnMemObjectCreate(AsnMemObject *pool, AsnErrorBlock *err);
/** Memory aligned for pointers and 64-bit integers, not zeroed; lives until it is freed or the pool is destroyed. */
KETRA_RUNTIME_API int32_t AsnMemObjectMalloc(AsnMemObject pool, uint32_t size, void **memory, AsnErrorBlock *err);
/** Gives a live allocation back to the pool. Null is success; what the pool does not own is AsnMemError_NotOwned. */
KETRA_RUNTIME_API int32_t AsnMemObjectFree(AsnMemObject pool, const void *memory, AsnErrorBlock *err);
/** Gives all memory back to the system. A null pool is AsnMemError_NullParameter. */
KETRA_RUNTIME_API int32_t AsnMemObjectDestroy(AsnMemObject pool, AsnErrorBlock *err);

/** @} */

/** @defgroup utilities Memory utilities
 * Results lie in the pool given first. Of an operation that fails nothing stays there.
 * @{ */

/** Encode the value (path "/" or null) or the element at the path. DER: X.690 clauses 10 and 11; whether a bit string
 * has named bits, and so no trailing zeros, is known to its setter only. BER: the same octets, except that SET OF
 * members keep their order and open types their octets.
 * @{ */
KETRA_RUNTIME_API int32_t AsnMUtilEncodeDER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path,
                                            AsnEncodedData *encoding, AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t AsnMUtilEncodeBER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path,
                                            AsnEncodedData *encoding, AsnErrorBlock *err);
/** @} */

/** Read an element into pool memory. The DER forms refuse lengths that are not DER and constructed strings. The Opt
 * forms report an absent element as {null, 0}, flag 0; the others fail on it (AsnError_Absent).
 * @{ */
KETRA_RUNTIME_API int32_t AsnMUtilGetObjidDER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path,
                                              Objid *objid, AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t AsnMUtilGetObjidBER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path,
                                              Objid *objid, AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t AsnMUtilGetObjidConstBER(AsnMemObject pool, AsnObject object, AsnValue value,
                                                   const char *path, Objid *objid, AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t AsnMUtilGetOctDER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path,
                                            AsnOct *octets, AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t AsnMUtilGetOctBER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path,
                                            AsnOct *octets, AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t AsnMUtilGetOctOptBER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path,
                                               AsnOctOpt *octets, AsnErrorBlock *err);
/** @} */
/** Delivers as many bits as `bits->bits` says before the call; bits that the encoding lacks read as 0, bits beyond are
 * not delivered. */
KETRA_RUNTIME_API int32_t AsnMUtilGetBitConstBER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path,
                                                 AsnBit *bits, AsnErrorBlock *err);
/** Read a time, which takes no pool memory. The Opt form reports an absent element as zeros, flag 0.
 * @{ */
KETRA_RUNTIME_API int32_t AsnMUtilGetGtimeBER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path,
                                              Gtime *time, AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t AsnMUtilGetGtimeOptBER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path,
                                                 GtimeOpt *time, AsnErrorBlock *err);
/** @} */
/** Read the complete encoding of an element into pool memory. An absent one is {null, 0}, flag 0. The DER form refuses
 * lengths that are not DER.
 * @{ */
KETRA_RUNTIME_API int32_t AsnMUtilGetEncodedDataOptDER(AsnMemObject pool, AsnObject object, AsnValue value,
                                                       const char *path, AsnEncodedDataOpt *encoding,
                                                       AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t AsnMUtilGetEncodedDataOptBER(AsnMemObject pool, AsnObject object, AsnValue value,
                                                       const char *path, AsnEncodedDataOpt *encoding,
                                                       AsnErrorBlock *err);
/** @} */

/** Deep copies. The BER forms take the octets as they are; the DER form refuses what is not exactly one complete
 * encoding with DER lengths.
 * @{ */
KETRA_RUNTIME_API int32_t AsnMUtilCopyEncodedDataDER(AsnMemObject pool, AsnEncodedData *destination,
                                                     const AsnEncodedData *source, AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t AsnMUtilCopyEncodedDataBER(AsnMemObject pool, AsnEncodedData *destination,
                                                     const AsnEncodedData *source, AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t AsnMUtilCopyEncodedDataOptBER(AsnMemObject pool, AsnEncodedDataOpt *destination,
                                                        const AsnEncodedDataOpt *source, AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t AsnMUtilCopyObjidBER(AsnMemObject pool, Objid *destination, const Objid *source,
                                               AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t AsnMUtilCopyOctBER(AsnMemObject pool, AsnOct *destination, const AsnOct *source,
                                             AsnErrorBlock *err);
/** @} */

/** Free what a read or copy allocated and set the field to {null, 0}; the optional form also clears its flag.
 * @{ */
KETRA_RUNTIME_API int32_t AsnMUtilFreeObjid(AsnMemObject pool, Objid *objid, AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t AsnMUtilFreeOct(AsnMemObject pool, AsnOct *octets, AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t AsnMUtilFreeEncodedData(AsnMemObject pool, AsnEncodedData *encoding, AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t AsnMUtilFreeEncodedDataOpt(AsnMemObject pool, AsnEncodedDataOpt *encoding,
                                                     AsnErrorBlock *err);
/** @} */

/** Releases a work object on a failure path, with the value when one is open. Always returns 0. */
KETRA_RUNTIME_API int32_t AsnMUtilErrorFinishAsn(AsnObject object, AsnValue value);

/** @} */

/** @defgroup checks Check utilities
 * They succeed when the caller's structure is well formed. Of an optional form only a present value is looked at.
 * @{ */

/** Two arcs or more, the first 0, 1 or 2, the second below 40 under 0 and 1 (X.660); else AsnCheckError_Objid. */
KETRA_RUNTIME_API int32_t AsnCheckObjidBER(const Objid *objid, AsnErrorBlock *err);
/** A pointer that is null only when the length is 0 (AsnCheckError_Pointer); an optional flag of 0 or 1
 * (AsnCheckError_Option).
 * @{ */
KETRA_RUNTIME_API int32_t AsnCheckOctBER(const AsnOct *octets, AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t AsnCheckOctOptBER(const AsnOctOpt *octets, AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t AsnCheckBitBER(const AsnBit *bits, AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t AsnCheckBitOptBER(const AsnBitOpt *bits, AsnErrorBlock *err);
/** @} */
/** A flag of 0 or 1 (AsnCheckError_Option) and a boolean of 0 or 1 (AsnCheckError_Boolean). */
KETRA_RUNTIME_API int32_t AsnCheckBoolOptBER(const AsnBoolOpt *boolean, AsnErrorBlock *err);
/** A flag of 0 or 1. */
KETRA_RUNTIME_API int32_t AsnCheckIntOptBER(const AsnIntOpt *integer, AsnErrorBlock *err);
/** A time of the years 0000 to 9999 (AsnCheckError_Time).
 * @{ */
KETRA_RUNTIME_API int32_t AsnCheckGtimeBER(const Gtime *time, AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t AsnCheckGtimeOptBER(const GtimeOpt *time, AsnErrorBlock *err);
/** @} */
/** Exactly one complete BER encoding; else the code that the decoder would set, or AsnCheckError_Pointer for null.
 * @{ */
KETRA_RUNTIME_API int32_t AsnCheckEncodedDataBER(const AsnEncodedData *encoding, AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t AsnCheckEncodedDataOptBER(const AsnEncodedDataOpt *encoding, AsnErrorBlock *err);
/** @} */

/** @} */

/** @} */

#ifdef __cplusplus
}
#endif

#endif
