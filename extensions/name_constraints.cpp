// NameConstraints ::= SEQUENCE {                                 RFC 5280 4.2.1.10
//     permittedSubtrees  [0] GeneralSubtrees OPTIONAL,
//     excludedSubtrees   [1] GeneralSubtrees OPTIONAL }

#include "core/frames.h"
#include "ketra/ketra.h"

using namespace ketra;

namespace {

constexpr Extension kNameConstraints{&X509Objid_NameConstraints, schema::Entry::NameConstraints, "/"};

// One of the two lists, and the texts of its failures.
struct Subtrees {
  const char *path;
  X509GenSubtreesOpt KetraNameConstraints::*list;
  Literal check;
  Literal set;
  Literal find;
  Literal count;
};

constexpr Subtrees kLists[] = {
    {
        .path = "permittedSubtrees",
        .list = &KetraNameConstraints::permittedSubtrees,
        .check = "Call X509MUtilCheckGenSubtreesOpt(permittedSubtrees)",
        .set = "Call X509MUtilSetGenSubtrees(permittedSubtrees)",
        .find = "Call AsnGetElement(permittedSubtrees)",
        .count = "Call AsnCalCountOfSequence(permittedSubtrees)",
    },
    {
        .path = "excludedSubtrees",
        .list = &KetraNameConstraints::excludedSubtrees,
        .check = "Call X509MUtilCheckGenSubtreesOpt(excludedSubtrees)",
        .set = "Call X509MUtilSetGenSubtrees(excludedSubtrees)",
        .find = "Call AsnGetElement(excludedSubtrees)",
        .count = "Call AsnCalCountOfSequence(excludedSubtrees)",
    },
};

int32_t countSubtrees(const Operation &op, AsnObject work, AsnValue root, const Subtrees &row, uint32_t *count) {
  AsnValue element = nullptr;
  if (op.failed(AsnGetElement(work, root, row.path, &element, op.err()), row.find)) return -1;
  *count = 0;
  if (element == nullptr) return 0;
  return op.failed(AsnCalCountOfSequence(work, element, nullptr, count, op.err()), row.count) ? -1 : 0;
}

}  // namespace

int32_t KetraObjectSsetNameConstraints(KetraObject extensions, int32_t critical, const KetraNameConstraints *value,
                                       AsnErrorBlock *err) {
  const Operation op(__func__, err);
  const auto check = [&] {
    for (const Subtrees &row : kLists) {
      const int32_t checked = X509MUtilCheckGenSubtreesOpt(&(value->*row.list), err);
      if (op.failed(checked, row.check)) return checked;
    }
    return 0;
  };
  const auto fill = [&](AsnObject work, AsnValue root) {
    for (const Subtrees &row : kLists) {
      const X509GenSubtreesOpt &list = value->*row.list;
      if (list.option != 1) continue;
      const int32_t set = X509MUtilSetGenSubtrees(work, root, row.path, list.genSubtrees, err);
      if (op.failed(set, row.set)) return set;
    }
    return 0;
  };
  return setFrame(op, extensions, value, kNameConstraints, critical, check, fill);
}

int32_t KetraObjectSgetNameConstraints(KetraObject extensions, KetraNameConstraints *value, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  return getFrame(op, extensions, value, kNameConstraints, [&](AsnObject work, AsnValue root) {
    for (const Subtrees &row : kLists) {
      const int32_t got = X509MUtilSgetGenSubtreesOpt(extensions->pool, work, root, row.path, &(value->*row.list), err);
      if (op.failed(got, "Call X509MUtilSgetGenSubtreesOpt")) return got;
    }
    return 0;
  });
}

int32_t KetraObjectSgetNameConstraintsCalGenSubtree(KetraObject extensions, uint32_t *permittedCount,
                                                    uint32_t *excludedCount, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  if (op.misses(excludedCount)) return -1;
  return getFrame(op, extensions, permittedCount, kNameConstraints, [&](AsnObject work, AsnValue root) {
    const int32_t counted = countSubtrees(op, work, root, kLists[0], permittedCount);
    return counted != 0 ? counted : countSubtrees(op, work, root, kLists[1], excludedCount);
  });
}
