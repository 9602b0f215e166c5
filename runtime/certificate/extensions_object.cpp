// The Extensions object: its records in encoding order, and beyond a few of them an index by identifier.

#include <algorithm>
#include <charconv>
#include <new>

#include "contracts/asn1_schema.hpp"
#include "contracts/certificate.h"
#include "ketra_runtime.h"
#include "runtime/asn1/pool.h"

namespace ketra::certificate {
namespace {

using asn1::Call;
using asn1::Text;

constexpr char kModule[] = "X509-EXT";
constexpr std::size_t kPoolSize = 1024;  // an object with the extensions of an ordinary certificate asks once or twice

constexpr schema::Row kRows[] = {
    // clang-format off
    schema::SequenceOf("Extensions"),
        schema::Element("Extension"),
    schema::Sequence("Extension"),
        schema::Component("extnID", schema::ObjectIdentifier),
        schema::Component("critical", schema::Boolean, schema::Optional),
        schema::Component("extnValue", schema::OctetString),
    // clang-format on
};
constexpr auto kExtensions = schema::compile(kRows);

// One extension, linked in encoding order. Arcs and value have blocks of their own in the pool; a value that came with
// a whole encoding lies in the copy of that.
struct Entry {
  KetraExtension extension;
  bool ownsValue;
  uint64_t age;  // rises along the list
  Entry *previous;
  Entry *next;
};

bool sameObjid(const Objid &a, const Objid &b) {
  return a.count == b.count && std::equal(a.arcs, a.arcs + a.count, b.arcs);
}

// The entries of an object. Entries never move, so records that were handed out stay where they are.
class Table {
 public:
  explicit Table(AsnMemObject pool) : pool_(pool) {}

  uint32_t count() const { return count_; }
  Entry *first() const { return first_; }
  Entry *find(const Objid &objid) const;
  Entry *at(uint32_t position);  // below count(); costs the distance from the last one asked for, or from an end
  // Makes an entry around arcs and value that are in the pool already and whose identifier is new to the table.
  int32_t append(const KetraExtension &extension, bool ownsValue, AsnErrorBlock *err);
  void remove(Entry *entry);
  void release();
  void free(const void *memory) const { AsnMemObjectFree(pool_, memory, nullptr); }

  const uint8_t *encoding = nullptr;  // the copy in which values lie, or null

 private:
  static constexpr uint32_t kUnindexed = 16;  // so many are found fast enough one by one

