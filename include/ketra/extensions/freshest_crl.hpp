/// @file
/// FreshestCRL: where the delta CRLs are.
#pragma once

#include "ketra/extensions/crl_distribution_points.hpp"

namespace ketra {

// FreshestCRL ::= CRLDistributionPoints                          RFC 5280 4.2.1.15, 5.2.6
template <class Form>
struct FreshestCrlOf : CrlDistributionPointsOf<Form> {
  static constexpr std::string_view name = "FreshestCRL";
  static constexpr OidLiteral oid = "2.5.29.46"_oid;
  static constexpr std::optional<bool> critical = false;
};
using FreshestCrl = FreshestCrlOf<Owned>;       ///< owns what it holds
using FreshestCrlView = FreshestCrlOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
