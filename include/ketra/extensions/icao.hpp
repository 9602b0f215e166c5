/// @file
/// ICAO's extensions for passports.
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/integer.hpp"
#include "ketra/types/scalar.hpp"
#include "ketra/types/text.hpp"

namespace ketra {

// nameChange ::= NULL                                            ICAO Doc 9303-12 7.1.1.5
template <class Form>
struct IcaoNameChangeOf : Scalar<Null> {
  static constexpr std::string_view name = "ICAONameChange";
  static constexpr OidLiteral oid = "2.23.136.1.1.6.1"_oid;
};
using IcaoNameChange = IcaoNameChangeOf<Owned>;       ///< owns what it holds
using IcaoNameChangeView = IcaoNameChangeOf<Viewed>;  ///< points to what it was read from

// DocumentTypeListSyntax ::= SEQUENCE {                          ICAO Doc 9303-12 7.1.1.6
//     version      INTEGER { v0(0) },
//     docTypeList  SET OF PrintableString (SIZE (1..2)) }
template <class Form>
struct IcaoDocumentTypeListOf {
  static constexpr std::string_view name = "ICAODocumentTypeList";
  static constexpr OidLiteral oid = "2.23.136.1.1.6.2"_oid;
  static constexpr std::optional<bool> critical = false;

  IntegerOf<Form> version{};
  ListOf<Form, PrintableStringOf<Form>> docTypeList{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("version", self.version) && visit("docTypeList", self.docTypeList, setOf);
  }
};
using IcaoDocumentTypeList = IcaoDocumentTypeListOf<Owned>;       ///< owns what it holds
using IcaoDocumentTypeListView = IcaoDocumentTypeListOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<IcaoDocumentTypeListView>());

}  // namespace ketra
