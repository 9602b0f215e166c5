/// @file
/// The small leaves: BOOLEAN, ENUMERATED, OCTET STRING, and open types, which are kept as they are.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>

#include "ketra/asn1/describe.hpp"
#include "ketra/asn1/read.hpp"
#include "ketra/asn1/writer.hpp"

namespace ketra {

namespace detail {

// X.690 8.3.2: at least one octet, and the first nine bits not the same.
KETRA_INLINE bool checkInteger(View content, Fault &fault) {
  if (content.empty()) return fail(fault, Reason::IntegerEmpty, content.begin());
  const bool isPadded = content.size() > 1 && content[0] == (content[1] < 0x80 ? 0x00 : 0xFF);
  return !isPadded || fail(fault, Reason::IntegerPadded, content.begin());
}

}  // namespace detail

/// BOOLEAN; any octet but 0 is TRUE (X.690 8.2.2).
template <>
struct Leaf<bool> {
  static constexpr LeafKind kind = LeafKind::Boolean;
  static constexpr uint8_t identifier = 0x01;
  static constexpr bool inSegments = false;
  KETRA_INLINE static bool read(const Tlv &tlv, bool &value, Fault &fault) {
    if (tlv.size() != 1) return detail::fail(fault, Reason::BooleanSize, tlv.content, tlv.size());
    value = *tlv.content != 0;
    return true;
  }
  static void write(bool value, Writer &out) { out.octet(value ? 0xFF : 0); }
  static View content(bool value, detail::Scratch &scratch) {
    scratch.octets[0] = value ? 0xFF : 0;
    return {scratch.octets, 1};
  }
  static std::string text(bool value) { return value ? "true" : "false"; }
};

/// NULL: all it says is that it is there.
struct Null {
  friend constexpr bool operator==(Null, Null) { return true; }
  friend constexpr bool operator!=(Null, Null) { return false; }
};

template <>
struct Leaf<Null> {
  static constexpr LeafKind kind = LeafKind::Null;
  static constexpr uint8_t identifier = 0x05;
  static constexpr bool inSegments = false;
  KETRA_INLINE static bool read(const Tlv &tlv, Null &, Fault &fault) {
    return tlv.size() == 0 || detail::fail(fault, Reason::NullSize, tlv.content, tlv.size());
  }
  static void write(Null, Writer &) {}
  static View content(Null, detail::Scratch &) { return {}; }
  static std::string text(Null) { return "null"; }
};

/// ENUMERATED over an enumeration that has `std::string_view nameOf(E)`: empty for a value without a name, which is not
/// read.
template <class E>
struct EnumeratedLeaf {
  /// @cond
  static constexpr LeafKind kind = LeafKind::Enumerated;
  static constexpr uint8_t identifier = 0x0A;
  static constexpr bool inSegments = false;
  KETRA_INLINE static bool read(const Tlv &tlv, E &value, Fault &fault) {
    const View content = tlv.contents();
    if (!detail::checkInteger(content, fault)) return false;
    value = static_cast<E>(content[0]);
    return (content.size() == 1 && !nameOf(value).empty()) ||
           detail::fail(fault, Reason::UnknownValue, content.begin(), content.back());
  }
  static void write(E value, Writer &out) { out.octet(static_cast<uint8_t>(value)); }
  static View content(E value, detail::Scratch &scratch) {
    scratch.octets[0] = static_cast<uint8_t>(value);
    return {scratch.octets, 1};
  }
  static std::string text(E value) { return std::string(nameOf(value)); }
  /// @endcond
};

/// OCTET STRING.
template <class Form>
class OctetStringOf {
 public:
  OctetStringOf() = default;
  /// From octets, copied in the owning form.
  /// @{
  OctetStringOf(View octets) : octets_(detail::contentAs<Form>(octets)) {}
  OctetStringOf(std::initializer_list<uint8_t> octets) : OctetStringOf(View(octets.begin(), octets.size())) {
    static_assert(std::is_same_v<Form, Owned>, "a view would point into a temporary");
  }
  template <class C, class = std::enable_if_t<detail::kHoldsOctets<C> && std::is_same_v<Form, Owned>>>
  OctetStringOf(const C &octets) : OctetStringOf(View(octets)) {}
  /// @}

  View octets() const KETRA_LIFETIMEBOUND { return View(octets_); }  ///< all of them
  std::size_t size() const { return octets_.size(); }                ///< how many

  friend bool operator==(const OctetStringOf &a, const OctetStringOf &b) { return a.octets() == b.octets(); }
  friend bool operator!=(const OctetStringOf &a, const OctetStringOf &b) { return !(a == b); }

 private:
  typename Form::Content octets_{};
};
using OctetString = OctetStringOf<Owned>;       ///< owns what it holds
using OctetStringView = OctetStringOf<Viewed>;  ///< points to what it was read from

template <class Form>
struct Leaf<OctetStringOf<Form>> {
  using Value = OctetStringOf<Form>;
  static constexpr LeafKind kind = LeafKind::OctetString;
  static constexpr uint8_t identifier = 0x04;
  static constexpr bool inSegments = true;
  KETRA_INLINE static bool read(const Tlv &tlv, Value &value, Fault &) {
    value = Value(tlv.contents());
    return true;
  }
  static void write(const Value &value, Writer &out) { out.octets(value.octets()); }
  static View content(const Value &value, detail::Scratch &) { return value.octets(); }
  static std::string text(const Value &value) { return detail::hexOf(value.octets()); }
};

/// A value of an open type: one complete encoding, as it is stored.
template <class Form>
class AnyOf {
 public:
  AnyOf() = default;
  /// From one complete encoding, which is not judged here.
  explicit AnyOf(View encoding) : encoding_(detail::contentAs<Form>(encoding)) {}

  View encoding() const KETRA_LIFETIMEBOUND { return View(encoding_); }  ///< all of it; none until a value is given
  /// The value as one of a type, or the fault that it has as such. A view points into what this object points to or
  /// holds.
  /// @{
  template <class T>
  Result<T> as() const &KETRA_LIFETIMEBOUND {
    return read<T>(encoding());
  }
  template <class T>
  Result<T> as() const && {
    static_assert(!isView<T> || std::is_same_v<Form, Viewed>, "a view of a temporary");
    return read<T>(encoding());
  }
  /// @}

  friend bool operator==(const AnyOf &a, const AnyOf &b) { return a.encoding() == b.encoding(); }
  friend bool operator!=(const AnyOf &a, const AnyOf &b) { return !(a == b); }

 private:
  typename Form::Content encoding_{};
};
using Any = AnyOf<Owned>;       ///< owns what it holds
using AnyView = AnyOf<Viewed>;  ///< points to what it was read from

template <class Form>
struct Leaf<AnyOf<Form>> {
  using Value = AnyOf<Form>;
  static constexpr LeafKind kind = LeafKind::Any;
  static constexpr uint8_t identifier = 0;
  static constexpr bool inSegments = false;
  static constexpr bool matches(uint8_t octet) { return (octet & ~0x20) != 0; }
  KETRA_INLINE static bool read(const Tlv &tlv, Value &value, Fault &) {
    value = Value(tlv.whole());
    return true;
  }
  static void write(const Value &value, Writer &out) { out.octets(value.encoding()); }
  static View content(const Value &value, detail::Scratch &) { return value.encoding(); }
  static std::string text(const Value &value) { return detail::hexOf(value.encoding()); }
};

}  // namespace ketra
