#pragma once

#include "runtime/asn1/node.h"

namespace ketra::asn1 {

// Reads the bound encoding of `root` into its tree, in one pass driven by the type and without recursion.
int32_t decode(Arena &arena, OpenValue *root, Call call);

}  // namespace ketra::asn1
