/// @file
/// ReasonCode: why a CRL entry is there.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/primitive.hpp"

namespace ketra {

/// Why a certificate was revoked. There is no reason 7.
enum class CrlReason : uint8_t {
  unspecified = 0,
  keyCompromise = 1,
  cACompromise = 2,
  affiliationChanged = 3,
  superseded = 4,
  cessationOfOperation = 5,
  certificateHold = 6,
  removeFromCRL = 8,
  privilegeWithdrawn = 9,
  aACompromise = 10
};

namespace detail {
inline constexpr std::string_view kReasonNames[] = {
    "unspecified",   "keyCompromise",        "cACompromise",    "affiliationChanged",
    "superseded",    "cessationOfOperation", "certificateHold", "",
    "removeFromCRL", "privilegeWithdrawn",   "aACompromise"};
}  // namespace detail

/// The name of a reason; empty for a number that is none.
constexpr std::string_view nameOf(CrlReason reason) {
  const auto number = static_cast<std::size_t>(reason);
  return number < std::size(detail::kReasonNames) ? detail::kReasonNames[number] : std::string_view();
}

template <>
struct Leaf<CrlReason> : EnumeratedLeaf<CrlReason> {};

// CRLReason ::= ENUMERATED {                                     RFC 5280 5.3.1
//     unspecified (0), keyCompromise (1), cACompromise (2), affiliationChanged (3), superseded (4),
//     cessationOfOperation (5), certificateHold (6), removeFromCRL (8), privilegeWithdrawn (9), aACompromise (10) }
template <class Form>
struct ReasonCodeOf {
  static constexpr std::string_view name = "ReasonCode";
  static constexpr OidLiteral oid = "2.5.29.21"_oid;
  static constexpr std::optional<bool> critical = false;
  static constexpr Shape shape = Shape::Is;

  CrlReason reason{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("reason", self.reason);
  }
};
using ReasonCode = ReasonCodeOf<Owned>;       ///< owns what it holds
using ReasonCodeView = ReasonCodeOf<Viewed>;  ///< points to what it was read from

}  // namespace ketra
