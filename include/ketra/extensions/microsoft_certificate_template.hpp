/// @file
/// MicrosoftCertificateTemplate: after which template a certificate was made.
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/integer.hpp"

namespace ketra {

// CertificateTemplateOID ::= SEQUENCE {                          MS-WCCE 2.2.2.7.7.2
//     templateID            OBJECT IDENTIFIER,
//     templateMajorVersion  INTEGER (0..4294967295) OPTIONAL,
//     templateMinorVersion  INTEGER (0..4294967295) OPTIONAL }
//
// Not well formed: a single number is the major version.
template <class Form>
struct MicrosoftCertificateTemplateOf {
  static constexpr std::string_view name = "MicrosoftCertificateTemplate";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.311.21.7"_oid;

  ObjectIdentifierOf<Form> templateID{};
  std::optional<IntegerOf<Form>> templateMajorVersion{};
  std::optional<IntegerOf<Form>> templateMinorVersion{};

  /// Why set() refuses the value, or null.
  const char *refusal() const {
    const bool isRead = templateMajorVersion || !templateMinorVersion;
    return isRead ? nullptr : "templateMinorVersion without templateMajorVersion would be read as the latter";
  }

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("templateID", self.templateID) && visit("templateMajorVersion", self.templateMajorVersion, natural) &&
           visit("templateMinorVersion", self.templateMinorVersion, natural);
  }
};
using MicrosoftCertificateTemplate = MicrosoftCertificateTemplateOf<Owned>;       ///< owns what it holds
using MicrosoftCertificateTemplateView = MicrosoftCertificateTemplateOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
