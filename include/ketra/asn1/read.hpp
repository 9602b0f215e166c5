/// @file
/// Reading described types: BER in (X.690 clause 8), as a value that owns or as a view. Depth is bounded by the types,
/// never by the input; a view allocates nothing.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <type_traits>
#include <utility>
#include <variant>

#include "ketra/asn1/describe.hpp"
#include "ketra/asn1/fault.hpp"
#include "ketra/asn1/reader.hpp"
#include "ketra/asn1/segments.hpp"

namespace ketra {

namespace detail {

template <bool kOwning, class T>
KETRA_INLINE bool readContents(const Tlv &tlv, T &value, As as, Fault &fault);
template <bool kOwning, class T>
KETRA_INLINE bool readTagged(const Tlv &tlv, T &value, As as, Fault &fault);
template <bool kOwning, class T>
KETRA_INLINE bool readNext(Reader &in, Tlv &tlv, T &value, Fault &fault);

inline bool failOtherTag(const Reader &in, uint8_t expected, Fault &fault) {
  if (in.done()) return fail(fault, expected != 0 ? Reason::Missing : Reason::MissingChoice, in.at, 0, expected);
  if ((*in.at & ~0x20) == 0) return fail(fault, Reason::EndOfContents, in.at);
  if (expected == 0) return fail(fault, Reason::NoAlternative, in.at, *in.at);
  return fail(fault, Reason::OtherTag, in.at, *in.at, expected);
}

// Reads the components of a SEQUENCE one after the other.
template <bool kOwning>
class ReadComponents {
 public:
  ReadComponents(const Reader &in, Fault &fault) : in_(in), fault_(fault) {}
  const Reader &rest() const { return in_; }

  template <class T>
  KETRA_INLINE bool operator()(const char *, T &member, As as = {}) {
    if (in_.done() || !fits<T>(as, *in_.at)) return failOtherTag(in_, identifierOf<T>(as), fault_);
    return next(member, as);
  }
  template <class T>
  KETRA_INLINE bool operator()(const char *, std::optional<T> &member, As as = {}) {
    if (in_.done() || !matches<T>(as, *in_.at)) return true;
    return next(member.emplace(), as);
  }
  template <class T, auto D>
  KETRA_INLINE bool operator()(const char *, Default<T, D> &member, As as = {}) {
    if (in_.done() || !matches<T>(as, *in_.at)) return true;
    return next(member.emplace(), as);
  }

 private:
  template <class T>
  KETRA_INLINE bool next(T &member, As as) {
    Tlv tlv;
    return readTlv(in_, tlv, fault_) && readTagged<kOwning>(tlv, member, as, fault_);
  }

  Reader in_;
  Fault &fault_;
};

// Takes the alternative whose tag is there.
template <bool kOwning>
class ReadAlternative {
 public:
  ReadAlternative(const Tlv &tlv, Fault &fault) : tlv_(tlv), fault_(fault) {}

  template <class... Ts, class... Alternatives>
  KETRA_INLINE bool choice(std::variant<Ts...> &value, Alternatives... alternatives) {
    bool isRead = false;
    const bool isFound = take<0>(value, isRead, alternatives...);
    return isFound ? isRead : fail(fault_, Reason::NoAlternative, tlv_.octets, tlv_.identifier);
  }

 private:
  template <std::size_t kIndex, class... Ts, class... Rest>
  KETRA_INLINE bool take(std::variant<Ts...> &value, bool &isRead, Alternative first, Rest... rest) {
    using T = std::variant_alternative_t<kIndex, std::variant<Ts...>>;
    if (matches<T>(first.as, tlv_.identifier)) {
      isRead = readTagged<kOwning>(tlv_, value.template emplace<kIndex>(), first.as, fault_);
      return true;
    }
    if constexpr (sizeof...(rest) > 0) return take<kIndex + 1>(value, isRead, rest...);
    return false;
  }

