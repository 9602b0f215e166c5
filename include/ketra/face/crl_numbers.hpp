/// @file
/// CRLNumber and DeltaCRLIndicator (RFC 5280 5.2.3, 5.2.4).
#pragma once

#include <cstdint>
#include <limits>
#include <optional>

#include "ketra/face/asn1.hpp"
#include "ketra/face/base.hpp"
#include "ketra/face/integer.hpp"

namespace ketra {
inline namespace face {

/// The number of a CRL, of any size, 0 or more. Always non-critical. The C operations carry 31 bits; larger numbers, of
/// which RFC 5280 expects up to 20 octets, are read from and written to the stored octets.
struct CrlNumber {
  Integer number;  ///< 0 or more

  friend bool operator==(const CrlNumber &a, const CrlNumber &b) { return a.number == b.number; }
  friend bool operator!=(const CrlNumber &a, const CrlNumber &b) { return !(a == b); }
};
/// The number of the base CRL, as CrlNumber. Always critical.
struct DeltaCrlIndicator {
  Integer baseCrlNumber;  ///< 0 or more

  friend bool operator==(const DeltaCrlIndicator &a, const DeltaCrlIndicator &b) {
    return a.baseCrlNumber == b.baseCrlNumber;
  }
  friend bool operator!=(const DeltaCrlIndicator &a, const DeltaCrlIndicator &b) { return !(a == b); }
};

namespace detail {

// `operation(&small, err)` is the C operation.
template <class Operation>
int32_t setNumber(KetraObject object, const Objid &objid, int32_t critical, const Integer &number, AsnErrorBlock *err,
                  Operation &&operation) {
  constexpr int64_t kMost = std::numeric_limits<int32_t>::max();
  const std::optional<int64_t> exact = number.number();
  if (number.isNegative() || (exact && *exact <= kMost)) {
    const int32_t small = number.isNegative() ? -1 : static_cast<int32_t>(*exact);
    return operation(&small, err);
  }
  constexpr uint8_t kInteger = 0x02;
  const Octets value = encoding(kInteger, number.content());
  const KetraExtension extension{objid, critical, critical, encoded(value)};
  return KetraObjectSetExt(object, &extension, err);
}

template <class Operation>
int32_t getNumber(KetraObject object, const Objid &objid, uint32_t negative, Integer &number, AsnErrorBlock *err,
                  Operation &&operation) {
  int32_t small = 0;
  const int32_t result = operation(&small, err);
  if (result == 0) number = small;
  if (result == 0 || err->code != AsnError_Range) return result;
  AsnErrorReset(err);
  const WorkValue value(asn1::kCrlNumber, storedValue(object, objid));
  number = Integer::ofContent(value.octets(value.get(), "/"));
  if (number.isNegative()) fail(negative, "ketra::ExtensionTraits", "the stored CRL number is negative");
  return 0;
}

}  // namespace detail

template <>
struct ExtensionTraits<CrlNumber> {
  static const Objid &objid() { return X509Objid_CRLNumber; }
  static constexpr bool kCallerSetsCritical = false;

  static int32_t set(KetraObject object, const CrlNumber &value, AsnErrorBlock *err) {
    return detail::setNumber(object, objid(), 0, value.number, err, [&](const int32_t *small, AsnErrorBlock *e) {
      return KetraObjectSsetCRLNumber(object, small, e);
    });
  }
  static int32_t get(KetraObject object, CrlNumber &value, AsnErrorBlock *err) {
    return detail::getNumber(
        object, objid(), KetraError_GetCRLNumber, value.number, err,
        [&](int32_t *small, AsnErrorBlock *e) { return KetraObjectSgetCRLNumber(object, small, e); });
  }
};

template <>
struct ExtensionTraits<DeltaCrlIndicator> {
  static const Objid &objid() { return X509Objid_DeltaCRLIndicator; }
  static constexpr bool kCallerSetsCritical = false;

  static int32_t set(KetraObject object, const DeltaCrlIndicator &value, AsnErrorBlock *err) {
    return detail::setNumber(object, objid(), 1, value.baseCrlNumber, err, [&](const int32_t *small, AsnErrorBlock *e) {
      return KetraObjectSsetDeltaCRLIndicator(object, small, e);
    });
  }
  static int32_t get(KetraObject object, DeltaCrlIndicator &value, AsnErrorBlock *err) {
    return detail::getNumber(
        object, objid(), KetraError_GetDeltaCRLIndicator, value.baseCrlNumber, err,
        [&](int32_t *small, AsnErrorBlock *e) { return KetraObjectSgetDeltaCRLIndicator(object, small, e); });
  }
};

}  // namespace face
}  // namespace ketra
