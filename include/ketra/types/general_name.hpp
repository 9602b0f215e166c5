/// @file
/// GeneralName (RFC 5280 4.2.1.6): one of nine kinds of names.
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
#include "ketra/asn1/write.hpp"
#include "ketra/types/name.hpp"
#include "ketra/types/primitive.hpp"
#include "ketra/types/text.hpp"

namespace ketra {

/// The kinds, by the number of their tag.
enum class NameKind : uint8_t {
  otherName = 0,
  rfc822Name = 1,
  dNSName = 2,
  x400Address = 3,
  directoryName = 4,
  ediPartyName = 5,
  uniformResourceIdentifier = 6,
  iPAddress = 7,
  registeredID = 8
};

// OtherName ::= SEQUENCE {                                       RFC 5280 4.2.1.6
//     type-id  OBJECT IDENTIFIER,
//     value    [0] EXPLICIT ANY }
//
// Names without a value occur in practice, and can be read.
template <class Form>
struct OtherNameOf {
  ObjectIdentifierOf<Form> type{};  ///< type-id: `OBJECT IDENTIFIER`
  std::optional<AnyOf<Form>> value{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("type-id", self.type) && visit("value", self.value, explicitly(0));
  }
};
using OtherName = OtherNameOf<Owned>;       ///< owns what it holds
using OtherNameView = OtherNameOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<OtherNameView>());

// ORAddress ::= SEQUENCE {                                       X.411 8.5; the parts stay as they are encoded
//     built-in-standard-attributes        BuiltInStandardAttributes,
//     built-in-domain-defined-attributes  BuiltInDomainDefinedAttributes OPTIONAL,
//     extension-attributes                ExtensionAttributes OPTIONAL }
template <class Form>
struct OrAddressOf {
  AnyOf<Form> standardAttributes{};                                    ///< the SEQUENCE
  std::optional<ListOf<Form, AnyOf<Form>>> domainDefinedAttributes{};  ///< the members of the SEQUENCE OF
  std::optional<ListOf<Form, AnyOf<Form>>> extensionAttributes{};      ///< the members of the SET OF

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("standardAttributes", self.standardAttributes) &&
           visit("domainDefinedAttributes", self.domainDefinedAttributes, nonEmpty) &&
           visit("extensionAttributes", self.extensionAttributes, setOf | nonEmpty);
  }
};
using OrAddress = OrAddressOf<Owned>;       ///< owns what it holds
using OrAddressView = OrAddressOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<OrAddressView>());

// EDIPartyName ::= SEQUENCE {                                    RFC 5280 4.2.1.6
//     nameAssigner  [0] DirectoryString OPTIONAL,
//     partyName     [1] DirectoryString }
template <class Form>
struct EdiPartyNameOf {
  std::optional<DirectoryStringOf<Form>> nameAssigner{};
  DirectoryStringOf<Form> partyName{};

  template <class Self, class Visitor>
  KETRA_INLINE static constexpr bool describe(Self &self, Visitor &visit) {
    return visit("nameAssigner", self.nameAssigner, explicitly(0)) && visit("partyName", self.partyName, explicitly(1));
  }
};
using EdiPartyName = EdiPartyNameOf<Owned>;       ///< owns what it holds
using EdiPartyNameView = EdiPartyNameOf<Viewed>;  ///< points to what it was read from
static_assert(wellFormed<EdiPartyNameView>());

namespace detail {

// Which kinds are a string or octets, and may be in segments.
constexpr bool isStringKind(uint8_t number) { return number == 1 || number == 2 || number == 6 || number == 7; }

template <bool kOwning, class T>
bool judge(const Tlv &tlv, Fault &fault) {
  T value{};
  if (!readContents<kOwning>(tlv, value, {}, fault)) return false;
  if constexpr (!kOwning) fault = firstFault(value);
  return !fault;
}

std::string textOfIp(View octets);

}  // namespace detail

