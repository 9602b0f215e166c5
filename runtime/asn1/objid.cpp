#include <charconv>
#include <cstring>

#include "ketra_runtime.h"
#include "runtime/asn1/content.h"
#include "runtime/asn1/pool.h"

namespace ketra::asn1 {

namespace {

constexpr uint64_t kOnes = 0x0101010101010101;
constexpr uint64_t kHighBits = 0x8080808080808080;

uint64_t eightAt(const uint8_t *octets) {
  uint64_t word = 0;
  std::memcpy(&word, octets, sizeof word);
  return word;
}

// Whether an octet is 0x80; the only ones that can pad an arc are.
bool hasPadding(const uint8_t *octets, uint32_t length) {
  for (; length >= 8; octets += 8, length -= 8) {
    const uint64_t word = eightAt(octets) ^ kHighBits;
    if (((word - kOnes) & ~word & kHighBits) != 0) return true;
  }
  for (; length > 0; --length) {
    if (*octets++ == 0x80) return true;
  }
  return false;
}

}  // namespace

bool checkObjid(const uint8_t *content, uint32_t length, Fault &fault) {
  if (length == 0) {
    fault.set(AsnError_Objid, content) << "OBJECT IDENTIFIER content is 0 octets";
    return false;
  }
  if ((content[length - 1] & 0x80) != 0) {
    fault.set(AsnError_Objid, content) << "OBJECT IDENTIFIER ends inside an arc";
    return false;
  }
  if (!hasPadding(content, length)) return true;
  for (uint32_t i = 0; i < length; ++i) {
    if (content[i] != 0x80 || (i > 0 && content[i - 1] >= 0x80)) continue;
    fault.set(AsnError_Objid, content + i) << "OBJECT IDENTIFIER with a padded arc";
    return false;
  }
  return true;
}

uint32_t countArcs(const uint8_t *content, uint32_t length) {
  uint32_t count = 1;  // the first two arcs share a number
  for (; length >= 8; content += 8, length -= 8) {
    count += static_cast<uint32_t>(((~eightAt(content) & kHighBits) >> 7) * kOnes >> 56);  // the sum of eight octets
  }
  for (; length > 0; --length) count += *content++ >> 7 ^ 1u;
  return count;
}

bool readArcs(const uint8_t *content, uint32_t length, uint32_t *arcs) {
  const uint8_t *const end = content + length;
  uint64_t first = 0;  // two arcs in one number, up to 80 more than 32 bits hold
  uint8_t octet = 0;
  do {
    octet = *content++;
    if (first >> 40 != 0) return false;
    first = first << 7 | (octet & 0x7Fu);
  } while (octet >= 0x80);
  *arcs = first < 80 ? static_cast<uint32_t>(first / 40) : 2;
  first -= uint64_t{*arcs++} * 40;
  if (first > UINT32_MAX) return false;
  *arcs++ = static_cast<uint32_t>(first);
  while (content != end) {
    uint32_t arc = *content++;
    if (arc >= 0x80) {
      arc &= 0x7F;
      do {
        octet = *content++;
        if (arc > UINT32_MAX >> 7) return false;
        arc = arc << 7 | (octet & 0x7Fu);
      } while (octet >= 0x80);
    }
    *arcs++ = arc;
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
  const Call call{__func__, err};
  if (pool == nullptr || text == nullptr || objid == nullptr) {
    return call.fail(AsnError_NullParameter, "no pool, text or place for the identifier");
  }
  const std::size_t length = std::strlen(text);
  uint32_t count = 1;
  for (std::size_t i = 0; i < length; ++i) count += text[i] == '.' ? 1 : 0;
  if (length > UINT32_MAX / sizeof(uint32_t)) return call.fail(AsnError_Range, "an identifier of too many arcs");
  void *memory = allocate(pool, static_cast<uint32_t>(count * sizeof(uint32_t)), err);
  if (memory == nullptr) return -1;
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
  const Call call{__func__, err};
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
