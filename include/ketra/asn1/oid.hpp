/// @file
/// Object identifiers (X.660), held as the contents octets of their encoding (X.690 8.19): any number of arcs, any
/// size.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

#include "ketra/asn1/describe.hpp"
#include "ketra/asn1/fault.hpp"
#include "ketra/asn1/reader.hpp"
#include "ketra/asn1/writer.hpp"

namespace ketra {

/// An identifier written in the source: "2.5.29.17"_oid. A bad one does not compile as a constant expression; elsewhere
/// it is invalid() and equals nothing.
class OidLiteral {
 public:
  constexpr OidLiteral() = default;  ///< an invalid one
  /// From decimal arcs, at least two, below 2^63 and of at most 39 octets together. See invalid() for others.
  constexpr OidLiteral(const char *text, std::size_t size) {
    if (!parse(text, size)) {
      size_ = 0;
      notAnIdentifier();
    }
  }
  constexpr bool invalid() const { return size_ == 0; }  ///< whether it was made of no such text
  /// The contents octets.
  constexpr View content() const KETRA_LIFETIMEBOUND { return {octets_, size_}; }

 private:
  static void notAnIdentifier() {}  // not constexpr: reaching it in a constant expression is an error

  constexpr bool put(uint64_t number) {
    int groups = 1;
    while (groups < 10 && number >> (7 * groups) != 0) ++groups;
    if (size_ + static_cast<std::size_t>(groups) > sizeof octets_) return false;
    for (int group = groups - 1; group >= 0; --group) {
      octets_[size_++] = static_cast<uint8_t>((number >> (7 * group) & 0x7F) | (group > 0 ? 0x80 : 0));
    }
    return true;
  }

  constexpr bool parse(const char *text, std::size_t size) {
    uint64_t first = 0;
    std::size_t arcs = 0;
    for (std::size_t i = 0; i <= size; ++i, ++arcs) {
      const std::size_t start = i;
      uint64_t arc = 0;
      for (; i < size && text[i] != '.'; ++i) {
        if (text[i] < '0' || text[i] > '9' || arc > (UINT64_MAX - 80) / 10 - 1) return false;
        arc = arc * 10 + static_cast<uint64_t>(text[i] - '0');
      }
      if (i == start || (text[start] == '0' && i - start > 1)) return false;
      if (arcs == 0) {
        if (arc > 2) return false;
        first = arc;
      } else if (arcs == 1) {
        if ((first < 2 && arc > 39) || !put(first * 40 + arc)) return false;
      } else if (!put(arc)) {
        return false;
      }
    }
    return arcs >= 2;
  }

  uint8_t size_ = 0;
  uint8_t octets_[39] = {};
};

inline namespace literals {
/// "2.5.29.17"_oid.
constexpr OidLiteral operator""_oid(const char *text, std::size_t size) { return {text, size}; }
}  // namespace literals

namespace detail {

// Whether an octet is 0x80; eight at a time, zero in a word that has it after the exclusive or.
KETRA_INLINE bool hasOctet80(View content) {
  const uint8_t *at = content.begin();
  std::size_t left = content.size();
  for (; left >= 8; at += 8, left -= 8) {
    uint64_t word = 0;
    std::memcpy(&word, at, 8);
    word ^= 0x8080808080808080;
    if (((word - 0x0101010101010101) & ~word & 0x8080808080808080) != 0) return true;
  }
  for (; left > 0; ++at, --left) {
    if (*at == 0x80) return true;
  }
  return false;
}

inline bool checkEachArc(View content, Fault &fault) {
  if (content.empty()) return fail(fault, Reason::ObjidEmpty, content.begin());
  bool isStart = true;
  for (const uint8_t &octet : content) {
    if (isStart && octet == 0x80) return fail(fault, Reason::ObjidPadded, &octet);
    isStart = octet < 0x80;
  }
  return isStart || fail(fault, Reason::ObjidEnded, content.begin());
}

// X.690 8.19.2: no arc starts with the octet 0x80, and the last one ends. Nearly none has that octet at all.
KETRA_INLINE bool checkObjid(View content, Fault &fault) {
  if (KETRA_LIKELY(!content.empty() && content.back() < 0x80 && !hasOctet80(content))) return true;
  return checkEachArc(content, fault);
}

// Decimal digits of a number in groups of seven bits, `subtrahend` less. A number of more than 128 octets is written in
// hexadecimal digits of its groups, because decimal ones would take the square of the time.
inline std::string decimalOf(View groups, uint32_t subtrahend) {
  if (groups.size() <= 9) {
    uint64_t number = 0;
    for (const uint8_t octet : groups) number = number << 7 | (octet & 0x7Fu);
    return std::to_string(number - subtrahend);
  }
  if (groups.size() > 128) return "0x" + hexOf(groups);
  constexpr uint32_t kBase = 1'000'000'000;
  uint32_t limbs[36] = {};  // 128 groups are 270 digits
  std::size_t count = 1;
  for (const uint8_t octet : groups) {
    uint64_t carry = octet & 0x7Fu;
    for (std::size_t i = 0; i < count; ++i) {
      carry += uint64_t{limbs[i]} << 7;
      limbs[i] = static_cast<uint32_t>(carry % kBase);
      carry /= kBase;
    }
    if (carry != 0) limbs[count++] = static_cast<uint32_t>(carry);
  }
  for (std::size_t i = 0; subtrahend != 0; ++i) {
    const bool borrows = limbs[i] < subtrahend;
    limbs[i] = limbs[i] + (borrows ? kBase : 0) - subtrahend;
    subtrahend = borrows ? 1 : 0;
  }
  while (limbs[count - 1] == 0) --count;
  std::string text = std::to_string(limbs[count - 1]);
  for (std::size_t i = count - 1; i-- > 0;) {
    const std::string digits = std::to_string(limbs[i]);
    text.append(9 - digits.size(), '0') += digits;
  }
  return text;
}

inline std::string textOfObjid(View content) {
  std::string text;
  for (const uint8_t *at = content.begin(), *start = at; at != content.end(); start = at) {
    while ((*at++ & 0x80) != 0 && at != content.end()) {
    }
    const View arc(start, at);
    if (!text.empty()) {
      (text += '.') += decimalOf(arc, 0);
      continue;
    }
    const uint32_t root = arc.size() > 1 || arc[0] >= 80 ? 2 : arc[0] / 40;
    text = std::to_string(root) + '.' + decimalOf(arc, root * 40);
  }
  return text;
}

}  // namespace detail

/// An object identifier, owning (ObjectIdentifier) or a view of its contents octets.
template <class Form>
class ObjectIdentifierOf {
 public:
  ObjectIdentifierOf() = default;
  /// From a literal; a view points into it.
  ObjectIdentifierOf(const OidLiteral &literal) : content_(detail::contentAs<Form>(literal.content())) {}
  /// From the other form.
  template <class Other>
  explicit ObjectIdentifierOf(const ObjectIdentifierOf<Other> &other)
      : content_(detail::contentAs<Form>(other.content())) {}

