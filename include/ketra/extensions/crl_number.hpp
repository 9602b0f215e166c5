/// @file
/// CrlNumber: counts the CRLs of an issuer.
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/integer.hpp"

namespace ketra {

// CRLNumber ::= INTEGER (0..MAX)                                 RFC 5280 5.2.3
template <class Form>
struct CrlNumberOf {
  static constexpr std::string_view name = "CRLNumber";
  static constexpr OidLiteral oid = "2.5.29.20"_oid;
  static constexpr std::optional<bool> critical = false;
  static constexpr Shape shape = Shape::Is;

  IntegerOf<Form> number{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("number", self.number, natural);
  }
};
using CrlNumber = CrlNumberOf<Owned>;       ///< owns what it holds
using CrlNumberView = CrlNumberOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
