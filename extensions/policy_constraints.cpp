// PolicyConstraints ::= SEQUENCE {                               RFC 5280 4.2.1.11
//     requireExplicitPolicy  [0] SkipCerts OPTIONAL,
//     inhibitPolicyMapping   [1] SkipCerts OPTIONAL }
// SkipCerts ::= INTEGER (0..MAX)

#include "core/frames.h"
#include "ketra/ketra.h"

using namespace ketra;

namespace {

constexpr Extension kConstraints{&X509Objid_PolicyConstraints, schema::Entry::PolicyConstraints, nullptr};

// One of the two counts, and the codes and texts of its failures.
struct SkipCerts {
  AsnIntOpt KetraPolicyConstraints::*count;
  const char *path;
  uint32_t setNegative;
  Literal setReason;
  Literal set;
  uint32_t getNegative;
  Literal getReason;
};

constexpr SkipCerts kCounts[] = {
    {
        .count = &KetraPolicyConstraints::requireExplicitPolicy,
        .path = "requireExplicitPolicy",
        .setNegative = KetraError_SetRequireExplicitPolicy,
        .setReason = "requireExplicitPolicy.value",
        .set = "Call AsnSetIntDER(requireExplicitPolicy)",
        .getNegative = KetraError_GetRequireExplicitPolicy,
        .getReason = "requireExplicitPolicy",
    },
    {
        .count = &KetraPolicyConstraints::inhibitPolicyMapping,
        .path = "inhibitPolicyMapping",
        .setNegative = KetraError_SetInhibitPolicyMapping,
        .setReason = "inhibitPolicyMapping.value",
        .set = "Call AsnSetIntDER(inhibitPolicyMapping)",
        .getNegative = KetraError_GetInhibitPolicyMapping,
        .getReason = "inhibitPolicyMapping",
    },
};

bool isNegative(const AsnIntOpt &integer) { return integer.option == 1 && integer.value < 0; }

}  // namespace

int32_t KetraObjectSsetPolicyConstraints(KetraObject extensions, int32_t critical,
                                         const KetraPolicyConstraints *constraints, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  const auto check = [&] {
    for (const SkipCerts &row : kCounts) {
      const AsnIntOpt &count = constraints->*row.count;
      if (op.failed(AsnCheckIntOptBER(&count, err), "Call AsnCheckIntOptBER")) return -1;
      if (isNegative(count)) return op.reject(row.setNegative, row.setReason, count.value);
    }
    return 0;
  };
  const auto fill = [&](AsnObject work, AsnValue root) {
    for (const SkipCerts &row : kCounts) {
      const AsnIntOpt &count = constraints->*row.count;
      if (count.option == 1 && op.failed(AsnSetIntDER(work, root, row.path, count.value, err), row.set)) return -1;
    }
    return 0;
  };
  return setFrame(op, extensions, constraints, kConstraints, critical, check, fill);
}

int32_t KetraObjectSgetPolicyConstraints(KetraObject extensions, KetraPolicyConstraints *constraints,
                                         AsnErrorBlock *err) {
  const Operation op(__func__, err);
  return getFrame(op, extensions, constraints, kConstraints, [&](AsnObject work, AsnValue root) {
    for (const SkipCerts &row : kCounts) {
      AsnIntOpt &count = constraints->*row.count;
      if (op.failed(AsnGetOptIntBER(work, root, row.path, &count, err), "Call AsnGetOptIntBER")) return -1;
      if (isNegative(count)) return op.reject(row.getNegative, row.getReason, count.value);
    }
    return 0;
  });
}
