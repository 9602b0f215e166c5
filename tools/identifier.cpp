#include "identifier.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace tool {
namespace {

constexpr uint8_t kMore = 0x80;

// Takes the octets of one subidentifier (X.690 8.19.2) from the front.
ketra::View takeFirst(ketra::View &content) {
  const uint8_t *const last = std::find_if(content.begin(), content.end(), [](uint8_t o) { return (o & kMore) == 0; });
  const auto size = static_cast<std::size_t>(last - content.begin()) + (last == content.end() ? 0 : 1);
  const ketra::View first(content.data(), size);
  content = {content.data() + size, content.size() - size};
  return first;
}

constexpr std::size_t kSmall = 9;  // octets that fit 64 bits
uint64_t smallNumber(ketra::View octets) {
  uint64_t number = 0;
  for (const uint8_t octet : octets) number = number << 7 | (octet & 0x7Fu);
  return number;
}

// The number less `less`, which is not more than the number.
std::string decimal(ketra::View octets, uint32_t less) {
  constexpr std::size_t kMost = 1024, kAtOnce = 4;
  constexpr uint64_t kBase = 1'000'000'000;
  if (octets.size() <= kSmall) return std::to_string(smallNumber(octets) - less);
  if (octets.size() > kMost) return "(" + std::to_string(octets.size()) + " octets)";
  std::vector<uint32_t> digits;  // to that base, the least first
  for (std::size_t at = 0, size = octets.size() % kAtOnce; at < octets.size(); at += size, size = kAtOnce) {
    if (size == 0) size = kAtOnce;
    uint64_t carry = smallNumber({octets.data() + at, size});
    for (uint32_t &digit : digits) {
      carry += uint64_t{digit} << (7 * size);
      digit = static_cast<uint32_t>(carry % kBase);
      carry /= kBase;
    }
    if (carry > 0) digits.push_back(static_cast<uint32_t>(carry));
  }
  for (std::size_t i = 0; less > 0; ++i) {
    const bool borrows = digits[i] < less;
    digits[i] = static_cast<uint32_t>(digits[i] + (borrows ? kBase : 0) - less);
    less = borrows ? 1 : 0;
  }
  while (digits.back() == 0) digits.pop_back();
  std::string text = std::to_string(digits.back());
  for (std::size_t i = digits.size() - 1; i > 0; --i) text += std::to_string(kBase + digits[i - 1]).substr(1);
  return text;
}

// The first subidentifier holds two arcs: 40 times the first, which is at most 2, and the second (X.690 8.19.4).
constexpr uint32_t kPerFirstArc = 40;
uint32_t firstArc(ketra::View octets) {
  if (octets.size() > 1) return 2;
  return std::min<uint32_t>(octets.data()[0] / kPerFirstArc, 2);
}

}  // namespace

Identifier::Identifier(const ketra::ObjectIdentifier &objid) {
  const std::vector<uint32_t> &arcs = objid.arcs();
  for (std::size_t i = 1; i < arcs.size(); ++i) {
    const uint64_t number = uint64_t{arcs[i]} + (i == 1 ? arcs[0] * kPerFirstArc : 0);
    int shift = 35;
    while (shift > 0 && number >> shift == 0) shift -= 7;
    for (; shift >= 0; shift -= 7) {
      content_.push_back(static_cast<uint8_t>((number >> shift & 0x7F) | (shift > 0 ? kMore : 0)));
    }
  }
}

std::string Identifier::text() const {
  ketra::View rest = content_;
  if (rest.empty()) return "";
  const ketra::View first = takeFirst(rest);
  std::string text = std::to_string(firstArc(first)) + "." + decimal(first, firstArc(first) * kPerFirstArc);
  while (!rest.empty()) text += "." + decimal(takeFirst(rest), 0);
  return text;
}

bool Identifier::isLarge() const {
  ketra::View rest = content_;
  uint64_t most = UINT32_MAX + uint64_t{2} * kPerFirstArc;  // two arcs
  while (!rest.empty()) {
    const ketra::View octets = takeFirst(rest);
    if (octets.size() > kSmall || smallNumber(octets) > most) return true;
    most = UINT32_MAX;
  }
  return false;
}

bool operator<(const Identifier &a, const Identifier &b) {
  ketra::View restA = a.content_;
  ketra::View restB = b.content_;
  while (!restA.empty() && !restB.empty()) {
    const ketra::View arcA = takeFirst(restA);
    const ketra::View arcB = takeFirst(restB);
    if (arcA.size() != arcB.size()) return arcA.size() < arcB.size();
    const auto [atA, atB] = std::mismatch(arcA.begin(), arcA.end(), arcB.begin());
    if (atA != arcA.end()) return *atA < *atB;
  }
  return restA.empty() && !restB.empty();
}

}  // namespace tool
