/// @file
/// BasicConstraints, KeyUsage, SubjectKeyId.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "ketra/face/base.hpp"

namespace ketra {
inline namespace face {

/// Whether the subject is a CA, and how long paths through it may be (RFC 5280 4.2.1.9).
struct BasicConstraints {
  std::optional<bool> cA;  ///< the subject is a certification authority; a FALSE that is present is kept
  std::optional<int32_t> pathLenConstraint;  ///< intermediate certificates that may follow, 0 or more

  friend bool operator==(const BasicConstraints &a, const BasicConstraints &b) {
    return a.cA == b.cA && a.pathLenConstraint == b.pathLenConstraint;
  }
  friend bool operator!=(const BasicConstraints &a, const BasicConstraints &b) { return !(a == b); }
};

template <>
struct ExtensionTraits<BasicConstraints> {
  static const Objid &objid() { return X509Objid_BasicConstraints; }
  static constexpr bool kCallerSetsCritical = true;

  static int32_t set(KetraObject object, int32_t critical, const BasicConstraints &value, AsnErrorBlock *err) {
    const KetraBasicConstraints c{detail::optional(value.cA), detail::optional(value.pathLenConstraint)};
    return KetraObjectSsetBasicConstraints(object, critical, &c, err);
  }
  static int32_t get(KetraObject object, BasicConstraints &value, AsnErrorBlock *err) {
    KetraBasicConstraints c{};
    const int32_t result = KetraObjectSgetBasicConstraints(object, &c, err);
    if (result == 0) value = {detail::optional(c.cA), detail::optional(c.pathLenConstraint)};
    return result;
  }
};

/// What the key may be used for (RFC 5280 4.2.1.3). X.509 calls nonRepudiation contentCommitment.
struct KeyUsage {
  /// The bit of this name.
  /// @{
  bool digitalSignature = false;
  bool nonRepudiation = false;
  bool keyEncipherment = false;
  bool dataEncipherment = false;
  bool keyAgreement = false;
  bool keyCertSign = false;
  bool cRLSign = false;
  bool encipherOnly = false;
  bool decipherOnly = false;
  /// @}

  /// One bit by its name.
  struct Bit {
    const char *name;        ///< as the standard spells it
    bool KeyUsage::*member;  ///< where it is
  };
  /// All bits, in the order of the standard.
  static const std::vector<Bit> &bits() {
    static const std::vector<Bit> kBits = {
        {"digitalSignature", &KeyUsage::digitalSignature},
        {"nonRepudiation", &KeyUsage::nonRepudiation},
        {"keyEncipherment", &KeyUsage::keyEncipherment},
        {"dataEncipherment", &KeyUsage::dataEncipherment},
        {"keyAgreement", &KeyUsage::keyAgreement},
        {"keyCertSign", &KeyUsage::keyCertSign},
        {"cRLSign", &KeyUsage::cRLSign},
        {"encipherOnly", &KeyUsage::encipherOnly},
        {"decipherOnly", &KeyUsage::decipherOnly},
    };
    return kBits;
  }

  friend bool operator==(const KeyUsage &a, const KeyUsage &b) {
    const std::vector<Bit> &all = bits();
    return std::all_of(all.begin(), all.end(), [&](const Bit &bit) { return a.*bit.member == b.*bit.member; });
  }
  friend bool operator!=(const KeyUsage &a, const KeyUsage &b) { return !(a == b); }
};

template <>
struct ExtensionTraits<KeyUsage> {
  static const Objid &objid() { return X509Objid_KeyUsage; }
  static constexpr bool kCallerSetsCritical = true;

  static int32_t set(KetraObject object, int32_t critical, const KeyUsage &value, AsnErrorBlock *err) {
    uint8_t octets[2] = {};
    std::size_t n = 0;
    for (const KeyUsage::Bit &bit : KeyUsage::bits()) {
      if (value.*bit.member) octets[n / 8] = static_cast<uint8_t>(octets[n / 8] | 0x80u >> n % 8);
      ++n;
    }
    const AsnBit c{octets, static_cast<uint32_t>(n)};
    return KetraObjectSsetKeyUsage(object, critical, &c, err);
  }
  static int32_t get(KetraObject object, KeyUsage &value, AsnErrorBlock *err) {
    AsnBit c{};
    if (const int32_t result = KetraObjectSgetKeyUsage(object, &c, err); result != 0) return result;
    const detail::PoolMemory memory(object, c.octets);
    unsigned bits = static_cast<unsigned>(c.octets[0]) << 8 | c.octets[1];
    for (const KeyUsage::Bit &bit : KeyUsage::bits()) {
      value.*bit.member = (bits & 0x8000u) != 0;
      bits <<= 1;
    }
    return 0;
  }
};

/// Identifies the key of the subject (RFC 5280 4.2.1.2). Always non-critical.
struct SubjectKeyId {
  Octets keyIdentifier;  ///< the identifier

  friend bool operator==(const SubjectKeyId &a, const SubjectKeyId &b) { return a.keyIdentifier == b.keyIdentifier; }
  friend bool operator!=(const SubjectKeyId &a, const SubjectKeyId &b) { return !(a == b); }
};

template <>
struct ExtensionTraits<SubjectKeyId> {
  static const Objid &objid() { return X509Objid_SubjectKeyId; }
  static constexpr bool kCallerSetsCritical = false;

  static int32_t set(KetraObject object, const SubjectKeyId &value, AsnErrorBlock *err) {
    const AsnOct c = detail::octets(value.keyIdentifier);
    return KetraObjectSsetSubjectKeyId(object, &c, err);
  }
  static int32_t get(KetraObject object, SubjectKeyId &value, AsnErrorBlock *err) {
    AsnOct c{};
    if (const int32_t result = KetraObjectSgetSubjectKeyId(object, &c, err); result != 0) return result;
    const detail::PoolMemory memory(object, c.octets);
    value.keyIdentifier.assign(c.octets, c.octets + c.length);
    return 0;
  }
};

}  // namespace face
}  // namespace ketra
