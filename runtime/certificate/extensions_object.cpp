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

// One extension. Arcs and value have blocks of their own in the pool; a value that came with a whole encoding lies in
// the copy of that.
struct Entry {
  KetraExtension extension;
  bool ownsValue;
};

bool sameObjid(const Objid &a, const Objid &b) {
  return a.count == b.count && std::equal(a.arcs, a.arcs + a.count, b.arcs);
}

// The entries of an object. Entries never move, so records that were handed out stay where they are.
class Table {
 public:
  explicit Table(AsnMemObject pool) : pool_(pool) {}

  uint32_t count() const { return count_; }
  Entry *at(uint32_t position) const { return entries_[position]; }
  Entry *find(const Objid &objid) const;
  // Makes an entry around arcs and value that are in the pool already and whose identifier is new to the table.
  int32_t append(const KetraExtension &extension, bool ownsValue, AsnErrorBlock *err);
  void remove(Entry *entry);
  void release();
  void free(const void *memory) const { AsnMemObjectFree(pool_, memory, nullptr); }

  const uint8_t *encoding = nullptr;  // the copy in which values lie, or null

 private:
  static constexpr uint32_t kUnindexed = 16;  // so many are found fast enough one by one

  uint64_t hash(const Objid &objid) const;
  bool grow(AsnErrorBlock *err);
  void reindex();
  void enter(Entry *entry);
  Entry *findByIndex(const Objid &objid) const;
  void freeEntry(Entry *entry) const;

  AsnMemObject pool_;
  Entry **entries_ = nullptr;
  uint32_t count_ = 0;
  uint32_t capacity_ = 0;
  Entry **index_ = nullptr;  // open addressing; at most half full
  uint32_t indexSize_ = 0;   // a power of two
};

// Mixed with an address, so that nobody who writes certificates can make identifiers collide.
uint64_t Table::hash(const Objid &objid) const {
  uint64_t mixed = static_cast<uint64_t>(reinterpret_cast<uintptr_t>(pool_)) | 1;
  for (uint32_t i = 0; i < objid.count; ++i) {
    mixed = (mixed ^ objid.arcs[i]) * 0x9E3779B97F4A7C15u;
    mixed ^= mixed >> 32;
  }
  return mixed * 0xC2B2AE3D27D4EB4Fu >> 20;
}

Entry *Table::find(const Objid &objid) const {
  if (index_ != nullptr) return findByIndex(objid);
  for (uint32_t i = 0; i < count_; ++i) {
    if (sameObjid(entries_[i]->extension.objid, objid)) return entries_[i];
  }
  return nullptr;
}

Entry *Table::findByIndex(const Objid &objid) const {
  for (uint64_t slot = hash(objid);; ++slot) {
    Entry *entry = index_[slot & (indexSize_ - 1)];
    if (entry == nullptr || sameObjid(entry->extension.objid, objid)) return entry;
  }
}

void Table::enter(Entry *entry) {
  uint64_t slot = hash(entry->extension.objid);
  while (index_[slot & (indexSize_ - 1)] != nullptr) ++slot;
  index_[slot & (indexSize_ - 1)] = entry;
}

int32_t Table::append(const KetraExtension &extension, bool ownsValue, AsnErrorBlock *err) {
  if (count_ == capacity_ && !grow(err)) return -1;
  void *memory = nullptr;
  if (AsnMemObjectMalloc(pool_, sizeof(Entry), &memory, err) != 0) return -1;
  entries_[count_++] = new (memory) Entry{extension, ownsValue};
  if (index_ != nullptr && count_ <= indexSize_ / 2) {
    enter(entries_[count_ - 1]);
  } else if (count_ > kUnindexed) {
    reindex();
  }
  return 0;
}

bool Table::grow(AsnErrorBlock *err) {
  const uint32_t capacity = capacity_ == 0 ? 8 : 2 * capacity_;
  void *memory = nullptr;
  if (AsnMemObjectMalloc(pool_, static_cast<uint32_t>(capacity * sizeof(Entry *)), &memory, err) != 0) return false;
  std::copy_n(entries_, count_, static_cast<Entry **>(memory));
  free(entries_);
  entries_ = static_cast<Entry **>(memory);
  capacity_ = capacity;
  return true;
}

// A new index with room to double; without memory for it, entries are found one by one.
void Table::reindex() {
  free(index_);
  index_ = nullptr;
  if (count_ <= kUnindexed) return;
  indexSize_ = 64;
  while (indexSize_ / 4 < count_) indexSize_ *= 2;
  void *memory = nullptr;
  if (AsnMemObjectMalloc(pool_, static_cast<uint32_t>(indexSize_ * sizeof(Entry *)), &memory, nullptr) != 0) return;
  index_ = static_cast<Entry **>(memory);
  std::fill_n(index_, indexSize_, nullptr);
  for (uint32_t i = 0; i < count_; ++i) enter(entries_[i]);
}