  /// From contents octets, which are judged.
  static Result<ObjectIdentifierOf> ofContent(View content) {
    Fault fault;
    if (!detail::checkObjid(content, fault)) return fault;
    ObjectIdentifierOf result;
    result.content_ = detail::contentAs<Form>(content);
    return result;
  }
  /// From text such as "2.5.29.17", with arcs below 2^63.
  static Result<ObjectIdentifierOf> parse(std::string_view text) {
    static_assert(std::is_same_v<Form, Owned>, "a view would point into nothing");
    const OidLiteral literal(text.data(), text.size());
    if (literal.invalid()) return Fault{Reason::ObjidEmpty, 0, 0, nullptr};
    return ObjectIdentifierOf(literal);
  }

  /// Contents octets; none until a value is given.
  View content() const KETRA_LIFETIMEBOUND { return View(content_); }
  /// Arcs in decimal, with dots.
  std::string text() const { return detail::textOfObjid(content()); }

 private:
  friend struct Leaf<ObjectIdentifierOf>;
  typename Form::Content content_{};
};

using ObjectIdentifier = ObjectIdentifierOf<Owned>;       ///< owns what it holds
using ObjectIdentifierView = ObjectIdentifierOf<Viewed>;  ///< points to what it was read from

namespace detail {
template <class T>
struct IsOid : std::false_type {};
template <class Form>
struct IsOid<ObjectIdentifierOf<Form>> : std::true_type {};
template <>
struct IsOid<OidLiteral> : std::true_type {};
template <class A, class B>
using AreOids = std::enable_if_t<IsOid<A>::value && IsOid<B>::value>;

// The contents octets of C's arcs, one by one: whether they are these.
inline bool isContentOf(View content, const Objid &objid) {
  Reader in(content);
  const auto next = [&](uint64_t number) {
    uint64_t read = 0;
    do {
      if (in.done() || read >> 40 != 0) return false;
      read = read << 7 | (*in.at & 0x7Fu);
    } while ((*in.at++ & 0x80) != 0);
    return read == number;
  };
  if (objid.count < 2 || !next(uint64_t{objid.arcs[0]} * 40 + objid.arcs[1])) return false;
  for (uint32_t i = 2; i < objid.count; ++i) {
    if (!next(objid.arcs[i])) return false;
  }
  return in.done();
}
}  // namespace detail

/// Identifiers of any two forms and literals compare with each other; an invalid literal equals nothing. The order is
/// that of the contents octets.
/// @{
template <class A, class B, class = detail::AreOids<A, B>>
bool operator==(const A &a, const B &b) {
  return a.content() == b.content() && !a.content().empty();
}
template <class A, class B, class = detail::AreOids<A, B>>
bool operator!=(const A &a, const B &b) {
  return !(a == b);
}
template <class A, class B, class = detail::AreOids<A, B>>
bool operator<(const A &a, const B &b) {
  return a.content() < b.content();
}
template <class Form>
bool operator==(const ObjectIdentifierOf<Form> &a, const Objid &b) {
  return detail::isContentOf(a.content(), b);
}
template <class Form>
bool operator!=(const ObjectIdentifierOf<Form> &a, const Objid &b) {
  return !(a == b);
}
/// @}

/// OBJECT IDENTIFIER.
template <class Form>
struct Leaf<ObjectIdentifierOf<Form>> {
  using Value = ObjectIdentifierOf<Form>;
  static constexpr LeafKind kind = LeafKind::Objid;
  static constexpr uint8_t identifier = 0x06;
  static constexpr bool inSegments = false;
  KETRA_INLINE static bool read(const Tlv &tlv, Value &value, Fault &fault) {
    if (!detail::checkObjid(tlv.contents(), fault)) return false;
    value.content_ = detail::contentAs<Form>(tlv.contents());
    return true;
  }
  static void write(const Value &value, Writer &out) { out.octets(value.content()); }
  static View content(const Value &value, detail::Scratch &) { return value.content(); }
  static std::string text(const Value &value) { return value.text(); }
};

}  // namespace ketra

/// @cond
// By contents octets.
template <class Form>
struct std::hash<ketra::ObjectIdentifierOf<Form>> {
  std::size_t operator()(const ketra::ObjectIdentifierOf<Form> &value) const noexcept {
    return std::hash<std::string_view>{}(value.content().characters());
  }
};
/// @endcond
