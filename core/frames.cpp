#include "core/frames.h"

namespace ketra {

int32_t openNew(const Operation &op, schema::Entry type, AsnObject *work, AsnValue *value) {
  if (op.failed(AsnObjectCreate(work, op.err()), "Call AsnObjectCreate")) return -1;
  if (op.failed(AsnOpenNew(*work, schema::record(type), value, op.err()), "Call AsnOpenNew")) {
    return abandon(*work, nullptr, -1);
  }
  return 0;
}

int32_t openEncoded(const Operation &op, schema::Entry type, const AsnEncodedData &encoding, AsnObject *work,
                    AsnValue *value) {
  if (op.failed(AsnObjectCreate(work, op.err()), "Call AsnObjectCreate")) return -1;
  if (op.failed(AsnOpenFromMem(*work, schema::record(type), &encoding, value, op.err()), "Call AsnOpenFromMem")) {
    return abandon(*work, nullptr, -1);
  }
  uint32_t unused = 0;
  if (op.failed(AsnDecode(*work, *value, 0, &unused, op.err()), "Call AsnDecode")) return abandon(*work, *value, -1);
  return 0;
}

// Closes and destroys: the work object must be gone without complaint before anything is stored.
int32_t closeAndDestroy(const Operation &op, AsnObject work, AsnValue value) {
  if (op.failed(AsnClose(work, value, op.err()), "Call AsnClose")) return abandon(work, nullptr, -1);
  return op.failed(AsnObjectDestroy(work, op.err()), "Call AsnObjectDestroy") ? -1 : 0;
}

int32_t countRoot(const Operation &op, AsnObject work, AsnValue root, uint32_t absentCode, Literal absentReason,
                  uint32_t *count) {
  AsnValue list = nullptr;
  if (op.failed(AsnGetElement(work, root, "/", &list, op.err()), "Call AsnGetElement")) return -1;
  if (list == nullptr) return op.reject(absentCode, absentReason);
  return op.failed(AsnCalCountOfSequence(work, root, "/", count, op.err()), "Call AsnCalCountOfSequence") ? -1 : 0;
}

namespace detail {

int32_t finishSet(const Operation &op, KetraObject extensions, const Extension &extension, int32_t critical,
                  AsnObject work, AsnValue value) {
  AsnEncodedData encoding{nullptr, 0};
  const int32_t encoded = AsnMUtilEncodeDER(extensions->pool, work, value, extension.encodePath, &encoding, op.err());
  if (op.failed(encoded, "Call AsnMUtilEncodeDER")) return abandon(work, value, -1);
  if (closeAndDestroy(op, work, value) != 0) return -1;
  const int32_t stored = ketraObjectSsetExt(extensions, extension.objid, &encoding, critical, op.err());
  return op.failed(stored, "Call ketraObjectSsetExt") ? stored : 0;
}

}  // namespace detail
}  // namespace ketra
