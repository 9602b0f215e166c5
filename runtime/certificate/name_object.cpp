// The Name object: one distinguished name, kept in DER.

#include "runtime/certificate/name_object.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "contracts/asn1_schema.hpp"
#include "ketra_runtime.h"
#include "runtime/asn1/access.h"
#include "runtime/asn1/content.h"
#include "runtime/asn1/encoder.h"
#include "runtime/asn1/pool.h"
#include "runtime/certificate/attribute_types.h"

namespace ketra::certificate {
namespace {

using asn1::Call;
using asn1::Text;

constexpr std::size_t kPoolSize = 384;  // an object with a name of some 200 octets asks the system once
constexpr uint8_t kEmptyName[] = {0x30, 0x00};

constexpr schema::Row kRows[] = {
    // clang-format off
    schema::SequenceOf("Name"),
        schema::Element("RelativeDistinguishedName"),
    schema::SetOf("RelativeDistinguishedName"),
        schema::Element("AttributeTypeAndValue"),
    schema::Sequence("AttributeTypeAndValue"),
        schema::Component("type", schema::ObjectIdentifier),
        schema::Component("value", schema::OpenType),
    // What AppendRdn writes: values of the string types.
    schema::SetOf("TextRdn"),
        schema::Element("TypeAndText"),
    schema::Sequence("TypeAndText"),
        schema::Component("type", schema::ObjectIdentifier),
        schema::Component("value", "Text"),
    schema::Choice("Text"),
        schema::Component("teletexString", "TeletexString"),
        schema::Component("printableString", "PrintableString"),
        schema::Component("bmpString", "BMPString"),
        schema::Component("universalString", "UniversalString"),
        schema::Component("uTF8String", "UTF8String"),
        schema::Component("ia5String", "IA5String"),
    schema::Type("TeletexString", schema::Octets(20)),
    schema::Type("PrintableString", schema::Octets(19)),
    schema::Type("BMPString", schema::Octets(30)),
    schema::Type("UniversalString", schema::Octets(28)),
    schema::Type("UTF8String", schema::Octets(12)),
    schema::Type("IA5String", schema::Octets(22)),
    // clang-format on
};
constexpr auto kRecords = schema::compile(kRows);
constexpr const AsnType *kName = &kRecords[schema::indexOf(kRows, "Name")];
constexpr const AsnType *kTextRdn = &kRecords[schema::indexOf(kRows, "TextRdn")];

int32_t failNull(const Call &call) {
  return call.fail(X509NameError_NullParameter, "no name, structure or place for the result");
}

// ---- The buffer ----------------------------------------------------------------------------------------------------

int32_t create(const Call &call, X509NameObject *name) {
  AsnMemObject pool = nullptr;
  if (asn1::createPool(kPoolSize, &pool, call) != 0) return -1;
  void *memory = nullptr;
  if (asn1::allocate(pool, sizeof(X509NameObjectRecord), &memory, call.err) != 0) {
    AsnMemObjectDestroy(pool, nullptr);
    return -1;
  }
  *name = new (memory) X509NameObjectRecord{pool, nullptr, 0, 0, 0};
  return 0;
}

// Room for `length` octets: a buffer of its own for another name, and one of double size for one that grows.
int32_t reserve(const Call &call, X509NameObject name, uint32_t kept, uint64_t length) {
  constexpr uint32_t kMost = UINT32_MAX - kHeaderRoom;
  if (length > kMost) return call.fail(AsnError_TooLong, "the name would exceed 4294967295 octets");
  if (kept > 0 && length <= name->capacity) return 0;
  const uint64_t wanted = kept == 0 ? length : std::max(length, 2 * uint64_t{kept});
  const auto capacity = static_cast<uint32_t>(std::min<uint64_t>(wanted, kMost));
  void *memory = nullptr;
  if (asn1::allocate(name->pool, kHeaderRoom + capacity, &memory, call.err) != 0) return -1;
  auto *buffer = static_cast<uint8_t *>(memory);
  if (kept > 0) std::memcpy(buffer + kHeaderRoom, name->buffer + kHeaderRoom, kept);
  AsnMemObjectFree(name->pool, name->buffer, nullptr);
  name->buffer = buffer;
  name->capacity = capacity;
  return 0;
}

// Makes the name consist of `kept` of the octets it has and those of `added`, which lie elsewhere.
int32_t store(const Call &call, X509NameObject name, uint32_t kept, const AsnOct &added) {
  const uint64_t length = uint64_t{kept} + added.length;
  if (reserve(call, name, kept, length) != 0) return -1;
  uint8_t *const begin = name->buffer + kHeaderRoom;
  if (added.length > 0) std::memcpy(begin + kept, added.octets, added.length);
  name->length = static_cast<uint32_t>(length);
  name->headerSize = asn1::writeLength(begin, name->length) + 1;
  *(begin - name->headerSize) = 0x30;
  return 0;
}

AsnEncodedData encodingOf(X509NameObject name) {
  if (name->length == 0) return {kEmptyName, sizeof kEmptyName};
  return {name->buffer + kHeaderRoom - name->headerSize, name->headerSize + name->length};
}

// ---- From an encoding ----------------------------------------------------------------------------------------------

// Reads a name in BER; its relative distinguished names in DER lie in the arena.
int32_t readName(const Call &call, AsnObject work, const AsnEncodedData &encoding, AsnOct *rdns) {
  AsnValue value = nullptr;
  uint32_t scratch = 0;
  if (AsnOpenFromMem(work, kName, &encoding, &value, call.err) != 0 ||
      AsnDecode(work, value, 0, &scratch, call.err) != 0) {
    return -1;
  }
  for (uint32_t i = 0; i < value->length; ++i) {
    if (value->children[i]->length > 0) continue;
    return call.fail(X509NameError_Empty, Text() << "relative distinguished name " << i + 1 << " has no attribute");
  }
  AsnEncodedData der{};
  if (!asn1::encode(call, work->arena, value, asn1::Rules::Der, &der.octets, &der.length)) return -1;
  Encoding whole{};
  Walk({der.octets, der.length}).next(&whole);
  *rdns = whole.content;
  return 0;
}

int32_t setName(const Call &call, X509NameObject name, const AsnEncodedData &encoding) {
  return withWorkObject(call, [&](AsnObject work) {
    AsnOct rdns{};
    return readName(call, work, encoding, &rdns) == 0 ? store(call, name, 0, rdns) : -1;
  });
}

int32_t getName(const Call &call, AsnMemObject pool, AsnObject object, AsnValue value, const char *path,
                X509NameObject *name, bool der) {
  if (pool == nullptr || object == nullptr || name == nullptr) return failNull(call);
  asn1::Node *element = nullptr;
  AsnEncodedData encoding{};
  if (!asn1::findScalar(call, value, path, asn1::Need::Mandatory, asn1::isOpen, &element) ||
      !asn1::encodingOf(call, object->arena, element, der, &encoding.octets, &encoding.length)) {
    return -1;
  }
  X509NameObject made = nullptr;
  if (create(call, &made) != 0) return -1;
  if (setName(call, made, encoding) != 0) {
    AsnMemObjectDestroy(made->pool, nullptr);
    return -1;
  }
  *name = made;
  return 0;
}

// ---- Appending -----------------------------------------------------------------------------------------------------

bool isIa5Type(const Objid &type) {
  uint8_t octets[sizeof(AttributeType::octets)];
  const uint64_t length = asn1::measureArcs(type);
  if (length > sizeof octets) return false;
  asn1::writeArcs(type, octets);
  const AttributeType *known = findAttributeType(octets, static_cast<uint32_t>(length));
  return known != nullptr && known->isIa5;
}

bool fitsIa5(const X509DirStr &value) {
  return (value.choice == X509DirStr_PrintableString || value.choice == X509DirStr_Utf8String) &&
         isAscii(value.octets, value.length);
}

int32_t checkAttribute(const Call &call, const X509NameAttribute &attribute, uint32_t number) {
  const X509DirStr &value = attribute.value;
  const Text what = Text() << "attribute " << number;
  uint32_t count = 0;
  if (AsnCheckObjidBER(&attribute.type, call.err) != 0 || !hasShape(call, &value, what.c_str()) ||
      !countCharacters(call, value, what.c_str(), &count)) {
    return -1;
  }
  if (count == 0) return call.fail(X509DirStrError_Length, Text() << what.c_str() << " has no characters");
  if (value.choice == X509DirStr_PrintableString && !isPrintable(value.octets, value.length)) {
    return call.fail(X509DirStrError_Characters, Text() << what.c_str() << " has characters beyond PrintableString",
                     value.octets, value.length);
  }
  if (!isIa5Type(attribute.type) || fitsIa5(value)) return 0;
  return call.fail(X509NameError_Attribute,
                   Text() << what.c_str() << " is an IA5String: ASCII, given as PrintableString or UTF8String",
                   value.octets, value.length);
}

int32_t writeAttribute(const Call &call, AsnObject work, AsnValue rdn, const X509NameAttribute &attribute) {
  const AsnOct octets{attribute.value.octets, attribute.value.length};
  const char *alternative = isIa5Type(attribute.type) ? "ia5String" : componentOf(attribute.value.choice);
  AsnValue member = asn1::appendMember(work->arena, rdn);
  AsnValue text = nullptr;
  if (member == nullptr) return call.fail(X509NameError_OutOfMemory, "the system has no memory for an attribute");
  if (AsnSetObjidDER(work, member, "type", &attribute.type, call.err) != 0 ||
      AsnMakeElement(work, member, "value", &text, call.err) != 0) {
    return -1;
  }
  return AsnSetOctDER(work, text, alternative, &octets, call.err);
}

int32_t appendRdn(const Call &call, AsnObject work, X509NameObject name, const X509NameAttribute *attributes,
                  uint32_t count) {
  AsnValue rdn = nullptr;
  if (AsnOpenNew(work, kTextRdn, &rdn, call.err) != 0) return -1;
  for (uint32_t i = 0; i < count; ++i) {
    if (checkAttribute(call, attributes[i], i + 1) != 0 || writeAttribute(call, work, rdn, attributes[i]) != 0) {
      return -1;
    }
  }
  AsnOct der{};
  if (!asn1::encode(call, work->arena, rdn, asn1::Rules::Der, &der.octets, &der.length)) return -1;
  return store(call, name, name->length, der);
}

using SetEncoded = int32_t(AsnObject, AsnValue, const char *, const AsnEncodedData *, AsnErrorBlock *);

int32_t setElement(const Call &call, AsnObject object, AsnValue value, const char *path, X509NameObject name,
                   SetEncoded *setEncoded) {
  if (name == nullptr) return failNull(call);
  const AsnEncodedData encoding = encodingOf(name);
  return setEncoded(object, value, path, &encoding, call.err);
}

}  // namespace
}  // namespace ketra::certificate

