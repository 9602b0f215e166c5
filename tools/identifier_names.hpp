#pragma once

#include "ketra.hpp"

namespace tool {

// The well-known name of an identifier of an extension or of a type of otherName, or null.
const char *identifierName(const ketra::ObjectIdentifier &objid);

}  // namespace tool
