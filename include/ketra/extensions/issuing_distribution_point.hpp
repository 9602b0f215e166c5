/// @file
/// IssuingDistributionPoint: what a CRL covers.
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/types/distribution_point.hpp"

namespace ketra {

// IssuingDistributionPoint ::= SEQUENCE {                        RFC 5280 5.2.5
//     distributionPoint      [0] DistributionPointName OPTIONAL,
//     onlyContainsUserCerts  [1] BOOLEAN DEFAULT FALSE,
//     onlyContainsCACerts    [2] BOOLEAN DEFAULT FALSE,
//     onlySomeReasons        [3] ReasonFlags OPTIONAL,
//     indirectCRL            [4] BOOLEAN DEFAULT FALSE }
template <class Form>
struct IssuingDistributionPointOf {
  static constexpr std::string_view name = "IssuingDistributionPoint";
  static constexpr OidLiteral oid = "2.5.29.28"_oid;
  static constexpr std::optional<bool> critical = true;

  std::optional<DistributionPointNameOf<Form>> distributionPoint{};
  Default<bool, false> onlyContainsUserCerts{};
  Default<bool, false> onlyContainsCACerts{};
  std::optional<ReasonFlagsOf<Form>> onlySomeReasons{};
  Default<bool, false> indirectCRL{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("distributionPoint", self.distributionPoint, explicitly(0)) &&
           visit("onlyContainsUserCerts", self.onlyContainsUserCerts, context(1)) &&
           visit("onlyContainsCACerts", self.onlyContainsCACerts, context(2)) &&
           visit("onlySomeReasons", self.onlySomeReasons, context(3)) &&
           visit("indirectCRL", self.indirectCRL, context(4));
  }
};
using IssuingDistributionPoint = IssuingDistributionPointOf<Owned>;       ///< owns what it holds
using IssuingDistributionPointView = IssuingDistributionPointOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<IssuingDistributionPointView>());

}  // namespace ketra
