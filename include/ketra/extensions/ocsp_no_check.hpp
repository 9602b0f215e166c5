/// @file
/// OCSPNoCheck: the certificate of an OCSP responder need not be checked for revocation.
#pragma once

#include "ketra/types/scalar.hpp"

namespace ketra {

// OCSPNoCheck ::= NULL                                           RFC 6960 4.2.2.2.1
template <class Form>
struct OcspNoCheckOf : Scalar<Null> {
  static constexpr std::string_view name = "OCSPNoCheck";
  static constexpr OidLiteral oid = "1.3.6.1.5.5.7.48.1.5"_oid;
};
using OcspNoCheck = OcspNoCheckOf<Owned>;       ///< owns what it holds
using OcspNoCheckView = OcspNoCheckOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
