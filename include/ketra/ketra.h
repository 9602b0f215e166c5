/** @file
 * libketra: typed access to the standard extensions of X.509 version 3 certificates and version 2 CRLs. The C headers
 * need C11, or C++. */

/** @defgroup ketra Typed extensions, C interface
 * The standard extensions of X.509 version 3 certificates and version 2 CRLs (X.509 9, RFC 5280 4.2, 5.2 and 5.3).
 *
 * Conventions, which the declarations do not repeat:
 * - Every operation but KetraVersion returns 0 on success; otherwise -1 or the result of the operation that failed,
 *   with a code (ketra_errors.h, contracts/asn1.h, contracts/certificate.h) and a trace, innermost cause first, in
 *   `err`, which may be null. A null handle, structure or out-parameter is KetraError_NullParameter.
 * - A set checks the whole structure first and stores last: a failed set leaves the extensions as they were, unless all
 *   that failed was returning its own copy of the encoding to the pool after the store. An encoding that was made but
 *   not stored, or not returned, stays in the object's pool. The structure is only read and may be released after the
 *   call.
 * - `critical` 1 marks the extension critical; every other value leaves it non-critical.
 * - A get of an extension that is not there is KetraError_ExtensionAbsent. Octets and arcs that a get returns are
 *   allocated in the pool of the Extensions object (KetraObjectGetMemObject) and live until they are freed there or
 *   the object is destroyed; names lie in their own objects. Serial numbers in octets, policy qualifiers and the values
 *   of relative names point into the stored extension instead, and an instruction code lies in a buffer of the thread:
 *   their operations say how long they live. After a failure, fields that were read before it keep what was read.
 * - Which operation sets which code of its own stands in ketra_errors.h; codes of a check or of the decoder
 *   (`AsnCheckError_...`, `AsnError_...`) stay as they were set.
 * - What an operation reads costs time in proportion to its length, and at the peak less than 160 octets of work memory
 *   per octet of it, given back at the end; X.400 addresses of empty attributes come near. Nodes are the
 *   caller's, and so is how many names it reads.
 * - An object (Extensions, GeneralName), and every object that a call gets with it, is used by one thread at a time,
 *   for gets too. Distinct objects need no locks: they share constant data only. */
#ifndef KETRA_H
#define KETRA_H

#include "ketra/contracts/asn1.h"
#include "ketra/contracts/attributes.h"
#include "ketra/contracts/certificate.h"
#include "ketra/ketra_version.h"

#if defined(_WIN32) && !defined(KETRA_STATIC)
#ifdef KETRA_BUILD
#define KETRA_API /* by the module definition file: compilers would export parts of functions too */
#else
#define KETRA_API __declspec(dllimport)
#endif
#elif defined(__GNUC__)
#define KETRA_API __attribute__((visibility("default")))
#else
#define KETRA_API /**< marks what libketra exports */
#endif