  uint32_t slotOf(const Objid &objid) const;
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

// The first slot to look at. Mixed with an address, so that nobody who writes certificates can make identifiers
// collide.
uint32_t Table::slotOf(const Objid &objid) const {
  uint64_t mixed = static_cast<uint64_t>(reinterpret_cast<uintptr_t>(pool_)) | 1;
  for (uint32_t i = 0; i < objid.count; ++i) {
    mixed = (mixed ^ objid.arcs[i]) * 0x9E3779B97F4A7C15u;
    mixed ^= mixed >> 32;
  }
  return static_cast<uint32_t>(mixed * 0xC2B2AE3D27D4EB4Fu >> 32) & (indexSize_ - 1);
}

Entry *Table::find(const Objid &objid) const {
  if (index_ == nullptr) {
    Entry *entry = first_;
    while (entry != nullptr && !sameObjid(entry->extension.objid, objid)) entry = entry->next;
    return entry;
  }
  for (uint32_t slot = slotOf(objid);; slot = (slot + 1) & (indexSize_ - 1)) {
    if (index_[slot] == nullptr || sameObjid(index_[slot]->extension.objid, objid)) return index_[slot];
  }
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

int32_t Table::append(const KetraExtension &extension, bool ownsValue, AsnErrorBlock *err) {
  void *memory = nullptr;
  if (makeRoom(err) != 0 || AsnMemObjectMalloc(pool_, sizeof(Entry), &memory, err) != 0) return -1;
  auto *entry = new (memory) Entry{extension, ownsValue, ++appended_, last_, nullptr};
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
    return Call{kModule, "KetraObjectSetExt", err}.fail(AsnMemError_OutOfMemory, "too many extensions for one object");
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
  uint32_t slot = slotOf(entry->extension.objid);
  while (index_[slot] != nullptr) slot = (slot + 1) & (indexSize_ - 1);
  index_[slot] = entry;
}

// Empties the entry's slot, and moves up what stands behind it only because slots before were taken.
void Table::leave(const Entry *entry) {
  const uint32_t mask = indexSize_ - 1;
  uint32_t hole = slotOf(entry->extension.objid);
  while (index_[hole] != entry) hole = (hole + 1) & mask;
  for (uint32_t slot = (hole + 1) & mask; index_[slot] != nullptr; slot = (slot + 1) & mask) {
    const uint32_t home = slotOf(index_[slot]->extension.objid);
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

struct ExtensionsObject : KetraObjectRecord {
  explicit ExtensionsObject(AsnMemObject memory) : KetraObjectRecord{memory, {}, nullptr}, table(memory) {}
  Table table;
};

Table &tableOf(KetraObject object) { return static_cast<ExtensionsObject *>(object)->table; }

int32_t addNew(KetraObject object, const KetraExtension &extension, const AsnEncodedData &value, AsnErrorBlock *err) {
  Table &table = tableOf(object);
  KetraExtension copy = extension;
  copy.value = value;
  if (AsnMUtilCopyObjidBER(object->pool, &copy.objid, &extension.objid, err) != 0) return -1;
  if (table.append(copy, true, err) == 0) return 0;
  table.free(copy.objid.arcs);
  return -1;
}

// ---- Whole encodings -----------------------------------------------------------------------------------------------

// A member number as a path.
class MemberPath {
 public:
  explicit MemberPath(uint32_t member) { *std::to_chars(text_, text_ + sizeof text_ - 1, member).ptr = '\0'; }
  operator const char *() const { return text_; }

 private:
  char text_[12];
};

// Where the value of a member lies in the encoding; one in segments gets a copy.
int32_t readValue(AsnMemObject pool, AsnObject work, AsnValue member, KetraExtension *extension, bool *owns,
                  AsnErrorBlock *err) {
  AsnEncodedData *octets = &extension->value;
  *owns = AsnCalAddressOfValFld(work, member, "extnValue", &octets->octets, &octets->length, nullptr) != 0;
  if (!*owns) return 0;
  AsnOct joined{};
  if (AsnMUtilGetOctBER(pool, work, member, "extnValue", &joined, err) != 0) return -1;
  *octets = {joined.octets, joined.length};
  return 0;
}

int32_t readMember(const Call &call, AsnMemObject pool, AsnObject work, AsnValue list, uint32_t number, Table *table) {
  KetraExtension extension{};
  AsnValue member = nullptr;
  AsnBoolOpt critical{};
  bool ownsValue = false;
  if (AsnGetElement(work, list, MemberPath(number), &member, call.err) != 0 ||
      AsnGetOptBoolBER(work, member, "critical", &critical, call.err) != 0 ||
      AsnMUtilGetObjidBER(pool, work, member, "extnID", &extension.objid, call.err) != 0) {
    return -1;
  }
  extension.critical = critical.value;
  extension.criticalOption = critical.option;
  int32_t result = 0;
  if (table->find(extension.objid) != nullptr) {
    result = call.fail(KetraObjectError_Duplicate, Text() << "extension " << number << " repeats an identifier");
  } else {
    result = readValue(pool, work, member, &extension, &ownsValue, call.err);
  }
  if (result == 0) result = table->append(extension, ownsValue, call.err);
  if (result == 0) return 0;
  table->free(extension.objid.arcs);
  if (ownsValue) table->free(extension.value.octets);
  return -1;
}

int32_t readMembers(const Call &call, AsnMemObject pool, AsnObject work, Table *table, uint32_t length) {
  const AsnEncodedData encoding{table->encoding, length};
  AsnValue list = nullptr;
  uint32_t scratch = 0;
  uint32_t count = 0;
  if (AsnOpenFromMem(work, kExtensions.data(), &encoding, &list, call.err) != 0 ||
      AsnDecode(work, list, 0, &scratch, call.err) != 0 ||
      AsnCalCountOfSequence(work, list, "/", &count, call.err) != 0) {
    return -1;
  }
  if (count == 0) return call.fail(KetraObjectError_Empty, "Extensions without a member");
  for (uint32_t number = 1; number <= count; ++number) {
    if (readMember(call, pool, work, list, number, table) != 0) return -1;
  }
  return 0;
}

int32_t writeMember(AsnObject work, AsnValue list, uint32_t number, const KetraExtension &extension,
                    AsnErrorBlock *err) {
  const AsnOct octets{extension.value.octets, extension.value.length};
  AsnValue member = nullptr;
  if (AsnMakeElement(work, list, MemberPath(number), &member, err) != 0 ||
      AsnSetObjidDER(work, member, "extnID", &extension.objid, err) != 0) {
    return -1;
  }
  if (extension.criticalOption == 1 && extension.critical != 0 &&
      AsnSetBoolDER(work, member, "critical", 1, err) != 0) {
    return -1;
  }
  return AsnSetOctDER(work, member, "extnValue", &octets, err);
}

int32_t writeMembers(const Table &table, AsnMemObject pool, AsnObject work, AsnEncodedData *encoding,
                     AsnErrorBlock *err) {
  AsnValue list = nullptr;
  if (AsnOpenNew(work, kExtensions.data(), &list, err) != 0) return -1;
  uint32_t number = 0;
  for (const Entry *entry = table.first(); entry != nullptr; entry = entry->next) {
    if (writeMember(work, list, ++number, entry->extension, err) != 0) return -1;
  }
  return AsnMUtilEncodeDER(pool, work, list, "/", encoding, err);
}

int32_t failNull(const Call &call) {
  return call.fail(KetraObjectError_NullParameter, "no object, structure or place for the result");
}

}  // namespace
}  // namespace ketra::certificate

using namespace ketra::certificate;

int32_t KetraObjectCreate(KetraObject *object, AsnErrorBlock *err) {
  const Call call{kModule, __func__, err};
  if (object == nullptr) return failNull(call);
  AsnMemObject pool = nullptr;
  if (ketra::asn1::createPool(kPoolSize, &pool, call) != 0) return -1;
  void *memory = nullptr;
  if (AsnMemObjectMalloc(pool, sizeof(ExtensionsObject), &memory, err) != 0) {
    AsnMemObjectDestroy(pool, nullptr);
    return -1;
  }
  *object = new (memory) ExtensionsObject(pool);
  return 0;
}

int32_t KetraObjectDestroy(KetraObject object, AsnErrorBlock *err) {
  return object == nullptr ? 0 : AsnMemObjectDestroy(object->pool, err);
}

int32_t KetraObjectSetExt(KetraObject object, const KetraExtension *extension, AsnErrorBlock *err) {
  if (object == nullptr || extension == nullptr) return failNull(Call{kModule, __func__, err});
  if (AsnCheckObjidBER(&extension->objid, err) != 0) return -1;
  AsnEncodedData value{};
  if (AsnMUtilCopyEncodedDataBER(object->pool, &value, &extension->value, err) != 0) return -1;
  Entry *entry = tableOf(object).find(extension->objid);
  if (entry == nullptr) {
    if (addNew(object, *extension, value, err) == 0) return 0;
    AsnMemObjectFree(object->pool, value.octets, nullptr);
    return -1;
  }
  const uint8_t *old = entry->ownsValue ? entry->extension.value.octets : nullptr;
  entry->extension.critical = extension->critical;
  entry->extension.criticalOption = extension->criticalOption;
  entry->extension.value = value;
  entry->ownsValue = true;
  AsnMemObjectFree(object->pool, old, nullptr);
  return 0;
}

int32_t KetraObjectSearchExtpByObjid(KetraObject object, const Objid *objid, const KetraExtension **extension,
                                     AsnErrorBlock *err) {
  if (object == nullptr || objid == nullptr || extension == nullptr || (objid->arcs == nullptr && objid->count > 0)) {
    return failNull(Call{kModule, __func__, err});
  }
  const Entry *entry = tableOf(object).find(*objid);
  *extension = entry == nullptr ? nullptr : &entry->extension;
  return 0;
}

int32_t KetraObjectSetPduBER(KetraObject object, const AsnEncodedData *encoding, AsnErrorBlock *err) {
  const Call call{kModule, __func__, err};
  if (object == nullptr || encoding == nullptr) return failNull(call);
  AsnEncodedData copy{};
  if (AsnMUtilCopyEncodedDataBER(object->pool, &copy, encoding, err) != 0) return -1;
  Table fresh(object->pool);
  fresh.encoding = copy.octets;
  AsnObject work = nullptr;
  int32_t result = AsnObjectCreate(&work, err);
  if (result == 0) {
    result = readMembers(call, object->pool, work, &fresh, copy.length);
    AsnObjectDestroy(work, nullptr);
  }
  if (result == 0) std::swap(fresh, tableOf(object));
  fresh.release();
  return result;
}

int32_t KetraObjectGetPduDER(KetraObject object, AsnEncodedData *encoding, AsnErrorBlock *err) {
  const Call call{kModule, __func__, err};
  if (object == nullptr || encoding == nullptr) return failNull(call);
  const Table &table = tableOf(object);
  if (table.count() == 0) return call.fail(KetraObjectError_Empty, "no extension to encode");
  AsnObject work = nullptr;
  if (AsnObjectCreate(&work, err) != 0) return -1;
  const int32_t result = writeMembers(table, object->pool, work, encoding, err);
  AsnObjectDestroy(work, nullptr);
  return result;
}

int32_t KetraObjectCalExt(KetraObject object, uint32_t *count, AsnErrorBlock *err) {
  if (object == nullptr || count == nullptr) return failNull(Call{kModule, __func__, err});
  *count = tableOf(object).count();
  return 0;
}

int32_t KetraObjectGetExtpByIndex(KetraObject object, uint32_t index, const KetraExtension **extension,
                                  AsnErrorBlock *err) {
  const Call call{kModule, __func__, err};
  if (object == nullptr || extension == nullptr) return failNull(call);
  Table &table = tableOf(object);
  if (index >= table.count()) {
    return call.fail(KetraObjectError_Index, Text() << "index " << index << " of " << table.count());
  }
  *extension = &table.at(index)->extension;
  return 0;
}

int32_t KetraObjectDeleteExt(KetraObject object, const Objid *objid, AsnErrorBlock *err) {
  const Call call{kModule, __func__, err};
  if (object == nullptr || objid == nullptr || (objid->arcs == nullptr && objid->count > 0)) return failNull(call);
  Entry *entry = tableOf(object).find(*objid);
  if (entry == nullptr) return call.fail(KetraObjectError_Absent, "no extension has this identifier");
  tableOf(object).remove(entry);
  return 0;
}

int32_t KetraObjectGetMemObject(KetraObject object, AsnMemObject *pool, AsnErrorBlock *err) {
  if (object == nullptr || pool == nullptr) return failNull(Call{kModule, __func__, err});
  *pool = object->pool;
  return 0;
}