/// One name: its kind and its octets. Characters are not judged: a dNSName with a NUL or an
/// iPAddress of five octets is what was certified.
template <class Form>
class GeneralNameOf {
 public:
  GeneralNameOf() = default;
  /// From the other form.
  template <class Other>
  explicit GeneralNameOf(const GeneralNameOf<Other> &other)
      : content_(detail::contentAs<Form>(other.content())), kind_(other.kind()), isJudged_(other.isJudged_) {}

  NameKind kind() const { return kind_; }                 ///< which alternative it is
  bool is(NameKind kind) const { return kind_ == kind; }  ///< whether it is that one
  /// Characters or octets; of a directoryName the encoding of the Name, of what else is constructed its contents
  /// octets.
  View content() const KETRA_LIFETIMEBOUND { return View(content_); }

  /// The name as one of its kind; a fault (FaultCode_OtherKind) when it is another.
  /// @{
  Result<OtherNameView> otherName() const KETRA_LIFETIMEBOUND { return asSequence<OtherNameView>(NameKind::otherName); }
  Result<std::string_view> rfc822Name() const KETRA_LIFETIMEBOUND { return characters(NameKind::rfc822Name); }
  Result<std::string_view> dNSName() const KETRA_LIFETIMEBOUND { return characters(NameKind::dNSName); }
  Result<OrAddressView> x400Address() const KETRA_LIFETIMEBOUND {
    return asSequence<OrAddressView>(NameKind::x400Address);
  }
  Result<NameView> directoryName() const KETRA_LIFETIMEBOUND {
    if (!is(NameKind::directoryName)) return otherKind();
    return isJudged_ ? Result<NameView>(NameView::ofJudged(content())) : NameView::of(content());
  }
  Result<EdiPartyNameView> ediPartyName() const KETRA_LIFETIMEBOUND {
    return asSequence<EdiPartyNameView>(NameKind::ediPartyName);
  }
  Result<std::string_view> uniformResourceIdentifier() const KETRA_LIFETIMEBOUND {
    return characters(NameKind::uniformResourceIdentifier);
  }
  Result<View> iPAddress() const KETRA_LIFETIMEBOUND {
    if (!is(NameKind::iPAddress)) return otherKind();
    return content();
  }
  Result<ObjectIdentifierView> registeredID() const KETRA_LIFETIMEBOUND {
    if (!is(NameKind::registeredID)) return otherKind();
    return ObjectIdentifierView::ofContent(content());
  }
  /// @}

  /// A name from its kind and content(), which is not judged. Prefer dns(), uri() and the like.
  static GeneralNameOf of(NameKind kind, View content) {
    GeneralNameOf name;
    name.kind_ = kind;
    name.content_ = detail::contentAs<Form>(content);
    return name;
  }

  /// For people: the characters as they are, an address as IP text, a directoryName as RFC 4514, other kinds in hex.
  std::string text() const {
    switch (kind_) {
      case NameKind::rfc822Name:
      case NameKind::dNSName:
      case NameKind::uniformResourceIdentifier: return std::string(content().characters());
      case NameKind::iPAddress: return detail::textOfIp(content());
      case NameKind::directoryName: {
        const auto name = directoryName();
        return name ? name->text() : detail::hexOf(content());
      }
      case NameKind::registeredID: return detail::textOfObjid(content());
      default: return detail::hexOf(content());
    }
  }

  friend bool operator==(const GeneralNameOf &a, const GeneralNameOf &b) {
    return a.kind_ == b.kind_ && a.content() == b.content();
  }
  friend bool operator!=(const GeneralNameOf &a, const GeneralNameOf &b) { return !(a == b); }

 private:
  static Fault otherKind() { return {Reason::OtherKind, 0, 0, nullptr}; }

