/// @file
/// ExpiredCertsOnCRL: which certificates stay on a CRL after they have expired.
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/time.hpp"

namespace ketra {

/// GeneralizedTime. A UTCTime can be read, too, and stays one.
struct GeneralTime : EitherTime {
  GeneralTime() = default;
  GeneralTime(Time of) : EitherTime(of) { isUtcTime = false; }  ///< a GeneralizedTime
};
template <>
struct Leaf<GeneralTime> : Leaf<EitherTime> {};

// ExpiredCertsOnCRL ::= GeneralizedTime                          X.509 9.5.2.8
//
// UTCTime occurs in practice.
template <class Form>
struct ExpiredCertsOnCrlOf {
  static constexpr std::string_view name = "ExpiredCertsOnCRL";
  static constexpr OidLiteral oid = "2.5.29.60"_oid;
  static constexpr std::optional<bool> critical = false;
  static constexpr Shape shape = Shape::Is;

  GeneralTime since{};  ///< those that expired then or later stay

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("since", self.since);
  }
};
using ExpiredCertsOnCrl = ExpiredCertsOnCrlOf<Owned>;       ///< owns what it holds
using ExpiredCertsOnCrlView = ExpiredCertsOnCrlOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
