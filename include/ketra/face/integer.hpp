/// @file
/// Whole numbers of any size: serial numbers and CRL numbers have up to 20 octets (RFC 5280 4.1.2.2, 5.2.3).
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>

#include "ketra/face/base.hpp"

namespace ketra {
inline namespace face {

/// A whole number, held as the content octets of an INTEGER (X.690 8.3): two's complement, as few octets as it takes.
class Integer {
 public:
  /// The number 0.
  Integer() = default;
  /// A number of 64 bits.
  Integer(int64_t number) : content_(sizeOf(number)) {
    auto bits = static_cast<uint64_t>(number);
    for (std::size_t i = content_.size(); i > 0; bits >>= 8) content_[--i] = static_cast<uint8_t>(bits);
  }

  /// From content octets; such as no INTEGER has are an Error.
  static Integer ofContent(View content) {
    X509CertSerialNumberOpt c{};
    c.option = c.value.form = 1;
    c.value.octets = content.data();
    c.value.length = detail::length(content);
    detail::run([&](AsnErrorBlock *err) { return X509MUtilCheckCertSerialNumberOpt(&c, err); });
    Integer integer;
    integer.content_ = content.copy();
    return integer;
  }
  /// From any octets, read as a number without sign: random octets make a serial number so.
  static Integer ofUnsigned(View octets) {
    Integer integer;
    integer.content_.reserve(octets.size() + 1);
    integer.content_.push_back(0);
    integer.content_.insert(integer.content_.end(), octets.begin(), octets.end());
    integer.shorten();
    return integer;
  }
  /// "1A2b", "-01": the amount, behind a sign when it is negative. Other texts are an Error.
  static Integer fromHex(const std::string &text) {
    const bool isNegative = !text.empty() && text.front() == '-';
    const std::size_t first = isNegative ? 1 : 0;
    if (text.size() == first) detail::fail(AsnError_Value, "ketra::Integer", "no hexadecimal digits");
    Octets amount((text.size() - first + 1) / 2);
    for (std::size_t i = 0; i < text.size() - first; ++i) {
      uint8_t &octet = amount[amount.size() - 1 - i / 2];
      octet = static_cast<uint8_t>(octet | digit(text[text.size() - 1 - i]) << (i % 2 == 0 ? 0 : 4));
    }
    Integer integer = ofUnsigned(amount);
    if (isNegative) integer.negate();
    return integer;
  }

  /// The content octets.
  const Octets &content() const {
    static const Octets kZero = {0};
    return content_.empty() ? kZero : content_;
  }
  /// Whether it is below 0.
  bool isNegative() const { return content().front() >= 0x80; }
  /// Nothing when it is beyond 64 bits.
  std::optional<int64_t> number() const {
    if (content_.size() > sizeof(int64_t)) return std::nullopt;
    uint64_t bits = isNegative() ? std::numeric_limits<uint64_t>::max() : 0;
    for (const uint8_t octet : content_) bits = bits << 8 | octet;
    return static_cast<int64_t>(bits);
  }
  /// The amount as pairs of lower-case digits, behind a sign when it is negative.
  std::string hex() const {
    static constexpr char kDigits[] = "0123456789abcdef";
    Integer amount = *this;
    if (isNegative()) amount.negate();
    std::string text = isNegative() ? "-" : "";
    const Octets &octets = amount.content();
    const bool skipsZero = octets.size() > 1 && octets.front() == 0;
    for (std::size_t i = skipsZero ? 1 : 0; i < octets.size(); ++i) {
      text += kDigits[octets[i] >> 4];
      text += kDigits[octets[i] & 15];
    }
    return text;
  }
  /// "42"; beyond 64 bits in hex, "0x010000000000000000".
  std::string text() const {
    if (const std::optional<int64_t> small = number()) return std::to_string(*small);
    const std::string digits = hex();
    return isNegative() ? "-0x" + digits.substr(1) : "0x" + digits;
  }

  friend bool operator==(const Integer &a, const Integer &b) { return a.content() == b.content(); }
  friend bool operator!=(const Integer &a, const Integer &b) { return !(a == b); }

 private:
  static int digit(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    detail::fail(AsnError_Value, "ketra::Integer", "a character that is no hexadecimal digit");
  }

  // How many octets it takes.
  static std::size_t sizeOf(int64_t number) {
    std::size_t size = 1;
    while (size < sizeof number && number >> (8 * size - 1) != (number < 0 ? -1 : 0)) ++size;
    return size;
  }

  // Drops octets that only repeat the sign.
  void shorten() {
    const uint8_t sign = isNegative() ? 0xFF : 0x00;
    auto first = std::find_if(content_.begin(), content_.end(), [&](uint8_t octet) { return octet != sign; });
    if (first != content_.begin() && (first == content_.end() || (*first ^ sign) >= 0x80)) --first;
    content_.erase(content_.begin(), first);
  }

  void negate() {
    content_.insert(content_.begin(), isNegative() ? 0xFF : 0x00);  // -128 is one octet, 128 two
    unsigned carry = 1;
    for (auto octet = content_.rbegin(); octet != content_.rend(); ++octet) {
      carry += static_cast<uint8_t>(~*octet);
      *octet = static_cast<uint8_t>(carry);
      carry >>= 8;
    }
    shorten();
  }

  Octets content_;  // none for 0: a default one, which is about to be replaced, takes no memory
};

/// Of a certificate: positive, and 20 octets at most (RFC 5280 4.1.2.2), which is not judged.
using SerialNumber = Integer;

}  // namespace face
}  // namespace ketra
