#include "runtime/asn1/work_object.h"

#include <algorithm>
#include <cstdlib>

#include "runtime/asn1/decoder.h"
#include "runtime/asn1/poison.h"

namespace ketra::asn1 {

bool growList(Arena &arena, Node *list) {
  const uint32_t capacity = list->capacity == 0 ? 4 : list->capacity > UINT32_MAX / 2 ? UINT32_MAX : list->capacity * 2;
  if (capacity == list->capacity) return false;
  auto **children = arena.makeArray<Node *>(capacity);
  if (children == nullptr) return false;
  std::copy_n(list->children, list->length, children);
  list->children = children;
  list->capacity = capacity;
  return true;
}

namespace {

OpenValue *openValue(AsnObject object, const AsnType *type, State state) {
  auto *value = object->arena.make<OpenValue>();
  if (value == nullptr) return nullptr;
  value->record = type;
  value->state = state;
  return value;
}

int32_t failMemory(Call call) { return call.fail(AsnError_OutOfMemory, "the system has no memory for a value"); }

void release(AsnObject object) {
  object->~AsnObjectRecord();
  unpoison(object, kWorkObjectSize);
  std::free(object);
}

}  // namespace
}  // namespace ketra::asn1

using namespace ketra::asn1;

int32_t AsnObjectCreate(AsnObject *object, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (object == nullptr) return call.fail(AsnError_NullParameter, "no place for the work object");
  auto *memory = static_cast<std::byte *>(std::malloc(kWorkObjectSize));
  if (memory == nullptr) return call.fail(AsnError_OutOfMemory, "the system has no memory for a work object");
  *object = new (memory) AsnObjectRecord{{memory + sizeof(AsnObjectRecord), memory + kWorkObjectSize}};
  return 0;
}

int32_t AsnObjectDestroy(AsnObject object, AsnErrorBlock *err) {
  if (object == nullptr) return Call{__func__, err}.fail(AsnError_NullParameter, "no work object");
  release(object);
  return 0;
}

int32_t AsnOpenNew(AsnObject object, const AsnType *type, AsnValue *value, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (object == nullptr || type == nullptr || value == nullptr) {
    return call.fail(AsnError_NullParameter, "no work object, type or place for the value");
  }
  OpenValue *opened = openValue(object, type, State::Built);
  if (opened == nullptr || !makePlaces(object->arena, opened)) return failMemory(call);
  *value = opened;
  return 0;
}

int32_t AsnOpenFromMem(AsnObject object, const AsnType *type, const AsnEncodedData *encoding, AsnValue *value,
                       AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (object == nullptr || type == nullptr || encoding == nullptr || value == nullptr ||
      (encoding->octets == nullptr && encoding->length > 0)) {
    return call.fail(AsnError_NullParameter, "no work object, type, encoding or place for the value");
  }
  OpenValue *opened = openValue(object, type, State::Bound);
  if (opened == nullptr) return failMemory(call);
  opened->bound = {encoding->octets, encoding->length};
  *value = opened;
  return 0;
}

int32_t AsnDecode(AsnObject object, AsnValue value, int32_t, uint32_t *, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (object == nullptr || value == nullptr) return call.fail(AsnError_NullParameter, "no work object or value");
  if (value->state != State::Bound && value->state != State::Decoded) {
    return call.fail(AsnError_State, "the value is not bound to an encoding");
  }
  return decode(object->arena, static_cast<OpenValue *>(value), call);
}

int32_t AsnClose(AsnObject object, AsnValue value, AsnErrorBlock *err) {
  const Call call{__func__, err};
  if (object == nullptr || value == nullptr) return call.fail(AsnError_NullParameter, "no work object or value");
  if (!isValue(value) || value->state == State::Closed) return call.fail(AsnError_State, "not an open value");
  value->state = State::Closed;
  return 0;
}

int32_t AsnMUtilErrorFinishAsn(AsnObject object, AsnValue) {
  if (object != nullptr) release(object);
  return 0;
}
