// Reading type records (contracts/asn1.h).
#pragma once

#include "ketra/contracts/asn1_schema.hpp"

namespace ketra::asn1 {

using schema::Kind;

inline uint8_t tagOf(const AsnType *type) { return static_cast<uint8_t>(type->descriptor >> 24); }
inline Kind kindOf(const AsnType *type) { return static_cast<Kind>(type->descriptor & 0xFF); }
inline bool isExplicit(const AsnType *type) { return (type->flags & ASN_FLAG_EXPLICIT) != 0; }
inline bool isOptional(const AsnType *type) { return (type->flags & ASN_FLAG_OPTIONAL) != 0; }
inline bool isList(Kind kind) { return kind == Kind::SequenceOf || kind == Kind::SetOf; }
inline bool hasComponents(Kind kind) { return kind == Kind::Sequence || kind == Kind::Choice; }
inline bool hasChildren(Kind kind) { return hasComponents(kind) || isList(kind); }

// The record that defines the type: its component records follow it.
inline const AsnType *definitionOf(const AsnType *type) {
  while (type->link != 0) type += type->link;
  return type;
}

// Kinds that the records call "octets" but that have rules of their own.
enum class Content : uint8_t { Other, String, IntegerString, Time };

[[gnu::always_inline]] inline Content contentOf(const AsnType *type) {
  if (kindOf(type) != Kind::Octets) return Content::Other;
  while ((tagOf(type) & 0xC0) != 0 && type->link != 0) type += type->link;  // behind context tags: the universal one
  if (tagOf(type) == 0x02) return Content::IntegerString;
  return tagOf(type) == 0x18 ? Content::Time : Content::String;
}

// A string that BER may send in segments (X.690 8.6.4, 8.7.3, 8.23.6).
inline bool isSegmentable(const AsnType *type) {
  return kindOf(type) == Kind::BitString || (kindOf(type) == Kind::Octets && contentOf(type) != Content::IntegerString);
}

// The type that an EXPLICIT tag wraps. A type that is defined on the spot has the universal tag of its kind.
inline const AsnType *wrappedType(const AsnType *type) {
  if (type->link != 0) return type + type->link;
  static constexpr auto record = [](schema::BuiltIn builtIn) {
    return AsnType{static_cast<uint32_t>(builtIn.tag) << 24 | 1u << 16 | schema::classOf(builtIn.kind) << 8 |
                       static_cast<uint32_t>(builtIn.kind),
                   0, 0, 0, nullptr};
  };
  static constexpr AsnType kOnTheSpot[] = {
      record(schema::Boolean),   record(schema::Integer),          record(schema::Enumerated),
      record(schema::BitString), record(schema::ObjectIdentifier), record(schema::OctetString),
      record(schema::OpenType),
  };
  for (const AsnType &candidate : kOnTheSpot) {
    if (kindOf(&candidate) == kindOf(type)) return &candidate;
  }
  return &kOnTheSpot[6];  // only a malformed module gets here
}

inline const char *nameOf(const AsnType *type) { return type->name == nullptr ? "member" : type->name; }

}  // namespace ketra::asn1
