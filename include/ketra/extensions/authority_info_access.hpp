/// @file
/// AuthorityInfoAccess: where the issuer offers information and services.
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/general_name.hpp"

namespace ketra {

// AccessDescription ::= SEQUENCE {                               RFC 5280 4.2.2.1
//     accessMethod    OBJECT IDENTIFIER,
//     accessLocation  GeneralName }
template <class Form>
struct AccessDescriptionOf {
  ObjectIdentifierOf<Form> accessMethod{};
  GeneralNameOf<Form> accessLocation{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("accessMethod", self.accessMethod) && visit("accessLocation", self.accessLocation);
  }
};
using AccessDescription = AccessDescriptionOf<Owned>;       ///< owns what it holds
using AccessDescriptionView = AccessDescriptionOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<AccessDescriptionView>());

// AuthorityInfoAccessSyntax ::= SEQUENCE SIZE (1..MAX) OF AccessDescription     RFC 5280 4.2.2.1, 5.2.7
//
// Empty lists occur in practice.
template <class Form>
struct AuthorityInfoAccessOf {
  static constexpr std::string_view name = "AuthorityInfoAccess";
  static constexpr OidLiteral oid = "1.3.6.1.5.5.7.1.1"_oid;
  static constexpr std::optional<bool> critical = false;
  static constexpr Shape shape = Shape::Is;

  ListOf<Form, AccessDescriptionOf<Form>> descriptions{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("descriptions", self.descriptions, nonEmptyWhenSet);
  }
};
using AuthorityInfoAccess = AuthorityInfoAccessOf<Owned>;       ///< owns what it holds
using AuthorityInfoAccessView = AuthorityInfoAccessOf<Viewed>;  ///< points to what it was read from

/// What is found at a location.
namespace access {
/// RFC 5280 4.2.2; RFC 6487 4.8.8, RFC 8182.
/// @{
inline constexpr OidLiteral ocsp = "1.3.6.1.5.5.7.48.1"_oid;
inline constexpr OidLiteral caIssuers = "1.3.6.1.5.5.7.48.2"_oid;
inline constexpr OidLiteral timeStamping = "1.3.6.1.5.5.7.48.3"_oid;
inline constexpr OidLiteral caRepository = "1.3.6.1.5.5.7.48.5"_oid;
inline constexpr OidLiteral rpkiManifest = "1.3.6.1.5.5.7.48.10"_oid;
inline constexpr OidLiteral signedObject = "1.3.6.1.5.5.7.48.11"_oid;
inline constexpr OidLiteral rpkiNotify = "1.3.6.1.5.5.7.48.13"_oid;
/// @}
}  // namespace access

}  // namespace ketra
