/// @file
/// Certificate requests (RFC 2986 4), and the extensions that they ask for (RFC 2985 5.4.2).
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/field.hpp"
#include "ketra/extensions/subject_directory_attributes.hpp"
#include "ketra/objects/extensions.hpp"
#include "ketra/types/algorithm.hpp"
#include "ketra/types/bits.hpp"
#include "ketra/types/integer.hpp"
#include "ketra/types/name.hpp"

namespace ketra {

/// Whether an attribute of this type has a list of extensions as its value: that of RFC 2985 5.4.2, or the one that was
/// in use before.
template <class Oid>
bool isExtensionRequest(const Oid &type) {
  return type == "1.2.840.113549.1.9.14"_oid || type == "1.3.6.1.4.1.311.2.1.14"_oid;
}

// CertificationRequestInfo ::= SEQUENCE {                        RFC 2986 4.1
//     version        INTEGER,
//     subject        Name,
//     subjectPKInfo  SubjectPublicKeyInfo,
//     attributes     [0] SET OF Attribute }
//
// Requests without attributes leave the SET out in practice.
// What is signed in a request.
struct CertificationRequestInfoView {
  using SignedPart = CertificationRequestInfoView;  ///< it keeps its octets

  View signedOctets{};                                      ///< the whole encoding
  Field<IntegerView> version{};                             ///< v1 (0)
  Field<NameView> subject{};                                ///< `Name`
  Field<SubjectPublicKeyInfoView> subjectPKInfo{};          ///< the key
  std::optional<Field<Range<AttributeView>>> attributes{};  ///< each of them good or faulty

  /// The extensions that are asked for; none without an extensionRequest. When there are several, when one has not
  /// exactly one value, or when an attribute that could be one cannot be read, the list is faulty. The lists of all of
  /// them are ExtensionsView(value.encoding()) for each value of each attribute that is an isExtensionRequest().
  ExtensionsView extensions() const {
    ExtensionsView extensions;
    if (!attributes) return extensions;
    const auto list = attributes->value();
    if (!list) return ExtensionsView::faulty(list.fault());
    bool isThere = false;
    for (const auto &attribute : *list) {
      if (!attribute) {
        const auto type = ObjectIdentifierView::ofContent(detail::beginningOf(attribute.octets()).id);
        if (type && !isExtensionRequest(*type)) continue;
        return ExtensionsView::faulty(attribute.fault());
      }
      if (!isExtensionRequest(attribute->type)) continue;
      Fault fault;
      if (isThere) detail::fail(fault, Reason::Repeated, attribute.octets().begin());
      const std::size_t values = attribute->values.size();
      if (values != 1) detail::fail(fault, Reason::OneValue, attribute.octets().begin(), values);
      if (fault) return ExtensionsView::faulty(fault);
      isThere = true;
      extensions = ExtensionsView(attribute->values.octets());
    }
    return extensions;
  }

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("version", self.version) && visit("subject", self.subject) &&
           visit("subjectPKInfo", self.subjectPKInfo) && visit("attributes", self.attributes, context(0) | setOf);
  }
};
static_assert(wellFormed<CertificationRequestInfoView>());

// CertificationRequest ::= SEQUENCE {                            RFC 2986 4.2
//     certificationRequestInfo  CertificationRequestInfo,
//     signatureAlgorithm        AlgorithmIdentifier,
//     signature                 BIT STRING }
//
// A certificate request. It can be read when its fields are there, in their order; each is judged when it is asked
// for.
struct RequestView : CertificationRequestInfoView {
  static constexpr std::string_view name = "CertificationRequest";

  Field<AlgorithmIdentifierView> signatureAlgorithm{};  ///< how it is signed
  Field<BitsView> signature{};                          ///< the signature

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("certificationRequestInfo", info(self)) && visit("signatureAlgorithm", self.signatureAlgorithm) &&
           visit("signature", self.signature);
  }

 private:
  static constexpr CertificationRequestInfoView &info(CertificationRequestInfoView &self) { return self; }
  static constexpr const CertificationRequestInfoView &info(const CertificationRequestInfoView &self) { return self; }
};
static_assert(wellFormed<RequestView>());
using Request = ObjectOf<RequestView>;  ///< owns its octets

namespace detail {
template <>
struct OwnedOf<RequestView> {
  using type = Request;
};
}  // namespace detail

}  // namespace ketra
