/// @file
/// Character strings, which keep the type that they were read as.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

#include "ketra/asn1/describe.hpp"
#include "ketra/types/primitive.hpp"

namespace ketra {

/// The string types, by their universal tag number.
enum class TextType : uint8_t {
  Utf8 = 12,
  Numeric = 18,
  Printable = 19,
  Teletex = 20,
  Ia5 = 22,
  Visible = 26,
  General = 27,
  Universal = 28,
  Bmp = 30
};

namespace detail {

// Bits for the tag numbers of string types: of all above, and of those of DirectoryString. A loop over them would take
// the compiler long in each wellFormed().
constexpr uint32_t bitOf(TextType type) { return uint32_t{1} << static_cast<unsigned>(type); }
inline constexpr uint32_t kDirectoryTags = bitOf(TextType::Utf8) | bitOf(TextType::Printable) |
                                           bitOf(TextType::Teletex) | bitOf(TextType::Universal) | bitOf(TextType::Bmp);
inline constexpr uint32_t kTextTags =
    kDirectoryTags | bitOf(TextType::Numeric) | bitOf(TextType::Ia5) | bitOf(TextType::Visible);

// The next character of UTF-8 (RFC 3629); false where there is none.
inline bool nextUtf8(Reader &in, uint32_t &character) {
  const uint8_t first = *in.at;
  std::size_t more = 0;
  if (first < 0x80) {
    character = first;
  } else if (first >= 0xC2 && first < 0xE0) {
    character = first & 0x1Fu, more = 1;
  } else if (first >= 0xE0 && first < 0xF0) {
    character = first & 0x0Fu, more = 2;
  } else if (first >= 0xF0 && first < 0xF5) {
    character = first & 0x07u, more = 3;
  } else {
    return false;
  }
  if (in.left() <= more) return false;
  for (std::size_t i = 1; i <= more; ++i) {
    if ((in.at[i] & 0xC0) != 0x80) return false;
    character = character << 6 | (in.at[i] & 0x3Fu);
  }
  const uint32_t least = more == 1 ? 0x80 : more == 2 ? 0x800 : more == 3 ? 0x10000 : 0;
  if (character < least || character > 0x10FFFF || (character >= 0xD800 && character < 0xE000)) return false;
  in.at += 1 + more;
  return true;
}

inline void appendUtf8(std::string &text, uint32_t character) {
  const auto put = [&text](uint32_t octet) { text += static_cast<char>(octet); };
  if (character < 0x80) return put(character);
  if (character < 0x800) {
    put(0xC0 | character >> 6);
  } else if (character < 0x10000) {
    put(0xE0 | character >> 12);
    put(0x80 | (character >> 6 & 0x3F));
  } else {
    put(0xF0 | character >> 18);
    put(0x80 | (character >> 12 & 0x3F));
    put(0x80 | (character >> 6 & 0x3F));
  }
  put(0x80 | (character & 0x3F));
}

constexpr bool isPrintable(uint8_t c) {
  if ((c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9')) return true;
  for (const char other : {' ', '\'', '(', ')', '+', ',', '-', '.', '/', ':', '=', '?'}) {
    if (c == static_cast<uint8_t>(other)) return true;
  }
  return false;
}

// The next character of a string of this type; false where the octets are none.
inline bool nextCharacter(TextType type, Reader &in, uint32_t &character) {
  const std::size_t unit = type == TextType::Bmp ? 2 : type == TextType::Universal ? 4 : 1;
  if (type == TextType::Utf8) return nextUtf8(in, character);
  if (in.left() < unit) return false;
  character = 0;
  for (std::size_t i = 0; i < unit; ++i) character = character << 8 | in.at[i];
  const auto octet = static_cast<uint8_t>(character);
  switch (type) {
    case TextType::Numeric:
      if (octet != ' ' && (octet < '0' || octet > '9')) return false;
      break;
    case TextType::Printable:
      if (!isPrintable(octet)) return false;
      break;
    case TextType::Ia5:
      if (octet >= 0x80) return false;
      break;
    case TextType::Visible:
      if (octet < 0x20 || octet >= 0x7F) return false;
      break;
    case TextType::Teletex: break;  // read as ISO 8859-1, which is what is put into it
    default:
      if (character > 0x10FFFF || (character >= 0xD800 && character < 0xE000)) return false;
  }
  in.at += unit;
  return true;
}

// The first octet outside the alphabet of the type, or null.
inline const uint8_t *firstOutside(TextType type, View octets) {
  uint32_t character = 0;
  for (Reader in(octets); !in.done();) {
    if (!nextCharacter(type, in, character)) return in.at;
  }
  return nullptr;
}

}  // namespace detail

/// A character string: octets, and the type that they are. Octets outside the alphabet of the type can be read;
/// hasOutside() reports them.
template <class Form>
class TextOf {
 public:
  TextOf() = default;
  constexpr explicit TextOf(TextType type) : type_(type) {}  ///< no characters, of that type
  /// Octets of a string type, which are not judged; see hasOutside().
  TextOf(TextType type, View octets) : octets_(detail::contentAs<Form>(octets)), type_(type) {}
  /// A UTF8String.
  template <class C,
            class = std::enable_if_t<std::is_convertible_v<const C &, std::string_view> && std::is_same_v<Form, Owned>>>
  TextOf(const C &text) : TextOf(TextType::Utf8, View(std::string_view(text))) {}

  TextType type() const { return type_; }                            ///< which string type it is
  View octets() const KETRA_LIFETIMEBOUND { return View(octets_); }  ///< in the encoding of that type
  /// Whether octets are outside the alphabet of the type.
  bool hasOutside() const { return detail::firstOutside(type_, octets()) != nullptr; }
  /// In UTF-8. An octet outside the alphabet becomes U+FFFD; TeletexString is read as ISO 8859-1.
  std::string utf8() const {
    std::string text;
    uint32_t character = 0;
    for (Reader in(octets()); !in.done();) {
      if (!detail::nextCharacter(type_, in, character)) {
        character = 0xFFFD;
        ++in.at;
      }
      detail::appendUtf8(text, character);
    }
    return text;
  }

  friend bool operator==(const TextOf &a, const TextOf &b) { return a.type_ == b.type_ && a.octets() == b.octets(); }
  friend bool operator!=(const TextOf &a, const TextOf &b) { return !(a == b); }

 private:
  typename Form::Content octets_{};
  TextType type_ = TextType::Utf8;
};
using Text = TextOf<Owned>;       ///< owns what it holds
using TextView = TextOf<Viewed>;  ///< points to what it was read from

/// DirectoryString (RFC 5280 4.1.2.4), DisplayText (4.2.1.4), and any other CHOICE of string types: whichever it is.
template <class Form>
struct Leaf<TextOf<Form>> {
  using Value = TextOf<Form>;
  static constexpr LeafKind kind = LeafKind::Text;
  static constexpr uint8_t identifier = 0;
  static constexpr bool inSegments = true;
  static constexpr bool matches(uint8_t octet) {
    return octet < 0x40 && (detail::kTextTags >> (octet & 0x1F) & 1) != 0;
  }
  static bool read(const Tlv &tlv, Value &value, Fault &) {
    value = Value(static_cast<TextType>(tlv.identifier & 0x1F), tlv.contents());
    return true;
  }
  static void write(const Value &value, Writer &out) { out.value(static_cast<uint8_t>(value.type()), value.octets()); }
  static View content(const Value &value, detail::Scratch &) { return value.octets(); }
  static std::string text(const Value &value) { return value.utf8(); }
};

/// DirectoryString (RFC 5280 4.1.2.4): one of five string types.
template <class Form>
struct DirectoryStringOf : TextOf<Form> {
  using TextOf<Form>::TextOf;
};
using DirectoryString = DirectoryStringOf<Owned>;       ///< owns what it holds
using DirectoryStringView = DirectoryStringOf<Viewed>;  ///< points to what it was read from

/// The octets have to be whole characters; UTF-8 is judged.
template <class Form>
struct Leaf<DirectoryStringOf<Form>> : Leaf<TextOf<Form>> {
  using Value = DirectoryStringOf<Form>;
  static constexpr bool matches(uint8_t octet) {
    return octet < 0x40 && (detail::kDirectoryTags >> (octet & 0x1F) & 1) != 0;
  }
  static bool read(const Tlv &tlv, Value &value, Fault &fault) {
    Leaf<TextOf<Form>>::read(tlv, value, fault);
    const std::size_t unit = value.type() == TextType::Bmp ? 2 : value.type() == TextType::Universal ? 4 : 1;
    if (tlv.size() % unit != 0) return detail::fail(fault, Reason::OddLength, tlv.octets, tlv.size());
    if (value.type() != TextType::Utf8) return true;
    const uint8_t *const outside = detail::firstOutside(TextType::Utf8, tlv.contents());
    return outside == nullptr || detail::fail(fault, Reason::Alphabet, outside, *outside);
  }
};

namespace detail {

// A string of one type.
template <class Form, TextType kType>
struct OneTypeOf : TextOf<Form> {
  static constexpr TextType kTextType = kType;

  constexpr OneTypeOf() : TextOf<Form>(kType) {}
  explicit OneTypeOf(View octets) : TextOf<Form>(kType, octets) {}
  template <class C,
            class = std::enable_if_t<std::is_convertible_v<const C &, std::string_view> && std::is_same_v<Form, Owned>>>
  OneTypeOf(const C &text) : OneTypeOf(View(std::string_view(text))) {}
};
template <class T>
struct OneTypeLeaf {
  static constexpr LeafKind kind = LeafKind::Text;
  static constexpr uint8_t identifier = static_cast<uint8_t>(T::kTextType);
  static constexpr bool inSegments = true;
  static bool read(const Tlv &tlv, T &value, Fault &) {
    value = T(tlv.contents());
    return true;
  }
  static void write(const T &value, Writer &out) { out.octets(value.octets()); }
  static View content(const T &value, detail::Scratch &) { return value.octets(); }
  static std::string text(const T &value) { return value.utf8(); }
};

// UTF-8 as BMPString; what has no place in it becomes U+FFFD.
inline std::string bmpOf(std::string_view utf8) {
  std::string octets;
  uint32_t character = 0;
  for (Reader in{View(utf8)}; !in.done();) {
    if (!nextUtf8(in, character)) {
      character = 0xFFFD;
      ++in.at;
    }
    if (character > 0xFFFF) character = 0xFFFD;
    octets += static_cast<char>(character >> 8);
    octets += static_cast<char>(character & 0xFF);
  }
  return octets;
}

}  // namespace detail

/// Strings of one type, from octets or characters. Those outside its alphabet can be read, as of TextOf, but not set.
/// @{
template <class Form>
struct Utf8StringOf : detail::OneTypeOf<Form, TextType::Utf8> {
  using detail::OneTypeOf<Form, TextType::Utf8>::OneTypeOf;
};
template <class Form>
struct PrintableStringOf : detail::OneTypeOf<Form, TextType::Printable> {
  using detail::OneTypeOf<Form, TextType::Printable>::OneTypeOf;
};
template <class Form>
struct Ia5StringOf : detail::OneTypeOf<Form, TextType::Ia5> {
  using detail::OneTypeOf<Form, TextType::Ia5>::OneTypeOf;
};
template <class Form>
struct GeneralStringOf : detail::OneTypeOf<Form, TextType::General> {
  using detail::OneTypeOf<Form, TextType::General>::OneTypeOf;
};
/// Characters are given in UTF-8; those beyond U+FFFF become U+FFFD.
template <class Form>
struct BmpStringOf : detail::OneTypeOf<Form, TextType::Bmp> {
  constexpr BmpStringOf() = default;
  /// From octets, or from characters.
  /// @{
  explicit BmpStringOf(View octets) : detail::OneTypeOf<Form, TextType::Bmp>(octets) {}
  template <class C,
            class = std::enable_if_t<std::is_convertible_v<const C &, std::string_view> && std::is_same_v<Form, Owned>>>
  BmpStringOf(const C &text) {
    const std::string octets = detail::bmpOf(text);
    *this = BmpStringOf(View(octets));
  }
  /// @}
};
/// @}

/// The same, but that any string type can be read, and stays what it is: where certificates are not as their standard
/// has it.
/// @{
template <class Form>
struct PrintableTextOf : detail::OneTypeOf<Form, TextType::Printable> {
  using detail::OneTypeOf<Form, TextType::Printable>::OneTypeOf;
};
template <class Form>
struct Ia5TextOf : detail::OneTypeOf<Form, TextType::Ia5> {
  using detail::OneTypeOf<Form, TextType::Ia5>::OneTypeOf;
};
/// @}

/// @cond
template <class Form>
struct Leaf<PrintableTextOf<Form>> : Leaf<TextOf<Form>> {};
template <class Form>
struct Leaf<Ia5TextOf<Form>> : Leaf<TextOf<Form>> {};
template <class Form>
struct Leaf<Utf8StringOf<Form>> : detail::OneTypeLeaf<Utf8StringOf<Form>> {};
template <class Form>
struct Leaf<PrintableStringOf<Form>> : detail::OneTypeLeaf<PrintableStringOf<Form>> {};
template <class Form>
struct Leaf<Ia5StringOf<Form>> : detail::OneTypeLeaf<Ia5StringOf<Form>> {};
template <class Form>
struct Leaf<GeneralStringOf<Form>> : detail::OneTypeLeaf<GeneralStringOf<Form>> {};
template <class Form>
struct Leaf<BmpStringOf<Form>> : detail::OneTypeLeaf<BmpStringOf<Form>> {};
/// @endcond

}  // namespace ketra
