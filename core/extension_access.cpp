#include "core/extension_access.h"

#include "core/operation.h"
#include "core/shapes.h"

namespace ketra {
namespace {

// The object's record of the identifier; an absent one is refused with `absentCode`.
int32_t find(const Operation &op, KetraObject extensions, const Objid *objid, uint32_t absentCode,
             const KetraExtension **extension) {
  const int32_t result = KetraObjectSearchExtpByObjid(extensions, objid, extension, op.err());
  if (op.failed(result, "Call KetraObjectSearchExtpByObjid")) return result;
  return *extension == nullptr ? op.reject(absentCode, "None extension") : 0;
}

}  // namespace

int32_t ketraObjectSsetExt(KetraObject extensions, const Objid *objid, const AsnEncodedData *value, int32_t critical,
                           AsnErrorBlock *err) {
  const Operation op(__func__, err);
  const int32_t mark = critical == 1 ? 1 : 0;
  const KetraExtension extension{*objid, mark, mark, byMember(*value)};
  const int32_t result = KetraObjectSetExt(extensions, &extension, err);
  if (op.failed(result, "Call KetraObjectSetExt")) return result;
  return op.failed(AsnMemObjectFree(extensions->pool, value->octets, err), "Call AsnMemObjectFree") ? -1 : 0;
}

int32_t ketraObjectSgetCritical(KetraObject extensions, const Objid *objid, int32_t *critical, AsnErrorBlock *err) {
  const KetraExtension *extension = nullptr;
  const int32_t result = find(Operation(__func__, err), extensions, objid, KetraError_CriticalAbsent, &extension);
  if (result == 0) *critical = extension->criticalOption == 1 ? extension->critical : 0;
  return result;
}

int32_t ketraObjectSgetValueByObjid(KetraObject extensions, const Objid *objid, AsnEncodedData *value,
                                    AsnErrorBlock *err) {
  const KetraExtension *extension = nullptr;
  const int32_t result = find(Operation(__func__, err), extensions, objid, KetraError_ExtensionAbsent, &extension);
  if (result == 0) *value = extension->value;
  return result;
}

int32_t ketraObjectSgetSExt(KetraObject extensions, CacheKind kind, CacheEntry **entry, AsnErrorBlock *err) {
  auto *node = static_cast<CacheNode *>(extensions->structuredCache);
  CacheNode *last = nullptr;
  for (; node != nullptr && node->entry.kind != kind; node = node->next) last = node;
  if (node == nullptr) {
    void *memory = nullptr;
    const int32_t result = AsnMemObjectMalloc(extensions->pool, sizeof(CacheNode), &memory, err);
    if (Operation(__func__, err).failed(result, "Call AsnMemObjectMalloc")) return -1;
    node = static_cast<CacheNode *>(memory);
    node->next = nullptr;
    node->entry.kind = kind;
    if (last == nullptr) {
      extensions->structuredCache = node;
    } else {
      last->next = node;
    }
  }
  *entry = &node->entry;
  return 0;
}

}  // namespace ketra
