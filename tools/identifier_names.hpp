#pragma once

#include "identifier.hpp"
#include "problem.hpp"

namespace tool {

// The well-known name of an identifier, or null.
const char *identifierName(const Identifier &identifier);
// {"identifier", "identifierHex", "name"}: the name is left out when there is none, the content octets but for an
// identifier with an arc beyond 32 bits.
Json identifierJson(const Identifier &identifier);
void addIdentifierHex(Json &json, const Identifier &identifier);

}  // namespace tool