  const Tlv &tlv_;
  Fault &fault_;
};

// Reads the only member of another name for a type; the tag has been judged.
template <bool kOwning>
struct ReadOnlyMember {
  const Tlv &tlv;
  As as;
  Fault &fault;
  template <class T>
  KETRA_INLINE bool operator()(const char *, T &member, As own = {}) {
    return readContents<kOwning>(tlv, member, as | own, fault);
  }
};

// Sets the named bits of a BIT STRING, and keeps the whole string where bits beyond them are set.
struct ReadBits {
  View octets;
  std::size_t count;
  uint32_t first = firstBits(octets, count);
  std::size_t named = 0;
  KETRA_INLINE bool operator()(const char *, bool &member, As as) {
    const auto number = static_cast<std::size_t>(as.number);
    if (number >= named) named = number + 1;
    member = (first >> (31 - number) & 1) != 0;
    return true;
  }
  template <class Bits>
  KETRA_INLINE bool nameless(Bits &bits) {
    if (KETRA_UNLIKELY(count > named)) {
      const std::size_t end = lastSetBit();
      if (end > named) bits = Bits(octets, end);
    }
    return true;
  }

  // How many bits there are up to the last that is set: zero bits after it mean nothing (X.680 22.7).
  std::size_t lastSetBit() const {
    std::size_t end = count;
    while (end > 0 && (octets[(end - 1) / 8] & (0x80u >> (end - 1) % 8)) == 0) {
      end -= end % 8 == 0 && octets[end / 8 - 1] == 0 ? 8 : 1;
    }
    return end;
  }

