/// @file
/// AuthorityKeyIdentifier: which key of the issuer signed.
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/types/general_name.hpp"
#include "ketra/types/integer.hpp"

namespace ketra {

// AuthorityKeyIdentifier ::= SEQUENCE {                          RFC 5280 4.2.1.1
//     keyIdentifier              [0] KeyIdentifier OPTIONAL,
//     authorityCertIssuer        [1] GeneralNames OPTIONAL,
//     authorityCertSerialNumber  [2] CertificateSerialNumber OPTIONAL }
//
// The last two come together or not at all.
template <class Form>
struct AuthorityKeyIdOf {
  static constexpr std::string_view name = "AuthorityKeyIdentifier";
  static constexpr OidLiteral oid = "2.5.29.35"_oid;
  static constexpr std::optional<bool> critical = false;

  std::optional<OctetStringOf<Form>> keyIdentifier{};
  std::optional<ListOf<Form, GeneralNameOf<Form>>> authorityCertIssuer{};
  std::optional<IntegerOf<Form>> authorityCertSerialNumber{};

  /// What the standard forbids to set, or null.
  const char *refusal() const {
    const bool isPaired = authorityCertIssuer.has_value() == authorityCertSerialNumber.has_value();
    return isPaired ? nullptr : "issuer and serial number come together or not at all (RFC 5280 4.2.1.1)";
  }

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("keyIdentifier", self.keyIdentifier, context(0)) &&
           visit("authorityCertIssuer", self.authorityCertIssuer, context(1) | nonEmpty) &&
           visit("authorityCertSerialNumber", self.authorityCertSerialNumber, context(2));
  }
};
using AuthorityKeyId = AuthorityKeyIdOf<Owned>;       ///< owns what it holds
using AuthorityKeyIdView = AuthorityKeyIdOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<AuthorityKeyIdView>());

}  // namespace ketra
