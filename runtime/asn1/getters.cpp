#include <cstring>

#include "runtime/asn1/access.h"
#include "runtime/asn1/content.h"

namespace ketra::asn1 {

bool readTimeOf(const Call &call, const Node *element, Gtime *time) {
  int64_t microseconds = 0;
  Text reason;
  if (readTime(element->content, element->length, &microseconds, reason) != TimeForm::Valid) {
    call.fail(AsnError_Range, Text() << reason.c_str() << " (" << nameOf(element->record) << ")");
    return false;
  }
  *time = gtimeOf(microseconds);
  return true;
}

namespace {

bool readIntegerOf(const Call &call, const Node *element, int32_t *integer) {
  if (element->length > 4) {
    call.fail(AsnError_Range,
              Text() << nameOf(element->record) << " has " << element->length << " octets, more than 32 bits");
    return false;
  }
  *integer = readInteger(element->content, element->length);
  return true;
}

int32_t getEncoded(const Call &call, AsnObject object, AsnValue value, const char *path, AsnBuffer *buffer, bool der) {
  if (!isGiven(call, object, buffer) || !isGiven(call, object, buffer->octets)) return -1;
  Node *element = nullptr;
  const auto any = [](const AsnType *) { return true; };
  if (!findScalar(call, value, path, Need::Mandatory, any, &element)) return -1;
  const uint8_t *octets = nullptr;
  uint32_t length = 0;
  if (!encodingOf(call, object->arena, element, der, &octets, &length)) return -1;
  std::memcpy(buffer->octets, octets, length);
  buffer->length = length;
  return 0;
}

}  // namespace
}  // namespace ketra::asn1

using namespace ketra::asn1;

int32_t AsnGetIntBER(AsnObject object, AsnValue value, const char *path, int32_t *integer, AsnErrorBlock *err) {
  const Call call{kRuntimeModule, __func__, err};
  if (!isGiven(call, object, integer)) return -1;
  Node *element = nullptr;
  if (!findScalar(call, value, path, Need::Mandatory, isNumber, &element)) return -1;
  return readIntegerOf(call, element, integer) ? 0 : -1;
}

int32_t AsnGetOptBoolBER(AsnObject object, AsnValue value, const char *path, AsnBoolOpt *boolean, AsnErrorBlock *err) {
  const Call call{kRuntimeModule, __func__, err};
  if (!isGiven(call, object, boolean)) return -1;
  Node *element = nullptr;
  if (!findScalar(call, value, path, Need::Optional, isBoolean, &element)) return -1;
  *boolean = {element != nullptr && element->content[0] != 0 ? 1 : 0, element != nullptr ? 1 : 0};
  return 0;
}

int32_t AsnGetOptIntBER(AsnObject object, AsnValue value, const char *path, AsnIntOpt *integer, AsnErrorBlock *err) {
  const Call call{kRuntimeModule, __func__, err};
  if (!isGiven(call, object, integer)) return -1;
  Node *element = nullptr;
  if (!findScalar(call, value, path, Need::Optional, isNumber, &element)) return -1;
  AsnIntOpt read = {0, 0};
  if (element != nullptr) {
    if (!readIntegerOf(call, element, &read.value)) return -1;
    read.option = 1;
  }
  *integer = read;
  return 0;
}

int32_t AsnGetObjidBER(AsnObject object, AsnValue value, const char *path, Objid *objid, AsnErrorBlock *err) {
  const Call call{kRuntimeModule, __func__, err};
  if (!isGiven(call, object, objid)) return -1;
  // The one place with state outside the objects: this operation has no pool to put the arcs into.
  constexpr uint32_t kMaxArcs = 128;
  thread_local uint32_t arcs[kMaxArcs];
  Node *element = nullptr;
  if (!findScalar(call, value, path, Need::Mandatory, isObjid, &element)) return -1;
  const uint32_t count = countArcs(element->content, element->length);
  if (count > kMaxArcs) {
    return call.fail(AsnError_Range, Text() << nameOf(element->record) << " has " << count << " arcs, more than 128");
  }
  if (!readArcs(element->content, element->length, arcs)) {
    return call.fail(AsnError_Range, Text() << nameOf(element->record) << " has an arc of more than 32 bits");
  }
  *objid = {arcs, count};
  return 0;
}

int32_t AsnGetEncodedDataDER(AsnObject object, AsnValue value, const char *path, AsnBuffer *buffer,
                             AsnErrorBlock *err) {
  return getEncoded(Call{kRuntimeModule, __func__, err}, object, value, path, buffer, true);
}

int32_t AsnGetEncodedDataBER(AsnObject object, AsnValue value, const char *path, AsnBuffer *buffer,
                             AsnErrorBlock *err) {
  return getEncoded(Call{kRuntimeModule, __func__, err}, object, value, path, buffer, false);
}
