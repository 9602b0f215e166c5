/// @file
/// Microsoft's extensions that are one component (MS-WCCE, MS-CRTD).
#pragma once

#include <string_view>
#include <variant>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/integer.hpp"
#include "ketra/types/scalar.hpp"
#include "ketra/types/text.hpp"
#include "ketra/types/time.hpp"

namespace ketra {

// CertificateTemplateName ::= SEQUENCE { Name UTF8String }       MS-WCCE 2.2.2.7.7.1
template <class Form>
struct MicrosoftTypeNameOf {
  Utf8StringOf<Form> name{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("Name", self.name);
  }
};
using MicrosoftTypeName = MicrosoftTypeNameOf<Owned>;       ///< owns what it holds
using MicrosoftTypeNameView = MicrosoftTypeNameOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<MicrosoftTypeNameView>());

// MicrosoftCertTypeName ::= CHOICE {
//     bmp       BMPString,
//     utf8      UTF8String,
//     sequence  CertificateTemplateName }
//
// MS-WCCE has the last one; certificates have the first, and rarely the second.
template <class Form>
struct MicrosoftCertTypeNameOf {
  static constexpr std::string_view name = "MicrosoftCertTypeName";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.311.20.2"_oid;
  static constexpr std::optional<bool> critical = false;
  static constexpr Shape shape = Shape::Choice;

  std::variant<BmpStringOf<Form>, Utf8StringOf<Form>, MicrosoftTypeNameOf<Form>> choice{};  ///< whichever it is

  /// The name, however it is written.
  std::string utf8() const {
    if (const auto *const bmp = std::get_if<0>(&choice)) return bmp->utf8();
    const auto *const utf8 = std::get_if<1>(&choice);
    return utf8 != nullptr ? utf8->utf8() : std::get_if<2>(&choice)->name.utf8();
  }

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit.choice(self.choice, Alternative{"bmp", {}}, Alternative{"utf8", {}}, Alternative{"sequence", {}});
  }
};
using MicrosoftCertTypeName = MicrosoftCertTypeNameOf<Owned>;       ///< owns what it holds
using MicrosoftCertTypeNameView = MicrosoftCertTypeNameOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<MicrosoftCertTypeNameView>());

// MicrosoftCAVersion ::= INTEGER                                MS-WCCE 3.2.1.4.3.2.39
//
// In its low 16 bits the index of the certificate, above them that of the key.
template <class Form>
struct MicrosoftCaVersionOf : Scalar<IntegerOf<Form>> {
  static constexpr std::string_view name = "MicrosoftCAVersion";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.311.21.1"_oid;

  /// "certificate 1, key 1".
  std::string text() const {
    const int64_t number = this->value.number().value_or(-1);
    if (number < 0) return this->value.text();
    return "certificate " + std::to_string(number & 0xFFFF) + ", key " + std::to_string(number >> 16);
  }
};
using MicrosoftCaVersion = MicrosoftCaVersionOf<Owned>;       ///< owns what it holds
using MicrosoftCaVersionView = MicrosoftCaVersionOf<Viewed>;  ///< points to what it was read from

// MicrosoftPreviousCACertHash ::= OCTET STRING
//
// SHA-1.
template <class Form>
struct MicrosoftPreviousCaCertHashOf : Scalar<OctetStringOf<Form>> {
  static constexpr std::string_view name = "MicrosoftPreviousCACertHash";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.311.21.2"_oid;
};
using MicrosoftPreviousCaCertHash = MicrosoftPreviousCaCertHashOf<Owned>;       ///< owns what it holds
using MicrosoftPreviousCaCertHashView = MicrosoftPreviousCaCertHashOf<Viewed>;  ///< points to what it was read from

// MicrosoftVirtualBaseCRLNumber ::= INTEGER
//
// The number of the base of a delta CRL.
template <class Form>
struct MicrosoftVirtualBaseCrlNumberOf : Scalar<IntegerOf<Form>> {
  static constexpr std::string_view name = "MicrosoftVirtualBaseCRLNumber";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.311.21.3"_oid;
};
using MicrosoftVirtualBaseCrlNumber = MicrosoftVirtualBaseCrlNumberOf<Owned>;       ///< owns what it holds
using MicrosoftVirtualBaseCrlNumberView = MicrosoftVirtualBaseCrlNumberOf<Viewed>;  ///< points to what it was read from

// MicrosoftNextCRLPublish ::= Time
//
// When the next CRL will be there.
template <class Form>
struct MicrosoftNextCrlPublishOf : Scalar<EitherTime> {
  static constexpr std::string_view name = "MicrosoftNextCRLPublish";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.311.21.4"_oid;
};
using MicrosoftNextCrlPublish = MicrosoftNextCrlPublishOf<Owned>;       ///< owns what it holds
using MicrosoftNextCrlPublishView = MicrosoftNextCrlPublishOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
