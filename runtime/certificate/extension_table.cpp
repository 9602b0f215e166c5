#include "runtime/certificate/extension_table.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "runtime/asn1/error.h"

namespace ketra::certificate {
namespace {

uint64_t twoArcs(const uint32_t *arcs) {
  uint64_t word = 0;
  std::memcpy(&word, arcs, sizeof word);
  return word;
}

// Two arcs at a time and from the last ones on: the first are those of every other extension too.
bool sameObjid(const Objid &a, const Objid &b) {
  if (a.count != b.count) return false;
  uint32_t rest = a.count;
  for (; rest >= 2; rest -= 2) {
    if (twoArcs(a.arcs + rest - 2) != twoArcs(b.arcs + rest - 2)) return false;
  }
  return rest == 0 || a.arcs[0] == b.arcs[0];
}

bool sameOctets(const AsnOct &a, const AsnOct &b) {
  return a.length == b.length && std::memcmp(a.octets, b.octets, a.length) == 0;
}

}  // namespace

// The first slot to look at. Mixed with an address, so that nobody who writes certificates can make identifiers
// collide.
uint32_t Table::slotOf(const Identifier &identifier) const {
  uint64_t mixed = static_cast<uint64_t>(reinterpret_cast<uintptr_t>(pool_)) | 1;
  const auto mix = [&](uint32_t part) {
    mixed = (mixed ^ part) * 0x9E3779B97F4A7C15u;
    mixed ^= mixed >> 32;
  };
  const auto &[objid, octets] = identifier;
  for (uint32_t i = 0; i < objid.count; ++i) mix(objid.arcs[i]);
  for (uint32_t i = 0; i < octets.length; ++i) mix(octets.octets[i]);
  return static_cast<uint32_t>(mixed * 0xC2B2AE3D27D4EB4Fu >> 32) & (indexSize_ - 1);
}

template <class Matches>
inline Entry *Table::search(const Objid &objid, const AsnOct &octets, Matches &&matches) const {
  if (index_ == nullptr) {
    Entry *entry = first_;
    while (entry != nullptr && !matches(*entry)) entry = entry->next;
    return entry;
  }
  for (uint32_t slot = slotOf({objid, octets});; slot = (slot + 1) & (indexSize_ - 1)) {
    if (index_[slot] == nullptr || matches(*index_[slot])) return index_[slot];
  }
}

Entry *Table::find(const Objid &objid) const {
  if (objid.count == 0) return nullptr;  // the arcs of what is found by its octets
  return search(objid, {}, [&](const Entry &entry) { return sameObjid(entry.extension.objid, objid); });
}

Entry *Table::find(const Identifier &identifier) const {
  const AsnOct &octets = identifier.octets;
  if (octets.length == 0) return find(identifier.objid);
  return search({}, octets, [&](const Entry &entry) { return sameOctets(entry.identifier().octets, octets); });
}

Entry *Table::at(uint32_t position) {
  const uint32_t fromLast = count_ - 1 - position;
  const uint32_t fromVisited = position < visitedAt_ ? visitedAt_ - position : position - visitedAt_;
  if (visited_ == nullptr || std::min(position, fromLast) < fromVisited) {
    visited_ = position <= fromLast ? first_ : last_;
    visitedAt_ = position <= fromLast ? 0 : count_ - 1;
  }
  for (; visitedAt_ < position; ++visitedAt_) visited_ = visited_->next;
  for (; visitedAt_ > position; --visitedAt_) visited_ = visited_->previous;
  return visited_;
}

int32_t Table::append(const KetraExtension &extension, const AsnOct &identifier, bool ownsValue, AsnErrorBlock *err) {
  void *memory = nullptr;
  if (makeRoom(err) != 0 || AsnMemObjectMalloc(pool_, sizeof(Entry), &memory, err) != 0) return -1;
  auto *entry =
      new (memory) Entry{extension, identifier.octets, identifier.length, ownsValue, ++appended_, last_, nullptr};
  (last_ == nullptr ? first_ : last_->next) = entry;
  last_ = entry;
  ++count_;
  if (index_ != nullptr) enter(entry);
  return 0;
}

// Before one more entry: an index that stays at most half full, once there are enough of them.
int32_t Table::makeRoom(AsnErrorBlock *err) {
  if (count_ < kUnindexed || (index_ != nullptr && count_ < indexSize_ / 2)) return 0;
  const uint32_t size = index_ == nullptr ? 4 * kUnindexed : 2 * indexSize_;
  if (size > UINT32_MAX / sizeof(Entry *)) {
    return asn1::Call{"KetraObjectSetExt", err}.fail(AsnMemError_OutOfMemory, "too many extensions for one object");
  }
  void *memory = nullptr;
  if (AsnMemObjectMalloc(pool_, static_cast<uint32_t>(size * sizeof(Entry *)), &memory, err) != 0) return -1;
  free(index_);
  index_ = static_cast<Entry **>(memory);
  indexSize_ = size;
  std::fill_n(index_, indexSize_, nullptr);
  for (Entry *entry = first_; entry != nullptr; entry = entry->next) enter(entry);
  return 0;
}

void Table::enter(Entry *entry) {
  uint32_t slot = slotOf(entry->identifier());
  while (index_[slot] != nullptr) slot = (slot + 1) & (indexSize_ - 1);
  index_[slot] = entry;
}

// Empties the entry's slot, and moves up what stands behind it only because slots before were taken.
void Table::leave(const Entry *entry) {
  const uint32_t mask = indexSize_ - 1;
  uint32_t hole = slotOf(entry->identifier());
  while (index_[hole] != entry) hole = (hole + 1) & mask;
  for (uint32_t slot = (hole + 1) & mask; index_[slot] != nullptr; slot = (slot + 1) & mask) {
    const uint32_t home = slotOf(index_[slot]->identifier());
    if (((slot - home) & mask) < ((slot - hole) & mask)) continue;
    index_[hole] = index_[slot];
    hole = slot;
  }
  index_[hole] = nullptr;
}

void Table::remove(Entry *entry) {
  if (index_ != nullptr) leave(entry);
  (entry->previous == nullptr ? first_ : entry->previous->next) = entry->next;
  (entry->next == nullptr ? last_ : entry->next->previous) = entry->previous;
  --count_;
  if (visited_ == entry) {
    visited_ = entry->next != nullptr ? entry->next : entry->previous;
    if (entry->next == nullptr && visitedAt_ > 0) --visitedAt_;
  } else if (visited_ != nullptr && entry->age < visited_->age) {
    --visitedAt_;
  }
  freeEntry(entry);
}

void Table::freeEntry(Entry *entry) const {
  free(entry->extension.objid.arcs);
  if (entry->ownsValue) free(entry->extension.value.octets);
  free(entry);
}

void Table::release() {
  for (Entry *entry = first_; entry != nullptr;) {
    Entry *const next = entry->next;
    freeEntry(entry);
    entry = next;
  }
  free(index_);
  free(encoding);
}

}  // namespace ketra::certificate
