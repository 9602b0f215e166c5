/// @file
/// MicrosoftCRLSelfCDP: where the CRL itself is.
#pragma once

#include "ketra/extensions/crl_distribution_points.hpp"

namespace ketra {

// CRLSelfCDP ::= CRLDistributionPoints
template <class Form>
struct MicrosoftCrlSelfCdpOf : CrlDistributionPointsOf<Form> {
  static constexpr std::string_view name = "MicrosoftCRLSelfCDP";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.311.21.14"_oid;
};
using MicrosoftCrlSelfCdp = MicrosoftCrlSelfCdpOf<Owned>;       ///< owns what it holds
using MicrosoftCrlSelfCdpView = MicrosoftCrlSelfCdpOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
