/* libketra: typed access to the standard extensions of X.509 version 3 certificates and version 2 CRLs (X.509 9,
 * RFC 5280 4.2 and 5.2).
 *
 * Conventions, which the declarations below do not repeat:
 * - Every operation but KetraVersion returns 0 on success; otherwise -1 or the result of the operation that failed,
 *   with a code (ketra_errors.h, contracts/asn1.h, contracts/certificate.h) and a trace, innermost cause first, in
 *   `err`, which may be null. A null handle, structure or out-parameter is KetraError_NullParameter.
 * - A set checks the whole structure first and stores last: a failed set leaves the extensions as they were. When it
 *   fails in storing, its encoding stays in the object's pool. The structure is only read and may be released after the
 *   call.
 * - `critical` 1 marks the extension critical; every other value leaves it non-critical.
 * - A get of an extension that is not there is KetraError_ExtensionAbsent. Octets and arcs that a get returns are
 *   allocated in the pool of the Extensions object (KetraObjectGetMemObject) and live until they are freed there or
 *   the object is destroyed. After a failure, fields that were read before it keep what was read.
 * - What an operation reads costs time in proportion to its length, and at the peak less than 160 octets of work memory
 *   per octet of it, given back at the end; X.400 addresses of empty attributes come near. Nodes are the
 *   caller's, and so is how many names it reads.
 * - An object (Extensions, GeneralName), and every object that a call gets with it, is used by one thread at a time,
 *   for gets too. Distinct objects need no locks: they share constant data only. */
#ifndef KETRA_H
#define KETRA_H

#include "contracts/asn1.h"
#include "contracts/attributes.h"
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

/* ---- GeneralName object (RFC 5280 4.2.1.6) ----------------------------------------------------------------------- */

typedef struct X509GenNameObjectRecord *X509GenNameObject;

enum { /* kinds of GeneralName, in the order of the CHOICE */
       X509GenName_OtherName = 1,
       X509GenName_Rfc822Name = 2,
       X509GenName_DNSName = 3,
       X509GenName_X400Address = 4,
       X509GenName_DirectoryName = 5,
       X509GenName_EdiPartyName = 6,
       X509GenName_UniformResourceIdentifier = 7,
       X509GenName_IPAddress = 8,
       X509GenName_RegisteredID = 9
};

typedef struct X509OtherName {
  Objid type;
  AsnEncodedDataOpt value; /* one complete encoding */
} X509OtherName;

typedef struct X509EdiPartyName { /* strings of 1 to 32768 characters */
  X509DirStrOpt nameAssigner;
  X509DirStr partyName;
} X509EdiPartyName;

typedef struct X509GenNameParam {
  uint32_t type; /* X509GenName_...: which member counts */
  union {
    X509OtherName otherName;
    AsnOct rfc822Name; /* characters of IA5String, not checked, not NUL-terminated; so are the next and the URI */
    AsnOct dNSName;
    AsnEncodedData x400Address; /* one ORAddress SEQUENCE */
    X509NameObject directoryName;
    X509EdiPartyName ediPartyName;
    AsnOct uniformResourceIdentifier;
    AsnOct iPAddress; /* X509IpAddressFromText makes it */
    Objid registeredID;
  };
} X509GenNameParam;

/* An object holds one name, as a parameter, as its encoding, or as both; it makes one from the other on demand. What it
 * hands out points into it and lives until its name is replaced or it is destroyed. After a failed SetName, SetPdu or
 * Copy the object holds its old name or none. Encodings that are replaced stay in the object's memory to its end: make
 * an object per name rather than one for a million.
 *
 * Makes an object without a name. */
KETRA_API int32_t X509GenNameObjectCreate(X509GenNameObject *object, AsnErrorBlock *err);
/* Releases the object and all it holds; a null object succeeds without effect. */
KETRA_API int32_t X509GenNameObjectDestroy(X509GenNameObject object, AsnErrorBlock *err);
/* Takes a deep copy of the parameter (a Name object is copied too), which may point into the object itself. Contents
 * are not checked, but for the lengths of an ediPartyName. */