using namespace ketra::certificate;

int32_t X509NameObjectCreate(X509NameObject *name, AsnErrorBlock *err) {
  const Call call{kNameModule, __func__, err};
  return name == nullptr ? failNull(call) : create(call, name);
}

int32_t X509NameObjectDestroy(X509NameObject name, AsnErrorBlock *err) {
  return name == nullptr ? 0 : AsnMemObjectDestroy(name->pool, err);
}

int32_t X509NameObjectSetPduBER(X509NameObject name, const AsnEncodedData *encoding, AsnErrorBlock *err) {
  const Call call{kNameModule, __func__, err};
  if (name == nullptr || encoding == nullptr) return failNull(call);
  return setName(call, name, *encoding);
}

int32_t X509NameObjectGetPduDER(X509NameObject name, AsnEncodedData *encoding, AsnErrorBlock *err) {
  if (name == nullptr || encoding == nullptr) return failNull({kNameModule, __func__, err});
  *encoding = encodingOf(name);
  return 0;
}

int32_t X509NameObjectAppendRdn(X509NameObject name, const X509NameAttribute *attributes, uint32_t count,
                                AsnErrorBlock *err) {
  const Call call{kNameModule, __func__, err};
  if (name == nullptr || (attributes == nullptr && count > 0)) return failNull(call);
  if (count == 0) return call.fail(X509NameError_Empty, "a relative distinguished name of no attributes");
  return withWorkObject(call, [&](AsnObject work) { return appendRdn(call, work, name, attributes, count); });
}

