// Identifier, length and end-of-contents octets (X.690 8.1), without a type.
#pragma once

#include <cstddef>
#include <cstdint>

#include "runtime/asn1/arena.h"
#include "runtime/asn1/error.h"

namespace ketra::asn1 {

// What is wrong with an encoding, and where. Filled only when it is.
struct Fault {
  uint32_t code = 0;
  const uint8_t *at = nullptr;
  Text text;

  [[gnu::cold]] Text &set(uint32_t errorCode, const uint8_t *where) {
    code = errorCode;
    at = where;
    return text;
  }
};

struct Header {
  uint8_t identifier;  // first identifier octet; its low five bits are 31 in the high-tag-number form
  bool indefinite;
  bool der;         // the length has its DER form
  uint32_t size;    // octets of identifier and length
  uint32_t length;  // of the content; 0 when indefinite

  bool constructed() const { return (identifier & 0x20) != 0; }
};

bool readHeaderSlow(const uint8_t *p, const uint8_t *end, Header &header, Fault &fault);

// Reads the header at `p` and makes sure that a definite content ends before `end`.
inline bool readHeader(const uint8_t *p, const uint8_t *end, Header &header, Fault &fault) {
  if (end - p >= 2 && (p[0] & 0x1F) != 0x1F && p[1] < 0x80 && p[1] <= end - p - 2) [[likely]] {
    header = {p[0], false, true, 2, p[1]};
    return true;
  }
  Header other{};  // so that the address of `header` is not taken, and it can live in registers
  const bool isRead = readHeaderSlow(p, end, other, fault);
  header = other;
  return isRead;
}

// End-of-contents octets at `p`. A lone or overlong one is no EOC and fails as an unexpected tag.
inline bool isEndOfContents(const uint8_t *p, const uint8_t *end) { return end - p >= 2 && p[0] == 0 && p[1] == 0; }

// The end of the complete encoding at `p`, or null. Definite contents are skipped unread; indefinite ones are walked,
// with a counter for their nesting.
const uint8_t *skipValue(const uint8_t *p, const uint8_t *end, Fault &fault);

// Whether these octets are exactly one complete encoding.
bool isComplete(const uint8_t *octets, uint32_t length, Fault &fault);

enum class Lengths { Der, Other, Malformed };
// Whether every length in one complete encoding, at any depth, has its DER form (X.690 10.1).
Lengths checkLengths(const uint8_t *octets, uint32_t length, Fault &fault);

// The same encoding with every length in DER form, in the arena; false on a fault or without memory.
bool rewriteLengths(Arena &arena, const uint8_t *octets, uint32_t length, const uint8_t **rewritten,
                    uint32_t *rewrittenLength, Fault &fault);

struct Encoding {
  AsnOct whole;
  AsnOct content;
  uint8_t identifier;
};

// Walks encodings that stand side by side. They were read before, and their lengths are DER.
class Walk {
 public:
  explicit Walk(const AsnOct &content) : at_(content.octets), end_(content.octets + content.length) {}

  bool next(Encoding *encoding) {
    if (at_ == end_) return false;
    Fault fault;
    Header header{};
    readHeader(at_, end_, header, fault);
    *encoding = {{at_, header.size + header.length}, {at_ + header.size, header.length}, header.identifier};
    at_ += encoding->whole.length;
    return true;
  }

 private:
  const uint8_t *at_;
  const uint8_t *end_;
};

// Length octets in DER form, written backwards from `end`; returns how many (at most 5).
uint32_t writeLength(uint8_t *end, uint32_t length);

}  // namespace ketra::asn1