KETRA_API int32_t X509GenNameObjectSetName(X509GenNameObject object, const X509GenNameParam *parameter,
                                           AsnErrorBlock *err);
/* A view of the parameter. An object without a name is KetraError_GetNameEmpty. */
KETRA_API int32_t X509GenNameObjectGetName(X509GenNameObject object, X509GenNameParam *parameter, AsnErrorBlock *err);
/* Take a copy of one encoded GeneralName and decode it at once. The DER form refuses lengths that are not DER. */
KETRA_API int32_t X509GenNameObjectSetPduDER(X509GenNameObject object, const AsnEncodedData *encoding,
                                             AsnErrorBlock *err);
KETRA_API int32_t X509GenNameObjectSetPduBER(X509GenNameObject object, const AsnEncodedData *encoding,
                                             AsnErrorBlock *err);
/* A view of the encoding. A name that was set in BER is encoded anew as DER and loses its BER encoding, whereas the BER
 * form returns whatever is stored. An object without a name is KetraError_GetPduEmpty. */
KETRA_API int32_t X509GenNameObjectGetPduDER(X509GenNameObject object, AsnEncodedData *encoding, AsnErrorBlock *err);
KETRA_API int32_t X509GenNameObjectGetPduBER(X509GenNameObject object, AsnEncodedData *encoding, AsnErrorBlock *err);
/* Makes `destination` hold what `source` holds, in its own memory. */
KETRA_API int32_t X509GenNameObjectCopy(X509GenNameObject destination, X509GenNameObject source, AsnErrorBlock *err);

/* ---- GeneralNames ------------------------------------------------------------------------------------------------ */

/* A chain of nodes and objects that belong to the caller. To read a list, count its members, make as many nodes with an
 * object each, and let the read fill the objects in order. */
typedef struct X509GenNameChain {
  struct X509GenNameChain *next;
  X509GenNameObject genName;
} X509GenNameChain;

typedef struct X509GenNames {
  X509GenNameChain *genNames;
} X509GenNames;

typedef struct X509GenNamesOpt {
  X509GenNameChain *genNames;
  int32_t option;
} X509GenNamesOpt;

/* Make the GeneralNames element at the path with one member per node. The element must be new: members that it has
 * stay. The objects may come to store an encoding. */
KETRA_API int32_t X509MUtilSetGenNamesDER(AsnObject work, AsnValue value, const char *path,
                                          const X509GenNameChain *chain, AsnErrorBlock *err);
KETRA_API int32_t X509MUtilSetGenNamesBER(AsnObject work, AsnValue value, const char *path,
                                          const X509GenNameChain *chain, AsnErrorBlock *err);
/* Fill the objects of the chain in the order of the members; `pool` serves for passing buffers, of which a failure
 * leaves one there. Objects beyond the last member are left alone; a chain that is too short fails after its last
 * object is filled. */
KETRA_API int32_t X509MUtilSgetGenNamesDER(AsnMemObject pool, AsnObject work, AsnValue value, const char *path,
                                           const X509GenNameChain *chain, AsnErrorBlock *err);
KETRA_API int32_t X509MUtilSgetGenNamesBER(AsnMemObject pool, AsnObject work, AsnValue value, const char *path,
                                           const X509GenNameChain *chain, AsnErrorBlock *err);
/* Give the object the encoding of one GeneralName element. */
KETRA_API int32_t X509MUtilSgetGenNameObjectDER(AsnMemObject pool, AsnObject work, AsnValue value, const char *path,
                                                X509GenNameObject object, AsnErrorBlock *err);
KETRA_API int32_t X509MUtilSgetGenNameObjectBER(AsnMemObject pool, AsnObject work, AsnValue value, const char *path,
                                                X509GenNameObject object, AsnErrorBlock *err);
/* Destroys the object in `destination` (may be null) and puts a new copy of `source` there, or null when `source` is
 * null. After a failure `destination` is null. An object copied onto itself stays as it is. */
KETRA_API int32_t X509MUtilCopyGenNameObject(X509GenNameObject *destination, X509GenNameObject source,
                                             AsnErrorBlock *err);
