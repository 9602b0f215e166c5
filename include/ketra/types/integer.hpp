/// @file
/// Whole numbers of any size: serial numbers and CRL numbers have up to 20 octets (RFC 5280 4.1.2.2, 5.2.3).
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "ketra/asn1/describe.hpp"
#include "ketra/types/primitive.hpp"

namespace ketra {

/// INTEGER, held as its contents octets (X.690 8.3): two's complement, as few octets as it takes.
template <class Form>
class IntegerOf {
 public:
  /// The number 0.
  constexpr IntegerOf() = default;
  IntegerOf(int64_t number) {
    static_assert(std::is_same_v<Form, Owned>, "a view would point into nothing");
    auto bits = static_cast<uint64_t>(number);
    std::size_t size = 1;
    while (size < 8 && number >> (8 * size - 1) != (number < 0 ? -1 : 0)) ++size;
    content_.resize(size);
    for (; size > 0; bits >>= 8) content_[--size] = static_cast<char>(bits & 0xFF);
  }
  /// From the other form.
  template <class Other>
  explicit IntegerOf(const IntegerOf<Other> &other) : content_(detail::contentAs<Form>(other.content())) {}

  /// From contents octets, which are judged.
  static Result<IntegerOf> ofContent(View content) {
    Fault fault;
    if (!detail::checkInteger(content, fault)) return fault;
    IntegerOf result;
    result.content_ = detail::contentAs<Form>(content);
    return result;
  }
  /// From any octets, read as a number without sign: random octets make a serial number so.
  static IntegerOf ofUnsigned(View octets) {
    static_assert(std::is_same_v<Form, Owned>, "a view would point into nothing");
    while (octets.size() > 1 && octets[0] == 0) octets = View(octets.begin() + 1, octets.end());
    IntegerOf result;
    if (octets.empty() || octets[0] >= 0x80) result.content_.push_back('\0');
    result.content_.append(octets.characters());
    return result;
  }

  /// The contents octets.
  View content() const KETRA_LIFETIMEBOUND {
    static constexpr uint8_t kZero[] = {0};
    return content_.empty() ? View(kZero) : View(content_);
  }
  bool isNegative() const { return content()[0] >= 0x80; }
  /// The number, where it has at most 64 bits.
  std::optional<int64_t> number() const {
    const View octets = content();
    if (octets.size() > sizeof(int64_t)) return std::nullopt;
    uint64_t bits = isNegative() ? UINT64_MAX : 0;
    for (const uint8_t octet : octets) bits = bits << 8 | octet;
    return static_cast<int64_t>(bits);
  }
  /// The amount as pairs of lower-case hexadecimal digits, after a sign when it is negative.
  std::string hex() const {
    Octets amount = content().copy();
    if (isNegative()) {
      unsigned carry = 1;
      for (std::size_t i = amount.size(); i-- > 0; carry >>= 8) {
        carry += static_cast<uint8_t>(~amount[i]);
        amount[i] = static_cast<uint8_t>(carry & 0xFF);
      }
    }
    const bool skipsZero = amount.size() > 1 && amount[0] == 0;
    return (isNegative() ? "-" : "") +
           detail::hexOf({amount.data() + (skipsZero ? 1 : 0), amount.size() - (skipsZero ? 1u : 0u)});
  }
  /// "42"; beyond 64 bits in hexadecimal digits, "0x010000000000000000".
  std::string text() const {
    if (const std::optional<int64_t> small = number()) return std::to_string(*small);
    const std::string digits = hex();
    return isNegative() ? "-0x" + digits.substr(1) : "0x" + digits;
  }

  friend bool operator==(const IntegerOf &a, const IntegerOf &b) { return a.content() == b.content(); }
  friend bool operator!=(const IntegerOf &a, const IntegerOf &b) { return !(a == b); }
  /// By amount.
  friend bool operator<(const IntegerOf &a, const IntegerOf &b) {
    if (a.isNegative() != b.isNegative()) return a.isNegative();
    const View x = a.content(), y = b.content();
    if (x.size() != y.size()) return (x.size() < y.size()) != a.isNegative();
    return x < y;
  }

 private:
  friend struct Leaf<IntegerOf>;
  typename Form::Content content_{};  // empty for 0: a default one takes no memory
};
using Integer = IntegerOf<Owned>;       ///< owns what it holds
using IntegerView = IntegerOf<Viewed>;  ///< points to what it was read from

template <class Form>
struct Leaf<IntegerOf<Form>> {
  using Value = IntegerOf<Form>;
  static constexpr LeafKind kind = LeafKind::Integer;
  static constexpr uint8_t identifier = 0x02;
  static constexpr bool inSegments = false;
  KETRA_INLINE static bool read(const Tlv &tlv, Value &value, Fault &fault) {
    if (!detail::checkInteger(tlv.contents(), fault)) return false;
    value.content_ = detail::contentAs<Form>(tlv.contents());
    return true;
  }
  static void write(const Value &value, Writer &out) { out.octets(value.content()); }
  static View content(const Value &value, detail::Scratch &) { return value.content(); }
  static std::string text(const Value &value) { return value.text(); }
};

}  // namespace ketra
