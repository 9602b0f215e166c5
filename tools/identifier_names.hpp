#pragma once

#include "ketra/asn1/oid.hpp"
#include "problem.hpp"

namespace tool {

// {"identifier", "identifierHex", "name"}: the name is left out when there is none, the content octets but for an
// identifier with an arc beyond 32 bits.
Json identifierJson(const ketra::ObjectIdentifierView &identifier);
void addIdentifierHex(Json &json, const ketra::ObjectIdentifierView &identifier);

}  // namespace tool
