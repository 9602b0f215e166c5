// What the operations on elements share: finding one of the right kind, and reading its content.
#pragma once

#include "runtime/asn1/path.h"
#include "runtime/asn1/work_object.h"

namespace ketra::asn1 {

// Whether an operation was given its work object and a place for its result.
inline bool isGiven(const Call &call, AsnObject object, const void *place) {
  if (object != nullptr && place != nullptr) return true;
  call.fail(AsnError_NullParameter, "no work object or no place for the result");
  return false;
}

// What a path leads to: the element, null when it is absent, and its type.
struct Found {
  Node *element = nullptr;
  const AsnType *type = nullptr;
};
inline bool find(const Call &call, AsnObject object, AsnValue value, const char *path, const void *place,
                 Found *found) {
  return isGiven(call, object, place) && findElement(call, value, path, &found->element, &found->type);
}

enum class Need : bool { Optional, Mandatory };

// The element at the path, whose type must satisfy `fits`; null when it is absent and may be. False after a failure.
template <class Fits>
bool findScalar(const Call &call, AsnValue value, const char *path, Need need, Fits &&fits, Node **element) {
  const AsnType *type = nullptr;
  if (!findElement(call, value, path, element, &type)) return false;
  if (!fits(type)) {
    call.fail(AsnError_Kind, Text() << nameOf(type) << " is of another type than the operation reads");
    return false;
  }
  if (*element != nullptr || need == Need::Optional) return true;
  call.fail(AsnError_Absent, Text() << nameOf(type) << " is absent");
  return false;
}

inline bool isObjid(const AsnType *type) { return kindOf(type) == Kind::Objid; }
inline bool isOctets(const AsnType *type) { return kindOf(type) == Kind::Octets; }
inline bool isBits(const AsnType *type) { return kindOf(type) == Kind::BitString; }
inline bool isBoolean(const AsnType *type) { return kindOf(type) == Kind::Boolean; }
inline bool isNumber(const AsnType *type) { return kindOf(type) == Kind::Integer || kindOf(type) == Kind::Enumerated; }
inline bool isTimeType(const AsnType *type) { return contentOf(type) == Content::Time; }
inline bool isOpen(const AsnType *type) { return kindOf(type) == Kind::Open; }

// The DER forms of the readers take no other lengths.
bool hasDerLength(const Call &call, const Node *element);

// The complete encoding of an element: where it lies in the input, or made in the arena for a value that was built.
// The DER rules refuse lengths that are not DER.
bool encodingOf(const Call &call, Arena &arena, const Node *element, bool der, const uint8_t **octets,
                uint32_t *length);

bool readTimeOf(const Call &call, const Node *element, Gtime *time);

}  // namespace ketra::asn1
