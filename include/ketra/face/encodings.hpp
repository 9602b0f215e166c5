/// @file
/// Encodings as they stand one behind the other: how many members a list has is seen without decoding it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <limits>

#include "ketra/face/base.hpp"

namespace ketra {
inline namespace face {

namespace detail {

// Goes through encodings (BER) by their identifier and length octets alone. It stops where they end, and at what is no
// encoding: whoever decodes it tells why.
class Encodings {
 public:
  explicit Encodings(View octets) : at_(octets.begin()), end_(octets.end()) {}

  // Goes on to the next one, which the rest is about then; false when there is none.
  bool next() {
    const bool isUsual =
        end_ - at_ >= 2 && (at_[0] & kHighNumber) != kHighNumber && at_[1] < kLong && at_[1] <= end_ - at_ - 2;
    const Place found = isUsual ? Place{at_ + 2, at_[1], at_ + 2 + at_[1]} : find(at_, end_);
    if (found.behind == nullptr) return false;
    first_ = at_;
    content_ = found.content;
    length_ = found.length;
    at_ = found.behind;
    return true;
  }
  uint8_t tag() const { return *first_; }  // the first identifier octet
  View content() const { return {content_, length_}; }
  View encoding() const { return {first_, static_cast<std::size_t>(at_ - first_)}; }

 private:
  static constexpr std::size_t kIndefinite = std::numeric_limits<std::size_t>::max();
  static constexpr std::size_t kEndOfContents = 2;  // octets
  static constexpr uint8_t kHighNumber = 0x1F, kMore = 0x80, kLong = 0x80;

  // Where things are in an encoding. Null when there is none.
  struct Place {
    const uint8_t *content = nullptr;
    std::size_t length = 0;  // of the content
    const uint8_t *behind = nullptr;
  };

  // Apart from next(), which is small then and keeps its state in registers.
  [[gnu::noinline]] static Place find(const uint8_t *p, const uint8_t *end) {
    std::size_t length = 0;
    if (!readHeader(p, end, length)) return {};
    if (length != kIndefinite) return {p, length, p + length};
    const uint8_t *const content = p;
    if (!skipToEnd(p, end)) return {};
    return {content, static_cast<std::size_t>(p - content) - kEndOfContents, p};
  }
  // Moves `p` behind identifier and length octets.
  static bool readHeader(const uint8_t *&p, const uint8_t *end, std::size_t &length) {
    if (p == end) return false;
    if ((*p++ & kHighNumber) == kHighNumber) {
      while (p != end && (*p & kMore) != 0) ++p;
      if (p == end) return false;
      ++p;
    }
    return p != end && readLength(p, end, length);
  }
  static bool readLength(const uint8_t *&p, const uint8_t *end, std::size_t &length) {
    const uint8_t first = *p++;
    length = first == kLong ? kIndefinite : first;
    if (first == kLong) return true;
    if (first > kLong) {
      length = 0;
      for (int octets = first - kLong; octets > 0; --octets) {
        if (p == end || length > kIndefinite >> 8) return false;
        length = length << 8 | *p++;
      }
    }
    return length <= static_cast<std::size_t>(end - p);
  }
  // Moves `p` from the content of an indefinite length behind its end-of-contents octets.
  static bool skipToEnd(const uint8_t *&p, const uint8_t *end) {
    for (std::size_t open = 1; open > 0;) {
      if (static_cast<std::size_t>(end - p) >= kEndOfContents && p[0] == 0 && p[1] == 0) {
        p += kEndOfContents;
        --open;
        continue;
      }
      std::size_t length = 0;
      if (!readHeader(p, end, length)) return false;
      if (length == kIndefinite) {
        ++open;
      } else {
        p += length;
      }
    }
    return true;
  }

  const uint8_t *at_;
  const uint8_t *end_;
  const uint8_t *first_ = nullptr;
  const uint8_t *content_ = nullptr;
  std::size_t length_ = 0;
};

// Of the first encoding there; empty when there is none.
inline View contentOf(View octets) {
  Encodings encodings(octets);
  return encodings.next() ? encodings.content() : View();
}

// Of the component with the context tag, which is constructed, in a SEQUENCE with this content; empty when it is
// absent.
inline View contentOf(View sequence, uint8_t tag) {
  constexpr uint8_t kContextConstructed = 0xA0;
  for (Encodings components(sequence); components.next();) {
    if (components.tag() == (kContextConstructed | tag)) return components.content();
  }
  return {};
}

// The members of a list with this content.
inline uint32_t countOf(View content) {
  uint32_t count = 0;
  for (Encodings members(content); members.next();) ++count;
  return count;
}

}  // namespace detail

}  // namespace face
}  // namespace ketra
