// The extensions that the library types.
#pragma once

#include "fields.hpp"
#include "ketra/ketra.hpp"

namespace tool {

// A value that was read and written anew.
struct Written {
  enum class Outcome { Good, Rejected, Refused };
  Outcome outcome = Outcome::Good;
  Json problem = {};  // of one that could not be read, or not be written
  ketra::Octets value = {};
  bool critical = false;
};

struct TypedExtension {
  ketra::OidLiteral oid;
  // Nothing when the value cannot be read: `problem` is set.
  std::optional<Fields> (*fields)(ketra::View value, Json &problem);
  Written (*write)(ketra::View value, bool critical);
  // The first thing that keeps a value from being DER, or null.
  Json (*departure)(ketra::View value);
};

// Null when the identifier is not typed.
const TypedExtension *findTyped(const ketra::ObjectIdentifierView &identifier);

}  // namespace tool
