/* libketra: typed access to the standard extensions of X.509 version 3 certificates and version 2 CRLs (X.509 9,
 * RFC 5280 4.2 and 5.2).
 *
 * Conventions, which the declarations below do not repeat:
 * - Every operation but KetraVersion returns 0 on success; otherwise -1 or the result of the operation that failed,
 *   with a code (ketra_errors.h, contracts/asn1.h, contracts/certificate.h) and a trace, innermost cause first, in
 *   `err`, which may be null. A null handle, structure or out-parameter is KetraError_NullParameter.
 * - A set checks the whole structure first and stores last: a failed set leaves the Extensions object unchanged. The
 *   structure is only read and may be released after the call.
 * - `critical` 1 marks the extension critical; every other value leaves it non-critical.
 * - A get of an extension that is not there is KetraError_ExtensionAbsent. Octets and arcs that a get returns are
 *   allocated in the pool of the Extensions object (KetraObjectGetMemObject) and live until they are freed there or
 *   the object is destroyed. After a failure, fields that were read before it keep what was read.
 * - An Extensions object is used by one thread at a time, for gets too. Distinct objects share nothing. */
#ifndef KETRA_H
#define KETRA_H

#include "contracts/asn1.h"
#include "contracts/certificate.h"

#if defined(_WIN32) && !defined(KETRA_STATIC)
#ifdef KETRA_BUILD
#define KETRA_API __declspec(dllexport)
#else
#define KETRA_API __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define KETRA_API __attribute__((visibility("default")))
#else
#define KETRA_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* Points `banner` at two lines of text: description, version and build date; holder of the rights. The text is
 * constant. Always returns 0. */
KETRA_API int32_t KetraVersion(const char **banner);

/* ---- Identifiers (id-ce, 2.5.29) --------------------------------------------------------------------------------- */

extern KETRA_API const Objid X509Objid_AuthorityKeyId;             /* 2.5.29.35 */
extern KETRA_API const Objid X509Objid_SubjectKeyId;               /* 2.5.29.14 */
extern KETRA_API const Objid X509Objid_KeyUsage;                   /* 2.5.29.15 */
extern KETRA_API const Objid X509Objid_ExtKeyUsage;                /* 2.5.29.37 */
extern KETRA_API const Objid X509Objid_PrivateKeyUsagePeriod;      /* 2.5.29.16 */
extern KETRA_API const Objid X509Objid_CertPolicies;               /* 2.5.29.32 */
extern KETRA_API const Objid X509Objid_SubjectAltName;             /* 2.5.29.17 */
extern KETRA_API const Objid X509Objid_IssuerAltName;              /* 2.5.29.18 */
extern KETRA_API const Objid X509Objid_BasicConstraints;           /* 2.5.29.19 */
extern KETRA_API const Objid X509Objid_CRLNumber;                  /* 2.5.29.20 */
extern KETRA_API const Objid X509Objid_PolicyMappings;             /* 2.5.29.33 */
extern KETRA_API const Objid X509Objid_SubjectDirectoryAttributes; /* 2.5.29.9 */
extern KETRA_API const Objid X509Objid_NameConstraints;            /* 2.5.29.30 */
extern KETRA_API const Objid X509Objid_PolicyConstraints;          /* 2.5.29.36 */
extern KETRA_API const Objid X509Objid_ReasonCode;                 /* 2.5.29.21 */
extern KETRA_API const Objid X509Objid_InstructionCode;            /* 2.5.29.23 */
extern KETRA_API const Objid X509Objid_InvalidityDate;             /* 2.5.29.24 */
extern KETRA_API const Objid X509Objid_CRLDistributionPoints;      /* 2.5.29.31 */
extern KETRA_API const Objid X509Objid_IssuingDistributionPoint;   /* 2.5.29.28 */
extern KETRA_API const Objid X509Objid_CertIssuer;                 /* 2.5.29.29 */
extern KETRA_API const Objid X509Objid_DeltaCRLIndicator;          /* 2.5.29.27 */

/* ---- Criticality ------------------------------------------------------------------------------------------------- */

/* Each sets `critical` to 1 when the stored extension is marked critical and to 0 when it is not. An absent extension
 * is KetraError_CriticalAbsent. */
KETRA_API int32_t KetraObjectSgetBasicConstraintsCritical(KetraObject extensions, int32_t *critical,
                                                          AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetKeyUsageCritical(KetraObject extensions, int32_t *critical, AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetExtKeyUsageCritical(KetraObject extensions, int32_t *critical, AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetCertPoliciesCritical(KetraObject extensions, int32_t *critical, AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetSubjectAltNameCritical(KetraObject extensions, int32_t *critical, AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetIssuerAltNameCritical(KetraObject extensions, int32_t *critical, AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetNameConstraintsCritical(KetraObject extensions, int32_t *critical, AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetPolicyConstraintsCritical(KetraObject extensions, int32_t *critical,
                                                           AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetCRLDistributionPointsCritical(KetraObject extensions, int32_t *critical,
                                                               AsnErrorBlock *err);

/* ---- BasicConstraints (RFC 5280 4.2.1.9) ------------------------------------------------------------------------- */

typedef struct KetraBasicConstraints {
  AsnBoolOpt cA;               /* the subject is a certification authority */
  AsnIntOpt pathLenConstraint; /* intermediate certificates that may follow, 0 or more */
} KetraBasicConstraints;

/* No default is applied either way: a present FALSE is written, a `cA` left out is read as absent. A negative
 * pathLenConstraint is refused by the set and by the get, which then has written it. */
KETRA_API int32_t KetraObjectSsetBasicConstraints(KetraObject extensions, int32_t critical,
                                                  const KetraBasicConstraints *value, AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetBasicConstraints(KetraObject extensions, KetraBasicConstraints *value,
                                                  AsnErrorBlock *err);

/* ---- KeyUsage (RFC 5280 4.2.1.3) --------------------------------------------------------------------------------- */

/* Bit 0 is digitalSignature, bit 8 decipherOnly. At most 9 bits; trailing zero bits are not written. */
KETRA_API int32_t KetraObjectSsetKeyUsage(KetraObject extensions, int32_t critical, const AsnBit *value,
                                          AsnErrorBlock *err);
/* Always delivers two octets; `bits` becomes 9 when bit 7 or bit 8 is set, otherwise 7. Bits beyond the ninth are not
 * delivered. On a failure `bits` may have been set to 9; `octets` is written only when they were read, and a failing
 * close or destroy after that leaves them written. */
KETRA_API int32_t KetraObjectSgetKeyUsage(KetraObject extensions, AsnBit *value, AsnErrorBlock *err);

/* ---- SubjectKeyId (RFC 5280 4.2.1.2) ----------------------------------------------------------------------------- */

/* The key identifier. Always stored non-critical. */
KETRA_API int32_t KetraObjectSsetSubjectKeyId(KetraObject extensions, const AsnOct *value, AsnErrorBlock *err);
/* Written only when the identifier was read; a failing close or destroy after that leaves it written. */
KETRA_API int32_t KetraObjectSgetSubjectKeyId(KetraObject extensions, AsnOct *value, AsnErrorBlock *err);

#ifdef __cplusplus
}
#endif

#endif
