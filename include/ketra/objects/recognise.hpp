/// @file
/// Telling objects apart by their outline.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "ketra/asn1/reader.hpp"

namespace ketra {

/// What octets are. Only certificates, CRLs, requests and PKCS #7 can be read here; the others can be named.
enum class ObjectKind : uint8_t {
  none,
  certificate,
  crl,
  request,
  pkcs7,
  pkcs12,
  privateKey,
  encryptedPrivateKey,
  publicKey,
  ocspResponse,
  attributeCertificate
};

/// For people: "certificate", "CRL", "PKCS #12 file".
inline std::string_view nameOf(ObjectKind kind) {
  constexpr std::string_view kNames[] = {"unknown object",
                                         "certificate",
                                         "CRL",
                                         "request",
                                         "PKCS #7",
                                         "PKCS #12 file",
                                         "private key",
                                         "encrypted private key",
                                         "public key",
                                         "OCSP response",
                                         "attribute certificate"};
  return kNames[static_cast<std::size_t>(kind)];
}

namespace detail {

// The tags of the first members of a constructed value, and how many members there are.
struct MemberTags {
  static constexpr std::size_t kMost = 4;
  uint8_t tags[kMost] = {};
  std::size_t count = 0;
  Tlv first;

  explicit MemberTags(Reader in) {
    Tlv member;
    Fault ignored;
    for (; !in.done() && readTlv(in, member, ignored); ++count) {
      if (count == 0) first = member;
      if (count < kMost) tags[count] = member.identifier;
    }
    if (!in.done()) count = 0;
  }
  constexpr bool begin(uint8_t a, uint8_t b, uint8_t c) const { return tags[0] == a && tags[1] == b && tags[2] == c; }
};

// What is signed begins
//   in a certificate with [0], or with INTEGER and three SEQUENCEs, the third of which is validity,
//   in an attribute certificate with INTEGER, SEQUENCE and [0],
//   in a request with INTEGER, two SEQUENCEs and [0], which some leave out,
//   in a CRL with SEQUENCE, or with INTEGER, two SEQUENCEs and a time.
inline ObjectKind recogniseSigned(const MemberTags &inside) {
  if (inside.tags[0] == 0xA0) return ObjectKind::certificate;
  if (inside.tags[0] == 0x30) return ObjectKind::crl;
  if (inside.tags[0] != 0x02) return ObjectKind::none;
  if (inside.tags[2] == 0xA0) return ObjectKind::attributeCertificate;
  if (inside.tags[3] == 0x30) return ObjectKind::certificate;
  return inside.tags[3] == 0xA0 || inside.tags[3] == 0 ? ObjectKind::request : ObjectKind::crl;
}

}  // namespace detail

/// What an encoding is, by the tags of its first fields alone; it may still be malformed.
inline ObjectKind recognise(View encoding) {
  Fault ignored;
  Tlv object;
  if (!detail::readOnly(encoding, object, ignored) || object.identifier != 0x30) return ObjectKind::none;
  const detail::MemberTags outer(object.reader());
  if (outer.count == 0) return ObjectKind::none;
  if (outer.tags[0] == 0x30) {
    const detail::MemberTags inside(outer.first.reader());
    if (outer.count == 3 && outer.tags[1] == 0x30) return detail::recogniseSigned(inside);
    const bool isAlgorithm = outer.count == 2 && inside.tags[0] == 0x06;
    if (isAlgorithm && outer.tags[1] == 0x03) return ObjectKind::publicKey;            // RFC 5280 4.1.2.7
    if (isAlgorithm && outer.tags[1] == 0x04) return ObjectKind::encryptedPrivateKey;  // RFC 5208 6
    return ObjectKind::none;
  }
  if (outer.begin(0x06, 0xA0, 0)) return ObjectKind::pkcs7;                              // RFC 5652 3
  if (outer.tags[0] == 0x0A && outer.count <= 2) return ObjectKind::ocspResponse;        // RFC 6960 4.2.1
  if (outer.begin(0x02, 0x30, 0x04)) return ObjectKind::privateKey;                      // RFC 5208 5
  if (outer.begin(0x02, 0x02, 0)) return ObjectKind::publicKey;                          // RFC 8017 A.1.1
  if (outer.begin(0x02, 0x02, 0x02) && outer.count >= 6) return ObjectKind::privateKey;  // RFC 8017 A.1.2, DSA
  if (outer.tags[0] == 0x02 && outer.tags[1] == 0x04) return ObjectKind::privateKey;     // RFC 5915 3
  if (outer.tags[0] == 0x02 && outer.tags[1] == 0x30) return ObjectKind::pkcs12;         // RFC 7292 4
  return ObjectKind::none;
}

}  // namespace ketra
