#include <charconv>
#include <cstring>

#include "ketra_runtime.h"
#include "runtime/asn1/content.h"
#include "runtime/asn1/pool.h"

namespace ketra::asn1 {

bool checkObjid(const uint8_t *content, uint32_t length, Fault &fault) {
  if (length == 0) {
    fault.set(AsnError_Objid, content) << "OBJECT IDENTIFIER content is 0 octets";
    return false;
  }
  if ((content[length - 1] & 0x80) != 0) {
    fault.set(AsnError_Objid, content) << "OBJECT IDENTIFIER ends inside an arc";
    return false;
  }
  bool atStart = true;
  for (uint32_t i = 0; i < length; ++i) {
    if (atStart && content[i] == 0x80) {
      fault.set(AsnError_Objid, content + i) << "OBJECT IDENTIFIER with a padded arc";
      return false;
    }
    atStart = (content[i] & 0x80) == 0;
  }
  return true;
}

uint32_t countArcs(const uint8_t *content, uint32_t length) {
  uint32_t count = 1;  // the first two arcs share a number
  for (uint32_t i = 0; i < length; ++i) count += (content[i] & 0x80) == 0 ? 1 : 0;
  return count;
}

bool readArcs(const uint8_t *content, uint32_t length, uint32_t *arcs) {
  bool isFirst = true;
  for (uint32_t i = 0; i < length;) {
    uint64_t number = 0;
    uint8_t octet = 0;
    do {
      octet = content[i++];
      if (number > UINT64_MAX >> 7) return false;
      number = number << 7 | (octet & 0x7Fu);
    } while ((octet & 0x80) != 0);
    if (isFirst) {
      *arcs = number < 80 ? static_cast<uint32_t>(number / 40) : 2;
      number -= uint64_t{*arcs++} * 40;
      isFirst = false;
    }
    if (number > UINT32_MAX) return false;
    *arcs++ = static_cast<uint32_t>(number);
  }
  return true;
}

bool checkArcs(const Objid &objid, Text &reason) {
  if (objid.arcs == nullptr || objid.count < 2) {
    reason << "an object identifier has at least two arcs";
    return false;
  }
  if (objid.arcs[0] > 2 || (objid.arcs[0] < 2 && objid.arcs[1] > 39)) {
    reason << "no object identifier starts with " << objid.arcs[0] << "." << objid.arcs[1];
    return false;
  }
  return true;
}

namespace {

uint64_t firstNumber(const Objid &objid) { return uint64_t{objid.arcs[0]} * 40 + objid.arcs[1]; }

uint32_t groupsOf(uint64_t number) {
  uint32_t groups = 1;
  while ((number >>= 7) != 0) ++groups;
  return groups;
}

uint8_t *writeNumber(uint64_t number, uint8_t *out) {
  for (uint32_t group = groupsOf(number); group-- > 0;) {
    *out++ = static_cast<uint8_t>((number >> 7 * group & 0x7F) | (group > 0 ? 0x80 : 0));
  }
  return out;
}

}  // namespace

uint64_t measureArcs(const Objid &objid) {
  uint64_t length = groupsOf(firstNumber(objid));
  for (uint32_t i = 2; i < objid.count; ++i) length += groupsOf(objid.arcs[i]);
  return length;
}

void writeArcs(const Objid &objid, uint8_t *content) {
  content = writeNumber(firstNumber(objid), content);
  for (uint32_t i = 2; i < objid.count; ++i) content = writeNumber(objid.arcs[i], content);
}

}  // namespace ketra::asn1

using namespace ketra::asn1;

int32_t ObjidFromText(AsnMemObject pool, const char *text, Objid *objid, AsnErrorBlock *err) {
  const Call call{kRuntimeModule, __func__, err};
  if (pool == nullptr || text == nullptr || objid == nullptr) {
    return call.fail(AsnError_NullParameter, "no pool, text or place for the identifier");
  }
  const std::size_t length = std::strlen(text);
  uint32_t count = 1;
  for (std::size_t i = 0; i < length; ++i) count += text[i] == '.' ? 1 : 0;
  if (length > UINT32_MAX / sizeof(uint32_t)) return call.fail(AsnError_Range, "an identifier of too many arcs");
  void *memory = nullptr;
  if (allocate(pool, static_cast<uint32_t>(count * sizeof(uint32_t)), &memory, err) != 0) return -1;
  auto *arcs = static_cast<uint32_t *>(memory);
  const char *p = text;
  const char *const end = text + length;
  for (uint32_t i = 0; i < count; ++i) {
    const auto [next, error] = std::from_chars(p, end, arcs[i]);
    const bool isLast = i + 1 == count;
    if (error != std::errc{} || (isLast ? next != end : *next != '.') || (*p == '0' && next - p > 1)) {
      AsnMemObjectFree(pool, memory, nullptr);
      return call.fail(error == std::errc::result_out_of_range ? AsnError_Range : AsnError_Objid,
                       Text() << "\"" << text << "\" is no identifier: arc " << i + 1);
    }
    p = next + 1;
  }
  Text reason;
  if (!checkArcs({arcs, count}, reason)) {
    AsnMemObjectFree(pool, memory, nullptr);
    return call.fail(AsnError_Objid, reason);
  }
  *objid = {arcs, count};
  return 0;
}

int32_t ObjidToText(const Objid *objid, char *text, uint32_t size, uint32_t *length, AsnErrorBlock *err) {
  const Call call{kRuntimeModule, __func__, err};
  if (objid == nullptr || (objid->arcs == nullptr && objid->count > 0) || (text == nullptr && size > 0)) {
    return call.fail(AsnError_NullParameter, "no identifier or no place for the text");
  }
  uint64_t total = 0;
  for (uint32_t i = 0; i < objid->count; ++i) {
    char digits[12] = {'.'};
    char *const first = digits + (i > 0 ? 1 : 0);
    const char *const end = std::to_chars(first, digits + sizeof digits, objid->arcs[i]).ptr;
    const auto part = static_cast<std::size_t>(end - digits);
    if (total + part < size) std::memcpy(text + total, digits, part);
    total += part;
  }
  if (length != nullptr) *length = static_cast<uint32_t>(total < UINT32_MAX ? total : UINT32_MAX);
  if (total >= size) {
    if (size > 0) text[0] = '\0';
    return call.fail(AsnError_Range, Text() << "the text needs " << total + 1 << " octets");
  }
  text[total] = '\0';
  return 0;
}
