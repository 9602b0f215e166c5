/// @file
/// Logotype: pictures of the issuer, the subject or a community.
#pragma once

#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/primitive.hpp"

namespace ketra {

// LogotypeExtn ::= SEQUENCE { ... }                              RFC 9399 4.1; it stays as it is encoded
template <class Form>
struct LogotypeOf {
  static constexpr std::string_view name = "Logotype";
  static constexpr OidLiteral oid = "1.3.6.1.5.5.7.1.12"_oid;
  static constexpr Shape shape = Shape::Is;

  AnyOf<Form> logotypes{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("logotypes", self.logotypes);
  }
};
using Logotype = LogotypeOf<Owned>;       ///< owns what it holds
using LogotypeView = LogotypeOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