/* Refuses an empty chain and nodes without an object; whether the objects hold names is not looked at. */
KETRA_API int32_t X509MUtilCheckGenNames(const X509GenNameChain *chain, AsnErrorBlock *err);
/* Besides, refuses a flag other than 0 and 1; with 0 the chain is not looked at. */
KETRA_API int32_t X509MUtilCheckGenNamesOpt(const X509GenNamesOpt *names, AsnErrorBlock *err);
/* Points `path` at a constant string, the element name of a kind of GeneralName; for X509GenName_EdiPartyName at
 * "EDIPartyName". */
KETRA_API int32_t X509MUtilGetPathOfGenName(uint32_t type, const char **path, AsnErrorBlock *err);

/* ---- DistributionPointName (RFC 5280 4.2.1.13) ------------------------------------------------------------------- */

enum { /* alternatives */
       X509DistributionPointName_FullName = 1,
       X509DistributionPointName_NameRelativeToCRLIssuer = 2
};

typedef struct X509AttributeTypeAndValue { /* one attribute of a relative name */
  struct X509AttributeTypeAndValue *next;
  Objid type;
  AsnEncodedData value; /* one complete encoding */
} X509AttributeTypeAndValue;

typedef struct X509DistributionPointName {
  int32_t type; /* X509DistributionPointName_...: which member counts */
  union {
    X509GenNameChain *fullName;
    X509AttributeTypeAndValue *nameRelativeToCRLIssuer;
  };
} X509DistributionPointName;

typedef struct X509DistributionPointNameOpt {
  X509DistributionPointName value;
  int32_t option;
} X509DistributionPointNameOpt;

/* Makes the DistributionPointName element at the path, which must be new. The attributes of a relative name are written
 * in the order that DER demands of a set. */
KETRA_API int32_t X509MUtilSetDistributionPointName(AsnObject work, AsnValue parent, const char *path,
                                                    const X509DistributionPointName *name, AsnErrorBlock *err);
/* Reads the element into a chain that the caller has prepared: for a fullName nodes with GeneralName objects, for a
 * relative name X509AttributeTypeAndValue nodes, as many as X509MUtilCalDistributionPointName tells. The arcs of an
 * attribute lie in `pool`, its value in the encoding that was decoded. After a failure `type`, the nodes before the
 * failing one and perhaps the type of the failing one are written. An absent element is refused. */
KETRA_API int32_t X509MUtilSgetDistributionPointName(AsnMemObject pool, AsnObject work, AsnValue parent,
                                                     const char *path, X509DistributionPointName *name,
                                                     AsnErrorBlock *err);
/* The same for an element that may be absent: then `option` becomes 0 and nothing else is written. */
KETRA_API int32_t X509MUtilSgetDistributionPointNameOpt(AsnMemObject pool, AsnObject work, AsnValue parent,
                                                        const char *path, X509DistributionPointNameOpt *name,
                                                        AsnErrorBlock *err);
/* Refuse what cannot be set: other alternatives and flags, empty chains, malformed attributes. */
KETRA_API int32_t X509MUtilCheckDistributionPointName(const X509DistributionPointName *name, AsnErrorBlock *err);
KETRA_API int32_t X509MUtilCheckDistributionPointNameOpt(const X509DistributionPointNameOpt *name, AsnErrorBlock *err);
/* The alternative (0 when the element is absent) and the number of its names or attributes. */
KETRA_API int32_t X509MUtilCalDistributionPointName(AsnObject work, AsnValue parent, const char *path, int32_t *choice,
                                                    uint32_t *count, AsnErrorBlock *err);

/* ---- GeneralSubtrees (RFC 5280 4.2.1.10) ------------------------------------------------------------------------- */

typedef struct X509GenSubtree {
  struct X509GenSubtree *next;
  X509GenNameObject base;
  AsnIntOpt minimum; /* no default is applied: an absent minimum stays absent */
  AsnIntOpt maximum;
} X509GenSubtree;

typedef struct X509GenSubtreesOpt {
  X509GenSubtree *genSubtrees;
  int32_t option;
} X509GenSubtreesOpt;

