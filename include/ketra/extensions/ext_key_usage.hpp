/// @file
/// ExtKeyUsage: the purposes of the key.
#pragma once

#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"

namespace ketra {

// ExtKeyUsageSyntax ::= SEQUENCE SIZE (1..MAX) OF KeyPurposeId    RFC 5280 4.2.1.12
// KeyPurposeId ::= OBJECT IDENTIFIER
template <class Form>
struct ExtKeyUsageOf {
  static constexpr std::string_view name = "ExtKeyUsage";
  static constexpr OidLiteral oid = "2.5.29.37"_oid;
  static constexpr Shape shape = Shape::Is;

  ListOf<Form, ObjectIdentifierOf<Form>> purposes{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("purposes", self.purposes, nonEmpty);
  }
};
using ExtKeyUsage = ExtKeyUsageOf<Owned>;       ///< owns what it holds
using ExtKeyUsageView = ExtKeyUsageOf<Viewed>;  ///< points to what it was read from

/// Purposes in common use (RFC 5280 4.2.1.12, RFC 4945, RFC 9336).
namespace purpose {
/// @{
inline constexpr OidLiteral anyExtendedKeyUsage = "2.5.29.37.0"_oid;
inline constexpr OidLiteral serverAuth = "1.3.6.1.5.5.7.3.1"_oid;
inline constexpr OidLiteral clientAuth = "1.3.6.1.5.5.7.3.2"_oid;
inline constexpr OidLiteral codeSigning = "1.3.6.1.5.5.7.3.3"_oid;
inline constexpr OidLiteral emailProtection = "1.3.6.1.5.5.7.3.4"_oid;
inline constexpr OidLiteral timeStamping = "1.3.6.1.5.5.7.3.8"_oid;
inline constexpr OidLiteral ocspSigning = "1.3.6.1.5.5.7.3.9"_oid;
inline constexpr OidLiteral ipsecIKE = "1.3.6.1.5.5.7.3.17"_oid;
inline constexpr OidLiteral documentSigning = "1.3.6.1.5.5.7.3.36"_oid;
/// @}
}  // namespace purpose

}  // namespace ketra
