/// @file
/// Netscape's extensions: what a certificate is for, comments and addresses.
#pragma once

#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/bits.hpp"
#include "ketra/types/scalar.hpp"
#include "ketra/types/text.hpp"

namespace ketra {

// NetscapeCertType ::= BIT STRING {                              Netscape Certificate Extensions
//     sslClient (0), sslServer (1), smime (2), objectSigning (3), reserved (4), sslCA (5), smimeCA (6),
//     objectSigningCA (7) }
template <class Form>
struct NetscapeCertTypeOf {
  static constexpr std::string_view name = "NetscapeCertType";
  static constexpr OidLiteral oid = "2.16.840.1.113730.1.1"_oid;
  static constexpr Shape shape = Shape::Bits;

  bool sslClient = false;
  bool sslServer = false;
  bool smime = false;
  bool objectSigning = false;
  bool reserved = false;
  bool sslCA = false;
  bool smimeCA = false;
  bool objectSigningCA = false;
  BitsOf<Form> nameless{};  ///< what was read, when it has bits beyond these

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("sslClient", self.sslClient, bit(0)) && visit("sslServer", self.sslServer, bit(1)) &&
           visit("smime", self.smime, bit(2)) && visit("objectSigning", self.objectSigning, bit(3)) &&
           visit("reserved", self.reserved, bit(4)) && visit("sslCA", self.sslCA, bit(5)) &&
           visit("smimeCA", self.smimeCA, bit(6)) && visit("objectSigningCA", self.objectSigningCA, bit(7)) &&
           visit.nameless(self.nameless);
  }
};
using NetscapeCertType = NetscapeCertTypeOf<Owned>;       ///< owns what it holds
using NetscapeCertTypeView = NetscapeCertTypeOf<Viewed>;  ///< points to what it was read from

// NetscapeBaseUrl ::= IA5String
template <class Form>
struct NetscapeBaseUrlOf : Scalar<Ia5StringOf<Form>> {
  static constexpr std::string_view name = "NetscapeBaseUrl";
  static constexpr OidLiteral oid = "2.16.840.1.113730.1.2"_oid;
};
using NetscapeBaseUrl = NetscapeBaseUrlOf<Owned>;       ///< owns what it holds
using NetscapeBaseUrlView = NetscapeBaseUrlOf<Viewed>;  ///< points to what it was read from

// NetscapeRevocationUrl ::= IA5String
template <class Form>
struct NetscapeRevocationUrlOf : Scalar<Ia5StringOf<Form>> {
  static constexpr std::string_view name = "NetscapeRevocationUrl";
  static constexpr OidLiteral oid = "2.16.840.1.113730.1.3"_oid;
};
using NetscapeRevocationUrl = NetscapeRevocationUrlOf<Owned>;       ///< owns what it holds
using NetscapeRevocationUrlView = NetscapeRevocationUrlOf<Viewed>;  ///< points to what it was read from

// NetscapeCaRevocationUrl ::= IA5String
template <class Form>
struct NetscapeCaRevocationUrlOf : Scalar<Ia5StringOf<Form>> {
  static constexpr std::string_view name = "NetscapeCaRevocationUrl";
  static constexpr OidLiteral oid = "2.16.840.1.113730.1.4"_oid;
};
using NetscapeCaRevocationUrl = NetscapeCaRevocationUrlOf<Owned>;       ///< owns what it holds
using NetscapeCaRevocationUrlView = NetscapeCaRevocationUrlOf<Viewed>;  ///< points to what it was read from

// NetscapeCertRenewalUrl ::= IA5String
template <class Form>
struct NetscapeCertRenewalUrlOf : Scalar<Ia5StringOf<Form>> {
  static constexpr std::string_view name = "NetscapeCertRenewalUrl";
  static constexpr OidLiteral oid = "2.16.840.1.113730.1.7"_oid;
};
using NetscapeCertRenewalUrl = NetscapeCertRenewalUrlOf<Owned>;       ///< owns what it holds
using NetscapeCertRenewalUrlView = NetscapeCertRenewalUrlOf<Viewed>;  ///< points to what it was read from

// NetscapeCaPolicyUrl ::= IA5String
template <class Form>
struct NetscapeCaPolicyUrlOf : Scalar<Ia5StringOf<Form>> {
  static constexpr std::string_view name = "NetscapeCaPolicyUrl";
  static constexpr OidLiteral oid = "2.16.840.1.113730.1.8"_oid;
};
using NetscapeCaPolicyUrl = NetscapeCaPolicyUrlOf<Owned>;       ///< owns what it holds
using NetscapeCaPolicyUrlView = NetscapeCaPolicyUrlOf<Viewed>;  ///< points to what it was read from

// NetscapeSslServerName ::= IA5String
template <class Form>
struct NetscapeSslServerNameOf : Scalar<Ia5StringOf<Form>> {
  static constexpr std::string_view name = "NetscapeSslServerName";
  static constexpr OidLiteral oid = "2.16.840.1.113730.1.12"_oid;
};
using NetscapeSslServerName = NetscapeSslServerNameOf<Owned>;       ///< owns what it holds
using NetscapeSslServerNameView = NetscapeSslServerNameOf<Viewed>;  ///< points to what it was read from

// NetscapeComment ::= IA5String
template <class Form>
struct NetscapeCommentOf : Scalar<Ia5StringOf<Form>> {
  static constexpr std::string_view name = "NetscapeComment";
  static constexpr OidLiteral oid = "2.16.840.1.113730.1.13"_oid;
};
using NetscapeComment = NetscapeCommentOf<Owned>;       ///< owns what it holds
using NetscapeCommentView = NetscapeCommentOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
