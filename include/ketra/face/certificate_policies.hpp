/// @file
/// CertificatePolicies (RFC 5280 4.2.1.4).
/// @code
/// const auto read = extensions.get<ketra::CertificatePolicies>();
/// if (read) for (const ketra::PolicyInformation &each : read->policies) ...
/// @endcode
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "ketra/face/asn1.hpp"
#include "ketra/face/base.hpp"
#include "ketra/face/chain.hpp"
#include "ketra/face/encodings.hpp"
#include "ketra/face/policy_qualifier.hpp"

namespace ketra {
inline namespace face {

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

using ReadPolicies = ReadChain<KetraPolicyInformation, &KetraPolicyInformation::policyIdentifier>;
using ReadQualifiers = ReadChain<KetraPolicyQualifierInfo, &KetraPolicyQualifierInfo::policyQualifierId>;

// Of the policy with this content.
inline uint32_t countOfQualifiers(View content) {
  Encodings parts(content);
  return parts.next() && parts.next() ? countOf(parts.content()) : 0;  // behind the identifier
}

// Gets the policy at an index, which has this content.
inline int32_t getPolicy(KetraObject object, uint32_t index, View content, PolicyInformation &policy,
                         AsnErrorBlock *err) {
  ReadPolicies policies(1, object);
  ReadQualifiers qualifiers(countOfQualifiers(content), object);
  KetraPolicyInformation &c = policies[0];
  c.policyQualifiers.policyQualifiers = qualifiers.head();
  if (const int32_t result = KetraObjectSgetCertPolicies(object, index, &c, err); result != 0) return result;
  policy.policy = ObjectIdentifier(c.policyIdentifier);
  policy.qualifiers.reserve(qualifiers.size());
  for (const KetraPolicyQualifierInfo &node : qualifiers) {
    PolicyQualifier &qualifier = policy.qualifiers.emplace_back();
    qualifier.id = ObjectIdentifier(node.policyQualifierId);
    if (node.qualifier.option == 1) qualifier.value = view(node.qualifier.value).copy();
  }
  return 0;
}

// The policies from an index on, which `members` goes on with. Each is read as the only one of an Extensions object:
// the C operation decodes the whole extension for each policy, which would take the square of the time.
inline int32_t getRest(Encodings members, std::size_t index, std::vector<PolicyInformation> &policies,
                       AsnErrorBlock *err) {
  constexpr uint8_t kSequence = 0x30;
  if (index == policies.size()) return 0;
  KetraObject object = nullptr;
  run([&](AsnErrorBlock *e) { return KetraObjectCreate(&object, e); });
  const std::unique_ptr<KetraObjectRecord, void (*)(KetraObject)> owner(
      object, [](KetraObject o) { KetraObjectDestroy(o, nullptr); });
  for (; members.next(); ++index) {
    const Octets one = encoding(kSequence, members.encoding());
    const KetraExtension extension{X509Objid_CertPolicies, 0, 0, encoded(one)};
    run([&](AsnErrorBlock *e) { return KetraObjectSetExt(object, &extension, e); });
    if (const int32_t result = getPolicy(object, 0, members.content(), policies[index], err); result != 0) {
      const std::string place = "policy " + std::to_string(index + 1) + ", read by itself";
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
    KetraPolicyQualifierInfo *node = qualifiers_.begin();
    for (std::size_t i = 0; i < policies.size(); ++i) {
      KetraPolicyInformation &c = policies_[i];
      c.policyIdentifier = policies[i].policy.objid();
      if (policies[i].qualifiers.empty()) continue;
      c.policyQualifiers = {node, 1};
      for (const PolicyQualifier &qualifier : policies[i].qualifiers) {
        node->policyQualifierId = qualifier.id.objid();
        if (qualifier.value) node->qualifier = {encoded(*qualifier.value), 1};
        ++node;
      }
      (node - 1)->next = nullptr;
    }
  }

  KetraPolicyInformation *head() { return policies_.head(); }

 private:
  static std::size_t countOf(const std::vector<PolicyInformation> &policies) {
    std::size_t count = 0;
    for (const PolicyInformation &policy : policies) count += policy.qualifiers.size();
    return count;
  }

  Nodes<KetraPolicyInformation> policies_;
  Nodes<KetraPolicyQualifierInfo> qualifiers_;
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
    constexpr uint32_t kFew = 2;  // to decode the whole list for each is faster than to take it apart
    const View list = detail::contentOf(detail::storedValue(object, objid()));
    const uint32_t count = detail::countOf(list);
    detail::Encodings members(list);
    // Of none the first is read too: its get decodes the list and tells whether it is empty.
    std::vector<PolicyInformation> policies(std::max(count, 1u));
    uint32_t index = 0;
    for (; index < policies.size() && index < kFew; ++index) {
      members.next();
      const int32_t result = detail::getPolicy(object, index, members.content(), policies[index], err);
      if (result == 0) continue;
      if (count > 0 || err->code != KetraError_GetCertPoliciesIndex) return result;
      AsnErrorReset(err);
      return 0;
    }
    if (const int32_t result = detail::getRest(members, index, policies, err); result != 0) return result;
    value.policies = std::move(policies);
    return 0;
  }
};

}  // namespace face
}  // namespace ketra
