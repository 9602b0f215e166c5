// How the runtime reports: one code and one entry per failed operation, made where the fault is found.
#pragma once

#include <charconv>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "ketra/contracts/asn1.h"

namespace ketra::asn1 {

// A message under construction. It never fails: what does not fit is left out.
class Text {
 public:
  Text() { buffer_[0] = '\0'; }

  Text &operator<<(std::string_view part) {
    const std::size_t n = part.size() < room() ? part.size() : room();
    std::memcpy(buffer_ + size_, part.data(), n);
    size_ += n;
    buffer_[size_] = '\0';
    return *this;
  }
  Text &operator<<(uint64_t number) { return append(number, 10); }
  Text &operator<<(uint32_t number) { return append(number, 10); }
  Text &operator<<(int32_t number) {
    if (number < 0) *this << "-";
    return append(number < 0 ? -static_cast<int64_t>(number) : number, 10);
  }
  Text &hex(uint32_t number) {
    *this << "0x";
    return append(number, 16);
  }

  const char *c_str() const { return buffer_; }

 private:
  std::size_t room() const { return sizeof buffer_ - 1 - size_; }
  template <class Number>
  Text &append(Number number, int base) {
    char digits[24];
    const auto end = std::to_chars(digits, digits + sizeof digits, number, base).ptr;
    return *this << std::string_view(digits, static_cast<std::size_t>(end - digits));
  }

  char buffer_[ASN_TRACE_MESSAGE];
  std::size_t size_ = 0;
};

// What offends: a 32-bit number, octets, or nothing.
struct Offending {
  const void *value = nullptr;
  uint32_t length = 0;
  uint32_t kind = ASN_VALUE_STRUCTURE;

  constexpr Offending() = default;
  Offending(const int32_t &number) : value(&number), length(sizeof number), kind(ASN_VALUE_NUMBER) {}
  Offending(const uint32_t &number) : value(&number), length(sizeof number), kind(ASN_VALUE_NUMBER) {}
  Offending(const uint8_t *octets, uint32_t count) : value(octets), length(count), kind(ASN_VALUE_OCTETS) {}
};

inline constexpr Offending kNothing;

// Sets the code, appends the entry, returns -1.
[[gnu::cold]] int32_t reportFailure(const char *function, AsnErrorBlock *err, uint32_t code, const char *message,
                                    const Offending &offending);

// One call of an exported operation: under which name it reports, and where to. Small: it travels in registers where it
// is only passed on.
struct Call {
  const char *function;
  AsnErrorBlock *err;

  [[gnu::always_inline]] inline int32_t fail(uint32_t code, const char *message,
                                             const Offending &offending = kNothing) const {
    return reportFailure(function, err, code, message, offending);
  }
  [[gnu::always_inline]] inline int32_t fail(uint32_t code, const Text &message,
                                             const Offending &offending = kNothing) const {
    return reportFailure(function, err, code, message.c_str(), offending);
  }
};

}  // namespace ketra::asn1
