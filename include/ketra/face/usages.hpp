/// @file
/// ExtKeyUsage (RFC 5280 4.2.1.12) and PrivateKeyUsagePeriod (RFC 3280 4.2.1.4).
/// @code
/// extensions.set(ketra::ExtKeyUsage{{ketra::purpose::serverAuth}}, /*critical=*/false);
/// @endcode
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "ketra/face/asn1.hpp"
#include "ketra/face/base.hpp"
#include "ketra/face/chain.hpp"
#include "ketra/face/encodings.hpp"
#include "ketra/face/time.hpp"

namespace ketra {
inline namespace face {

/// The usual key purposes (RFC 5280 4.2.1.12, RFC 4945, RFC 5924, RFC 6187, RFC 6402, RFC 7299, RFC 9336).
namespace purpose {
/// A key purpose.
/// @{
inline constexpr detail::KnownIdentifier anyExtendedKeyUsage{2, 5, 29, 37, 0};
inline constexpr detail::KnownIdentifier serverAuth{1, 3, 6, 1, 5, 5, 7, 3, 1};
inline constexpr detail::KnownIdentifier clientAuth{1, 3, 6, 1, 5, 5, 7, 3, 2};
inline constexpr detail::KnownIdentifier codeSigning{1, 3, 6, 1, 5, 5, 7, 3, 3};
inline constexpr detail::KnownIdentifier emailProtection{1, 3, 6, 1, 5, 5, 7, 3, 4};
inline constexpr detail::KnownIdentifier ipsecEndSystem{1, 3, 6, 1, 5, 5, 7, 3, 5};
inline constexpr detail::KnownIdentifier ipsecTunnel{1, 3, 6, 1, 5, 5, 7, 3, 6};
inline constexpr detail::KnownIdentifier ipsecUser{1, 3, 6, 1, 5, 5, 7, 3, 7};
inline constexpr detail::KnownIdentifier timeStamping{1, 3, 6, 1, 5, 5, 7, 3, 8};
inline constexpr detail::KnownIdentifier ocspSigning{1, 3, 6, 1, 5, 5, 7, 3, 9};
inline constexpr detail::KnownIdentifier ipsecIKE{1, 3, 6, 1, 5, 5, 7, 3, 17};
inline constexpr detail::KnownIdentifier sshClient{1, 3, 6, 1, 5, 5, 7, 3, 21};
inline constexpr detail::KnownIdentifier sshServer{1, 3, 6, 1, 5, 5, 7, 3, 22};
inline constexpr detail::KnownIdentifier cmcCA{1, 3, 6, 1, 5, 5, 7, 3, 27};
inline constexpr detail::KnownIdentifier cmcRA{1, 3, 6, 1, 5, 5, 7, 3, 28};
inline constexpr detail::KnownIdentifier documentSigning{1, 3, 6, 1, 5, 5, 7, 3, 36};
/// @}
}  // namespace purpose

/// What the key is for (RFC 5280 4.2.1.12).
struct ExtKeyUsage {
  std::vector<ObjectIdentifier> purposes;  ///< one or more, to be set

  /// Whether the purpose is in the list; anyExtendedKeyUsage counts for itself only.
  bool has(const ObjectIdentifier &purpose) const {
    return std::find(purposes.begin(), purposes.end(), purpose) != purposes.end();
  }

  friend bool operator==(const ExtKeyUsage &a, const ExtKeyUsage &b) { return a.purposes == b.purposes; }
  friend bool operator!=(const ExtKeyUsage &a, const ExtKeyUsage &b) { return !(a == b); }
};

namespace detail {
using ReadPurposes = ReadChain<KetraKeyPurposeId, &KetraKeyPurposeId::keyPurposeId>;
}  // namespace detail

template <>
struct ExtensionTraits<ExtKeyUsage> {
  static const Objid &objid() { return X509Objid_ExtKeyUsage; }
  static constexpr bool kCallerSetsCritical = true;

  static int32_t set(KetraObject object, int32_t critical, const ExtKeyUsage &value, AsnErrorBlock *err) {
    detail::Nodes<KetraKeyPurposeId> chain(value.purposes.size());
    for (std::size_t i = 0; i < value.purposes.size(); ++i) chain[i].keyPurposeId = value.purposes[i].objid();
    return KetraObjectSsetExtKeyUsage(object, critical, chain.head(), err);
  }
  static int32_t get(KetraObject object, ExtKeyUsage &value, AsnErrorBlock *err) {
    detail::ReadPurposes chain(detail::countOf(detail::contentOf(detail::storedValue(object, objid()))), object);
    if (const int32_t result = KetraObjectSgetExtKeyUsage(object, chain.head(), err); result != 0) return result;
    value.purposes.reserve(chain.size());
    for (const KetraKeyPurposeId &node : chain) value.purposes.emplace_back(node.keyPurposeId);
    return 0;
  }
};

/// When the private key may sign (RFC 3280 4.2.1.4). Always non-critical. The two times are not compared.
struct PrivateKeyUsagePeriod {
  std::optional<Time> notBefore;  ///< from then on
  std::optional<Time> notAfter;   ///< until then

  friend bool operator==(const PrivateKeyUsagePeriod &a, const PrivateKeyUsagePeriod &b) {
    return a.notBefore == b.notBefore && a.notAfter == b.notAfter;
  }
  friend bool operator!=(const PrivateKeyUsagePeriod &a, const PrivateKeyUsagePeriod &b) { return !(a == b); }
};

template <>
struct ExtensionTraits<PrivateKeyUsagePeriod> {
  static const Objid &objid() { return X509Objid_PrivateKeyUsagePeriod; }
  static constexpr bool kCallerSetsCritical = false;

  static int32_t set(KetraObject object, const PrivateKeyUsagePeriod &value, AsnErrorBlock *err) {
    const KetraPrivateKeyUsagePeriod c{detail::optional(value.notBefore), detail::optional(value.notAfter)};
    return KetraObjectSsetPrivateKeyUsagePeriod(object, &c, err);
  }
  static int32_t get(KetraObject object, PrivateKeyUsagePeriod &value, AsnErrorBlock *err) {
    KetraPrivateKeyUsagePeriod c{};
    const int32_t result = KetraObjectSgetPrivateKeyUsagePeriod(object, &c, err);
    if (result == 0) value = {detail::optional(c.notBefore), detail::optional(c.notAfter)};
    return result;
  }
};

}  // namespace face
}  // namespace ketra
