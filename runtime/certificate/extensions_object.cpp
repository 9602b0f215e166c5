// The Extensions object.

#include <algorithm>
#include <charconv>
#include <new>

#include "ketra/contracts/asn1_schema.hpp"
#include "ketra/contracts/certificate.h"
#include "ketra/ketra_runtime.h"
#include "runtime/asn1/content.h"
#include "runtime/asn1/pool.h"
#include "runtime/certificate/extension_table.h"

namespace ketra::certificate {
namespace {

using asn1::Call;
using asn1::Text;

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

// What is written: an identifier with an arc beyond 32 bits by its content octets.
constexpr schema::Row kWrittenRows[] = {
    // clang-format off
    schema::SequenceOf("Extensions"),
        schema::Element("Extension"),
    schema::Sequence("Extension"),
        schema::Component("extnID", schema::ObjectIdentifier, schema::Optional),
        schema::Component("octetsOfExtnID", schema::Octets(6), schema::Optional),
        schema::Component("critical", schema::Boolean, schema::Optional),
        schema::Component("extnValue", schema::OctetString),
    // clang-format on
};
constexpr auto kWrittenExtensions = schema::compile(kWrittenRows);

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
  if (table.append(copy, {}, true, err) == 0) return 0;
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

// Reads the arcs of a member's identifier into the pool; one with an arc that does not fit stays where it is, as
// octets.
int32_t readIdentifier(AsnMemObject pool, AsnObject work, AsnValue member, Identifier *identifier, AsnErrorBlock *err) {
  AsnOct content{};
  if (AsnCalAddressOfValFld(work, member, "extnID", &content.octets, &content.length, err) != 0) return -1;
  const uint32_t count = asn1::countArcs(content.octets, content.length);
  if (count <= UINT32_MAX / sizeof(uint32_t)) {
    auto *arcs = static_cast<uint32_t *>(asn1::allocate(pool, static_cast<uint32_t>(count * sizeof(uint32_t)), err));
    if (arcs == nullptr) return -1;
    if (asn1::readArcs(content.octets, content.length, count, arcs)) {
      *identifier = {{arcs, count}, {}};
      return 0;
    }
    AsnMemObjectFree(pool, arcs, nullptr);
  }
  *identifier = {{}, content};
  return 0;
}

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

int32_t readMember(Call call, AsnMemObject pool, AsnObject work, AsnValue list, uint32_t number, Table *table) {
  KetraExtension extension{};
  Identifier identifier{};
  AsnValue member = nullptr;
  AsnBoolOpt critical{};
  bool ownsValue = false;
  if (AsnGetElement(work, list, MemberPath(number), &member, call.err) != 0 ||
      AsnGetOptBoolBER(work, member, "critical", &critical, call.err) != 0 ||
      readIdentifier(pool, work, member, &identifier, call.err) != 0) {
    return -1;
  }
  extension.objid = identifier.objid;
  extension.critical = critical.value;
  extension.criticalOption = critical.option;
  int32_t result = 0;
  if (table->find(identifier) != nullptr) {
    result = call.fail(KetraObjectError_Duplicate, Text() << "extension " << number << " repeats an identifier");
  } else {
    result = readValue(pool, work, member, &extension, &ownsValue, call.err);
  }
  if (result == 0) result = table->append(extension, identifier.octets, ownsValue, call.err);
  if (result == 0) return 0;
  table->free(extension.objid.arcs);
  if (ownsValue) table->free(extension.value.octets);
  return -1;
}

int32_t readMembers(Call call, AsnMemObject pool, AsnObject work, Table *table, uint32_t length) {
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

int32_t writeMember(AsnObject work, AsnValue list, uint32_t number, const Entry &entry, AsnErrorBlock *err) {
  const KetraExtension &extension = entry.extension;
  const AsnOct octets{extension.value.octets, extension.value.length};
  const AsnOct identifier = entry.identifier().octets;
  AsnValue member = nullptr;
  if (AsnMakeElement(work, list, MemberPath(number), &member, err) != 0) return -1;
  const int32_t set = identifier.length > 0 ? AsnSetOctDER(work, member, "octetsOfExtnID", &identifier, err)
                                            : AsnSetObjidDER(work, member, "extnID", &extension.objid, err);
  if (set != 0) return -1;
  if (extension.criticalOption == 1 && extension.critical != 0 &&
      AsnSetBoolDER(work, member, "critical", 1, err) != 0) {
    return -1;
  }
  return AsnSetOctDER(work, member, "extnValue", &octets, err);
}

int32_t writeMembers(const Table &table, AsnMemObject pool, AsnObject work, AsnEncodedData *encoding,
                     AsnErrorBlock *err) {
  AsnValue list = nullptr;
  if (AsnOpenNew(work, kWrittenExtensions.data(), &list, err) != 0) return -1;
  uint32_t number = 0;
  for (const Entry *entry = table.first(); entry != nullptr; entry = entry->next) {
    if (writeMember(work, list, ++number, *entry, err) != 0) return -1;
  }
  return AsnMUtilEncodeDER(pool, work, list, "/", encoding, err);
}

int32_t failNull(Call call) {
  return call.fail(KetraObjectError_NullParameter, "no object, structure or place for the result");
}

}  // namespace
}  // namespace ketra::certificate

using namespace ketra::certificate;

int32_t KetraObjectCreate(KetraObject *object, AsnErrorBlock *err) {
  const Call call{__func__, err};
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
  if (object == nullptr || extension == nullptr) return failNull(Call{__func__, err});
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
    return failNull(Call{__func__, err});
  }
  const Entry *entry = tableOf(object).find(*objid);
  *extension = entry == nullptr ? nullptr : &entry->extension;
  return 0;
}

int32_t KetraObjectSetPduBER(KetraObject object, const AsnEncodedData *encoding, AsnErrorBlock *err) {
  const Call call{__func__, err};
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
  const Call call{__func__, err};
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
  if (object == nullptr || count == nullptr) return failNull(Call{__func__, err});
  *count = tableOf(object).count();
  return 0;
}

int32_t KetraObjectGetExtpByIndex(KetraObject object, uint32_t index, const KetraExtension **extension,
                                  AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (object == nullptr || extension == nullptr) return failNull(call);
  Table &table = tableOf(object);
  if (index >= table.count()) {
    return call.fail(KetraObjectError_Index, Text() << "index " << index << " of " << table.count());
  }
  *extension = &table.at(index)->extension;
  return 0;
}

int32_t KetraObjectDeleteExt(KetraObject object, const Objid *objid, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (object == nullptr || objid == nullptr || (objid->arcs == nullptr && objid->count > 0)) return failNull(call);
  Entry *entry = tableOf(object).find(*objid);
  if (entry == nullptr) return call.fail(KetraObjectError_Absent, "no extension has this identifier");
  tableOf(object).remove(entry);
  return 0;
}

int32_t KetraObjectGetMemObject(KetraObject object, AsnMemObject *pool, AsnErrorBlock *err) {
  if (object == nullptr || pool == nullptr) return failNull(Call{__func__, err});
  *pool = object->pool;
  return 0;
}
