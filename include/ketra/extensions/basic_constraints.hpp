/// @file
/// BasicConstraints: whether the subject is a CA, and how long paths through it may be.
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/integer.hpp"

namespace ketra {

// BasicConstraints ::= SEQUENCE {                                RFC 5280 4.2.1.9
//     cA                 BOOLEAN DEFAULT FALSE,
//     pathLenConstraint  INTEGER (0..MAX) OPTIONAL }
template <class Form>
struct BasicConstraintsOf {
  static constexpr std::string_view name = "BasicConstraints";
  static constexpr OidLiteral oid = "2.5.29.19"_oid;

  Default<bool, false> cA{};                           ///< whether the subject is a CA
  std::optional<IntegerOf<Form>> pathLenConstraint{};  ///< how many CA certificates may follow it in a path

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("cA", self.cA) && visit("pathLenConstraint", self.pathLenConstraint, natural);
  }
};
using BasicConstraints = BasicConstraintsOf<Owned>;       ///< owns what it holds
using BasicConstraintsView = BasicConstraintsOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<BasicConstraintsView>());

}  // namespace ketra
