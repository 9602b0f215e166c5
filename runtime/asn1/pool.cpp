#include "runtime/asn1/pool.h"

#include <algorithm>
#include <bit>
#include <cstdlib>
#include <new>

#include "ketra/ketra_runtime.h"
#include "runtime/asn1/poison.h"

namespace ketra::asn1 {
namespace {

constexpr std::size_t kAlignment = 8;
constexpr std::size_t kLargestSmall = 16384;  // from here on a block is the system's own
constexpr std::size_t kFirstGrowth = 1024;

struct Header {
  uint32_t size;  // as it was asked for
  uint32_t mark;
};

struct alignas(kAlignment) Chunk {
  Chunk *next;
  std::byte *end;  // the chunk's blocks lie between the end of this record and here
  std::byte *begin() { return reinterpret_cast<std::byte *>(this + 1); }
};

struct FreeBlock {
  FreeBlock *next;
};

// A block of the system's own, in a bucket of the pool's table by its address.
struct alignas(kAlignment) LargeBlock {
  LargeBlock *next;
  Header header;
  std::byte *memory() { return reinterpret_cast<std::byte *>(this + 1); }
};

// Size classes: 8, 16, ... 128, then four per doubling, up to kLargestSmall.
constexpr std::size_t kFineClasses = 16;
constexpr std::size_t kClasses = kFineClasses + 28;

constexpr std::size_t classOf(std::size_t size) {
  if (size <= 128) return size == 0 ? 0 : (size - 1) / 8;
  const auto log = static_cast<std::size_t>(std::bit_width(size - 1)) - 1;  // 7 for 129..256
  return kFineClasses + 4 * (log - 7) + ((size - 1) >> (log - 2) & 3);
}
constexpr std::size_t sizeOf(std::size_t sizeClass) {
  if (sizeClass < kFineClasses) return 8 * (sizeClass + 1);
  const std::size_t step = sizeClass - kFineClasses;
  return (std::size_t{128} << step / 4) / 4 * (5 + step % 4);
}
// What a block of the class takes.
constexpr std::size_t roomFor(std::size_t size) {
  return size <= 128 && size > 0 ? (size + 7) / 8 * 8 : sizeOf(classOf(size));
}
static_assert(classOf(1) == 0 && classOf(128) == 15 && classOf(129) == 16 && classOf(kLargestSmall) == kClasses - 1);
static_assert(sizeOf(16) == 160 && sizeOf(kClasses - 1) == kLargestSmall && classOf(sizeOf(30)) == 30);

// The large blocks, in a power of two of buckets.
struct LargeTable {
  uint32_t bits;
  uint32_t blocks;
  LargeBlock **buckets() { return reinterpret_cast<LargeBlock **>(this + 1); }
  std::size_t size() const { return std::size_t{1} << bits; }
};

struct FreeLists {
  FreeBlock *heads[kClasses];
};

}  // namespace
}  // namespace ketra::asn1

using namespace ketra::asn1;

struct alignas(kAlignment) AsnMemObjectRecord {
  Chunk *chunks;         // newest first; the last one lies in the pool's own request
  std::byte *next;       // unused memory of the newest chunk
  FreeLists *freeLists;  // made by the first free that needs them
  LargeTable *large;     // null while there is no large block
  uint64_t held;         // from the system
  uint64_t limit;        // 0 = none
  uint64_t liveOctets;
  uint32_t liveBlocks;
  uint32_t key;  // of its own, in the marks of its blocks
};

