/// @file
/// Certificate revocation lists (RFC 5280 5.1). Entries are read one by one, in constant memory.
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/field.hpp"
#include "ketra/extensions/cert_issuer.hpp"
#include "ketra/objects/extensions.hpp"
#include "ketra/types/algorithm.hpp"
#include "ketra/types/bits.hpp"
#include "ketra/types/integer.hpp"
#include "ketra/types/name.hpp"
#include "ketra/types/time.hpp"

namespace ketra {

// RevokedCertificate ::= SEQUENCE {                              RFC 5280 5.1
//     userCertificate     CertificateSerialNumber,
//     revocationDate      Time,
//     crlEntryExtensions  Extensions OPTIONAL }
//
// An entry as it is encoded.
struct RevokedCertificateView {
  Field<IntegerView> serialNumber{};   ///< userCertificate: `INTEGER`
  Field<EitherTime> revocationDate{};  ///< `Time`
  ExtensionsField extensionList{};     ///< see extensions()

  /// The extensions; none when the field is absent. If it is faulty, so is everything that is looked for in it.
  ExtensionsView extensions() const { return ExtensionsView(extensionList); }

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("userCertificate", self.serialNumber) && visit("revocationDate", self.revocationDate) &&
           visit("crlEntryExtensions", self.extensionList);
  }
};
static_assert(wellFormed<RevokedCertificateView>());

/// An entry of a CRL, good or faulty, and who issued the certificate that it revokes.
class CrlEntry : public Item<RevokedCertificateView> {
 public:
  /// The certificate issuer, which an entry of an indirect CRL without that extension has from those before it (RFC
  /// 5280 5.3.3). Absent: the issuer of the CRL. Faulty: it cannot be told, because this entry or one before it may
  /// have the extension and cannot be read; it stays so up to an entry that has it.
  const Found<CertificateIssuerView> &certificateIssuer() const { return issuer_; }

 private:
  template <class, class>
  friend class Range;
  void reached() {
    if (!*this) return unknown(octets(), fault());
    if (!(*this)->extensionList) return;
    const auto list = (*this)->extensionList->value();
    if (!list) return unknown(list.octets(), list.fault());
    for (const auto &extension : *list) {
      if (extension) {
        if (extension->extnID != CertificateIssuerView::oid) continue;
        const auto issuer = view<CertificateIssuerView>(extension->extnValue.octets());
        issuer_ = Found<CertificateIssuerView>(issuer, extension->critical.value());
        return;
      }
      const View id = detail::beginningOf(extension.octets()).id;
      if (id.empty() || id == CertificateIssuerView::oid.content()) {
        return unknown(extension.octets(), extension.fault());
      }
    }
  }
  void unknown(View octets, const Fault &fault) {
    issuer_ = Found<CertificateIssuerView>(Item<CertificateIssuerView>::faulty(octets, fault), true);
  }

  Found<CertificateIssuerView> issuer_;
};

/// The entries of a CRL, read one at a time.
class CrlEntries : public Range<RevokedCertificateView, CrlEntry> {
 public:
  using Range::Range;
  /// What is wrong with revokedCertificates itself: then its entries are not known, and none is visited.
  const Fault &fault() const { return fault_; }

 private:
  friend struct TbsCertListView;
  Fault fault_;
};

// TBSCertList ::= SEQUENCE {                                     RFC 5280 5.1
//     version              Version OPTIONAL,
//     signature            AlgorithmIdentifier,
//     issuer               Name,
//     thisUpdate           Time,
//     nextUpdate           Time OPTIONAL,
//     revokedCertificates  SEQUENCE OF SEQUENCE OPTIONAL,
//     crlExtensions        [0] EXPLICIT Extensions OPTIONAL }
//
// What is signed in a CRL.
struct TbsCertListView {
  using SignedPart = TbsCertListView;  ///< it keeps its octets

  View signedOctets{};                                                        ///< the whole encoding
  std::optional<Field<IntegerView>> version{};                                ///< v1 (0) when it is absent
  Field<AlgorithmIdentifierView> signature{};                                 ///< the same as signatureAlgorithm
  Field<NameView> issuer{};                                                   ///< `Name`
  Field<EitherTime> thisUpdate{};                                             ///< `Time`
  std::optional<Field<EitherTime>> nextUpdate{};                              ///< `Time`
  std::optional<Field<Range<RevokedCertificateView>>> revokedCertificates{};  ///< see entries()
  ExtensionsField extensionList{};                                            ///< see extensions()

  /// The entries. Ask entries().fault() before concluding that a certificate is not among them.
  CrlEntries entries() const {
    if (!revokedCertificates) return {};
    const auto list = revokedCertificates->value();
    CrlEntries entries(list ? list->octets() : View());
    entries.fault_ = list.fault();
    return entries;
  }
  /// The extensions; none when the field is absent. If it is faulty, so is everything that is looked for in it.
  ExtensionsView extensions() const { return ExtensionsView(extensionList); }

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("version", self.version) && visit("signature", self.signature) && visit("issuer", self.issuer) &&
           visit("thisUpdate", self.thisUpdate) && visit("nextUpdate", self.nextUpdate) &&
           visit("revokedCertificates", self.revokedCertificates) &&
           visit("crlExtensions", self.extensionList, explicitly(0));
  }
};
static_assert(wellFormed<TbsCertListView>());

// CertificateList ::= SEQUENCE {                                 RFC 5280 5.1
//     tbsCertList         TBSCertList,
//     signatureAlgorithm  AlgorithmIdentifier,
//     signatureValue      BIT STRING }
//
// A CRL. It can be read when its fields are there, in their order; each is judged when it is asked for.
struct CrlView : TbsCertListView {
  static constexpr std::string_view name = "CertificateList";

  Field<AlgorithmIdentifierView> signatureAlgorithm{};  ///< how it is signed
  Field<BitsView> signatureValue{};                     ///< the signature

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("tbsCertList", tbs(self)) && visit("signatureAlgorithm", self.signatureAlgorithm) &&
           visit("signatureValue", self.signatureValue);
  }

 private:
  static constexpr TbsCertListView &tbs(TbsCertListView &self) { return self; }
  static constexpr const TbsCertListView &tbs(const TbsCertListView &self) { return self; }
};
static_assert(wellFormed<CrlView>());
using Crl = ObjectOf<CrlView>;  ///< owns its octets

namespace detail {
template <>
struct OwnedOf<CrlView> {
  using type = Crl;
};
}  // namespace detail

}  // namespace ketra
