// The four operations through which every typed operation reaches an Extensions object. Their names are those of the
// error trace.
#pragma once

#include <cstddef>

#include "ketra/contracts/certificate.h"

namespace ketra {

// Stores the value under the identifier; critical only when `critical` is 1. After success the octets of `value` have
// been returned to the object's pool; after a failed store they stay there.
int32_t ketraObjectSsetExt(KetraObject extensions, const Objid *objid, const AsnEncodedData *value, int32_t critical,
                           AsnErrorBlock *err);

// The stored criticality; 0 when it was left out. An absent extension fails.
int32_t ketraObjectSgetCritical(KetraObject extensions, const Objid *objid, int32_t *critical, AsnErrorBlock *err);

// The stored encoding, which is not copied: it belongs to the Extensions object.
int32_t ketraObjectSgetValueByObjid(KetraObject extensions, const Objid *objid, AsnEncodedData *value,
                                    AsnErrorBlock *err);

// ---- The structured-extension cache: what the last get of four extensions read into the pool ----

enum class CacheKind : uint32_t { AuthorityKeyId = 1, SubjectKeyId = 2, PrivateKeyUsagePeriod = 3, InvalidityDate = 4 };

struct CachedPeriod {
  GtimeOpt notBefore;
  GtimeOpt notAfter;
};

struct CacheEntry {
  CacheKind kind;
  union {
    AsnOctOpt keyIdentifier;  // AuthorityKeyId
    AsnOct subjectKeyId;
    CachedPeriod period;  // PrivateKeyUsagePeriod
    Gtime invalidityDate;
    uint32_t words[10];
  };
};

struct CacheNode {
  CacheNode *next;
  CacheEntry entry;
};
static_assert(sizeof(void *) != 4 || sizeof(CacheNode) == 48);
static_assert(sizeof(void *) != 4 || sizeof(KetraExtension) == 24);
static_assert(sizeof(void *) != 4 || offsetof(KetraObjectRecord, structuredCache) == 24);

// Finds the node of the kind, or appends one. Its payload is what the last get of the kind wrote, or uninitialised.
int32_t ketraObjectSgetSExt(KetraObject extensions, CacheKind kind, CacheEntry **entry, AsnErrorBlock *err);

}  // namespace ketra
