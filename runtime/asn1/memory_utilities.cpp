#include <algorithm>
#include <cstring>

#include "ketra/ketra_runtime.h"
#include "runtime/asn1/access.h"
#include "runtime/asn1/content.h"
#include "runtime/asn1/encoder.h"
#include "runtime/asn1/pool.h"

namespace ketra::asn1 {
namespace {

bool isGiven(Call call, AsnMemObject pool, AsnObject object, const void *out) {
  if (pool != nullptr && object != nullptr && out != nullptr) return true;
  call.fail(AsnMUtilError_NullParameter, "no pool, work object or place for the result");
  return false;
}

int32_t encodeInto(Call call, AsnMemObject pool, AsnObject object, AsnValue value, const char *path,
                   AsnEncodedData *encoding, Rules rules) {
  if (!isGiven(call, pool, object, encoding)) return -1;
  const Found found = findScalar(call, value, path, Need::Mandatory, [](const AsnType *) { return true; });
  if (!found) return -1;
  return encode(call, pool, object->arena, found.element, rules, encoding);
}

int32_t getObjid(Call call, AsnMemObject pool, AsnObject object, AsnValue value, const char *path, Objid *objid,
                 bool der) {
  if (!isGiven(call, pool, object, objid)) return -1;
  const Found found = findScalar(call, value, path, Need::Mandatory, isObjid);
  if (!found) return -1;
  const Node *element = found.element;
  if (der && !hasDerLength(call, element)) return -1;
  const uint32_t count = countArcs(element->content, element->length);
  if (count > UINT32_MAX / sizeof(uint32_t)) return call.fail(AsnError_Range, "an identifier of too many arcs");
  void *arcs = allocate(pool, static_cast<uint32_t>(count * sizeof(uint32_t)), call.err);
  if (arcs == nullptr) return -1;
  if (!readArcs(element->content, element->length, count, static_cast<uint32_t *>(arcs))) {
    AsnMemObjectFree(pool, arcs, nullptr);
    return call.fail(AsnError_Range, Text() << nameOf(element->record) << " has an arc of more than 32 bits");
  }
  *objid = {static_cast<uint32_t *>(arcs), count};
  return 0;
}

// A copy of an element's content in the pool; an absent element gives null with success where that is allowed.
int32_t copyOctets(Call call, AsnMemObject pool, AsnValue value, const char *path, Need need, bool der, AsnOct *octets,
                   bool *present) {
  const Found found = findScalar(call, value, path, need, isOctets);
  if (!found) return -1;
  const Node *element = found.element;
  *present = element != nullptr;
  *octets = {nullptr, 0};
  if (element == nullptr) return 0;
  if (der && !hasDerLength(call, element)) return -1;
  void *copy = duplicate(pool, element->content, element->length, call.err);
  if (copy == nullptr) return -1;
  *octets = {static_cast<uint8_t *>(copy), element->length};
  return 0;
}

int32_t getOctets(Call call, AsnMemObject pool, AsnObject object, AsnValue value, const char *path, AsnOct *octets,
                  bool der) {
  if (!isGiven(call, pool, object, octets)) return -1;
  AsnOct read;
  bool present = false;
  if (copyOctets(call, pool, value, path, Need::Mandatory, der, &read, &present) != 0) return -1;
  *octets = read;
  return 0;
}

int32_t getEncodedOpt(Call call, AsnMemObject pool, AsnObject object, AsnValue value, const char *path,
                      AsnEncodedDataOpt *encoding, bool der) {
  if (!isGiven(call, pool, object, encoding)) return -1;
  const Found found = findElement(call, value, path);
  if (!found) return -1;
  AsnEncodedDataOpt read = {{nullptr, 0}, 0};
  if (const Node *element = found.element; element != nullptr) {
    const AsnOct octets = encodingOf(call, object->arena, element, der);
    if (octets.octets == nullptr) return -1;
    void *copy = duplicate(pool, octets.octets, octets.length, call.err);
    if (copy == nullptr) return -1;
    read = {{static_cast<uint8_t *>(copy), octets.length}, 1};
  }
  *encoding = read;
  return 0;
}

bool canCopy(Call call, AsnMemObject pool, const void *destination, const void *source) {
  if (pool != nullptr && destination != nullptr && source != nullptr) return true;
  call.fail(AsnMUtilError_NullParameter, "no pool, source or place for the copy");
  return false;
}

// {pointer, length} shapes: a deep copy, and its release.
template <class Shape>
int32_t copyShape(Call call, AsnMemObject pool, Shape *destination, const Shape *source) {
  if (!canCopy(call, pool, destination, source)) return -1;
  if (source->octets == nullptr && source->length > 0) {
    return call.fail(AsnMUtilError_Pointer, Text() << "a null pointer with a length of " << source->length);
  }
  const uint32_t length = source->length;
  void *copy = duplicate(pool, source->octets, length, call.err);
  if (copy == nullptr) return -1;
  *destination = {static_cast<uint8_t *>(copy), length};
  return 0;
}

template <class Shape>
int32_t freeShape(Call call, AsnMemObject pool, Shape *shape, const void *memory) {
  if (pool == nullptr || shape == nullptr) return call.fail(AsnMUtilError_NullParameter, "no pool or value to free");
  if (AsnMemObjectFree(pool, memory, call.err) != 0) return -1;
  *shape = Shape{};
  return 0;
}

}  // namespace
}  // namespace ketra::asn1