  // The first 32, of which the first is the most significant: more have no name.
  KETRA_INLINE static uint32_t firstBits(View octets, std::size_t count) {
    uint32_t bits = octets.empty() ? 0 : uint32_t{octets[0]} << 24;
    if (octets.size() > 1) bits |= uint32_t{octets[1]} << 16;
    for (std::size_t i = 2; i < 4 && i < octets.size(); ++i) bits |= uint32_t{octets[i]} << (24 - 8 * i);
    return count < 32 ? bits & ~(0xFFFFFFFF >> count) : bits;
  }
};

// X.690 8.6.2: a count of unused bits, then the bits.
KETRA_INLINE bool checkBits(View content, Fault &fault) {
  const bool isRight = !content.empty() && content[0] <= 7 && (content[0] == 0 || content.size() > 1);
  return isRight || fail(fault, Reason::BitsUnused, content.begin(), content.empty() ? 0 : content[0], content.size());
}

template <class T>
KETRA_INLINE bool readBits(View content, T &value, Fault &fault) {
  if (!checkBits(content, fault)) return false;
  ReadBits visit{{content.data() + 1, content.size() - 1}, (content.size() - 1) * 8 - content[0]};
  return T::describe(value, visit);
}

// A string in segments: an owning value joins them.
template <bool kOwning, class Use>
bool withSegments(const Tlv &tlv, bool isBits, Fault &fault, Use &&use) {
  if constexpr (kOwning) {
    Octets joined;
    if (!joinSegments(tlv, isBits, joined, fault)) return false;
    const Tlv whole{tlv.identifier, tlv.octets, joined.data(), joined.data() + joined.size(), tlv.end};
    if (use(whole)) return true;
    fault.at = tlv.octets;  // the joined octets have no place in the input
    return false;
  } else {
    return fail(fault, Reason::Segmented, tlv.octets);
  }
}

template <bool kOwning, class T>
KETRA_INLINE bool readLeaf(const Tlv &tlv, T &value, As as, Fault &fault) {
  if constexpr (Leaf<T>::inSegments) {
    if (KETRA_UNLIKELY(tlv.isConstructed())) {
      return withSegments<kOwning>(tlv, Leaf<T>::kind == LeafKind::BitString, fault,
                                   [&](const Tlv &whole) { return Leaf<T>::read(whole, value, fault); });
    }
  }
  if (KETRA_UNLIKELY(!Leaf<T>::read(tlv, value, fault))) {
    if (tlv.size() == 0) fault.at = tlv.octets;  // there are no contents to point to
    return false;
  }
  if constexpr (Leaf<T>::kind == LeafKind::Integer) {
    if (as.isNatural && value.isNegative()) return fail(fault, Reason::Negative, tlv.content);
  }
  return true;
}

// The vector that is all of the contents of an OCTET STRING.
template <class T>
bool readTlsVector(const Tlv &string, Tlv &vector, Fault &fault) {
  Reader in = string.reader();
  return Leaf<T>::next(in, vector, fault) && (in.done() || fail(fault, Reason::TlsTrailing, in.at, in.left()));
}

// Goes past one member of a list.
template <class T>
KETRA_INLINE bool nextMember(Reader &in, Tlv &tlv, Fault &fault) {
  if constexpr (IsFramed<T>::value) {
    return Leaf<T>::next(in, tlv, fault);
  } else {
    return readTlv(in, tlv, fault);
  }
}

// How many members there are, counted as countTlvs() does.
template <class T>
std::size_t countMembersOf(Reader in) {
  if constexpr (!IsFramed<T>::value) return countTlvs(in);
  std::size_t count = 0;
  Tlv tlv;
  Fault fault;
  while (!in.done() && nextMember<T>(in, tlv, fault)) ++count;
  return count + (in.done() ? 0 : 1);
}

template <bool kOwning, class T>
KETRA_INLINE bool readList(const Tlv &tlv, T &list, As as, Fault &fault) {
  if (as.isNonEmpty && tlv.content == tlv.contentEnd) return fail(fault, Reason::EmptyList, tlv.octets);
  if constexpr (kOwning) {
    list.reserve(countMembersOf<typename MemberOf<T>::type>(tlv.reader()));
    Tlv member;
    for (Reader in = tlv.reader(); !in.done();) {
      if (!readNext<true>(in, member, list.emplace_back(), fault)) return false;
    }
  } else {
    list = T(tlv.contents());
  }
  return true;
}

// Whether a type has room for its own encoding: the part of an object that is signed.
template <class T, class = void>
struct KeepsOctets : std::false_type {};
template <class T>
struct KeepsOctets<T, std::void_t<typename T::SignedPart>> : std::is_same<typename T::SignedPart, T> {};

// What a value is made of; its tag has been judged.
template <bool kOwning, class T>
KETRA_INLINE bool readContents(const Tlv &tlv, T &value, As as, Fault &fault) {
  if constexpr (IsLeaf<T>::value) {
    return readLeaf<kOwning>(tlv, value, as, fault);
  } else if constexpr (kIsTlsList<T>) {
    Tlv vector;
    const auto readMembers = [&](const Tlv &whole) {
      return readTlsVector<typename MemberOf<T>::type>(whole, vector, fault) &&
             readList<kOwning>(vector, value, as, fault);
    };
    if (KETRA_LIKELY(!tlv.isConstructed())) return readMembers(tlv);
    return withSegments<kOwning>(tlv, false, fault, readMembers);
  } else if constexpr (kIsList<T>) {
    return readList<kOwning>(tlv, value, as, fault);
  } else if constexpr (kHasShape<T, Shape::Bits>) {
    if (KETRA_LIKELY(!tlv.isConstructed())) return readBits(tlv.contents(), value, fault);
    return withSegments<kOwning>(tlv, true, fault,
                                 [&](const Tlv &whole) { return readBits(whole.contents(), value, fault); });
  } else if constexpr (kHasShape<T, Shape::Choice>) {
    ReadAlternative<kOwning> visit(tlv, fault);
    return T::describe(value, visit);
  } else if constexpr (kHasShape<T, Shape::Is>) {
    ReadOnlyMember<kOwning> visit{tlv, as, fault};
    return T::describe(value, visit);
  } else {
    static_assert(kHasShape<T, Shape::Sequence>, "no shape that can be read");
    if constexpr (KeepsOctets<T>::value) value.signedOctets = tlv.whole();
    ReadComponents<kOwning> visit(tlv.reader(), fault);
    if (!T::describe(value, visit)) return false;
    const Reader rest = visit.rest();
    if (rest.done()) return true;
    if ((*rest.at & ~0x20) == 0) return fail(fault, Reason::EndOfContents, rest.at);
    return fail(fault, Reason::OtherComponent, rest.at, *rest.at);
  }
}

// An EXPLICIT tag wraps exactly one value.
template <bool kOwning, class T>
KETRA_INLINE bool readInside(const Tlv &tlv, T &value, As as, Fault &fault) {
  Reader in = tlv.reader();
  Tlv inner;
  if (in.done()) return fail(fault, Reason::EmptyExplicit, tlv.octets);
  if (!readTlv(in, inner, fault)) return false;
  as.number = -1;
  if (!matches<T>(as, inner.identifier)) return failOtherTag({inner.octets, inner.end}, identifierOf<T>(as), fault);
  if (!readContents<kOwning>(inner, value, as, fault)) return false;
  return in.done() || fail(fault, Reason::CrowdedExplicit, in.at);
}

// A component that matches.
template <bool kOwning, class T>
KETRA_INLINE bool readTagged(const Tlv &tlv, T &value, As as, Fault &fault) {
  if constexpr (kIsField<T>) {
    value = T(tlv.whole(), as);
    return true;
  } else if (!as.isExplicit) {
    return readContents<kOwning>(tlv, value, as, fault);
  } else {
    return readInside<kOwning>(tlv, value, as, fault);
  }
}

// One encoding that is already there, of the type by its own tag.
template <bool kOwning, class T>
KETRA_INLINE bool readWhole(const Tlv &tlv, T &value, Fault &fault) {
  if (!matches<T>({}, tlv.identifier)) {
    return failOtherTag({tlv.octets, tlv.end}, identifierOf<T>({}), fault);
  }
  return readContents<kOwning>(tlv, value, {}, fault);
}

// The next encoding, which is one of the type by its own tag.
template <bool kOwning, class T>
KETRA_INLINE bool readNext(Reader &in, Tlv &tlv, T &value, Fault &fault) {
  if constexpr (IsFramed<T>::value) {
    return Leaf<T>::next(in, tlv, fault) && Leaf<T>::read(tlv, value, fault);
  } else if constexpr (universalIdentifierOf<T>({}) != 0) {
    // The compiler sees that the tag is none of the odd ones.
    if (KETRA_LIKELY(matches<T>({}, *in.at))) {
      return readTlv(in, tlv, fault) && readContents<kOwning>(tlv, value, {}, fault);
    }
  }
  return readTlv(in, tlv, fault) && readWhole<kOwning>(tlv, value, fault);
}

}  // namespace detail

/// Whether a type is a view, or holds nothing that could be one.
template <class T>
inline constexpr bool isView = std::is_same_v<T, typename detail::ViewedOf<T>::type>;

/// A member of a list, or the result of view(): a value or a fault, with its octets. Asking for the value of a faulty
/// one ends the process, in every build.
template <class T>
class Item {
 public:
  explicit operator bool() const { return !fault_; }  ///< whether it is good
  /// The value; of a faulty one the process ends.
  /// @{
  const T &operator*() const &KETRA_LIFETIMEBOUND {
    if (fault_) std::abort();
    return value_;
  }
  T operator*() && {  ///< the same
    if (fault_) std::abort();
    return value_;
  }
  const T *operator->() const &KETRA_LIFETIMEBOUND { return &**this; }  ///< the same
  /// @}
  /// What it points to would end with this temporary: name the item first.
  const T *operator->() && = delete;
  const Fault &fault() const { return fault_; }  ///< what is wrong; Reason::None when it is good
  /// The whole encoding; of what has no end, all that is left.
  View octets() const { return octets_; }

