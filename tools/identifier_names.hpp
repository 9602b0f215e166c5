#pragma once

#include "ketra.hpp"

namespace tool {

// The well-known name of an extension's identifier, or null.
const char *identifierName(const ketra::ObjectIdentifier &objid);

}  // namespace tool
