/// @file
/// IPAddrBlocks: the blocks of IP addresses that the subject holds.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/write.hpp"
#include "ketra/types/bits.hpp"
#include "ketra/types/general_name.hpp"

namespace ketra {

// IPAddressRange ::= SEQUENCE {                                  RFC 3779 2.2.3.9
//     min  IPAddress,
//     max  IPAddress }
// IPAddress ::= BIT STRING
template <class Form>
struct IpAddressRangeOf {
  BitsOf<Form> min{};  ///< without the zero bits at its end
  BitsOf<Form> max{};  ///< without the one bits at its end

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("min", self.min) && visit("max", self.max);
  }
};
using IpAddressRange = IpAddressRangeOf<Owned>;       ///< owns what it holds
using IpAddressRangeView = IpAddressRangeOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<IpAddressRangeView>());

// IPAddressOrRange ::= CHOICE {                                  RFC 3779 2.2.3.7
//     addressPrefix  IPAddress,
//     addressRange   IPAddressRange }
template <class Form>
struct IpAddressOrRangeOf {
  static constexpr Shape shape = Shape::Choice;

  std::variant<BitsOf<Form>, IpAddressRangeOf<Form>> choice{};  ///< a prefix has as many bits as its length

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit.choice(self.choice, Alternative{"addressPrefix", {}}, Alternative{"addressRange", {}});
  }
};
using IpAddressOrRange = IpAddressOrRangeOf<Owned>;       ///< owns what it holds
using IpAddressOrRangeView = IpAddressOrRangeOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<IpAddressOrRangeView>());

// IPAddressChoice ::= CHOICE {                                   RFC 3779 2.2.3.4
//     inherit            NULL,
//     addressesOrRanges  SEQUENCE OF IPAddressOrRange }
template <class Form>
struct IpAddressChoiceOf {
  static constexpr Shape shape = Shape::Choice;

  std::variant<Null, ListOf<Form, IpAddressOrRangeOf<Form>>> choice{};  ///< whichever it is

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit.choice(self.choice, Alternative{"inherit", {}}, Alternative{"addressesOrRanges", {}});
  }
};
using IpAddressChoice = IpAddressChoiceOf<Owned>;       ///< owns what it holds
using IpAddressChoiceView = IpAddressChoiceOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<IpAddressChoiceView>());

namespace detail {

// Bits, and as many more of one kind as an address of that many octets has.
inline std::string textOfAddress(View bits, std::size_t count, bool fill, std::size_t size) {
  if (count > size * 8) return hexOf(bits);
  uint8_t octets[16];
  for (std::size_t i = 0; i < size * 8; ++i) {
    const unsigned mask = 0x80u >> i % 8;
    if (i % 8 == 0) octets[i / 8] = 0;
    if (i < count ? (bits[i / 8] & mask) != 0 : fill) octets[i / 8] = static_cast<uint8_t>(octets[i / 8] | mask);
  }
  return textOfIp({octets, size});
}

}  // namespace detail

// IPAddressFamily ::= SEQUENCE {                                 RFC 3779 2.2.3.2
//     addressFamily    OCTET STRING (SIZE (2..3)),
//     ipAddressChoice  IPAddressChoice }
template <class Form>
struct IpAddressFamilyOf {
  OctetStringOf<Form> addressFamily{};  ///< AFI: 1 for IPv4, 2 for IPv6; and maybe SAFI
  IpAddressChoiceOf<Form> ipAddressChoice{};

  /// "IPv4 192.0.2.0/24, 198.51.100.0-198.51.100.9"; of other families the bits in hexadecimal digits.
  std::string text() const {
    const View family = addressFamily.octets();
    const bool isIp = family.size() >= 2 && family[0] == 0 && (family[1] == 1 || family[1] == 2);
    const std::size_t size = !isIp ? 0 : family[1] == 1 ? 4 : 16;
    std::string text = !isIp ? "family " + detail::hexOf(family) : size == 4 ? "IPv4" : "IPv6";
    if (isIp && family.size() == 3) text += " SAFI " + std::to_string(family[2]);
    const auto *const list = std::get_if<1>(&ipAddressChoice.choice);
    if (list == nullptr) return text + " inherit";
    char separator = ' ';
    for (const auto &member : *list) {
      (text += separator) += separator == ' ' ? "" : " ";
      separator = ',';
      const auto *const each = detail::goodMember(member);
      if (each == nullptr) {
        text += "(malformed)";
      } else if (const auto *const prefix = std::get_if<0>(&each->choice)) {
        text += detail::textOfAddress(prefix->octets(), prefix->size(), false, size);
        text += '/' + std::to_string(prefix->size());
      } else {
        const IpAddressRangeOf<Form> &range = *std::get_if<1>(&each->choice);
        text += detail::textOfAddress(range.min.octets(), range.min.size(), false, size) + '-';
        text += detail::textOfAddress(range.max.octets(), range.max.size(), true, size);
      }
    }
    return text;
  }

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("addressFamily", self.addressFamily) && visit("ipAddressChoice", self.ipAddressChoice);
  }
};
using IpAddressFamily = IpAddressFamilyOf<Owned>;       ///< owns what it holds
using IpAddressFamilyView = IpAddressFamilyOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<IpAddressFamilyView>());

// IPAddrBlocks ::= SEQUENCE OF IPAddressFamily                   RFC 3779 2.2.3
template <class Form>
struct IpAddrBlocksOf {
  static constexpr std::string_view name = "IPAddrBlocks";
  static constexpr OidLiteral oid = "1.3.6.1.5.5.7.1.7"_oid;
  static constexpr Shape shape = Shape::Is;

  ListOf<Form, IpAddressFamilyOf<Form>> families{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("families", self.families);
  }
};
using IpAddrBlocks = IpAddrBlocksOf<Owned>;       ///< owns what it holds
using IpAddrBlocksView = IpAddrBlocksOf<Viewed>;  ///< points to what it was read from

// IPAddrBlocksV2 ::= IPAddrBlocks                                RFC 8360 4.2.2.1
template <class Form>
struct IpAddrBlocksV2Of : IpAddrBlocksOf<Form> {
  static constexpr std::string_view name = "IPAddrBlocksV2";
  static constexpr OidLiteral oid = "1.3.6.1.5.5.7.1.28"_oid;
};
using IpAddrBlocksV2 = IpAddrBlocksV2Of<Owned>;       ///< owns what it holds
using IpAddrBlocksV2View = IpAddrBlocksV2Of<Viewed>;  ///< points to what it was read from

}  // namespace ketra
