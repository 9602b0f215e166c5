/// @file
/// CertificateIssuer: who issued the certificate of a CRL entry.
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/types/general_name.hpp"

namespace ketra {

// CertificateIssuer ::= GeneralNames                             RFC 5280 5.3.3
// GeneralNames ::= SEQUENCE SIZE (1..MAX) OF GeneralName
template <class Form>
struct CertificateIssuerOf {
  static constexpr std::string_view name = "CertificateIssuer";
  static constexpr OidLiteral oid = "2.5.29.29"_oid;
  static constexpr std::optional<bool> critical = true;
  static constexpr Shape shape = Shape::Is;

  ListOf<Form, GeneralNameOf<Form>> names{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("names", self.names, nonEmptySet);
  }
};
using CertificateIssuer = CertificateIssuerOf<Owned>;       ///< owns what it holds
using CertificateIssuerView = CertificateIssuerOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
