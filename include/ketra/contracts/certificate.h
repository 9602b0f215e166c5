/** @file
 * The certificate library: the Extensions object that holds the extensions of one certificate or CRL, distinguished
 * names, DirectoryString values and serial numbers. The house rules of @ref runtime hold here too. */
#ifndef KETRA_CONTRACTS_CERTIFICATE_H
#define KETRA_CONTRACTS_CERTIFICATE_H

#include "ketra/contracts/asn1.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @addtogroup runtime
 * @{ */

/** @defgroup extensions_object Extensions object
 * The extensions of one certificate or CRL, in their order, each identifier once (RFC 5280 4.2).
 * @{ */

/** Extensions object. */
typedef struct KetraObjectRecord *KetraObject;

/** The visible head of an Extensions object; nobody but the two libraries touches it. */
struct KetraObjectRecord {
  AsnMemObject pool;     /**< everything the object holds, and what typed gets allocate, lives here */
  uintptr_t reserved[5]; /**< the certificate library's own */
  void *structuredCache; /**< head of libketra's cache chain; null when the object is created */
};

/** One extension (X.509 8, RFC 5280 4.1): what KetraObjectSetExt takes and KetraObjectSearchExtpByObjid finds. */
typedef struct KetraExtension {
  Objid objid;            /**< extnID; no arcs when one of those that were read exceeds 32 bits */
  int32_t critical;       /**< meaningful only when criticalOption is 1 */
  int32_t criticalOption; /**< 1 = the criticality is present; otherwise it is left out, the default FALSE */
  AsnEncodedData value;   /**< the content of extnValue: one encoding of the extension's type */
} KetraExtension;

/** @} */

/** @addtogroup errors
 * @{ */

/** The codes of Extensions objects: X(name, code, meaning). */
#define KETRA_CERTIFICATE_ERROR_LIST(X)                                                                  \
  X(KetraObjectError_NullParameter, 0x02500002, "a required object, structure or out-parameter is null") \
  X(KetraObjectError_Index, 0x02500003, "no extension has this index")                                   \
  X(KetraObjectError_Absent, 0x02500004, "no extension has this identifier")                             \
  X(KetraObjectError_Duplicate, 0x02500005, "an identifier occurs twice (RFC 5280 4.2)")                 \
  X(KetraObjectError_Empty, 0x02500006, "an Extensions SEQUENCE has at least one member")

/** The codes of names, DirectoryString values, serial numbers and IP addresses. */
#define X509_NAME_ERROR_LIST(X)                                                                                \
  X(X509NameError_OutOfMemory, 0x02510001, "the system could not supply memory for a name")                    \
  X(X509NameError_NullParameter, 0x02510002, "a required name, structure or out-parameter is null")            \
  X(X509NameError_Empty, 0x02510003, "a relative distinguished name has at least one attribute (X.501 9.3)")   \
  X(X509NameError_Attribute, 0x02510004, "an attribute value does not fit its attribute type")                 \
  X(X509DirStrError_Choice, 0x02510010, "no DirectoryString has this alternative")                             \
  X(X509DirStrError_Length, 0x02510011, "a DirectoryString with too few or too many characters")               \
  X(X509DirStrError_Characters, 0x02510012, "octets that are no characters of the DirectoryString's alphabet") \
  X(X509IpError_Text, 0x02510020, "no IP address, and no address with mask")                                   \
  X(X509SerialError_Form, 0x02510030, "a serial number of another form than 0 and 1, or another flag")         \
  X(X509SerialError_Integer, 0x02510031, "octets that are no INTEGER content, or more than 32 bits")           \
  X(X509IpError_Length, 0x02510021, "an iPAddress of 4 or 16 octets, or of 8 or 32 with a mask, is needed")

/** The codes of the lists above. */
enum { KETRA_CERTIFICATE_ERROR_LIST(ASN_ERROR_CONSTANT) X509_NAME_ERROR_LIST(ASN_ERROR_CONSTANT) };

/** @} */

/** @addtogroup extensions_object
 * @{ */

/** Stores a copy of the extension. An extension of the same identifier is replaced in its place, so an object never
 * holds two; the new value may be the object's own. On failure the object is unchanged. */
KETRA_RUNTIME_API int32_t KetraObjectSetExt(KetraObject object, const KetraExtension *extension, AsnErrorBlock *err);
/** Finds the object's own record of the identifier; null, with success, when there is none. The record and its octets
 * stay valid until that extension is replaced or deleted. */
KETRA_RUNTIME_API int32_t KetraObjectSearchExtpByObjid(KetraObject object, const Objid *objid,
                                                       const KetraExtension **extension, AsnErrorBlock *err);

/** @} */

/** @defgroup names Names and addresses as text
 * A Name object is one distinguished name (X.501 9, RFC 5280 4.1.2.4).
 * @{ */

/** Name object. */
typedef struct X509NameObjectRecord *X509NameObject;

/** Releases the object; a null one succeeds without effect. */
KETRA_RUNTIME_API int32_t X509NameObjectDestroy(X509NameObject name, AsnErrorBlock *err);
/** Makes a new object that shares nothing with the source; the caller destroys it. */
KETRA_RUNTIME_API int32_t X509MUtilCopyNameObject(X509NameObject *name, X509NameObject source, AsnErrorBlock *err);
/** Make the open-type element at the path and give it the encoding of the name, which is DER with both.
 * @{ */
KETRA_RUNTIME_API int32_t X509MUtilSetNameObjectDER(AsnObject object, AsnValue value, const char *path,
                                                    X509NameObject name, AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t X509MUtilSetNameObjectBER(AsnObject object, AsnValue value, const char *path,
                                                    X509NameObject name, AsnErrorBlock *err);
/** @} */
/** Make a new Name object from the encoding that the open-type element holds; the caller destroys it. It has memory of
 * its own and takes nothing from `pool`. A malformed name is refused; the DER form refuses lengths that are not DER.
 * @{ */
KETRA_RUNTIME_API int32_t X509MUtilGetNameObjectDER(AsnMemObject pool, AsnObject object, AsnValue value,
                                                    const char *path, X509NameObject *name, AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t X509MUtilGetNameObjectBER(AsnMemObject pool, AsnObject object, AsnValue value,
                                                    const char *path, X509NameObject *name, AsnErrorBlock *err);
/** @} */

/** @} */

/** @defgroup directory_string DirectoryString
 * X.520 6.1, RFC 5280 4.1.2.4.
 * @{ */

/** Alternatives, in the order of the definition. */
enum {
  X509DirStr_TeletexString = 1,   /**< an octet per character */
  X509DirStr_PrintableString = 2, /**< an octet per character: letters, digits, space and ' ( ) + , - . / : = ? */
  X509DirStr_BmpString = 3,       /**< UTF-16 code units, two octets each, most significant first */
  X509DirStr_UniversalString = 4, /**< UTF-32 code units, four octets each, most significant first */
  X509DirStr_Utf8String = 5       /**< UTF-8 */
};

/** A string of one of these types. */
typedef struct X509DirStr {
  uint32_t choice;       /**< `X509DirStr_...` */
  const uint8_t *octets; /**< as they are encoded, not NUL-terminated */
  uint32_t length;       /**< in octets */
} X509DirStr;

/** A string that may be absent. */
typedef struct X509DirStrOpt {
  X509DirStr value; /**< the string */
  int32_t option;   /**< 1 present, 0 absent */
} X509DirStrOpt;

/** Make the DirectoryString element at the path and give it a copy of the value. The Opt form makes nothing when the
 * flag is not 1. Characters are taken as they are.
 * @{ */
KETRA_RUNTIME_API int32_t X509MUtilSetDirStrDER(AsnObject object, AsnValue value, const char *path,
                                                const X509DirStr *string, AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t X509MUtilSetDirStrBER(AsnObject object, AsnValue value, const char *path,
                                                const X509DirStr *string, AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t X509MUtilSetDirStrOptDER(AsnObject object, AsnValue value, const char *path,
                                                   const X509DirStrOpt *string, AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t X509MUtilSetDirStrOptBER(AsnObject object, AsnValue value, const char *path,
                                                   const X509DirStrOpt *string, AsnErrorBlock *err);
/** @} */
/** Read the element into pool memory. The DER forms refuse lengths that are not DER and constructed strings. The Opt
 * forms report an absent element as zeros, flag 0; the others fail on it (AsnError_Absent).
 * @{ */
KETRA_RUNTIME_API int32_t X509MUtilGetDirStrDER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path,
                                                X509DirStr *string, AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t X509MUtilGetDirStrBER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path,
                                                X509DirStr *string, AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t X509MUtilGetDirStrOptDER(AsnMemObject pool, AsnObject object, AsnValue value,
                                                   const char *path, X509DirStrOpt *string, AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t X509MUtilGetDirStrOptBER(AsnMemObject pool, AsnObject object, AsnValue value,
                                                   const char *path, X509DirStrOpt *string, AsnErrorBlock *err);
/** @} */
/** Deep copies into the pool. The Opt form copies an absent value as zeros, flag 0.
 * @{ */
KETRA_RUNTIME_API int32_t X509MUtilCopyDirStrBER(AsnMemObject pool, X509DirStr *destination, const X509DirStr *source,
                                                 AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t X509MUtilCopyDirStrOptBER(AsnMemObject pool, X509DirStrOpt *destination,
                                                    const X509DirStrOpt *source, AsnErrorBlock *err);
/** @} */
/** Free what a read or copy allocated and set the value to zeros; the Opt form also clears its flag.
 * @{ */
KETRA_RUNTIME_API int32_t X509MUtilFreeDirStr(AsnMemObject pool, X509DirStr *string, AsnErrorBlock *err);
KETRA_RUNTIME_API int32_t X509MUtilFreeDirStrOpt(AsnMemObject pool, X509DirStrOpt *string, AsnErrorBlock *err);
/** @} */

/** What a length belongs to, for messages. */
enum {
  X509LengthOf_NameAssigner = 59, /**< EDIPartyName, nameAssigner */
  X509LengthOf_PartyName = 60     /**< EDIPartyName, partyName */
};

/** Success when the string has 1 to `upperBound` characters of its own alphabet: an octet each, but for BMPString (two
 * octets), UniversalString (four) and UTF8String (encoded characters). Octets that are no such characters are refused
 * (X509DirStrError_Characters): the length of such a string cannot be told. Other lengths are X509DirStrError_Length,
 * other alternatives X509DirStrError_Choice. */
KETRA_RUNTIME_API int32_t X509MUtilGetCheckLengthOfDirStr(const X509DirStr *string, uint32_t upperBound,
                                                          int32_t lengthOf, AsnErrorBlock *err);

/** @} */

/** @defgroup serial_number Certificate serial number
 * RFC 5280 4.1.2.2.
 * @{ */

/** A serial number, in one of two forms. */
typedef struct X509CertSerialNumber {
  int32_t form; /**< 0: `number` counts; 1: `octets` and `length`, the content octets of an INTEGER (X.690 8.3) */
  union {
    int32_t number;        /**< the number, form 0 */
    const uint8_t *octets; /**< content octets, form 1 */
  };
  uint32_t length;   /**< of `octets`; form 1 only */
  uint32_t reserved; /**< neither read nor written */
} X509CertSerialNumber;

/** A serial number that may be absent. */
typedef struct X509CertSerialNumberOpt {
  X509CertSerialNumber value; /**< the number */
  int32_t option;             /**< 1 present, 0 absent */
} X509CertSerialNumberOpt;

/** Refuses flags other than 0 and 1 and other forms (X509SerialError_Form), and octets that are no INTEGER content
 * (X509SerialError_Integer). Sign and length are free. */
KETRA_RUNTIME_API int32_t X509MUtilCheckCertSerialNumberOpt(const X509CertSerialNumberOpt *serial, AsnErrorBlock *err);
/** Sets the element at the path when the flag is 1; otherwise makes nothing. */
KETRA_RUNTIME_API int32_t X509MUtilSetCertSerialNumberOpt(AsnObject object, AsnValue value, const char *path,
                                                          const X509CertSerialNumberOpt *serial, AsnErrorBlock *err);
/** The number that one to four content octets of an INTEGER stand for; others are X509SerialError_Integer. */
KETRA_RUNTIME_API int32_t X509MUtilGetIntFromIntStr(const AsnOct *content, int32_t *integer, AsnErrorBlock *err);

/** @} */

/** @} */

#ifdef __cplusplus
}
#endif

#endif
