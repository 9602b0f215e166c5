#include <charconv>
#include <cstring>

#include "ketra/ketra_runtime.h"
#include "runtime/asn1/content.h"
#include "runtime/asn1/pool.h"

namespace ketra::asn1 {

namespace {

constexpr uint64_t kOnes = 0x0101010101010101;
constexpr uint64_t kHighBits = 0x8080808080808080;

template <class Word>
uint64_t wordAt(const uint8_t *octets) {
  Word word = 0;
  std::memcpy(&word, octets, sizeof word);
  return word;
}

// Takes the octets by eights, a four and ones: what `take(word)` gives, zeros in front of fewer than eight, is added
// up.
template <class Take>
inline uint32_t sumOfWords(const uint8_t *octets, uint32_t length, Take &&take) {
  uint32_t sum = 0;
  for (; length >= 8; octets += 8, length -= 8) sum += take(wordAt<uint64_t>(octets));
  if (length >= 4) {
    sum += take(wordAt<uint32_t>(octets));
    octets += 4;
    length -= 4;
  }
  for (; length > 0; --length) sum += take(*octets++);
  return sum;
}

// Whether an octet is 0x80; the only ones that can pad an arc are.
inline bool hasPadding(const uint8_t *octets, uint32_t length) {
  return sumOfWords(octets, length, [](uint64_t word) {
           word ^= kHighBits;
           return ((word - kOnes) & ~word & kHighBits) != 0 ? 1u : 0u;
         }) != 0;
}

// The first octet that pads an arc, or null.
const uint8_t *findPadding(const uint8_t *octets, uint32_t length) {
  for (uint32_t i = 0; i < length; ++i) {
    if (octets[i] == 0x80 && (i == 0 || octets[i - 1] < 0x80)) return octets + i;
  }
  return nullptr;
}

}  // namespace

bool isObjidContent(const uint8_t *content, uint32_t length) {
  return length > 0 && content[length - 1] < 0x80 &&
         (!hasPadding(content, length) || findPadding(content, length) == nullptr);
}

void explainObjid(const uint8_t *content, uint32_t length, Fault &fault) {
  if (length == 0) {
    fault.set(AsnError_Objid, content) << "OBJECT IDENTIFIER content is 0 octets";
  } else if (content[length - 1] >= 0x80) {
    fault.set(AsnError_Objid, content) << "OBJECT IDENTIFIER ends inside an arc";
  } else {
    fault.set(AsnError_Objid, findPadding(content, length)) << "OBJECT IDENTIFIER with a padded arc";
  }
}

uint32_t countArcs(const uint8_t *content, uint32_t length) {
  const uint32_t continued = sumOfWords(content, length, [](uint64_t word) {
    return static_cast<uint32_t>(((word & kHighBits) >> 7) * kOnes >> 56);  // the sum of eight octets
  });
  return length - continued + 1;  // the first two arcs share a number
}

bool readArcs(const uint8_t *content, uint32_t length, uint32_t count, uint32_t *arcs) {
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
  if (count == length + 1) {  // each arc is one octet
    while (content != end) *arcs++ = *content++;
    return true;
  }
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

// Most numbers need one octet.
inline uint8_t *writeNumber(uint64_t number, uint8_t *out) {
  if (number >= 0x80) {
    for (uint32_t group = groupsOf(number) - 1; group > 0; --group) {
      *out++ = static_cast<uint8_t>((number >> 7 * group & 0x7F) | 0x80);
    }
  }
  *out++ = static_cast<uint8_t>(number & 0x7F);
  return out;
}

}  // namespace

uint64_t measureArcs(const Objid &objid) {
  uint64_t length = groupsOf(firstNumber(objid));
  for (uint32_t i = 2; i < objid.count; ++i) length += objid.arcs[i] < 0x80 ? 1 : groupsOf(objid.arcs[i]);
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
