/// @file
/// Strings in segments (X.690 8.6.4, 8.7.3), joined for owning values.
#pragma once

#include <cstddef>
#include <cstdint>

#include "ketra/asn1/reader.hpp"

namespace ketra::detail {

// Goes through all that is inside a constructed encoding, down to the last, and calls visit(at, contents) for each:
// `at` is its identifier octet, and what is constructed has no contents there.
template <class Visit>
bool eachInside(const Tlv &outer, Fault &fault, Visit &&visit) {
  struct Level {
    const uint8_t *end;
    bool isIndefinite;
  } levels[ASN_MAX_NESTING];
  std::size_t depth = 0;
  Reader in = outer.reader();
  levels[0] = {outer.contentEnd, false};  // its end is known, whatever its length is
  for (;;) {
    const Level level = levels[depth];
    in.end = level.end;
    if (level.isIndefinite ? isEndOfContents(in) : in.done()) {
      if (level.isIndefinite) in.at += 2;
      if (depth == 0) return true;
      --depth;
      continue;
    }
    const uint8_t *const at = in.at;
    if (in.done()) return fail(fault, Reason::NoEndOfContents, at);
    std::size_t length = 0;
    bool isIndefinite = false;
    if (!readHeader(in, length, isIndefinite, fault)) return false;
    const bool isConstructed = (*at & 0x20) != 0;
    if (!visit(at, View(in.at, isConstructed ? 0 : length))) return false;
    if (!isConstructed) {
      in.at += length;
      continue;
    }
    if (++depth == ASN_MAX_NESTING) return fail(fault, Reason::Nesting, at, ASN_MAX_NESTING);
    levels[depth] = {isIndefinite ? level.end : in.at + length, isIndefinite};
  }
}

// Whether encodings are all that is inside, down to the last.
inline bool checkInside(const Tlv &outer, Fault &fault) {
  return eachInside(outer, fault, [&](const uint8_t *at, View) {
    return (*at & ~0x20) != 0 || fail(fault, Reason::EndOfContents, at);
  });
}

// Calls use(contents) for each primitive segment of a constructed string, however they are nested.
template <class Use>
bool eachSegment(const Tlv &string, uint8_t tag, Fault &fault, Use &&use) {
  return eachInside(string, fault, [&](const uint8_t *at, View contents) {
    if ((*at & ~0x20) != tag) return fail(fault, Reason::SegmentTag, at, *at, tag);
    return (*at & 0x20) != 0 || use(contents);
  });
}

// Joins the segments in one block: first their size is found, then the octets are copied.
inline bool joinSegments(const Tlv &string, bool isBits, Octets &joined, Fault &fault) {
  const uint8_t tag = isBits ? 0x03 : 0x04;
  const std::size_t lead = isBits ? 1 : 0;  // each bit segment, and the result, begins with its unused bits
  std::size_t total = lead;
  uint8_t unused = 0;
  const bool isRight = eachSegment(string, tag, fault, [&](View segment) {
    if (isBits) {
      if (segment.empty() || segment[0] > 7 || (segment[0] > 0 && segment.size() == 1)) {
        return fail(fault, Reason::BitsUnused, segment.begin(), segment.empty() ? 0 : segment[0], segment.size());
      }
      if (unused != 0) return fail(fault, Reason::BitsInside, segment.begin());
      unused = segment[0];
    }
    total += segment.size() - lead;
    return true;
  });
  if (!isRight) return false;
  joined.reserve(total);
  if (isBits) joined.push_back(unused);
  return eachSegment(string, tag, fault, [&](View segment) {
    joined.insert(joined.end(), segment.begin() + lead, segment.end());
    return true;
  });
}

}  // namespace ketra::detail
