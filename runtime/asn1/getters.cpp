#include <cstring>

#include "runtime/asn1/access.h"
#include "runtime/asn1/content.h"

namespace ketra::asn1 {

bool readTimeOf(Call call, const Node *element, Gtime *time) {
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

bool readIntegerOf(Call call, const Node *element, int32_t *integer) {
  if (element->length > 4) {
    call.fail(AsnError_Range,
              Text() << nameOf(element->record) << " has " << element->length << " octets, more than 32 bits");
    return false;
  }
  *integer = readInteger(element->content, element->length);
  return true;
}

int32_t getEncoded(Call call, AsnObject object, AsnValue value, const char *path, AsnBuffer *buffer, bool der) {
  if (!isGiven(call, object, buffer) || !isGiven(call, object, buffer->octets)) return -1;
  const Found found = findScalar(call, value, path, Need::Mandatory, [](const AsnType *) { return true; });
  if (!found) return -1;
  const AsnOct encoding = encodingOf(call, object->arena, found.element, der);
  if (encoding.octets == nullptr) return -1;
  std::memcpy(buffer->octets, encoding.octets, encoding.length);
  buffer->length = encoding.length;
  return 0;
}

}  // namespace
}  // namespace ketra::asn1

using namespace ketra::asn1;

int32_t AsnGetIntBER(AsnObject object, AsnValue value, const char *path, int32_t *integer, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (!isGiven(call, object, integer)) return -1;
  const Found found = findScalar(call, value, path, Need::Mandatory, isNumber);
  return found && readIntegerOf(call, found.element, integer) ? 0 : -1;
}

int32_t AsnGetOptBoolBER(AsnObject object, AsnValue value, const char *path, AsnBoolOpt *boolean, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (!isGiven(call, object, boolean)) return -1;
  const Found found = findScalar(call, value, path, Need::Optional, isBoolean);
  if (!found) return -1;
  const Node *element = found.element;
  *boolean = {element != nullptr && element->content[0] != 0 ? 1 : 0, element != nullptr ? 1 : 0};
  return 0;
}

int32_t AsnGetOptIntBER(AsnObject object, AsnValue value, const char *path, AsnIntOpt *integer, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (!isGiven(call, object, integer)) return -1;
  const Found found = findScalar(call, value, path, Need::Optional, isNumber);
  if (!found) return -1;
  AsnIntOpt read = {0, 0};
  if (found.element != nullptr) {
    if (!readIntegerOf(call, found.element, &read.value)) return -1;
    read.option = 1;
  }
  *integer = read;
  return 0;
}

int32_t AsnGetObjidBER(AsnObject object, AsnValue value, const char *path, Objid *objid, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (!isGiven(call, object, objid)) return -1;
  // The one place with state outside the objects: this operation has no pool to put the arcs into.
  constexpr uint32_t kMaxArcs = 128;
  thread_local uint32_t arcs[kMaxArcs];
  const Found found = findScalar(call, value, path, Need::Mandatory, isObjid);
  if (!found) return -1;
  const Node *element = found.element;
  const uint32_t count = countArcs(element->content, element->length);
  if (count > kMaxArcs) {
    return call.fail(AsnError_Range, Text() << nameOf(element->record) << " has " << count << " arcs, more than 128");
  }
  if (!readArcs(element->content, element->length, count, arcs)) {
    return call.fail(AsnError_Range, Text() << nameOf(element->record) << " has an arc of more than 32 bits");
  }
  *objid = {arcs, count};
  return 0;
}

int32_t AsnGetEncodedDataDER(AsnObject object, AsnValue value, const char *path, AsnBuffer *buffer,
                             AsnErrorBlock *err) {
  return getEncoded(Call{__func__, err}, object, value, path, buffer, true);
}

int32_t AsnGetEncodedDataBER(AsnObject object, AsnValue value, const char *path, AsnBuffer *buffer,
                             AsnErrorBlock *err) {
  return getEncoded(Call{__func__, err}, object, value, path, buffer, false);
}
