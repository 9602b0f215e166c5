#pragma once

#include "runtime/asn1/node.h"

namespace ketra::asn1 {

enum class Rules : uint8_t { Der, Ber };

// Encodes a value (with all its tags) or an element (of an EXPLICIT component, what its tag wraps) into the arena. No
// octets after a failure.
AsnOct encode(const Call &call, Arena &arena, const Node *node, Rules rules);

// The same into a block of the pool.
int32_t encode(const Call &call, AsnMemObject pool, Arena &arena, const Node *node, Rules rules,
               AsnEncodedData *encoding);

}  // namespace ketra::asn1
