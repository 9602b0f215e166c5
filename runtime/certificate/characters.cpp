#include "runtime/certificate/characters.h"

#include <algorithm>
#include <string_view>

namespace ketra::certificate {
namespace {

bool isSurrogate(uint32_t unit) { return unit >= 0xD800 && unit <= 0xDFFF; }
bool isScalarValue(uint32_t value) { return value <= 0x10FFFF && !isSurrogate(value); }

bool isPrintableOctet(uint8_t octet) {
  return (octet >= 'A' && octet <= 'Z') || (octet >= 'a' && octet <= 'z') || (octet >= '0' && octet <= '9') ||
         std::string_view(" '()+,-./:=?").find(static_cast<char>(octet)) != std::string_view::npos;
}

}  // namespace

Alphabet alphabetOf(uint8_t identifier) {
  switch (identifier) {
    case 12: return Alphabet::Utf8;
    case 19: return Alphabet::Printable;
    case 20: return Alphabet::Teletex;
    case 22: return Alphabet::Ia5;
    case 28: return Alphabet::Universal;
    case 30: return Alphabet::Bmp;
    default: return Alphabet::None;
  }
}

bool Characters::next(uint32_t *character) {
  const uint32_t size = atEnd() ? 0 : sizeOfNext(character);
  at_ += size;
  return size > 0;
}

// Octets of the next character; 0 when there is none.
uint32_t Characters::sizeOfNext(uint32_t *character) const {
  switch (alphabet_) {
    case Alphabet::Teletex: *character = *at_; return 1;
    case Alphabet::Printable:
    case Alphabet::Ia5: *character = *at_; return *at_ < 0x80 ? 1 : 0;
    case Alphabet::Utf8: return readUtf8(character);
    case Alphabet::Bmp: return readUtf16(character);
    case Alphabet::Universal:
      if (end_ - at_ < 4) return 0;
      *character = unit(0, 4);
      return isScalarValue(*character) ? 4 : 0;
    default: return 0;
  }
}

// Exactly the well-formed sequences of RFC 3629: shortest form, no surrogates.
uint32_t Characters::readUtf8(uint32_t *character) const {
  constexpr uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
  const uint8_t lead = *at_;
  *character = lead;
  if (lead < 0x80) return 1;
  const uint32_t size = lead < 0xC0 || lead > 0xF7 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  if (size == 0 || end_ - at_ < static_cast<std::ptrdiff_t>(size)) return 0;
  uint32_t value = lead & 0x7Fu >> size;
  for (uint32_t i = 1; i < size; ++i) {
    if ((at_[i] & 0xC0) != 0x80) return 0;
    value = value << 6 | (at_[i] & 0x3Fu);
  }
  *character = value;
  return value >= kLeast[size] && isScalarValue(value) ? size : 0;
}

uint32_t Characters::readUtf16(uint32_t *character) const {
  if (end_ - at_ < 2) return 0;
  const uint32_t high = unit(0, 2);
  *character = high;
  if (!isSurrogate(high)) return 2;
  if (high >= 0xDC00 || end_ - at_ < 4) return 0;
  const uint32_t low = unit(2, 2);
  *character = 0x10000 + ((high - 0xD800) << 10) + (low - 0xDC00);
  return low >= 0xDC00 && low <= 0xDFFF ? 4 : 0;
}

uint32_t Characters::unit(uint32_t offset, uint32_t size) const {
  uint32_t value = 0;
  for (uint32_t i = 0; i < size; ++i) value = value << 8 | at_[offset + i];
  return value;
}

bool isWellFormed(Alphabet alphabet, const uint8_t *octets, uint32_t length) {
  Characters characters(alphabet, octets, length);
  uint32_t character = 0;
  while (characters.next(&character)) {
  }
  return characters.atEnd();
}

bool isPrintable(const uint8_t *octets, uint32_t length) {
  return std::all_of(octets, octets + length, isPrintableOctet);
}

uint32_t writeUtf8(uint32_t character, uint8_t octets[4]) {
  const uint32_t size = character < 0x80 ? 1 : character < 0x800 ? 2 : character < 0x10000 ? 3 : 4;
  for (uint32_t i = size - 1; i > 0; --i) {
    octets[i] = static_cast<uint8_t>(0x80 | (character & 0x3F));
    character >>= 6;
  }
  octets[0] = static_cast<uint8_t>(size == 1 ? character : (0xF00u >> size & 0xFF) | character);
  return size;
}

}  // namespace ketra::certificate
