// The records of an Extensions object: a list in encoding order, and beyond a few of them an index by identifier.
#pragma once

#include "ketra/contracts/certificate.h"

namespace ketra::certificate {

// What entries are found by: the arcs of the identifier, or its content octets when an arc exceeds 32 bits. The other
// one is empty.
struct Identifier {
  Objid objid;
  AsnOct octets;
};

// One extension, linked in encoding order. Arcs and value have blocks of their own in the pool; a value that came with
// a whole encoding lies in the copy of that, and so do the octets of an identifier.
struct Entry {
  KetraExtension extension;
  const uint8_t *octets;  // of the identifier, in place of arcs
  uint32_t octetCount;
  bool ownsValue;
  uint64_t age;  // rises along the list
  Entry *previous;
  Entry *next;

  Identifier identifier() const { return {extension.objid, {octets, octetCount}}; }
};

// The entries of an object. Entries never move, so records that were handed out stay where they are.
class Table {
 public:
  explicit Table(AsnMemObject pool) : pool_(pool) {}

  uint32_t count() const { return count_; }
  Entry *first() const { return first_; }
  Entry *find(const Objid &objid) const;
  Entry *find(const Identifier &identifier) const;
  Entry *at(uint32_t position);  // below count(); costs the distance from the last one asked for, or from an end
  // Makes an entry around arcs and value that are in the pool already and whose identifier is new to the table.
  int32_t append(const KetraExtension &extension, const AsnOct &identifier, bool ownsValue, AsnErrorBlock *err);
  void remove(Entry *entry);
  void release();
  void free(const void *memory) const { AsnMemObjectFree(pool_, memory, nullptr); }

  const uint8_t *encoding = nullptr;  // the copy in which values lie, or null

 private:
  static constexpr uint32_t kUnindexed = 16;  // so many are found fast enough one by one

  template <class Matches>
  Entry *search(const Objid &objid, const AsnOct &octets, Matches &&matches) const;
  uint32_t slotOf(const Identifier &identifier) const;
  int32_t makeRoom(AsnErrorBlock *err);
  void enter(Entry *entry);
  void leave(const Entry *entry);
  void freeEntry(Entry *entry) const;

  AsnMemObject pool_;
  Entry *first_ = nullptr;
  Entry *last_ = nullptr;
  uint32_t count_ = 0;
  uint64_t appended_ = 0;     // ever
  Entry *visited_ = nullptr;  // the entry that was asked for last, at its position; null before the first time
  uint32_t visitedAt_ = 0;
  Entry **index_ = nullptr;  // open addressing, at most half full; null while there are few entries
  uint32_t indexSize_ = 0;   // a power of two
};

}  // namespace ketra::certificate