using namespace ketra::asn1;

int32_t AsnMUtilEncodeDER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path,
                          AsnEncodedData *encoding, AsnErrorBlock *err) {
  return encodeInto({__func__, err}, pool, object, value, path, encoding, Rules::Der);
}

int32_t AsnMUtilEncodeBER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path,
                          AsnEncodedData *encoding, AsnErrorBlock *err) {
  return encodeInto({__func__, err}, pool, object, value, path, encoding, Rules::Ber);
}

int32_t AsnMUtilGetObjidDER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path, Objid *objid,
                            AsnErrorBlock *err) {
  return getObjid({__func__, err}, pool, object, value, path, objid, true);
}

int32_t AsnMUtilGetObjidBER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path, Objid *objid,
                            AsnErrorBlock *err) {
  return getObjid({__func__, err}, pool, object, value, path, objid, false);
}

int32_t AsnMUtilGetObjidConstBER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path, Objid *objid,
                                 AsnErrorBlock *err) {
  return getObjid({__func__, err}, pool, object, value, path, objid, false);
}

int32_t AsnMUtilGetOctDER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path, AsnOct *octets,
                          AsnErrorBlock *err) {
  return getOctets({__func__, err}, pool, object, value, path, octets, true);
}

int32_t AsnMUtilGetOctBER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path, AsnOct *octets,
                          AsnErrorBlock *err) {
  return getOctets({__func__, err}, pool, object, value, path, octets, false);
}

int32_t AsnMUtilGetOctOptBER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path, AsnOctOpt *octets,
                             AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (!isGiven(call, pool, object, octets)) return -1;
  AsnOct read;
  bool present = false;
  if (copyOctets(call, pool, value, path, Need::Optional, false, &read, &present) != 0) return -1;
  *octets = {read, present ? 1 : 0};
  return 0;
}

int32_t AsnMUtilGetBitConstBER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path, AsnBit *bits,
                               AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (!isGiven(call, pool, object, bits)) return -1;
  const Found found = findScalar(call, value, path, Need::Mandatory, isBits);
  if (!found) return -1;
  const Node *element = found.element;
  const uint64_t carried = uint64_t{element->length - 1} * 8 - element->content[0];
  const auto shared = static_cast<uint32_t>(std::min<uint64_t>(carried, bits->bits));
  const uint32_t size = bits->bits / 8 + (bits->bits % 8 == 0 ? 0 : 1);
  auto *octets = static_cast<uint8_t *>(allocate(pool, size, err));
  if (octets == nullptr) return -1;
  for (uint32_t i = 0; i < size; ++i) octets[i] = i < shared / 8 ? element->content[1 + i] : 0;
  if (shared % 8 != 0) {
    octets[shared / 8] = static_cast<uint8_t>(element->content[1 + shared / 8] & (0xFF00u >> shared % 8));
  }
  bits->octets = octets;
  return 0;
}

int32_t AsnMUtilGetGtimeBER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path, Gtime *time,
                            AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (!isGiven(call, pool, object, time)) return -1;
  const Found found = findScalar(call, value, path, Need::Mandatory, isTimeType);
  return found && readTimeOf(call, found.element, time) ? 0 : -1;
}

