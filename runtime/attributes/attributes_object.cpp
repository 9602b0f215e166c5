// The Attributes object: its operations.

#include <new>
#include <utility>

#include "ketra/contracts/asn1_schema.hpp"
#include "ketra/ketra_runtime.h"
#include "runtime/asn1/encoder.h"
#include "runtime/asn1/pool.h"
#include "runtime/asn1/tlv.h"
#include "runtime/asn1/work_object.h"
#include "runtime/attributes/attribute_list.h"

namespace ketra::attributes {
namespace {

using asn1::Call;
using asn1::Text;

// An object with two or three attributes of ordinary length asks the system once.
constexpr std::size_t kPoolSize = 512;

constexpr schema::Row kRows[] = {
    // clang-format off
    schema::SequenceOf("Attributes"),
        schema::Element("Attribute"),
    schema::Sequence("Attribute"),
        schema::Component("type", schema::ObjectIdentifier),
        schema::Component("values", "AttributeValues"),
    schema::SetOf("AttributeValues"),
        schema::Element(schema::OpenType),
    // clang-format on
};
constexpr auto kRecords = schema::compile(kRows);
constexpr const AsnType *kAttributes = kRecords.data();
constexpr const AsnType *kAttribute = kAttributes + schema::indexOf(kRows, "Attribute");

int32_t failNull(Call call) {
  return call.fail(X509AttributesError_NullParameter, "no object, structure or place for the result");
}

int32_t create(Call call, X509AttributesObject *attributes) {
  AsnMemObject pool = nullptr;
  if (asn1::createPool(kPoolSize, &pool, call) != 0) return -1;
  void *memory = asn1::allocate(pool, sizeof(X509AttributesObjectRecord), call.err);
  if (memory == nullptr) {
    AsnMemObjectDestroy(pool, nullptr);
    return -1;
  }
  *attributes = new (memory) X509AttributesObjectRecord{pool, AttributeList(pool)};
  return 0;
}

// ---- From an encoding, and from values -----------------------------------------------------------------------------

int32_t refuseEmpty(Call call, AsnValue list) {
  if (list->length == 0) return call.fail(X509AttributesError_Empty, "the list has no attribute");
  for (uint32_t i = 0; i < list->length; ++i) {
    if (list->children[i]->children[1]->length > 0) continue;
    return call.fail(X509AttributesError_Empty, Text() << "attribute " << i + 1 << " has no value");
  }
  return 0;
}

int32_t setEncoding(Call call, AsnObject work, X509AttributesObject attributes, const AsnEncodedData &encoding) {
  AsnValue list = nullptr;
  uint32_t scratch = 0;
  if (AsnOpenFromMem(work, kAttributes, &encoding, &list, call.err) != 0 ||
      AsnDecode(work, list, 0, &scratch, call.err) != 0 || refuseEmpty(call, list) != 0) {
    return -1;
  }
  const AsnOct der = asn1::encode(call, work->arena, list, asn1::Rules::Der);
  if (der.octets == nullptr) return -1;
  asn1::Encoding whole{};
  asn1::Walk(der).next(&whole);
  AttributeList fresh(attributes->pool);
  const int32_t result = fresh.append(call, whole.content);
  if (result == 0) std::swap(fresh, attributes->list);
  fresh.release();
  return result;
}

int32_t appendValues(Call call, AsnObject work, X509AttributesObject attributes, const Objid &type,
                     const AsnEncodedData *values, uint32_t count) {
  AsnValue attribute = nullptr;
  AsnValue set = nullptr;
  if (AsnOpenNew(work, kAttribute, &attribute, call.err) != 0 ||
      AsnSetObjidDER(work, attribute, "type", &type, call.err) != 0 ||
      AsnMakeElement(work, attribute, "values", &set, call.err) != 0) {
    return -1;
  }
  for (uint32_t i = 0; i < count; ++i) {
    AsnValue value = asn1::appendMember(work->arena, set);
    if (value == nullptr) return call.fail(AsnError_OutOfMemory, "the system has no memory for a value");
    if (AsnSetEncodedDataDER(work, value, "/", &values[i], call.err) != 0) return -1;
  }
  const AsnOct der = asn1::encode(call, work->arena, attribute, asn1::Rules::Der);
  if (der.octets == nullptr) return -1;
  return attributes->list.append(call, der);
}

bool hasIndex(Call call, const AttributeList &list, uint32_t index) {
  if (index < list.count()) return true;
  call.fail(X509AttributesError_Index, Text() << "index " << index << " of " << list.count() << " attributes");
  return false;
}

}  // namespace
}  // namespace ketra::attributes

using namespace ketra::attributes;

int32_t X509AttributesObjectCreate(X509AttributesObject *attributes, AsnErrorBlock *err) {
  const Call call{__func__, err};
  return attributes == nullptr ? failNull(call) : create(call, attributes);
}

int32_t X509AttributesObjectDestroy(X509AttributesObject attributes, AsnErrorBlock *err) {
  return attributes == nullptr ? 0 : AsnMemObjectDestroy(attributes->pool, err);
}

int32_t X509AttributesObjectSetPduBER(X509AttributesObject attributes, const AsnEncodedData *encoding,
                                      AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (attributes == nullptr || encoding == nullptr) return failNull(call);
  return ketra::asn1::withWorkObject(call,
                                     [&](AsnObject work) { return setEncoding(call, work, attributes, *encoding); });
}

int32_t X509AttributesObjectGetPduDER(X509AttributesObject attributes, AsnEncodedData *encoding, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (attributes == nullptr || encoding == nullptr) return failNull(call);
  if (attributes->list.count() == 0) return call.fail(X509AttributesError_Empty, "no attribute to encode");
  *encoding = attributes->list.encoding();
  return 0;
}

int32_t X509AttributesObjectAppend(X509AttributesObject attributes, const Objid *type, const AsnEncodedData *values,
                                   uint32_t count, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (attributes == nullptr || type == nullptr || (values == nullptr && count > 0)) return failNull(call);
  if (count == 0) return call.fail(X509AttributesError_Empty, "an attribute of no values");
  if (AsnCheckObjidBER(type, err) != 0) return -1;
  return ketra::asn1::withWorkObject(
      call, [&](AsnObject work) { return appendValues(call, work, attributes, *type, values, count); });
}

int32_t X509AttributesObjectCal(X509AttributesObject attributes, uint32_t *count, AsnErrorBlock *err) {
  if (attributes == nullptr || count == nullptr) return failNull(Call{__func__, err});
  *count = attributes->list.count();
  return 0;
}

int32_t X509AttributesObjectGetType(X509AttributesObject attributes, uint32_t index, Objid *type, uint32_t *valueCount,
                                    AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (attributes == nullptr || type == nullptr || valueCount == nullptr) return failNull(call);
  const AttributeList &list = attributes->list;
  if (!hasIndex(call, list, index)) return -1;
  *type = list.typeAt(index);
  *valueCount = list.valueCountAt(index);
  return 0;
}

int32_t X509AttributesObjectGetValue(X509AttributesObject attributes, uint32_t index, uint32_t valueIndex,
                                     AsnEncodedData *value, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (attributes == nullptr || value == nullptr) return failNull(call);
  const AttributeList &list = attributes->list;
  if (!hasIndex(call, list, index)) return -1;
  const uint32_t count = list.valueCountAt(index);
  if (valueIndex >= count) {
    return call.fail(X509AttributesError_Index, Text() << "index " << valueIndex << " of " << count
                                                       << " values of the attribute at index " << index);
  }
  *value = list.valueAt(index, valueIndex);
  return 0;
}
