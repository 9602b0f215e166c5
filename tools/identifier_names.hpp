#pragma once

#include "ketra/ketra.hpp"
#include "problem.hpp"

namespace tool {

// The well-known name of an identifier, or null.
const char *identifierName(const ketra::ObjectIdentifier &objid);
// {"identifier", "name"}; the name is left out when there is none.
Json identifierJson(const ketra::ObjectIdentifier &objid);

}  // namespace tool