namespace ketra::asn1 {
namespace {

// Differs from block to block and pool to pool, so that stale or foreign memory does not pass for a live block; never
// 0.
inline uint32_t liveMark(AsnMemObject pool, const void *memory) {
  return static_cast<uint32_t>(reinterpret_cast<uintptr_t>(memory)) ^ pool->key;
}

uint32_t keyOf(const void *pool) {
  const uint64_t mixed = static_cast<uint64_t>(reinterpret_cast<uintptr_t>(pool)) * 0xC2B2AE3D27D4EB4Fu;
  return static_cast<uint32_t>(mixed >> 32) | 1;  // blocks are aligned: their marks are odd
}

LargeBlock **bucketOf(LargeTable *table, const void *memory) {
  const uint64_t mixed = static_cast<uint64_t>(reinterpret_cast<uintptr_t>(memory)) * 0x9E3779B97F4A7C15u;
  return &table->buckets()[static_cast<std::size_t>(mixed >> (64 - table->bits))];
}

// What may still be had under the limit.
uint64_t roomLeft(AsnMemObject pool) {
  return pool->limit == 0 ? UINT64_MAX : pool->limit - std::min(pool->limit, pool->held);
}

void *fromSystem(AsnMemObject pool, uint64_t size, Call call) {
  if (size > roomLeft(pool)) {
    call.fail(AsnMemError_Limit, Text() << size << " octets more would exceed the limit of " << pool->limit
                                        << " octets; " << pool->held << " are held");
    return nullptr;
  }
  void *memory = size <= SIZE_MAX ? std::malloc(static_cast<std::size_t>(size)) : nullptr;
  if (memory == nullptr) {
    call.fail(AsnMemError_OutOfMemory, Text() << "the system has no " << size << " octets");
    return nullptr;
  }
  pool->held += size;
  return memory;
}

// A new chunk twice as large as the last, or half of what a limit leaves: so their number stays logarithmic.
bool grow(AsnMemObject pool, std::size_t needed, Call call) {
  const uint64_t least = sizeof(Chunk) + needed;
  const auto last = static_cast<uint64_t>(pool->chunks->end - reinterpret_cast<std::byte *>(pool->chunks));
  const uint64_t wanted = std::max<uint64_t>(kFirstGrowth, 2 * last);
  const uint64_t size = std::max(least, std::min(wanted, roomLeft(pool) / 2) / kAlignment * kAlignment);
  auto *chunk = static_cast<Chunk *>(fromSystem(pool, size, call));
  if (chunk == nullptr) return false;
  chunk->next = pool->chunks;
  chunk->end = reinterpret_cast<std::byte *>(chunk) + size;
  pool->chunks = chunk;
  pool->next = chunk->begin();
  poison(pool->next, static_cast<std::size_t>(chunk->end - pool->next));
  return true;
}

inline void *start(AsnMemObject pool, std::byte *memory, uint32_t size) {
  unpoison(memory, size);
  Header *header = reinterpret_cast<Header *>(memory) - 1;
  unpoison(header, sizeof *header);
  *header = {size, liveMark(pool, memory)};
  poison(header, sizeof *header);
  pool->liveOctets += size;
  ++pool->liveBlocks;
  return memory;
}

[[gnu::noinline]] void *allocateInNewChunk(AsnMemObject pool, uint32_t size, std::size_t room, Call call) {
  const std::size_t needed = sizeof(Header) + room;
  if (!grow(pool, needed, call)) return nullptr;
  std::byte *memory = pool->next + sizeof(Header);
  pool->next += needed;
  return start(pool, memory, size);
}

// More buckets once the lists grow; without memory for them the old ones serve on, only slower.
void growTable(AsnMemObject pool, Call call) {
  LargeTable *const old = pool->large;
  const uint32_t bits = old == nullptr ? 4 : old->bits + 2;
  const auto sizeOfTable = [](uint32_t itsBits) { return sizeof(LargeTable) + (sizeof(LargeBlock *) << itsBits); };
  auto *table = static_cast<LargeTable *>(fromSystem(pool, sizeOfTable(bits), call));
  if (table == nullptr) return;
  *table = {bits, old == nullptr ? 0 : old->blocks};
  std::fill_n(table->buckets(), table->size(), nullptr);
  pool->large = table;
  if (old == nullptr) return;
  for (std::size_t i = 0; i < old->size(); ++i) {
    for (LargeBlock *block = old->buckets()[i]; block != nullptr;) {
      LargeBlock *const next = block->next;
      LargeBlock **const bucket = bucketOf(table, block->memory());
      block->next = *bucket;
      *bucket = block;
      block = next;
    }
  }
  pool->held -= sizeOfTable(old->bits);
  std::free(old);
}

[[gnu::noinline]] void *allocateLarge(AsnMemObject pool, uint32_t size, Call call) {
  if (pool->large == nullptr) {
    growTable(pool, call);
    if (pool->large == nullptr) return nullptr;
  } else if (pool->large->blocks >= 2 * pool->large->size()) {
    growTable(pool, Call{"", nullptr});
  }
  auto *block = static_cast<LargeBlock *>(fromSystem(pool, sizeof(LargeBlock) + uint64_t{size}, call));
  if (block == nullptr) return nullptr;
  LargeBlock **const bucket = bucketOf(pool->large, block->memory());
  block->next = *bucket;
  *bucket = block;
  block->header = {size, 0};
  poison(&block->header, sizeof block->header);
  ++pool->large->blocks;
  pool->liveOctets += size;
  ++pool->liveBlocks;
  return block->memory();
}

// A block of a size class that takes `room` octets, of a request for `size`.
inline void *allocateSmall(AsnMemObject pool, uint32_t size, std::size_t sizeClass, std::size_t room, Call call) {
  if (pool->freeLists != nullptr) {
    FreeBlock *&head = pool->freeLists->heads[sizeClass];
    if (FreeBlock *block = head; block != nullptr) {
      unpoison(block, sizeof *block);
      head = block->next;
      poison(block, sizeof *block);
      return start(pool, reinterpret_cast<std::byte *>(block), size);
    }
  }
  const std::size_t needed = sizeof(Header) + room;
  if (static_cast<std::size_t>(pool->chunks->end - pool->next) < needed)
    return allocateInNewChunk(pool, size, room, call);
  std::byte *memory = pool->next + sizeof(Header);
  pool->next += needed;
  return start(pool, memory, size);
}

[[gnu::noinline]] void *allocateOther(AsnMemObject pool, uint32_t size, Call call) {
  if (size > kLargestSmall) return allocateLarge(pool, size, call);
  return allocateSmall(pool, size, classOf(size), roomFor(size), call);
}

// Frees a large block; false when the pool has none at this address.
bool freeLarge(AsnMemObject pool, const void *memory) {
  if (pool->large == nullptr) return false;
  LargeBlock **link = bucketOf(pool->large, memory);
  while (*link != nullptr && (*link)->memory() != memory) link = &(*link)->next;
  LargeBlock *block = *link;
  if (block == nullptr) return false;
  *link = block->next;
  unpoison(&block->header, sizeof block->header);
  --pool->large->blocks;
  --pool->liveBlocks;
  pool->liveOctets -= block->header.size;
  pool->held -= sizeof(LargeBlock) + uint64_t{block->header.size};
  std::free(block);
  return true;
}

// The header of a live block in the chunk up to `used`, or null. Reads only memory that the pool holds, poisoned or
// not: for a stray pointer what lies before it may be anything.
KETRA_READS_POISONED inline Header *headerIn(AsnMemObject pool, Chunk *chunk, const std::byte *used,
                                             const void *memory) {
  const auto *at = static_cast<const std::byte *>(memory);
  if (at < chunk->begin() + sizeof(Header) || at >= used) return nullptr;
  if (reinterpret_cast<uintptr_t>(at) % kAlignment != 0) return nullptr;
  auto *header = reinterpret_cast<Header *>(const_cast<std::byte *>(at)) - 1;
  return header->mark == liveMark(pool, memory) ? header : nullptr;
}

// False without memory.
[[gnu::noinline]] bool makeFreeLists(AsnMemObject pool) {
  // Not charged to a limit, which would keep a full pool from taking anything back.
  pool->freeLists = static_cast<FreeLists *>(std::calloc(1, sizeof(FreeLists)));
  return pool->freeLists != nullptr;
}

inline void freeSmall(AsnMemObject pool, Header *header) {
  unpoison(header, sizeof *header);
  auto *const memory = reinterpret_cast<std::byte *>(header + 1);
  const std::size_t size = header->size;
  const bool isFine = size - 1 < 8 * kFineClasses;
  const std::size_t sizeClass = isFine ? (size - 1) / 8 : classOf(size);
  const std::size_t room = isFine ? 8 * (sizeClass + 1) : roomFor(size);
  --pool->liveBlocks;
  pool->liveOctets -= size;
  header->mark = 0;
  poison(header, sizeof *header + room);
  if (memory + room == pool->next) {  // the newest block: take it back whole
    pool->next = reinterpret_cast<std::byte *>(header);
    return;
  }
  if (pool->freeLists == nullptr && !makeFreeLists(pool)) return;  // the block waits for the pool's end
  auto *block = reinterpret_cast<FreeBlock *>(memory);
  unpoison(block, sizeof *block);
  block->next = pool->freeLists->heads[sizeClass];
  pool->freeLists->heads[sizeClass] = block;
  poison(block, sizeof *block);
}

// Frees a block that is not in the newest chunk.
[[gnu::noinline]] int32_t freeOther(AsnMemObject pool, const void *memory, Call call) {
  for (Chunk *chunk = pool->chunks->next; chunk != nullptr; chunk = chunk->next) {
    if (Header *header = headerIn(pool, chunk, chunk->end, memory)) {
      freeSmall(pool, header);
      return 0;
    }
  }
  if (freeLarge(pool, memory)) return 0;
  return call.fail(AsnMemError_NotOwned, "the pointer is no live allocation of this pool");
}

}  // namespace

int32_t createPool(std::size_t size, AsnMemObject *pool, Call call) {
  void *memory = std::malloc(size);
  if (memory == nullptr) {
    return call.fail(AsnMemError_OutOfMemory, Text() << "the system has no " << uint64_t{size} << " octets");
  }
  auto *record = new (memory) AsnMemObjectRecord{};
  auto *chunk = reinterpret_cast<Chunk *>(record + 1);
  chunk->next = nullptr;
  chunk->end = static_cast<std::byte *>(memory) + size;
  record->chunks = chunk;
  record->next = chunk->begin();
  record->held = size;
  record->key = keyOf(record);
  poison(record->next, static_cast<std::size_t>(chunk->end - record->next));
  *pool = record;
  return 0;
}

void *allocate(AsnMemObject pool, uint32_t size, AsnErrorBlock *err) {
  const Call call{"AsnMemObjectMalloc", err};
  if (size - 1 >= 8 * kFineClasses) [[unlikely]]
    return allocateOther(pool, size, call);
  const std::size_t sizeClass = (size - 1) / 8;
  return allocateSmall(pool, size, sizeClass, 8 * (sizeClass + 1), call);
}

}  // namespace ketra::asn1

