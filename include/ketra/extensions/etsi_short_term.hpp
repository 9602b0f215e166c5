/// @file
/// ETSIValidityAssuredShortTerm: the certificate is valid so briefly that it will not be revoked.
#pragma once

#include "ketra/types/scalar.hpp"

namespace ketra {

// ETSIValidityAssuredShortTerm ::= NULL                          ETSI EN 319 412-1 5.2
template <class Form>
struct EtsiShortTermOf : Scalar<Null> {
  static constexpr std::string_view name = "ETSIValidityAssuredShortTerm";
  static constexpr OidLiteral oid = "0.4.0.194121.2.1"_oid;
};
using EtsiShortTerm = EtsiShortTermOf<Owned>;       ///< owns what it holds
using EtsiShortTermView = EtsiShortTermOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
