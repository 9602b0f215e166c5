#include <cstring>

#include "runtime/asn1/access.h"
#include "runtime/asn1/content.h"

namespace ketra::asn1 {
namespace {

// One typed set: the element, and content in the arena that becomes its value.
class Setter {
 public:
  Setter(const char *function, AsnObject object, AsnErrorBlock *err) : call{function, err}, object_(object) {}

  bool make(AsnValue value, const char *path, bool (*fits)(const AsnType *)) {
    if (object_ == nullptr) {
      call.fail(AsnError_NullParameter, "no work object");
      return false;
    }
    element_ = makeElement(call, object_->arena, value, path, fits);
    return element_ != nullptr;
  }

  // Room for content that the caller fills at once; null without memory.
  uint8_t *content(uint64_t length) {
    uint8_t *octets = nullptr;
    if (length > UINT32_MAX) {
      call.fail(AsnError_TooLong, "the encoding would exceed 4294967295 octets");
      return nullptr;
    }
    if (length <= SIZE_MAX / 2) octets = object_->arena.makeArray<uint8_t>(static_cast<std::size_t>(length));
    if (octets == nullptr) {
      call.fail(AsnError_OutOfMemory, "the system has no memory for a value");
      return nullptr;
    }
    adopt(octets, static_cast<uint32_t>(length));
    return octets;
  }
  int32_t copy(const uint8_t *octets, uint32_t length, bool derLength = false) {
    uint8_t *to = content(length);
    if (to == nullptr) return -1;
    if (length > 0) std::memcpy(to, octets, length);
    element_->derLength = derLength;
    return 0;
  }
  void adopt(const uint8_t *octets, uint32_t length, bool derLength = false) {
    element_->content = octets;
    element_->length = length;
    element_->encoding = nullptr;
    element_->inPlace = false;
    element_->derLength = derLength;
    element_->isSet = true;
  }
  // Whether the path leads to an INTEGER handled as octets, whose content has rules; reports nothing.
  bool isIntegerString(AsnValue value, const char *path) const {
    const Found found = findElement({call.function, nullptr}, value, path);
    return found && contentOf(found.type) == Content::IntegerString;
  }
  Arena &arena() { return object_->arena; }

  const Call call;

 private:
  AsnObject object_;
  Node *element_ = nullptr;
};

template <class Shape>
bool isGiven(Call call, const Shape *shape, const void *octets, uint64_t length) {
  if (shape != nullptr && (octets != nullptr || length == 0)) return true;
  call.fail(AsnError_NullParameter, "no value to set");
  return false;
}

int32_t setObjid(Setter &&setter, AsnValue value, const char *path, const Objid *objid) {
  if (objid == nullptr) return setter.call.fail(AsnError_NullParameter, "no value to set");
  Text reason;
  if (!checkArcs(*objid, reason)) return setter.call.fail(AsnError_Value, reason);
  if (!setter.make(value, path, isObjid)) return -1;
  uint8_t *content = setter.content(measureArcs(*objid));
  if (content == nullptr) return -1;
  writeArcs(*objid, content);
  return 0;
}

int32_t setOctets(Setter &&setter, AsnValue value, const char *path, const AsnOct *octets) {
  if (!isGiven(setter.call, octets, octets == nullptr ? nullptr : octets->octets,
               octets == nullptr ? 0 : octets->length))
    return -1;
  if (!isIntegerContent(octets->octets, octets->length) && setter.isIntegerString(value, path)) {
    Fault fault;
    explainInteger(octets->octets, octets->length, fault, "INTEGER");
    return setter.call.fail(AsnError_Value, fault.text);
  }
  if (!setter.make(value, path, [](const AsnType *type) { return isOctets(type) && !isTimeType(type); })) return -1;
  return setter.copy(octets->octets, octets->length);
}

int32_t setNamedBits(Setter &&setter, AsnValue value, const char *path, const AsnBit *bits) {
  if (!isGiven(setter.call, bits, bits == nullptr ? nullptr : bits->octets, bits == nullptr ? 0 : bits->bits))
    return -1;
  if (!setter.make(value, path, isBits)) return -1;
  const uint32_t trimmed = trimBits(bits->octets, bits->bits);
  uint8_t *content = setter.content(1 + (uint64_t{trimmed} + 7) / 8);
  if (content == nullptr) return -1;
  writeBits(bits->octets, trimmed, content);
  return 0;
}

int32_t setEncoded(Setter &&setter, AsnValue value, const char *path, const AsnEncodedData *encoding, bool der) {
  if (encoding == nullptr || encoding->octets == nullptr) {
    return setter.call.fail(AsnError_NullParameter, "no encoding to set");
  }
  Fault fault;
  const Lengths lengths = der ? checkLengths(encoding->octets, encoding->length, fault)
                          : isComplete(encoding->octets, encoding->length, fault) ? Lengths::Der
                                                                                  : Lengths::Malformed;
  if (lengths != Lengths::Malformed && !setter.make(value, path, isOpen)) return -1;
  if (lengths == Lengths::Der) return setter.copy(encoding->octets, encoding->length, der);
  const uint8_t *rewritten = nullptr;
  uint32_t length = 0;
  if (lengths == Lengths::Malformed ||
      !rewriteLengths(setter.arena(), encoding->octets, encoding->length, &rewritten, &length, fault)) {
    return setter.call.fail(fault.code, Text() << fault.text.c_str() << " at offset "
                                               << uint64_t(fault.at - encoding->octets) << " of the encoding to set");
  }
  setter.adopt(rewritten, length, true);
  return 0;
}

}  // namespace
}  // namespace ketra::asn1

