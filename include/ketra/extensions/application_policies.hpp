/// @file
/// Microsoft's application policies: policies whose identifiers are purposes of keys.
#pragma once

#include "ketra/extensions/cert_policies.hpp"
#include "ketra/extensions/policy_constraints.hpp"
#include "ketra/extensions/policy_mappings.hpp"

namespace ketra {

// ApplicationCertPolicies ::= CertificatePolicies                MS-CRTD
template <class Form>
struct ApplicationPoliciesOf : CertificatePoliciesOf<Form> {
  static constexpr std::string_view name = "MicrosoftApplicationPolicies";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.311.21.10"_oid;
};
using ApplicationPolicies = ApplicationPoliciesOf<Owned>;       ///< owns what it holds
using ApplicationPoliciesView = ApplicationPoliciesOf<Viewed>;  ///< points to what it was read from

// ApplicationPolicyMappings ::= PolicyMappings
//
// Nothing fixes whether it is critical.
template <class Form>
struct ApplicationPolicyMappingsOf : PolicyMappingsOf<Form> {
  static constexpr std::string_view name = "MicrosoftApplicationPolicyMappings";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.311.21.11"_oid;
  static constexpr std::optional<bool> critical = std::nullopt;
};
using ApplicationPolicyMappings = ApplicationPolicyMappingsOf<Owned>;       ///< owns what it holds
using ApplicationPolicyMappingsView = ApplicationPolicyMappingsOf<Viewed>;  ///< points to what it was read from

// ApplicationPolicyConstraints ::= PolicyConstraints
template <class Form>
struct ApplicationPolicyConstraintsOf : PolicyConstraintsOf<Form> {
  static constexpr std::string_view name = "MicrosoftApplicationPolicyConstraints";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.311.21.12"_oid;
};
using ApplicationPolicyConstraints = ApplicationPolicyConstraintsOf<Owned>;       ///< owns what it holds
using ApplicationPolicyConstraintsView = ApplicationPolicyConstraintsOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
