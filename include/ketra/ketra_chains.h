/** @file
 * Chains for the C interface: reads whole lists and makes the nodes of lists that are to be set. Header only, C11 and
 * C++17. */

/** @defgroup ketra_chains Chains, C interface
 * The list operations of ketra.h take and fill chains of nodes that the caller provides. The functions here provide
 * them: `KetraChainsRead...` counts the members, makes the nodes and reads the whole list; `KetraChainsMake...` makes
 * the nodes of a list that is to be set. A KetraChains owns all of it, and KetraChainsFree releases all of it.
 * @code
 * KetraChains chains = {0};
 * KetraKeyPurposeId *purposes = NULL;
 * if (KetraChainsReadExtKeyUsage(&chains, extensions, &purposes, err) == 0) {
 *   for (const KetraKeyPurposeId *node = purposes; node != NULL; node = node->next) use(&node->keyPurposeId);
 * }
 * KetraChainsFree(&chains);
 * @endcode
 *
 * Conventions, which the declarations do not repeat:
 * - Every function returns 0 on success and -1 on failure, with a code and a trace in `err`, which may be null. Codes
 *   are those of the operations that a function calls; a null parameter is KetraError_NullParameter.
 * - Results are written on success only. What was made before a failure stays with the KetraChains, which is freed as
 *   usual.
 * - What a read returns, arcs and octets included, lives until the KetraChains is freed. It does not depend on the
 *   Extensions object that was read, in whose pool nothing is left.
 * - The nodes of one chain lie in a row: `first[i]` is the node that `i` steps along `next` lead to. The caller may
 *   write to nodes and link them in another way.
 * - A read takes time in proportion to the length of the extension and, at the peak and with its results, less than 250
 *   octets of memory per octet of it. Running out of memory is an ordinary error.
 * - A KetraChains, and every object that a call gets with it, is used by one thread at a time. */
#ifndef KETRA_CHAINS_H
#define KETRA_CHAINS_H

#include <stddef.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>

#include "ketra/ketra.h"
#include "ketra/ketra_errors.h"
#include "ketra/ketra_runtime.h"