  /// What cannot be read.
  static Item faulty(View octets, const Fault &fault) {
    Item item;
    item.octets_ = octets;
    item.fault_ = fault;
    return item;
  }

 private:
  template <class, class>
  friend class Range;
  template <class>
  friend class Field;
  template <class U>
  friend Item<U> view(View octets);

  T value_{};
  Fault fault_{};
  View octets_{};
};

/// The members of a list in a view: an input range that can be walked any number of times. Each is read when the
/// iterator reaches it, and is good or faulty by itself; octets that cannot be split are one faulty member at the end.
/// A type derived from Item in its place has `void reached()`, which is called for each member.
template <class T, class Member>
class Range {
 public:
  constexpr Range() = default;  ///< without members
  /// Of contents octets: members side by side.
  constexpr explicit Range(View contents) : contents_(contents) {}

  class Iterator {
   public:
    /// What std::iterator_traits wants.
    /// @{
    using iterator_category = std::input_iterator_tag;
    using value_type = Member;
    using difference_type = std::ptrdiff_t;
    using pointer = const Member *;
    using reference = const Member &;
    /// @}

    Iterator() = default;
    KETRA_INLINE explicit Iterator(View contents) : in_(contents) { read(); }
    /// The member, held by the iterator until it moves on.
    reference operator*() const { return item_; }
    pointer operator->() const { return &item_; }
    KETRA_INLINE Iterator &operator++() {
      read();
      return *this;
    }
    void operator++(int) { read(); }
    friend bool operator==(const Iterator &a, const Iterator &b) {
      return a.item_.octets().data() == b.item_.octets().data();
    }
    friend bool operator!=(const Iterator &a, const Iterator &b) { return !(a == b); }