  Result<std::string_view> characters(NameKind kind) const {
    if (!is(kind)) return otherKind();
    return content().characters();
  }
  template <class T>
  Result<T> asSequence(NameKind kind) const {
    if (!is(kind)) return otherKind();
    Fault fault;
    T value{};
    const View octets = content();
    const Tlv tlv{0x30, octets.begin(), octets.begin(), octets.end(), octets.end()};
    if (!detail::readContents<false>(tlv, value, {}, fault)) return fault;
    return value;
  }

  friend struct Leaf<GeneralNameOf>;
  template <class>
  friend class GeneralNameOf;
  typename Form::Content content_{};
  NameKind kind_ = NameKind::dNSName;
  bool isJudged_ = false;  // a directoryName that was read: it need not be judged again
};
using GeneralName = GeneralNameOf<Owned>;       ///< owns what it holds
using GeneralNameView = GeneralNameOf<Viewed>;  ///< points to what it was read from
static_assert(sizeof(GeneralName) <= 40 && sizeof(GeneralNameView) <= 24);

template <class Form>
struct Leaf<GeneralNameOf<Form>> {
  using Value = GeneralNameOf<Form>;
  static constexpr LeafKind kind = LeafKind::GeneralName;
  static constexpr uint8_t identifier = 0;
  static constexpr bool inSegments = false;
  static constexpr bool kOwning = std::is_same_v<Form, Owned>;

  static constexpr bool matches(uint8_t octet) {
    if (isPlain(octet)) return true;
    const uint8_t number = octet & 0x1F;
    if ((octet & 0xC0) != 0x80 || number > 8) return false;
    const bool isConstructed = (octet & 0x20) != 0;
    return detail::isStringKind(number) || isConstructed == (number != 8);
  }
  KETRA_INLINE static bool read(const Tlv &tlv, Value &value, Fault &fault) {
    value.kind_ = static_cast<NameKind>(tlv.identifier & 0x1F);
    if (KETRA_LIKELY(isPlain(tlv.identifier))) {
      value.content_ = detail::contentAs<Form>(tlv.contents());
      return true;
    }
    // The rarer kinds take copies, so that what is being read can stay in registers.
    const Tlv copy = tlv;
    Value other;
    other.kind_ = value.kind_;
    const bool isRead = readOther(copy, other, fault);
    value = std::move(other);
    return isRead;
  }
  static void write(const Value &value, Writer &out) {
    const auto number = static_cast<uint8_t>(value.kind());
    const bool isPrimitive = detail::isStringKind(number) || number == 8;
    out.value(static_cast<uint8_t>(0x80 | number | (isPrimitive ? 0 : 0x20)), value.content());
  }
  static View content(const Value &value, detail::Scratch &) { return value.content(); }
  static std::string text(const Value &value) { return value.text(); }

 private:
  // Nearly every name: a string or octets, in one piece.
  static constexpr bool isPlain(uint8_t octet) {
    return octet >= 0x80 && octet < 0x88 && detail::isStringKind(octet & 0x1F);
  }
  static bool readOther(const Tlv &tlv, Value &value, Fault &fault) {
    bool isRight = false;
    View content = tlv.contents();
    if (detail::isStringKind(static_cast<uint8_t>(value.kind_))) {
      return detail::withSegments<kOwning>(tlv, false, fault, [&](const Tlv &whole) {
        value.content_ = detail::contentAs<Form>(whole.contents());
        return true;
      });
    }
    switch (value.kind_) {
      case NameKind::otherName: isRight = detail::judge<kOwning, OtherNameOf<Form>>(tlv, fault); break;
      case NameKind::x400Address: isRight = detail::judge<kOwning, OrAddressOf<Form>>(tlv, fault); break;
      case NameKind::ediPartyName:
        isRight = detail::judge<false, EdiPartyNameView>(tlv, fault);
        if constexpr (kOwning) {
          if (fault.reason == Reason::Segmented) return readJoined(tlv, value, fault);
        }
        break;
      case NameKind::directoryName: {
        NameOf<Viewed> name;
        isRight = detail::readTagged<false>(tlv, name, explicitly(4), fault);
        if (isRight) content = name.stored();
        break;
      }
      default: isRight = detail::checkObjid(content, fault);
    }
    if (!isRight) return false;
    value.content_ = detail::contentAs<Form>(content);
    value.isJudged_ = true;
    return true;
  }
  // An ediPartyName with strings in segments: the contents octets are those of one without.
  static bool readJoined(const Tlv &tlv, Value &value, Fault &fault) {
    EdiPartyName name;
    fault = {};
    if (!detail::readContents<true>(tlv, name, {}, fault)) return false;
    const Octets encoding = encode(name);
    Tlv joined;
    if (!detail::readOnly(View(encoding), joined, fault)) return false;
    value.content_ = detail::contentAs<Form>(joined.contents());
    value.isJudged_ = true;
    return true;
  }
};