int32_t X509MUtilCopyNameObject(X509NameObject *name, X509NameObject source, AsnErrorBlock *err) {
  const Call call{kNameModule, __func__, err};
  if (name == nullptr || source == nullptr) return failNull(call);
  X509NameObject made = nullptr;
  if (create(call, &made) != 0) return -1;
  if (store(call, made, 0, rdnsOf(source)) != 0) {
    AsnMemObjectDestroy(made->pool, nullptr);
    return -1;
  }
  *name = made;
  return 0;
}

int32_t X509MUtilSetNameObjectDER(AsnObject object, AsnValue value, const char *path, X509NameObject name,
                                  AsnErrorBlock *err) {
  return setElement({kNameModule, __func__, err}, object, value, path, name, AsnSetEncodedDataDER);
}

int32_t X509MUtilSetNameObjectBER(AsnObject object, AsnValue value, const char *path, X509NameObject name,
                                  AsnErrorBlock *err) {
  return setElement({kNameModule, __func__, err}, object, value, path, name, AsnSetEncodedDataBER);
}

int32_t X509MUtilGetNameObjectDER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path,
                                  X509NameObject *name, AsnErrorBlock *err) {
  return getName({kNameModule, __func__, err}, pool, object, value, path, name, true);
}

int32_t X509MUtilGetNameObjectBER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path,
                                  X509NameObject *name, AsnErrorBlock *err) {
  return getName({kNameModule, __func__, err}, pool, object, value, path, name, false);
}
