/// @file
/// QCStatements: what the issuer states of a qualified certificate.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/general_name.hpp"
#include "ketra/types/integer.hpp"
#include "ketra/types/text.hpp"

namespace ketra {

/// What is stated.
namespace statement {
/// RFC 3739 3.2.6.
/// @{
inline constexpr OidLiteral pkixQCSyntaxV1 = "1.3.6.1.5.5.7.11.1"_oid;
inline constexpr OidLiteral pkixQCSyntaxV2 = "1.3.6.1.5.5.7.11.2"_oid;
/// @}
/// ETSI EN 319 412-5 4, ETSI TS 119 495 5.1 and ETSI EN 319 422 9.1.
/// @{
inline constexpr OidLiteral qcCompliance = "0.4.0.1862.1.1"_oid;
inline constexpr OidLiteral qcLimitValue = "0.4.0.1862.1.2"_oid;
inline constexpr OidLiteral qcRetentionPeriod = "0.4.0.1862.1.3"_oid;
inline constexpr OidLiteral qcSSCD = "0.4.0.1862.1.4"_oid;
inline constexpr OidLiteral qcPDS = "0.4.0.1862.1.5"_oid;
inline constexpr OidLiteral qcType = "0.4.0.1862.1.6"_oid;
inline constexpr OidLiteral qcCClegislation = "0.4.0.1862.1.7"_oid;
inline constexpr OidLiteral qcIdentMethod = "0.4.0.1862.1.8"_oid;
inline constexpr OidLiteral qcQSCDlegislation = "0.4.0.1862.1.9"_oid;
inline constexpr OidLiteral psd2 = "0.4.0.19495.2"_oid;
inline constexpr OidLiteral tsa = "0.4.0.19422.1.1"_oid;
/// @}
}  // namespace statement

// SemanticsInformation ::= SEQUENCE {                            RFC 3739 3.2.6.1
//     semanticsIdentifier          OBJECT IDENTIFIER OPTIONAL,
//     nameRegistrationAuthorities  SEQUENCE SIZE (1..MAX) OF GeneralName OPTIONAL }
template <class Form>
struct SemanticsInformationOf {
  std::optional<ObjectIdentifierOf<Form>> semanticsIdentifier{};
  std::optional<ListOf<Form, GeneralNameOf<Form>>> nameRegistrationAuthorities{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("semanticsIdentifier", self.semanticsIdentifier) &&
           visit("nameRegistrationAuthorities", self.nameRegistrationAuthorities, nonEmptyWhenSet);
  }
};
using SemanticsInformation = SemanticsInformationOf<Owned>;       ///< owns what it holds
using SemanticsInformationView = SemanticsInformationOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<SemanticsInformationView>());

// Iso4217CurrencyCode ::= CHOICE {                               ETSI EN 319 412-5 4.3.2
//     alphabetic  PrintableString (SIZE (3)),
//     numeric     INTEGER (1..999) }
template <class Form>
struct CurrencyOf {
  static constexpr Shape shape = Shape::Choice;

  std::variant<PrintableTextOf<Form>, IntegerOf<Form>> code{};  ///< whichever it is

  /// "EUR"; of a number the number.
  std::string symbol() const {
    const auto *const letters = std::get_if<0>(&code);
    return letters != nullptr ? letters->utf8() : std::get_if<1>(&code)->text();
  }

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit.choice(self.code, Alternative{"alphabetic", {}}, Alternative{"numeric", {}});
  }
};
using Currency = CurrencyOf<Owned>;       ///< owns what it holds
using CurrencyView = CurrencyOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<CurrencyView>());

// MonetaryValue ::= SEQUENCE {                                   ETSI EN 319 412-5 4.3.2
//     currency  Iso4217CurrencyCode,
//     amount    INTEGER,
//     exponent  INTEGER }     -- amount * 10^exponent
template <class Form>
struct MonetaryValueOf {
  CurrencyOf<Form> currency{};
  IntegerOf<Form> amount{};
  IntegerOf<Form> exponent{};

  /// "250000 EUR".
  std::string text() const {
    std::string digits = amount.text();
    const int64_t zeros = exponent.number().value_or(100);
    if (zeros < 0 || zeros > 18) {
      digits += " * 10^" + exponent.text();
    } else if (digits != "0") {
      digits.append(static_cast<std::size_t>(zeros), '0');
    }
    return digits + ' ' + currency.symbol();
  }

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("currency", self.currency) && visit("amount", self.amount) && visit("exponent", self.exponent);
  }
};
using MonetaryValue = MonetaryValueOf<Owned>;       ///< owns what it holds
using MonetaryValueView = MonetaryValueOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<MonetaryValueView>());

// PdsLocation ::= SEQUENCE {                                     ETSI EN 319 412-5 4.3.4
//     url       IA5String,
//     language  PrintableString (SIZE (2)) }
template <class Form>
struct PdsLocationOf {
  Ia5TextOf<Form> url{};
  PrintableTextOf<Form> language{};

