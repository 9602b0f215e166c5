/// @file
/// The words in which ASN.1 types are described. A described type is a structure over a form with one function:
/// @code
/// // BasicConstraints ::= SEQUENCE {
/// //     cA                 BOOLEAN DEFAULT FALSE,
/// //     pathLenConstraint  INTEGER (0..MAX) OPTIONAL }
/// template <class Form>
/// struct BasicConstraintsOf {
///   Default<bool, false> cA{};
///   std::optional<IntegerOf<Form>> pathLenConstraint{};
///
///   template <class Self, class Visitor>
///   static constexpr bool describe(Self &self, Visitor &visit) {
///     return visit("cA", self.cA) && visit("pathLenConstraint", self.pathLenConstraint, natural);
///   }
/// };
/// @endcode
/// Everything else is written once, over descriptions: read.hpp, write.hpp, walk.hpp, explain.hpp. What Extensions
/// holds has a name, an identifier and mostly a fixed criticality besides (objects/extensions.hpp).
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "ketra/asn1/octets.hpp"

namespace ketra {

template <class T>
class Item;  // read.hpp
template <class T, class Member = Item<T>>
class Range;  // read.hpp
template <class T>
class Field;  // field.hpp

/// The form of a value that owns all that it holds.
struct Owned {
  template <class T>
  using List = std::vector<T>;  ///< SEQUENCE OF, SET OF
  using Content = std::string;  ///< contents octets, mostly short
};
/// The form of a value that points into the octets it was read from. It never allocates.
struct Viewed {
  template <class T>
  using List = Range<T>;  ///< members read one by one, as they are come to
  using Content = View;   ///< contents octets, where they are
};
/// SEQUENCE OF or SET OF.
template <class Form, class T>
using ListOf = typename Form::template List<T>;

/// What a component says besides its name and type. Combine with `|`: context(0) | nonEmpty.
struct As {
  int16_t number = -1;             ///< of a context-specific tag, or of a named bit
  bool isExplicit = false;         ///< the tag wraps the value
  bool isSet = false;              ///< a list is a SET OF
  bool isNonEmpty = false;         ///< SIZE (1..MAX), refused when read and when set
  bool isNonEmptyWhenSet = false;  ///< SIZE (1..MAX), refused when set only
  bool isNatural = false;          ///< INTEGER (0..MAX)

