/// @file
/// Octets that grow at their end: small ones on the stack, larger ones in one block of memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "ketra/asn1/octets.hpp"

namespace ketra {

/// Collects an encoding. A constructed value is begun, written, and ended, which puts the length where it belongs.
class Writer {
 public:
  Writer() : at_(small_), begin_(small_), end_(small_ + sizeof small_) {}
  Writer(const Writer &) = delete;
  Writer &operator=(const Writer &) = delete;

  /// What has been written so far; valid until more is.
  View written() const KETRA_LIFETIMEBOUND { return {begin_, at_}; }
  std::size_t size() const { return static_cast<std::size_t>(at_ - begin_); }
  Octets take() const { return written().copy(); }

  void octet(unsigned value) {
    if (at_ == end_) grow(1);
    *at_++ = static_cast<uint8_t>(value);
  }
  void octets(View octets) {
    if (octets.empty()) return;
    if (static_cast<std::size_t>(end_ - at_) < octets.size()) grow(octets.size());
    std::memcpy(at_, octets.data(), octets.size());
    at_ += octets.size();
  }

  /// Begins a value: its identifier octet, and room for a length of one octet. Returns the place that end() takes.
  std::size_t begin(uint8_t identifier) {
    if (end_ - at_ < 2) grow(2);
    *at_++ = identifier;
    *at_++ = 0;
    return size();
  }
  /// Ends the value begun there. Contents of 128 octets and more move to make room for their length.
  void end(std::size_t place) {
    const std::size_t length = size() - place;
    if (length < 0x80) {
      begin_[place - 1] = static_cast<uint8_t>(length);
    } else {
      putLength(place, length);
    }
  }
  /// A whole primitive value.
  void value(uint8_t identifier, View content) {
    const std::size_t place = begin(identifier);
    octets(content);
    end(place);
  }

  /// Replaces what was written from `place` on by octets of the same number.
  void rewrite(std::size_t place, View octets) { std::memcpy(begin_ + place, octets.data(), octets.size()); }
  /// Forgets what was written from `place` on.
  void cut(std::size_t place) { at_ = begin_ + place; }

 private:
  void putLength(std::size_t place, std::size_t length) {
    std::size_t count = 0;
    for (std::size_t rest = length; rest != 0; rest >>= 8) ++count;
    if (static_cast<std::size_t>(end_ - at_) < count) grow(count);
    uint8_t *const content = begin_ + place;
    std::memmove(content + count, content, length);
    at_ += count;
    content[-1] = static_cast<uint8_t>(0x80 | count);
    for (std::size_t i = count; i > 0; length >>= 8) content[--i] = static_cast<uint8_t>(length);
  }

  void grow(std::size_t more) {
    const std::size_t used = size();
    const std::size_t wanted = (used + more) * 2;
    if (begin_ == small_) {
      large_.resize(wanted);
      std::memcpy(large_.data(), small_, used);
    } else {
      large_.resize(wanted);
    }
    begin_ = large_.data();
    at_ = begin_ + used;
    end_ = begin_ + wanted;
  }

  uint8_t *at_;
  uint8_t *begin_;
  uint8_t *end_;
  Octets large_;
  uint8_t small_[1024];
};

}  // namespace ketra
