/** @file
 * What the runtime offers beyond the operations that libketra calls: Extensions objects from and to their encoding,
 * bounded memory, readable error traces, times and identifiers as text. The house rules of @ref runtime hold: one
 * object or pool is used by one thread at a time, for reading too, and distinct ones need no locks. */
#ifndef KETRA_RUNTIME_H
#define KETRA_RUNTIME_H

#include "ketra/contracts/asn1.h"
#include "ketra/contracts/attributes.h"
#include "ketra/contracts/certificate.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @addtogroup runtime
 * @{ */

/** @addtogroup errors
 * @{ */

/** Empties a block: code, count and dropped, nothing else. */
KETRA_RUNTIME_API void AsnErrorReset(AsnErrorBlock *err);

/** What a code means. */
typedef struct AsnErrorMeaning {
  uint32_t code;       /**< the code */
  const char *meaning; /**< a phrase, NUL-terminated */
} AsnErrorMeaning;

/** Renders code and trace as lines that a person can read, innermost failure first; what is not printable is escaped.
 * An offending number follows its message in decimal (a negative one, which may be a large length, in hex too), octets
 * follow in hex; structures, which may hold pointers, are left out.
 * `meanings` (may be null) explains codes of other components. Writes at most `size` octets, NUL included, and returns
 * the length of the whole text without the NUL, so a call with size 0 measures. A null block has the empty text. */
KETRA_RUNTIME_API uint32_t AsnErrorText(const AsnErrorBlock *err, const AsnErrorMeaning *meanings,
                                        uint32_t meaningCount, char *text, uint32_t size);

/** @} */

/** @addtogroup pool
 * @{ */

/** Bounds the octets that the pool holds from the system, its own record included; 0 lifts the bound. An allocation
 * that would exceed it fails with AsnMemError_Limit; what is already held stays. Freed memory serves later allocations
 * of about the same size. Lists of freed blocks (some 400 octets) are not counted. The limit bounds what results cost,
 * not the work memory of a decoder: see AsnDecode. */
KETRA_RUNTIME_API int32_t AsnMemObjectSetLimit(AsnMemObject pool, uint64_t octets, AsnErrorBlock *err);
/** Live allocations of the pool: octets as they were asked for, and blocks. */
KETRA_RUNTIME_API int32_t AsnMemObjectUsage(AsnMemObject pool, uint64_t *octets, uint32_t *blocks, AsnErrorBlock *err);

/** @} */

/** @addtogroup extensions_object
 * @{ */

/** Makes an object without extensions; the caller destroys it. */
KETRA_RUNTIME_API int32_t KetraObjectCreate(KetraObject *object, AsnErrorBlock *err);
/** Releases the object and its pool; a null object succeeds without effect. */
KETRA_RUNTIME_API int32_t KetraObjectDestroy(KetraObject object, AsnErrorBlock *err);
/** Replaces the contents of the object by the members of an Extensions SEQUENCE (RFC 5280 4.1), which is copied. An
 * identifier that occurs twice is KetraObjectError_Duplicate, an empty SEQUENCE KetraObjectError_Empty; on failure the
 * object is unchanged. An explicit critical FALSE is kept as {0, present}. An extension whose identifier has an arc
 * beyond 32 bits is kept too: it is counted, reached by index and written back, but has no arcs to be found by. Values
 * are not looked into. */
KETRA_RUNTIME_API int32_t KetraObjectSetPduBER(KetraObject object, const AsnEncodedData *encoding, AsnErrorBlock *err);
/** Encodes the extensions, in their order, as one Extensions SEQUENCE in the object's pool; the caller frees it there
 * or leaves it to the object's end. Criticality is written only when it is TRUE. An object without extensions has no
 * encoding (KetraObjectError_Empty). */
KETRA_RUNTIME_API int32_t KetraObjectGetPduDER(KetraObject object, AsnEncodedData *encoding, AsnErrorBlock *err);
/** Number of extensions. */
KETRA_RUNTIME_API int32_t KetraObjectCalExt(KetraObject object, uint32_t *count, AsnErrorBlock *err);
/** The extension at an index from 0, in encoding order, as KetraObjectSearchExtpByObjid finds it; one whose identifier
 * has an arc beyond 32 bits has zero arcs in its record. Visiting one after
 * the other takes constant time each; a jump takes as long as its distance. No such index is KetraObjectError_Index. */
KETRA_RUNTIME_API int32_t KetraObjectGetExtpByIndex(KetraObject object, uint32_t index,
                                                    const KetraExtension **extension, AsnErrorBlock *err);
/** Removes an extension; those behind it move up by one index. An absent one is KetraObjectError_Absent. */
KETRA_RUNTIME_API int32_t KetraObjectDeleteExt(KetraObject object, const Objid *objid, AsnErrorBlock *err);
/** The object's pool: to bound it, and to free what typed gets put there. */
KETRA_RUNTIME_API int32_t KetraObjectGetMemObject(KetraObject object, AsnMemObject *pool, AsnErrorBlock *err);

/** @} */

/** @addtogroup names
 * @{ */

/** Makes a name without relative distinguished names; the caller destroys it (X509NameObjectDestroy). */
KETRA_RUNTIME_API int32_t X509NameObjectCreate(X509NameObject *name, AsnErrorBlock *err);
/** Replaces the name by the one that is encoded: RDNSequence (RFC 5280 4.1.2.4). On failure the object is unchanged. */
KETRA_RUNTIME_API int32_t X509NameObjectSetPduBER(X509NameObject name, const AsnEncodedData *encoding,
                                                  AsnErrorBlock *err);
/** The name in DER; inside attribute values only lengths are made so. The octets belong to the object and live until it
 * is changed or destroyed. */
KETRA_RUNTIME_API int32_t X509NameObjectGetPduDER(X509NameObject name, AsnEncodedData *encoding, AsnErrorBlock *err);

/** One attribute of a relative distinguished name. */
typedef struct X509NameAttribute {
  Objid type;       /**< attribute type */
  X509DirStr value; /**< its value, not empty */
} X509NameAttribute;

/** Appends one relative distinguished name of `count` attributes, 1 or more. The attribute types whose syntax is
 * IA5String (emailAddress, domainComponent) are written as that: their value must be ASCII, given as PrintableString
 * or UTF8String. Empty values and characters outside the alphabet of the given type are refused; that RFC 5280 wants
 * PrintableString for countryName, serialNumber and dnQualifier is the caller's to see to. On failure the object is
 * unchanged. */
KETRA_RUNTIME_API int32_t X509NameObjectAppendRdn(X509NameObject name, const X509NameAttribute *attributes,
                                                  uint32_t count, AsnErrorBlock *err);
/** The text form of RFC 4514, most specific first: `CN=Steve,O=Example\, Inc.,C=GB`. The keywords are those of RFC 4514
 * 3 (CN, L, ST, O, OU, C, STREET, DC, UID) and some more of common use; other types stand in dotted form with "#" and
 * the value in hex. The text is UTF-8; control characters are escaped. Writes at most `size` octets, NUL included, and
 * sets `length` (may be null) to the length of the whole text without the NUL; a text that does not fit is an error
 * (AsnError_Range) that still sets `length`. */
KETRA_RUNTIME_API int32_t X509NameObjectGetText(X509NameObject name, char *text, uint32_t size, uint32_t *length,
                                                AsnErrorBlock *err);
/** Sets `equal` to 1 when the names match (RFC 5280 7.1): the same relative distinguished names in the same order,
 * their attributes in any order. Strings match whatever their type, without regard to the case of ASCII letters, to
 * leading and trailing space and to the length of space between; other values match octet by octet. */
KETRA_RUNTIME_API int32_t X509NameObjectCompare(X509NameObject name, X509NameObject other, int32_t *equal,
                                                AsnErrorBlock *err);

/** The characters of the string in UTF-8. Writes at most `size` octets, NUL included, and sets `length` (may be null)
 * to the length of the whole text without the NUL; a text that does not fit is an error (AsnError_Range) that still
 * sets `length`. Octets that are no characters are X509DirStrError_Characters. */
KETRA_RUNTIME_API int32_t X509DirStrToText(const X509DirStr *string, char *text, uint32_t size, uint32_t *length,
                                           AsnErrorBlock *err);

/** An iPAddress in text form: "192.0.2.1", "2001:db8::1" (RFC 5952); with a mask, as in name constraints,
 * "192.0.2.0/24" or, when the mask is not contiguous, "192.0.2.0/255.0.255.0". Needs at most 80 octets, NUL included. A
 * length of other than 4, 16, 8 or 32 octets is X509IpError_Length. */
KETRA_RUNTIME_API int32_t X509IpAddressToText(const AsnOct *address, char *text, uint32_t size, AsnErrorBlock *err);
/** Reads any of these forms (and "2001:db8::/ffff:ffff::") into `octets` and sets `length` to 4, 16, 8 or 32. Other
 * texts are X509IpError_Text. */
KETRA_RUNTIME_API int32_t X509IpAddressFromText(const char *text, uint8_t octets[32], uint32_t *length,
                                                AsnErrorBlock *err);

/** @} */

/** @addtogroup attributes
 * @{ */

/** Makes an object without attributes; the caller destroys it. */
KETRA_RUNTIME_API int32_t X509AttributesObjectCreate(X509AttributesObject *attributes, AsnErrorBlock *err);
/** Releases the object; a null one succeeds without effect. */
KETRA_RUNTIME_API int32_t X509AttributesObjectDestroy(X509AttributesObject attributes, AsnErrorBlock *err);
/** Appends an attribute of `count` values, 1 or more, each one complete encoding. They are copied and written as DER:
 * as a set, in its order. On failure the object is unchanged. */
KETRA_RUNTIME_API int32_t X509AttributesObjectAppend(X509AttributesObject attributes, const Objid *type,
                                                     const AsnEncodedData *values, uint32_t count, AsnErrorBlock *err);
/** Number of attributes. */
KETRA_RUNTIME_API int32_t X509AttributesObjectCal(X509AttributesObject attributes, uint32_t *count, AsnErrorBlock *err);
/** The type of the attribute at an index from 0 (beyond the last: X509AttributesError_Index), and the number of its
 * values. The arcs belong to the object and live until it is changed or destroyed. */
KETRA_RUNTIME_API int32_t X509AttributesObjectGetType(X509AttributesObject attributes, uint32_t index, Objid *type,
                                                      uint32_t *valueCount, AsnErrorBlock *err);
/** The value at an index from 0 of the attribute at an index: one complete encoding that belongs to the object. */
KETRA_RUNTIME_API int32_t X509AttributesObjectGetValue(X509AttributesObject attributes, uint32_t index,
                                                       uint32_t valueIndex, AsnEncodedData *value, AsnErrorBlock *err);

/** @} */

/** @defgroup text Times and identifiers as text
 * Times lie in the years 0000 to 9999; others are AsnError_Range, a text that is no time AsnError_Time.
 * @{ */

/** ISO 8601, "2026-01-31T23:59:59Z", with up to six digits of fraction; read with an offset ("+01:00") too. The text
 * form needs 28 octets, NUL included.
 * @{ */
KETRA_RUNTIME_API int32_t GtimeFromText(const char *text, Gtime *time, AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t GtimeToText(const Gtime *time, char *text, uint32_t size, AsnErrorBlock *err);
/** @} */
/** Seconds since 1970-01-01T00:00:00Z and microseconds 0 to 999999 after that second.
 * @{ */
KETRA_RUNTIME_API int32_t GtimeFromUnix(int64_t seconds, uint32_t microseconds, Gtime *time, AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t GtimeToUnix(const Gtime *time, int64_t *seconds, uint32_t *microseconds, AsnErrorBlock *err);
/** @} */

/** Reads "2.5.29.19" into the pool. Other texts are AsnError_Objid, arcs beyond 32 bits AsnError_Range. */
KETRA_RUNTIME_API int32_t ObjidFromText(AsnMemObject pool, const char *text, Objid *objid, AsnErrorBlock *err);
/** The dotted form. Writes at most `size` octets, NUL included, and sets `length` (may be null) to the length of the
 * whole text without the NUL; a text that does not fit is an error (AsnError_Range) that still sets `length`. */
KETRA_RUNTIME_API int32_t ObjidToText(const Objid *objid, char *text, uint32_t size, uint32_t *length,
                                      AsnErrorBlock *err);

/** @} */

/** @addtogroup work
 * @{ */

/** SEQUENCE OF open type: opens any list, so that it can be walked member by member. */
extern KETRA_RUNTIME_API const AsnType AsnType_SequenceOfAny[];

/** @} */

/** @} */

#ifdef __cplusplus
}
#endif

#endif