  /// All that both say; the first tag, when both have one.
  friend constexpr As operator|(As a, As b) {
    return {a.number >= 0 ? a.number : b.number,
            a.isExplicit || b.isExplicit,
            a.isSet || b.isSet,
            a.isNonEmpty || b.isNonEmpty,
            a.isNonEmptyWhenSet || b.isNonEmptyWhenSet,
            a.isNatural || b.isNatural};
  }
};
/// [number] IMPLICIT, for numbers up to 30.
constexpr As context(int number) { return {static_cast<int16_t>(number)}; }
/// [number] EXPLICIT; a CHOICE is always tagged so (X.680 31.2.7).
constexpr As explicitly(int number) { return {static_cast<int16_t>(number), true}; }
/// A named bit.
constexpr As bit(int number) { return {static_cast<int16_t>(number)}; }
/// SET OF instead of SEQUENCE OF.
inline constexpr As setOf{-1, false, true};
/// SIZE (1..MAX).
inline constexpr As nonEmpty{-1, false, false, true};
/// SIZE (1..MAX) where empty lists occur in practice: they can be read, but not set.
inline constexpr As nonEmptyWhenSet{-1, false, false, false, true};
/// INTEGER (0..MAX).
inline constexpr As natural{-1, false, false, false, false, true};

/// How the members of a described type make one encoding. A type says so by `static constexpr Shape shape`.
enum class Shape : uint8_t {
  Sequence,  ///< SEQUENCE, the default
  Choice,    ///< CHOICE: describe() is one call of visit.choice(variant, Alternative...)
  Is,        ///< another name for the type of the only member
  Bits       ///< BIT STRING with named bits: bools, and visit.nameless(bits) for the rest
};

/// How the members of a value belong together: as its description says, or as those of a list (walk.hpp).
enum class Group : uint8_t { Sequence, Choice, Is, Bits, List };

/// One alternative of a CHOICE.
struct Alternative {
  const char *name;  ///< as in the ASN.1
  As as;             ///< its tag
};

/// What a leaf is.
enum class LeafKind : uint8_t {
  Boolean,
  Integer,
  Enumerated,
  BitString,
  OctetString,
  Objid,
  Time,
  Text,
  Name,
  GeneralName,
  Any,
  Null,
  Sct
};

/// A leaf: a type that is read and written as a whole. A specialisation has
/// @code
/// static constexpr LeafKind kind;
/// static constexpr uint8_t identifier;   // universal identifier octet; 0: see matches()
/// static constexpr bool inSegments;      // its encoding may be constructed of segments (X.690 8.6, 8.7)
/// static constexpr bool matches(uint8_t);       // identifier is 0 only: whether a value can begin with this octet
/// static bool read(const Tlv &, T &, Fault &);  // judges the contents; segments have been joined
/// static void write(const T &, Writer &);       // contents octets; identifier is 0: the whole encoding
/// static View content(const T &, detail::Scratch &);  // contents octets; those of some types go into the scratch
/// static std::string text(const T &);           // for people
/// @endcode
/// A type with identifier 0 reads and writes whole encodings.
///
/// Lists of a leaf that also has
/// @code
/// static bool next(Reader &, Tlv &, Fault &);  // goes past one member, whose contents are read by read()
/// @endcode
/// are an OCTET STRING of a TLS vector (RFC 8446 3.4): two octets of length, and the members, each after two octets of
/// its length.
///
/// Those of the library: bool, Null, IntegerOf, EnumeratedLeaf, BitsOf, OctetStringOf, ObjectIdentifierOf, Time
/// (GeneralizedTime), EitherTime, TextOf (any string type), DirectoryStringOf, Ia5StringOf and its like (one string
/// type), NameOf, GeneralNameOf, SctOf, and AnyOf for open types.
template <class T>
struct Leaf;

class OidLiteral;  // oid.hpp

/// What a value of an open type is, where an identifier beside it is this one. See visitOpen().
template <class T>
struct Defined {
  const OidLiteral &id;  ///< of the component beside it
};

/// A component with a DEFAULT value. It converts from T; a value equal to the default is not written (X.690 11.5),
/// unless it was read from octets that have it: these come back unchanged.
template <class T, auto D>
class Default {
 public:
  constexpr Default() noexcept {}  // defaulted, g++ 12 fails on lists of types with such members
  /// Of a value: absent when it equals the default, otherwise present.
  template <class U, class = std::enable_if_t<std::is_convertible_v<U, T> && !std::is_same_v<std::decay_t<U>, Default>>>
  constexpr Default(U &&value) : value_(std::forward<U>(value)), isPresent_(!(value_ == byDefault())) {}

  /// The value, written or not.
  constexpr T value() const { return isPresent_ ? value_ : byDefault(); }
  constexpr T operator*() const { return value(); }  ///< the same
  /// Whether the encoding has it.
  constexpr bool isPresent() const { return isPresent_; }
  /// The value of a boolean; its default when it is absent.
  template <class B = T, class = std::enable_if_t<std::is_same_v<B, bool>>>
  constexpr explicit operator bool() const {
    return value();
  }

  /// For readers and writers: the stored value, which counts when it is present.
  /// @{
  constexpr T &emplace() {
    isPresent_ = true;
    return value_;
  }
  constexpr const T &stored() const { return value_; }
  /// @}

  friend constexpr bool operator==(const Default &a, const Default &b) { return a.value() == b.value(); }
  friend constexpr bool operator!=(const Default &a, const Default &b) { return !(a == b); }

 private:
  static constexpr T byDefault() {
    if constexpr (D == decltype(D){}) {
      return T{};
    } else {
      return T(D);
    }
  }