void Table::remove(Entry *entry) {
  Entry **const end = entries_ + count_;
  Entry **const place = std::find(entries_, end, entry);
  std::copy(place + 1, end, place);
  --count_;
  freeEntry(entry);
  if (index_ != nullptr) reindex();
}

void Table::freeEntry(Entry *entry) const {
  free(entry->extension.objid.arcs);
  if (entry->ownsValue) free(entry->extension.value.octets);
  free(entry);
}

void Table::release() {
  for (uint32_t i = 0; i < count_; ++i) freeEntry(entries_[i]);
  free(entries_);
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

// "12/extnID"
class MemberPath {
 public:
  MemberPath(uint32_t member, const char *component) {
    char *end = std::to_chars(text_, text_ + 10, member).ptr;
    *end++ = '/';
    std::copy_n(component, std::char_traits<char>::length(component) + 1, end);
  }
  operator const char *() const { return text_; }

 private:
  char text_[32];
};

// Where a value lies in the encoding; one in segments gets a copy.
int32_t readValue(AsnMemObject pool, AsnObject work, AsnValue value, uint32_t member, KetraExtension *extension,
                  bool *owns, AsnErrorBlock *err) {
  const MemberPath path(member, "extnValue");
  AsnEncodedData *octets = &extension->value;
  *owns = AsnCalAddressOfValFld(work, value, path, &octets->octets, &octets->length, nullptr) != 0;
  if (!*owns) return 0;
  AsnOct joined{};
  if (AsnMUtilGetOctBER(pool, work, value, path, &joined, err) != 0) return -1;
  *octets = {joined.octets, joined.length};
  return 0;
}

int32_t readMember(const Call &call, AsnMemObject pool, AsnObject work, AsnValue value, uint32_t member, Table *table) {
  KetraExtension extension{};
  AsnBoolOpt critical{};
  bool ownsValue = false;
  if (AsnGetOptBoolBER(work, value, MemberPath(member, "critical"), &critical, call.err) != 0 ||
      AsnMUtilGetObjidBER(pool, work, value, MemberPath(member, "extnID"), &extension.objid, call.err) != 0) {
    return -1;
  }
  extension.critical = critical.value;
  extension.criticalOption = critical.option;
  int32_t result = 0;
  if (table->find(extension.objid) != nullptr) {
    result = call.fail(KetraObjectError_Duplicate, Text() << "extension " << member << " repeats an identifier");
  } else {
    result = readValue(pool, work, value, member, &extension, &ownsValue, call.err);
  }
  if (result == 0) result = table->append(extension, ownsValue, call.err);
  if (result == 0) return 0;
  table->free(extension.objid.arcs);
  if (ownsValue) table->free(extension.value.octets);
  return -1;
}

int32_t readMembers(const Call &call, AsnMemObject pool, AsnObject work, Table *table, uint32_t length) {
  const AsnEncodedData encoding{table->encoding, length};
  AsnValue value = nullptr;
  uint32_t scratch = 0;
  uint32_t count = 0;
  if (AsnOpenFromMem(work, kExtensions.data(), &encoding, &value, call.err) != 0 ||
      AsnDecode(work, value, 0, &scratch, call.err) != 0 ||
      AsnCalCountOfSequence(work, value, "/", &count, call.err) != 0) {
    return -1;
  }
  if (count == 0) return call.fail(KetraObjectError_Empty, "Extensions without a member");
  for (uint32_t member = 1; member <= count; ++member) {
    if (readMember(call, pool, work, value, member, table) != 0) return -1;
  }
  return 0;
}

int32_t writeMember(AsnObject work, AsnValue value, uint32_t member, const KetraExtension &extension,
                    AsnErrorBlock *err) {
  const AsnOct octets{extension.value.octets, extension.value.length};
  if (AsnSetObjidDER(work, value, MemberPath(member, "extnID"), &extension.objid, err) != 0) return -1;
  if (extension.criticalOption == 1 && extension.critical != 0 &&
      AsnSetBoolDER(work, value, MemberPath(member, "critical"), 1, err) != 0) {
    return -1;
  }
  return AsnSetOctDER(work, value, MemberPath(member, "extnValue"), &octets, err);
}

int32_t writeMembers(const Table &table, AsnMemObject pool, AsnObject work, AsnEncodedData *encoding,
                     AsnErrorBlock *err) {
  AsnValue value = nullptr;
  if (AsnOpenNew(work, kExtensions.data(), &value, err) != 0) return -1;
  for (uint32_t i = 0; i < table.count(); ++i) {
    if (writeMember(work, value, i + 1, table.at(i)->extension, err) != 0) return -1;
  }
  return AsnMUtilEncodeDER(pool, work, value, "/", encoding, err);
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
  const Table &table = tableOf(object);
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
