// The Attributes object: its attributes in DER, with an index of their parts.
#pragma once

#include "ketra/contracts/attributes.h"
#include "runtime/asn1/sequence_buffer.h"

namespace ketra::attributes {

class AttributeList {
 public:
  explicit AttributeList(AsnMemObject pool) : pool_(pool) {}

  uint32_t count() const { return count_; }
  AsnEncodedData encoding() const { return buffer_.encoding(); }
  Objid typeAt(uint32_t index) const { return {entries_[index].numbers, entries_[index].arcCount}; }
  uint32_t valueCountAt(uint32_t index) const { return entries_[index].valueCount; }
  AsnEncodedData valueAt(uint32_t index, uint32_t valueIndex) const;

  // Appends attributes in DER that stand side by side, elsewhere. On failure the list is unchanged, in its place.
  int32_t append(asn1::Call call, const AsnOct &attributes);
  void release();

 private:
  // Where the parts of one attribute are. Its numbers are the arcs of its type, then where in the list each value
  // starts, then where the last one ends.
  struct Entry {
    const uint32_t *numbers;
    uint32_t arcCount;
    uint32_t valueCount;
    bool ownsNumbers;  // those of all that were appended with it stand in one block, which the first one owns
  };

  static constexpr uint32_t kMostEntries = UINT32_MAX / sizeof(Entry);
  static constexpr uint32_t kMostNumbers = UINT32_MAX / sizeof(uint32_t);

  int32_t reserve(asn1::Call call, uint64_t wanted);
  int32_t readEntries(asn1::Call call, const AsnOct &attributes, uint32_t *numbers);

  AsnMemObject pool_;
  asn1::SequenceBuffer buffer_;
  Entry *entries_ = nullptr;
  uint32_t count_ = 0;
  uint32_t capacity_ = 0;
};

}  // namespace ketra::attributes

struct X509AttributesObjectRecord {
  AsnMemObject pool;
  ketra::attributes::AttributeList list;
};
