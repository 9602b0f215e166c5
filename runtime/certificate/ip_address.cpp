// iPAddress of GeneralName (RFC 5280 4.2.1.6, and with a mask 4.2.1.10) as text.

#include <algorithm>
#include <bit>
#include <charconv>
#include <cstring>
#include <string_view>

#include "ketra/ketra_runtime.h"
#include "runtime/asn1/error.h"
#include "runtime/certificate/directory_string.h"

namespace ketra::certificate {
namespace {

using asn1::Call;
using asn1::Text;
using std::string_view;

constexpr uint32_t kIpv4 = 4;
constexpr uint32_t kIpv6 = 16;
constexpr uint32_t kGroups = 8;
constexpr uint32_t kNoGap = UINT32_MAX;

// ---- To text -------------------------------------------------------------------------------------------------------

char *putNumber(char *out, uint32_t number, int base) { return std::to_chars(out, out + 10, number, base).ptr; }

char *putIpv4(char *out, const uint8_t *octets) {
  for (uint32_t i = 0; i < kIpv4; ++i) {
    if (i > 0) *out++ = '.';
    out = putNumber(out, octets[i], 10);
  }
  return out;
}

uint32_t groupAt(const uint8_t *octets, std::size_t group) {
  return static_cast<uint32_t>(octets[2 * group] << 8 | octets[2 * group + 1]);
}

// The first of the longest runs of zero groups; a single group is no run (RFC 5952 4.2).
void findZeros(const uint8_t *octets, uint32_t *first, uint32_t *end) {
  *first = *end = kGroups;
  for (uint32_t i = 0; i < kGroups;) {
    uint32_t j = i;
    while (j < kGroups && groupAt(octets, j) == 0) ++j;
    if (j - i > std::max(*end - *first, 1u)) {
      *first = i;
      *end = j;
    }
    i = j + 1;
  }
}

char *putIpv6(char *out, const uint8_t *octets) {
  constexpr uint8_t kMapped[] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0xFF, 0xFF};  // IPv4-mapped (RFC 4291 2.5.5.2)
  if (std::memcmp(octets, kMapped, sizeof kMapped) == 0) {
    constexpr string_view kPrefix = "::ffff:";
    return putIpv4(std::copy(kPrefix.begin(), kPrefix.end(), out), octets + sizeof kMapped);
  }
  uint32_t first = 0;
  uint32_t end = 0;
  findZeros(octets, &first, &end);
  for (uint32_t i = 0; i < kGroups;) {
    if (i == first) {
      *out++ = ':';
      *out++ = ':';
      i = end;
      continue;
    }
    if (i > 0 && i != end) *out++ = ':';
    out = putNumber(out, groupAt(octets, i++), 16);
  }
  return out;
}

char *putAddress(char *out, const uint8_t *octets, uint32_t size) {
  return size == kIpv4 ? putIpv4(out, octets) : putIpv6(out, octets);
}

char *putMask(char *out, const uint8_t *mask, uint32_t size) {
  *out++ = '/';
  uint32_t bits = 0;
  for (uint32_t i = 0; i < size && bits == 8 * i; ++i) bits += static_cast<uint32_t>(std::countl_one(mask[i]));
  uint32_t set = 0;
  for (uint32_t i = 0; i < size; ++i) set += static_cast<uint32_t>(std::popcount(mask[i]));
  return set == bits ? putNumber(out, bits, 10) : putAddress(out, mask, size);
}

// ---- From text -----------------------------------------------------------------------------------------------------

// A number that is the whole text, at most `most`, without leading zeros.
bool readDecimal(string_view text, uint32_t most, uint32_t *number) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), *number);
  return error == std::errc{} && end == text.data() + text.size() && *number <= most &&
         (text.size() == 1 || text[0] != '0');
}

bool readIpv4(string_view text, uint8_t *octets) {
  for (uint32_t i = 0; i < kIpv4; ++i) {
    const std::size_t dot = i + 1 < kIpv4 ? text.find('.') : text.size();
    uint32_t number = 0;
    if (dot == string_view::npos || !readDecimal(text.substr(0, dot), 255, &number)) return false;
    octets[i] = static_cast<uint8_t>(number);
    text.remove_prefix(i + 1 < kIpv4 ? dot + 1 : dot);
  }
  return true;
}

bool readGroup(string_view text, uint8_t *octets) {
  uint32_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, 16);
  if (error != std::errc{} || end != text.data() + text.size() || text.size() > 4) return false;
  octets[0] = static_cast<uint8_t>(number >> 8);
  octets[1] = static_cast<uint8_t>(number);
  return true;
}

