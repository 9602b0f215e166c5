/* The certificate library: the Extensions object that holds the extensions of one certificate or CRL. The house rules
 * of asn1.h hold here too. */
#ifndef KETRA_CONTRACTS_CERTIFICATE_H
#define KETRA_CONTRACTS_CERTIFICATE_H

#include "contracts/asn1.h"

#ifdef __cplusplus
extern "C" {
#endif

typedef struct KetraObjectRecord *KetraObject; /* Extensions object */

/* The visible head of an Extensions object; nobody but the two libraries touches it. */
struct KetraObjectRecord {
  AsnMemObject pool;     /* everything the object holds, and what typed gets allocate, lives here */
  uintptr_t reserved[5]; /* the certificate library's own */
  void *structuredCache; /* head of libketra's cache chain; null when the object is created */
};

/* One extension (X.509 8, RFC 5280 4.1): what KetraObjectSetExt takes and KetraObjectSearchExtpByObjid finds. */
typedef struct KetraExtension {
  Objid objid;
  int32_t critical;       /* meaningful only when criticalOption is 1 */
  int32_t criticalOption; /* 1 = the criticality is present; otherwise it is left out, the default FALSE */
  AsnEncodedData value;   /* the content of extnValue: one encoding of the extension's type */
} KetraExtension;

#define KETRA_CERTIFICATE_ERROR_LIST(X)                                                                  \
  X(KetraObjectError_NullParameter, 0x02500002, "a required object, structure or out-parameter is null") \
  X(KetraObjectError_Index, 0x02500003, "no extension has this index")                                   \
  X(KetraObjectError_Absent, 0x02500004, "no extension has this identifier")                             \
  X(KetraObjectError_Duplicate, 0x02500005, "an identifier occurs twice (RFC 5280 4.2)")                 \
  X(KetraObjectError_Empty, 0x02500006, "an Extensions SEQUENCE has at least one member")

enum { KETRA_CERTIFICATE_ERROR_LIST(ASN_ERROR_CONSTANT) };

/* Stores a copy of the extension. An extension of the same identifier is replaced in its place, so an object never
 * holds two; the new value may be the object's own. On failure the object is unchanged. */
KETRA_RUNTIME_API int32_t KetraObjectSetExt(KetraObject object, const KetraExtension *extension, AsnErrorBlock *err);
/* Finds the object's own record of the identifier; null, with success, when there is none. The record and its octets
 * stay valid until that extension is replaced or deleted. */
KETRA_RUNTIME_API int32_t KetraObjectSearchExtpByObjid(KetraObject object, const Objid *objid,
                                                       const KetraExtension **extension, AsnErrorBlock *err);

#ifdef __cplusplus
}
#endif

#endif