  T value_{};
  bool isPresent_ = false;
};

namespace detail {

// Room for the contents octets of a leaf that does not hold them.
struct Scratch {
  uint8_t octets[40];
};

template <class Form>
typename Form::Content contentAs(View content) {
  if constexpr (std::is_same_v<Form, Owned>) {
    return {reinterpret_cast<const char *>(content.data()), content.size()};
  } else {
    return content;
  }
}

template <class T, class = void>
struct IsLeaf : std::false_type {};
template <class T>
struct IsLeaf<T, std::void_t<decltype(Leaf<T>::kind)>> : std::true_type {};

// The type of the members of a list; void for anything else.
template <class T>
struct MemberOf {
  using type = void;
};
template <class T>
struct MemberOf<std::vector<T>> {
  using type = T;
};
template <class T>
struct MemberOf<Range<T>> {
  using type = T;
};
template <class T>
inline constexpr bool kIsList = !std::is_void_v<typename MemberOf<T>::type>;

template <class T, class = void>
struct IsFramed : std::false_type {};
template <class T>
struct IsFramed<T, std::void_t<decltype(&Leaf<T>::next)>> : std::true_type {};
// Lists in the form of TLS.
template <class T>
inline constexpr bool kIsTlsList = IsFramed<typename MemberOf<T>::type>::value;

template <class T, class = void>
struct ShapeOf : std::integral_constant<Shape, Shape::Sequence> {};
template <class T>
struct ShapeOf<T, std::void_t<decltype(T::shape)>> : std::integral_constant<Shape, T::shape> {};

// The type of the value in a field; any other type as it is.
template <class T>
struct ValueOf {
  using type = T;
};
template <class T>
struct ValueOf<Field<T>> {
  using type = T;
};
template <class T>
inline constexpr bool kIsField = !std::is_same_v<T, typename ValueOf<T>::type>;

template <class T>
inline constexpr bool kIsDescribed = !IsLeaf<T>::value && !kIsList<T> && !kIsField<T>;
template <class T, Shape shape>
inline constexpr bool kHasShape = kIsDescribed<T> &&ShapeOf<T>::value == shape;

// The same type over views.
template <class T>
struct ViewedOf {
  using type = T;
};
template <template <class> class X>
struct ViewedOf<X<Owned>> {
  using type = X<Viewed>;
};
template <class T>
struct ViewedOf<std::vector<T>> {
  using type = Range<typename ViewedOf<T>::type>;
};

// The same type, owning.
template <class T>
struct OwnedOf {
  using type = T;
};
template <template <class> class X>
struct OwnedOf<X<Viewed>> {
  using type = X<Owned>;
};

template <class T>
constexpr uint8_t identifierOf(As as);
template <class T>
constexpr bool matches(As as, uint8_t identifier);

// Visits the only member of a type with Shape::Is.
struct IdentifierOfOnly {
  uint8_t identifier = 0;
  template <class M>
  constexpr bool operator()(const char *, M &, As as = {}) {
    identifier = identifierOf<M>(as);
    return true;
  }
};

template <class T>
constexpr uint8_t universalIdentifierOf(As as) {
  if constexpr (kIsField<T>) {
    return universalIdentifierOf<typename ValueOf<T>::type>(as);
  } else if constexpr (IsLeaf<T>::value) {
    return Leaf<T>::identifier;
  } else if constexpr (kIsTlsList<T>) {
    return 0x04;
  } else if constexpr (kIsList<T>) {
    return as.isSet ? 0x31 : 0x30;
  } else if constexpr (kHasShape<T, Shape::Bits>) {
    return 0x03;
  } else if constexpr (kHasShape<T, Shape::Choice>) {
    return 0;
  } else if constexpr (kHasShape<T, Shape::Is>) {
    using V = typename ViewedOf<T>::type;
    V value{};
    IdentifierOfOnly visit;
    V::describe(value, visit);
    return visit.identifier;
  } else {
    return 0x30;
  }
}

// The identifier octet of a value, without regard to segments; 0 where several are possible.
template <class T>
constexpr uint8_t identifierOf(As as) {
  if (as.number >= 0 && as.isExplicit) return static_cast<uint8_t>(0xA0 | as.number);
  const uint8_t universal = universalIdentifierOf<T>(as);
  return as.number < 0 ? universal : static_cast<uint8_t>(0x80 | as.number | (universal & 0x20));
}

// Whether a string of this type may come in segments.
template <class T>
constexpr bool inSegments() {
  if constexpr (IsLeaf<T>::value) {
    return Leaf<T>::inSegments;
  } else {
    return kHasShape<T, Shape::Bits> || kIsTlsList<T>;
  }
}

struct MatchOnly {
  As as;
  uint8_t identifier;
  template <class M>
  constexpr bool operator()(const char *, M &, As own = {}) {
    return matches<M>(as | own, identifier);
  }
};

struct MatchAlternative {
  uint8_t identifier;
  template <class... Ts, class... Alternatives>
  constexpr bool choice(const std::variant<Ts...> &, Alternatives... alternatives) {
    return (matches<Ts>(alternatives.as, identifier) || ...);
  }
};

// Whether a value may begin with this octet. That of a field may be primitive where it should be constructed, and the
// other way round: its fault then, and of nothing around it.
template <class T>
constexpr bool matches(As as, uint8_t identifier) {
  if constexpr (kIsField<T>) {
    using Value = typename ValueOf<T>::type;
    return matches<Value>(as, identifier) || matches<Value>(as, static_cast<uint8_t>(identifier ^ 0x20));
  } else if constexpr (IsLeaf<T>::value) {
    if constexpr (Leaf<T>::identifier == 0) {
      if (as.number < 0) return Leaf<T>::matches(identifier);
    }
  } else if constexpr (kHasShape<T, Shape::Choice>) {
    if (as.number < 0) {
      using V = typename ViewedOf<T>::type;
      V value{};
      MatchAlternative visit{identifier};
      return V::describe(value, visit);
    }
  } else if constexpr (kHasShape<T, Shape::Is>) {
    using V = typename ViewedOf<T>::type;
    V value{};
    MatchOnly visit{as, identifier};
    return V::describe(value, visit);
  }
  const uint8_t expected = identifierOf<T>(as);
  return identifier == expected || (inSegments<T>() && !as.isExplicit && identifier == (expected | 0x20));
}

// Whether this octet begins a component that is not optional. A field has any universal tag, as long as it is
// constructed or primitive as its type is: so another component is hardly ever taken for one that is missing.
template <class T>
constexpr bool fits(As as, uint8_t identifier) {
  if constexpr (kIsField<T>) {
    const int form = matches<typename ValueOf<T>::type>(as, 0x30) ? 0x20 : 0;
    if (as.number < 0 && (identifier & 0xE0) == form && identifier != form) return true;
  }
  return matches<T>(as, identifier);
}

// Checks a description when it is compiled: no component begins like an optional one before it, no alternative like
// another.
class WellFormed {
 public:
  constexpr explicit WellFormed(Shape shape) : shape_(shape) {}
  // Named bits are written when visit.nameless() is reached.
  constexpr bool isRight() const { return isRight_ && (shape_ != Shape::Bits || isEnded_); }