// The octets that are written out, and where "::" stands among them, if it does.
bool readGroups(string_view text, uint8_t octets[kIpv6], uint32_t *count, uint32_t *gap) {
  *count = 0;
  *gap = kNoGap;
  if (text.starts_with("::")) {
    *gap = 0;
    text.remove_prefix(2);
    if (text.empty()) return true;
  }
  for (;;) {
    const std::size_t colon = text.find(':');
    const string_view part = text.substr(0, colon);
    const bool isTail = colon == string_view::npos;
    const bool isIpv4 = isTail && part.find('.') != string_view::npos;
    const uint32_t size = isIpv4 ? 4 : 2;
    if (*count + size > kIpv6 || !(isIpv4 ? readIpv4(part, octets + *count) : readGroup(part, octets + *count))) {
      return false;
    }
    *count += size;
    if (isTail) return true;
    text.remove_prefix(colon + 1);
    if (!text.starts_with(':')) continue;
    if (*gap != kNoGap) return false;
    *gap = *count;
    text.remove_prefix(1);
    if (text.empty()) return true;
  }
}

bool readIpv6(string_view text, uint8_t *octets) {
  uint32_t count = 0;
  uint32_t gap = 0;
  uint8_t written[kIpv6] = {};
  if (!readGroups(text, written, &count, &gap)) return false;
  if (gap == kNoGap ? count != kIpv6 : count == kIpv6) return false;  // "::" stands for one group or more
  const uint32_t before = std::min(gap, count);
  std::memset(octets, 0, kIpv6);
  std::memcpy(octets, written, before);
  std::memcpy(octets + kIpv6 - (count - before), written + before, count - before);
  return true;
}

uint32_t readAddress(string_view text, uint8_t *octets) {
  if (readIpv4(text, octets)) return kIpv4;
  return readIpv6(text, octets) ? kIpv6 : 0;
}

bool readMask(string_view text, uint32_t size, uint8_t *mask) {
  uint32_t bits = 0;
  if (!readDecimal(text, 8 * size, &bits)) return readAddress(text, mask) == size;
  for (uint32_t i = 0; i < size; ++i, bits -= std::min(bits, 8u)) {
    mask[i] = static_cast<uint8_t>(0xFF00u >> std::min(bits, 8u));
  }
  return true;
}

}  // namespace
}  // namespace ketra::certificate

using namespace ketra::certificate;

int32_t X509IpAddressToText(const AsnOct *address, char *text, uint32_t size, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (address == nullptr || (address->octets == nullptr && address->length > 0) || text == nullptr) {
    return call.fail(X509NameError_NullParameter, "no address or no place for the text");
  }
  const uint32_t length = address->length;
  if (length != kIpv4 && length != kIpv6 && length != 2 * kIpv4 && length != 2 * kIpv6) {
    return call.fail(X509IpError_Length, Text() << "an address of " << length << " octets", {address->octets, length});
  }
  const bool hasMask = length == 2 * kIpv4 || length == 2 * kIpv6;
  const uint32_t half = hasMask ? length / 2 : length;
  char whole[96];
  char *end = putAddress(whole, address->octets, half);
  if (hasMask) end = putMask(end, address->octets + half, half);
  *end++ = '\0';
  const auto needed = static_cast<uint32_t>(end - whole);
  if (needed > size) {
    if (size > 0) text[0] = '\0';
    return call.fail(AsnError_Range, Text() << "the text needs " << needed << " octets");
  }
  std::memcpy(text, whole, needed);
  return 0;
}

int32_t X509IpAddressFromText(const char *text, uint8_t octets[32], uint32_t *length, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (text == nullptr || octets == nullptr || length == nullptr) {
    return call.fail(X509NameError_NullParameter, "no text or no place for the address");
  }
  const string_view whole(text);
  const std::size_t slash = whole.find('/');
  const bool hasMask = slash != string_view::npos;
  uint8_t read[2 * kIpv6];
  const uint32_t size = readAddress(whole.substr(0, slash), read);
  if (size == 0 || (hasMask && !readMask(whole.substr(slash + 1), size, read + size))) {
    return call.fail(X509IpError_Text, Text() << "\"" << whole << "\" is no IP address");
  }
  *length = hasMask ? 2 * size : size;
  std::memcpy(octets, read, *length);
  return 0;
}
