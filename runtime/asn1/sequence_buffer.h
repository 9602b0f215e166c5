// The encoding of a list that grows: a SEQUENCE OF in DER.
#pragma once

#include "runtime/asn1/error.h"

namespace ketra::asn1 {

// The members stand one after the other in one block, behind room for the header of the SEQUENCE around them: so more
// can be appended without moving those before.
class SequenceBuffer {
 public:
  AsnOct members() const { return length_ == 0 ? AsnOct{nullptr, 0} : AsnOct{block_ + kHeaderRoom, length_}; }
  AsnEncodedData encoding() const;

  // Makes the list consist of `kept` octets of the members it has and those of `added`, which lie elsewhere, in a block
  // of the pool. On failure it is unchanged.
  int32_t store(Call call, AsnMemObject pool, uint32_t kept, const AsnOct &added);
  void release(AsnMemObject pool);

 private:
  static constexpr uint32_t kHeaderRoom = 6;  // the longest header of a SEQUENCE

  int32_t reserve(Call call, AsnMemObject pool, uint32_t kept, uint64_t length);

  uint8_t *block_ = nullptr;  // null before the first member
  uint32_t length_ = 0;       // octets of the members
  uint32_t capacity_ = 0;     // octets that the block has for them
  uint32_t headerSize_ = 0;   // octets of the header, which ends where they begin
};

}  // namespace ketra::asn1
