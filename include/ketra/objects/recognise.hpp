/// @file
/// Telling objects apart by their outline.
#pragma once

#include <cstdint>

#include "ketra/asn1/reader.hpp"

namespace ketra {

/// What octets are.
enum class ObjectKind : uint8_t { none, certificate, crl, request };

/// What an encoding is, by the tags of its first fields alone. It may still be malformed. What is signed begins
/// - in a certificate with [0], or with INTEGER and three SEQUENCEs, the third of which is validity;
/// - in a request with INTEGER, two SEQUENCEs and [0], which some leave out;
/// - in a CRL with SEQUENCE, or with INTEGER, two SEQUENCEs and a time.
inline ObjectKind recognise(View encoding) {
  Fault ignored;
  Tlv object, tbs, field;
  if (!detail::readOnly(encoding, object, ignored) || object.identifier != 0x30) return ObjectKind::none;
  Reader in = object.reader();
  if (!detail::readTlv(in, tbs, ignored) || tbs.identifier != 0x30) return ObjectKind::none;
  if (detail::countTlvs(in) != 2) return ObjectKind::none;  // algorithm and signature
  uint8_t tags[4] = {};
  in = tbs.reader();
  for (uint8_t &tag : tags) {
    if (in.done() || !detail::readTlv(in, field, ignored)) break;
    tag = field.identifier;
  }
  if (tags[0] == 0xA0) return ObjectKind::certificate;
  if (tags[0] == 0x30) return ObjectKind::crl;
  if (tags[0] != 0x02) return ObjectKind::none;
  if (tags[3] == 0x30) return ObjectKind::certificate;
  return tags[3] == 0xA0 || tags[3] == 0 ? ObjectKind::request : ObjectKind::crl;
}

}  // namespace ketra
