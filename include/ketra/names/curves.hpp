/// @file
/// Named curves of elliptic keys. No other header includes this one.
#pragma once

#include <cstddef>
#include <string_view>

#include "ketra/asn1/oid.hpp"

namespace ketra {

/// A curve: its usual name, and the bits of its field.
struct Curve {
  OidLiteral oid;         ///< as namedCurve says it (RFC 5480 2.1.1)
  std::string_view name;  ///< of SEC 2 or NIST, RFC 5639, GB/T 32918
  std::size_t bits;       ///< size of the field
};

/// Those in use in certificates.
inline constexpr Curve kCurves[] = {
    {"1.2.840.10045.3.1.7"_oid, "P-256", 256},
    {"1.3.132.0.34"_oid, "P-384", 384},
    {"1.3.132.0.35"_oid, "P-521", 521},
    {"1.3.132.0.33"_oid, "P-224", 224},
    {"1.2.840.10045.3.1.1"_oid, "P-192", 192},
    {"1.3.132.0.10"_oid, "secp256k1", 256},
    {"1.3.132.0.32"_oid, "secp224k1", 224},
    {"1.3.132.0.31"_oid, "secp192k1", 192},
    {"1.3.132.0.1"_oid, "sect163k1", 163},
    {"1.3.132.0.15"_oid, "sect163r2", 163},
    {"1.3.132.0.26"_oid, "sect233k1", 233},
    {"1.3.132.0.27"_oid, "sect233r1", 233},
    {"1.3.132.0.16"_oid, "sect283k1", 283},
    {"1.3.132.0.17"_oid, "sect283r1", 283},
    {"1.3.132.0.36"_oid, "sect409k1", 409},
    {"1.3.132.0.37"_oid, "sect409r1", 409},
    {"1.3.132.0.38"_oid, "sect571k1", 571},
    {"1.3.132.0.39"_oid, "sect571r1", 571},
    {"1.3.36.3.3.2.8.1.1.3"_oid, "brainpoolP192r1", 192},
    {"1.3.36.3.3.2.8.1.1.5"_oid, "brainpoolP224r1", 224},
    {"1.3.36.3.3.2.8.1.1.7"_oid, "brainpoolP256r1", 256},
    {"1.3.36.3.3.2.8.1.1.9"_oid, "brainpoolP320r1", 320},
    {"1.3.36.3.3.2.8.1.1.11"_oid, "brainpoolP384r1", 384},
    {"1.3.36.3.3.2.8.1.1.13"_oid, "brainpoolP512r1", 512},
    {"1.2.156.10197.1.301"_oid, "SM2", 256},
};

/// The curve with an identifier, or null.
template <class Oid>
const Curve *findCurve(const Oid &oid) {
  for (const Curve &curve : kCurves) {
    if (curve.oid == oid) return &curve;
  }
  return nullptr;
}

}  // namespace ketra