int32_t AsnMUtilGetGtimeOptBER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path, GtimeOpt *time,
                               AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (!isGiven(call, pool, object, time)) return -1;
  const Found found = findScalar(call, value, path, Need::Optional, isTimeType);
  if (!found) return -1;
  GtimeOpt read = {{0, 0}, 0};
  if (found.element != nullptr) {
    if (!readTimeOf(call, found.element, &read.value)) return -1;
    read.option = 1;
  }
  *time = read;
  return 0;
}

int32_t AsnMUtilGetEncodedDataOptDER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path,
                                     AsnEncodedDataOpt *encoding, AsnErrorBlock *err) {
  return getEncodedOpt({__func__, err}, pool, object, value, path, encoding, true);
}

int32_t AsnMUtilGetEncodedDataOptBER(AsnMemObject pool, AsnObject object, AsnValue value, const char *path,
                                     AsnEncodedDataOpt *encoding, AsnErrorBlock *err) {
  return getEncodedOpt({__func__, err}, pool, object, value, path, encoding, false);
}

int32_t AsnMUtilCopyEncodedDataDER(AsnMemObject pool, AsnEncodedData *destination, const AsnEncodedData *source,
                                   AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (!canCopy(call, pool, destination, source)) return -1;
  if (source->octets == nullptr) return call.fail(AsnMUtilError_Pointer, "no encoding");
  Fault fault;
  switch (checkLengths(source->octets, source->length, fault)) {
    case Lengths::Der: return copyShape(call, pool, destination, source);
    case Lengths::Other: return call.fail(AsnError_NotDer, "the encoding has lengths that are not DER");
    default:
      return call.fail(fault.code, Text()
                                       << fault.text.c_str() << " at offset " << uint64_t(fault.at - source->octets));
  }
}

int32_t AsnMUtilCopyEncodedDataBER(AsnMemObject pool, AsnEncodedData *destination, const AsnEncodedData *source,
                                   AsnErrorBlock *err) {
  return copyShape({__func__, err}, pool, destination, source);
}

int32_t AsnMUtilCopyEncodedDataOptBER(AsnMemObject pool, AsnEncodedDataOpt *destination,
                                      const AsnEncodedDataOpt *source, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (!canCopy(call, pool, destination, source)) return -1;
  AsnEncodedDataOpt copy = {{nullptr, 0}, 0};
  if (source->option == 1) {
    if (copyShape(call, pool, &copy.value, &source->value) != 0) return -1;
    copy.option = 1;
  }
  *destination = copy;
  return 0;
}

int32_t AsnMUtilCopyObjidBER(AsnMemObject pool, Objid *destination, const Objid *source, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (!canCopy(call, pool, destination, source)) return -1;
  const uint32_t count = source->count;
  if ((source->arcs == nullptr && count > 0) || count > UINT32_MAX / sizeof(uint32_t)) {
    return call.fail(AsnMUtilError_Pointer, Text() << "no memory can hold these " << count << " arcs");
  }
  void *copy = duplicate(pool, source->arcs, static_cast<uint32_t>(count * sizeof(uint32_t)), err);
  if (copy == nullptr) return -1;
  *destination = {static_cast<uint32_t *>(copy), count};
  return 0;
}

int32_t AsnMUtilCopyOctBER(AsnMemObject pool, AsnOct *destination, const AsnOct *source, AsnErrorBlock *err) {
  return copyShape({__func__, err}, pool, destination, source);
}

int32_t AsnMUtilFreeObjid(AsnMemObject pool, Objid *objid, AsnErrorBlock *err) {
  return freeShape({__func__, err}, pool, objid, objid == nullptr ? nullptr : objid->arcs);
}

int32_t AsnMUtilFreeOct(AsnMemObject pool, AsnOct *octets, AsnErrorBlock *err) {
  return freeShape({__func__, err}, pool, octets, octets == nullptr ? nullptr : octets->octets);
}

int32_t AsnMUtilFreeEncodedData(AsnMemObject pool, AsnEncodedData *encoding, AsnErrorBlock *err) {
  return freeShape({__func__, err}, pool, encoding, encoding == nullptr ? nullptr : encoding->octets);
}

int32_t AsnMUtilFreeEncodedDataOpt(AsnMemObject pool, AsnEncodedDataOpt *encoding, AsnErrorBlock *err) {
  return freeShape({__func__, err}, pool, encoding, encoding == nullptr ? nullptr : encoding->value.octets);
}
