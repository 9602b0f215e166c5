// What the operations on elements share: finding one of the right kind, and reading its content.
#pragma once

#include "runtime/asn1/path.h"
#include "runtime/asn1/work_object.h"

namespace ketra::asn1 {

// Whether an operation was given its work object and a place for its result.
inline bool isGiven(Call call, AsnObject object, const void *place) {
  if (object != nullptr && place != nullptr) return true;
  call.fail(AsnError_NullParameter, "no work object or no place for the result");
  return false;
}

inline Found find(Call call, AsnObject object, AsnValue value, const char *path, const void *place) {
  return isGiven(call, object, place) ? findElement(call, value, path) : Found{};
}

// Reports what is of the wrong type, or else absent.
[[gnu::cold]] void failFound(Call call, const AsnType *type, bool isRight);

enum class Need : bool { Optional, Mandatory };

// The element at the path, whose type must satisfy `fits`; it is absent only if it may be.
template <class Fits>
Found findScalar(Call call, AsnValue value, const char *path, Need need, Fits &&fits) {
  const Found found = findElement(call, value, path);
  if (!found) return {};
  const bool isRight = fits(found.type);
  if (isRight && (found.element != nullptr || need == Need::Optional)) [[likely]]
    return found;
  failFound(call, found.type, isRight);
  return {};
}

inline bool isObjid(const AsnType *type) { return kindOf(type) == Kind::Objid; }
inline bool isOctets(const AsnType *type) { return kindOf(type) == Kind::Octets; }
inline bool isBits(const AsnType *type) { return kindOf(type) == Kind::BitString; }
inline bool isBoolean(const AsnType *type) { return kindOf(type) == Kind::Boolean; }
inline bool isNumber(const AsnType *type) { return kindOf(type) == Kind::Integer || kindOf(type) == Kind::Enumerated; }
inline bool isTimeType(const AsnType *type) { return contentOf(type) == Content::Time; }
inline bool isOpen(const AsnType *type) { return kindOf(type) == Kind::Open; }

// The DER forms of the readers take no other lengths.
bool hasDerLength(Call call, const Node *element);

// The complete encoding of an element: where it lies in the input, or made in the arena for a value that was built.
// The DER rules refuse lengths that are not DER. No octets after a failure.
AsnOct encodingOf(Call call, Arena &arena, const Node *element, bool der);

bool readTimeOf(Call call, const Node *element, Gtime *time);

}  // namespace ketra::asn1
