// The Name object, and how its encoding is walked.
#pragma once

#include "contracts/certificate.h"
#include "runtime/asn1/tlv.h"
#include "runtime/certificate/characters.h"
#include "runtime/certificate/directory_string.h"

// The relative distinguished names stand one after the other in one buffer, behind room for the header of the SEQUENCE
// around them: so names can be appended without moving those before.
struct X509NameObjectRecord {
  AsnMemObject pool;
  uint8_t *buffer;      // null before the first relative distinguished name
  uint32_t length;      // octets of them
  uint32_t capacity;    // octets that the buffer has for them
  uint32_t headerSize;  // octets of the header, which ends where they begin
};

namespace ketra::certificate {

inline constexpr uint32_t kHeaderRoom = 6;  // the longest header of a SEQUENCE

// The relative distinguished names, each with its attributes as content.
inline AsnOct rdnsOf(X509NameObject name) {
  return name->length == 0 ? AsnOct{nullptr, 0} : AsnOct{name->buffer + kHeaderRoom, name->length};
}

// Makes the name consist of `kept` of the octets it has and those of `added`, which lie elsewhere. On failure it is
// unchanged.
int32_t store(const asn1::Call &call, X509NameObject name, uint32_t kept, const AsnOct &added);

// Runs `step` with a work object for as long as it takes.
template <class Step>
int32_t withWorkObject(const asn1::Call &call, Step &&step) {
  AsnObject work = nullptr;
  if (AsnObjectCreate(&work, call.err) != 0) return -1;
  const int32_t result = step(work);
  AsnObjectDestroy(work, nullptr);
  return result;
}

struct Encoding {
  AsnOct whole;
  AsnOct content;
  uint8_t identifier;
};

// Walks encodings that stand side by side in a Name object. Their lengths were read when they got there, and are DER.
class Walk {
 public:
  explicit Walk(const AsnOct &content) : at_(content.octets), end_(content.octets + content.length) {}

  bool next(Encoding *encoding) {
    if (at_ == end_) return false;
    asn1::Fault fault;
    asn1::Header header{};
    asn1::readHeader(at_, end_, header, fault);
    *encoding = {{at_, header.size + header.length}, {at_ + header.size, header.length}, header.identifier};
    at_ += encoding->whole.length;
    return true;
  }

 private:
  const uint8_t *at_;
  const uint8_t *end_;
};

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
