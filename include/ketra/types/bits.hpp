/// @file
/// Bit strings with any number of bits.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

#include "ketra/asn1/describe.hpp"
#include "ketra/types/primitive.hpp"

namespace ketra {

/// BIT STRING: octets, and how many of their bits count. Bit 0 is the most significant one of the first octet.
template <class Form>
class BitsOf {
 public:
  constexpr BitsOf() = default;
  /// From octets that hold at least `count` bits.
  BitsOf(View octets, std::size_t count)
      : octets_(detail::contentAs<Form>({octets.data(), (count + 7) / 8})), count_(count) {}

  /// (size() + 7) / 8 octets; what is left of the last one is not judged.
  View octets() const KETRA_LIFETIMEBOUND { return View(octets_); }
  std::size_t size() const { return count_; }  ///< bits
  bool empty() const { return count_ == 0; }   ///< whether there are no bits
  /// Bits beyond the last one are false.
  bool operator[](std::size_t i) const { return i < count_ && (octets()[i / 8] & (0x80u >> i % 8)) != 0; }

  friend bool operator==(const BitsOf &a, const BitsOf &b) {
    const View x = a.octets(), y = b.octets();
    if (a.count_ != b.count_ || a.count_ == 0) return a.count_ == b.count_;
    const unsigned mask = 0xFFu << (x.size() * 8 - a.count_);
    return View(x.data(), x.size() - 1) == View(y.data(), y.size() - 1) && ((x.back() ^ y.back()) & mask & 0xFF) == 0;
  }
  friend bool operator!=(const BitsOf &a, const BitsOf &b) { return !(a == b); }

 private:
  typename Form::Content octets_{};
  std::size_t count_ = 0;
};
using Bits = BitsOf<Owned>;       ///< owns what it holds
using BitsView = BitsOf<Viewed>;  ///< points to what it was read from

template <class Form>
struct Leaf<BitsOf<Form>> {
  using Value = BitsOf<Form>;
  static constexpr LeafKind kind = LeafKind::BitString;
  static constexpr uint8_t identifier = 0x03;
  static constexpr bool inSegments = true;
  KETRA_INLINE static bool read(const Tlv &tlv, Value &value, Fault &fault) {
    if (!detail::checkBits(tlv.contents(), fault)) return false;
    value = Value(View(tlv.content + 1, tlv.contentEnd), (tlv.size() - 1) * 8 - *tlv.content);
    return true;
  }
  static void write(const Value &value, Writer &out) {
    const std::size_t unused = value.octets().size() * 8 - value.size();
    out.octet(static_cast<unsigned>(unused));
    if (value.empty()) return;
    const View octets = value.octets();
    out.octets({octets.data(), octets.size() - 1});
    out.octet(octets.back() & (0xFFu << unused));
  }
  static View content(const Value &value, detail::Scratch &) { return value.octets(); }
  static std::string text(const Value &value) { return detail::hexOf(value.octets()); }
};

}  // namespace ketra