/* Makes the list element at the path, which must be new, with one member per node. */
KETRA_API int32_t X509MUtilSetGenSubtrees(AsnObject work, AsnValue parent, const char *path,
                                          const X509GenSubtree *chain, AsnErrorBlock *err);
/* Fills a chain that the caller has prepared, one node with a GeneralName object per member. After a failure the nodes
 * before the failing one are filled. */
KETRA_API int32_t X509MUtilSgetGenSubtrees(AsnMemObject pool, AsnObject work, AsnValue parent, const char *path,
                                           X509GenSubtree *chain, AsnErrorBlock *err);
/* The same for a list that may be absent: then `option` becomes 0 and nothing else is written. */
KETRA_API int32_t X509MUtilSgetGenSubtreesOpt(AsnMemObject pool, AsnObject work, AsnValue parent, const char *path,
                                              X509GenSubtreesOpt *list, AsnErrorBlock *err);
/* Refuse empty chains, nodes without base, other flags. Distances are not judged. */
KETRA_API int32_t X509MUtilCheckGenSubtrees(const X509GenSubtree *chain, AsnErrorBlock *err);
KETRA_API int32_t X509MUtilCheckGenSubtreesOpt(const X509GenSubtreesOpt *list, AsnErrorBlock *err);

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

/* ---- SubjectAltName, IssuerAltName (RFC 5280 4.2.1.6, 4.2.1.7), CertIssuer (RFC 5280 5.3.3) -----------------------
 */

/* The sets need 1 name or more. The gets fill the objects of a chain that the caller has prepared, one per name; the
 * Cal operations tell how many. CertIssuer is always stored critical. */
