/// @file
/// Distinguished names (RFC 5280 4.1.2.4), kept as they are stored.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "ketra/asn1/describe.hpp"
#include "ketra/asn1/oid.hpp"
#include "ketra/asn1/read.hpp"
#include "ketra/types/primitive.hpp"
#include "ketra/types/text.hpp"

namespace ketra {

// AttributeTypeAndValue ::= SEQUENCE {                           RFC 5280 4.1.2.4
//     type   AttributeType,
//     value  AttributeValue }
template <class Form>
struct AttributeTypeAndValueOf {
  ObjectIdentifierOf<Form> type{};
  AnyOf<Form> value{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("type", self.type) && visit("value", self.value);
  }
};
using AttributeTypeAndValue = AttributeTypeAndValueOf<Owned>;       ///< owns what it holds
using AttributeTypeAndValueView = AttributeTypeAndValueOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<AttributeTypeAndValueView>());

// RelativeDistinguishedName ::= SET SIZE (1..MAX) OF AttributeTypeAndValue      RFC 5280 4.1.2.4
template <class Form>
struct RelativeDistinguishedNameOf {
  static constexpr Shape shape = Shape::Is;
  ListOf<Form, AttributeTypeAndValueOf<Form>> attributes{};

  /// As RFC 4514 has it: "CN=Steve+O=Example".
  std::string text() const;

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("attributes", self.attributes, setOf | nonEmpty);
  }
};
using RelativeDistinguishedName = RelativeDistinguishedNameOf<Owned>;       ///< owns what it holds
using RelativeDistinguishedNameView = RelativeDistinguishedNameOf<Viewed>;  ///< points to what it was read from

/// Attribute types.
namespace attribute {
/// In common use (X.520, RFC 4519, RFC 2985).
/// @{
inline constexpr OidLiteral commonName = "2.5.4.3"_oid;
inline constexpr OidLiteral surname = "2.5.4.4"_oid;
inline constexpr OidLiteral serialNumber = "2.5.4.5"_oid;
inline constexpr OidLiteral countryName = "2.5.4.6"_oid;
inline constexpr OidLiteral localityName = "2.5.4.7"_oid;
inline constexpr OidLiteral stateOrProvinceName = "2.5.4.8"_oid;
inline constexpr OidLiteral streetAddress = "2.5.4.9"_oid;
inline constexpr OidLiteral organizationName = "2.5.4.10"_oid;
inline constexpr OidLiteral organizationalUnitName = "2.5.4.11"_oid;
inline constexpr OidLiteral title = "2.5.4.12"_oid;
inline constexpr OidLiteral givenName = "2.5.4.42"_oid;
inline constexpr OidLiteral dnQualifier = "2.5.4.46"_oid;
inline constexpr OidLiteral organizationIdentifier = "2.5.4.97"_oid;
inline constexpr OidLiteral userId = "0.9.2342.19200300.100.1.1"_oid;
inline constexpr OidLiteral domainComponent = "0.9.2342.19200300.100.1.25"_oid;
inline constexpr OidLiteral emailAddress = "1.2.840.113549.1.9.1"_oid;
/// @}
}  // namespace attribute

namespace detail {

// The type of string that the syntax of an attribute type demands (RFC 5280 A.1); UTF8String where it leaves a choice.
inline TextType textTypeOf(View type) {
  for (const OidLiteral &each : {attribute::countryName, attribute::serialNumber, attribute::dnQualifier}) {
    if (each.content() == type) return TextType::Printable;
  }
  for (const OidLiteral &each : {attribute::emailAddress, attribute::domainComponent}) {
    if (each.content() == type) return TextType::Ia5;
  }
  return TextType::Utf8;
}

// Judges the encoding of a Name: a SEQUENCE of relative distinguished names that are right, and none empty. Values have
// to be well formed down to the last: names are compared and written as DER.
inline bool checkName(const Tlv &tlv, Fault &fault) {
  if (tlv.identifier != 0x30) return fail(fault, Reason::OtherTag, tlv.octets, tlv.identifier, 0x30);
  // Without the items of a Range: nothing is kept.
  Tlv inner;
  for (Reader rdns = tlv.reader(); !rdns.done();) {
    RelativeDistinguishedNameView rdn;
    if (!readNext<false>(rdns, inner, rdn, fault)) return false;
    for (Reader in(rdn.attributes.octets()); !in.done();) {
      AttributeTypeAndValueView attribute;
      if (!readNext<false>(in, inner, attribute, fault)) return false;
      const View value = attribute.value.encoding();
      if ((value[0] & 0x20) != 0 && !(readOnly(value, inner, fault) && checkInside(inner, fault))) return false;
    }
  }
  return true;
}

// Whether the first list of relative distinguished names is the second, or begins with it.
enum class Within : uint8_t { No, Yes, Same };
Within compareRdns(const Range<RelativeDistinguishedNameView> &name,
                   const Range<RelativeDistinguishedNameView> &subtree);

// Keyword of an attribute type (RFC 4514 3, RFC 4519), or nothing.
std::string_view keywordOf(View type);
// One attribute value in the text form of RFC 4514 2.4.
void appendAttribute(std::string &text, View type, View value);

}  // namespace detail

