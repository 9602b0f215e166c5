/// @file
/// CertificatePolicies (RFC 5280 4.2.1.4).
/// @code
/// const auto read = extensions.get<ketra::CertificatePolicies>();
/// if (read) for (const ketra::PolicyInformation &each : read->policies) ...
/// @endcode
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "face/asn1.hpp"
#include "face/base.hpp"
#include "face/chain.hpp"
#include "face/policy_qualifier.hpp"

namespace ketra {

/// Any policy (RFC 5280 4.2.1.4).
inline constexpr detail::KnownIdentifier anyPolicy{2, 5, 29, 32, 0};

/// One policy.
struct PolicyInformation {
  ObjectIdentifier policy;                  ///< the policy
  std::vector<PolicyQualifier> qualifiers;  ///< what is said about it

  friend bool operator==(const PolicyInformation &a, const PolicyInformation &b) {
    return a.policy == b.policy && a.qualifiers == b.qualifiers;
  }
  friend bool operator!=(const PolicyInformation &a, const PolicyInformation &b) { return !(a == b); }
};

/// Under which policies the certificate was issued (RFC 5280 4.2.1.4).
struct CertificatePolicies {
  std::vector<PolicyInformation> policies;  ///< one or more, to be set

  friend bool operator==(const CertificatePolicies &a, const CertificatePolicies &b) {
    return a.policies == b.policies;
  }
  friend bool operator!=(const CertificatePolicies &a, const CertificatePolicies &b) { return !(a == b); }
};

namespace detail {

using QualifierChain = Chain<KetraPolicyQualifierInfo, &KetraPolicyQualifierInfo::policyQualifierId>;

inline int32_t getPolicy(KetraObject object, uint32_t index, PolicyInformation &policy, AsnErrorBlock *err) {
  uint32_t count = 0;
  const int32_t counted = KetraObjectSgetCertPoliciesCalQualifier(object, index, &count, err);
  if (!canGet(counted, err)) return counted;
  QualifierChain qualifiers(count, object);
  KetraPolicyInformation c{};
  c.policyQualifiers.policyQualifiers = qualifiers.head();
  const int32_t result = KetraObjectSgetCertPolicies(object, index, &c, err);
  const PoolMemory arcs(object, c.policyIdentifier.arcs);
  if (result != 0) return result;
  policy.policy = ObjectIdentifier(c.policyIdentifier);
  policy.qualifiers.reserve(count);
  for (const KetraPolicyQualifierInfo &node : qualifiers.nodes()) {
    PolicyQualifier &qualifier = policy.qualifiers.emplace_back();
    qualifier.id = ObjectIdentifier(node.policyQualifierId);
    if (node.qualifier.option == 1) qualifier.value = view(node.qualifier.value).copy();
  }
  return 0;
}

// One policy after the other, each as the only one of an Extensions object: the C operation decodes the whole extension
// for each policy, which would take the square of the time.
inline int32_t getPolicies(View list, std::vector<PolicyInformation> &policies, AsnErrorBlock *err) {
  constexpr uint8_t kSequence = 0x30;
  KetraObject object = nullptr;
  run([&](AsnErrorBlock *e) { return KetraObjectCreate(&object, e); });
  const std::unique_ptr<KetraObjectRecord, void (*)(KetraObject)> owner(
      object, [](KetraObject o) { KetraObjectDestroy(o, nullptr); });
  const WorkValue members(AsnType_SequenceOfAny, list);
  uint32_t number = 0;
  for (PolicyInformation &policy : policies) {
    const Octets one = encoding(kSequence, members.octets(members.get(), MemberPath(++number).get()));
    const KetraExtension extension{X509Objid_CertPolicies, 0, 0, encoded(one)};
    run([&](AsnErrorBlock *e) { return KetraObjectSetExt(object, &extension, e); });
    if (const int32_t result = getPolicy(object, 0, policy, err); result != 0) {
      const std::string place = "policy " + std::to_string(number) + ", read by itself";
      AsnErrorInfo("ketra.hpp", "ketra::CertificatePolicies", place.c_str(), err, nullptr, 0);
      return result;
    }
  }
  return 0;
}

// The policies as the C interface takes them; points into them.
class PolicyChain {
 public:
  explicit PolicyChain(const std::vector<PolicyInformation> &policies)
      : policies_(policies.size()), qualifiers_(countOf(policies)) {
    auto node = qualifiers_.nodes().begin();
    for (std::size_t i = 0; i < policies.size(); ++i) {
      KetraPolicyInformation &c = policies_.nodes()[i];
      c.policyIdentifier = policies[i].policy.objid();
      if (policies[i].qualifiers.empty()) continue;
      c.policyQualifiers = {&*node, 1};
      for (const PolicyQualifier &qualifier : policies[i].qualifiers) {
        node->policyQualifierId = qualifier.id.objid();
        if (qualifier.value) node->qualifier = {encoded(*qualifier.value), 1};
        ++node;
      }
      std::prev(node)->next = nullptr;
    }
  }

  KetraPolicyInformation *head() { return policies_.head(); }

 private:
  static std::size_t countOf(const std::vector<PolicyInformation> &policies) {
    std::size_t count = 0;
    for (const PolicyInformation &policy : policies) count += policy.qualifiers.size();
    return count;
  }

  Chain<KetraPolicyInformation> policies_;
  QualifierChain qualifiers_;
};

}  // namespace detail

template <>
struct ExtensionTraits<CertificatePolicies> {
  static const Objid &objid() { return X509Objid_CertPolicies; }
  static constexpr bool kCallerSetsCritical = true;

  static int32_t set(KetraObject object, int32_t critical, const CertificatePolicies &value, AsnErrorBlock *err) {
    detail::PolicyChain chain(value.policies);
    KetraPolicyInformation *const head = chain.head();
    return KetraObjectSsetCertPolicies(object, critical, &head, err);
  }
  static int32_t get(KetraObject object, CertificatePolicies &value, AsnErrorBlock *err) {
    constexpr uint32_t kFew = 2;  // decoding them again and again is faster than taking them apart
    uint32_t count = 0;
    const int32_t counted = KetraObjectSgetCertPoliciesCalInformation(object, &count, err);
    if (!detail::canGet(counted, err)) return counted;
    if (counted != 0) count = 1;  // its get tells why
    std::vector<PolicyInformation> policies(count);
    if (count > kFew) {
      const int32_t result = detail::getPolicies(detail::storedValue(object, objid()), policies, err);
      if (result != 0) return result;
    } else {
      for (uint32_t i = 0; i < count; ++i) {
        if (const int32_t result = detail::getPolicy(object, i, policies[i], err); result != 0) return result;
      }
    }
    value.policies = std::move(policies);
    return 0;
  }
};

}  // namespace ketra
