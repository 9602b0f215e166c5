// The attribute types that names are usually made of.
#pragma once

#include <cstdint>

namespace ketra::certificate {

struct AttributeType {
  const char *keyword;  // in the text form of names
  uint8_t octets[12];   // content octets of the identifier
  uint8_t length;
  bool isIa5;  // its values are IA5Strings, not DirectoryStrings
};

// The type of these content octets, or null.
const AttributeType *findAttributeType(const uint8_t *octets, uint32_t length);

}  // namespace ketra::certificate
