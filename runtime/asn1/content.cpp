#include "runtime/asn1/content.h"

namespace ketra::asn1 {
namespace {

void explainBitString(const uint8_t *content, uint32_t length, Fault &fault) {
  Text &text = fault.set(AsnError_BitString, content) << "BIT STRING ";
  if (length == 0) {
    text << "content is 0 octets";
  } else {
    text << "of " << length - 1 << " octets with " << uint32_t{content[0]} << " unused bits";
  }
}

void explainTime(const uint8_t *content, uint32_t length, Fault &fault) {
  int64_t ignored = 0;
  Text reason;
  readTime(content, length, &ignored, reason);
  fault.set(AsnError_Time, content) << reason.c_str();
}

}  // namespace

void explainInteger(const uint8_t *content, uint32_t length, Fault &fault, const char *name) {
  Text &text = fault.set(AsnError_Integer, content) << name;
  if (length == 0) {
    text << " content is 0 octets";
  } else {
    text << " content starts with a superfluous octet";
  }
}

void explainContent(const AsnType *type, const uint8_t *content, uint32_t length, Fault &fault) {
  switch (kindOf(type)) {
    case Kind::Boolean: fault.set(AsnError_Boolean, content) << "BOOLEAN content is " << length << " octets"; return;
    case Kind::Enumerated: return explainInteger(content, length, fault, "ENUMERATED");
    case Kind::Objid: return explainObjid(content, length, fault);
    case Kind::BitString: return explainBitString(content, length, fault);
    default:
      if (contentOf(type) == Content::Time) return explainTime(content, length, fault);
      return explainInteger(content, length, fault, "INTEGER");
  }
}

int32_t readInteger(const uint8_t *content, uint32_t length) {
  uint32_t number = content[0] >= 0x80 ? UINT32_MAX : 0;
  for (uint32_t i = 0; i < length; ++i) number = number << 8 | content[i];
  return static_cast<int32_t>(number);
}

uint32_t writeInteger(int32_t integer, uint8_t *content) {
  const auto number = static_cast<uint32_t>(integer);
  uint32_t length = 1;
  while (length < 4 && integer >> (8 * length - 1) != (integer < 0 ? -1 : 0)) ++length;
  for (uint32_t i = 0; i < length; ++i) content[i] = static_cast<uint8_t>(number >> 8 * (length - 1 - i));
  return length;
}

}  // namespace ketra::asn1
