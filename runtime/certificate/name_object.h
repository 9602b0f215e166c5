// The Name object, and how its attributes are read.
#pragma once

#include "ketra/contracts/certificate.h"
#include "runtime/asn1/sequence_buffer.h"
#include "runtime/asn1/tlv.h"
#include "runtime/certificate/characters.h"
#include "runtime/certificate/directory_string.h"

struct X509NameObjectRecord {
  AsnMemObject pool;
  ketra::asn1::SequenceBuffer rdns;  // relative distinguished names, each with its attributes as content
};

namespace ketra::certificate {

using asn1::Encoding;
using asn1::Walk;

struct Attribute {
  AsnOct type;  // content octets
  Encoding value;
  Alphabet alphabet;  // None when the value is no well-formed string
};

inline Attribute attributeOf(const Encoding &member) {
  Walk parts(member.content);
  Encoding type{};
  Encoding value{};
  parts.next(&type);
  parts.next(&value);
  Alphabet alphabet = alphabetOf(value.identifier);
  if (!isWellFormed(alphabet, value.content.octets, value.content.length)) alphabet = Alphabet::None;
  return {type.content, value, alphabet};
}

}  // namespace ketra::certificate