  /// "https://a.example/pds.pdf (en)".
  std::string text() const { return url.utf8() + " (" + language.utf8() + ')'; }

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("url", self.url) && visit("language", self.language);
  }
};
using PdsLocation = PdsLocationOf<Owned>;       ///< owns what it holds
using PdsLocationView = PdsLocationOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<PdsLocationView>());

// RoleOfPSP ::= SEQUENCE {                                       ETSI TS 119 495 5.1
//     roleOfPspOid   OBJECT IDENTIFIER,
//     roleOfPspName  UTF8String (SIZE (1..256)) }
template <class Form>
struct RoleOfPspOf {
  ObjectIdentifierOf<Form> roleOfPspOid{};
  TextOf<Form> roleOfPspName{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("roleOfPspOid", self.roleOfPspOid) && visit("roleOfPspName", self.roleOfPspName);
  }
};
using RoleOfPsp = RoleOfPspOf<Owned>;       ///< owns what it holds
using RoleOfPspView = RoleOfPspOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<RoleOfPspView>());

// PSD2QcType ::= SEQUENCE {                                      ETSI TS 119 495 5.1
//     rolesOfPSP  SEQUENCE OF RoleOfPSP,
//     nCAName     UTF8String (SIZE (1..256)),
//     nCAId       UTF8String (SIZE (1..256)) }
template <class Form>
struct Psd2QcTypeOf {
  ListOf<Form, RoleOfPspOf<Form>> rolesOfPSP{};
  TextOf<Form> nCAName{};
  TextOf<Form> nCAId{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("rolesOfPSP", self.rolesOfPSP) && visit("nCAName", self.nCAName) && visit("nCAId", self.nCAId);
  }
};
using Psd2QcType = Psd2QcTypeOf<Owned>;       ///< owns what it holds
using Psd2QcTypeView = Psd2QcTypeOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<Psd2QcTypeView>());

/// The lists among statementInfo.
/// @{
template <class Form>
using QcPdsOf = ListOf<Form, PdsLocationOf<Form>>;
template <class Form>
using QcIdentifiersOf = ListOf<Form, ObjectIdentifierOf<Form>>;
template <class Form>
using QcCountriesOf = ListOf<Form, PrintableTextOf<Form>>;
/// @}

// QCStatement ::= SEQUENCE {                                     RFC 3739 3.2.6
//     statementId    OBJECT IDENTIFIER,
//     statementInfo  ANY DEFINED BY statementId OPTIONAL }
//
// A malformed statementInfo does not make the extension faulty.
template <class Form>
struct QcStatementOf {
  ObjectIdentifierOf<Form> statementId{};
  std::optional<AnyOf<Form>> statementInfo{};

  /// statementInfo as the type that goes with the statement: as<MonetaryValue>(statement::qcLimitValue). A fault
  /// (FaultCode_OtherKind) when it is another statement, or has none.
  template <class T>
  Result<T> as(const OidLiteral &id) const KETRA_LIFETIMEBOUND {
    if (statementId != id || !statementInfo) return Fault{Reason::OtherKind, 0, 0, nullptr};
    return read<T>(statementInfo->encoding());
  }

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("statementId", self.statementId) &&
           visitOpen(visit, "statementInfo", self.statementId, self.statementInfo,
                     Defined<SemanticsInformationOf<Form>>{statement::pkixQCSyntaxV1},
                     Defined<SemanticsInformationOf<Form>>{statement::pkixQCSyntaxV2},
                     Defined<MonetaryValueOf<Form>>{statement::qcLimitValue},
                     Defined<IntegerOf<Form>>{statement::qcRetentionPeriod}, Defined<QcPdsOf<Form>>{statement::qcPDS},
                     Defined<QcIdentifiersOf<Form>>{statement::qcType},
                     Defined<QcCountriesOf<Form>>{statement::qcCClegislation},
                     Defined<QcIdentifiersOf<Form>>{statement::qcIdentMethod},
                     Defined<QcCountriesOf<Form>>{statement::qcQSCDlegislation},
                     Defined<Psd2QcTypeOf<Form>>{statement::psd2}, Defined<TextOf<Form>>{statement::tsa});
  }
};
using QcStatement = QcStatementOf<Owned>;       ///< owns what it holds
using QcStatementView = QcStatementOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<QcStatementView>());

// QCStatements ::= SEQUENCE OF QCStatement                       RFC 3739 3.2.6
template <class Form>
struct QcStatementsOf {
  static constexpr std::string_view name = "QCStatements";
  static constexpr OidLiteral oid = "1.3.6.1.5.5.7.1.3"_oid;
  static constexpr Shape shape = Shape::Is;

  ListOf<Form, QcStatementOf<Form>> statements{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("statements", self.statements);
  }
};
using QcStatements = QcStatementsOf<Owned>;       ///< owns what it holds
using QcStatementsView = QcStatementsOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
