/// @file
/// The certificates and CRLs of a PKCS #7 or CMS SignedData (RFC 5652 5.1), as .p7b and .p7c files hold them.
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/field.hpp"
#include "ketra/objects/certificate.hpp"
#include "ketra/objects/crl.hpp"

namespace ketra {

// SignedData ::= SEQUENCE {                                      RFC 5652 5.1
//     version           CMSVersion,
//     digestAlgorithms  SET OF AlgorithmIdentifier,
//     encapContentInfo  EncapsulatedContentInfo,
//     certificates      [0] SET OF CertificateChoices OPTIONAL,
//     crls              [1] SET OF RevocationInfoChoice OPTIONAL,
//     signerInfos       SET OF SignerInfo }
//
// A SignedData. Members of certificates and crls that are none, attribute certificates and OCSP responses among them,
// are faulty in their place.
struct SignedDataView {
  static constexpr std::string_view name = "SignedData";

  Field<IntegerView> version{};                                 ///< `INTEGER`
  Field<Range<AlgorithmIdentifierView>> digestAlgorithms{};     ///< `SET OF`
  Field<AnyView> encapContentInfo{};                            ///< what is signed
  std::optional<Field<Range<CertificateView>>> certificates{};  ///< in any order
  std::optional<Field<Range<CrlView>>> crls{};                  ///< in any order
  Field<Range<AnyView>> signerInfos{};                          ///< none when only certificates are handed over

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("version", self.version) && visit("digestAlgorithms", self.digestAlgorithms, setOf) &&
           visit("encapContentInfo", self.encapContentInfo) &&
           visit("certificates", self.certificates, context(0) | setOf) &&
           visit("crls", self.crls, context(1) | setOf) && visit("signerInfos", self.signerInfos, setOf);
  }
};
static_assert(wellFormed<SignedDataView>());

// ContentInfo ::= SEQUENCE {                                     RFC 5652 3
//     contentType  OBJECT IDENTIFIER,
//     content      [0] EXPLICIT ANY DEFINED BY contentType OPTIONAL }
//
// A PKCS #7 or CMS object.
struct Pkcs7View {
  static constexpr std::string_view name = "ContentInfo";

  ObjectIdentifierView contentType{};  ///< see contentName()
  std::optional<AnyView> content{};    ///< see signedData()

  /// The content as SignedData; a fault (FaultCode_OtherKind) when it is something else.
  Result<SignedDataView> signedData() const {
    if (contentType != "1.2.840.113549.1.7.2"_oid || !content) return Fault{Reason::OtherKind, 0, 0, nullptr};
    return content->as<SignedDataView>();
  }
  /// The certificates of a SignedData, good or faulty each; or what hides them. None when it has none.
  Result<Range<CertificateView>> certificates() const {
    return membersOf<CertificateView>(&SignedDataView::certificates);
  }
  /// The CRLs of a SignedData in the same way.
  Result<Range<CrlView>> crls() const { return membersOf<CrlView>(&SignedDataView::crls); }
  /// What it is: "signedData", "envelopedData"; empty for a type without a name here.
  std::string_view contentName() const {
    constexpr struct {
      OidLiteral type;
      std::string_view name;
    } kTypes[] = {{"1.2.840.113549.1.7.1"_oid, "data"},
                  {"1.2.840.113549.1.7.2"_oid, "signedData"},
                  {"1.2.840.113549.1.7.3"_oid, "envelopedData"},
                  {"1.2.840.113549.1.7.4"_oid, "signedAndEnvelopedData"},
                  {"1.2.840.113549.1.7.5"_oid, "digestedData"},
                  {"1.2.840.113549.1.7.6"_oid, "encryptedData"},
                  {"1.2.840.113549.1.9.16.1.2"_oid, "authenticatedData"},
                  {"1.2.840.113549.1.9.16.1.9"_oid, "compressedData"},
                  {"1.2.840.113549.1.9.16.1.23"_oid, "authEnvelopedData"}};
    for (const auto &each : kTypes) {
      if (each.type == contentType) return each.name;
    }
    return {};
  }

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("contentType", self.contentType) && visit("content", self.content, explicitly(0));
  }

 private:
  template <class T>
  Result<Range<T>> membersOf(std::optional<Field<Range<T>>> SignedDataView::*member) const {
    const auto data = signedData();
    if (!data) return data.fault();
    const auto &field = (*data).*member;
    if (!field) return Range<T>();
    const auto list = field->value();
    if (!list) return list.fault();
    return *list;
  }
};
static_assert(wellFormed<Pkcs7View>());
using Pkcs7 = ObjectOf<Pkcs7View>;  ///< owns its octets

namespace detail {
template <>
struct OwnedOf<Pkcs7View> {
  using type = Pkcs7;
};
}  // namespace detail

}  // namespace ketra