/// A distinguished name, kept as the encoding that was read.
template <class Form>
class NameOf {
 public:
  /// A name without relative distinguished names.
  NameOf() : stored_(detail::contentAs<Form>(View(kEmpty))) {}
  /// From the other form.
  template <class Other>
  explicit NameOf(const NameOf<Other> &other) : stored_(detail::contentAs<Form>(other.stored())) {}

  /// From one encoding of a Name, which is judged.
  static Result<NameOf> of(View encoding) { return read<NameOf>(encoding); }

  /// The encoding, as it is stored.
  View stored() const KETRA_LIFETIMEBOUND { return View(stored_); }
  /// The relative distinguished names, most significant first.
  Range<RelativeDistinguishedNameView> rdns() const KETRA_LIFETIMEBOUND {
    Tlv tlv;
    Fault fault;
    detail::readOnly(stored(), tlv, fault);
    return Range<RelativeDistinguishedNameView>(tlv.contents());
  }
  /// The first attribute of a type from the least significant end, where names differ: its value.
  std::optional<AnyView> find(const OidLiteral &type) const KETRA_LIFETIMEBOUND {
    std::optional<AnyView> found;
    for (const auto &rdn : rdns()) {
      for (const auto &each : rdn->attributes) {
        if (each->type == type) found = each->value;
      }
    }
    return found;
  }
  bool empty() const { return rdns().empty(); }  ///< whether there are none

  /// Whether the names are the same to RFC 5280 7.1: in each relative distinguished name the same attributes in any
  /// order; strings of any type without regard to the case of ASCII letters, space at their ends and more than one
  /// space between words; other values by octets. Allocates only for more than eight attributes in one.
  template <class Other>
  bool matches(const NameOf<Other> &other) const {
    return detail::compareRdns(rdns(), other.rdns()) == detail::Within::Same;
  }
  /// Whether it begins with all relative distinguished names of the other, in the sense of matches().
  template <class Other>
  bool isWithin(const NameOf<Other> &subtree) const {
    return detail::compareRdns(rdns(), subtree.rdns()) != detail::Within::No;
  }
  /// As DER: lengths in their shortest form, the attributes of each relative distinguished name in order (X.690 11.6).
  /// Values of attributes stay as they are stored.
  Octets encode() const;

  /// RFC 4514, least significant name first, in UTF-8: "CN=Steve,O=Example\, Inc.,C=GB".
  std::string text() const;

  /// Appends a relative distinguished name of one attribute, as the string type that the syntax of the type demands;
  /// UTF8String if it leaves a choice, or if the value has characters that the demanded type has not.
  NameOf &add(const OidLiteral &type, std::string_view value) {
    static_assert(std::is_same_v<Form, Owned>, "a view cannot be changed");
    Writer out;
    const std::size_t name = out.begin(0x30);
    for (const auto &rdn : rdns()) out.octets(rdn.octets());
    const std::size_t set = out.begin(0x31);
    const std::size_t attribute = out.begin(0x30);
    out.value(0x06, type.content());
    TextType text = detail::textTypeOf(type.content());
    if (detail::firstOutside(text, View(value)) != nullptr) text = TextType::Utf8;
    out.value(static_cast<uint8_t>(text), View(value));
    out.end(attribute);
    out.end(set);
    out.end(name);
    stored_ = detail::contentAs<Form>(out.written());
    return *this;
  }

  /// By octets.
  /// @{
  friend bool operator==(const NameOf &a, const NameOf &b) { return a.stored() == b.stored(); }
  friend bool operator!=(const NameOf &a, const NameOf &b) { return !(a == b); }
  /// @}

 private:
  static constexpr uint8_t kEmpty[] = {0x30, 0x00};

  friend struct Leaf<NameOf>;
  template <class>
  friend class GeneralNameOf;
  static NameOf ofJudged(View encoding) {
    NameOf name;
    name.stored_ = detail::contentAs<Form>(encoding);
    return name;
  }

  typename Form::Content stored_;
};
using Name = NameOf<Owned>;       ///< owns what it holds
using NameView = NameOf<Viewed>;  ///< points to what it was read from

template <class Form>
struct Leaf<NameOf<Form>> {
  using Value = NameOf<Form>;
  static constexpr LeafKind kind = LeafKind::Name;
  static constexpr uint8_t identifier = 0;
  static constexpr bool inSegments = false;
  static constexpr bool matches(uint8_t octet) { return octet == 0x30; }
  static bool read(const Tlv &tlv, Value &value, Fault &fault) {
    if (!detail::checkName(tlv, fault)) return false;
    value.stored_ = detail::contentAs<Form>(tlv.whole());
    return true;
  }
  static void write(const Value &value, Writer &out) { out.octets(value.stored()); }
  static View content(const Value &value, detail::Scratch &) { return value.stored(); }
  static std::string text(const Value &value) { return value.text(); }
};

}  // namespace ketra

#include "ketra/types/name_match.hpp"
#include "ketra/types/name_text.hpp"
