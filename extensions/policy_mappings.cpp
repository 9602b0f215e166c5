// PolicyMappings ::= SEQUENCE SIZE (1..MAX) OF SEQUENCE {        RFC 5280 4.2.1.5
//     issuerDomainPolicy   OBJECT IDENTIFIER,
//     subjectDomainPolicy  OBJECT IDENTIFIER }

#include "core/frames.h"
#include "core/member_path.h"
#include "ketra/ketra.h"

using namespace ketra;

namespace {

constexpr Extension kMappings{&X509Objid_PolicyMappings, schema::Entry::PolicyMappings, nullptr};
constexpr int32_t kNonCritical = 0;

// One of the two identifiers of a mapping, and the texts of its failures.
struct Policy {
  Objid KetraPolicyMapping::*objid;
  const char *suffix;
  Literal check;
  Literal set;
  Literal get;
};

constexpr Policy kPolicies[] = {
    {
        .objid = &KetraPolicyMapping::issuerDomainPolicy,
        .suffix = "/issuerDomainPolicy",
        .check = "Call AsnCheckObjidBER(issuerDomainPolicy)",
        .set = "Call AsnSetObjidDER(issuerDomainPolicy)",
        .get = "Call AsnMUtilGetObjidConstBER(issuerDomainPolicy)",
    },
    {
        .objid = &KetraPolicyMapping::subjectDomainPolicy,
        .suffix = "/subjectDomainPolicy",
        .check = "Call AsnCheckObjidBER(subjectDomainPolicy)",
        .set = "Call AsnSetObjidDER(subjectDomainPolicy)",
        .get = "Call AsnMUtilGetObjidConstBER(subjectDomainPolicy)",
    },
};

}  // namespace

int32_t KetraObjectSsetPolicyMappings(KetraObject extensions, const KetraPolicyMapping *first, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  const auto check = [&] {
    if (first == nullptr) return op.reject(KetraError_SetPolicyMappingsEmpty, "Count = 0");
    for (const KetraPolicyMapping *node = first; node != nullptr; node = node->next) {
      for (const Policy &row : kPolicies) {
        if (op.failed(AsnCheckObjidBER(&(node->*row.objid), err), row.check)) return -1;
      }
    }
    return 0;
  };
  const auto fill = [&](AsnObject work, AsnValue root) {
    uint32_t number = 0;
    for (const KetraPolicyMapping *node = first; node != nullptr; node = node->next) {
      ++number;
      for (const Policy &row : kPolicies) {
        const MemberPath path(number, row.suffix);
        if (op.failed(AsnSetObjidDER(work, root, path, &(node->*row.objid), err), row.set)) return -1;
      }
    }
    return 0;
  };
  return setFrame(op, extensions, kChain, kMappings, kNonCritical, check, fill);
}

int32_t KetraObjectSgetPolicyMappings(KetraObject extensions, KetraPolicyMapping *first, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  return getFrame(op, extensions, kChain, kMappings, [&](AsnObject work, AsnValue root) {
    AsnValue list = nullptr;
    uint32_t count = 0;
    if (op.failed(AsnGetElement(work, root, "/", &list, err), "Call AsnGetElement")) return -1;
    if (list == nullptr) return op.reject(KetraError_GetPolicyMappingsEmpty, "PolicyMappings");
    if (op.failed(AsnCalCountOfSequence(work, list, "/", &count, err), "Call AsnCalCountOfSequence")) return -1;
    if (count == 0) return op.reject(KetraError_GetPolicyMappingsEmpty, "Count of SequenceOf = 0");
    KetraPolicyMapping *node = first;
    for (uint32_t i = 0; i < count; ++i, node = node->next) {
      if (node == nullptr) return op.reject(KetraError_GetPolicyMappingsChainShort, "Chain of PolicyMappings", count);
      for (const Policy &row : kPolicies) {
        const MemberPath path("/", i + 1, row.suffix);
        const int32_t got = AsnMUtilGetObjidConstBER(extensions->pool, work, list, path, &(node->*row.objid), err);
        if (op.failed(got, row.get)) return -1;
      }
    }
    return 0;
  });
}

int32_t KetraObjectSgetPolicyMappingsCalPolicyMapping(KetraObject extensions, uint32_t *count, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  return getFrame(op, extensions, count, kMappings, [&](AsnObject work, AsnValue root) {
    return countRoot(op, work, root, KetraError_CalPolicyMappingsAbsent, "PolicyMappings", count);
  });
}
