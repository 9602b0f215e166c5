// The extensions that the library types: one row of the table each.
#pragma once

#include <functional>
#include <string>

#include "fields.hpp"
#include "identifier.hpp"
#include "ketra/face/face.hpp"

namespace tool {

// Writes a value that was read from one Extensions object into another.
using Writer = std::function<void(ketra::Extensions &, bool critical)>;

struct TypedExtension {
  ketra::ObjectIdentifier objid;
  Identifier identifier;  // the same
  Fields (*fields)(const ketra::Extensions &);
  Writer (*read)(const ketra::Extensions &);
  // Why a valid value comes back as `written`, when neither lengths nor segments explain it. May be null.
  std::string (*reason)(ketra::View value, ketra::View written);
  // Which default is written out in a value, which is valid, but not DER (X.690 11.5); empty when none is. May be null.
  std::string (*writtenDefault)(ketra::View value);
  // What is set in a readable value that the fields do not tell; empty when nothing is. May be null.
  std::string (*loss)(ketra::View value);
};

// Null when the identifier is not typed.
const TypedExtension *findTyped(const Identifier &identifier);

}  // namespace tool
