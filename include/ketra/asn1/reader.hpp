/// @file
/// Identifier, length and contents octets (X.690 8.1), read without knowing a type. Nothing recurses, nothing
/// allocates.
#pragma once

#include <cstddef>
#include <cstdint>

#include "ketra/asn1/fault.hpp"

namespace ketra {

/// Octets that are being read: from `at` to `end`.
struct Reader {
  const uint8_t *at = nullptr;   ///< the next octet
  const uint8_t *end = nullptr;  ///< after the last octet

  constexpr Reader() = default;
  constexpr Reader(const uint8_t *from, const uint8_t *to) : at(from), end(to) {}    ///< from `from` up to `to`
  constexpr explicit Reader(View octets) : at(octets.begin()), end(octets.end()) {}  ///< all of these

  constexpr bool done() const { return at == end; }                                  ///< whether all is read
  constexpr std::size_t left() const { return static_cast<std::size_t>(end - at); }  ///< octets not read yet
  constexpr View rest() const { return {at, end}; }                                  ///< the octets not read yet
};

/// One encoding: what stands at `octets`. The contents of an indefinite length end before its end-of-contents octets.
struct Tlv {
  uint8_t identifier = 0;               ///< first identifier octet; its low five bits are 31 in the form for high tags
  const uint8_t *octets = nullptr;      ///< the first identifier octet
  const uint8_t *content = nullptr;     ///< the first contents octet
  const uint8_t *contentEnd = nullptr;  ///< after the last contents octet
  const uint8_t *end = nullptr;         ///< after the whole encoding

  constexpr bool isConstructed() const { return (identifier & 0x20) != 0; }  ///< of encodings (X.690 8.1.2.5)
  constexpr Reader reader() const { return {content, contentEnd}; }          ///< of the contents octets
  constexpr View contents() const { return {content, contentEnd}; }          ///< the contents octets
  constexpr View whole() const { return {octets, end}; }                     ///< with identifier and length
  constexpr std::size_t size() const { return static_cast<std::size_t>(contentEnd - content); }  ///< of the contents
};

namespace detail {

inline bool isEndOfContents(const Reader &in) { return in.left() >= 2 && in.at[0] == 0 && in.at[1] == 0; }

// Goes past the identifier octets of the form for high tag numbers (X.690 8.1.2.4). A number beyond 32 bits is as good
// as any other: no described type has it.
inline bool skipTagNumber(Reader &in, Fault &fault) {
  const uint8_t *const start = in.at;
  uint32_t number = 0;
  do {
    if (in.done()) return fail(fault, Reason::EndedInTag, in.at);
    if (in.at == start && *in.at == 0x80) return fail(fault, Reason::PaddedTag, in.at);
    number = number > UINT32_MAX >> 7 ? UINT32_MAX : number << 7 | (*in.at & 0x7Fu);
  } while ((*in.at++ & 0x80) != 0);
  return number >= 31 || fail(fault, Reason::LowTag, start, number);
}

// Reads a header. `length` is that of the contents; an indefinite one sets `indefinite` instead.
inline bool readHeader(Reader &in, std::size_t &length, bool &indefinite, Fault &fault) {
  const uint8_t *const start = in.at;
  if (in.done()) return fail(fault, Reason::Ended, start);
  const uint8_t identifier = *in.at++;
  if ((identifier & 0x1F) == 0x1F && !skipTagNumber(in, fault)) return false;
  if (in.done()) return fail(fault, Reason::EndedInLength, in.at);
  const uint8_t *const at = in.at;
  const uint8_t first = *in.at++;
  length = 0;
  indefinite = first == 0x80;
  if (indefinite) return (identifier & 0x20) != 0 || fail(fault, Reason::IndefinitePrimitive, at);
  if (first < 0x80) {
    length = first;
  } else {
    if (first == 0xFF) return fail(fault, Reason::ReservedLength, at);
    const std::size_t count = first & 0x7Fu;
    if (in.left() < count) return fail(fault, Reason::EndedInLength, at);
    uint64_t sum = 0;
    for (std::size_t i = 0; i < count && sum <= 0xFFFFFFFF; ++i) sum = sum << 8 | in.at[i];
    in.at += count;
    if (sum > 0xFFFFFFFF) return fail(fault, Reason::HugeLength, start, 0, in.left());
    length = static_cast<std::size_t>(sum);
  }
  return length <= in.left() || fail(fault, Reason::BeyondEnd, start, length, in.left());
}

// Goes past everything up to the end-of-contents octets that close the indefinite length in which `in` is.
inline bool skipToEndOfContents(Reader &in, Fault &fault) {
  for (std::size_t open = 1;;) {
    if (in.done()) return fail(fault, Reason::NoEndOfContents, in.at);
    if (isEndOfContents(in)) {
      in.at += 2;
      if (--open == 0) return true;
      continue;
    }
    if ((*in.at & ~0x20) == 0) return fail(fault, Reason::EndOfContents, in.at);
    std::size_t length = 0;
    bool indefinite = false;
    if (!readHeader(in, length, indefinite, fault)) return false;
    if (indefinite) ++open;
    in.at += length;
  }
}

#if defined(__GNUC__)
[[gnu::noinline]]
#endif
inline bool
readLong(Reader &in, Tlv &tlv, Fault &fault) {
  std::size_t length = 0;
  bool indefinite = false;
  const Reader before = in;
  if (!in.done() && (*in.at & ~0x20) == 0) return fail(fault, Reason::EndOfContents, in.at);
  if (!readHeader(in, length, indefinite, fault)) {
    in = before;
    return false;
  }
  tlv = {*before.at, before.at, in.at, in.at + length, in.at + length};
  if (indefinite) {
    if (!skipToEndOfContents(in, fault)) {
      in = before;
      return false;
    }
    tlv.contentEnd = in.at - 2;
    tlv.end = in.at;
  }
  in.at = tlv.end;
  return true;
}

// Reads one complete encoding and goes past it; a fault moves nothing.
KETRA_INLINE bool readTlv(Reader &in, Tlv &tlv, Fault &fault) {
  if (KETRA_LIKELY(in.left() >= 2)) {
    const uint8_t identifier = in.at[0];
    const uint8_t length = in.at[1];
    const bool isShort =
        (identifier & 0x1F) != 0x1F && length < 0x80 && length <= in.left() - 2 && (identifier & ~0x20) != 0;
    if (KETRA_LIKELY(isShort)) {
      const uint8_t *const content = in.at + 2;
      tlv = {identifier, in.at, content, content + length, content + length};
      in.at = content + length;
      return true;
    }
  }
  Reader copy = in;  // so that the address of `in` is not taken, and it can live in registers
  Tlv read;
  const bool isRead = readLong(copy, read, fault);
  in.at = copy.at;
  tlv = read;
  return isRead;
}

// The same for octets that are exactly one encoding.
KETRA_INLINE bool readOnly(View octets, Tlv &tlv, Fault &fault) {
  Reader in(octets);
  return readTlv(in, tlv, fault) && (in.done() || fail(fault, Reason::Trailing, in.at, in.left()));
}

// How many encodings stand side by side; the one that cannot be read, with all after it, counts as one.
inline std::size_t countTlvs(Reader in) {
  std::size_t count = 0;
  Tlv tlv;
  Fault fault;
  while (!in.done()) {
    ++count;
    if (!readTlv(in, tlv, fault)) break;
  }
  return count;
}

}  // namespace detail

}  // namespace ketra
