// CertificatePolicies ::= SEQUENCE SIZE (1..MAX) OF PolicyInformation       RFC 5280 4.2.1.4
// PolicyInformation ::= SEQUENCE {
//     policyIdentifier  OBJECT IDENTIFIER,
//     policyQualifiers  SEQUENCE SIZE (1..MAX) OF PolicyQualifierInfo OPTIONAL }
// PolicyQualifierInfo ::= SEQUENCE {
//     policyQualifierId  OBJECT IDENTIFIER,
//     qualifier          ANY OPTIONAL }
//
// Read one policy at a time.

#include "core/frames.h"
#include "core/member_path.h"
#include "ketra/ketra.h"

using namespace ketra;

namespace {

constexpr Extension kPolicies{&X509Objid_CertPolicies, schema::Entry::CertificatePoliciesSyntax, "/"};

int32_t checkPolicy(const Operation &op, const KetraPolicyInformation &policy) {
  if (op.failed(AsnCheckObjidBER(&policy.policyIdentifier, op.err()), "Call AsnCheckObjidBER")) return -1;
  const KetraPolicyQualifiersOpt &qualifiers = policy.policyQualifiers;
  if (qualifiers.option != 0 && qualifiers.option != 1) {
    return op.rejectStructure(KetraError_SetCertPoliciesOption, "option", qualifiers, qualifiers.policyQualifiers,
                              qualifiers.option);
  }
  if (qualifiers.option == 0) return 0;
  if (qualifiers.policyQualifiers == nullptr) return op.reject(KetraError_SetCertPoliciesQualifiers, "Count = 0");
  for (const KetraPolicyQualifierInfo *node = qualifiers.policyQualifiers; node != nullptr; node = node->next) {
    if (op.failed(AsnCheckObjidBER(&node->policyQualifierId, op.err()), "Call AsnCheckObjidBER")) return -1;
    if (op.failed(AsnCheckEncodedDataOptBER(&node->qualifier, op.err()), "Call AsnCheckAnyOptBER")) return -1;
  }
  return 0;
}

int32_t setPolicy(const Operation &op, AsnObject work, AsnValue root, uint32_t number,
                  const KetraPolicyInformation &policy) {
  if (op.failed(AsnSetObjidDER(work, root, MemberPath(number, "/policyIdentifier"), &policy.policyIdentifier, op.err()),
                "Call AsnSetObjidDER(policyIdentifier)")) {
    return -1;
  }
  if (policy.policyQualifiers.option != 1) return 0;
  const MemberPath list(number, "/policyQualifiers/");
  uint32_t member = 0;
  for (const auto *node = policy.policyQualifiers.policyQualifiers; node != nullptr; node = node->next) {
    const MemberPath identifier = MemberPath(list).then(++member, "/policyQualifierId");
    if (op.failed(AsnSetObjidDER(work, root, identifier, &node->policyQualifierId, op.err()),
                  "Call AsnSetObjidDER(policyQualifierId)")) {
      return -1;
    }
    if (node->qualifier.option != 1) continue;
    const MemberPath qualifier = MemberPath(list).then(member, "/qualifier");
    const int32_t set = AsnSetEncodedDataDER(work, root, qualifier, &node->qualifier.value, op.err());
    if (op.failed(set, "Call AsnSetAnyDER")) return -1;
  }
  return 0;
}

int32_t getQualifier(const Operation &op, AsnMemObject pool, AsnObject work, AsnValue policy, uint32_t number,
                     KetraPolicyQualifierInfo *node) {
  const MemberPath identifier("policyQualifiers/", number, "/policyQualifierId");
  if (op.failed(AsnMUtilGetObjidConstBER(pool, work, policy, identifier, &node->policyQualifierId, op.err()),
                "Call AsnMUtilGetObjidConstBER(policyQualifierId)")) {
    return -1;
  }
  AsnEncodedDataOpt &qualifier = node->qualifier;
  uint32_t length = 0;
  const MemberPath path("policyQualifiers/", number, "/qualifier");
  const int32_t found = AsnCalAddressOfValFld(work, policy, path, &qualifier.value.octets, &length, op.err());
  if (op.failed(found, "Call AsnCalAddressOfValFld")) return -1;
  if (length == 0) return op.reject(KetraError_GetCertPoliciesQualifier, "qualifier");
  if (length == ASN_ABSENT_LENGTH) {
    qualifier = {{nullptr, 0}, 0};
    return 0;
  }
  qualifier.value.length = length;
  qualifier.option = 1;
  return 0;
}

int32_t getQualifiers(const Operation &op, AsnMemObject pool, AsnObject work, AsnValue policy,
                      KetraPolicyQualifiersOpt *qualifiers) {
  AsnValue list = nullptr;
  if (op.failed(AsnGetElement(work, policy, "policyQualifiers", &list, op.err()),
                "Call AsnGetElement(policyQualifiers)")) {
    return -1;
  }
  qualifiers->option = list != nullptr ? 1 : 0;
  if (list == nullptr) return 0;
  uint32_t count = 0;
  if (op.failed(AsnCalCountOfSequence(work, list, nullptr, &count, op.err()), "Call AsnCalCountOfSequence")) return -1;
  KetraPolicyQualifierInfo *node = qualifiers->policyQualifiers;
  for (uint32_t i = 0; i < count; ++i, node = node->next) {
    if (node == nullptr) return op.reject(KetraError_GetCertPoliciesChainShort, "policyQualifiers", count);
    if (getQualifier(op, pool, work, policy, i + 1, node) != 0) return -1;
  }
  return 0;
}

}  // namespace