   private:
    KETRA_INLINE void read() {
      if (in_.done()) {
        item_.octets_ = {};  // as those of end()
        return;
      }
      // What cold functions see are copies: the iterator itself stays in registers.
      Fault fault;
      Tlv tlv;
      const uint8_t *const start = in_.at;
      if constexpr (!detail::IsLeaf<T>::value) item_.value_ = kEmpty;  // components that are absent
      item_.fault_.reason = Reason::None;
      if (!detail::readNext<false>(in_, tlv, item_.value_, fault)) {
        item_.fault_ = fault;
        if (in_.at == start) in_.at = in_.end;  // no header: it is all that is left
      }
      item_.octets_ = View(start, in_.at);
      if constexpr (!std::is_same_v<Member, Item<T>>) item_.reached();
    }

    // A constant, of which compilers see that all of it is there.
    static constexpr T kEmpty{};

    Reader in_;
    Member item_;
  };

  /// The first member, and the end; reading happens here and at `++`.
  /// @{
  KETRA_INLINE Iterator begin() const { return Iterator(contents_); }
  Iterator end() const { return {}; }  ///< the end
  /// @}
  bool empty() const { return contents_.empty(); }  ///< whether there are no members, not even faulty ones
  /// How many members there are, by their headers alone.
  std::size_t size() const { return detail::countMembersOf<T>(Reader(contents_)); }
  /// The contents octets.
  View octets() const { return contents_; }

 private:
  View contents_;
};

namespace detail {

// A good member of a list in either form, or null.
template <class T>
const T *goodMember(const T &member) {
  return &member;
}
template <class T>
const T *goodMember(const Item<T> &member) {
  return member ? &*member : nullptr;
}

}  // namespace detail

/// Views octets that are exactly one value. The result says whether the value itself is good; members of its lists are
/// judged when they are reached, or all at once by firstFault().
template <class T>
KETRA_INLINE Item<T> view(View octets) {
  static_assert(isView<T>, "the owning form is read by read()");
  Item<T> item;
  item.octets_ = octets;
  Tlv tlv;
  Fault fault;
  if (!detail::readOnly(octets, tlv, fault) || !detail::readWhole<false>(tlv, item.value_, fault)) item.fault_ = fault;
  return item;
}

/// Reads octets that are exactly one value into one that owns all it holds; any fault inside is its fault. The fault
/// points into the octets.
template <class T>
Result<T> read(View octets) {
  Fault fault;
  T value{};
  Tlv tlv;
  if (!detail::readOnly(octets, tlv, fault) || !detail::readWhole<!isView<T>>(tlv, value, fault)) return fault;
  return value;
}

/// The owning value of a view: its octets are read again, and strings in segments joined.
template <class T>
Result<typename detail::OwnedOf<T>::type> own(const Item<T> &item) {
  return read<typename detail::OwnedOf<T>::type>(item.octets());
}

namespace detail {

// Looks into all that a view has not: the members of its lists.
struct FindFault {
  Fault fault;

  template <class T>
  bool operator()(const char *, const T &member, As = {}) {
    return look(member);
  }
  template <class T>
  bool operator()(const char *, const std::optional<T> &member, As = {}) {
    return !member || look(*member);
  }
  template <class T, auto D>
  bool operator()(const char *, const Default<T, D> &, As = {}) {
    return true;
  }
  template <class... Ts, class... Alternatives>
  bool choice(const std::variant<Ts...> &value, Alternatives...) {
    return std::visit([this](const auto &alternative) { return this->look(alternative); }, value);
  }
  template <class T>
  bool nameless(const T &) {
    return true;
  }

  // False at the first fault.
  template <class T>
  bool look(const T &value) {
    if constexpr (kIsList<T>) {
      // Without a Range: members are looked at and not kept.
      Tlv tlv;
      for (Reader in(value.octets()); !in.done();) {
        typename MemberOf<T>::type member{};
        Fault found;
        if (!readNext<false>(in, tlv, member, found)) {
          fault = found;
          return false;
        }
        if (!look(member)) return false;
      }
    } else if constexpr (kIsField<T>) {
      const auto item = value.value();
      fault = item.fault();
      return item && look(*item);
    } else if constexpr (kIsDescribed<T>) {
      return T::describe(value, *this);
    }
    return true;
  }
};

}  // namespace detail

/// The first fault anywhere in a view, or none: for decisions that depend on all of it.
/// @{
template <class T>
Fault firstFault(const T &viewed) {
  static_assert(isView<T>, "an owning value has no fault");
  detail::FindFault find;
  find.look(viewed);
  return find.fault;
}
template <class T>
Fault firstFault(const Item<T> &item) {
  return item ? firstFault(*item) : item.fault();
}
/// @}

}  // namespace ketra
