/// @file
/// HoldInstructionCode: what to do with a certificate on hold.
#pragma once

#include <optional>
#include <string_view>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"

namespace ketra {

// HoldInstructionCode ::= OBJECT IDENTIFIER                       RFC 3280 5.3.2
template <class Form>
struct HoldInstructionOf {
  static constexpr std::string_view name = "HoldInstructionCode";
  static constexpr OidLiteral oid = "2.5.29.23"_oid;
  static constexpr std::optional<bool> critical = false;
  static constexpr Shape shape = Shape::Is;

  ObjectIdentifierOf<Form> instruction{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("instruction", self.instruction);
  }
};
using HoldInstruction = HoldInstructionOf<Owned>;       ///< owns what it holds
using HoldInstructionView = HoldInstructionOf<Viewed>;  ///< points to what it was read from

/// The instructions of RFC 3280 5.3.2.
namespace instruction {
/// @{
inline constexpr OidLiteral none = "1.2.840.10040.2.1"_oid;
inline constexpr OidLiteral callIssuer = "1.2.840.10040.2.2"_oid;
inline constexpr OidLiteral reject = "1.2.840.10040.2.3"_oid;
/// @}
}  // namespace instruction

}  // namespace ketra
