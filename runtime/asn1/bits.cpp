#include <bit>
#include <cstring>

#include "runtime/asn1/content.h"

namespace ketra::asn1 {

void writeBits(const uint8_t *octets, uint32_t bits, uint8_t *content) {
  const uint32_t whole = bits / 8;
  const uint32_t rest = bits % 8;
  content[0] = static_cast<uint8_t>(rest == 0 ? 0 : 8 - rest);
  if (whole > 0) std::memcpy(content + 1, octets, whole);
  if (rest > 0) content[1 + whole] = static_cast<uint8_t>(octets[whole] & (0xFF00u >> rest));
}

uint32_t trimBits(const uint8_t *octets, uint32_t bits) {
  while (bits > 0) {
    const uint32_t inLast = (bits - 1) % 8 + 1;
    const auto last = static_cast<uint8_t>(octets[(bits - 1) / 8] & (0xFF00u >> inLast));
    if (last != 0) return bits - inLast + 8 - static_cast<uint32_t>(std::countr_zero(last));
    bits -= inLast;
  }
  return 0;
}

}  // namespace ketra::asn1
