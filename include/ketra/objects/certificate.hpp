/// @file
/// Certificates (RFC 5280 4.1). What they hold is read in place, field by field.
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/field.hpp"
#include "ketra/objects/extensions.hpp"
#include "ketra/types/algorithm.hpp"
#include "ketra/types/bits.hpp"
#include "ketra/types/integer.hpp"
#include "ketra/types/name.hpp"
#include "ketra/types/time.hpp"

namespace ketra {

// Validity ::= SEQUENCE {                                        RFC 5280 4.1.2.5
//     notBefore  Time,
//     notAfter   Time }
//
// The period of a certificate, each end of which can be faulty by itself.
struct ValidityView {
  Field<EitherTime> notBefore{};
  Field<EitherTime> notAfter{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("notBefore", self.notBefore) && visit("notAfter", self.notAfter);
  }
};
static_assert(wellFormed<ValidityView>());

// TBSCertificate ::= SEQUENCE {                                  RFC 5280 4.1
//     version               [0] EXPLICIT Version DEFAULT v1,
//     serialNumber          CertificateSerialNumber,
//     signature             AlgorithmIdentifier,
//     issuer                Name,
//     validity              Validity,
//     subject               Name,
//     subjectPublicKeyInfo  SubjectPublicKeyInfo,
//     issuerUniqueID        [1] UniqueIdentifier OPTIONAL,
//     subjectUniqueID       [2] UniqueIdentifier OPTIONAL,
//     extensions            [3] EXPLICIT Extensions OPTIONAL }
//
// What is signed in a certificate.
struct TbsCertificateView {
  using SignedPart = TbsCertificateView;  ///< it keeps its octets

  View signedOctets{};                          ///< the whole encoding, which is what is signed
  std::optional<Field<IntegerView>> version{};  ///< v1 (0) when it is absent
  Field<IntegerView> serialNumber{};            ///< `INTEGER`
  Field<AlgorithmIdentifierView> signature{};   ///< the same as CertificateView::signatureAlgorithm (4.1.1.2)
  Field<NameView> issuer{};                     ///< `Name`
  Field<ValidityView> validity{};               ///< `SEQUENCE` of two times
  Field<NameView> subject{};                    ///< `Name`
  Field<SubjectPublicKeyInfoView> subjectPublicKeyInfo{};  ///< the key
  std::optional<Field<BitsView>> issuerUniqueID{};         ///< `BIT STRING`
  std::optional<Field<BitsView>> subjectUniqueID{};        ///< `BIT STRING`
  ExtensionsField extensionList{};                         ///< see extensions()

  /// The extensions; none when the field is absent. If it is faulty, so is everything that is looked for in it.
  ExtensionsView extensions() const { return ExtensionsView(extensionList); }

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("version", self.version, explicitly(0)) && visit("serialNumber", self.serialNumber) &&
           visit("signature", self.signature) && visit("issuer", self.issuer) && visit("validity", self.validity) &&
           visit("subject", self.subject) && visit("subjectPublicKeyInfo", self.subjectPublicKeyInfo) &&
           visit("issuerUniqueID", self.issuerUniqueID, context(1)) &&
           visit("subjectUniqueID", self.subjectUniqueID, context(2)) &&
           visit("extensions", self.extensionList, explicitly(3));
  }
};
static_assert(wellFormed<TbsCertificateView>());

// Certificate ::= SEQUENCE {                                     RFC 5280 4.1
//     tbsCertificate      TBSCertificate,
//     signatureAlgorithm  AlgorithmIdentifier,
//     signatureValue      BIT STRING }
//
// A certificate. It can be read when its fields are there, in their order; each is judged when it is asked for.
struct CertificateView : TbsCertificateView {
  static constexpr std::string_view name = "Certificate";

  Field<AlgorithmIdentifierView> signatureAlgorithm{};  ///< how it is signed
  Field<BitsView> signatureValue{};                     ///< the signature

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("tbsCertificate", tbs(self)) && visit("signatureAlgorithm", self.signatureAlgorithm) &&
           visit("signatureValue", self.signatureValue);
  }

 private:
  static constexpr TbsCertificateView &tbs(TbsCertificateView &self) { return self; }
  static constexpr const TbsCertificateView &tbs(const TbsCertificateView &self) { return self; }
};
static_assert(wellFormed<CertificateView>());
using Certificate = ObjectOf<CertificateView>;  ///< owns its octets

namespace detail {
template <>
struct OwnedOf<CertificateView> {
  using type = Certificate;
};
}  // namespace detail

}  // namespace ketra
