#include "identifier_names.hpp"

#include <string_view>

#include "escape.hpp"
#include "identifier.hpp"
#include "ketra/names/identifiers.hpp"

namespace tool {

Json identifierJson(const ketra::ObjectIdentifierView &identifier) {
  Json json{{"identifier", identifier.text()}};
  addIdentifierHex(json, identifier);
  if (const std::string_view name = ketra::oid::name(identifier); !name.empty()) json["name"] = name;
  return json;
}

void addIdentifierHex(Json &json, const ketra::ObjectIdentifierView &identifier) {
  if (hasLargeArc(identifier)) json["identifierHex"] = hex(identifier.content());
}

}  // namespace tool
