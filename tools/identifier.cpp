#include "identifier.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace tool {
namespace {

// Takes the octets of one subidentifier (X.690 8.19.2) from the front.
ketra::View takeFirst(ketra::View &content) {
  const uint8_t *const last = std::find_if(content.begin(), content.end(), [](uint8_t octet) { return octet < 0x80; });
  const ketra::View first(content.begin(), last + 1);
  content = {first.end(), content.end()};
  return first;
}

}  // namespace

bool hasLargeArc(const ketra::ObjectIdentifierView &identifier) {
  constexpr std::size_t kSmall = 9;  // octets that fit 64 bits
  ketra::View rest = identifier.content();
  uint64_t most = UINT32_MAX + uint64_t{80};  // the first subidentifier holds two arcs (X.690 8.19.4)
  while (!rest.empty()) {
    const ketra::View octets = takeFirst(rest);
    uint64_t number = 0;
    for (const uint8_t octet : octets) number = number << 7 | (octet & 0x7Fu);
    if (octets.size() > kSmall || number > most) return true;
    most = UINT32_MAX;
  }
  return false;
}

bool ByArcs::operator()(const ketra::ObjectIdentifier &a, const ketra::ObjectIdentifier &b) const {
  ketra::View restA = a.content(), restB = b.content();
  while (!restA.empty() && !restB.empty()) {
    const ketra::View arcA = takeFirst(restA), arcB = takeFirst(restB);
    if (arcA.size() != arcB.size()) return arcA.size() < arcB.size();
    if (arcA != arcB) return arcA < arcB;
  }
  return restA.empty() && !restB.empty();
}

}  // namespace tool
