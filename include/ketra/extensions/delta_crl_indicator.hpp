/// @file
/// DeltaCrlIndicator: the CRL that a delta CRL builds on.
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/integer.hpp"

namespace ketra {

// BaseCRLNumber ::= INTEGER (0..MAX)                             RFC 5280 5.2.4
template <class Form>
struct DeltaCrlIndicatorOf {
  static constexpr std::string_view name = "DeltaCRLIndicator";
  static constexpr OidLiteral oid = "2.5.29.27"_oid;
  static constexpr std::optional<bool> critical = true;
  static constexpr Shape shape = Shape::Is;

  IntegerOf<Form> baseCrlNumber{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("baseCRLNumber", self.baseCrlNumber, natural);
  }
};
using DeltaCrlIndicator = DeltaCrlIndicatorOf<Owned>;       ///< owns what it holds
using DeltaCrlIndicatorView = DeltaCrlIndicatorOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
