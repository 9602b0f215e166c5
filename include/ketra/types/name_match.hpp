/// @file
/// Comparing distinguished names (RFC 5280 7.1), and their DER.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <vector>

#include "ketra/asn1/write.hpp"
#include "ketra/types/name.hpp"

namespace ketra {

namespace detail {

// The characters of a string that count: no space at its ends, one between words, ASCII letters in one case.
class FoldedText {
 public:
  static constexpr uint32_t kEnd = UINT32_MAX, kNone = UINT32_MAX - 1;

  FoldedText(TextType type, View octets) : in_(octets), type_(type) { skipSpace(); }

  // kEnd at the end, kNone at octets that are no character.
  uint32_t next() {
    if (space_) {
      space_ = false;
      return ' ';
    }
    const uint32_t character = ahead_;
    if (character >= kNone) return character;
    space_ = skipSpace();
    return character >= 'A' && character <= 'Z' ? character - 'A' + 'a' : character;
  }

 private:
  bool read() {
    if (in_.done()) return false;
    const uint8_t *const at = in_.at;
    if (nextCharacter(type_, in_, ahead_)) return true;
    // BMPString holds UTF-16 in practice, PrintableString any ASCII.
    const auto unit = [at](std::size_t i) { return uint32_t{at[i]} << 8 | at[i + 1]; };
    if (type_ == TextType::Bmp && in_.left() >= 4 && unit(0) >> 10 == 0x36 && unit(2) >> 10 == 0x37) {
      ahead_ = 0x10000 + ((unit(0) & 0x3FF) << 10 | (unit(2) & 0x3FF));
      in_.at += 4;
      return true;
    }
    ahead_ = kNone;
    return false;
  }
  // Moves to the next character but space; whether there is one, after space.
  bool skipSpace() {
    for (bool skipped = false; !in_.done(); skipped = true) {
      if (!read()) return false;
      if (ahead_ != ' ') return skipped;
    }
    ahead_ = kEnd;
    return false;
  }

  Reader in_;
  TextType type_;
  uint32_t ahead_ = kEnd;
  bool space_ = false;  // comes before what is ahead
};

// An attribute as it is compared. The order is one by what counts for a match, so that attributes can be sorted.
struct FoldedAttribute {
  View type;
  View value;  // the whole encoding; the contents of a string
  TextType text{};
  bool isText = false;

  FoldedAttribute() = default;
  explicit FoldedAttribute(const AttributeTypeAndValueView &attribute)
      : type(attribute.type.content()), value(attribute.value.encoding()) {
    for (const TextType each :
         {TextType::Utf8, TextType::Printable, TextType::Teletex, TextType::Ia5, TextType::Universal, TextType::Bmp}) {
      if (value[0] == static_cast<uint8_t>(each)) text = each, isText = true;
    }
    Tlv tlv;
    Fault ignored;
    if (!isText || !readOnly(value, tlv, ignored)) return;
    if (text == TextType::Printable) text = TextType::Ia5;
    FoldedText characters(text, tlv.contents());
    uint32_t c = 0;
    while ((c = characters.next()) < FoldedText::kNone) {
    }
    isText = c == FoldedText::kEnd;
    if (isText) value = tlv.contents();
  }

  int compare(const FoldedAttribute &other) const {
    if (type != other.type) return type < other.type ? -1 : 1;
    if (isText != other.isText) return isText ? 1 : -1;
    if (!isText) return value < other.value ? -1 : other.value < value ? 1 : 0;
    FoldedText left(text, value), right(other.text, other.value);
    for (;;) {
      const uint32_t x = left.next(), y = right.next();
      if (x != y) return x < y ? -1 : 1;
      if (x == FoldedText::kEnd) return 0;
    }
  }
};

// The attributes of one relative distinguished name, in order.
class FoldedRdn {
 public:
  FoldedRdn() = default;
  FoldedRdn(const FoldedRdn &) = delete;
  FoldedRdn &operator=(const FoldedRdn &) = delete;

  void read(const RelativeDistinguishedNameView &rdn) {
    size_ = rdn.attributes.size();
    if (size_ > kFew) many_.resize(size_);
    attributes_ = size_ > kFew ? many_.data() : few_;
    std::size_t i = 0;
    for (const auto &attribute : rdn.attributes) attributes_[i++] = FoldedAttribute(*attribute);
    if (size_ < 2) return;
    std::qsort(attributes_, size_, sizeof(FoldedAttribute), [](const void *a, const void *b) {
      return static_cast<const FoldedAttribute *>(a)->compare(*static_cast<const FoldedAttribute *>(b));
    });
  }
  bool matches(const FoldedRdn &other) const {
    if (size_ != other.size_) return false;
    for (std::size_t i = 0; i < size_; ++i) {
      if (attributes_[i].compare(other.attributes_[i]) != 0) return false;
    }
    return true;
  }

 private:
  static constexpr std::size_t kFew = 8;
  FoldedAttribute few_[kFew];
  std::vector<FoldedAttribute> many_;
  FoldedAttribute *attributes_ = few_;
  std::size_t size_ = 0;
};

inline Within compareRdns(const Range<RelativeDistinguishedNameView> &name,
                          const Range<RelativeDistinguishedNameView> &subtree) {
  if (name.octets() == subtree.octets()) return Within::Same;
  FoldedRdn left, right;
  auto at = name.begin();
  for (const auto &rdn : subtree) {
    if (at == name.end()) return Within::No;
    if (at->octets() != rdn.octets()) {
      left.read(**at);
      right.read(*rdn);
      if (!left.matches(right)) return Within::No;
    }
    ++at;
  }
  return at == name.end() ? Within::Same : Within::Yes;
}

}  // namespace detail

template <class Form>
Octets NameOf<Form>::encode() const {
  Writer out;
  const std::size_t place = out.begin(0x30);
  for (const auto &rdn : rdns()) {
    const std::size_t set = out.begin(0x31);
    for (const auto &attribute : rdn->attributes) write(*attribute, out);
    detail::sortMembers(out, set);
    out.end(set);
  }
  out.end(place);
  return out.take();
}

}  // namespace ketra
