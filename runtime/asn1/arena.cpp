#include "runtime/asn1/arena.h"

#include <algorithm>
#include <cstdlib>

namespace ketra::asn1 {

struct alignas(8) Arena::Chunk {
  Chunk *next;
};

Arena::Arena(std::byte *begin, std::byte *end)
    : next_(begin), end_(end), total_(static_cast<std::size_t>(end - begin)) {
  poison(begin, total_);
}

Arena::~Arena() {
  while (chunks_ != nullptr) {
    Chunk *const next = chunks_->next;
    std::free(chunks_);
    chunks_ = next;
  }
}

// A chunk as large as all before it together, so their number stays logarithmic.
void *Arena::allocateSlow(std::size_t size) {
  if (size > SIZE_MAX / 4) return nullptr;
  const std::size_t rounded = kPoisonedGap + (size + 7) / 8 * 8;
  const std::size_t room = std::max(rounded, total_);
  auto *chunk = static_cast<Chunk *>(std::malloc(sizeof(Chunk) + room));
  if (chunk == nullptr) return nullptr;
  chunk->next = chunks_;
  chunks_ = chunk;
  next_ = reinterpret_cast<std::byte *>(chunk + 1);
  end_ = next_ + room;
  total_ += room;
  poison(next_, room);
  return take(rounded, size);
}

}  // namespace ketra::asn1
