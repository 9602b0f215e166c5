/// @file
/// What stands in entries of CRLs: ReasonCode (RFC 5280 5.3.1), HoldInstruction (RFC 3280 5.3.2), InvalidityDate (RFC
/// 5280 5.3.2).
#pragma once

#include <cstdint>

#include "ketra/face/base.hpp"
#include "ketra/face/time.hpp"

namespace ketra {
inline namespace face {

/// Why an entry is on the CRL. Always non-critical.
enum class ReasonCode : int32_t {
  /// The reason of this name.
  /// @{
  unspecified = 0,
  keyCompromise = 1,
  cACompromise = 2,
  affiliationChanged = 3,
  superseded = 4,
  cessationOfOperation = 5,
  certificateHold = 6,
  removeFromCRL = 8,
  /// @}
};

/// The name of the reason; null when there is no such reason.
inline const char *nameOf(ReasonCode reason) {
  switch (reason) {
    case ReasonCode::unspecified: return "unspecified";
    case ReasonCode::keyCompromise: return "keyCompromise";
    case ReasonCode::cACompromise: return "cACompromise";
    case ReasonCode::affiliationChanged: return "affiliationChanged";
    case ReasonCode::superseded: return "superseded";
    case ReasonCode::cessationOfOperation: return "cessationOfOperation";
    case ReasonCode::certificateHold: return "certificateHold";
    case ReasonCode::removeFromCRL: return "removeFromCRL";
  }
  return nullptr;
}

template <>
struct ExtensionTraits<ReasonCode> {
  static const Objid &objid() { return X509Objid_ReasonCode; }
  static constexpr bool kCallerSetsCritical = false;

  static int32_t set(KetraObject object, const ReasonCode &value, AsnErrorBlock *err) {
    const auto c = static_cast<int32_t>(value);
    return KetraObjectSsetReasonCode(object, &c, err);
  }
  static int32_t get(KetraObject object, ReasonCode &value, AsnErrorBlock *err) {
    int32_t c = 0;
    const int32_t result = KetraObjectSgetReasonCode(object, &c, err);
    if (result == 0) value = static_cast<ReasonCode>(c);
    return result;
  }
};

/// The instructions of RFC 3280 5.3.2.
namespace instruction {
/// A hold instruction.
/// @{
inline constexpr detail::KnownIdentifier none{1, 2, 840, 10040, 2, 1};
inline constexpr detail::KnownIdentifier callIssuer{1, 2, 840, 10040, 2, 2};
inline constexpr detail::KnownIdentifier reject{1, 2, 840, 10040, 2, 3};
/// @}
}  // namespace instruction

/// What to do with a certificate on hold. Always non-critical.
struct HoldInstruction {
  ObjectIdentifier instruction;  ///< what to do

  friend bool operator==(const HoldInstruction &a, const HoldInstruction &b) { return a.instruction == b.instruction; }
  friend bool operator!=(const HoldInstruction &a, const HoldInstruction &b) { return !(a == b); }
};

template <>
struct ExtensionTraits<HoldInstruction> {
  static const Objid &objid() { return X509Objid_InstructionCode; }
  static constexpr bool kCallerSetsCritical = false;

  static int32_t set(KetraObject object, const HoldInstruction &value, AsnErrorBlock *err) {
    const Objid c = value.instruction.objid();
    return KetraObjectSsetInstructionCode(object, &c, err);
  }
  static int32_t get(KetraObject object, HoldInstruction &value, AsnErrorBlock *err) {
    Objid c{};
    const int32_t result = KetraObjectSgetInstructionCode(object, &c, err);
    if (result == 0) value.instruction = ObjectIdentifier(c);
    return result;
  }
};

/// When the key is suspected to have been compromised. Always non-critical.
struct InvalidityDate {
  Time date;  ///< the date

  friend bool operator==(const InvalidityDate &a, const InvalidityDate &b) { return a.date == b.date; }
  friend bool operator!=(const InvalidityDate &a, const InvalidityDate &b) { return !(a == b); }
};

template <>
struct ExtensionTraits<InvalidityDate> {
  static const Objid &objid() { return X509Objid_InvalidityDate; }
  static constexpr bool kCallerSetsCritical = false;

  static int32_t set(KetraObject object, const InvalidityDate &value, AsnErrorBlock *err) {
    const Gtime c = detail::gtime(value.date);
    return KetraObjectSsetInvalidityDate(object, &c, err);
  }
  static int32_t get(KetraObject object, InvalidityDate &value, AsnErrorBlock *err) {
    Gtime c{};
    const int32_t result = KetraObjectSgetInvalidityDate(object, &c, err);
    if (result == 0) value.date = detail::time(c);
    return result;
  }
};

}  // namespace face
}  // namespace ketra