using namespace ketra::asn1;

int32_t AsnSetBoolDER(AsnObject object, AsnValue value, const char *path, int32_t boolean, AsnErrorBlock *err) {
  Setter setter(__func__, object, err);
  if (boolean != 0 && boolean != 1) {
    return setter.call.fail(AsnError_Value, Text() << "a BOOLEAN is 0 or 1, not " << boolean);
  }
  if (!setter.make(value, path, isBoolean)) return -1;
  const uint8_t octet = boolean == 1 ? 0xFF : 0x00;
  return setter.copy(&octet, 1);
}

int32_t AsnSetIntDER(AsnObject object, AsnValue value, const char *path, int32_t integer, AsnErrorBlock *err) {
  Setter setter(__func__, object, err);
  if (!setter.make(value, path, isNumber)) return -1;
  uint8_t octets[4];
  return setter.copy(octets, writeInteger(integer, octets));
}

int32_t AsnSetObjidDER(AsnObject object, AsnValue value, const char *path, const Objid *objid, AsnErrorBlock *err) {
  return setObjid(Setter(__func__, object, err), value, path, objid);
}

int32_t AsnSetObjidBER(AsnObject object, AsnValue value, const char *path, const Objid *objid, AsnErrorBlock *err) {
  return setObjid(Setter(__func__, object, err), value, path, objid);
}

int32_t AsnSetOctDER(AsnObject object, AsnValue value, const char *path, const AsnOct *octets, AsnErrorBlock *err) {
  return setOctets(Setter(__func__, object, err), value, path, octets);
}

int32_t AsnSetOctBER(AsnObject object, AsnValue value, const char *path, const AsnOct *octets, AsnErrorBlock *err) {
  return setOctets(Setter(__func__, object, err), value, path, octets);
}

int32_t AsnSetBitDER(AsnObject object, AsnValue value, const char *path, const AsnBit *bits, AsnErrorBlock *err) {
  return setNamedBits(Setter(__func__, object, err), value, path, bits);
}

int32_t AsnSetConstBitDER(AsnObject object, AsnValue value, const char *path, const AsnBit *bits, AsnErrorBlock *err) {
  return setNamedBits(Setter(__func__, object, err), value, path, bits);
}

int32_t AsnSetGtimeDER(AsnObject object, AsnValue value, const char *path, const Gtime *time, AsnErrorBlock *err) {
  Setter setter(__func__, object, err);
  if (time == nullptr) return setter.call.fail(AsnError_NullParameter, "no value to set");
  if (!isTime(*time)) return setter.call.fail(AsnError_Value, "the time lies outside the years 0000 to 9999");
  if (!setter.make(value, path, isTimeType)) return -1;
  uint8_t content[kTimeLength];
  return setter.copy(content, writeTime(microsecondsOf(*time), content));
}

int32_t AsnSetEncodedDataDER(AsnObject object, AsnValue value, const char *path, const AsnEncodedData *encoding,
                             AsnErrorBlock *err) {
  return setEncoded(Setter(__func__, object, err), value, path, encoding, true);
}

int32_t AsnSetEncodedDataBER(AsnObject object, AsnValue value, const char *path, const AsnEncodedData *encoding,
                             AsnErrorBlock *err) {
  return setEncoded(Setter(__func__, object, err), value, path, encoding, false);
}
