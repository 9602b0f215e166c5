// The work object: its handle, the first chunk of its arena and its first value come with one request to the system.
#pragma once

#include "runtime/asn1/node.h"

struct AsnObjectRecord {
  ketra::asn1::Arena arena;
};

namespace ketra::asn1 {

inline constexpr std::size_t kWorkObjectSize = 1024;

}  // namespace ketra::asn1
