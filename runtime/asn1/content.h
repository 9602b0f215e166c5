// The content octets of scalar types: rules, and conversion to and from the interface's values.
#pragma once

#include "runtime/asn1/tlv.h"
#include "runtime/asn1/type.h"

namespace ketra::asn1 {

// X.690 8.3: at least one octet, and not the first nine bits the same.
inline bool isIntegerContent(const uint8_t *content, uint32_t length) {
  return length == 1 || (length > 1 && content[0] != (content[1] < 0x80 ? 0x00 : 0xFF));
}

// X.690 8.6: a count of unused bits, then the bits.
inline bool isBitStringContent(const uint8_t *content, uint32_t length) {
  return length > 0 && content[0] <= 7 && (content[0] == 0 || length > 1);
}

bool isObjidContent(const uint8_t *content, uint32_t length);  // X.690 8.19
bool isTimeContent(const uint8_t *content, uint32_t length);   // X.680 46

// Whether primitive content follows the rules of its type; what is well formed but does not fit the interface does.
[[gnu::always_inline]] inline bool isContentOf(const AsnType *type, const uint8_t *content, uint32_t length) {
  switch (kindOf(type)) {
    case Kind::Boolean: return length == 1;
    case Kind::Integer:
    case Kind::Enumerated: return isIntegerContent(content, length);
    case Kind::Objid: return isObjidContent(content, length);
    case Kind::BitString: return isBitStringContent(content, length);
    case Kind::Octets: break;
    default: return true;
  }
  switch (contentOf(type)) {
    case Content::IntegerString: return isIntegerContent(content, length);
    case Content::Time: return isTimeContent(content, length);
    default: return true;
  }
}

// Says what is wrong with content that does not.
[[gnu::cold]] void explainContent(const AsnType *type, const uint8_t *content, uint32_t length, Fault &fault);
[[gnu::cold]] void explainInteger(const uint8_t *content, uint32_t length, Fault &fault, const char *name);

// Two's complement in 1 to 4 octets.
int32_t readInteger(const uint8_t *content, uint32_t length);
// The shortest form (X.690 8.3.2); returns its length, at most 4.
uint32_t writeInteger(int32_t integer, uint8_t *content);

// ---- OBJECT IDENTIFIER (X.690 8.19) ----
void explainObjid(const uint8_t *content, uint32_t length, Fault &fault);
// Number of arcs in well formed content.
uint32_t countArcs(const uint8_t *content, uint32_t length);
// Writes the arcs, `count` of them; false when one exceeds 32 bits.
bool readArcs(const uint8_t *content, uint32_t length, uint32_t count, uint32_t *arcs);
bool checkArcs(const Objid &objid, Text &reason);  // X.660 7.6
uint64_t measureArcs(const Objid &objid);
void writeArcs(const Objid &objid, uint8_t *content);

// ---- GeneralizedTime (X.680 46, X.690 11.7) ----
enum class TimeForm { Valid, OutOfRange, Malformed };
TimeForm readTime(const uint8_t *content, uint32_t length, int64_t *microseconds, Text &reason);
inline constexpr uint32_t kTimeLength = 22;  // "YYYYMMDDHHMMSS.ffffffZ"
// DER form; returns the length, at most kTimeLength.
uint32_t writeTime(int64_t microseconds, uint8_t *content);

inline constexpr int64_t kMicrosecondsPerSecond = 1'000'000;
inline constexpr int64_t kDaysInTenThousandYears = 3'652'425;
inline constexpr int64_t kTimeEnd = kDaysInTenThousandYears * 86'400 * kMicrosecondsPerSecond;

inline int64_t microsecondsOf(const Gtime &time) {
  return static_cast<int64_t>(static_cast<uint64_t>(static_cast<uint32_t>(time.high)) << 32 | time.low);
}
inline Gtime gtimeOf(int64_t microseconds) {
  const auto word = static_cast<uint64_t>(microseconds);
  return {static_cast<int32_t>(static_cast<uint32_t>(word >> 32)), static_cast<uint32_t>(word)};
}
inline bool isTime(const Gtime &time) { return microsecondsOf(time) >= 0 && microsecondsOf(time) < kTimeEnd; }

// ---- BIT STRING (X.690 8.6) ----
// Content octets of a bit string, bits beyond its length zeroed; `content` has 1 + (bits + 7) / 8 octets.
void writeBits(const uint8_t *octets, uint32_t bits, uint8_t *content);
// Bits up to the last one that is set (X.690 11.2.2).
uint32_t trimBits(const uint8_t *octets, uint32_t bits);

}  // namespace ketra::asn1
