#include "runtime/attributes/attribute_list.h"

#include <algorithm>

#include "runtime/asn1/content.h"
#include "runtime/asn1/pool.h"

namespace ketra::attributes {

using asn1::Call;
using asn1::Encoding;
using asn1::Text;
using asn1::Walk;

namespace {

struct Parts {
  AsnOct type;  // content octets
  AsnOct values;
};

Parts partsOf(const Encoding &attribute) {
  Walk parts(attribute.content);
  Encoding type{};
  Encoding values{};
  parts.next(&type);
  parts.next(&values);
  return {type.content, values.content};
}

// How many attributes these are, and how many numbers their entries have.
uint32_t measure(const AsnOct &attributes, uint64_t *numbers) {
  uint32_t count = 0;
  *numbers = 0;
  Walk walk(attributes);
  for (Encoding attribute{}; walk.next(&attribute); ++count) {
    const Parts parts = partsOf(attribute);
    *numbers += asn1::countArcs(parts.type.octets, parts.type.length) + uint64_t{1};
    Walk values(parts.values);
    for (Encoding value{}; values.next(&value);) ++*numbers;
  }
  return count;
}

}  // namespace

AsnEncodedData AttributeList::valueAt(uint32_t index, uint32_t valueIndex) const {
  const Entry &entry = entries_[index];
  const uint32_t *start = entry.numbers + entry.arcCount + valueIndex;
  return {buffer_.members().octets + start[0], start[1] - start[0]};
}

// The buffer comes last: when it has moved, nothing can fail any more.
int32_t AttributeList::append(Call call, const AsnOct &attributes) {
  uint64_t size = 0;
  const uint32_t added = measure(attributes, &size);
  if (size > kMostNumbers)
    return call.fail(AsnError_Range, Text() << "more than " << kMostNumbers << " arcs and values");
  if (reserve(call, uint64_t{count_} + added) != 0) return -1;
  void *numbers = asn1::allocate(pool_, static_cast<uint32_t>(size * sizeof(uint32_t)), call.err);
  if (numbers == nullptr) return -1;
  if (readEntries(call, attributes, static_cast<uint32_t *>(numbers)) != 0 ||
      buffer_.store(call, pool_, buffer_.members().length, attributes) != 0) {
    AsnMemObjectFree(pool_, numbers, nullptr);
    return -1;
  }
  entries_[count_].ownsNumbers = true;
  count_ += added;
  return 0;
}

void AttributeList::release() {
  for (uint32_t i = 0; i < count_; ++i) {
    if (entries_[i].ownsNumbers) AsnMemObjectFree(pool_, entries_[i].numbers, nullptr);
  }
  AsnMemObjectFree(pool_, entries_, nullptr);
  buffer_.release(pool_);
}

// Room for so many entries, or twice as many as there are.
int32_t AttributeList::reserve(Call call, uint64_t wanted) {
  if (wanted <= capacity_) return 0;
  if (wanted > kMostEntries) return call.fail(AsnError_Range, Text() << "more than " << kMostEntries << " attributes");
  const auto capacity = static_cast<uint32_t>(std::min<uint64_t>(std::max(wanted, uint64_t{2} * count_), kMostEntries));
  void *memory = asn1::allocate(pool_, static_cast<uint32_t>(capacity * sizeof(Entry)), call.err);
  if (memory == nullptr) return -1;
  auto *entries = static_cast<Entry *>(memory);
  std::copy_n(entries_, count_, entries);
  AsnMemObjectFree(pool_, entries_, nullptr);
  entries_ = entries;
  capacity_ = capacity;
  return 0;
}

// Makes entries, behind those that count, for attributes that will stand at the end of the buffer.
int32_t AttributeList::readEntries(Call call, const AsnOct &attributes, uint32_t *numbers) {
  const uint32_t start = buffer_.members().length;
  const auto placeOf = [&](const uint8_t *at) { return start + static_cast<uint32_t>(at - attributes.octets); };
  Entry *entry = entries_ + count_;
  Walk walk(attributes);
  for (Encoding attribute{}; walk.next(&attribute); ++entry) {
    const Parts parts = partsOf(attribute);
    *entry = {numbers, asn1::countArcs(parts.type.octets, parts.type.length), 0, false};
    if (!asn1::readArcs(parts.type.octets, parts.type.length, entry->arcCount, numbers)) {
      const auto number = static_cast<uint32_t>(entry - entries_) + 1;
      return call.fail(AsnError_Range, Text() << "the type of attribute " << number << " has an arc beyond 32 bits",
                       {parts.type.octets, parts.type.length});
    }
    numbers += entry->arcCount;
    Walk values(parts.values);
    for (Encoding value{}; values.next(&value); ++entry->valueCount) *numbers++ = placeOf(value.whole.octets);
    *numbers++ = placeOf(parts.values.octets + parts.values.length);
  }
  return 0;
}

}  // namespace ketra::attributes
