/// @file
/// SubjectAltName: the names that the certificate binds to the key.
#pragma once

#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/types/general_name.hpp"

namespace ketra {

// SubjectAltName ::= GeneralNames                                RFC 5280 4.2.1.6
// GeneralNames ::= SEQUENCE SIZE (1..MAX) OF GeneralName
template <class Form>
struct SubjectAltNameOf {
  static constexpr std::string_view name = "SubjectAltName";
  static constexpr OidLiteral oid = "2.5.29.17"_oid;
  static constexpr Shape shape = Shape::Is;

  ListOf<Form, GeneralNameOf<Form>> names{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("names", self.names, nonEmptySet);
  }
};
using SubjectAltName = SubjectAltNameOf<Owned>;       ///< owns what it holds
using SubjectAltNameView = SubjectAltNameOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