int32_t KetraObjectSsetCertPolicies(KetraObject extensions, int32_t critical, KetraPolicyInformation *const *policies,
                                    AsnErrorBlock *err) {
  const Operation op(__func__, err);
  const auto check = [&] {
    if (*policies == nullptr) return op.reject(KetraError_SetCertPoliciesEmpty, "Count = 0");
    for (const KetraPolicyInformation *policy = *policies; policy != nullptr; policy = policy->next) {
      if (checkPolicy(op, *policy) != 0) return -1;
    }
    return 0;
  };
  const auto fill = [&](AsnObject work, AsnValue root) {
    uint32_t number = 0;
    for (const KetraPolicyInformation *policy = *policies; policy != nullptr; policy = policy->next) {
      if (setPolicy(op, work, root, ++number, *policy) != 0) return -1;
    }
    return 0;
  };
  return setFrame(op, extensions, policies, kPolicies, critical, check, fill);
}

int32_t KetraObjectSgetCertPolicies(KetraObject extensions, uint32_t index, KetraPolicyInformation *information,
                                    AsnErrorBlock *err) {
  const Operation op(__func__, err);
  return getFrame(op, extensions, information, kPolicies, [&](AsnObject work, AsnValue root) {
    AsnValue policy = nullptr;
    AsnMemObject pool = extensions->pool;
    if (op.failed(AsnGetElement(work, root, MemberPath(index + 1), &policy, err), "Call AsnGetElement")) return -1;
    if (policy == nullptr) return op.reject(KetraError_GetCertPoliciesIndex, "certPolicies");
    const int32_t got =
        AsnMUtilGetObjidConstBER(pool, work, policy, "policyIdentifier", &information->policyIdentifier, err);
    if (op.failed(got, "Call AsnMUtilGetObjidConstBER")) return -1;
    return getQualifiers(op, pool, work, policy, &information->policyQualifiers);
  });
}

int32_t KetraObjectSgetCertPoliciesCalInformation(KetraObject extensions, uint32_t *count, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  return getFrame(op, extensions, count, kPolicies, [&](AsnObject work, AsnValue root) {
    return countRoot(op, work, root, KetraError_CalCertPoliciesAbsent, "CertPolicies", count);
  });
}

int32_t KetraObjectSgetCertPoliciesCalQualifier(KetraObject extensions, uint32_t index, uint32_t *count,
                                                AsnErrorBlock *err) {
  const Operation op(__func__, err);
  return getFrame(op, extensions, count, kPolicies, [&](AsnObject work, AsnValue root) {
    AsnValue list = nullptr;
    const MemberPath path(index + 1, "/policyQualifiers");
    if (op.failed(AsnGetElement(work, root, path, &list, err), "Call AsnGetElement")) return -1;
    *count = 0;
    if (list == nullptr) return 0;
    return op.failed(AsnCalCountOfSequence(work, list, nullptr, count, err), "Call AsnCalCountOfSequence") ? -1 : 0;
  });
}
