// The memory pool: bump allocation in chunks that double, freed blocks in lists by size class, large blocks from the
// system one by one. Every block has a header of eight octets with its size and a mark that tells live blocks from
// everything else.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

#include "ketra/contracts/asn1.h"
#include "runtime/asn1/error.h"

namespace ketra::asn1 {

// Octets of one system request that holds a pool and its first chunk. A pool with a GeneralName object and a name of
// typical length in it needs no more.
inline constexpr std::size_t kSmallPool = 280;

// Makes a pool whose record and first chunk take `size` octets from the system.
int32_t createPool(std::size_t size, AsnMemObject *pool, Call call);

// Null after a failure, which has been reported.
void *allocate(AsnMemObject pool, uint32_t size, AsnErrorBlock *err);

// A copy of `size` octets in the pool; of no octets, a block of its own all the same. Null after a failure.
inline void *duplicate(AsnMemObject pool, const void *octets, uint32_t size, AsnErrorBlock *err) {
  void *copy = allocate(pool, size, err);
  return copy == nullptr || size == 0 ? copy : std::memcpy(copy, octets, size);
}

}  // namespace ketra::asn1
