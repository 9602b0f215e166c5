// The states of a GeneralName object: empty, parameter only, parameter with DER, parameter with BER. A failed call
// leaves the state as it was or empty; memory that has been released is never reachable.

#include "names/general_name_object.h"

#include <cstring>

#include "core/frames.h"
#include "core/scratch.h"
#include "core/shapes.h"

namespace ketra {
namespace {

// Whatever the parameter still points to stays in the pool.
void forgetName(X509GenNameObject object) {
  std::memset(&object->param, 0, sizeof object->param);
  object->paramFlag = 0;
  object->pduState = kNoPdu;
  object->pdu = {nullptr, 0};
}

int32_t releaseName(const Operation &op, X509GenNameObject object) {
  const int32_t result = x509GenNameObjectResetParam(object, op.err());
  forgetName(object);
  return op.failed(result, "Call x509GenNameObjectResetParam") ? result : 0;
}

// Empties the object after a failure.
[[gnu::cold]] void abandonName(X509GenNameObject object) {
  intoScratch([&](AsnErrorBlock *err) { x509GenNameObjectResetParam(object, err); });
  forgetName(object);
}

// The parameter points into the object: it is copied before that is released.
int32_t replaceByOwn(const Operation &op, X509GenNameObject object, const X509GenNameParam &parameter) {
  X509GenNameParam copy;
  if (copyParam(op, object->pool, parameter, &copy) != 0) return -1;
  const int32_t result = releaseName(op, object);
  object->param = copy;
  object->paramFlag = 1;
  if (result != 0) abandonName(object);
  return result;
}

// The parameter does not point into the object.
int32_t replaceName(const Operation &op, X509GenNameObject object, const X509GenNameParam &parameter) {
  if (const int32_t result = releaseName(op, object); result != 0) return result;
  if (copyParam(op, object->pool, parameter, &object->param) != 0) {
    forgetName(object);
    return -1;
  }
  object->paramFlag = 1;
  return 0;
}

int32_t setPdu(const Operation &op, bool ber, X509GenNameObject object, const AsnEncodedData *encoding) {
  if (op.misses(object, encoding)) return -1;
  AsnEncodedData copy{nullptr, 0};
  if (ber) {
    const int32_t copied = AsnMUtilCopyEncodedDataBER(object->pool, &copy, encoding, op.err());
    if (op.failed(copied, "Call AsnMUtilCopyEncodedDataBER")) return -1;
  } else {
    const int32_t copied = AsnMUtilCopyEncodedDataDER(object->pool, &copy, encoding, op.err());
    if (op.failed(copied, "Call AsnMUtilCopyEncodedDataDER")) return -1;
  }
  object->pdu = byMember(copy);
  const int32_t result = x509GenNameObjectDecode(ber, object, op.err());
  if (op.failed(result, "Call x509GenNameObjectDecode")) {
    abandonName(object);
    intoScratch([&](AsnErrorBlock *err) { AsnMemObjectFree(object->pool, copy.octets, err); });
    return result;
  }
  object->paramFlag = 1;
  object->pduState = ber ? kBerPdu : kDerPdu;
  return 0;
}

int32_t getPdu(const Operation &op, bool ber, X509GenNameObject object, AsnEncodedData *encoding) {
  if (op.misses(object, encoding)) return -1;
  const bool isStored = ber ? object->pduState != kNoPdu : object->pduState == kDerPdu;
  if (!isStored) {
    if (object->paramFlag != 1) return op.reject(KetraError_GetPduEmpty, "None PDU and None Param");
    const int32_t result = x509GenNameObjectEncode(ber, object, op.err());
    if (op.failed(result, "Call x509GenNameObjectEncode")) return result;
    object->pduState = ber ? kBerPdu : kDerPdu;
  }
  *encoding = byMember(object->pdu);
  return 0;
}

}  // namespace

int32_t x509GenNameObjectEncode(bool ber, X509GenNameObject object, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  AsnObject work = nullptr;
  AsnValue value = nullptr;
  if (openNew(op, schema::Entry::GeneralName, &work, &value) != 0) return -1;
  const int32_t result = x509GenNameObjectSetParam(ber, object, work, value, err);
  if (op.failed(result, "Call x509GenNameObjectSetParam")) return abandon(work, value, result);
  const auto encode = ber ? AsnMUtilEncodeBER : AsnMUtilEncodeDER;
  AsnEncodedData encoding{nullptr, 0};
  if (op.failed(encode(object->pool, work, value, "/", &encoding, err), "Call AsnMUtilEncodeXER")) {
    return abandon(work, value, -1);
  }
  if (closeAndDestroy(op, work, value) != 0) {
    intoScratch([&](AsnErrorBlock *scratch) { AsnMemObjectFree(object->pool, encoding.octets, scratch); });
    return -1;
  }
  object->pdu = byMember(encoding);
  return 0;
}

int32_t x509GenNameObjectDecode(bool ber, X509GenNameObject object, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  const AsnEncodedData encoding = byMember(object->pdu);
  if (const int32_t result = releaseName(op, object); result != 0) return result;
  object->pdu = byMember(encoding);
  AsnObject work = nullptr;
  AsnValue value = nullptr;
  if (openEncoded(op, schema::Entry::GeneralName, encoding, &work, &value) != 0) return -1;
  const int32_t result = x509GenNameObjectGetParam(ber, object, work, value, err);
  if (op.failed(result, "Call x509GenNameObjectGetParam")) return abandon(work, value, result);
  return closeAndDestroy(op, work, value);
}

}  // namespace ketra

