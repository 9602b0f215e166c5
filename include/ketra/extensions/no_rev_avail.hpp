/// @file
/// NoRevAvail: nobody says whether the certificate is revoked.
#pragma once

#include "ketra/types/scalar.hpp"

namespace ketra {

// NoRevAvail ::= NULL                                            RFC 9608 2
template <class Form>
struct NoRevAvailOf : Scalar<Null> {
  static constexpr std::string_view name = "NoRevAvail";
  static constexpr OidLiteral oid = "2.5.29.56"_oid;
  static constexpr std::optional<bool> critical = false;
};
using NoRevAvail = NoRevAvailOf<Owned>;       ///< owns what it holds
using NoRevAvailView = NoRevAvailOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
