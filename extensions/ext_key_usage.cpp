// ExtKeyUsage ::= SEQUENCE SIZE (1..MAX) OF KeyPurposeId         RFC 5280 4.2.1.12
// KeyPurposeId ::= OBJECT IDENTIFIER

#include "core/frames.h"
#include "core/member_path.h"
#include "ketra/ketra.h"

using namespace ketra;

namespace {

constexpr Extension kExtKeyUsage{&X509Objid_ExtKeyUsage, schema::Entry::ExtKeyUsage, nullptr};

}  // namespace

int32_t KetraObjectSsetExtKeyUsage(KetraObject extensions, int32_t critical, const KetraKeyPurposeId *first,
                                   AsnErrorBlock *err) {
  const Operation op(__func__, err);
  const auto check = [&] {
    if (first == nullptr) return op.reject(KetraError_SetExtKeyUsageEmpty, "Count = 0");
    for (const KetraKeyPurposeId *node = first; node != nullptr; node = node->next) {
      if (op.failed(AsnCheckObjidBER(&node->keyPurposeId, err), "Call AsnCheckObjidBER")) return -1;
    }
    return 0;
  };
  const auto fill = [&](AsnObject work, AsnValue root) {
    uint32_t number = 0;
    for (const KetraKeyPurposeId *node = first; node != nullptr; node = node->next) {
      const int32_t set = AsnSetObjidDER(work, root, MemberPath(++number), &node->keyPurposeId, err);
      if (op.failed(set, "Call AsnSetObjidDER")) return -1;
    }
    return 0;
  };
  return setFrame(op, extensions, kChain, kExtKeyUsage, critical, check, fill);
}

int32_t KetraObjectSgetExtKeyUsage(KetraObject extensions, KetraKeyPurposeId *first, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  return getFrame(op, extensions, kChain, kExtKeyUsage, [&](AsnObject work, AsnValue root) {
    AsnValue list = nullptr;
    uint32_t count = 0;
    if (op.failed(AsnGetElement(work, root, "/", &list, err), "Call AsnGetElement")) return -1;
    if (list == nullptr) return op.reject(KetraError_GetExtKeyUsageEmpty, "None KeyPurposeId");
    if (op.failed(AsnCalCountOfSequence(work, list, "/", &count, err), "Call AsnCalCountOfSequence")) return -1;
    if (count == 0) return op.reject(KetraError_GetExtKeyUsageEmpty, "Count of SequenceOf = 0");
    KetraKeyPurposeId *node = first;
    for (uint32_t i = 0; i < count; ++i, node = node->next) {
      if (node == nullptr) return op.reject(KetraError_GetExtKeyUsageChainShort, "Chain of KeyPurposeId", count);
      const int32_t got =
          AsnMUtilGetObjidConstBER(extensions->pool, work, list, MemberPath(i + 1), &node->keyPurposeId, err);
      if (op.failed(got, "Call AsnMUtilGetObjidConstBER")) return -1;
    }
    return 0;
  });
}

int32_t KetraObjectSgetExtKeyUsageCalKeyPurposeId(KetraObject extensions, uint32_t *count, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  return getFrame(op, extensions, count, kExtKeyUsage, [&](AsnObject work, AsnValue root) {
    return countRoot(op, work, root, KetraError_CalExtKeyUsageAbsent, "None ExtKeyUsage", count);
  });
}
