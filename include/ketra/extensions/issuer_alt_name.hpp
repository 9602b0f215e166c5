/// @file
/// IssuerAltName: further names of the issuer.
#pragma once

#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/types/general_name.hpp"

namespace ketra {

// IssuerAltName ::= GeneralNames                                 RFC 5280 4.2.1.7
// GeneralNames ::= SEQUENCE SIZE (1..MAX) OF GeneralName
template <class Form>
struct IssuerAltNameOf {
  static constexpr std::string_view name = "IssuerAltName";
  static constexpr OidLiteral oid = "2.5.29.18"_oid;
  static constexpr Shape shape = Shape::Is;

  ListOf<Form, GeneralNameOf<Form>> names{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("names", self.names, nonEmptySet);
  }
};
using IssuerAltName = IssuerAltNameOf<Owned>;       ///< owns what it holds
using IssuerAltNameView = IssuerAltNameOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
