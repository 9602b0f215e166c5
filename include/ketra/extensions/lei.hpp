/// @file
/// Legal entity identifiers (ISO 17442-2).
#pragma once

#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/scalar.hpp"
#include "ketra/types/text.hpp"

namespace ketra {

// LEI ::= PrintableString (SIZE (20))
template <class Form>
struct LeiOf : Scalar<PrintableStringOf<Form>> {
  static constexpr std::string_view name = "LEI";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.52266.1"_oid;
};
using Lei = LeiOf<Owned>;       ///< owns what it holds
using LeiView = LeiOf<Viewed>;  ///< points to what it was read from

// Role ::= PrintableString (SIZE (1..100))
template <class Form>
struct LeiRoleOf : Scalar<PrintableStringOf<Form>> {
  static constexpr std::string_view name = "LEIRole";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.52266.2"_oid;
};
using LeiRole = LeiRoleOf<Owned>;       ///< owns what it holds
using LeiRoleView = LeiRoleOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
