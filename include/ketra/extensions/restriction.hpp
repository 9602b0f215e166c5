/// @file
/// Restriction: how the use of a certificate is restricted, in German certificates.
#pragma once

#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/scalar.hpp"
#include "ketra/types/text.hpp"

namespace ketra {

// RestrictionSyntax ::= DirectoryString (SIZE (1..1024))         Common PKI
template <class Form>
struct RestrictionOf : Scalar<DirectoryStringOf<Form>> {
  static constexpr std::string_view name = "Restriction";
  static constexpr OidLiteral oid = "1.3.36.8.3.8"_oid;
};
using Restriction = RestrictionOf<Owned>;       ///< owns what it holds
using RestrictionView = RestrictionOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
