/// @file
/// Certificate revocation lists (RFC 5280 5.1). Entries are read one by one, in constant memory.
#pragma once

#include <cstddef>
#include <iterator>
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

// SEQUENCE {                                                     RFC 5280 5.1, in revokedCertificates
//     userCertificate     CertificateSerialNumber,
//     revocationDate      Time,
//     crlEntryExtensions  Extensions OPTIONAL }
/// An entry as it is encoded.
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
  friend class CrlEntries;
  void move(const Item<RevokedCertificateView> &item) {
    Item::operator=(item);
    if (!item) return unknown(item.octets(), item.fault());
    if (!item->extensionList) return;
    const ExtensionsView extensions = item->extensions();
    if (extensions.fault()) return unknown(item->extensionList->octets(), extensions.fault());
    const auto found = extensions.view<CertificateIssuerView>();
    if (!found.isAbsent()) issuer_ = found;
    for (const auto &extension : extensions) {
      const bool isAnything = !extension && detail::beginningOf(extension.octets()).id.empty();
      if (isAnything) return unknown(extension.octets(), extension.fault());
    }
  }
  void unknown(View octets, const Fault &fault) {
    issuer_ = Found<CertificateIssuerView>(Item<CertificateIssuerView>::faulty(octets, fault), true);
  }

  Found<CertificateIssuerView> issuer_;
};

/// The entries of a CRL: an input range that can be walked any number of times, and holds one entry at a time.
class CrlEntries {
 public:
  CrlEntries() = default;
  /// Of the members of revokedCertificates.
  explicit CrlEntries(Range<RevokedCertificateView> members) : members_(members) {}

  class Iterator {
   public:
    /// What std::iterator_traits wants.
    /// @{
    using iterator_category = std::input_iterator_tag;
    using value_type = CrlEntry;
    using difference_type = std::ptrdiff_t;
    using pointer = const CrlEntry *;
    using reference = const CrlEntry &;
    /// @}

    Iterator() = default;
    explicit Iterator(Range<RevokedCertificateView>::Iterator at) : at_(at) { move(); }
    /// The entry, held by the iterator until it moves on.
    reference operator*() const { return entry_; }
    pointer operator->() const { return &entry_; }
    Iterator &operator++() {
      ++at_;
      move();
      return *this;
    }
    void operator++(int) { ++*this; }
    friend bool operator==(const Iterator &a, const Iterator &b) { return a.at_ == b.at_; }
    friend bool operator!=(const Iterator &a, const Iterator &b) { return !(a == b); }

   private:
    void move() {
      if (at_->octets().data() != nullptr) entry_.move(*at_);
    }
    Range<RevokedCertificateView>::Iterator at_;
    CrlEntry entry_;
  };

  /// What is wrong with revokedCertificates itself: then its entries are not known, and none is visited.
  const Fault &fault() const { return fault_; }
  /// The first entry, and the end.
  /// @{
  Iterator begin() const { return Iterator(members_.begin()); }
  Iterator end() const { return {}; }
  /// @}
  std::size_t size() const { return members_.size(); }  ///< how many, faulty ones too, by their headers alone
  bool empty() const { return members_.empty(); }       ///< whether there are none

 private:
  friend struct TbsCertListView;
  Range<RevokedCertificateView> members_;
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
/// What is signed in a CRL.
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
    CrlEntries entries(list ? *list : Range<RevokedCertificateView>());
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
/// A CRL. It can be read when its fields are there, in their order; each is judged when it is asked for.
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