using namespace ketra;

int32_t X509GenNameObjectCreate(X509GenNameObject *object, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  if (op.misses(object)) return -1;
  AsnMemObject pool = nullptr;
  void *memory = nullptr;
  if (op.failed(AsnMemObjectCreate(&pool, err), "Call AsnMemObjectCreate")) return -1;
  if (op.failed(AsnMemObjectMalloc(pool, sizeof(X509GenNameObjectRecord), &memory, err), "Call AsnMemObjectMalloc")) {
    intoScratch([&](AsnErrorBlock *scratch) { AsnMemObjectDestroy(pool, scratch); });
    return -1;
  }
  *object = static_cast<X509GenNameObject>(memory);
  (*object)->pool = pool;
  forgetName(*object);
  return 0;
}

int32_t X509GenNameObjectDestroy(X509GenNameObject object, AsnErrorBlock *err) {
  if (object == nullptr) return 0;
  const Operation op(__func__, err);
  AsnMemObject pool = object->pool;
  if (object->param.type == X509GenName_DirectoryName) {
    const int32_t result = X509NameObjectDestroy(object->param.directoryName, err);
    if (op.failed(result, "Call X509NameObjectDestroy")) {
      intoScratch([&](AsnErrorBlock *scratch) { AsnMemObjectDestroy(pool, scratch); });
      return result;
    }
  }
  return op.failed(AsnMemObjectDestroy(pool, err), "Call AsnMemObjectDestroy") ? -1 : 0;
}

int32_t X509GenNameObjectSetName(X509GenNameObject object, const X509GenNameParam *parameter, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  if (op.misses(object, parameter)) return -1;
  return (sharesMemory(object->param, *parameter) ? replaceByOwn : replaceName)(op, object, *parameter);
}

int32_t X509GenNameObjectGetName(X509GenNameObject object, X509GenNameParam *parameter, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  if (op.misses(object, parameter)) return -1;
  if (object->paramFlag != 1) return op.reject(KetraError_GetNameEmpty, "None parameter");
  *parameter = object->param;
  return 0;
}

int32_t X509GenNameObjectSetPduDER(X509GenNameObject object, const AsnEncodedData *encoding, AsnErrorBlock *err) {
  return setPdu({__func__, err}, false, object, encoding);
}

int32_t X509GenNameObjectSetPduBER(X509GenNameObject object, const AsnEncodedData *encoding, AsnErrorBlock *err) {
  return setPdu({__func__, err}, true, object, encoding);
}

int32_t X509GenNameObjectGetPduDER(X509GenNameObject object, AsnEncodedData *encoding, AsnErrorBlock *err) {
  return getPdu({__func__, err}, false, object, encoding);
}

int32_t X509GenNameObjectGetPduBER(X509GenNameObject object, AsnEncodedData *encoding, AsnErrorBlock *err) {
  return getPdu({__func__, err}, true, object, encoding);
}

int32_t X509GenNameObjectCopy(X509GenNameObject destination, X509GenNameObject source, AsnErrorBlock *err) {
  const Operation op(__func__, err);
  if (op.misses(destination, source)) return -1;
  if (destination == source) return 0;
  if (source->paramFlag != 1) return releaseName(op, destination);
  const int32_t result = replaceName({"X509GenNameObjectSetName", err}, destination, source->param);
  if (op.failed(result, "Call X509GenNameObjectSetName")) return result;
  if (source->pduState == kNoPdu) return 0;
  const int32_t copied = AsnMUtilCopyEncodedDataBER(destination->pool, &destination->pdu, &source->pdu, err);
  if (op.failed(copied, "Call AsnMUtilCopyEncodedDataBER")) {
    abandonName(destination);
    return -1;
  }
  destination->pduState = source->pduState;
  return 0;
}
