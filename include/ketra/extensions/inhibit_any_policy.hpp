/// @file
/// InhibitAnyPolicy: from which certificate of a path on anyPolicy no longer counts.
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/integer.hpp"

namespace ketra {

// InhibitAnyPolicy ::= SkipCerts                                 RFC 5280 4.2.1.14
// SkipCerts ::= INTEGER (0..MAX)
template <class Form>
struct InhibitAnyPolicyOf {
  static constexpr std::string_view name = "InhibitAnyPolicy";
  static constexpr OidLiteral oid = "2.5.29.54"_oid;
  static constexpr Shape shape = Shape::Is;

  IntegerOf<Form> skipCerts{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("skipCerts", self.skipCerts, natural);
  }
};
using InhibitAnyPolicy = InhibitAnyPolicyOf<Owned>;       ///< owns what it holds
using InhibitAnyPolicyView = InhibitAnyPolicyOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
