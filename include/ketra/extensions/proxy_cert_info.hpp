/// @file
/// ProxyCertInfo: which rights a proxy certificate passes on.
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/integer.hpp"
#include "ketra/types/primitive.hpp"

namespace ketra {

// ProxyPolicy ::= SEQUENCE {                                     RFC 3820 3.8
//     policyLanguage  OBJECT IDENTIFIER,
//     policy          OCTET STRING OPTIONAL }
template <class Form>
struct ProxyPolicyOf {
  ObjectIdentifierOf<Form> policyLanguage{};
  std::optional<OctetStringOf<Form>> policy{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("policyLanguage", self.policyLanguage) && visit("policy", self.policy);
  }
};
using ProxyPolicy = ProxyPolicyOf<Owned>;       ///< owns what it holds
using ProxyPolicyView = ProxyPolicyOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<ProxyPolicyView>());

// ProxyCertInfo ::= SEQUENCE {                                   RFC 3820 3.8
//     pCPathLenConstraint  INTEGER (0..MAX) OPTIONAL,
//     proxyPolicy          ProxyPolicy }
template <class Form>
struct ProxyCertInfoOf {
  static constexpr std::string_view name = "ProxyCertInfo";
  static constexpr OidLiteral oid = "1.3.6.1.5.5.7.1.14"_oid;
  static constexpr std::optional<bool> critical = true;

  std::optional<IntegerOf<Form>> pCPathLenConstraint{};
  ProxyPolicyOf<Form> proxyPolicy{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("pCPathLenConstraint", self.pCPathLenConstraint, natural) && visit("proxyPolicy", self.proxyPolicy);
  }
};
using ProxyCertInfo = ProxyCertInfoOf<Owned>;       ///< owns what it holds
using ProxyCertInfoView = ProxyCertInfoOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<ProxyCertInfoView>());

}  // namespace ketra