  template <class T>
  constexpr bool operator()(const char *, T &, As as = {}) {
    if (shape_ == Shape::Bits) {
      addBit(as.number);
    } else {
      judge<T>(as);
      if (optionals_ > 0) take<T>(as);
      optionals_ = 0;
    }
    return true;
  }
  template <class T>
  constexpr bool operator()(const char *, std::optional<T> &, As as = {}) {
    add<T>(as);
    return true;
  }
  template <class T, auto D>
  constexpr bool operator()(const char *, Default<T, D> &, As as = {}) {
    add<T>(as);
    return true;
  }
  template <class... Ts, class... Alternatives>
  constexpr bool choice(std::variant<Ts...> &, Alternatives... alternatives) {
    static_assert(sizeof...(Ts) == sizeof...(Alternatives), "each alternative has a name and a tag");
    (add<Ts>(alternatives.as), ...);
    return true;
  }
  template <class T>
  constexpr bool nameless(T &) {
    isEnded_ = true;
    return true;
  }

 private:
  // Bits with names are read and written as one word.
  constexpr void addBit(int number) {
    if (number < 0 || number > 31 || isEnded_) {
      isRight_ = false;
    } else {
      take(number);
    }
  }

  template <class Component>
  constexpr void judge(As as) {
    using T = typename ValueOf<Component>::type;
    if (as.number > 30) isRight_ = false;
    // A type with several tags cannot take another one in their place (X.680 31.2.7).
    if (as.number >= 0 && !as.isExplicit && universalIdentifierOf<T>(as) == 0) isRight_ = false;
    if ((as.isNonEmpty || as.isNonEmptyWhenSet || as.isSet) && !kIsList<T>) isRight_ = false;
    if (as.isNatural && !isInteger<T>()) isRight_ = false;
  }