/// Names to set.
/// @{
inline GeneralName dns(std::string_view host) { return GeneralName::of(NameKind::dNSName, View(host)); }
inline GeneralName email(std::string_view mailbox) { return GeneralName::of(NameKind::rfc822Name, View(mailbox)); }
inline GeneralName uri(std::string_view text) {
  return GeneralName::of(NameKind::uniformResourceIdentifier, View(text));
}
inline GeneralName directory(const Name &name) { return GeneralName::of(NameKind::directoryName, name.stored()); }
inline GeneralName registered(const OidLiteral &id) { return GeneralName::of(NameKind::registeredID, id.content()); }
/// 4 or 16 octets, or twice as many with a mask in name constraints.
inline GeneralName ip(View octets) { return GeneralName::of(NameKind::iPAddress, octets); }
/// Characters are not octets: ipFromText() of ketra/c.hpp reads "192.0.2.1".
GeneralName ip(std::string_view text) = delete;
/// @}

namespace detail {

// An address of 4 or 16 octets, or with a mask of as many; other lengths in hexadecimal digits.
inline std::string textOfIp(View octets) {
  const bool hasMask = octets.size() == 8 || octets.size() == 32;
  const std::size_t size = hasMask ? octets.size() / 2 : octets.size();
  if (size != 4 && size != 16) return hexOf(octets);
  std::string text;
  if (size == 4) {
    for (std::size_t i = 0; i < 4; ++i) text += (i == 0 ? "" : ".") + std::to_string(octets[i]);
  } else {
    // The longest run of zero groups, of two or more, becomes "::" (RFC 5952 4.2).
    std::size_t best = 0, bestSize = 1;
    for (std::size_t i = 0, run = 0; i < 8; ++i) {
      run = octets[2 * i] == 0 && octets[2 * i + 1] == 0 ? run + 1 : 0;
      if (run > bestSize) best = i + 1 - run, bestSize = run;
    }
    const bool hasRun = bestSize > 1;
    for (std::size_t i = 0; i < 8; ++i) {
      if (hasRun && i >= best && i < best + bestSize) {
        if (i == best) text += "::";
        continue;
      }
      if (!text.empty() && text.back() != ':') text += ':';
      const std::string digits = hexOf({octets.data() + 2 * i, 2});
      const std::size_t first = digits.find_first_not_of('0');
      text += first == std::string::npos ? "0" : digits.substr(first);
    }
  }
  if (!hasMask) return text;
  const View mask(octets.data() + size, size);
  std::size_t ones = 0;
  while (ones < size * 8 && (mask[ones / 8] & (0x80u >> ones % 8)) != 0) ++ones;
  bool isPrefix = true;
  for (std::size_t i = ones; i < size * 8; ++i) isPrefix = isPrefix && (mask[i / 8] & (0x80u >> i % 8)) == 0;
  return text + "/" + (isPrefix ? std::to_string(ones) : textOfIp(mask));
}

}  // namespace detail

}  // namespace ketra
