// Encodings as trees, taken apart and put together without help from the code under test.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace fuzz {

using Octets = std::vector<uint8_t>;
using Bytes = std::span<const uint8_t>;

struct Tlv {
  enum class Length { der, notShortest, indefinite };

  Octets tag;  // identifier octets
  Length length = Length::der;
  bool hasMembers = false;  // constructed, and its content is a row of encodings
  Octets content;           // otherwise
  std::vector<Tlv> members;

  bool isConstructed() const { return (tag[0] & 0x20) != 0; }
};

// A row of encodings, as many as there are octets; nothing when it is none. What is constructed and holds something
// else, or lies very deep, keeps its content as it is.
std::optional<std::vector<Tlv>> parse(Bytes octets);
// Exactly one encoding.
std::optional<Tlv> parseOne(Bytes octets);
Octets write(const std::vector<Tlv> &row);
inline Octets write(const Tlv &tlv) { return write(std::vector<Tlv>{tlv}); }

// Whether the octets are one encoding whose constructed parts, down to the last, hold encodings. What an open type
// holds is passed over by its length when it is read, but has to be this when it is written.
bool isWellFormed(Bytes octets);

// Whether every length is in the form of DER (X.690 10.1).
bool hasDerLengths(const Tlv &tlv);

// The octets of a string that may come in segments, one after the other.
Octets joined(const Tlv &string);

}  // namespace fuzz
