/// @file
/// CABFOrganizationIdentifier: by which number a register knows the subject.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/text.hpp"

namespace ketra {

// CABFOrganizationIdentifier ::= SEQUENCE {                      CA/Browser Forum, EV Guidelines 9.8.2
//     registrationSchemeIdentifier  PrintableString (SIZE (3)),
//     registrationCountry           PrintableString (SIZE (2)),
//     registrationStateOrProvince   [0] IMPLICIT PrintableString (SIZE (0..128)) OPTIONAL,
//     registrationReference         UTF8String }
template <class Form>
struct CabfOrganizationIdentifierOf {
  static constexpr std::string_view name = "CABFOrganizationIdentifier";
  static constexpr OidLiteral oid = "2.23.140.3.1"_oid;

  PrintableTextOf<Form> registrationSchemeIdentifier{};  ///< NTR, VAT or PSD
  PrintableTextOf<Form> registrationCountry{};
  std::optional<PrintableStringOf<Form>> registrationStateOrProvince{};
  TextOf<Form> registrationReference{};

  /// As in the organizationIdentifier of a subject: "NTRUS+CA-27380834".
  std::string text() const {
    std::string text = registrationSchemeIdentifier.utf8() + registrationCountry.utf8();
    if (registrationStateOrProvince) text += '+' + registrationStateOrProvince->utf8();
    return text + '-' + registrationReference.utf8();
  }

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("registrationSchemeIdentifier", self.registrationSchemeIdentifier) &&
           visit("registrationCountry", self.registrationCountry) &&
           visit("registrationStateOrProvince", self.registrationStateOrProvince, context(0)) &&
           visit("registrationReference", self.registrationReference);
  }
};
using CabfOrganizationIdentifier = CabfOrganizationIdentifierOf<Owned>;       ///< owns what it holds
using CabfOrganizationIdentifierView = CabfOrganizationIdentifierOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<CabfOrganizationIdentifierView>());

}  // namespace ketra