#ifdef __cplusplus
extern "C" {
#endif

/** @addtogroup ketra
 * @{ */

/** Points `banner` at two lines of text: description, version and build date; holder of the rights. The text is
 * constant. Always returns 0; with a null `banner` that is all. */
KETRA_API int32_t KetraVersion(const char **banner);

/** @defgroup ketra_identifiers Identifiers
 * The extensions' identifiers, all of four arcs, below id-ce, 2.5.29 (RFC 5280 4.2.1).
 * @{ */

extern KETRA_API const Objid X509Objid_AuthorityKeyId;             /**< 2.5.29.35 */
extern KETRA_API const Objid X509Objid_SubjectKeyId;               /**< 2.5.29.14 */
extern KETRA_API const Objid X509Objid_KeyUsage;                   /**< 2.5.29.15 */
extern KETRA_API const Objid X509Objid_ExtKeyUsage;                /**< 2.5.29.37 */
extern KETRA_API const Objid X509Objid_PrivateKeyUsagePeriod;      /**< 2.5.29.16 */
extern KETRA_API const Objid X509Objid_CertPolicies;               /**< 2.5.29.32 */
extern KETRA_API const Objid X509Objid_SubjectAltName;             /**< 2.5.29.17 */
extern KETRA_API const Objid X509Objid_IssuerAltName;              /**< 2.5.29.18 */
extern KETRA_API const Objid X509Objid_BasicConstraints;           /**< 2.5.29.19 */
extern KETRA_API const Objid X509Objid_CRLNumber;                  /**< 2.5.29.20 */
extern KETRA_API const Objid X509Objid_PolicyMappings;             /**< 2.5.29.33 */
extern KETRA_API const Objid X509Objid_SubjectDirectoryAttributes; /**< 2.5.29.9 */
extern KETRA_API const Objid X509Objid_NameConstraints;            /**< 2.5.29.30 */
extern KETRA_API const Objid X509Objid_PolicyConstraints;          /**< 2.5.29.36 */
extern KETRA_API const Objid X509Objid_ReasonCode;                 /**< 2.5.29.21 */
extern KETRA_API const Objid X509Objid_InstructionCode;            /**< 2.5.29.23 */
extern KETRA_API const Objid X509Objid_InvalidityDate;             /**< 2.5.29.24 */
extern KETRA_API const Objid X509Objid_CRLDistributionPoints;      /**< 2.5.29.31 */
extern KETRA_API const Objid X509Objid_IssuingDistributionPoint;   /**< 2.5.29.28 */
extern KETRA_API const Objid X509Objid_CertIssuer;                 /**< 2.5.29.29 */
extern KETRA_API const Objid X509Objid_DeltaCRLIndicator;          /**< 2.5.29.27 */

/** @} */

/** @defgroup ketra_criticality Criticality
 * Of the other extensions a set fixes the criticality; what was read stands in KetraExtension.
 * @{ */

/** Sets `critical` to 1 when the stored extension is marked critical and to 0 when it is not. An absent extension
 * is KetraError_CriticalAbsent.
 * @{ */
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
/** @} */

/** @} */

/** @defgroup ketra_general_name GeneralName object
 * One GeneralName (RFC 5280 4.2.1.6). An object holds it as a parameter, as its encoding, or as both; it makes one from
 * the other on demand. What it hands out points into it and lives until its name is replaced or it is destroyed. After
 * a failed SetName, SetPdu or Copy the object holds its old name or none. Encodings that are replaced stay in the
 * object's memory to its end: make an object per name rather than one for a million.
 * @{ */

/** A GeneralName object, with memory of its own. */
typedef struct X509GenNameObjectRecord *X509GenNameObject;

/** Kinds of GeneralName, in the order of the CHOICE. */
enum {
  X509GenName_OtherName = 1,                 /**< X509GenNameParam::otherName */
  X509GenName_Rfc822Name = 2,                /**< X509GenNameParam::rfc822Name */
  X509GenName_DNSName = 3,                   /**< X509GenNameParam::dNSName */
  X509GenName_X400Address = 4,               /**< X509GenNameParam::x400Address */
  X509GenName_DirectoryName = 5,             /**< X509GenNameParam::directoryName */
  X509GenName_EdiPartyName = 6,              /**< X509GenNameParam::ediPartyName */
  X509GenName_UniformResourceIdentifier = 7, /**< X509GenNameParam::uniformResourceIdentifier */
  X509GenName_IPAddress = 8,                 /**< X509GenNameParam::iPAddress */
  X509GenName_RegisteredID = 9               /**< X509GenNameParam::registeredID */
};

/** A name of a kind that its identifier defines. */
typedef struct X509OtherName {
  Objid type;              /**< type-id: what the value is */
  AsnEncodedDataOpt value; /**< one complete encoding */
} X509OtherName;

/** A party of electronic data interchange. The strings have 1 to 32768 characters; other lengths are refused
 * (X509DirStrError_Length). */
typedef struct X509EdiPartyName {
  X509DirStrOpt nameAssigner; /**< who assigned the name */
  X509DirStr partyName;       /**< the name */
} X509EdiPartyName;

/** One GeneralName in its parts. Character strings are octets of IA5String: not checked, not NUL-terminated, and NUL
 * may be among them. */
typedef struct X509GenNameParam {
  uint32_t type; /**< `X509GenName_...`: which member counts */
  union {
    X509OtherName otherName;          /**< type and value */
    AsnOct rfc822Name;                /**< mailbox, characters */
    AsnOct dNSName;                   /**< host name, characters */
    AsnEncodedData x400Address;       /**< one ORAddress SEQUENCE */
    X509NameObject directoryName;     /**< distinguished name; a view's belongs to the GeneralName object */
    X509EdiPartyName ediPartyName;    /**< party and who named it */
    AsnOct uniformResourceIdentifier; /**< URI, characters */
    AsnOct iPAddress;                 /**< 4 or 16 octets, with a mask 8 or 32: X509IpAddressFromText makes it */
    Objid registeredID;               /**< identifier */
  };
} X509GenNameParam;

/** Makes an object without a name; the caller destroys it. */
KETRA_API int32_t X509GenNameObjectCreate(X509GenNameObject *object, AsnErrorBlock *err);
/** Releases the object and all it holds; a null object succeeds without effect. */
KETRA_API int32_t X509GenNameObjectDestroy(X509GenNameObject object, AsnErrorBlock *err);
/** Takes a deep copy of the parameter (a Name object is copied too), which may point into the object itself. Contents
 * are not checked, but for the lengths of an ediPartyName. A kind outside 1 to 9 is KetraError_SetNameType, a
 * directoryName without object KetraError_SetNameNoNameObject. */
KETRA_API int32_t X509GenNameObjectSetName(X509GenNameObject object, const X509GenNameParam *parameter,
                                           AsnErrorBlock *err);
/** A view of the parameter. An object without a name is KetraError_GetNameEmpty. */
KETRA_API int32_t X509GenNameObjectGetName(X509GenNameObject object, X509GenNameParam *parameter, AsnErrorBlock *err);
/** Take a copy of one encoded GeneralName and decode it at once. The DER form refuses lengths that are not DER and
 * constructed strings; in the value of an otherName and in the attributes of a name it looks at lengths only.
 * @{ */
KETRA_API int32_t X509GenNameObjectSetPduDER(X509GenNameObject object, const AsnEncodedData *encoding,
                                             AsnErrorBlock *err);
KETRA_API int32_t X509GenNameObjectSetPduBER(X509GenNameObject object, const AsnEncodedData *encoding,
                                             AsnErrorBlock *err);
/** @} */
/** A view of the encoding. A name that was set in BER is encoded anew as DER and loses its BER encoding, whereas the
 * BER form returns whatever is stored. An object without a name is KetraError_GetPduEmpty.
 * @{ */
KETRA_API int32_t X509GenNameObjectGetPduDER(X509GenNameObject object, AsnEncodedData *encoding, AsnErrorBlock *err);
KETRA_API int32_t X509GenNameObjectGetPduBER(X509GenNameObject object, AsnEncodedData *encoding, AsnErrorBlock *err);
/** @} */
/** Makes `destination` hold what `source` holds, in its own memory. */
KETRA_API int32_t X509GenNameObjectCopy(X509GenNameObject destination, X509GenNameObject source, AsnErrorBlock *err);

/** @} */

/** @defgroup ketra_general_names GeneralNames
 * Lists of GeneralName (RFC 5280 4.2.1.6) as chains of objects, and as elements of a work value that the caller has
 * opened and releases, after a failure too.
 * @{ */

/** A chain of nodes and objects that belong to the caller. To read a list, count its members, make as many nodes with
 * an object each, and let the read fill the objects in order. */
typedef struct X509GenNameChain {
  struct X509GenNameChain *next; /**< the following node, or null */
  X509GenNameObject genName;     /**< holds the name */
} X509GenNameChain;

/** A list of names. */
typedef struct X509GenNames {
  X509GenNameChain *genNames; /**< first node */
} X509GenNames;

/** A list of names that may be absent. */
typedef struct X509GenNamesOpt {
  X509GenNameChain *genNames; /**< first node; a get that finds no list leaves it alone */
  int32_t option;             /**< 1 present, 0 absent */
} X509GenNamesOpt;

/** Make the GeneralNames element at the path with one member per node. The element must be new: members that it has
 * stay. The objects may come to store an encoding.
 * @{ */
KETRA_API int32_t X509MUtilSetGenNamesDER(AsnObject work, AsnValue value, const char *path,
                                          const X509GenNameChain *chain, AsnErrorBlock *err);
KETRA_API int32_t X509MUtilSetGenNamesBER(AsnObject work, AsnValue value, const char *path,
                                          const X509GenNameChain *chain, AsnErrorBlock *err);
/** @} */
/** Fill the objects of the chain in the order of the members; `pool` serves for passing buffers, of which a failure
 * leaves one there. Objects beyond the last member are left alone; a chain that is too short fails after its last
 * object is filled.
 * @{ */
KETRA_API int32_t X509MUtilSgetGenNamesDER(AsnMemObject pool, AsnObject work, AsnValue value, const char *path,
                                           const X509GenNameChain *chain, AsnErrorBlock *err);
KETRA_API int32_t X509MUtilSgetGenNamesBER(AsnMemObject pool, AsnObject work, AsnValue value, const char *path,
                                           const X509GenNameChain *chain, AsnErrorBlock *err);
/** @} */
/** Give the object the encoding of one GeneralName element.
 * @{ */
KETRA_API int32_t X509MUtilSgetGenNameObjectDER(AsnMemObject pool, AsnObject work, AsnValue value, const char *path,
                                                X509GenNameObject object, AsnErrorBlock *err);
KETRA_API int32_t X509MUtilSgetGenNameObjectBER(AsnMemObject pool, AsnObject work, AsnValue value, const char *path,
                                                X509GenNameObject object, AsnErrorBlock *err);
/** @} */
/** Destroys the object in `destination` (which may be null) and puts a new copy of `source` there, or null when
 * `source` is null. After a failure `destination` is null. An object copied onto itself stays as it is. */
KETRA_API int32_t X509MUtilCopyGenNameObject(X509GenNameObject *destination, X509GenNameObject source,
                                             AsnErrorBlock *err);
/** Refuses an empty chain (KetraError_CheckGenNamesEmpty) and nodes without an object
 * (KetraError_CheckGenNamesNoObject); whether the objects hold names is not looked at. */
KETRA_API int32_t X509MUtilCheckGenNames(const X509GenNameChain *chain, AsnErrorBlock *err);
/** As X509MUtilCheckGenNames; refuses a flag other than 0 and 1 too (KetraError_CheckGenNamesOption). With 0 the chain
 * is not looked at. */
KETRA_API int32_t X509MUtilCheckGenNamesOpt(const X509GenNamesOpt *names, AsnErrorBlock *err);
/** Points `path` at a constant string, the element name of a kind of GeneralName; for X509GenName_EdiPartyName at
 * "EDIPartyName". */
KETRA_API int32_t X509MUtilGetPathOfGenName(uint32_t type, const char **path, AsnErrorBlock *err);

/** @} */

/** @defgroup ketra_distribution_point_name DistributionPointName
 * Where a CRL is (RFC 5280 4.2.1.13), as a structure and as an element of a work value that the caller has opened and
 * releases, after a failure too.
 * @{ */

/** Alternatives of DistributionPointName. */
enum {
  X509DistributionPointName_FullName = 1,               /**< names of one point */
  X509DistributionPointName_NameRelativeToCRLIssuer = 2 /**< what to append to the name of the CRL issuer */
};

/** One attribute of a relative name (X.501 9.3). */
typedef struct X509AttributeTypeAndValue {
  struct X509AttributeTypeAndValue *next; /**< the following node, or null */
  Objid type;                             /**< attribute type */
  AsnEncodedData value;                   /**< one complete encoding */
} X509AttributeTypeAndValue;

/** The name of a distribution point. */
typedef struct X509DistributionPointName {
  int32_t type; /**< `X509DistributionPointName_...`: which member counts */
  union {
    X509GenNameChain *fullName;                         /**< first name */
    X509AttributeTypeAndValue *nameRelativeToCRLIssuer; /**< first attribute */
  };
} X509DistributionPointName;

/** A name that may be absent. */
typedef struct X509DistributionPointNameOpt {
  X509DistributionPointName value; /**< the name */
  int32_t option;                  /**< 1 present, 0 absent */
} X509DistributionPointNameOpt;

/** Makes the DistributionPointName element at the path, which must be new. The attributes of a relative name are
 * written in the order that DER demands of a set. */
KETRA_API int32_t X509MUtilSetDistributionPointName(AsnObject work, AsnValue parent, const char *path,
                                                    const X509DistributionPointName *name, AsnErrorBlock *err);
/** Reads the element into a chain that the caller has prepared: for a fullName nodes with GeneralName objects, for a
 * relative name X509AttributeTypeAndValue nodes, as many as X509MUtilCalDistributionPointName tells. The arcs of an
 * attribute lie in `pool`, its value in the encoding that was decoded. After a failure `type`, the nodes before the
 * failing one and perhaps the type of the failing one are written. An absent element is
 * KetraError_DistributionPointNameAbsent; a chain that is too short KetraError_GenNamesChainShort or
 * KetraError_RelativeNameChainShort. */
KETRA_API int32_t X509MUtilSgetDistributionPointName(AsnMemObject pool, AsnObject work, AsnValue parent,
                                                     const char *path, X509DistributionPointName *name,
                                                     AsnErrorBlock *err);
/** The same for an element that may be absent: then `option` becomes 0 and nothing else is written. */
KETRA_API int32_t X509MUtilSgetDistributionPointNameOpt(AsnMemObject pool, AsnObject work, AsnValue parent,
                                                        const char *path, X509DistributionPointNameOpt *name,
                                                        AsnErrorBlock *err);
/** Refuse what cannot be set: other alternatives and flags, empty chains, malformed attributes.
 * @{ */
KETRA_API int32_t X509MUtilCheckDistributionPointName(const X509DistributionPointName *name, AsnErrorBlock *err);
KETRA_API int32_t X509MUtilCheckDistributionPointNameOpt(const X509DistributionPointNameOpt *name, AsnErrorBlock *err);
/** @} */
/** The alternative (0 when the element is absent) and the number of its names or attributes. */
KETRA_API int32_t X509MUtilCalDistributionPointName(AsnObject work, AsnValue parent, const char *path, int32_t *choice,
                                                    uint32_t *count, AsnErrorBlock *err);

/** @} */

/** @defgroup ketra_general_subtrees GeneralSubtrees
 * The lists of NameConstraints (RFC 5280 4.2.1.10) as chains, and as elements of a work value that the caller has
 * opened and releases, after a failure too.
 * @{ */

/** One subtree. Distances have 32 bits with sign and are not judged; RFC 5280 wants minimum 0 and no maximum. */
typedef struct X509GenSubtree {
  struct X509GenSubtree *next; /**< the following node, or null */
  X509GenNameObject base;      /**< the name; an object of the caller, also for a get */
  AsnIntOpt minimum;           /**< no default is applied: an absent minimum stays absent */
  AsnIntOpt maximum;           /**< absent: no bound */
} X509GenSubtree;

/** A list of subtrees that may be absent. */
typedef struct X509GenSubtreesOpt {
  X509GenSubtree *genSubtrees; /**< first node; a get that finds no list leaves it alone */
  int32_t option;              /**< 1 present, 0 absent */
} X509GenSubtreesOpt;

/** Makes the list element at the path, which must be new, with one member per node. */
KETRA_API int32_t X509MUtilSetGenSubtrees(AsnObject work, AsnValue parent, const char *path,
                                          const X509GenSubtree *chain, AsnErrorBlock *err);
/** Fills a chain that the caller has prepared, one node with a GeneralName object per member. After a failure the nodes
 * before the failing one are filled. A list without members is KetraError_GetGenSubtreesEmpty, a chain that is too
 * short KetraError_GenSubtreesChainShort. */
KETRA_API int32_t X509MUtilSgetGenSubtrees(AsnMemObject pool, AsnObject work, AsnValue parent, const char *path,
                                           X509GenSubtree *chain, AsnErrorBlock *err);
/** The same for a list that may be absent: then `option` becomes 0 and nothing else is written. */
KETRA_API int32_t X509MUtilSgetGenSubtreesOpt(AsnMemObject pool, AsnObject work, AsnValue parent, const char *path,
                                              X509GenSubtreesOpt *list, AsnErrorBlock *err);
/** Refuse empty chains (KetraError_CheckGenSubtreesEmpty), nodes without base (KetraError_CheckGenSubtreesNoBase),
 * other flags (KetraError_CheckGenSubtreesOption, AsnCheckError_Option). Distances are not judged.
 * @{ */
KETRA_API int32_t X509MUtilCheckGenSubtrees(const X509GenSubtree *chain, AsnErrorBlock *err);
KETRA_API int32_t X509MUtilCheckGenSubtreesOpt(const X509GenSubtreesOpt *list, AsnErrorBlock *err);
/** @} */

/** @} */

/** @defgroup ketra_basic_constraints BasicConstraints
 * RFC 5280 4.2.1.9.
 * @{ */

/** Whether the subject is a CA, and how long paths through it may be. */
typedef struct KetraBasicConstraints {
  AsnBoolOpt cA;               /**< the subject is a certification authority */
  AsnIntOpt pathLenConstraint; /**< intermediate certificates that may follow, 0 or more */
} KetraBasicConstraints;

/** No default is applied either way: a present FALSE is written, a `cA` left out is read as absent. A negative
 * pathLenConstraint is refused by the set (KetraError_SetBasicConstraintsPathLen) and by the get
 * (KetraError_GetBasicConstraintsPathLen), which then has written it.
 * @{ */
KETRA_API int32_t KetraObjectSsetBasicConstraints(KetraObject extensions, int32_t critical,
                                                  const KetraBasicConstraints *value, AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetBasicConstraints(KetraObject extensions, KetraBasicConstraints *value,
                                                  AsnErrorBlock *err);
/** @} */

/** @} */

/** @defgroup ketra_key_usage KeyUsage
 * RFC 5280 4.2.1.3. Bit 0 is digitalSignature, 1 nonRepudiation, 2 keyEncipherment, 3 dataEncipherment, 4 keyAgreement,
 * 5 keyCertSign, 6 cRLSign, 7 encipherOnly, 8 decipherOnly.
 * @{ */

/** At most 9 bits, more are KetraError_SetKeyUsageBitLength; trailing zero bits are not written (X.690 11.2.2). */
KETRA_API int32_t KetraObjectSsetKeyUsage(KetraObject extensions, int32_t critical, const AsnBit *value,
                                          AsnErrorBlock *err);
/** Always delivers two octets, in the pool of the Extensions object; `bits` becomes 9 when bit 7 or bit 8 is set,
 * otherwise 7. Bits beyond the ninth are not delivered. On a failure `bits` may have been set to 9; `octets` is written
 * only when they were read, and a failing close or destroy after that leaves them written. */
KETRA_API int32_t KetraObjectSgetKeyUsage(KetraObject extensions, AsnBit *value, AsnErrorBlock *err);

/** @} */

/** @defgroup ketra_subject_key_id SubjectKeyId
 * RFC 5280 4.2.1.2.
 * @{ */

/** The key identifier: any octets, none too. Always stored non-critical. */
KETRA_API int32_t KetraObjectSsetSubjectKeyId(KetraObject extensions, const AsnOct *value, AsnErrorBlock *err);
/** The octets lie in the pool of the Extensions object. Written only when the get succeeds. */
KETRA_API int32_t KetraObjectSgetSubjectKeyId(KetraObject extensions, AsnOct *value, AsnErrorBlock *err);

/** @} */

/** @defgroup ketra_alternative_names SubjectAltName, IssuerAltName, CertIssuer
 * RFC 5280 4.2.1.6, 4.2.1.7 and, in CRL entries, 5.3.3.
 * @{ */

/** The sets need 1 name or more; what they refuse, X509MUtilCheckGenNames tells. The gets fill the objects of a chain
 * that the caller has prepared, one per name (a shorter one is KetraError_GenNamesChainShort); the Cal operations tell
 * how many. CertIssuer is always stored critical.
 * @{ */
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
/** @} */

/** @} */

/** @defgroup ketra_crl_distribution_points CRLDistributionPoints
 * RFC 5280 4.2.1.13.
 * @{ */

/** One distribution point. */
typedef struct KetraDistributionPoint {
  struct KetraDistributionPoint *next;            /**< the following node, or null */
  X509DistributionPointNameOpt distributionPoint; /**< where the CRL is */
  AsnBitOpt reasons;         /**< what it covers: bit 0 is unused, bit 1 keyCompromise, ... bit 6 certificateHold */
  X509GenNamesOpt cRLIssuer; /**< who issues it, when that is not the issuer of the certificate */
} KetraDistributionPoint;

/** `points` is the first node of a chain; it has 1 node or more. What is refused, X509MUtilCheckCRLDistributionPoints
 * tells. */
KETRA_API int32_t KetraObjectSsetCRLDistributionPoints(KetraObject extensions, int32_t critical,
                                                       const KetraDistributionPoint *points, AsnErrorBlock *err);
/** Fills a chain that the caller has prepared: as many nodes as there are points, each with the name chains that the
 * counts below tell. Present reasons become 7 bits in the pool of the Extensions object; absent ones leave pointer and
 * length alone. privilegeWithdrawn and aACompromise, the eighth and ninth bit, are not read: who sets again what he has
 * got drops them. A relative name's values point into the stored extension. After a failure the points before the
 * failing one are filled. A list without points is KetraError_GetDistributionPointsEmpty, a chain that is too short
 * KetraError_DistributionPointsChainShort. */
KETRA_API int32_t KetraObjectSgetCRLDistributionPoints(KetraObject extensions, KetraDistributionPoint *points,
                                                       AsnErrorBlock *err);
/** Number of points. */
KETRA_API int32_t KetraObjectSgetCRLDistributionPointsCalDistributionPoint(KetraObject extensions, uint32_t *count,
                                                                           AsnErrorBlock *err);
/** Of the point at an index from 0: the alternative of its name (0 when it has none or there is no such point) and the
 * number of names or attributes in it; the number of names of its cRLIssuer. Each call decodes the whole extension: to
 * ask for n points costs n times its length. Bound the number of points first, or walk long lists once
 * (AsnType_SequenceOfAny).
 * @{ */
KETRA_API int32_t KetraObjectSgetCRLDistributionPointsCalDistributionPointName(KetraObject extensions, uint32_t index,
                                                                               int32_t *choice, uint32_t *count,
                                                                               AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetCRLDistributionPointsCalCRLIssuer(KetraObject extensions, uint32_t index,
                                                                   uint32_t *count, AsnErrorBlock *err);
/** @} */
/** What the set checks first: an empty chain is KetraError_CheckDistributionPointsEmpty; names, reasons and issuers are
 * judged by their own checks. Whether the GeneralName objects hold names is not looked at. */
KETRA_API int32_t X509MUtilCheckCRLDistributionPoints(const KetraDistributionPoint *points, AsnErrorBlock *err);

/** @} */

/** @defgroup ketra_issuing_distribution_point IssuingDistributionPoint
 * RFC 5280 5.2.5.
 * @{ */

/** What a CRL covers. */
typedef struct KetraIssuingDistributionPoint {
  X509DistributionPointNameOpt distributionPoint; /**< where the CRL is */
  AsnBoolOpt onlyContainsUserCerts;               /**< of end entities only */
  AsnBoolOpt onlyContainsCACerts;                 /**< of CAs only */
  AsnBitOpt onlySomeReasons;                      /**< as KetraDistributionPoint::reasons */
  AsnBoolOpt indirectCRL;                         /**< of several issuers */
} KetraIssuingDistributionPoint;

/** Always stored critical. No default is applied either way: a present FALSE is written. */
KETRA_API int32_t KetraObjectSsetIssuingDistributionPoint(KetraObject extensions,
                                                          const KetraIssuingDistributionPoint *value,
                                                          AsnErrorBlock *err);
/** The caller prepares the name chain that the count below tells; reasons and relative names come as in
 * KetraObjectSgetCRLDistributionPoints. After a failure the fields before the failing one are written. */
KETRA_API int32_t KetraObjectSgetIssuingDistributionPoint(KetraObject extensions, KetraIssuingDistributionPoint *value,
                                                          AsnErrorBlock *err);
/** The alternative of the name (0 when there is none) and the number of names or attributes in it. */
KETRA_API int32_t KetraObjectSgetIssuingDistributionPointCalDistributionPointName(KetraObject extensions,
                                                                                  int32_t *choice, uint32_t *count,
                                                                                  AsnErrorBlock *err);

/** @} */

/** @defgroup ketra_name_constraints NameConstraints
 * RFC 5280 4.2.1.10.
 * @{ */

/** For which names a CA may issue. */
typedef struct KetraNameConstraints {
  X509GenSubtreesOpt permittedSubtrees; /**< names of a kind that occurs here must lie in one of them */
  X509GenSubtreesOpt excludedSubtrees;  /**< names must not lie in any of them */
} KetraNameConstraints;

/** A list that is present has 1 subtree or more; what is refused, X509MUtilCheckGenSubtreesOpt tells. Both may be
 * absent. */
KETRA_API int32_t KetraObjectSsetNameConstraints(KetraObject extensions, int32_t critical,
                                                 const KetraNameConstraints *value, AsnErrorBlock *err);
/** Fills chains that the caller has prepared. When the excluded list fails, the permitted one is written. */
KETRA_API int32_t KetraObjectSgetNameConstraints(KetraObject extensions, KetraNameConstraints *value,
                                                 AsnErrorBlock *err);
/** The lengths of both lists, 0 for an absent one. */
KETRA_API int32_t KetraObjectSgetNameConstraintsCalGenSubtree(KetraObject extensions, uint32_t *permittedCount,
                                                              uint32_t *excludedCount, AsnErrorBlock *err);

/** @} */

/** @defgroup ketra_crl_numbers CRLNumber, DeltaCRLIndicator
 * RFC 5280 5.2.3 and 5.2.4.
 * @{ */

/** A number of 0 or more. CRLNumber is always stored non-critical, DeltaCRLIndicator critical. A set refuses a negative
 * number (KetraError_SetCRLNumber, KetraError_SetDeltaCRLIndicator). A get that finds one fails
 * (KetraError_GetCRLNumber, KetraError_GetDeltaCRLIndicator) and has written it; a number beyond 32 bits is
 * AsnError_Range. RFC 5280 expects up to 20 octets, which the C++ library reads and writes.
 * @{ */
KETRA_API int32_t KetraObjectSsetCRLNumber(KetraObject extensions, const int32_t *number, AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetCRLNumber(KetraObject extensions, int32_t *number, AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSsetDeltaCRLIndicator(KetraObject extensions, const int32_t *number, AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetDeltaCRLIndicator(KetraObject extensions, int32_t *number, AsnErrorBlock *err);
/** @} */

/** @} */

/** @defgroup ketra_authority_key_id AuthorityKeyId
 * RFC 5280 4.2.1.1.
 * @{ */

/** Which key of the issuer signed. */
typedef struct KetraAuthorityKeyId {
  AsnOctOpt keyIdentifier;                           /**< the issuer's SubjectKeyId */
  X509GenNamesOpt authorityCertIssuer;               /**< who issued the issuer's certificate */
  X509CertSerialNumberOpt authorityCertSerialNumber; /**< present exactly when authorityCertIssuer is */
} KetraAuthorityKeyId;

/** Always stored non-critical. Issuer without serial number, or the other way round, is
 * KetraError_SetAuthorityKeyIdOpt. */
KETRA_API int32_t KetraObjectSsetAuthorityKeyId(KetraObject extensions, const KetraAuthorityKeyId *value,
                                                AsnErrorBlock *err);
/** Fills the chain of `authorityCertIssuer`, which the caller has prepared with an object per name. The key identifier
 * lies in the pool of the Extensions object. A serial number of up to four content octets comes as a number, a longer
 * one as octets that point into the stored extension. Issuer and serial number are read singly too. After a failure the
 * fields before the failing one are written. An issuer without names is KetraError_GetAuthorityKeyIdIssuer. */
KETRA_API int32_t KetraObjectSgetAuthorityKeyId(KetraObject extensions, KetraAuthorityKeyId *value, AsnErrorBlock *err);
/** Number of names in authorityCertIssuer, 0 when it is absent. */
KETRA_API int32_t KetraObjectSgetAuthorityKeyIdCalGenName(KetraObject extensions, uint32_t *count, AsnErrorBlock *err);

/** @} */

/** @defgroup ketra_cert_policies CertPolicies
 * RFC 5280 4.2.1.4.
 * @{ */

/** One qualifier of a policy. */
typedef struct KetraPolicyQualifierInfo {
  struct KetraPolicyQualifierInfo *next; /**< the following node, or null */
  Objid policyQualifierId;               /**< id-qt-cps, id-qt-unotice or another */
  AsnEncodedDataOpt qualifier;           /**< one complete encoding */
} KetraPolicyQualifierInfo;

/** Qualifiers that may be absent. */
typedef struct KetraPolicyQualifiersOpt {
  KetraPolicyQualifierInfo *policyQualifiers; /**< first node; a get that finds none leaves it alone */
  int32_t option;                             /**< 1 present, 0 absent */
} KetraPolicyQualifiersOpt;

/** One policy. */
typedef struct KetraPolicyInformation {
  struct KetraPolicyInformation *next;       /**< the following node, or null */
  Objid policyIdentifier;                    /**< the policy */
  KetraPolicyQualifiersOpt policyQualifiers; /**< what is said about it */
} KetraPolicyInformation;

/** `policies` points to the variable that holds the first node of the chain; it has 1 node or more
 * (KetraError_SetCertPoliciesEmpty), and so has a list of qualifiers that is present
 * (KetraError_SetCertPoliciesQualifiers). */
KETRA_API int32_t KetraObjectSsetCertPolicies(KetraObject extensions, int32_t critical,
                                              KetraPolicyInformation *const *policies, AsnErrorBlock *err);
/** Reads the policy at an index from 0 into `information`, whose qualifier chain the caller has prepared; its `next` is
 * neither read nor written. Arcs lie in the pool of the Extensions object, qualifiers point into the stored extension.
 * An index beyond the last is KetraError_GetCertPoliciesIndex, a chain that is too short
 * KetraError_GetCertPoliciesChainShort. Each call decodes the whole extension: to read n policies one by one costs n
 * times its length. For long lists, walk it once (AsnType_SequenceOfAny). */
KETRA_API int32_t KetraObjectSgetCertPolicies(KetraObject extensions, uint32_t index,
                                              KetraPolicyInformation *information, AsnErrorBlock *err);
/** Number of policies; number of qualifiers of the policy at an index, 0 when there is no such policy.
 * @{ */
KETRA_API int32_t KetraObjectSgetCertPoliciesCalInformation(KetraObject extensions, uint32_t *count,
                                                            AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetCertPoliciesCalQualifier(KetraObject extensions, uint32_t index, uint32_t *count,
                                                          AsnErrorBlock *err);
/** @} */

/** @} */

/** @defgroup ketra_policy_mappings PolicyMappings
 * RFC 5280 4.2.1.5.
 * @{ */

/** Two policies that the issuer holds for equivalent. */
typedef struct KetraPolicyMapping {
  struct KetraPolicyMapping *next; /**< the following node, or null */
  Objid issuerDomainPolicy;        /**< in the domain of the issuer */
  Objid subjectDomainPolicy;       /**< in the domain of the subject */
} KetraPolicyMapping;

/** A chain of 1 node or more (KetraError_SetPolicyMappingsEmpty). Always stored non-critical. */
KETRA_API int32_t KetraObjectSsetPolicyMappings(KetraObject extensions, const KetraPolicyMapping *first,
                                                AsnErrorBlock *err);
/** Fills a chain that the caller has prepared. Arcs lie in the pool of the Extensions object. A list without mappings
 * is KetraError_GetPolicyMappingsEmpty, a chain that is too short KetraError_GetPolicyMappingsChainShort. */
KETRA_API int32_t KetraObjectSgetPolicyMappings(KetraObject extensions, KetraPolicyMapping *first, AsnErrorBlock *err);
/** Number of mappings. */
KETRA_API int32_t KetraObjectSgetPolicyMappingsCalPolicyMapping(KetraObject extensions, uint32_t *count,
                                                                AsnErrorBlock *err);

/** @} */

/** @defgroup ketra_policy_constraints PolicyConstraints
 * RFC 5280 4.2.1.11.
 * @{ */

/** After how many certificates each takes effect, 0 or more. */
typedef struct KetraPolicyConstraints {
  AsnIntOpt requireExplicitPolicy; /**< from there on every certificate needs an acceptable policy */
  AsnIntOpt inhibitPolicyMapping;  /**< from there on mappings do not count */
} KetraPolicyConstraints;

/** A negative number is refused: KetraError_SetRequireExplicitPolicy, KetraError_SetInhibitPolicyMapping. Both may be
 * absent. */
KETRA_API int32_t KetraObjectSsetPolicyConstraints(KetraObject extensions, int32_t critical,
                                                   const KetraPolicyConstraints *constraints, AsnErrorBlock *err);
/** A negative number is refused (KetraError_GetRequireExplicitPolicy, KetraError_GetInhibitPolicyMapping) and has been
 * written. */
KETRA_API int32_t KetraObjectSgetPolicyConstraints(KetraObject extensions, KetraPolicyConstraints *constraints,
                                                   AsnErrorBlock *err);

/** @} */

/** @defgroup ketra_ext_key_usage ExtKeyUsage
 * RFC 5280 4.2.1.12.
 * @{ */

/** One key purpose. */
typedef struct KetraKeyPurposeId {
  struct KetraKeyPurposeId *next; /**< the following node, or null */
  Objid keyPurposeId;             /**< the purpose */
} KetraKeyPurposeId;

/** A chain of 1 node or more (KetraError_SetExtKeyUsageEmpty). */
KETRA_API int32_t KetraObjectSsetExtKeyUsage(KetraObject extensions, int32_t critical, const KetraKeyPurposeId *first,
                                             AsnErrorBlock *err);
/** Fills a chain that the caller has prepared. Arcs lie in the pool of the Extensions object. A list without purposes
 * is KetraError_GetExtKeyUsageEmpty, a chain that is too short KetraError_GetExtKeyUsageChainShort. */
KETRA_API int32_t KetraObjectSgetExtKeyUsage(KetraObject extensions, KetraKeyPurposeId *first, AsnErrorBlock *err);
/** Number of purposes. */
KETRA_API int32_t KetraObjectSgetExtKeyUsageCalKeyPurposeId(KetraObject extensions, uint32_t *count,
                                                            AsnErrorBlock *err);

/** @} */

/** @defgroup ketra_private_key_usage_period PrivateKeyUsagePeriod
 * RFC 3280 4.2.1.4.
 * @{ */

/** When the private key may sign. */
typedef struct KetraPrivateKeyUsagePeriod {
  GtimeOpt notBefore; /**< from then on */
  GtimeOpt notAfter;  /**< until then */
} KetraPrivateKeyUsagePeriod;

/** Always stored non-critical. The two times are not compared, and both may be absent. A time that was read before a
 * failure stays written.
 * @{ */
KETRA_API int32_t KetraObjectSsetPrivateKeyUsagePeriod(KetraObject extensions, const KetraPrivateKeyUsagePeriod *period,
                                                       AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetPrivateKeyUsagePeriod(KetraObject extensions, KetraPrivateKeyUsagePeriod *period,
                                                       AsnErrorBlock *err);
/** @} */

/** @} */

/** @defgroup ketra_crl_entries ReasonCode, InstructionCode, InvalidityDate
 * Of CRL entries: RFC 5280 5.3.1, RFC 3280 5.3.2, RFC 5280 5.3.2. Always stored non-critical.
 * @{ */

/** 0 unspecified, 1 keyCompromise, 2 cACompromise, 3 affiliationChanged, 4 superseded, 5 cessationOfOperation,
 * 6 certificateHold, 8 removeFromCRL. A set refuses other numbers (KetraError_SetReasonCode); a get that finds one
 * fails (KetraError_GetReasonCode) and has written it.
 * @{ */
KETRA_API int32_t KetraObjectSsetReasonCode(KetraObject extensions, const int32_t *reasonCode, AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetReasonCode(KetraObject extensions, int32_t *reasonCode, AsnErrorBlock *err);
/** @} */
/** What to do with a certificate on hold: any identifier. */
KETRA_API int32_t KetraObjectSsetInstructionCode(KetraObject extensions, const Objid *instruction, AsnErrorBlock *err);
/** The arcs lie in a buffer of the calling thread, 128 arcs long (more are AsnError_Range), and live until its next
 * call of this or of AsnGetObjidBER. */
KETRA_API int32_t KetraObjectSgetInstructionCode(KetraObject extensions, Objid *instruction, AsnErrorBlock *err);
/** When the key is suspected to have been compromised, a plain value.
 * @{ */
KETRA_API int32_t KetraObjectSsetInvalidityDate(KetraObject extensions, const Gtime *date, AsnErrorBlock *err);
KETRA_API int32_t KetraObjectSgetInvalidityDate(KetraObject extensions, Gtime *date, AsnErrorBlock *err);
/** @} */

/** @} */

/** @defgroup ketra_subject_directory_attributes SubjectDirectoryAttributes
 * RFC 5280 4.2.1.8.
 * @{ */

/** Stores the encoding of the object's attributes, always non-critical. An object without attributes is
 * X509AttributesError_Empty, a null one KetraError_SetAttributesMissing. */
KETRA_API int32_t KetraObjectSsetSubjectDirectoryAttributes(KetraObject extensions, X509AttributesObject attributes,
                                                            AsnErrorBlock *err);
/** Replaces the object's attributes by those of the extension, or leaves them as they were when it fails. A null object
 * is KetraError_GetAttributesMissing. */
KETRA_API int32_t KetraObjectSgetSubjectDirectoryAttributes(KetraObject extensions, X509AttributesObject attributes,
                                                            AsnErrorBlock *err);

/** @} */

/** @} */

#ifdef __cplusplus
}
#endif

#endif
