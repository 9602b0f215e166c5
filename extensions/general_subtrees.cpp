// GeneralSubtrees ::= SEQUENCE SIZE (1..MAX) OF GeneralSubtree   RFC 5280 4.2.1.10
// GeneralSubtree ::= SEQUENCE {
//     base     GeneralName,
//     minimum  [0] BaseDistance DEFAULT 0,
//     maximum  [1] BaseDistance OPTIONAL }
//
// No default is applied in either direction, and distances are not judged. A failure releases nothing: the work value
// belongs to the caller.

#include "core/member_path.h"
#include "core/operation.h"
#include "ketra/ketra.h"

using namespace ketra;

namespace {

int32_t setSubtree(const Operation &op, AsnObject work, AsnValue list, uint32_t number, const X509GenSubtree &subtree) {
  AsnErrorBlock *const err = op.err();
  AsnEncodedData encoding{nullptr, 0};
  const int32_t got = X509GenNameObjectGetPduDER(subtree.base, &encoding, err);
  if (op.failed(got, "Call X509GenNameObjectGetPduDER")) return got;
  const int32_t set = AsnSetEncodedDataDER(work, list, MemberPath(number, "/base"), &encoding, err);
  if (op.failed(set, "Call AsnSetAnyDER")) return -1;
  if (subtree.minimum.option == 1 &&
      op.failed(AsnSetIntDER(work, list, MemberPath(number, "/minimum"), subtree.minimum.value, err),
                "Call AsnSetIntDER(minimum)")) {
    return -1;
  }
  if (subtree.maximum.option == 1 &&
      op.failed(AsnSetIntDER(work, list, MemberPath(number, "/maximum"), subtree.maximum.value, err),
                "Call AsnSetIntDER(maximum)")) {
    return -1;
  }
  return 0;
}

int32_t getSubtree(const Operation &op, AsnMemObject pool, AsnObject work, AsnValue list, uint32_t number,
                   X509GenSubtree *subtree) {
  AsnErrorBlock *const err = op.err();
  const int32_t got = X509MUtilSgetGenNameObjectBER(pool, work, list, MemberPath(number, "/base"), subtree->base, err);
  if (op.failed(got, "Call X509MUtilSgetGenNameObjectBER")) return got;
  if (op.failed(AsnGetOptIntBER(work, list, MemberPath(number, "/minimum"), &subtree->minimum, err),
                "Call AsnMUtilGetIntOptBER(minimum)")) {
    return -1;
  }
  const int32_t maximum = AsnGetOptIntBER(work, list, MemberPath(number, "/maximum"), &subtree->maximum, err);
  return op.failed(maximum, "Call AsnMUtilGetIntOptBER(maximum)") ? -1 : 0;
}

}  // namespace

int32_t X509MUtilSetGenSubtrees(AsnObject work, AsnValue parent, const char *path, const X509GenSubtree *chain,
                                AsnErrorBlock *err) {
  const Operation op(__func__, err);
  if (op.misses(work, parent)) return -1;
  AsnValue list = nullptr;
  if (op.failed(AsnMakeElement(work, parent, path, &list, err), "Call AsnMakeElement")) return -1;
  uint32_t number = 0;
  for (const X509GenSubtree *node = chain; node != nullptr; node = node->next) {
    if (const int32_t set = setSubtree(op, work, list, ++number, *node); set != 0) return set;
  }
  return number == 0 ? op.reject(KetraError_SetGenSubtreesEmpty, "GenSubtree") : 0;
}

int32_t X509MUtilSgetGenSubtrees(AsnMemObject pool, AsnObject work, AsnValue parent, const char *path,
                                 X509GenSubtree *chain, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  if (op.misses(pool, work, parent)) return -1;
  AsnValue list = nullptr;
  uint32_t count = 0;
  if (op.failed(AsnGetElement(work, parent, path, &list, err), "Call AsnGetElement")) return -1;
  // Of an absent list, a null element, the count fails.
  if (op.failed(AsnCalCountOfSequence(work, list, nullptr, &count, err), "Call AsnCalCountOfSequence")) return -1;
  if (count == 0) return op.reject(KetraError_GetGenSubtreesEmpty, "Count of SequenceOf = 0");
  for (uint32_t i = 0; i < count; ++i, chain = chain->next) {
    if (chain == nullptr) return op.reject(KetraError_GenSubtreesChainShort, "Chain of GenSubtrees");
    if (const int32_t got = getSubtree(op, pool, work, list, i + 1, chain); got != 0) return got;
  }
  return 0;
}

int32_t X509MUtilSgetGenSubtreesOpt(AsnMemObject pool, AsnObject work, AsnValue parent, const char *path,
                                    X509GenSubtreesOpt *list, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  if (op.misses(pool, work, parent, list)) return -1;
  AsnValue element = nullptr;
  if (op.failed(AsnGetElement(work, parent, path, &element, err), "Call AsnGetElement")) return -1;
  list->option = element != nullptr ? 1 : 0;
  if (element == nullptr) return 0;
  const int32_t got = X509MUtilSgetGenSubtrees(pool, work, element, nullptr, list->genSubtrees, err);
  return op.failed(got, "Call X509MUtilSgetGenSubtrees") ? got : 0;
}

int32_t X509MUtilCheckGenSubtrees(const X509GenSubtree *chain, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  if (chain == nullptr) return op.reject(KetraError_CheckGenSubtreesEmpty, "Count = 0");
  for (const X509GenSubtree *node = chain; node != nullptr; node = node->next) {
    if (node->base == nullptr) return op.reject(KetraError_CheckGenSubtreesNoBase, "No Object");
    if (op.failed(AsnCheckIntOptBER(&node->minimum, err), "Call AsnCheckIntOptBER")) return -1;
    if (op.failed(AsnCheckIntOptBER(&node->maximum, err), "Call AsnCheckIntOptBER")) return -1;
  }
  return 0;
}

int32_t X509MUtilCheckGenSubtreesOpt(const X509GenSubtreesOpt *list, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  if (op.misses(list)) return -1;
  switch (list->option) {
    case 0: return 0;
    case 1: {
      const int32_t checked = X509MUtilCheckGenSubtrees(list->genSubtrees, err);
      return op.failed(checked, "Call X509MUtilCheckGenSubtrees") ? checked : 0;
    }
    default:
      return op.rejectStructure(KetraError_CheckGenSubtreesOption, "option", *list, list->genSubtrees, list->option);
  }
}
