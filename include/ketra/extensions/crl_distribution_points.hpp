/// @file
/// CRLDistributionPoints: where the CRLs that cover a certificate are.
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/types/distribution_point.hpp"

namespace ketra {

// DistributionPoint ::= SEQUENCE {                               RFC 5280 4.2.1.13
//     distributionPoint  [0] DistributionPointName OPTIONAL,
//     reasons            [1] ReasonFlags OPTIONAL,
//     cRLIssuer          [2] GeneralNames OPTIONAL }
template <class Form>
struct DistributionPointOf {
  std::optional<DistributionPointNameOf<Form>> distributionPoint{};
  std::optional<ReasonFlagsOf<Form>> reasons{};
  std::optional<ListOf<Form, GeneralNameOf<Form>>> cRLIssuer{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("distributionPoint", self.distributionPoint, explicitly(0)) &&
           visit("reasons", self.reasons, context(1)) &&
           visit("cRLIssuer", self.cRLIssuer, context(2) | nonEmptyWhenSet);
  }
};
using DistributionPoint = DistributionPointOf<Owned>;       ///< owns what it holds
using DistributionPointView = DistributionPointOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<DistributionPointView>());

// CRLDistributionPoints ::= SEQUENCE SIZE (1..MAX) OF DistributionPoint         RFC 5280 4.2.1.13
template <class Form>
struct CrlDistributionPointsOf {
  static constexpr std::string_view name = "CRLDistributionPoints";
  static constexpr OidLiteral oid = "2.5.29.31"_oid;
  static constexpr Shape shape = Shape::Is;

  ListOf<Form, DistributionPointOf<Form>> points{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("points", self.points, nonEmpty);
  }
};
using CrlDistributionPoints = CrlDistributionPointsOf<Owned>;       ///< owns what it holds
using CrlDistributionPointsView = CrlDistributionPointsOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
