/// @file
/// PrecertificatePoison: keeps a precertificate from being used.
#pragma once

#include "ketra/types/scalar.hpp"

namespace ketra {

// PrecertificatePoison ::= NULL                                  RFC 6962 3.1
template <class Form>
struct PrecertPoisonOf : Scalar<Null> {
  static constexpr std::string_view name = "PrecertificatePoison";
  static constexpr OidLiteral oid = "1.3.6.1.4.1.11129.2.4.3"_oid;
  static constexpr std::optional<bool> critical = true;
};
using PrecertPoison = PrecertPoisonOf<Owned>;       ///< owns what it holds
using PrecertPoisonView = PrecertPoisonOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
