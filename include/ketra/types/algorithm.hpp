/// @file
/// Algorithms and public keys, by identifier and octets. Names of curves: names/curves.hpp.
#pragma once

#include <cstddef>
#include <optional>

#include "ketra/asn1/oid.hpp"
#include "ketra/types/bits.hpp"
#include "ketra/types/integer.hpp"

namespace ketra {

// AlgorithmIdentifier ::= SEQUENCE {                             RFC 5280 4.1.1.2
//     algorithm   OBJECT IDENTIFIER,
//     parameters  ANY DEFINED BY algorithm OPTIONAL }
template <class Form>
struct AlgorithmIdentifierOf {
  ObjectIdentifierOf<Form> algorithm{};
  std::optional<AnyOf<Form>> parameters{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("algorithm", self.algorithm) && visit("parameters", self.parameters);
  }
};
using AlgorithmIdentifier = AlgorithmIdentifierOf<Owned>;       ///< owns what it holds
using AlgorithmIdentifierView = AlgorithmIdentifierOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<AlgorithmIdentifierView>());

// RSAPublicKey ::= SEQUENCE {                                    RFC 8017 A.1.1
//     modulus         INTEGER,
//     publicExponent  INTEGER }
template <class Form>
struct RsaPublicKeyOf {
  IntegerOf<Form> modulus{};
  IntegerOf<Form> publicExponent{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("modulus", self.modulus) && visit("publicExponent", self.publicExponent);
  }
};
using RsaPublicKey = RsaPublicKeyOf<Owned>;       ///< owns what it holds
using RsaPublicKeyView = RsaPublicKeyOf<Viewed>;  ///< points to what it was read from

// SubjectPublicKeyInfo ::= SEQUENCE {                            RFC 5280 4.1.2.7
//     algorithm         AlgorithmIdentifier,
//     subjectPublicKey  BIT STRING }
template <class Form>
struct SubjectPublicKeyInfoOf {
  AlgorithmIdentifierOf<Form> algorithm{};
  BitsOf<Form> subjectPublicKey{};

  /// The key of rsaEncryption and id-RSASSA-PSS (RFC 8017 A.1, A.2.3); a fault when it is another or malformed.
  Result<RsaPublicKeyOf<Form>> rsa() const {
    const bool isRsa =
        algorithm.algorithm == "1.2.840.113549.1.1.1"_oid || algorithm.algorithm == "1.2.840.113549.1.1.10"_oid;
    if (!isRsa) return Fault{Reason::OtherKind, 0, 0, nullptr};
    return read<RsaPublicKeyOf<Form>>(subjectPublicKey.octets());
  }
  /// Bits of the modulus of an RSA key; nothing for other keys and malformed ones.
  std::optional<std::size_t> rsaBits() const {
    const auto key = rsa();
    if (!key || key->modulus.isNegative()) return std::nullopt;
    View octets = key->modulus.content();
    if (octets[0] == 0) octets = View(octets.begin() + 1, octets.end());
    if (octets.empty()) return 0;
    std::size_t bits = 8 * octets.size();
    for (unsigned first = octets[0]; first < 0x80; first <<= 1) --bits;
    return bits;
  }
  /// The named curve of an id-ecPublicKey (RFC 5480 2.1.1); nothing for other keys and unnamed curves.
  std::optional<ObjectIdentifierOf<Form>> curve() const {
    if (algorithm.algorithm != "1.2.840.10045.2.1"_oid || !algorithm.parameters) return std::nullopt;
    Result<ObjectIdentifierOf<Form>> curve = read<ObjectIdentifierOf<Form>>(algorithm.parameters->encoding());
    if (!curve) return std::nullopt;
    return *std::move(curve);
  }

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("algorithm", self.algorithm) && visit("subjectPublicKey", self.subjectPublicKey);
  }
};
using SubjectPublicKeyInfo = SubjectPublicKeyInfoOf<Owned>;       ///< owns what it holds
using SubjectPublicKeyInfoView = SubjectPublicKeyInfoOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<SubjectPublicKeyInfoView>());

}  // namespace ketra
