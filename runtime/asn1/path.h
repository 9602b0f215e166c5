// Element paths (contracts/asn1.h). Resolving allocates nothing; making allocates only what is missing.
#pragma once

#include "runtime/asn1/node.h"

namespace ketra::asn1 {

// What a path leads to: the element, null when it is absent, and its type. No type after a failure, which has been
// reported.
struct Found {
  Node *element = nullptr;
  const AsnType *type = nullptr;

  explicit operator bool() const { return type != nullptr; }
};

// A scalar that was made but never set is absent here.
Found findElement(Call call, Node *base, const char *path);

// The element at the path, made with everything that is missing on the way; null after a failure, which has made
// nothing unless memory ran out. `fits` (may be null) judges the element's type first. Values that were decoded cannot
// be changed: what is read from them points into the encoding.
Node *makeElement(const Call &call, Arena &arena, Node *base, const char *path, bool (*fits)(const AsnType *));

}  // namespace ketra::asn1
