#pragma once

#include "runtime/asn1/tlv.h"
#include "runtime/asn1/type.h"

namespace ketra::asn1 {

// Joins the segments of a constructed string (X.690 8.6.4, 8.7.3) into primitive content in the arena. `p` stands
// behind the header of the string; returns where the string ends, or null on a fault.
const uint8_t *joinSegments(Arena &arena, Kind kind, const uint8_t *p, const uint8_t *end, const Header &header,
                            const uint8_t **content, uint32_t *length, Fault &fault);

}  // namespace ketra::asn1
