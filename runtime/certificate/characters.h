// The characters of the string types that names are made of.
#pragma once

#include <cstdint>

namespace ketra::certificate {

enum class Alphabet : uint8_t { None, Utf8, Printable, Teletex, Ia5, Universal, Bmp };

// The alphabet of a primitive string with this identifier octet; None for everything else.
Alphabet alphabetOf(uint8_t identifier);

// Reads a string character by character, as Unicode code points. TeletexString is taken as Latin-1, which is what it
// holds in practice; BMPString as UTF-16.
class Characters {
 public:
  Characters(Alphabet alphabet, const uint8_t *octets, uint32_t length)
      : at_(octets), end_(octets + length), alphabet_(alphabet) {}

  // False at the end, and at octets that are no character: those are never passed.
  bool next(uint32_t *character);
  bool atEnd() const { return at_ == end_; }
  const uint8_t *at() const { return at_; }

 private:
  uint32_t sizeOfNext(uint32_t *character) const;
  uint32_t readUtf8(uint32_t *character) const;
  uint32_t readUtf16(uint32_t *character) const;
  uint32_t unit(uint32_t offset, uint32_t size) const;

  const uint8_t *at_;
  const uint8_t *end_;
  Alphabet alphabet_;
};

bool isWellFormed(Alphabet alphabet, const uint8_t *octets, uint32_t length);

inline bool isAscii(const uint8_t *octets, uint32_t length) { return isWellFormed(Alphabet::Ia5, octets, length); }
bool isPrintable(const uint8_t *octets, uint32_t length);  // X.680 41.4

// UTF-8 of a code point; returns how many octets.
uint32_t writeUtf8(uint32_t character, uint8_t octets[4]);

}  // namespace ketra::certificate
