/// @file
/// AuthorityKeyId (RFC 5280 4.2.1.1), in a strict form, which can be set, and a tolerant one, which can only be read
/// and has an UnreadableName in the place of each bad name.
#pragma once

#include <cstdint>
#include <optional>
#include <type_traits>
#include <vector>

#include "ketra/face/asn1.hpp"
#include "ketra/face/base.hpp"
#include "ketra/face/encodings.hpp"
#include "ketra/face/general_names.hpp"
#include "ketra/face/integer.hpp"

namespace ketra {
inline namespace face {

/// Which key of the issuer signed (RFC 5280 4.2.1.1); `N` is GeneralName or NameOrError. Always non-critical. A set
/// wants authorityCertIssuer and authorityCertSerialNumber together or not at all.
template <class N>
struct BasicAuthorityKeyId {
  std::optional<Octets> keyIdentifier;                    ///< the issuer's SubjectKeyId
  std::optional<std::vector<N>> authorityCertIssuer;      ///< who issued the issuer's certificate
  std::optional<SerialNumber> authorityCertSerialNumber;  ///< of that certificate

  friend bool operator==(const BasicAuthorityKeyId &a, const BasicAuthorityKeyId &b) {
    return a.keyIdentifier == b.keyIdentifier && a.authorityCertIssuer == b.authorityCertIssuer &&
           a.authorityCertSerialNumber == b.authorityCertSerialNumber;
  }
  friend bool operator!=(const BasicAuthorityKeyId &a, const BasicAuthorityKeyId &b) { return !(a == b); }
};
/// The strict form.
using AuthorityKeyId = BasicAuthorityKeyId<GeneralName>;
/// The tolerant form, which can only be read.
using TolerantAuthorityKeyId = BasicAuthorityKeyId<NameOrError>;

namespace detail {

inline X509CertSerialNumberOpt serialNumber(const std::optional<SerialNumber> &value) {
  X509CertSerialNumberOpt c{};
  if (!value) return c;
  c.option = c.value.form = 1;
  c.value.octets = value->content().data();
  c.value.length = length(value->content());
  return c;
}
inline std::optional<SerialNumber> serialNumber(const X509CertSerialNumberOpt &c) {
  if (c.option != 1) return std::nullopt;
  return c.value.form == 1 ? Integer::ofContent({c.value.octets, c.value.length}) : Integer(c.value.number);
}

inline int32_t getAuthorityKeyId(KetraObject object, AuthorityKeyId &value, AsnErrorBlock *err) {
  const uint32_t count = countOf(contentOf(contentOf(storedValue(object, X509Objid_AuthorityKeyId)), 1));
  NameNodes nodes(count);
  KetraAuthorityKeyId c{};
  c.authorityCertIssuer.genNames = nodes.chain(count);
  const int32_t result = KetraObjectSgetAuthorityKeyId(object, &c, err);
  const PoolMemory identifier(object, c.keyIdentifier.value.octets);
  if (result != 0) return result;
  if (c.keyIdentifier.option == 1) {
    value.keyIdentifier = View(c.keyIdentifier.value.octets, c.keyIdentifier.value.length).copy();
  }
  if (c.authorityCertIssuer.option == 1) copyNames(c.authorityCertIssuer.genNames, value.authorityCertIssuer.emplace());
  value.authorityCertSerialNumber = serialNumber(c.authorityCertSerialNumber);
  return 0;
}

inline void readAuthorityKeyId(View encoding, TolerantAuthorityKeyId &value) {
  const WorkValue read(asn1::kAuthorityKeyId, encoding);
  if (read.element(read.get(), "keyIdentifier") != nullptr) {
    value.keyIdentifier = readString(read, read.get(), "keyIdentifier");
  }
  if (AsnValue issuer = read.element(read.get(), "authorityCertIssuer")) {
    SharedErrors errors;
    value.authorityCertIssuer = readNames(read, issuer, errors);
  }
  if (AsnValue serial = read.element(read.get(), "authorityCertSerialNumber")) {
    value.authorityCertSerialNumber = Integer::ofContent(read.octets(serial, "/"));
  }
}

}  // namespace detail

template <class N>
struct ExtensionTraits<BasicAuthorityKeyId<N>> {
  static constexpr bool kIsStrict = std::is_same_v<N, GeneralName>;
  static constexpr bool kCallerSetsCritical = false;

  static const Objid &objid() { return X509Objid_AuthorityKeyId; }

  static int32_t set(KetraObject object, const BasicAuthorityKeyId<N> &value, AsnErrorBlock *err) {
    static_assert(kIsStrict, "a tolerant form is for reading only");
    detail::NameNodes nodes(value.authorityCertIssuer ? value.authorityCertIssuer->size() : 0);
    KetraAuthorityKeyId c{};
    if (value.keyIdentifier) c.keyIdentifier = {detail::octets(*value.keyIdentifier), 1};
    if (value.authorityCertIssuer) c.authorityCertIssuer = {nodes.chain(*value.authorityCertIssuer), 1};
    c.authorityCertSerialNumber = detail::serialNumber(value.authorityCertSerialNumber);
    return KetraObjectSsetAuthorityKeyId(object, &c, err);
  }
  static int32_t get(KetraObject object, BasicAuthorityKeyId<N> &value, AsnErrorBlock *err) {
    if constexpr (kIsStrict) {
      return detail::getAuthorityKeyId(object, value, err);
    } else {
      detail::readAuthorityKeyId(detail::storedValue(object, objid()), value);
      return 0;
    }
  }
};

}  // namespace face
}  // namespace ketra
