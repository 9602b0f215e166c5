#include "runtime/asn1/sequence_buffer.h"

#include <algorithm>

#include "runtime/asn1/poison.h"
#include "runtime/asn1/pool.h"
#include "runtime/asn1/tlv.h"

namespace ketra::asn1 {
namespace {

constexpr uint8_t kEmptyList[] = {0x30, 0x00};

}  // namespace

AsnEncodedData SequenceBuffer::encoding() const {
  if (length_ == 0) return {kEmptyList, sizeof kEmptyList};
  return {block_ + kHeaderRoom - headerSize_, headerSize_ + length_};
}

int32_t SequenceBuffer::store(Call call, AsnMemObject pool, uint32_t kept, const AsnOct &added) {
  const uint64_t length = uint64_t{kept} + added.length;
  if (reserve(call, pool, kept, length) != 0) return -1;
  uint8_t *const begin = block_ + kHeaderRoom;
  unpoison(begin + kept, added.length);
  if (added.length > 0) std::memcpy(begin + kept, added.octets, added.length);
  length_ = static_cast<uint32_t>(length);
  headerSize_ = writeLength(begin, length_) + 1;
  *(begin - headerSize_) = 0x30;
  return 0;
}

void SequenceBuffer::release(AsnMemObject pool) {
  AsnMemObjectFree(pool, block_, nullptr);
  *this = {};
}

// Room for `length` octets: a block of its own for another list, and one of double size for one that grows.
int32_t SequenceBuffer::reserve(Call call, AsnMemObject pool, uint32_t kept, uint64_t length) {
  constexpr uint32_t kMost = UINT32_MAX - kHeaderRoom;
  if (length > kMost) return call.fail(AsnError_TooLong, "the encoding would exceed 4294967295 octets");
  if (kept > 0 && length <= capacity_) return 0;
  const uint64_t wanted = kept == 0 ? length : std::max(length, 2 * uint64_t{kept});
  const auto capacity = static_cast<uint32_t>(std::min<uint64_t>(wanted, kMost));
  void *memory = allocate(pool, kHeaderRoom + capacity, call.err);
  if (memory == nullptr) return -1;
  auto *block = static_cast<uint8_t *>(memory);
  poison(block + kHeaderRoom + kept, capacity - kept);
  if (kept > 0) std::memcpy(block + kHeaderRoom, block_ + kHeaderRoom, kept);
  AsnMemObjectFree(pool, block_, nullptr);
  block_ = block;
  capacity_ = capacity;
  return 0;
}

}  // namespace ketra::asn1