int32_t AsnMemObjectCreate(AsnMemObject *pool, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (pool == nullptr) return call.fail(AsnMemError_NullParameter, "no place for the pool");
  return createPool(kSmallPool, pool, call);
}

int32_t AsnMemObjectMalloc(AsnMemObject pool, uint32_t size, void **memory, AsnErrorBlock *err) {
  if (pool == nullptr || memory == nullptr) {
    return Call{__func__, err}.fail(AsnMemError_NullParameter, "no pool or no place for the memory");
  }
  void *block = allocate(pool, size, err);
  if (block == nullptr) return -1;
  *memory = block;
  return 0;
}

int32_t AsnMemObjectFree(AsnMemObject pool, const void *memory, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (pool == nullptr) return call.fail(AsnMemError_NullParameter, "no pool");
  if (memory == nullptr) return 0;
  if (Header *header = headerIn(pool, pool->chunks, pool->next, memory)) [[likely]] {
    freeSmall(pool, header);
    return 0;
  }
  return freeOther(pool, memory, call);
}

int32_t AsnMemObjectDestroy(AsnMemObject pool, AsnErrorBlock *err) {
  if (pool == nullptr) return Call{__func__, err}.fail(AsnMemError_NullParameter, "no pool");
  if (pool->large != nullptr) {
    for (std::size_t i = 0; i < pool->large->size(); ++i) {
      while (LargeBlock *block = pool->large->buckets()[i]) {
        pool->large->buckets()[i] = block->next;
        std::free(block);
      }
    }
    std::free(pool->large);
  }
  std::free(pool->freeLists);
  Chunk *chunk = pool->chunks;
  while (chunk->next != nullptr) {
    Chunk *const next = chunk->next;
    unpoison(chunk, static_cast<std::size_t>(chunk->end - reinterpret_cast<std::byte *>(chunk)));
    std::free(chunk);
    chunk = next;
  }
  unpoison(chunk, static_cast<std::size_t>(chunk->end - reinterpret_cast<std::byte *>(chunk)));
  std::free(pool);
  return 0;
}

int32_t AsnMemObjectSetLimit(AsnMemObject pool, uint64_t octets, AsnErrorBlock *err) {
  if (pool == nullptr) return Call{__func__, err}.fail(AsnMemError_NullParameter, "no pool");
  pool->limit = octets;
  return 0;
}

int32_t AsnMemObjectUsage(AsnMemObject pool, uint64_t *octets, uint32_t *blocks, AsnErrorBlock *err) {
  if (pool == nullptr || octets == nullptr || blocks == nullptr) {
    return Call{__func__, err}.fail(AsnMemError_NullParameter, "no pool or no place for the usage");
  }
  *octets = pool->liveOctets;
  *blocks = pool->liveBlocks;
  return 0;
}
