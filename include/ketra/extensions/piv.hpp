/// @file
/// PIVInterim: whether the check of a holder of a PIV card has only begun.
#pragma once

#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/scalar.hpp"

namespace ketra {

// PIV-interim ::= BOOLEAN                                        FIPS 201-2 B.2
template <class Form>
struct PivInterimOf : Scalar<bool> {
  static constexpr std::string_view name = "PIVInterim";
  static constexpr OidLiteral oid = "2.16.840.1.101.3.6.9.1"_oid;
};
using PivInterim = PivInterimOf<Owned>;       ///< owns what it holds
using PivInterimView = PivInterimOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
