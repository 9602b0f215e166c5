/// @file
/// PrivateKeyUsagePeriod: when the private key may sign.
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/time.hpp"

namespace ketra {

// PrivateKeyUsagePeriod ::= SEQUENCE {                           RFC 3280 4.2.1.4
//     notBefore  [0] GeneralizedTime OPTIONAL,
//     notAfter   [1] GeneralizedTime OPTIONAL }
template <class Form>
struct PrivateKeyUsagePeriodOf {
  static constexpr std::string_view name = "PrivateKeyUsagePeriod";
  static constexpr OidLiteral oid = "2.5.29.16"_oid;
  static constexpr std::optional<bool> critical = false;

  std::optional<Time> notBefore{};
  std::optional<Time> notAfter{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("notBefore", self.notBefore, context(0)) && visit("notAfter", self.notAfter, context(1));
  }
};
using PrivateKeyUsagePeriod = PrivateKeyUsagePeriodOf<Owned>;       ///< owns what it holds
using PrivateKeyUsagePeriodView = PrivateKeyUsagePeriodOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<PrivateKeyUsagePeriodView>());

}  // namespace ketra
