#include "runtime/asn1/content.h"

namespace ketra::asn1 {
namespace {

bool checkBoolean(const uint8_t *content, uint32_t length, Fault &fault) {
  if (length == 1) return true;
  fault.set(AsnError_Boolean, content) << "BOOLEAN content is " << length << " octets";
  return false;
}

bool checkBitString(const uint8_t *content, uint32_t length, Fault &fault) {
  if (length == 0) {
    fault.set(AsnError_BitString, content) << "BIT STRING content is 0 octets";
    return false;
  }
  if (content[0] <= 7 && (content[0] == 0 || length > 1)) return true;
  fault.set(AsnError_BitString, content) << "BIT STRING of " << length - 1 << " octets with " << uint32_t{content[0]}
                                         << " unused bits";
  return false;
}

bool checkTime(const uint8_t *content, uint32_t length, Fault &fault) {
  if (isPlainTime(content, length)) return true;
  int64_t ignored = 0;
  Text reason;
  if (readTime(content, length, &ignored, reason) != TimeForm::Malformed) return true;
  fault.set(AsnError_Time, content) << reason.c_str();
  return false;
}

}  // namespace

bool failInteger(const uint8_t *content, uint32_t length, Fault &fault, const char *name) {
  Text &text = fault.set(AsnError_Integer, content) << name;
  if (length == 0) {
    text << " content is 0 octets";
  } else {
    text << " content starts with a superfluous octet";
  }
  return false;
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

bool checkContent(const AsnType *type, const uint8_t *content, uint32_t length, Fault &fault) {
  switch (kindOf(type)) {
    case Kind::Boolean: return checkBoolean(content, length, fault);
    case Kind::Integer: return checkInteger(content, length, fault);
    case Kind::Enumerated: return checkInteger(content, length, fault, "ENUMERATED");
    case Kind::Objid: return checkObjid(content, length, fault);
    case Kind::BitString: return checkBitString(content, length, fault);
    case Kind::Octets:
      switch (contentOf(type)) {
        case Content::IntegerString: return checkInteger(content, length, fault);
        case Content::Time: return checkTime(content, length, fault);
        default: return true;
      }
    default: return true;
  }
}

}  // namespace ketra::asn1
