/// @file
/// PolicyMappings and PolicyConstraints (RFC 5280 4.2.1.5, 4.2.1.11).
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "ketra/face/asn1.hpp"
#include "ketra/face/base.hpp"
#include "ketra/face/chain.hpp"
#include "ketra/face/encodings.hpp"

namespace ketra {
inline namespace face {

/// Two policies that the issuer holds for equivalent.
struct PolicyMapping {
  ObjectIdentifier issuerDomainPolicy;   ///< in the domain of the issuer
  ObjectIdentifier subjectDomainPolicy;  ///< in the domain of the subject

  friend bool operator==(const PolicyMapping &a, const PolicyMapping &b) {
    return a.issuerDomainPolicy == b.issuerDomainPolicy && a.subjectDomainPolicy == b.subjectDomainPolicy;
  }
  friend bool operator!=(const PolicyMapping &a, const PolicyMapping &b) { return !(a == b); }
};

/// Policies that count as each other (RFC 5280 4.2.1.5). Always non-critical.
struct PolicyMappings {
  std::vector<PolicyMapping> mappings;  ///< one or more, to be set

  friend bool operator==(const PolicyMappings &a, const PolicyMappings &b) { return a.mappings == b.mappings; }
  friend bool operator!=(const PolicyMappings &a, const PolicyMappings &b) { return !(a == b); }
};

namespace detail {
using ReadMappings =
    ReadChain<KetraPolicyMapping, &KetraPolicyMapping::subjectDomainPolicy, &KetraPolicyMapping::issuerDomainPolicy>;
}  // namespace detail

template <>
struct ExtensionTraits<PolicyMappings> {
  static const Objid &objid() { return X509Objid_PolicyMappings; }
  static constexpr bool kCallerSetsCritical = false;

  static int32_t set(KetraObject object, const PolicyMappings &value, AsnErrorBlock *err) {
    detail::Nodes<KetraPolicyMapping> chain(value.mappings.size());
    for (std::size_t i = 0; i < value.mappings.size(); ++i) {
      chain[i].issuerDomainPolicy = value.mappings[i].issuerDomainPolicy.objid();
      chain[i].subjectDomainPolicy = value.mappings[i].subjectDomainPolicy.objid();
    }
    return KetraObjectSsetPolicyMappings(object, chain.head(), err);
  }
  static int32_t get(KetraObject object, PolicyMappings &value, AsnErrorBlock *err) {
    detail::ReadMappings chain(detail::countOf(detail::contentOf(detail::storedValue(object, objid()))), object);
    if (const int32_t result = KetraObjectSgetPolicyMappings(object, chain.head(), err); result != 0) return result;
    value.mappings.reserve(chain.size());
    for (const KetraPolicyMapping &node : chain) {
      value.mappings.push_back({ObjectIdentifier(node.issuerDomainPolicy), ObjectIdentifier(node.subjectDomainPolicy)});
    }
    return 0;
  }
};

/// After how many certificates each takes effect (RFC 5280 4.2.1.11).
struct PolicyConstraints {
  std::optional<int32_t> requireExplicitPolicy;  ///< from there on every certificate needs an acceptable policy
  std::optional<int32_t> inhibitPolicyMapping;   ///< from there on mappings do not count

  friend bool operator==(const PolicyConstraints &a, const PolicyConstraints &b) {
    return a.requireExplicitPolicy == b.requireExplicitPolicy && a.inhibitPolicyMapping == b.inhibitPolicyMapping;
  }
  friend bool operator!=(const PolicyConstraints &a, const PolicyConstraints &b) { return !(a == b); }
};

template <>
struct ExtensionTraits<PolicyConstraints> {
  static const Objid &objid() { return X509Objid_PolicyConstraints; }
  static constexpr bool kCallerSetsCritical = true;

  static int32_t set(KetraObject object, int32_t critical, const PolicyConstraints &value, AsnErrorBlock *err) {
    const KetraPolicyConstraints c{detail::optional(value.requireExplicitPolicy),
                                   detail::optional(value.inhibitPolicyMapping)};
    return KetraObjectSsetPolicyConstraints(object, critical, &c, err);
  }
  static int32_t get(KetraObject object, PolicyConstraints &value, AsnErrorBlock *err) {
    KetraPolicyConstraints c{};
    const int32_t result = KetraObjectSgetPolicyConstraints(object, &c, err);
    if (result == 0) value = {detail::optional(c.requireExplicitPolicy), detail::optional(c.inhibitPolicyMapping)};
    return result;
  }
};

}  // namespace face
}  // namespace ketra
