/// @file
/// InvalidityDate: since when a key is suspected to be compromised.
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/time.hpp"

namespace ketra {

// InvalidityDate ::= GeneralizedTime                             RFC 5280 5.3.2
template <class Form>
struct InvalidityDateOf {
  static constexpr std::string_view name = "InvalidityDate";
  static constexpr OidLiteral oid = "2.5.29.24"_oid;
  static constexpr std::optional<bool> critical = false;
  static constexpr Shape shape = Shape::Is;

  Time date{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("date", self.date);
  }
};
using InvalidityDate = InvalidityDateOf<Owned>;       ///< owns what it holds
using InvalidityDateView = InvalidityDateOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