  // A component that may be absent: what it may begin with, nothing up to the next one that is there may begin with.
  template <class T>
  constexpr void add(As as) {
    judge<T>(as);
    if (optionals_++ == 0) {
      for (uint32_t &taken : taken_) taken = 0;
    }
    take<T>(as);
  }
  template <class T>
  constexpr void take(As as) {
    const uint8_t only = identifierOf<T>(as);
    if (only != 0) {
      takeOctet<T>(as, only);
      takeOctet<T>(as, only ^ 0x20);
    } else {
      for (int octet = 1; octet < 256; ++octet) takeOctet<T>(as, octet);
    }
  }
  template <class T>
  constexpr void takeOctet(As as, int octet) {
    if ((octet & ~0x20) != 0 && matches<T>(as, static_cast<uint8_t>(octet))) take(octet);
  }
  constexpr void take(int number) {
    const uint32_t bit = uint32_t{1} << number % 32;
    if ((taken_[number / 32] & bit) != 0) isRight_ = false;
    taken_[number / 32] |= bit;
  }

  template <class T>
  static constexpr bool isInteger() {
    if constexpr (IsLeaf<T>::value) {
      return Leaf<T>::kind == LeafKind::Integer;
    } else {
      return false;
    }
  }

  Shape shape_;
  uint32_t taken_[8] = {};  // octets with which the optional components before may begin; or the bits
  int optionals_ = 0;
  bool isEnded_ = false;
  bool isRight_ = true;
};

template <class Visitor, class = void>
struct OpensTypes : std::false_type {};
template <class Visitor>
struct OpensTypes<Visitor, std::void_t<decltype(Visitor::kOpensTypes)>> : std::true_type {};

}  // namespace detail

/// In a description, shows an optional component of an open type that the component `id` before it defines:
/// visitOpen(visit, "statementInfo", self.statementId, self.statementInfo, Defined<QcTypeOf<Form>>{statement::type}).
/// It is read and written as it is stored; walk() and build() take it as the type that goes with the identifier, if it
/// is one.
template <class Visitor, class Id, class Member, class... Ts>
KETRA_INLINE constexpr bool visitOpen(Visitor &visit, const char *name, Id &id, Member &member, Defined<Ts>... types) {
  if constexpr (detail::OpensTypes<Visitor>::value) {
    return visit.open(name, id, member, types...);
  } else {
    return visit(name, member);
  }
}

/// Whether the description of a type, owning or a view, can be read and written without doubt. Assert it beside each
/// type.
template <class T>
constexpr bool wellFormed() {
  using V = typename detail::ViewedOf<T>::type;
  V value{};
  detail::WellFormed check(detail::ShapeOf<V>::value);
  V::describe(value, check);
  return check.isRight();
}

}  // namespace ketra