KETRA_API int32_t KetraObjectSsetSubjectAltName(KetraObject extensions, int32_t critical, const X509GenNames *value,
                                                AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetSubjectAltName(KetraObject extensions, const X509GenNames *value, AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetSubjectAltNameCalGenName(KetraObject extensions, uint32_t *count, AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSsetIssuerAltName(KetraObject extensions, int32_t critical, const X509GenNames *value,
                                               AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetIssuerAltName(KetraObject extensions, const X509GenNames *value, AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetIssuerAltNameCalGenName(KetraObject extensions, uint32_t *count, AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSsetCertIssuer(KetraObject extensions, const X509GenNames *value, AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetCertIssuer(KetraObject extensions, const X509GenNames *value, AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetCertIssuerCalGenName(KetraObject extensions, uint32_t *count, AsnErrorBlock *err);

/* ---- CRLDistributionPoints (RFC 5280 4.2.1.13) ------------------------------------------------------------------- */

typedef struct KetraDistributionPoint {
  struct KetraDistributionPoint *next;
  X509DistributionPointNameOpt distributionPoint;
  AsnBitOpt reasons; /* bit 0 is unused, bit 1 keyCompromise, ... bit 6 certificateHold */
  X509GenNamesOpt cRLIssuer;
} KetraDistributionPoint;

/* `points` is the first node of a chain; it has 1 node or more. */
KETRA_API int32_t KetraObjectSsetCRLDistributionPoints(KetraObject extensions, int32_t critical,
                                                       const KetraDistributionPoint *points, AsnErrorBlock *err);
/* Fills a chain that the caller has prepared: as many nodes as there are points, each with the name chains that the
 * counts below tell. Present reasons become 7 bits in the pool of the Extensions object; absent ones leave pointer and
 * length alone. privilegeWithdrawn and aACompromise, the eighth and ninth bit, are not read: who sets again what he has
 * got drops them. A relative name's values point into the stored extension. After a failure the points before the
 * failing one are filled. */
KETRA_API int32_t KetraObjectSgetCRLDistributionPoints(KetraObject extensions, KetraDistributionPoint *points,
                                                       AsnErrorBlock *err);
/* Number of points. */
KETRA_API int32_t KetraObjectSgetCRLDistributionPointsCalDistributionPoint(KetraObject extensions, uint32_t *count,
                                                                           AsnErrorBlock *err);
/* Of the point at an index from 0: the alternative of its name (0 when it has none or there is no such point) and the
 * number of names or attributes in it; the number of names of its cRLIssuer. Each call decodes the whole extension: to
 * ask for n points costs n times its length. Bound the number of points first, or walk long lists once
 * (AsnType_SequenceOfAny), as the C++ face does. */
KETRA_API int32_t KetraObjectSgetCRLDistributionPointsCalDistributionPointName(KetraObject extensions, uint32_t index,
                                                                               int32_t *choice, uint32_t *count,
                                                                               AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetCRLDistributionPointsCalCRLIssuer(KetraObject extensions, uint32_t index,
                                                                   uint32_t *count, AsnErrorBlock *err);
/* What the set checks first; whether the GeneralName objects hold names is not looked at. */
KETRA_API int32_t X509MUtilCheckCRLDistributionPoints(const KetraDistributionPoint *points, AsnErrorBlock *err);

/* ---- IssuingDistributionPoint (RFC 5280 5.2.5) ------------------------------------------------------------------- */

typedef struct KetraIssuingDistributionPoint {
  X509DistributionPointNameOpt distributionPoint;
  AsnBoolOpt onlyContainsUserCerts;
  AsnBoolOpt onlyContainsCACerts;
  AsnBitOpt onlySomeReasons; /* as in KetraDistributionPoint */
  AsnBoolOpt indirectCRL;
} KetraIssuingDistributionPoint;

/* Always stored critical. No default is applied either way: a present FALSE is written. */
KETRA_API int32_t KetraObjectSsetIssuingDistributionPoint(KetraObject extensions,
                                                          const KetraIssuingDistributionPoint *value,
                                                          AsnErrorBlock *err);
/* The caller prepares the name chain that the count below tells; reasons and relative names come as in
 * KetraObjectSgetCRLDistributionPoints. After a failure the fields before the failing one are written. */
KETRA_API int32_t KetraObjectSgetIssuingDistributionPoint(KetraObject extensions, KetraIssuingDistributionPoint *value,
                                                          AsnErrorBlock *err);
/* The alternative of the name (0 when there is none) and the number of names or attributes in it. */
KETRA_API int32_t KetraObjectSgetIssuingDistributionPointCalDistributionPointName(KetraObject extensions,
                                                                                  int32_t *choice, uint32_t *count,
                                                                                  AsnErrorBlock *err);

/* ---- NameConstraints (RFC 5280 4.2.1.10) ------------------------------------------------------------------------- */

typedef struct KetraNameConstraints {
  X509GenSubtreesOpt permittedSubtrees;
  X509GenSubtreesOpt excludedSubtrees;
} KetraNameConstraints;

KETRA_API int32_t KetraObjectSsetNameConstraints(KetraObject extensions, int32_t critical,
                                                 const KetraNameConstraints *value, AsnErrorBlock *err);
/* Fills chains that the caller has prepared. When the excluded list fails, the permitted one is written. */
KETRA_API int32_t KetraObjectSgetNameConstraints(KetraObject extensions, KetraNameConstraints *value,
                                                 AsnErrorBlock *err);
/* The lengths of both lists, 0 for an absent one. */
KETRA_API int32_t KetraObjectSgetNameConstraintsCalGenSubtree(KetraObject extensions, uint32_t *permittedCount,
                                                              uint32_t *excludedCount, AsnErrorBlock *err);

/* ---- CRLNumber, DeltaCRLIndicator (RFC 5280 5.2.3, 5.2.4) -------------------------------------------------------- */

/* A number of 0 or more. CRLNumber is always stored non-critical, DeltaCRLIndicator critical. A get that finds a
 * negative number fails and has written it; a number beyond 32 bits is AsnError_Range. */
KETRA_API int32_t KetraObjectSsetCRLNumber(KetraObject extensions, const int32_t *number, AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetCRLNumber(KetraObject extensions, int32_t *number, AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSsetDeltaCRLIndicator(KetraObject extensions, const int32_t *number, AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetDeltaCRLIndicator(KetraObject extensions, int32_t *number, AsnErrorBlock *err);

/* ---- AuthorityKeyId (RFC 5280 4.2.1.1) --------------------------------------------------------------------------- */

typedef struct KetraAuthorityKeyId {
  AsnOctOpt keyIdentifier;
  X509GenNamesOpt authorityCertIssuer;
  X509CertSerialNumberOpt authorityCertSerialNumber; /* present exactly when authorityCertIssuer is */
} KetraAuthorityKeyId;

/* Always stored non-critical. */
KETRA_API int32_t KetraObjectSsetAuthorityKeyId(KetraObject extensions, const KetraAuthorityKeyId *value,
                                                AsnErrorBlock *err);
/* Fills the chain of `authorityCertIssuer`, which the caller has prepared with an object per name. The key identifier
 * lies in the pool of the Extensions object. A serial number of up to four content octets comes as a number, a longer
 * one as octets that point into the stored extension. After a failure the fields before the failing one are written. */
KETRA_API int32_t KetraObjectSgetAuthorityKeyId(KetraObject extensions, KetraAuthorityKeyId *value, AsnErrorBlock *err);
/* Number of names in authorityCertIssuer, 0 when it is absent. */
KETRA_API int32_t KetraObjectSgetAuthorityKeyIdCalGenName(KetraObject extensions, uint32_t *count, AsnErrorBlock *err);

/* ---- CertPolicies (RFC 5280 4.2.1.4) ----------------------------------------------------------------------------- */

typedef struct KetraPolicyQualifierInfo {
  struct KetraPolicyQualifierInfo *next;
  Objid policyQualifierId;
  AsnEncodedDataOpt qualifier; /* one complete encoding */
} KetraPolicyQualifierInfo;

typedef struct KetraPolicyQualifiersOpt {
  KetraPolicyQualifierInfo *policyQualifiers;
  int32_t option;
} KetraPolicyQualifiersOpt;

typedef struct KetraPolicyInformation {
  struct KetraPolicyInformation *next;
  Objid policyIdentifier;
  KetraPolicyQualifiersOpt policyQualifiers;
} KetraPolicyInformation;

/* `policies` points to the variable that holds the first node of the chain; it has 1 node or more. */
KETRA_API int32_t KetraObjectSsetCertPolicies(KetraObject extensions, int32_t critical,
                                              KetraPolicyInformation *const *policies, AsnErrorBlock *err);
/* Reads the policy at an index from 0 into `information`, whose qualifier chain the caller has prepared; its `next` is
 * neither read nor written. Arcs lie in the pool of the Extensions object, qualifiers point into the stored extension.
 * Each call decodes the whole extension: to read n policies one by one costs n times its length. For long lists, walk
 * it once (AsnType_SequenceOfAny); the C++ face does. */
KETRA_API int32_t KetraObjectSgetCertPolicies(KetraObject extensions, uint32_t index,
                                              KetraPolicyInformation *information, AsnErrorBlock *err);
/* Number of policies; number of qualifiers of the policy at an index, 0 when there is no such policy. */
KETRA_API int32_t KetraObjectSgetCertPoliciesCalInformation(KetraObject extensions, uint32_t *count,
                                                            AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetCertPoliciesCalQualifier(KetraObject extensions, uint32_t index, uint32_t *count,
                                                          AsnErrorBlock *err);

/* ---- PolicyMappings (RFC 5280 4.2.1.5) --------------------------------------------------------------------------- */

typedef struct KetraPolicyMapping {
  struct KetraPolicyMapping *next;
  Objid issuerDomainPolicy;
  Objid subjectDomainPolicy;
} KetraPolicyMapping;

/* A chain of 1 node or more. Always stored non-critical. */
KETRA_API int32_t KetraObjectSsetPolicyMappings(KetraObject extensions, const KetraPolicyMapping *first,
                                                AsnErrorBlock *err);
/* Fills a chain that the caller has prepared. Arcs lie in the pool of the Extensions object. */
KETRA_API int32_t KetraObjectSgetPolicyMappings(KetraObject extensions, KetraPolicyMapping *first, AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetPolicyMappingsCalPolicyMapping(KetraObject extensions, uint32_t *count,
                                                                AsnErrorBlock *err);

/* ---- PolicyConstraints (RFC 5280 4.2.1.11) ----------------------------------------------------------------------- */

typedef struct KetraPolicyConstraints { /* certificates that may follow, 0 or more */
  AsnIntOpt requireExplicitPolicy;
  AsnIntOpt inhibitPolicyMapping;
} KetraPolicyConstraints;

KETRA_API int32_t KetraObjectSsetPolicyConstraints(KetraObject extensions, int32_t critical,
                                                   const KetraPolicyConstraints *constraints, AsnErrorBlock *err);
/* A negative number is refused and has been written. */
KETRA_API int32_t KetraObjectSgetPolicyConstraints(KetraObject extensions, KetraPolicyConstraints *constraints,
                                                   AsnErrorBlock *err);

/* ---- ExtKeyUsage (RFC 5280 4.2.1.12) ----------------------------------------------------------------------------- */

typedef struct KetraKeyPurposeId {
  struct KetraKeyPurposeId *next;
  Objid keyPurposeId;
} KetraKeyPurposeId;

/* A chain of 1 node or more. */
KETRA_API int32_t KetraObjectSsetExtKeyUsage(KetraObject extensions, int32_t critical, const KetraKeyPurposeId *first,
                                             AsnErrorBlock *err);
/* Fills a chain that the caller has prepared. Arcs lie in the pool of the Extensions object. */
KETRA_API int32_t KetraObjectSgetExtKeyUsage(KetraObject extensions, KetraKeyPurposeId *first, AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetExtKeyUsageCalKeyPurposeId(KetraObject extensions, uint32_t *count,
                                                            AsnErrorBlock *err);

/* ---- PrivateKeyUsagePeriod (RFC 3280 4.2.1.4) -------------------------------------------------------------------- */

typedef struct KetraPrivateKeyUsagePeriod {
  GtimeOpt notBefore;
  GtimeOpt notAfter;
} KetraPrivateKeyUsagePeriod;

/* Always stored non-critical. The two times are not compared. */
KETRA_API int32_t KetraObjectSsetPrivateKeyUsagePeriod(KetraObject extensions, const KetraPrivateKeyUsagePeriod *period,
                                                       AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetPrivateKeyUsagePeriod(KetraObject extensions, KetraPrivateKeyUsagePeriod *period,
                                                       AsnErrorBlock *err);

/* ---- CRL entries: ReasonCode, InstructionCode, InvalidityDate (RFC 5280 5.3.1, RFC 3280 5.3.2, RFC 5280 5.3.2) ----
 */

/* 0 unspecified, 1 keyCompromise, 2 cACompromise, 3 affiliationChanged, 4 superseded, 5 cessationOfOperation,
 * 6 certificateHold, 8 removeFromCRL. A get that finds another number fails and has written it. Always stored
 * non-critical, as are the next two. */
KETRA_API int32_t KetraObjectSsetReasonCode(KetraObject extensions, const int32_t *reasonCode, AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetReasonCode(KetraObject extensions, int32_t *reasonCode, AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSsetInstructionCode(KetraObject extensions, const Objid *instruction, AsnErrorBlock *err);
/* The arcs lie in a buffer of the calling thread, 128 arcs long, and live until its next call of this. */
KETRA_API int32_t KetraObjectSgetInstructionCode(KetraObject extensions, Objid *instruction, AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSsetInvalidityDate(KetraObject extensions, const Gtime *date, AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetInvalidityDate(KetraObject extensions, Gtime *date, AsnErrorBlock *err);

/* ---- SubjectDirectoryAttributes (RFC 5280 4.2.1.8) --------------------------------------------------------------- */

/* Stores the encoding of the object's attributes, always non-critical. */
KETRA_API int32_t KetraObjectSsetSubjectDirectoryAttributes(KetraObject extensions, X509AttributesObject attributes,
                                                            AsnErrorBlock *err);
/* Replaces the object's attributes by those of the extension. */
KETRA_API int32_t KetraObjectSgetSubjectDirectoryAttributes(KetraObject extensions, X509AttributesObject attributes,
                                                            AsnErrorBlock *err);

#ifdef __cplusplus
}
#endif

#endif
