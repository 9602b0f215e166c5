/// @file
/// PolicyMappings: policies that the issuer considers equivalent.
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"

namespace ketra {

// PolicyMapping ::= SEQUENCE {                                   RFC 5280 4.2.1.5
//     issuerDomainPolicy   CertPolicyId,
//     subjectDomainPolicy  CertPolicyId }
template <class Form>
struct PolicyMappingOf {
  ObjectIdentifierOf<Form> issuerDomainPolicy{};
  ObjectIdentifierOf<Form> subjectDomainPolicy{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("issuerDomainPolicy", self.issuerDomainPolicy) &&
           visit("subjectDomainPolicy", self.subjectDomainPolicy);
  }
};
using PolicyMapping = PolicyMappingOf<Owned>;       ///< owns what it holds
using PolicyMappingView = PolicyMappingOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<PolicyMappingView>());

// PolicyMappings ::= SEQUENCE SIZE (1..MAX) OF PolicyMapping      RFC 5280 4.2.1.5
template <class Form>
struct PolicyMappingsOf {
  static constexpr std::string_view name = "PolicyMappings";
  static constexpr OidLiteral oid = "2.5.29.33"_oid;
  static constexpr std::optional<bool> critical = false;
  static constexpr Shape shape = Shape::Is;

  ListOf<Form, PolicyMappingOf<Form>> mappings{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("mappings", self.mappings, nonEmpty);
  }
};
using PolicyMappings = PolicyMappingsOf<Owned>;       ///< owns what it holds
using PolicyMappingsView = PolicyMappingsOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