#ifdef __cplusplus
extern "C" {
#endif

/** @addtogroup ketra_chains
 * @{ */

/** Owner of nodes, of their GeneralName objects, and of the octets and arcs that were read into them. Start with zeros:
 * `KetraChains chains = {0};`. Not to be copied. */
typedef struct KetraChains {
  uint32_t most; /**< nodes that may be made until the next KetraChainsFree, 0 for any number; set by the caller */
  uint32_t made; /**< nodes made so far */
  struct KetraChainsRecord *newest; /**< private */
  AsnMemObject pool;                /**< private */
} KetraChains;

/** @} */

/** @cond private: how chains are kept */

/* What has to be released, the newest first. */
struct KetraChainsRecord {
  struct KetraChainsRecord *next;
  KetraObject object; /* whose pool holds this record and all that was made up to the next one; or null */
  X509GenNameChain *names;
  X509GenSubtree *subtrees;
  uint32_t count; /* of names or subtrees */
};

/* Adds to the trace of what has failed. */
static inline int32_t ketraChainsFailed(const char *function, const char *message, AsnErrorBlock *err) {
  AsnErrorInfo("ketra_chains.h", function, message, err, NULL, 0);
  return -1;
}

static inline int32_t ketraChainsRefuse(const char *function, const char *message, int32_t code, AsnErrorBlock *err) {
  if (err != NULL) err->code = (uint32_t)code;
  return ketraChainsFailed(function, message, err);
}

/* A new Extensions object, whose pool serves from here on. */
static inline int32_t ketraChainsBegin(KetraChains *chains, KetraObject *object, AsnErrorBlock *err) {
  AsnMemObject pool = NULL;
  void *memory = NULL;
  if (KetraObjectCreate(object, err)) return -1;
  if (KetraObjectGetMemObject(*object, &pool, err) ||
      AsnMemObjectMalloc(pool, sizeof(struct KetraChainsRecord), &memory, err)) {
    KetraObjectDestroy(*object, NULL);
    return -1;
  }
  struct KetraChainsRecord *const record = (struct KetraChainsRecord *)memory;
  memset(record, 0, sizeof *record);
  record->next = chains->newest;
  record->object = *object;
  chains->newest = record;
  chains->pool = pool;
  return 0;
}

/* Blank memory that lives as long as the chains. */
static inline int32_t ketraChainsMemory(KetraChains *chains, uint32_t count, size_t size, void **memory,
                                        AsnErrorBlock *err) {
  KetraObject object = NULL;
  if (count > UINT32_MAX / size)
    return ketraChainsRefuse("KetraChains", "the nodes take more than 4294967295 octets", AsnMemError_OutOfMemory, err);
  if (chains->pool == NULL && ketraChainsBegin(chains, &object, err)) return -1;
  if (AsnMemObjectMalloc(chains->pool, (uint32_t)(count * size), memory, err)) return -1;
  memset(*memory, 0, count * size);
  return 0;
}

/* Blank nodes in a row, each linked to the next by its first member. */
static inline int32_t ketraChainsNodes(KetraChains *chains, const char *function, uint32_t count, size_t size,
                                       const void *result, void **first, AsnErrorBlock *err) {
  *first = NULL;
  if (chains == NULL || result == NULL)
    return ketraChainsRefuse(function, "a required parameter is null", KetraError_NullParameter, err);
  if (count == 0) return 0;
  if (chains->most != 0 && (chains->made > chains->most || count > chains->most - chains->made)) {
    char message[ASN_TRACE_MESSAGE];
    snprintf(message, sizeof message, "the limit is %u nodes: %u exist, %u more are needed", (unsigned)chains->most,
             (unsigned)chains->made, (unsigned)count);
    return ketraChainsRefuse(function, message, AsnMemError_Limit, err);
  }
  if (ketraChainsMemory(chains, count, size, first, err))
    return ketraChainsFailed(function, "the nodes cannot be made", err);
  unsigned char *node = (unsigned char *)*first;
  for (uint32_t i = 1; i < count; i++, node += size) {
    const unsigned char *const next = node + size;
    memcpy(node, &next, sizeof next);
  }
  chains->made += count;
  return 0;
}

/* Lets KetraChainsFree find the objects of these nodes, which hold none yet. */
static inline int32_t ketraChainsRemember(KetraChains *chains, X509GenNameChain *names, X509GenSubtree *subtrees,
                                          uint32_t count, AsnErrorBlock *err) {
  void *memory = NULL;
  if (ketraChainsMemory(chains, 1, sizeof(struct KetraChainsRecord), &memory, err)) return -1;
  struct KetraChainsRecord *const record = (struct KetraChainsRecord *)memory;
  record->next = chains->newest;
  record->names = names;
  record->subtrees = subtrees;
  record->count = count;
  chains->newest = record;
  return 0;
}

static inline int32_t ketraChainsObject(X509GenNameObject *object, const X509GenNameParam *name, AsnErrorBlock *err) {
  if (X509GenNameObjectCreate(object, err)) return -1;
  return name != NULL && X509GenNameObjectSetName(*object, name, err) ? -1 : 0;
}

/* Gives the stored extension to an Extensions object of the chains, to be read there. An absent one is left to the
 * operation that reads: it then finds none in `extensions`. */
static inline int32_t ketraChainsCopy(KetraChains *chains, KetraObject extensions, const Objid *objid,
                                      const void *result, KetraObject *copy, AsnErrorBlock *err) {
  const KetraExtension *stored = NULL;
  if (chains == NULL || extensions == NULL || result == NULL)
    return ketraChainsRefuse("KetraChains", "a required parameter is null", KetraError_NullParameter, err);
  *copy = extensions;
  if (KetraObjectSearchExtpByObjid(extensions, objid, &stored, err)) return -1;
  if (stored == NULL) return 0;
  return ketraChainsBegin(chains, copy, err) || KetraObjectSetExt(*copy, stored, err) ? -1 : 0;
}

/* Decodes the stored extension as a type; the work object is the caller's, after a failure too. */
static inline int32_t ketraChainsDecode(KetraObject extensions, const Objid *objid, const AsnType *type,
                                        AsnObject *work, AsnValue *root, AsnErrorBlock *err) {
  const KetraExtension *stored = NULL;
  uint32_t scratch = 0;
  if (KetraObjectSearchExtpByObjid(extensions, objid, &stored, err) || AsnObjectCreate(work, err)) return -1;
  return AsnOpenFromMem(*work, type, &stored->value, root, err) || AsnDecode(*work, *root, 0, &scratch, err) ? -1 : 0;
}

/** @endcond */

/** @addtogroup ketra_chains
 * @{ */

/** Releases all that was read and made, and destroys the GeneralName objects that the nodes hold by then. The
 * KetraChains is empty afterwards, keeps `most`, and may be used again. An empty or null one is fine. */
static inline void KetraChainsFree(KetraChains *chains) {
  if (chains == NULL) return;
  while (chains->newest != NULL) {
    const struct KetraChainsRecord record = *chains->newest; /* a copy: the record may lie in the object */
    for (uint32_t i = 0; i < record.count; i++)
      X509GenNameObjectDestroy(record.names != NULL ? record.names[i].genName : record.subtrees[i].base, NULL);
    KetraObjectDestroy(record.object, NULL);
    chains->newest = record.next;
  }
  chains->made = 0;
  chains->pool = NULL;
}

/** @name Making
 * Chains of `count` blank nodes; a null pointer when `count` is 0. The caller fills the nodes in and sets the
 * extension; arcs and octets that the nodes point to have to live until then. More nodes than KetraChains::most allows
 * are AsnMemError_Limit.
 * @{ */

/** Names, each with an object that holds a copy of the name at its place in `names`. With null `names` the objects hold
 * none and wait for a get. */
static inline int32_t KetraChainsMakeNames(KetraChains *chains, const X509GenNameParam *names, uint32_t count,
                                           X509GenNameChain **first, AsnErrorBlock *err) {
  void *memory = NULL;
  if (ketraChainsNodes(chains, __func__, count, sizeof **first, first, &memory, err)) return -1;
  X509GenNameChain *const nodes = (X509GenNameChain *)memory;
  if (count > 0 && ketraChainsRemember(chains, nodes, NULL, count, err))
    return ketraChainsFailed(__func__, "the nodes cannot be made", err);
  for (uint32_t i = 0; i < count; i++) {
    if (ketraChainsObject(&nodes[i].genName, names != NULL ? &names[i] : NULL, err))
      return ketraChainsFailed(__func__, "a name cannot be made", err);
  }
  *first = nodes;
  return 0;
}

/** Subtrees, each with an object that holds a copy of the name at its place in `bases`. With null `bases` the objects
 * hold none and wait for a get. Minimum and maximum are absent. */
static inline int32_t KetraChainsMakeSubtrees(KetraChains *chains, const X509GenNameParam *bases, uint32_t count,
                                              X509GenSubtree **first, AsnErrorBlock *err) {
  void *memory = NULL;
  if (ketraChainsNodes(chains, __func__, count, sizeof **first, first, &memory, err)) return -1;
  X509GenSubtree *const nodes = (X509GenSubtree *)memory;
  if (count > 0 && ketraChainsRemember(chains, NULL, nodes, count, err))
    return ketraChainsFailed(__func__, "the nodes cannot be made", err);
  for (uint32_t i = 0; i < count; i++) {
    if (ketraChainsObject(&nodes[i].base, bases != NULL ? &bases[i] : NULL, err))
      return ketraChainsFailed(__func__, "a name cannot be made", err);
  }
  *first = nodes;
  return 0;
}

/** Attributes of a name relative to the CRL issuer. */
static inline int32_t KetraChainsMakeAttributes(KetraChains *chains, uint32_t count, X509AttributeTypeAndValue **first,
                                                AsnErrorBlock *err) {
  void *nodes = NULL;
  if (ketraChainsNodes(chains, __func__, count, sizeof **first, first, &nodes, err)) return -1;
  *first = (X509AttributeTypeAndValue *)nodes;
  return 0;
}

/** Distribution points without name, reasons and issuer. */
static inline int32_t KetraChainsMakeDistributionPoints(KetraChains *chains, uint32_t count,
                                                        KetraDistributionPoint **first, AsnErrorBlock *err) {
  void *nodes = NULL;
  if (ketraChainsNodes(chains, __func__, count, sizeof **first, first, &nodes, err)) return -1;
  *first = (KetraDistributionPoint *)nodes;
  return 0;
}

/** Policies without qualifiers. */
static inline int32_t KetraChainsMakePolicies(KetraChains *chains, uint32_t count, KetraPolicyInformation **first,
                                              AsnErrorBlock *err) {
  void *nodes = NULL;
  if (ketraChainsNodes(chains, __func__, count, sizeof **first, first, &nodes, err)) return -1;
  *first = (KetraPolicyInformation *)nodes;
  return 0;
}

/** Qualifiers of one policy. */
static inline int32_t KetraChainsMakeQualifiers(KetraChains *chains, uint32_t count, KetraPolicyQualifierInfo **first,
                                                AsnErrorBlock *err) {
  void *nodes = NULL;
  if (ketraChainsNodes(chains, __func__, count, sizeof **first, first, &nodes, err)) return -1;
  *first = (KetraPolicyQualifierInfo *)nodes;
  return 0;
}

/** Policy mappings. */
static inline int32_t KetraChainsMakePolicyMappings(KetraChains *chains, uint32_t count, KetraPolicyMapping **first,
                                                    AsnErrorBlock *err) {
  void *nodes = NULL;
  if (ketraChainsNodes(chains, __func__, count, sizeof **first, first, &nodes, err)) return -1;
  *first = (KetraPolicyMapping *)nodes;
  return 0;
}

/** Key purposes. */
static inline int32_t KetraChainsMakeKeyPurposes(KetraChains *chains, uint32_t count, KetraKeyPurposeId **first,
                                                 AsnErrorBlock *err) {
  void *nodes = NULL;
  if (ketraChainsNodes(chains, __func__, count, sizeof **first, first, &nodes, err)) return -1;
  *first = (KetraKeyPurposeId *)nodes;
  return 0;
}

/** @} */

/** @cond private: reading in steps */

static inline int32_t ketraChainsReadNames(KetraChains *chains, KetraObject extensions, const char *function,
                                           const Objid *objid,
                                           int32_t (*countNames)(KetraObject, uint32_t *, AsnErrorBlock *),
                                           int32_t (*getNames)(KetraObject, const X509GenNames *, AsnErrorBlock *),
                                           X509GenNames *result, AsnErrorBlock *err) {
  X509GenNames names = {NULL};
  KetraObject copy = NULL;
  uint32_t count = 0;
  if (ketraChainsCopy(chains, extensions, objid, result, &copy, err) || countNames(copy, &count, err) ||
      KetraChainsMakeNames(chains, NULL, count, &names.genNames, err) || getNames(copy, &names, err))
    return ketraChainsFailed(function, "the list cannot be read", err);
  *result = names;
  return 0;
}

/* Nodes for the alternative that the count has found. */
static inline int32_t ketraChainsMakePointName(KetraChains *chains, int32_t choice, uint32_t count,
                                               X509DistributionPointName *name, AsnErrorBlock *err) {
  name->type = choice;
  return choice == X509DistributionPointName_NameRelativeToCRLIssuer
             ? KetraChainsMakeAttributes(chains, count, &name->nameRelativeToCRLIssuer, err)
             : KetraChainsMakeNames(chains, NULL, count, &name->fullName, err);
}

/* Nodes for the names of the points of a decoded list. */
static inline int32_t ketraChainsMakePointNames(KetraChains *chains, AsnObject work, AsnValue root,
                                                KetraDistributionPoint *points, AsnErrorBlock *err) {
  AsnValue element = NULL;
  char path[16];
  int32_t choice = 0;
  uint32_t number = 0, count = 0;
  for (KetraDistributionPoint *point = points; point != NULL; point = point->next) {
    snprintf(path, sizeof path, "%u", (unsigned)++number);
    if (AsnGetElement(work, root, path, &element, err) ||
        X509MUtilCalDistributionPointName(work, element, "distributionPoint", &choice, &count, err) ||
        ketraChainsMakePointName(chains, choice, count, &point->distributionPoint.value, err) ||
        AsnGetElement(work, element, "cRLIssuer", &element, err))
      return -1;
    if (element != NULL && (AsnCalCountOfSequence(work, element, NULL, &count, err) ||
                            KetraChainsMakeNames(chains, NULL, count, &point->cRLIssuer.genNames, err)))
      return -1;
  }
  return 0;
}

/* Counts in one pass what each point holds; the counts of ketra.h would decode the list for each point. */
static inline int32_t ketraChainsPreparePoints(KetraChains *chains, KetraObject extensions,
                                               KetraDistributionPoint *points, AsnErrorBlock *err) {
  static const AsnType kPoints[] = {
      {0x30011516, 0, 1, 0, "CRLDistributionPoints"}, /* SEQUENCE OF */
      {0x30011114, 0, 0, 1, NULL},
      {0x30011114, 0, 3, 0, "DistributionPoint"}, /* SEQUENCE */
      {0xA0011313, ASN_FLAG_OWN_TAG | ASN_FLAG_EXPLICIT | ASN_FLAG_OPTIONAL, 0, 3, "distributionPoint"},
      {0x81011810, ASN_FLAG_OWN_TAG | ASN_FLAG_OPTIONAL, 0, 0, "reasons"},
      {0xA2011516, ASN_FLAG_OWN_TAG | ASN_FLAG_OPTIONAL, 0, 4, "cRLIssuer"},
      {0x00011313, 0, 2, 0, "DistributionPointName"}, /* CHOICE */
      {0xA0011516, ASN_FLAG_OWN_TAG, 0, 2, "fullName"},
      {0xA1011517, ASN_FLAG_OWN_TAG, 0, 3, "nameRelativeToCRLIssuer"},
      {0x30011516, 0, 1, 0, "GeneralNames"}, /* SEQUENCE OF open type */
      {0x00011212, 0, 0, 0, NULL},
      {0x31011517, 0, 1, 0, "RelativeDistinguishedName"}, /* SET OF open type */
      {0x00011212, 0, 0, 0, NULL},
      {0x00FFFFFF, 0, 0, 0, NULL},
  };
  AsnObject work = NULL;
  AsnValue root = NULL;
  const int failed = ketraChainsDecode(extensions, &X509Objid_CRLDistributionPoints, kPoints, &work, &root, err) ||
                     ketraChainsMakePointNames(chains, work, root, points, err);
  AsnMUtilErrorFinishAsn(work, root);
  return failed ? -1 : 0;
}

static inline int32_t ketraChainsGetQualifiers(KetraChains *chains, AsnObject work, AsnValue list,
                                               KetraPolicyQualifiersOpt *qualifiers, AsnErrorBlock *err) {
  AsnValue element = NULL;
  AsnEncodedData value = {NULL, 0};
  char path[16];
  uint32_t number = 0, count = 0;
  if (AsnCalCountOfSequence(work, list, NULL, &count, err) ||
      KetraChainsMakeQualifiers(chains, count, &qualifiers->policyQualifiers, err))
    return -1;
  qualifiers->option = 1;
  for (KetraPolicyQualifierInfo *node = qualifiers->policyQualifiers; node != NULL; node = node->next) {
    snprintf(path, sizeof path, "%u", (unsigned)++number);
    if (AsnGetElement(work, list, path, &element, err) ||
        AsnMUtilGetObjidConstBER(chains->pool, work, element, "policyQualifierId", &node->policyQualifierId, err) ||
        AsnCalAddressOfValFld(work, element, "qualifier", &value.octets, &value.length, err))
      return -1;
    if (value.length == ASN_ABSENT_LENGTH) continue;
    node->qualifier.value = value;
    node->qualifier.option = 1;
  }
  return 0;
}

static inline int32_t ketraChainsGetPolicies(KetraChains *chains, AsnObject work, AsnValue root,
                                             KetraPolicyInformation *policies, AsnErrorBlock *err) {
  AsnValue element = NULL, list = NULL;
  char path[16];
  uint32_t number = 0;
  for (KetraPolicyInformation *node = policies; node != NULL; node = node->next) {
    snprintf(path, sizeof path, "%u", (unsigned)++number);
    if (AsnGetElement(work, root, path, &element, err) ||
        AsnMUtilGetObjidConstBER(chains->pool, work, element, "policyIdentifier", &node->policyIdentifier, err) ||
        AsnGetElement(work, element, "policyQualifiers", &list, err) ||
        (list != NULL && ketraChainsGetQualifiers(chains, work, list, &node->policyQualifiers, err)))
      return -1;
  }
  return 0;
}

/* Reads all policies in one pass; the get of ketra.h would decode the list for each policy. */
static inline int32_t ketraChainsFillPolicies(KetraChains *chains, KetraObject extensions,
                                              KetraPolicyInformation *policies, AsnErrorBlock *err) {
  static const AsnType kPolicies[] = {
      {0x30011516, 0, 1, 0, "CertificatePolicies"}, /* SEQUENCE OF */
      {0x30011114, 0, 0, 1, NULL},
      {0x30011114, 0, 2, 0, "PolicyInformation"}, /* SEQUENCE */
      {0x06011811, 0, 0, 0, "policyIdentifier"},
      {0x30011516, ASN_FLAG_OPTIONAL, 0, 1, "policyQualifiers"},
      {0x30011516, 0, 1, 0, "PolicyQualifiers"}, /* SEQUENCE OF */
      {0x30011114, 0, 0, 1, NULL},
      {0x30011114, 0, 2, 0, "PolicyQualifierInfo"}, /* SEQUENCE */
      {0x06011811, 0, 0, 0, "policyQualifierId"},
      {0x00011212, ASN_FLAG_OPTIONAL, 0, 0, "qualifier"}, /* open type */
      {0x00FFFFFF, 0, 0, 0, NULL},
  };
  AsnObject work = NULL;
  AsnValue root = NULL;
  const int failed = ketraChainsDecode(extensions, &X509Objid_CertPolicies, kPolicies, &work, &root, err) ||
                     ketraChainsGetPolicies(chains, work, root, policies, err);
  AsnMUtilErrorFinishAsn(work, root);
  return failed ? -1 : 0;
}

/** @endcond */

/** @name Reading
 * What the getters of ketra.h deliver, all of it. An absent extension is KetraError_ExtensionAbsent; a list with more
 * members than KetraChains::most allows is AsnMemError_Limit before any of its nodes is made.
 * @{ */

/** All names of a SubjectAltName. */
static inline int32_t KetraChainsReadSubjectAltName(KetraChains *chains, KetraObject extensions, X509GenNames *names,
                                                    AsnErrorBlock *err) {
  return ketraChainsReadNames(chains, extensions, __func__, &X509Objid_SubjectAltName,
                              KetraObjectSgetSubjectAltNameCalGenName, KetraObjectSgetSubjectAltName, names, err);
}

/** All names of an IssuerAltName. */
static inline int32_t KetraChainsReadIssuerAltName(KetraChains *chains, KetraObject extensions, X509GenNames *names,
                                                   AsnErrorBlock *err) {
  return ketraChainsReadNames(chains, extensions, __func__, &X509Objid_IssuerAltName,
                              KetraObjectSgetIssuerAltNameCalGenName, KetraObjectSgetIssuerAltName, names, err);
}

/** All names of a CertIssuer. */
static inline int32_t KetraChainsReadCertIssuer(KetraChains *chains, KetraObject extensions, X509GenNames *names,
                                                AsnErrorBlock *err) {
  return ketraChainsReadNames(chains, extensions, __func__, &X509Objid_CertIssuer, KetraObjectSgetCertIssuerCalGenName,
                              KetraObjectSgetCertIssuer, names, err);
}

/** All points, with their names of either alternative and their issuers, as KetraObjectSgetCRLDistributionPoints
 * delivers them. */
static inline int32_t KetraChainsReadCRLDistributionPoints(KetraChains *chains, KetraObject extensions,
                                                           KetraDistributionPoint **first, AsnErrorBlock *err) {
  KetraDistributionPoint *nodes = NULL;
  KetraObject copy = NULL;
  uint32_t count = 0;
  if (ketraChainsCopy(chains, extensions, &X509Objid_CRLDistributionPoints, first, &copy, err) ||
      KetraObjectSgetCRLDistributionPointsCalDistributionPoint(copy, &count, err) ||
      KetraChainsMakeDistributionPoints(chains, count, &nodes, err) ||
      ketraChainsPreparePoints(chains, copy, nodes, err) || KetraObjectSgetCRLDistributionPoints(copy, nodes, err))
    return ketraChainsFailed(__func__, "the list cannot be read", err);
  *first = nodes;
  return 0;
}

/** The point, with its name of either alternative. */
static inline int32_t KetraChainsReadIssuingDistributionPoint(KetraChains *chains, KetraObject extensions,
                                                              KetraIssuingDistributionPoint *value,
                                                              AsnErrorBlock *err) {
  KetraIssuingDistributionPoint read;
  KetraObject copy = NULL;
  int32_t choice = 0;
  uint32_t count = 0;
  memset(&read, 0, sizeof read);
  if (ketraChainsCopy(chains, extensions, &X509Objid_IssuingDistributionPoint, value, &copy, err) ||
      KetraObjectSgetIssuingDistributionPointCalDistributionPointName(copy, &choice, &count, err) ||
      ketraChainsMakePointName(chains, choice, count, &read.distributionPoint.value, err) ||
      KetraObjectSgetIssuingDistributionPoint(copy, &read, err))
    return ketraChainsFailed(__func__, "the extension cannot be read", err);
  *value = read;
  return 0;
}

/** Both lists of subtrees; an absent one has `option` 0 and no nodes. */
static inline int32_t KetraChainsReadNameConstraints(KetraChains *chains, KetraObject extensions,
                                                     KetraNameConstraints *value, AsnErrorBlock *err) {
  KetraNameConstraints read;
  KetraObject copy = NULL;
  uint32_t permitted = 0, excluded = 0;
  memset(&read, 0, sizeof read);
  if (ketraChainsCopy(chains, extensions, &X509Objid_NameConstraints, value, &copy, err) ||
      KetraObjectSgetNameConstraintsCalGenSubtree(copy, &permitted, &excluded, err) ||
      KetraChainsMakeSubtrees(chains, NULL, permitted, &read.permittedSubtrees.genSubtrees, err) ||
      KetraChainsMakeSubtrees(chains, NULL, excluded, &read.excludedSubtrees.genSubtrees, err) ||
      KetraObjectSgetNameConstraints(copy, &read, err))
    return ketraChainsFailed(__func__, "the extension cannot be read", err);
  *value = read;
  return 0;
}

/** The key identifier, and the issuer's names with the serial number. */
static inline int32_t KetraChainsReadAuthorityKeyId(KetraChains *chains, KetraObject extensions,
                                                    KetraAuthorityKeyId *value, AsnErrorBlock *err) {
  KetraAuthorityKeyId read;
  KetraObject copy = NULL;
  uint32_t count = 0;
  memset(&read, 0, sizeof read);
  if (ketraChainsCopy(chains, extensions, &X509Objid_AuthorityKeyId, value, &copy, err) ||
      KetraObjectSgetAuthorityKeyIdCalGenName(copy, &count, err) ||
      KetraChainsMakeNames(chains, NULL, count, &read.authorityCertIssuer.genNames, err) ||
      KetraObjectSgetAuthorityKeyId(copy, &read, err))
    return ketraChainsFailed(__func__, "the extension cannot be read", err);
  *value = read;
  return 0;
}

/** All policies with their qualifiers. A list without policies is read as a null pointer. */
static inline int32_t KetraChainsReadCertPolicies(KetraChains *chains, KetraObject extensions,
                                                  KetraPolicyInformation **first, AsnErrorBlock *err) {
  KetraPolicyInformation *nodes = NULL;
  KetraObject copy = NULL;
  uint32_t count = 0;
  if (ketraChainsCopy(chains, extensions, &X509Objid_CertPolicies, first, &copy, err) ||
      KetraObjectSgetCertPoliciesCalInformation(copy, &count, err) ||
      KetraChainsMakePolicies(chains, count, &nodes, err) || ketraChainsFillPolicies(chains, copy, nodes, err))
    return ketraChainsFailed(__func__, "the list cannot be read", err);
  *first = nodes;
  return 0;
}

/** All mappings. */
static inline int32_t KetraChainsReadPolicyMappings(KetraChains *chains, KetraObject extensions,
                                                    KetraPolicyMapping **first, AsnErrorBlock *err) {
  KetraPolicyMapping *nodes = NULL;
  KetraObject copy = NULL;
  uint32_t count = 0;
  if (ketraChainsCopy(chains, extensions, &X509Objid_PolicyMappings, first, &copy, err) ||
      KetraObjectSgetPolicyMappingsCalPolicyMapping(copy, &count, err) ||
      KetraChainsMakePolicyMappings(chains, count, &nodes, err) || KetraObjectSgetPolicyMappings(copy, nodes, err))
    return ketraChainsFailed(__func__, "the list cannot be read", err);
  *first = nodes;
  return 0;
}

/** All key purposes. */
static inline int32_t KetraChainsReadExtKeyUsage(KetraChains *chains, KetraObject extensions, KetraKeyPurposeId **first,
                                                 AsnErrorBlock *err) {
  KetraKeyPurposeId *nodes = NULL;
  KetraObject copy = NULL;
  uint32_t count = 0;
  if (ketraChainsCopy(chains, extensions, &X509Objid_ExtKeyUsage, first, &copy, err) ||
      KetraObjectSgetExtKeyUsageCalKeyPurposeId(copy, &count, err) ||
      KetraChainsMakeKeyPurposes(chains, count, &nodes, err) || KetraObjectSgetExtKeyUsage(copy, nodes, err))
    return ketraChainsFailed(__func__, "the list cannot be read", err);
  *first = nodes;
  return 0;
}

/** @} */

/** @} */

#ifdef __cplusplus
}
#endif

#endif
