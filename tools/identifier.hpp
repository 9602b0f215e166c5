// Object identifiers by their arcs, which may be of any size.
#pragma once

#include "ketra/asn1/oid.hpp"

namespace tool {

// Whether an arc is beyond 32 bits: the text is right, but other tools do not read it.
bool hasLargeArc(const ketra::ObjectIdentifierView &identifier);

// Orders by arcs, the octets do not.
struct ByArcs {
  bool operator()(const ketra::ObjectIdentifier &a, const ketra::ObjectIdentifier &b) const;
};

}  // namespace tool
