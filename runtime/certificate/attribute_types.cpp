#include "runtime/certificate/attribute_types.h"

#include <cstring>
#include <initializer_list>

namespace ketra::certificate {
namespace {

enum Syntax : bool { DirectoryString = false, Ia5String = true };

consteval AttributeType type(const char *keyword, std::initializer_list<uint32_t> arcs,
                             Syntax syntax = DirectoryString) {
  AttributeType made{keyword, {}, 0, syntax == Ia5String};
  uint32_t number = *arcs.begin() * 40;  // shared by the first two arcs (X.690 8.19.4)
  for (const uint32_t *arc = arcs.begin() + 1; arc != arcs.end(); ++arc, number = 0) {
    number += *arc;
    for (uint32_t shift = 28; shift > 0; shift -= 7) {
      if (number >> shift != 0) made.octets[made.length++] = static_cast<uint8_t>(0x80 | (number >> shift & 0x7F));
    }
    made.octets[made.length++] = static_cast<uint8_t>(number & 0x7F);
  }
  return made;
}

// Keywords of RFC 4514 3, then names of RFC 4519 and of common use.
constexpr AttributeType kTypes[] = {
    type("CN", {2, 5, 4, 3}),
    type("L", {2, 5, 4, 7}),
    type("ST", {2, 5, 4, 8}),
    type("O", {2, 5, 4, 10}),
    type("OU", {2, 5, 4, 11}),
    type("C", {2, 5, 4, 6}),
    type("STREET", {2, 5, 4, 9}),
    type("DC", {0, 9, 2342, 19200300, 100, 1, 25}, Ia5String),
    type("UID", {0, 9, 2342, 19200300, 100, 1, 1}),
    type("sn", {2, 5, 4, 4}),
    type("serialNumber", {2, 5, 4, 5}),
    type("title", {2, 5, 4, 12}),
    type("description", {2, 5, 4, 13}),
    type("businessCategory", {2, 5, 4, 15}),
    type("postalCode", {2, 5, 4, 17}),
    type("name", {2, 5, 4, 41}),
    type("givenName", {2, 5, 4, 42}),
    type("initials", {2, 5, 4, 43}),
    type("generationQualifier", {2, 5, 4, 44}),
    type("dnQualifier", {2, 5, 4, 46}),
    type("pseudonym", {2, 5, 4, 65}),
    type("organizationIdentifier", {2, 5, 4, 97}),
    type("emailAddress", {1, 2, 840, 113549, 1, 9, 1}, Ia5String),
    type("jurisdictionL", {1, 3, 6, 1, 4, 1, 311, 60, 2, 1, 1}),
    type("jurisdictionST", {1, 3, 6, 1, 4, 1, 311, 60, 2, 1, 2}),
    type("jurisdictionC", {1, 3, 6, 1, 4, 1, 311, 60, 2, 1, 3}),
};

}  // namespace

const AttributeType *findAttributeType(const uint8_t *octets, uint32_t length) {
  for (const AttributeType &type : kTypes) {
    if (type.length == length && std::memcmp(type.octets, octets, length) == 0) return &type;
  }
  return nullptr;
}

}  // namespace ketra::certificate
