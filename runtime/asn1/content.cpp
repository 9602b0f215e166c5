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
  int64_t ignored = 0;
  Text reason;
  if (readTime(content, length, &ignored, reason) != TimeForm::Malformed) return true;
  fault.set(AsnError_Time, content) << reason.c_str();
  return false;
}

}  // namespace

bool checkInteger(const uint8_t *content, uint32_t length, Fault &fault, const char *name) {
  if (length == 0) {
    fault.set(AsnError_Integer, content) << name << " content is 0 octets";
    return false;
  }
  const bool padded =
      length > 1 && ((content[0] == 0x00 && content[1] < 0x80) || (content[0] == 0xFF && content[1] >= 0x80));
  if (padded) fault.set(AsnError_Integer, content) << name << " content starts with a superfluous octet";
  return !padded;
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
